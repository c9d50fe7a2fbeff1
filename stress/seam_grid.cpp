#include "stress/seam_grid.h"

#include "base/tolerance.h"
#include "grid/boundary_cells.h"

#include <numbers>
#include <string_view>

namespace tessaran::stress {
namespace {

using geometry::Polygon;
using grid::myGrid;

constexpr double kMiddlePointShare = 0.5;

double shareToReach(const SeamGridOptions& options) {
    return options.algorithm == SeamAlgorithm::areaBased
               ? grid::shareOfPercent(options.minimumAreaPercent)
               : kMiddlePointShare;
}

// Adds the outlines up in `grid`; false when the user ended it.
bool addOutlines(myGrid& grid, std::span<const Polygon> outlines, const SeamGridOptions& options,
                 std::string_view text, base::Progress& progress, SeamGridResult& result) {
    const auto test = options.algorithm == SeamAlgorithm::areaBased ? grid::CellTest::area
                                                                    : grid::CellTest::middlePoint;
    grid::BoundaryCells cells(grid, test, shareToReach(options));
    grid.fillValue(0.0);
    const auto count = static_cast<long>(outlines.size());
    base::ProgressRun run(progress, text, 0, count - 1);
    for (long k = 0; k < count && !result.cancelled; ++k) {
        run.at(k);
        if (auto outline = grid::boundaryInCells(grid, outlines[static_cast<std::size_t>(k)]))
            cells.add(std::move(*outline));
        else
            ++result.withoutShape;
        result.cancelled = progress.cancelled();
    }
    cells.workOff();
    return !result.cancelled;
}

bool sameGeometry(const myGrid& from, myGrid& to) {
    to.setOrigin(from.origin().x, from.origin().y, 0.0);
    return to.setupGrid(from.nX(), from.nY(), from.cellWidthX(), from.cellWidthY(),
                        from.rotation() * 180.0 / std::numbers::pi);
}

} // namespace

SeamGridResult buildSeamGrid(myGrid& grid, std::span<const Polygon> pillars,
                             std::span<const Polygon> gobs, const SeamGridOptions& options,
                             base::Progress& progress) {
    SeamGridResult result;
    if (!addOutlines(grid, pillars, options, "Search cells against pillars ...", progress, result))
        return result;
    myGrid gob;
    const bool withGobs = !gobs.empty() && sameGeometry(grid, gob);
    if (withGobs &&
        !addOutlines(gob, gobs, options, "Search cells against gob polygons ...", progress, result))
        return result;
    const double share = shareToReach(options);
    const auto columns = static_cast<std::size_t>(grid.nX());
    for (int j = 0; j < grid.nY(); ++j) {
        double* row = grid.row(j).data();
        const double* gobRow = withGobs ? gob.row(j).data() : nullptr;
        for (std::size_t i = 0; i < columns; ++i) {
            const bool isGob = gobRow != nullptr && gobRow[i] >= share;
            row[i] = row[i] >= share ? kPillarCell : (isGob ? kGobCell : kEntryCell);
        }
    }
    return result;
}

double nextSeamCell(double value) {
    if (value > base::kTolerance)
        return kGobCell;
    return value < -base::kTolerance ? kEntryCell : kPillarCell;
}

} // namespace tessaran::stress
