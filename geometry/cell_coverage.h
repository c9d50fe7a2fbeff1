#pragma once

// How much of each cell of a lattice a polygon covers, and which cell centres it holds, found by
// walking only the cells that the outline runs through; everything between is filled as whole runs.
//
// Polygons are given in cell units: cell (column, row) is the square from (column, row) to
// (column + 1, row + 1). Runs go along rows, as grids store their rows one after the other.
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

// Cells [columnBegin, columnEnd) of one row, each covered by the same share of its area, above 0.
struct CoverageRun {
    int row = 0;
    int columnBegin = 0;
    int columnEnd = 0;
    double covered = 0.0;
};

// Cells [columnBegin, columnEnd) of one row.
struct CellRun {
    int row = 0;
    int columnBegin = 0;
    int columnEnd = 0;
};

// Holds the working memory, so that one walker serves many polygons without allocating; each
// thread has its own. What is returned stays until the next call. Runs come by ascending row, in a
// row by ascending column, and no cell twice. The runs of a row do not depend on the range's other
// rows, so bands of a lattice may be walked apart.
class CellWalker {
  public:
    std::span<const CoverageRun> coverage(std::span<const Point2> polygon, const CellRange& range);

    // The cells whose centre pointInPolygon() holds inside.
    std::span<const CellRun> centresInside(std::span<const Point2> polygon, const CellRange& range);

  private:
    // What one edge does in one cell: `dy` its signed height there, `right` the signed area between
    // it and the cell's right side. A piece left of the range stands in column columnBegin - 1.
    struct Piece {
        int row = 0;
        int column = 0;
        double dy = 0.0;
        double right = 0.0;
    };
    // An edge passing the middle of a row: `column` is the first whose centre is not left of it.
    struct Crossing {
        int row = 0;
        int column = 0;
        int direction = 0;
    };

    void addEdge(const Edge& edge, const CellRange& range);
    void addPieces(int row, Point2 low, Point2 high, int direction, const CellRange& range);
    void sweepRow(std::span<Piece> pieces, const CellRange& range);
    void addCrossings(const Edge& edge, const CellRange& range);
    void sweepCentres(std::span<Crossing> crossings, const CellRange& range);
    // Also leaves in rowStart_ where each row's items begin, and their end.
    template <class Item>
    void sortByRow(const std::vector<Item>& items, std::vector<Item>& sorted,
                   const CellRange& range);
    template <class Item>
    std::span<Item> rowOf(std::vector<Item>& sorted, std::size_t row) const;

    std::vector<Piece> pieces_;
    std::vector<Piece> sortedPieces_;
    std::vector<Crossing> crossings_;
    std::vector<Crossing> sortedCrossings_;
    std::vector<std::uint32_t> rowStart_;
    std::vector<CoverageRun> runs_;
    std::vector<CellRun> cellRuns_;
};

} // namespace tessaran::geometry
