#pragma once

// Cells of a grid picked out by shapes drawn over it, and what an edit does with them.
//
// Shapes are in drawing coordinates and are held against the cells as they truly lie, turned grids
// too. Only cells between those around the shape's own extents along the grid's axes are looked at
// (pointToCellClamped()), so a box that ends exactly on the low side of its first cells does not
// touch the cells before them.

#include "geometry/cell_coverage.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaran::grid {

// Runs of cells by ascending row, in a row by ascending column, none touching the next.
using CellRuns = std::vector<geometry::CellRun>;

CellRuns allCells(const myGrid& grid);
// Cells wholly inside a closed polygon; along its sides counts as inside.
CellRuns cellsInside(const myGrid& grid, std::span<const Point2> polygon);
// Cells inside a closed polygon or touched by it, be it at a side or a corner.
CellRuns cellsTouched(const myGrid& grid, std::span<const Point2> polygon);
// Cells whose inside a chain of segments runs through; along a side it crosses neither neighbour.
CellRuns cellsCrossed(const myGrid& grid, std::span<const Point2> chain);

// A set of a grid's cells.
class CellSelection {
  public:
    CellSelection(int nX, int nY);

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    bool has(CellIndex cell) const; // false outside the grid
    // One byte a cell of row j: 1 selected, 0 not.
    std::span<const std::uint8_t> row(int j) const;

    // Runs within the grid; how many cells changed.
    std::size_t add(std::span<const geometry::CellRun> runs) { return put(runs, 1); }
    std::size_t remove(std::span<const geometry::CellRun> runs) { return put(runs, 0); }
    void clear();

  private:
    std::size_t put(std::span<const geometry::CellRun> runs, std::uint8_t selected);

    std::size_t columns_;
    std::vector<std::uint8_t> cells_; // rows outer
    std::size_t size_ = 0;
};

struct SelectedMean {
    double mean = 0.0; // over those with a value; 0 when none has one
    std::size_t withValue = 0;
};
SelectedMean meanOfSelected(const myGrid& grid, const CellSelection& selection);

void assignSelected(myGrid& grid, const CellSelection& selection, double value);

} // namespace tessaran::grid
