#include "factors/area_boundary.h"

#include "base/tolerance.h"
#include "geometry/polygon.h"

#include <algorithm>

namespace tessaran::factors {

namespace {

using geometry::Point2;
using geometry::Polygon;

std::size_t closestVertex(const Polygon& outline, Point2 to) {
    const auto closest = std::min_element(outline.begin(), outline.end(), [&](Point2 a, Point2 b) {
        return geometry::distance(a, to) < geometry::distance(b, to);
    });
    return static_cast<std::size_t>(closest - outline.begin());
}

// Outline, cut, the hole from its first vertex round to it again, cut back.
Polygon joined(const Polygon& outline, const Polygon& hole) {
    const auto at = static_cast<std::ptrdiff_t>(closestVertex(outline, hole.front()));
    Polygon all(outline.begin(), outline.begin() + at + 1);
    all.insert(all.end(), hole.begin(), hole.end());
    all.push_back(hole.front());
    all.insert(all.end(), outline.begin() + at, outline.end());
    return all;
}

} // namespace

std::vector<Polygon> joinedOutlines(const geometry::PlanarRegion& region) {
    std::vector<Polygon> outlines;
    for (const Polygon& loop : region.loops) {
        if (outlines.empty() || geometry::signedArea(loop) > 0.0)
            outlines.push_back(loop);
        else
            outlines.back() = joined(outlines.back(), loop);
    }
    return outlines;
}

base::Result<std::vector<Polygon>> outlinesAround(const geometry::Curve& curve, double range) {
    const Polygon line = curve.flattenedPlan(base::kArcSag * range);
    const auto region =
        curve.closed() ? geometry::bandAround(line, range) : geometry::areaAround(line, range);
    if (!region)
        return region.error();
    if (region->empty())
        return base::stateError("the line has no length");
    return joinedOutlines(*region);
}

} // namespace tessaran::factors
