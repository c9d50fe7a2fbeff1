#pragma once

// A unit cell less one pillar, without the overlay: most cut cells are cut by one outline that
// crosses their sides at a few places well apart.

#include "geometry/region.h"

#include <optional>

namespace tessaran::index {

// What is left of the square from (i, j) to (i + 1, j + 1) outside the outline: simple,
// counter-clockwise, in cell units. The outline is walked backwards, each stretch inside the cell
// from its entry to its exit, and from there along the cell's sides to the next entry (Weiler, K.
// and Atherton, P. (1977), Hidden surface removal using polygon area sorting, Comput. Graph. 11,
// 214-222). Nothing where that is not safe: vertices on a side, crossings next to a corner or to
// each other, no crossing at all, or an area that is not the expected one.
std::optional<geometry::PlanarRegion> cellLessOutline(int i, int j,
                                                      const geometry::Polygon& outline);

// The same for a pillar of one loop; nothing for others.
std::optional<geometry::PlanarRegion> cellLessPillar(int i, int j,
                                                     const geometry::PlanarRegion& pillar);

} // namespace tessaran::index
