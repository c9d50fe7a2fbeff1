#pragma once

// The effect of the maximum horizontal stress on entries: an entry across the stress is rated 100,
// one along it 0, sin(angle) between; the cells within half an entry's width hold the largest
// rating of the entries that pass.

#include "base/progress.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <span>
#include <vector>

namespace tessaran::factors {

// The rating, 0 to 100, of an entry from a to b under a stress of that orientation (radians from
// the drawing's X axis; orientations are the same after half a turn).
double horizontalStressRating(geometry::Point2 a, geometry::Point2 b, double orientation);

// Projection lines along the entries as their vertices; segments are chords.
struct HorizontalStress {
    double entryWidth = 0.0;  // drawing units, above 0
    double orientation = 0.0; // radians
};

// Fills the cells of a defined grid. Lines of fewer than two vertices are left out and their
// numbers (from 0) added to `tooShort`. The progress runs over the lines, from 1 to their count.
// False when it was cancelled: the grid then holds part of the lines.
bool gridHorizontalStress(std::span<const std::vector<geometry::Point2>> lines,
                          const HorizontalStress& stress, grid::myGrid& grid,
                          std::vector<int>& tooShort, base::Progress& progress);

} // namespace tessaran::factors
