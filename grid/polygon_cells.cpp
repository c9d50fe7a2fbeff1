#include "grid/polygon_cells.h"

#include "geometry/cell_coverage.h"
#include "geometry/polygon.h"
#include "grid/cell_frame.h"

#include <vector>

namespace tessaran::grid {
namespace {

using base::Result;
using geometry::CellRange;
using geometry::PlanarRegion;
using geometry::Polygon;

// The share of each cell inside any of the regions, rows outer.
using Shares = std::vector<double>;

std::vector<PlanarRegion> toCells(const CellFrame& frame, std::span<const PlanarRegion> regions) {
    std::vector<PlanarRegion> inCells;
    for (const PlanarRegion& region : regions) {
        inCells.emplace_back();
        for (const Polygon& loop : region.loops)
            inCells.back().loops.push_back(frame.toCells(loop));
    }
    return inCells;
}

Result<Shares> sharesInside(const myGrid& grid, std::span<const PlanarRegion> regions) {
    const Result<PlanarRegion> all = geometry::unite(toCells(CellFrame(grid), regions));
    if (!all)
        return all.error();
    const auto columns = static_cast<std::size_t>(grid.nX());
    Shares shares(columns * static_cast<std::size_t>(grid.nY()));
    const CellRange range{0, grid.nX(), 0, grid.nY()};
    geometry::CellWalker walker;
    for (const Polygon& loop : all->loops) {
        const double sign = geometry::signedArea(loop) > 0.0 ? 1.0 : -1.0; // holes take away
        for (const geometry::CoverageRun& run : walker.coverage(loop, range)) {
            double* row = shares.data() + static_cast<std::size_t>(run.row) * columns;
            for (int i = run.columnBegin; i < run.columnEnd; ++i)
                row[i] += sign * run.covered;
        }
    }
    return shares;
}

// The cells whose share reaches the criterion, as runs.
CellRuns reaching(const myGrid& grid, const Shares& shares, double percent) {
    const double reach = percent * 0.01 - geometry::kWholeCellTolerance;
    CellRuns runs;
    std::size_t k = 0;
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = 0; i < grid.nX(); ++i, ++k) {
            if (!(shares[k] >= reach))
                continue;
            if (!runs.empty() && runs.back().row == j && runs.back().columnEnd == i)
                ++runs.back().columnEnd;
            else
                runs.push_back({j, i, i + 1});
        }
    return runs;
}

} // namespace

Result<CellSelection> cellsOfPolygons(const myGrid& grid, const PolygonCriteria& criteria) {
    CellSelection cells(grid.nX(), grid.nY());
    if (criteria.inclusion.empty()) {
        cells.add(allCells(grid));
    } else {
        const Result<Shares> inside = sharesInside(grid, criteria.inclusion);
        if (!inside)
            return inside.error();
        cells.add(reaching(grid, *inside, criteria.percent));
    }
    if (!criteria.exclusion.empty()) {
        const Result<Shares> outside = sharesInside(grid, criteria.exclusion);
        if (!outside)
            return outside.error();
        cells.remove(reaching(grid, *outside, criteria.percent));
    }
    return cells;
}

} // namespace tessaran::grid
