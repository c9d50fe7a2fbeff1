#include "desktop/object_snap.h"

#include "drawing/scene.h"
#include "geometry/segment.h"

#include <cmath>

namespace tessaran::desktop {
namespace {

using geometry::Curve;
using geometry::Segment;
using host::Point2;
using host::Point3;

constexpr std::size_t kMostSegments = 400; // that are held against each other
constexpr std::size_t kMostEntities = 4000;

// Where an arc of which only share of the way is known has its height.
double heightAt(const Curve& curve, std::size_t segment, double share) {
    return std::lerp(curve.segmentStart(segment).at.z, curve.segmentEnd(segment).at.z, share);
}

// Takes the closest place of each kind, and the segments near the cursor.
class SnapFinder final : public drawing::Canvas {
  public:
    SnapFinder(Point2 at, double aperture, SnapModes modes)
        : at_(at), aperture_(aperture), modes_(modes) {}

    void curve(const Curve& curve, const drawing::Pen& /*pen*/) override {
        for (std::size_t i = 0; i < curve.segmentCount(); ++i)
            segment(curve, i);
        if (curve.vertices().size() == 1)
            offer(SnapKind::end, curve.vertices().front().at);
    }
    void fill(const std::vector<Curve>& loops, const drawing::Pen& pen) override {
        for (const Curve& loop : loops)
            curve(loop, pen);
    }
    void text(const host::Text& text, const drawing::Pen& /*pen*/) override {
        offer(SnapKind::end, text.at);
    }
    void point(Point2 place, const drawing::Pen& /*pen*/) override {
        offer(SnapKind::end, {place.x, place.y, 0.0});
    }

    std::optional<Snap> best() {
        if (modes_.has(SnapKind::intersection))
            intersections();
        return best_ ? best_ : nearest_;
    }

  private:
    void segment(const Curve& curve, std::size_t i) {
        const Point3 start = curve.segmentStart(i).at;
        const Point3 end = curve.segmentEnd(i).at;
        const Segment line(start.plan(), end.plan(), curve.segmentStart(i).bulge);
        if (!line.extents().enlarged(aperture_).contains(at_))
            return;
        offer(SnapKind::end, start);
        offer(SnapKind::end, end);
        const auto on = [&](double share) {
            const Point2 p = line.pointAt(share);
            return Point3{p.x, p.y, heightAt(curve, i, share)};
        };
        offer(SnapKind::middle, on(0.5));
        const Point3 close = on(line.closestShare(at_));
        if (geometry::distance(close.plan(), at_) > aperture_)
            return;
        offer(SnapKind::nearest, close);
        if (segments_.size() < kMostSegments)
            segments_.push_back(line);
    }

    void offer(SnapKind kind, Point3 place) {
        const double away = geometry::distance(place.plan(), at_);
        if (!modes_.has(kind) || !(away <= aperture_))
            return;
        auto& kept = kind == SnapKind::nearest ? nearest_ : best_;
        if (!kept || away < geometry::distance(kept->at.plan(), at_))
            kept = Snap{kind, place};
    }

    void intersections() {
        for (std::size_t a = 0; a < segments_.size(); ++a)
            for (std::size_t b = a + 1; b < segments_.size(); ++b)
                for (const Point2 p :
                     geometry::meetingPoints(segments_[a], segments_[b], 1e-9 * aperture_))
                    if (!isEnd(segments_[a], p) || !isEnd(segments_[b], p))
                        offer(SnapKind::intersection, {p.x, p.y, 0.0});
    }

    // Where a chain's segments meet is an end, no intersection.
    bool isEnd(const Segment& segment, Point2 p) const {
        const double close = 1e-6 * aperture_;
        return geometry::distance(segment.start, p) < close ||
               geometry::distance(segment.end, p) < close;
    }

    Point2 at_;
    double aperture_;
    SnapModes modes_;
    std::optional<Snap> best_;
    std::optional<Snap> nearest_;
    std::vector<Segment> segments_;
};

} // namespace

std::optional<Snap> findSnap(const drawing::Database& database, Point2 at, double aperture,
                             SnapModes modes) {
    if (modes.bits == 0 || !(aperture > 0.0))
        return std::nullopt;
    SnapFinder finder(at, aperture, modes);
    std::size_t looked = 0;
    for (const drawing::EntityRecord* record :
         database.near(host::Box2{at, at}.enlarged(aperture))) {
        drawing::drawEntity(database, *record, drawing::Visibility::shown, finder);
        if (++looked >= kMostEntities)
            break;
    }
    return finder.best();
}

} // namespace tessaran::desktop
