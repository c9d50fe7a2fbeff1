#include "geometry/curve.h"

#include "base/tolerance.h"
#include "geometry/box_index.h"
#include "geometry/polygon.h"
#include "geometry/segment.h"

#include <numbers>

namespace tessaran::geometry {

namespace {

bool isUsableVertex(const CurveVertex& v) {
    return isUsable(v.at.plan()) && std::isfinite(v.at.z) && std::isfinite(v.bulge);
}

double heightBetween(double from, double to, double share) {
    return from + share * (to - from);
}

Point3 pointOn(const CurveVertex& from, const CurveVertex& to, const Segment& segment,
               double share) {
    const Point2 p = segment.pointAt(share);
    return {p.x, p.y, heightBetween(from.at.z, to.at.z, share)};
}

Segment segmentOf(const Curve& curve, std::size_t k) {
    const CurveVertex& from = curve.segmentStart(k);
    return {from.at.plan(), curve.segmentEnd(k).at.plan(), from.bulge};
}

std::vector<Segment> segmentsOf(const Curve& curve) {
    std::vector<Segment> segments;
    segments.reserve(curve.segmentCount());
    for (std::size_t k = 0; k < curve.segmentCount(); ++k)
        segments.push_back(segmentOf(curve, k));
    return segments;
}

struct Meeting {
    double along;
    Point2 at;
};

// In the order along the curve, each place once.
std::vector<Point2> distinctPlaces(std::vector<Meeting> meetings, double tolerance) {
    std::sort(meetings.begin(), meetings.end(),
              [](const Meeting& a, const Meeting& b) { return a.along < b.along; });
    std::vector<Point2> places;
    double last = 0.0;
    for (const Meeting& m : meetings) {
        const bool repeated = !places.empty() && m.along - last <= 4.0 * tolerance;
        if (!repeated)
            places.push_back(m.at);
        last = m.along;
    }
    if (places.size() > 1 && distance(places.front(), places.back()) <= 4.0 * tolerance)
        places.pop_back(); // the start of a closed curve, found again at its end
    return places;
}

} // namespace

Curve::Curve(const std::vector<CurveVertex>& vertices, bool closed) : closed_(closed) {
    for (const CurveVertex& v : vertices) {
        if (!isUsableVertex(v))
            continue;
        if (!vertices_.empty() && vertices_.back().at == v.at)
            vertices_.back() = v;
        else
            vertices_.push_back(v);
    }
    if (closed_ && vertices_.size() > 1 && vertices_.front().at == vertices_.back().at)
        vertices_.pop_back();
    lengthBefore_.reserve(segmentCount() + 1);
    lengthBefore_.push_back(0.0);
    for (std::size_t k = 0; k < segmentCount(); ++k)
        lengthBefore_.push_back(lengthBefore_.back() + segmentOf(*this, k).length());
}

Curve Curve::line(Point3 start, Point3 end) {
    return {{{start}, {end}}, false};
}

Curve Curve::circle(Point3 centre, double radius) {
    return arc(centre, radius, 0.0, 0.0);
}

Curve Curve::arc(Point3 centre, double radius, double startAngle, double endAngle) {
    const auto at = [&](double angle) {
        return centre + radius * Point3{std::cos(angle), std::sin(angle), 0.0};
    };
    constexpr double kTwoPi = 2.0 * std::numbers::pi;
    double sweep = std::fmod(endAngle - startAngle, kTwoPi);
    if (sweep < 0.0)
        sweep += kTwoPi;
    if (sweep == 0.0 || !(radius > 0.0)) // whole circles as two half ones
        return {{{at(startAngle), 1.0}, {at(startAngle + std::numbers::pi), 1.0}}, true};
    const double bulge = std::tan(sweep / 8.0); // two arcs: a bulge of one may grow without bound
    return {{{at(startAngle), bulge}, {at(startAngle + 0.5 * sweep), bulge}, {at(endAngle)}},
            false};
}

std::size_t Curve::segmentCount() const {
    if (vertices_.size() < 2)
        return 0;
    return closed_ ? vertices_.size() : vertices_.size() - 1;
}

const CurveVertex& Curve::segmentEnd(std::size_t segment) const {
    return vertices_[segment + 1 < vertices_.size() ? segment + 1 : 0];
}

double Curve::length() const {
    return lengthBefore_.empty() ? 0.0 : lengthBefore_.back();
}

double Curve::lengthOfSegment(std::size_t segment) const {
    return lengthBefore_[segment + 1] - lengthBefore_[segment];
}

Point3 Curve::pointAt(double along) const {
    if (segmentCount() == 0)
        return empty() ? Point3{} : vertices_.front().at;
    const double held = std::isnan(along) ? 0.0 : std::clamp(along, 0.0, length());
    const auto next = std::upper_bound(lengthBefore_.begin(), lengthBefore_.end() - 1, held);
    const auto k =
        static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, next - lengthBefore_.begin() - 1));
    const std::size_t segment = std::min(k, segmentCount() - 1);
    const double size = lengthOfSegment(segment);
    const double share = size > 0.0 ? (held - lengthBefore_[segment]) / size : 0.0;
    return pointOn(segmentStart(segment), segmentEnd(segment), segmentOf(*this, segment), share);
}

std::optional<Curve::Closest> Curve::closestTo(Point2 point) const {
    if (empty() || !isUsable(point))
        return std::nullopt;
    Closest best{vertices_.front().at, distance(vertices_.front().at.plan(), point), 0.0, 0};
    for (std::size_t k = 0; k < segmentCount(); ++k) {
        const Segment segment = segmentOf(*this, k);
        const double share = segment.closestShare(point);
        const double away = distance(segment.pointAt(share), point);
        if (away < best.distance)
            best = {pointOn(segmentStart(k), segmentEnd(k), segment, share), away,
                    lengthBefore_[k] + share * lengthOfSegment(k), k};
    }
    return best;
}

Box2 Curve::extents() const {
    Box2 box;
    for (const CurveVertex& v : vertices_)
        box.add(v.at.plan());
    for (const Segment& s : segmentsOf(*this))
        if (s.isArc())
            box.add(s.extents());
    return box;
}

std::vector<Point3> Curve::flattened(double sag) const {
    std::vector<Point3> points;
    for (std::size_t k = 0; k < segmentCount(); ++k) {
        const Segment segment = segmentOf(*this, k);
        const int chords = segment.chordCount(sag);
        for (int c = 0; c < chords; ++c)
            points.push_back(
                pointOn(segmentStart(k), segmentEnd(k), segment, static_cast<double>(c) / chords));
    }
    if (!empty() && (!closed_ || segmentCount() == 0))
        points.push_back(vertices_.back().at);
    return points;
}

Polygon Curve::flattenedPlan(double sag) const {
    Polygon plan;
    for (const Point3& p : flattened(sag))
        plan.push_back(p.plan());
    return plan;
}

Polygon Curve::flattenedByShare(double shareOfRadius) const {
    Polygon plan;
    for (const Segment& segment : segmentsOf(*this)) {
        const int chords = segment.chordCount(shareOfRadius * segment.radius);
        for (int c = 0; c < chords; ++c)
            plan.push_back(segment.pointAt(static_cast<double>(c) / chords));
    }
    if (!empty() && (!closed_ || segmentCount() == 0))
        plan.push_back(vertices_.back().at.plan());
    return plan;
}

Curve Curve::reversed() const {
    std::vector<CurveVertex> vertices(vertices_.rbegin(), vertices_.rend());
    const std::size_t n = vertices.size();
    for (std::size_t k = 0; k < n; ++k) // the segment after a vertex was the one before it
        vertices[k].bulge = -vertices_[(2 * n - 2 - k) % n].bulge;
    return {vertices, closed_};
}

std::vector<Point2> crossings(const Curve& a, const Curve& b) {
    const Box2 boxA = a.extents();
    const Box2 boxB = b.extents();
    if (boxA.empty() || boxB.empty())
        return {};
    Box2 both = boxA;
    both.add(boxB);
    const double tolerance = meetingTolerance(both);
    if (!boxA.enlarged(tolerance).meets(boxB))
        return {};
    const std::vector<Segment> others = segmentsOf(b);
    std::vector<Box2> boxes;
    for (const Segment& s : others)
        boxes.push_back(s.extents().enlarged(tolerance));
    const BoxIndex index(boxes);
    std::vector<Meeting> meetings;
    double before = 0.0;
    for (const Segment& s : segmentsOf(a)) {
        index.forEach(s.extents(), [&](std::size_t k) {
            for (const Point2 p : meetingPoints(s, others[k], tolerance))
                meetings.push_back({before + s.closestShare(p) * s.length(), p});
        });
        before += s.length();
    }
    return distinctPlaces(std::move(meetings), tolerance);
}

bool meets(const Curve& curve, std::span<const Point2> convexArea) {
    if (!boxOf(convexArea).meets(curve.extents()))
        return false;
    for (const CurveVertex& v : curve.vertices())
        if (pointInPolygon(v.at.plan(), convexArea))
            return true;
    std::vector<CurveVertex> outline;
    for (const Point2 p : convexArea)
        outline.push_back({{p.x, p.y, 0.0}});
    if (!crossings(curve, Curve(outline, true)).empty())
        return true;
    if (!curve.closed() || convexArea.empty())
        return false;
    const Box2 box = curve.extents();
    return pointInPolygon(convexArea.front(),
                          curve.flattenedPlan(base::kArcSag * std::max(box.width(), box.height())));
}

} // namespace tessaran::geometry
