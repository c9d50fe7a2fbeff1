#include "grid/boundary_cells.h"

#include "base/parallel.h"
#include "geometry/box_index.h"
#include "geometry/polygon.h"

#include <algorithm>
#include <cmath>

namespace tessaran::grid {
namespace {

using geometry::Box2;
using geometry::CellRange;
using geometry::CellRun;
using geometry::CellWalker;
using geometry::CoverageRun;
using geometry::Polygon;

// Rows that one thread takes at a time.
constexpr int kRowsPerTask = 32;
// Boundaries are worked off together up to so many cells: enough to keep all threads busy, few
// enough that a user break is seen at once.
constexpr long kCellsPerBatch = 1'000'000;

// The cell at a coordinate, held within the grid.
int heldCell(double at, int count) {
    return static_cast<int>(std::clamp(std::floor(at), 0.0, count - 1.0));
}

long cellCount(const CellRange& range) {
    return static_cast<long>(range.columnEnd - range.columnBegin) * (range.rowEnd - range.rowBegin);
}

CellRange rowsOf(CellRange range, int rowBegin, int rowEnd) {
    range.rowBegin = std::max(range.rowBegin, rowBegin);
    range.rowEnd = std::min(range.rowEnd, rowEnd);
    return range;
}

} // namespace

std::optional<BoundaryInCells> boundaryInCells(const myGrid& grid,
                                               std::span<const Point2> boundary) {
    Polygon outline = CellFrame(grid).toCells(boundary);
    if (outline.empty() || !geometry::isUsable(outline))
        return std::nullopt;
    const Box2 box = geometry::boxOf(outline);
    const CellRange cells{heldCell(box.low.x, grid.nX()), heldCell(box.high.x, grid.nX()) + 1,
                          heldCell(box.low.y, grid.nY()), heldCell(box.high.y, grid.nY()) + 1};
    return BoundaryInCells{std::move(outline), cells};
}

void BoundaryCells::add(BoundaryInCells boundary) {
    waitingCells_ += cellCount(boundary.cells);
    waiting_.push_back(std::move(boundary));
    if (waitingCells_ >= kCellsPerBatch)
        workOff();
}

// Rows are independent and take the boundaries in order, so the threads change nothing.
void BoundaryCells::workOff() {
    int rowBegin = grid_.nY();
    int rowEnd = 0;
    for (const BoundaryInCells& boundary : waiting_) {
        rowBegin = std::min(rowBegin, boundary.cells.rowBegin);
        rowEnd = std::max(rowEnd, boundary.cells.rowEnd);
    }
    if (rowBegin < rowEnd)
        base::parallelRanges(rowBegin, rowEnd, kRowsPerTask,
                             [&](int begin, int end) { addToRows(begin, end); });
    waiting_.clear();
    waitingCells_ = 0;
}

void BoundaryCells::addToRows(int begin, int end) const {
    CellWalker walker;
    for (const BoundaryInCells& boundary : waiting_) {
        const CellRange cells = rowsOf(boundary.cells, begin, end);
        if (cells.empty())
            continue;
        if (test_ == CellTest::middlePoint)
            addCentres(walker.centresInside(boundary.outline, cells));
        else
            addShares(walker.coverage(boundary.outline, cells));
    }
}

void BoundaryCells::addCentres(std::span<const CellRun> runs) const {
    for (const CellRun& run : runs) {
        double* row = grid_.row(run.row).data();
        std::fill(row + run.columnBegin, row + run.columnEnd, 1.0);
    }
}

void BoundaryCells::addShares(std::span<const CoverageRun> runs) const {
    for (const CoverageRun& run : runs) {
        double* row = grid_.row(run.row).data();
        for (int i = run.columnBegin; i < run.columnEnd; ++i)
            row[i] += row[i] < enough_ ? run.covered : 0.0;
    }
}

std::vector<OverlappingPair> overlappingPairs(std::span<const Polygon> boundaries, double above) {
    std::vector<Box2> boxes;
    for (const Polygon& boundary : boundaries)
        boxes.push_back(geometry::isUsable(boundary) ? geometry::boxOf(boundary) : Box2{});
    const geometry::BoxIndex index(boxes);
    std::vector<OverlappingPair> pairs;
    for (std::size_t a = 0; a < boundaries.size(); ++a)
        for (const std::size_t b : index.query(boxes[a]))
            if (a < b && geometry::overlapArea(boundaries[a], boundaries[b]) > above)
                pairs.push_back({a, b});
    return pairs;
}

} // namespace tessaran::grid
