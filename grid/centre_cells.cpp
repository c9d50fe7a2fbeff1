#include "grid/centre_cells.h"

namespace tessaran::grid {
namespace {

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

CellIndex CentreCells::locatedExactly(int i, int j) const {
    return other_.pointToCell(centreOf(grid_, i, j));
}

} // namespace tessaran::grid
