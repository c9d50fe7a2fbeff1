#pragma once

// Where the cell centres of one grid lie in another: how grids of any two geometries are combined.

#include "grid/my_grid.h"

#include <cmath>
#include <span>
#include <vector>

namespace tessaran::grid {

class CentreCells {
  public:
    // Both grids must be defined and outlive this.
    CentreCells(const myGrid& grid, const myGrid& other);

    // The cell of the other grid around the centre of cell (i, j), as its pointToCell() gives it:
    // kBefore or kBeyond outside.
    CellIndex cellAround(int i, int j) const {
        if (!rows_.empty())
            return {columns_[static_cast<std::size_t>(i)], rows_[static_cast<std::size_t>(j)]};
        const Point2 at =
            start_ + static_cast<double>(i) * alongRow_ + static_cast<double>(j) * alongColumn_;
        return isClear(at.x) && isClear(at.y)
                   ? CellIndex{cellAlong(at.x, other_.nX()), cellAlong(at.y, other_.nY())}
                   : locatedExactly(i, j);
    }

    // visit(i, value of the other grid) for the centres of row j that lie in one of its cells.
    template <class Visit>
    void forEachIn(int j, const Visit& visit) const {
        if (rows_.empty())
            visitTurned(j, visit);
        else if (const int row = rows_[static_cast<std::size_t>(j)]; row >= 0)
            visitRow(other_.row(row), visit);
    }

  private:
    // Places this near to a cell's side, in cell widths, are left to pointToCell(), whose rounding
    // decides there. Elsewhere cutting off gives the same cell in a fraction of the time.
    static constexpr double kNearSide = 1e-4;
    static constexpr double kFarAway = 1e9; // cells

    static bool isClear(double at) {
        if (!(std::abs(at) < kFarAway))
            return false;
        const double past = std::abs(at - static_cast<int>(at));
        return past > kNearSide && past < 1.0 - kNearSide;
    }
    static int cellAlong(double at, int count) {
        if (at < 0.0)
            return kBefore;
        return at < count ? static_cast<int>(at) : kBeyond;
    }
    CellIndex locatedExactly(int i, int j) const;

    template <class Visit>
    void visitRow(std::span<const double> samples, const Visit& visit) const {
        for (std::size_t i = 0; i < columns_.size(); ++i)
            if (columns_[i] >= 0)
                visit(i, samples[static_cast<std::size_t>(columns_[i])]);
    }
    template <class Visit>
    void visitTurned(int j, const Visit& visit) const {
        for (int i = 0; i < grid_.nX(); ++i) {
            const CellIndex cell = cellAround(i, j);
            if (cell.column >= 0 && cell.row >= 0)
                visit(static_cast<std::size_t>(i),
                      other_.row(cell.row)[static_cast<std::size_t>(cell.column)]);
        }
    }

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
