#pragma once

// One side of a polygon as the ray tests see it. Ordered by x, so that a side shared by two
// polygons gives the same numbers in both.

#include "geometry/point.h"

namespace tessaran::geometry {

struct Edge {
    Point2 left;
    Point2 right;
    int direction = 0; // 1 when the outline runs left to right, -1 against; 0 for a vertical side

    Edge(Point2 from, Point2 to)
        : left(from.x <= to.x ? from : to), right(from.x <= to.x ? to : from),
          direction(from.x < to.x ? 1 : (to.x < from.x ? -1 : 0)) {}

    // For left.x <= x <= right.x of a side that is not vertical; exact at both ends.
    double heightAt(double x) const {
        if (x == right.x)
            return right.y;
        return left.y + (x - left.x) * ((right.y - left.y) / (right.x - left.x));
    }
};

} // namespace tessaran::geometry
