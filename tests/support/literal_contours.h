#pragma once

// The contour interpolation of one cell as it is stated, every line looked at: the plain reference
// of tests and benchmarks, for grids that are not turned.

#include "geometry/curve.h"
#include "grid/my_grid.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::test {

// `extents` are those of the lines. Nothing where too few lines are met.
inline std::optional<double> literalContourValue(std::span<const geometry::Curve> contours,
                                                 std::span<const geometry::Box2> extents,
                                                 geometry::Point2 p, double cellWidth,
                                                 double limit) {
    using geometry::Point2;
    using geometry::Point3;
    std::vector<std::size_t> found;
    for (int k = 1; found.size() < 4; ++k) {
        const double s = k * cellWidth;
        if (s > limit)
            return std::nullopt;
        found.clear();
        for (std::size_t n = 0; n < contours.size(); ++n)
            if (extents[n].meets(geometry::Box2{p, p}.enlarged(s)))
                found.push_back(n);
    }
    std::vector<geometry::Curve::Closest> points;
    for (const std::size_t n : found)
        points.push_back(*contours[n].closestTo(p));
    std::ranges::stable_sort(points, {}, [](const auto& c) { return c.distance; });
    const auto angleTo = [&](const Point3& q) {
        const Point2 a = points[0].point.plan() - p;
        const Point2 b = q.plan() - p;
        return std::atan2(std::abs(cross(a, b)), dot(a, b));
    };
    const double right = std::acos(0.0) - 1e-9;
    const Point3 p0 = points[0].point;
    std::optional<Point3> p1;
    for (std::size_t k = 1; k < points.size() && !p1; ++k)
        if (angleTo(points[k].point) >= right)
            p1 = points[k].point;
    for (std::size_t k = 1; k < points.size() && !p1; ++k)
        if (std::abs(points[k].point.z - p0.z) > 1e-10)
            p1 = points[k].point;
    const double d0 = points[0].distance;
    const double d01 = p1 ? geometry::distance(p0.plan(), p1->plan()) : 0.0;
    if (!p1 || d0 < 1e-10 || d01 < 1e-10)
        return p0.z;
    const double g = (p1->z - p0.z) / d01;
    return angleTo(*p1) < right ? p0.z - g * d0 : p0.z + g * d0;
}

inline std::vector<geometry::Box2> extentsOf(std::span<const geometry::Curve> curves) {
    std::vector<geometry::Box2> boxes;
    for (const geometry::Curve& curve : curves)
        boxes.push_back(curve.extents());
    return boxes;
}

} // namespace tessaran::test
