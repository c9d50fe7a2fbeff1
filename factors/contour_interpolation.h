#pragma once

// A grid from contour lines: every cell takes the slope between the nearest line and the nearest
// one on its other side.

#include "base/progress.h"
#include "geometry/curve.h"
#include "grid/my_grid.h"

#include <functional>
#include <span>

namespace tessaran::factors {

struct ContourSearch {
    double limit = 0.0; // largest half size of a search square, drawing units
    double datum = 0.0; // taken off every value, such as the seam's level
};

struct ContourGridResult {
    bool completed = false; // false: cancelled, the grid is partly filled
    long tooFew = 0;        // cells that kept their values for lack of lines
};

// Fills the nX x nY cells of a grid from contour lines whose vertices carry their value as height.
//
// A cell looks for lines in squares about its centre P with half sizes of one cell width, two,
// three ..., along the grid's own axes, until the extents of at least four lines meet the square.
// With the closest points of these lines to P, nearest first (equally near ones in the lines'
// order), the partner of the first, p0, is the first later one at a right angle or more from it as
// seen from P, else the first of another value. The value at P goes linearly from p0 to its partner
// p1 between the two, and with the same slope beyond p0 where both lie on one side. A P within
// 1e-10 of a line has that line's value. Angles within 1e-9 of a right one count as right.
//
// Cells that find fewer than four lines within the limit keep their values and are named to
// `tooFew` (column, row from 0; columns outer). The progress runs over nX * nY.
ContourGridResult gridContours(std::span<const geometry::Curve> contours,
                               const ContourSearch& search, grid::myGrid& grid,
                               const std::function<void(int, int)>& tooFew,
                               base::Progress& progress);

} // namespace tessaran::factors
