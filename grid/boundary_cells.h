#pragma once

// Boundaries held against the cells of a grid: by the cells' middle points, or by the share of each
// cell's area that they cover. Every grid that is made from closed outlines counts so.
//
// Boundaries are the vertex polygons of closed outlines in drawing coordinates.

#include "geometry/cell_coverage.h"
#include "geometry/point.h"
#include "grid/cell_frame.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::grid {

enum class CellTest { middlePoint, area };

// A boundary in the grid's own frame with the cells of its box, held within the grid and never
// empty.
struct BoundaryInCells {
    geometry::Polygon outline; // cell units
    geometry::CellRange cells;
};
// Nothing for a boundary without vertices or with coordinates of no use.
std::optional<BoundaryInCells> boundaryInCells(const myGrid& grid,
                                               std::span<const Point2> boundary);

// Adds boundaries up in a grid whose cells begin at 0: 1 in every cell whose middle point a
// boundary holds, or the covered shares of the cells' areas. By area a cell that has reached
// `enough` takes no more. Boundaries count in the order given, whatever the number of threads.
class BoundaryCells {
  public:
    BoundaryCells(myGrid& grid, CellTest test, double enough)
        : grid_(grid), test_(test), enough_(enough) {}

    void add(BoundaryInCells boundary);
    // Boundaries are worked off together; call it after the last one.
    void workOff();

  private:
    void addToRows(int begin, int end) const;
    void addCentres(std::span<const geometry::CellRun> runs) const;
    void addShares(std::span<const geometry::CoverageRun> runs) const;

    myGrid& grid_;
    CellTest test_;
    double enough_;
    std::vector<BoundaryInCells> waiting_;
    long waitingCells_ = 0;
};

// The share of a cell's area that counts as so many percent: shares within 1e-9 of it reach it.
inline double shareOfPercent(int percent) {
    return percent * 0.01 - geometry::kWholeCellTolerance;
}

// Pairs (a, b), a < b, of boundaries whose common area, square drawing units, is above `above`.
struct OverlappingPair {
    std::size_t a = 0;
    std::size_t b = 0;

    friend bool operator==(OverlappingPair, OverlappingPair) = default;
};
std::vector<OverlappingPair> overlappingPairs(std::span<const geometry::Polygon> boundaries,
                                              double above);

} // namespace tessaran::grid
