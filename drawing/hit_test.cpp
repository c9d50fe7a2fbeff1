#include "drawing/hit_test.h"

#include "drawing/scene.h"
#include "drawing/selection.h"
#include "geometry/polygon.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaran::drawing {
namespace {

using geometry::Curve;
using host::Point2;

// Keeps the place of an entity that comes closest to a point.
class NearestPlace final : public Canvas {
  public:
    explicit NearestPlace(Point2 from) : from_(from) {}

    Point2 at;
    double distance = std::numeric_limits<double>::infinity();

    void beginEntity(const EntityRecord& /*record*/) override {
        distance = std::numeric_limits<double>::infinity();
    }
    void curve(const Curve& curve, const Pen& pen) override {
        if (const auto closest = curve.closestTo(from_))
            take(closest->point.plan(), std::max(0.0, closest->distance - 0.5 * pen.width));
    }
    void fill(const std::vector<Curve>& loops, const Pen& pen) override {
        for (const Curve& loop : loops)
            curve(loop, pen);
    }
    void text(const host::Text& text, const Pen& pen) override {
        const auto corners = textBox(text);
        if (geometry::pointInPolygon(from_, corners))
            return take(from_, 0.0);
        std::vector<geometry::CurveVertex> outline;
        for (const Point2 corner : corners)
            outline.push_back({{corner.x, corner.y, 0.0}, 0.0});
        curve({outline, true}, pen);
    }
    void point(Point2 place, const Pen& /*pen*/) override {
        take(place, geometry::distance(place, from_));
    }

  private:
    void take(Point2 place, double away) {
        if (away < distance) {
            distance = away;
            at = place;
        }
    }

    Point2 from_;
};

} // namespace

std::optional<Hit> hitTest(const Database& database, Point2 at, double tolerance,
                           const host::SelectionFilter& filter) {
    if (!geometry::isUsable(at) || !(tolerance >= 0.0))
        return std::nullopt;
    const FilterTest passes(database.tables(), filter);
    NearestPlace nearest(at);
    auto candidates = database.near(host::Box2{at, at}.enlarged(tolerance));
    std::reverse(candidates.begin(), candidates.end());
    for (const EntityRecord* record : candidates) {
        if (!isShown(database, *record) || !passes(*record))
            continue;
        drawEntity(database, *record, Visibility::shown, nearest);
        if (nearest.distance <= tolerance)
            return Hit{record->entity.id, nearest.at, nearest.distance};
    }
    return std::nullopt;
}

std::optional<Hit> hitTest(const Database& database, Point2 at,
                           const host::SelectionFilter& filter) {
    return hitTest(database, at, kPickShare * database.view().height, filter);
}

} // namespace tessaran::drawing
