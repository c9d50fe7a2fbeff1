#include "grid/centre_cells.h"

#include <cmath>

namespace tessaran::grid {
namespace {

// Places this near to a cell's side, in cell widths, are left to pointToCell(), whose rounding
// decides there. Elsewhere cutting off gives the same cell in a fraction of the time.
constexpr double kNearSide = 1e-4;
constexpr double kFarAway = 1e9; // cells

Point2 centreOf(const myGrid& grid, int i, int j) {
    return (grid.origin() + (i + 0.5) * grid.xStep() + (j + 0.5) * grid.yStep()).plan();
}

// Exactly: along the axes, nothing of one step leaks into the other coordinate.
bool unrotated(const myGrid& grid) {
    return grid.xStep().y == 0.0 && grid.yStep().x == 0.0;
}

// A vector in cell widths along the grid's axes.
Point2 inCells(const myGrid& grid, Point2 vector) {
    const Point2 x = grid.xStep().plan();
    const Point2 y = grid.yStep().plan();
    return {geometry::dot(vector, x) / geometry::dot(x, x),
            geometry::dot(vector, y) / geometry::dot(y, y)};
}

bool isClear(double at) {
    if (!(std::abs(at) < kFarAway))
        return false;
    const double past = std::abs(at - static_cast<int>(at));
    return past > kNearSide && past < 1.0 - kNearSide;
}

int cellAlong(double at, int count) {
    if (at < 0.0)
        return kBefore;
    return at < count ? static_cast<int>(at) : kBeyond;
}

} // namespace

CentreCells::CentreCells(const myGrid& grid, const myGrid& other)
    : grid_(grid), other_(other),
      start_(inCells(other, centreOf(grid, 0, 0) - other.origin().plan())),
      alongRow_(inCells(other, grid.xStep().plan())),
      alongColumn_(inCells(other, grid.yStep().plan())) {
    if (!unrotated(grid) || !unrotated(other))
        return;
    for (int i = 0; i < grid.nX(); ++i)
        columns_.push_back(other.pointToCell(centreOf(grid, i, 0)).column);
    for (int j = 0; j < grid.nY(); ++j)
        rows_.push_back(other.pointToCell(centreOf(grid, 0, j)).row);
}

void CentreCells::locate(int j, std::span<CellIndex> cells) const {
    if (rows_.empty()) {
        locateTurned(j, cells);
        return;
    }
    const int row = rows_[static_cast<std::size_t>(j)];
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = {columns_[i], row};
}

void CentreCells::locateTurned(int j, std::span<CellIndex> cells) const {
    const Point2 begin = start_ + static_cast<double>(j) * alongColumn_;
    for (std::size_t k = 0; k < cells.size(); ++k) {
        const int i = static_cast<int>(k);
        const Point2 at = begin + static_cast<double>(i) * alongRow_;
        cells[k] = isClear(at.x) && isClear(at.y)
                       ? CellIndex{cellAlong(at.x, other_.nX()), cellAlong(at.y, other_.nY())}
                       : other_.pointToCell(centreOf(grid_, i, j));
    }
}

} // namespace tessaran::grid
