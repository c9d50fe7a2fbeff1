#pragma once

// Shapes that several geometry tests share.

#include "geometry/point.h"

#include <cmath>
#include <numbers>
#include <random>

namespace tessaran::test {

using geometry::Point2;
using geometry::Polygon;

inline Polygon rectangle(double x0, double y0, double x1, double y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

inline Polygon movedBy(Polygon polygon, Point2 by) {
    for (Point2& p : polygon)
        p = p + by;
    return polygon;
}

// A star-shaped outline around a centre: never crosses itself.
inline Polygon starShaped(std::mt19937& random, Point2 centre, double size, int vertices) {
    std::uniform_real_distribution<double> reach(0.3 * size, size);
    Polygon polygon;
    for (int k = 0; k < vertices; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / vertices;
        polygon.push_back(centre + reach(random) * Point2{std::cos(angle), std::sin(angle)});
    }
    return polygon;
}

// Vertices anywhere: crosses itself in many places.
inline Polygon tangled(std::mt19937& random, Point2 low, Point2 high, int vertices) {
    std::uniform_real_distribution<double> x(low.x, high.x);
    std::uniform_real_distribution<double> y(low.y, high.y);
    Polygon polygon;
    for (int k = 0; k < vertices; ++k)
        polygon.push_back({x(random), y(random)});
    return polygon;
}

} // namespace tessaran::test
