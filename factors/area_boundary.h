#pragma once

// Closed boundary outlines made from other lines of the plan.

#include "base/result.h"
#include "geometry/curve.h"
#include "geometry/region.h"

#include <vector>

namespace tessaran::factors {

// The closed outlines of everything within `range` of the curve: its offset curves to both sides
// joined at their ends. Arcs are followed by chords within 1e-3 of the range.
base::Result<std::vector<geometry::Polygon>> outlinesAround(const geometry::Curve& curve,
                                                            double range);

// One outline for each outer loop, with its holes joined to it by a cut that runs there and back,
// so that the signed areas of the outline alone are those of the region. Loops as the overlay gives
// them: every outer one, counter-clockwise, followed by its holes.
std::vector<geometry::Polygon> joinedOutlines(const geometry::PlanarRegion& region);

} // namespace tessaran::factors
