#include "geometry/segment.h"

#include "base/tolerance.h"

#include <numbers>

namespace tessaran::geometry {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kFlattestBulge = 1e-12; // flatter arcs are straight to the last digit
constexpr int kMostChords = 4096;

double angleOf(Vector2 v) {
    return std::atan2(v.y, v.x);
}

bool within(const Segment& s, Point2 p, double tolerance) {
    return distance(s.pointAt(s.closestShare(p)), p) <= tolerance;
}

void addIfOnBoth(std::vector<Point2>& found, Point2 p, const Segment& a, const Segment& b,
                 double tolerance) {
    if (within(a, p, tolerance) && within(b, p, tolerance))
        found.push_back(p);
}

// The lines' common point; for parallel ones the ends, of which those on both segments count.
std::vector<Point2> lineCandidates(const Segment& a, const Segment& b) {
    const Vector2 r = a.end - a.start;
    const Vector2 s = b.end - b.start;
    const double turn = cross(r, s);
    if (std::abs(turn) <= 1e-14 * length(r) * length(s))
        return {a.start, a.end, b.start, b.end};
    return {a.start + (cross(b.start - a.start, s) / turn) * r, a.start, a.end, b.start, b.end};
}

std::vector<Point2> lineCircleCandidates(const Segment& line, const Segment& arc) {
    const Vector2 along = line.end - line.start;
    const double size = length(along);
    if (!(size > 0.0))
        return {line.start};
    const Vector2 unit = (1.0 / size) * along;
    const double foot = dot(arc.centre - line.start, unit);
    const Point2 nearest = line.start + foot * unit;
    const double away = distance(nearest, arc.centre);
    const double half = std::sqrt(std::max(0.0, (arc.radius - away) * (arc.radius + away)));
    return {
        nearest + half * unit, nearest + (-half) * unit, line.start, line.end, arc.start, arc.end};
}

std::vector<Point2> circleCandidates(const Segment& a, const Segment& b) {
    std::vector<Point2> points{a.start, a.end, b.start, b.end};
    const double apart = distance(a.centre, b.centre);
    if (apart > 0.0) {
        const Vector2 unit = (1.0 / apart) * (b.centre - a.centre);
        const double foot = 0.5 * (apart + (a.radius - b.radius) * (a.radius + b.radius) / apart);
        const double half = std::sqrt(std::max(0.0, (a.radius - foot) * (a.radius + foot)));
        const Point2 middle = a.centre + foot * unit;
        points.push_back(middle + half * Vector2{-unit.y, unit.x});
        points.push_back(middle + half * Vector2{unit.y, -unit.x});
    }
    return points;
}

} // namespace

Segment::Segment(Point2 from, Point2 to, double bulge) : start(from), end(to) {
    const Vector2 chord = to - from;
    const double size = geometry::length(chord);
    if (!(std::abs(bulge) > kFlattestBulge) || !(std::abs(bulge) < 1.0 / kFlattestBulge) ||
        !(size > 0.0))
        return;
    const double r = size * (1.0 + bulge * bulge) / (4.0 * std::abs(bulge));
    const double side = (1.0 - bulge * bulge) / (4.0 * bulge); // centre left of the chord, in sizes
    centre = 0.5 * (from + to) + side * Vector2{-chord.y, chord.x};
    radius = r;
    startAngle = angleOf(from - centre);
    sweep = 4.0 * std::atan(bulge);
}

double Segment::length() const {
    return isArc() ? radius * std::abs(sweep) : distance(start, end);
}

Point2 Segment::pointAt(double share) const {
    if (share <= 0.0)
        return start;
    if (share >= 1.0)
        return end;
    if (!isArc())
        return start + share * (end - start);
    const double angle = startAngle + share * sweep;
    return centre + radius * Vector2{std::cos(angle), std::sin(angle)};
}

double Segment::shareAtAngle(double angle) const {
    double turn = std::fmod(sweep > 0.0 ? angle - startAngle : startAngle - angle, kTwoPi);
    if (turn < 0.0)
        turn += kTwoPi;
    return turn / std::abs(sweep);
}

double Segment::closestShare(Point2 point) const {
    if (isArc()) {
        const double share = shareAtAngle(angleOf(point - centre));
        if (share <= 1.0)
            return share;
        return distance(point, start) <= distance(point, end) ? 0.0 : 1.0;
    }
    const Vector2 along = end - start;
    const double square = dot(along, along);
    return square > 0.0 ? std::clamp(dot(point - start, along) / square, 0.0, 1.0) : 0.0;
}

Box2 Segment::extents() const {
    Box2 box;
    box.add(start);
    box.add(end);
    if (isArc())
        for (const Vector2 d : {Vector2{1, 0}, Vector2{0, 1}, Vector2{-1, 0}, Vector2{0, -1}})
            if (shareAtAngle(angleOf(d)) <= 1.0)
                box.add(centre + radius * d);
    return box;
}

int Segment::chordCount(double sag) const {
    if (!isArc())
        return 1;
    // A chord over the angle t lies r (1 - cos(t / 2)) off its arc.
    const double kept = std::clamp(1.0 - sag / radius, 0.0, 1.0);
    const double widest = 2.0 * std::acos(kept);
    if (!(std::abs(sweep) < kMostChords * widest))
        return kMostChords;
    return std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / widest)));
}

double meetingTolerance(const Box2& box) {
    const double size = std::max(
        {std::abs(box.low.x), std::abs(box.low.y), std::abs(box.high.x), std::abs(box.high.y)});
    return std::max(base::kTolerance, 8.0 * std::numeric_limits<double>::epsilon() * size);
}

std::vector<Point2> meetingPoints(const Segment& a, const Segment& b, double tolerance) {
    std::vector<Point2> candidates;
    if (!a.isArc() && !b.isArc())
        candidates = lineCandidates(a, b);
    else if (a.isArc() && b.isArc())
        candidates = circleCandidates(a, b);
    else
        candidates = a.isArc() ? lineCircleCandidates(b, a) : lineCircleCandidates(a, b);
    std::vector<Point2> found;
    for (const Point2 p : candidates)
        addIfOnBoth(found, p, a, b, tolerance);
    return found;
}

// Liang, Y.-D. and Barsky, B. A. (1984), A new concept and method for line clipping, ACM Trans.
// Graph. 3, 1-22.
std::optional<std::pair<Point2, Point2>> clippedTo(const Box2& box, Point2 from, Point2 to) {
    const Point2 step = to - from;
    double enter = 0.0;
    double leave = 1.0;
    const auto cut = [&](double towards, double room) {
        if (towards == 0.0)
            return room >= 0.0;
        const double share = room / towards;
        (towards < 0.0 ? enter : leave) =
            towards < 0.0 ? std::max(enter, share) : std::min(leave, share);
        return enter <= leave;
    };
    if (cut(-step.x, from.x - box.low.x) && cut(step.x, box.high.x - from.x) &&
        cut(-step.y, from.y - box.low.y) && cut(step.y, box.high.y - from.y))
        return std::pair{from + enter * step, from + leave * step};
    return std::nullopt;
}

} // namespace tessaran::geometry
