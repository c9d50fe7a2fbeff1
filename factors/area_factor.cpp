#include "factors/area_factor.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "geometry/box_index.h"
#include "geometry/polygon.h"
#include "grid/cell_frame.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace tessaran::factors {

namespace {

using geometry::Box2;
using geometry::CellRange;
using geometry::CellRun;
using geometry::CellWalker;
using geometry::CoverageRun;
using geometry::Point2;
using geometry::Polygon;
using grid::CellFrame;
using grid::myGrid;

constexpr double kMiddlePointShare = 0.5;
// Rows that one thread takes at a time.
constexpr int kRowsPerTask = 32;
// Boundaries are worked off together up to so many cells: enough to keep all threads busy, few
// enough that a user break is seen at once.
constexpr long kCellsPerBatch = 1'000'000;

struct BoundaryInCells {
    Polygon outline; // cell units
    CellRange cells;
};

// The cell at a coordinate, held within the grid.
int heldCell(double at, int count) {
    return static_cast<int>(std::clamp(std::floor(at), 0.0, count - 1.0));
}

CellRange cellsOfOutline(const myGrid& grid, const Polygon& outline) {
    const Box2 box = geometry::boxOf(outline);
    const int i0 = heldCell(box.low.x, grid.nX());
    const int j0 = heldCell(box.low.y, grid.nY());
    const int i1 = heldCell(box.high.x, grid.nX());
    const int j1 = heldCell(box.high.y, grid.nY());
    if (i0 >= i1 || j0 >= j1)
        return {};
    return {i0, i1 + 1, j0, j1 + 1};
}

long cellCount(const CellRange& range) {
    return static_cast<long>(range.columnEnd - range.columnBegin) * (range.rowEnd - range.rowBegin);
}

CellRange rowsOf(CellRange range, int rowBegin, int rowEnd) {
    range.rowBegin = std::max(range.rowBegin, rowBegin);
    range.rowEnd = std::min(range.rowEnd, rowEnd);
    return range;
}

// The share of a cell at which it is inside.
double shareToReach(const AreaFactorOptions& options) {
    switch (options.algorithm) {
    case AreaAlgorithm::none:
        return 0.0;
    case AreaAlgorithm::middlePoint:
        return kMiddlePointShare;
    case AreaAlgorithm::areaBased:
        break;
    }
    return options.minimumAreaPercent * 0.01 - geometry::kWholeCellTolerance;
}

// While a grid is built its cells hold shares.
class Build {
  public:
    Build(myGrid& grid, const AreaFactorOptions& options)
        : grid_(grid), options_(options), share_(shareToReach(options)), frame_(grid) {
        grid_.fillValue(0.0);
    }

    void add(std::span<const Point2> boundary) {
        const Polygon outline = frame_.toCells(boundary);
        if (outline.empty() || !geometry::isUsable(outline)) {
            ++result_.boundariesWithoutShape;
            return;
        }
        const CellRange cells = cellsOfOutline(grid_, outline);
        if (cells.empty()) {
            ++result_.boundariesInOneLine;
            return;
        }
        ++result_.boundariesUsed;
        waitingCells_ += cellCount(cells);
        waiting_.push_back({outline, cells});
        if (waitingCells_ >= kCellsPerBatch)
            workOff();
    }

    // Rows are independent and take the boundaries in order, so the threads change nothing.
    void workOff() {
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

    AreaFactorResult assignFactors(bool cancelled) {
        std::atomic<std::size_t> inside{0};
        base::parallelRanges(0, grid_.nY(), kRowsPerTask, [&](int begin, int end) {
            std::size_t here = 0;
            for (int j = begin; j < end; ++j)
                here += assignRow(grid_.row(j).first(static_cast<std::size_t>(grid_.nX())));
            inside += here;
        });
        result_.cellsInside = inside;
        result_.cancelled = cancelled;
        return result_;
    }

  private:
    void addToRows(int begin, int end) const {
        CellWalker walker;
        for (const BoundaryInCells& boundary : waiting_) {
            const CellRange cells = rowsOf(boundary.cells, begin, end);
            if (cells.empty())
                continue;
            if (options_.algorithm == AreaAlgorithm::middlePoint)
                addCentres(walker.centresInside(boundary.outline, cells));
            else
                addShares(walker.coverage(boundary.outline, cells));
        }
    }

    void addCentres(std::span<const CellRun> runs) const {
        for (const CellRun& run : runs) {
            double* row = grid_.row(run.row).data();
            std::fill(row + run.columnBegin, row + run.columnEnd, 1.0);
        }
    }

    void addShares(std::span<const CoverageRun> runs) const {
        for (const CoverageRun& run : runs) {
            double* row = grid_.row(run.row).data();
            for (int i = run.columnBegin; i < run.columnEnd; ++i)
                row[i] += row[i] < share_ ? run.covered : 0.0;
        }
    }

    std::size_t assignRow(std::span<double> row) const {
        std::size_t inside = 0;
        for (double& value : row) {
            const bool reached = value >= share_;
            inside += reached ? 1U : 0U;
            value = reached ? options_.insideFactor : options_.outsideFactor;
        }
        return inside;
    }

    myGrid& grid_;
    const AreaFactorOptions& options_;
    double share_;
    CellFrame frame_;
    std::vector<BoundaryInCells> waiting_;
    long waitingCells_ = 0;
    AreaFactorResult result_;
};

} // namespace

bool isRelatedToGrid(const myGrid& grid, std::span<const Point2> boundary) {
    const auto outline = grid.gridOutline();
    return outline && geometry::intersectionArea(*outline, boundary) > base::kTolerance;
}

CellRange cellsOfBoundary(const myGrid& grid, std::span<const Point2> boundary) {
    if (!grid.isDefined())
        return {};
    const Polygon outline = CellFrame(grid).toCells(boundary);
    if (outline.empty() || !geometry::isUsable(outline))
        return {};
    return cellsOfOutline(grid, outline);
}

AreaFactorResult buildAreaFactor(myGrid& grid, std::span<const Polygon> boundaries,
                                 const AreaFactorOptions& options, base::Progress& progress) {
    if (!grid.isDefined())
        return {};
    Build build(grid, options);
    const auto count = static_cast<long>(boundaries.size());
    progress.begin("Search cells against boundaries ...", 0, count - 1);
    bool cancelled = false;
    for (long k = 0; k < count && !cancelled; ++k) {
        progress.setPosition(k);
        build.add(boundaries[static_cast<std::size_t>(k)]);
        cancelled = progress.cancelled();
    }
    build.workOff();
    progress.end();
    return build.assignFactors(cancelled);
}

std::vector<OverlappingPair> overlappingBoundaries(std::span<const Polygon> boundaries) {
    std::vector<Box2> boxes;
    for (const Polygon& boundary : boundaries)
        boxes.push_back(geometry::isUsable(boundary) ? geometry::boxOf(boundary) : Box2{});
    const geometry::BoxIndex index(boxes);
    std::vector<OverlappingPair> pairs;
    for (std::size_t a = 0; a < boundaries.size(); ++a)
        for (const std::size_t b : index.query(boxes[a]))
            if (a < b && geometry::overlapArea(boundaries[a], boundaries[b]) > base::kTolerance)
                pairs.push_back({a, b});
    return pairs;
}

} // namespace tessaran::factors
