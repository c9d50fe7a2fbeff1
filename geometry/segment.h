#pragma once

// One segment of a curve in plan, straight or an arc: what Curve is made of.

#include "geometry/point.h"

#include <optional>
#include <utility>
#include <vector>

namespace tessaran::geometry {

struct Segment {
    Point2 start;
    Point2 end;
    // Of an arc: radius 0 means straight; sweep is positive counter-clockwise, radians.
    Point2 centre;
    double radius = 0.0;
    double startAngle = 0.0;
    double sweep = 0.0;

    Segment(Point2 from, Point2 to, double bulge);

    bool isArc() const { return radius > 0.0; }
    double length() const;
    Point2 pointAt(double share) const; // 0 at the start, 1 at the end
    // Share of the length at which the segment comes closest to the point.
    double closestShare(Point2 point) const;
    Box2 extents() const;
    // Number of chords that stay within `sag` of the arc; 1 for a straight segment.
    int chordCount(double sag) const;

    // Share of the sweep at which an arc passes that direction from its centre; may be above 1.
    double shareAtAngle(double angle) const;
};

// The part of a straight chord inside the box, from its start on; nothing when it stays outside.
std::optional<std::pair<Point2, Point2>> clippedTo(const Box2& box, Point2 from, Point2 to);

// Within this of each other, segments of plans of that extent meet: the rounding of such
// coordinates, and the system's tolerance at least.
double meetingTolerance(const Box2& box);

// Where two segments meet within `tolerance`; the ends of a common stretch.
std::vector<Point2> meetingPoints(const Segment& a, const Segment& b, double tolerance);

} // namespace tessaran::geometry
