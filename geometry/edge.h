#pragma once

// One side of a polygon as the ray tests see it. Ordered by y, so that a side shared by two
// polygons gives the same numbers in both.

#include "geometry/point.h"

namespace tessaran::geometry {

struct Edge {
    Point2 low;
    Point2 high;
    int direction = 0; // 1 when the outline runs upwards, -1 downwards; 0 for a level side

    Edge(Point2 from, Point2 to)
        : low(from.y <= to.y ? from : to), high(from.y <= to.y ? to : from),
          direction(from.y < to.y ? 1 : (to.y < from.y ? -1 : 0)) {}

    // Where the side is at a height from low.y to high.y; not for level ones. Exact at both ends.
    double xAt(double y) const {
        if (y == high.y)
            return high.x;
        return low.x + (y - low.y) * ((high.x - low.x) / (high.y - low.y));
    }
};

} // namespace tessaran::geometry
