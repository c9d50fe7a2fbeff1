#pragma once

// Where the cell centres of one grid lie in another: how grids of any two geometries are combined.

#include "grid/my_grid.h"

#include <span>
#include <vector>

namespace tessaran::grid {

class CentreCells {
  public:
    // Both grids must be defined and outlive this.
    CentreCells(const myGrid& grid, const myGrid& other);

    // The cells of the other grid around the centres of row j, as its pointToCell() gives them:
    // kBefore or kBeyond outside. `cells` takes one a column.
    void locate(int j, std::span<CellIndex> cells) const;

  private:
    void locateTurned(int j, std::span<CellIndex> cells) const;

    const myGrid& grid_;
    const myGrid& other_;
    // Between grids that are both unrotated a column of centres falls into one column of the other
    // and a row into one row, so that two small tables replace a point location a cell.
    std::vector<int> columns_;
    std::vector<int> rows_;
    // Else: the place of the first centre in the other grid, in its cell widths, and the steps from
    // column to column and from row to row.
    Point2 start_;
    Point2 alongRow_;
    Point2 alongColumn_;
};

} // namespace tessaran::grid
