#pragma once

// Closed polylines that are there twice, or that overlap.
//
// Areas are shoelace areas; where outlines are not convex the common area comes from an overlay by
// the even-odd rule. All are counted about a corner of the pair itself, so plans with coordinates
// in the millions keep their digits. Areas differ when they do so by more than 1e-10, and by more
// than the rounding of coordinates of that size makes out along the outlines.

#include "base/progress.h"
#include "geometry/curve.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::factors {

// The polylines that repeat an earlier one, ascending: equal areas, and the common area is that
// area. Copies vertex by vertex, in either direction and from any start, count when they enclose
// any area. Each is held against those that are no duplicates themselves. The progress runs from 0
// to the number of polylines. Nothing when it was cancelled.
std::optional<std::vector<std::size_t>> duplicatePolygons(std::span<const geometry::Curve> closed,
                                                          base::Progress& progress);

// The polylines that have an area in common with another one, ascending.
std::optional<std::vector<std::size_t>> overlappingPolygons(std::span<const geometry::Curve> closed,
                                                            base::Progress& progress);

} // namespace tessaran::factors
