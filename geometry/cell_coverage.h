#pragma once

// How much of each cell of a lattice a polygon covers, and which cell centres it holds, found by
// walking only the cells that the outline runs through; everything between is filled as whole runs.
//
// Polygons are given in cell units: cell (column, row) is the square from (column, row) to
// (column + 1, row + 1). Runs go along columns because grids store their columns contiguously.
//
// Covered shares are those of clipping each cell's square by itself: the absolute value of the
// signed area of the outline within it. Where a self-crossing outline winds twice around a cell the
// share is 2.

#include "geometry/point.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaran::geometry {

struct Edge;

// Cells of the columns [columnBegin, columnEnd) and rows [rowBegin, rowEnd).
struct CellRange {
    int columnBegin = 0;
    int columnEnd = 0;
    int rowBegin = 0;
    int rowEnd = 0;

    bool empty() const { return columnBegin >= columnEnd || rowBegin >= rowEnd; }
};

// Shares this close to a whole number are that number: a cell wholly inside counts as exactly 1
// whatever the rounding of coordinates in the millions.
inline constexpr double kWholeCellTolerance = 1e-9;

// Cells [rowBegin, rowEnd) of one column, each covered by the same share of its area, above 0.
struct CoverageRun {
    int column = 0;
    int rowBegin = 0;
    int rowEnd = 0;
    double covered = 0.0;
};

// Cells [rowBegin, rowEnd) of one column.
struct CellRun {
    int column = 0;
    int rowBegin = 0;
    int rowEnd = 0;
};

// Holds the working memory, so that one walker serves many polygons without allocating; each
// thread has its own. What is returned stays until the next call. Runs come by ascending column,
// and no cell twice. The runs of a column do not depend on the
// range's other columns, so strips of a lattice may be walked apart.
class CellWalker {
  public:
    std::span<const CoverageRun> coverage(std::span<const Point2> polygon, const CellRange& range);

    // The cells whose centre pointInPolygon() holds inside.
    std::span<const CellRun> centresInside(std::span<const Point2> polygon, const CellRange& range);

  private:
    // What one edge does in one cell: `dx` its signed width there, `below` the signed area between
    // it and the cell's lower side. A piece above the range stands in row rowEnd.
    struct Piece {
        int column = 0;
        int row = 0;
        double dx = 0.0;
        double below = 0.0;
    };
    // An edge passing a column's middle: `row` is the first whose centre is not below it.
    struct Crossing {
        int column = 0;
        int row = 0;
        int direction = 0;
    };

    void addEdge(const Edge& edge, const CellRange& range);
    void addPieces(int column, Point2 left, Point2 right, int direction, const CellRange& range);
    void sweepColumn(std::span<Piece> pieces, const CellRange& range);
    void addCrossings(const Edge& edge, const CellRange& range);
    void sweepCentres(std::span<Crossing> crossings, const CellRange& range);
    // Also leaves in columnStart_ where each column's items begin, and their end.
    template <class Item>
    void sortByColumn(const std::vector<Item>& items, std::vector<Item>& sorted,
                      const CellRange& range);

    std::vector<Piece> pieces_;
    std::vector<Piece> sortedPieces_;
    std::vector<Crossing> crossings_;
    std::vector<Crossing> sortedCrossings_;
    std::vector<std::uint32_t> columnStart_;
    std::vector<CoverageRun> runs_;
    std::vector<CellRun> cellRuns_;
};

} // namespace tessaran::geometry
