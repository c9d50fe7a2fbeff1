#include "base/numbers.h"
#include "cli/options.h"
#include "cli/subcommands.h"
#include "drawing/picture.h"
#include "grid/grid_drawing_shapes.h"
#include "grid/grid_file.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <numbers>

namespace tessaran::cli {
namespace {

std::string place(const geometry::Point2& p) {
    return base::shortest(p.x) + ", " + base::shortest(p.y);
}

void printGeometry(const grid::myGrid& grid) {
    fmt::print("Title        {}\n", grid.title());
    fmt::print("Cells        {} x {}\n", grid.nX(), grid.nY());
    fmt::print("Cell width   {} x {}\n", base::shortest(grid.cellWidthX()),
               base::shortest(grid.cellWidthY()));
    fmt::print("Rotation     {} degrees\n",
               base::shortest(grid.rotation() * 180.0 / std::numbers::pi));
    fmt::print("Lower left   {}\n", place(grid.nodePoint(0, 0)));
    fmt::print("Upper right  {}\n", place(grid.nodePoint(grid.nX(), grid.nY())));
}

void printStatistics(const grid::myGrid& grid) {
    if (const auto range = grid.getMinMax()) {
        fmt::print("Minimum      {}\n", base::shortest(range->min));
        fmt::print("Maximum      {}\n", base::shortest(range->max));
        fmt::print("Mean         {}\n", base::shortest(grid.getMean()));
    }
    fmt::print("No value     {} cells\n", grid.countWithoutValue());
}

base::Result<drawing::PictureSummary> draw(const grid::myGrid& grid, const std::string& path) {
    const host::CellPatch patch = grid::cellPatch(grid, grid::coloursByValue(grid), true);
    host::Box2 extent;
    const auto outline = grid.gridOutline();
    for (const auto& corner : *outline)
        extent.add(corner);
    drawing::PictureOptions options;
    options.extent = extent;
    options.title = grid.title();
    options.overlay = [&](drawing::Canvas& canvas) { canvas.cells(patch); };
    return drawing::writePicture(drawing::Database(), path, options);
}

int fail(int status, const base::Error& error) {
    fmt::print(stderr, "{}\n", error.message());
    return status;
}

} // namespace

int describeGrid(const GridOptions& options) {
    grid::myGrid grid;
    base::NoProgress progress;
    if (const auto read = grid::readGridFile(options.grid, true, grid, progress); !read)
        return fail(kWrongUsage, read.error());
    printGeometry(grid);
    printStatistics(grid);
    if (options.picture.empty())
        return kDone;
    if (!grid.isDefined())
        return fail(kFailed, base::stateError("Grid is not defined!"));
    const auto drawn = draw(grid, options.picture);
    return drawn ? kDone : fail(kFailed, drawn.error());
}

} // namespace tessaran::cli
