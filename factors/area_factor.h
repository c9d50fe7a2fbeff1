#pragma once

// The factor grid of area boundaries: every cell that lies inside the boundaries, by its middle
// point or by the covered share of its area, gets one factor, every other cell another.
//
// Boundaries are the vertex polygons of closed outlines in drawing coordinates.

#include "base/progress.h"
#include "geometry/cell_coverage.h"
#include "geometry/point.h"
#include "grid/boundary_cells.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tessaran::factors {

enum class AreaAlgorithm {
    none = -1, // not chosen yet: the share to reach is 0, so every cell is inside
    middlePoint = 0,
    areaBased = 1,
};

struct AreaFactorOptions {
    int insideFactor = 0;
    int outsideFactor = 0;
    int minimumAreaPercent = 0; // of a cell's area, to be inside; areaBased only
    AreaAlgorithm algorithm = AreaAlgorithm::none;
};

struct AreaFactorResult {
    std::size_t boundariesUsed = 0;
    std::size_t boundariesInOneLine = 0;    // left out: see cellsOfBoundary()
    std::size_t boundariesWithoutShape = 0; // left out: no vertices, or coordinates of no use
    std::size_t cellsInside = 0;
    bool cancelled = false; // the boundaries before that are in the grid
};

// Whether the boundary has an area above 1e-10 in common with the grid. Such boundaries alone are
// related to the grid.
bool isRelatedToGrid(const grid::myGrid& grid, std::span<const geometry::Point2> boundary);

// The cells that a boundary is held against: those of its box in the grid's own frame, held within
// the grid. Empty for a boundary whose box covers one column or one row only: it contributes
// nothing, on purpose. A box that ends exactly on a cell's side reaches into the next cell.
geometry::CellRange cellsOfBoundary(const grid::myGrid& grid,
                                    std::span<const geometry::Point2> boundary);

// Sets every cell to the inside or the outside factor. Boundaries count in the order given. By
// area, shares add up over all boundaries, and a cell that has reached the minimum takes no more;
// shares within 1e-9 of the minimum reach it. Polls for the user break after each boundary, with
// the meter "Search cells against boundaries ..." over 0 to count - 1; after a break the cells
// still get their factors. Nothing happens to a grid that is not defined.
AreaFactorResult buildAreaFactor(grid::myGrid& grid, std::span<const geometry::Polygon> boundaries,
                                 const AreaFactorOptions& options, base::Progress& progress);

// Pairs of boundaries that overlap by more than 1e-10: their common area counts twice.
using grid::OverlappingPair;
std::vector<OverlappingPair> overlappingBoundaries(std::span<const geometry::Polygon> boundaries);

} // namespace tessaran::factors
