#pragma once

// Planar areas bounded by loops of straight sides, by the even-odd rule over all loops. Outer loops
// run counter-clockwise and holes clockwise in what these functions return; they take any.
// Self-crossing, collapsed or repeated loops are made valid; loops with coordinates that are no
// usable numbers are left out. All may be called from several threads at once.

#include "base/result.h"
#include "geometry/point.h"

#include <span>
#include <vector>

namespace tessaran::geometry {

struct PlanarRegion {
    std::vector<Polygon> loops;

    bool empty() const { return loops.empty(); }
};

PlanarRegion regionOf(Polygon outline);

double area(const PlanarRegion& region);

// The same area with loops that neither cross nor touch along sides.
base::Result<PlanarRegion> cleaned(const PlanarRegion& region);

// All areas together; areas that touch along a side become one.
base::Result<PlanarRegion> unite(std::span<const PlanarRegion> regions);
base::Result<PlanarRegion> subtract(const PlanarRegion& from,
                                    std::span<const PlanarRegion> regions);
base::Result<PlanarRegion> intersect(const PlanarRegion& a, const PlanarRegion& b);

// Everything within `range` of the line, beside it but not beyond its ends: the offset curves of
// both sides joined at their ends into one closed outline. Corners are rounded, with chords no
// farther than 1e-3 of the range from the true arcs. An error when the range is not above 0 or the
// line has no length.
base::Result<PlanarRegion> areaAround(std::span<const Point2> line, double range);

// The same around a closed outline: a band along it, as the loops of its outer and inner offset.
base::Result<PlanarRegion> bandAround(std::span<const Point2> outline, double range);

// The outline moved outwards (range above 0) or inwards (below 0); empty when nothing is left.
base::Result<PlanarRegion> offset(const PlanarRegion& region, double range);

} // namespace tessaran::geometry
