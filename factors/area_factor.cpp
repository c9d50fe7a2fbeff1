#include "factors/area_factor.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "geometry/polygon.h"

#include <atomic>

namespace tessaran::factors {

namespace {

using geometry::CellRange;
using geometry::Point2;
using geometry::Polygon;
using grid::BoundaryInCells;
using grid::myGrid;

constexpr double kMiddlePointShare = 0.5;
// Rows that one thread takes at a time.
constexpr int kRowsPerTask = 32;

// A boundary whose box covers one column or one row of cells only.
bool inOneLine(const CellRange& cells) {
    return cells.columnEnd - cells.columnBegin < 2 || cells.rowEnd - cells.rowBegin < 2;
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
    return grid::shareOfPercent(options.minimumAreaPercent);
}

grid::CellTest testOf(AreaAlgorithm algorithm) {
    return algorithm == AreaAlgorithm::middlePoint ? grid::CellTest::middlePoint
                                                   : grid::CellTest::area;
}

// While a grid is built its cells hold shares.
class Build {
  public:
    Build(myGrid& grid, const AreaFactorOptions& options)
        : grid_(grid), options_(options), share_(shareToReach(options)),
          cells_(grid, testOf(options.algorithm), share_) {
        grid_.fillValue(0.0);
    }

    void add(std::span<const Point2> boundary) {
        std::optional<BoundaryInCells> inCells = grid::boundaryInCells(grid_, boundary);
        if (!inCells) {
            ++result_.boundariesWithoutShape;
            return;
        }
        if (inOneLine(inCells->cells)) {
            ++result_.boundariesInOneLine;
            return;
        }
        ++result_.boundariesUsed;
        cells_.add(std::move(*inCells));
    }

    AreaFactorResult assignFactors(bool cancelled) {
        cells_.workOff();
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
    grid::BoundaryCells cells_;
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
    const auto inCells = grid::boundaryInCells(grid, boundary);
    return !inCells || inOneLine(inCells->cells) ? CellRange{} : inCells->cells;
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
    progress.end();
    return build.assignFactors(cancelled);
}

std::vector<OverlappingPair> overlappingBoundaries(std::span<const Polygon> boundaries) {
    return grid::overlappingPairs(boundaries, base::kTolerance);
}

} // namespace tessaran::factors
