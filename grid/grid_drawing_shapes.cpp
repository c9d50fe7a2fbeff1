#include "grid/grid_drawing_shapes.h"

#include "base/parallel.h"
#include "geometry/cell_outline.h"

#include <algorithm>

namespace tessaran::grid {
namespace {

using geometry::Box2;
using geometry::CellLoop;
using geometry::CellOutlines;

constexpr int kRowsATask = 16;

constexpr double kSmallestSeamCell = 2.0; // cell widths above this, drawing units

template <class ColourOf>
std::uint8_t colourOrNone(double value, const ColourOf& colourOf) {
    return base::hasValue(value) ? static_cast<std::uint8_t>(colourOf(value)) : std::uint8_t{0};
}

// The colour of a value by what is set for the grid: its colour table or one colour.
class ValueColours {
  public:
    explicit ValueColours(const myGrid& grid) : fixed_(grid.drawingSettings().colour) {
        grid.bandColour(0); // makes the default table where there is none
        table_ = &grid.colorBreaks();
    }
    int operator()(double value) const {
        return fixed_ != 0 ? fixed_ : colourOfValue(*table_, value);
    }

  private:
    int fixed_ = 0;
    const std::vector<ColourBreak>* table_ = nullptr;
};

// colourOf(value) of every cell that has a value.
template <class ColourOf>
CellColours coloursBy(const myGrid& grid, const ColourOf& colourOf) {
    const auto columns = static_cast<std::size_t>(grid.nX());
    CellColours out(columns * static_cast<std::size_t>(grid.nY()));
    base::parallelRanges(0, grid.nY(), kRowsATask, [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            const std::span<const double> row = grid.row(j).first(columns);
            std::ranges::transform(row, out.begin() + static_cast<std::ptrdiff_t>(j) * grid.nX(),
                                   [&](double value) { return colourOrNone(value, colourOf); });
        }
    });
    return out;
}

host::Loop loopThrough(const myGrid& grid, std::span<const geometry::LatticeNode> nodes) {
    host::Loop loop;
    loop.vertices.reserve(nodes.size());
    for (const geometry::LatticeNode node : nodes)
        loop.vertices.push_back({grid.nodePoint(node.i, node.j), 0.0});
    return loop;
}

// Whether all points lie on one far side of the box.
template <class Points>
bool beside(const Points& points, const Box2& box) {
    Box2 around;
    for (const Point2 p : points)
        around.add(p);
    return !around.meets(box);
}

} // namespace

CellColours coloursByValue(const myGrid& grid) {
    return coloursBy(grid, ValueColours(grid));
}

void colourColumn(const myGrid& grid, int column, CellColours& colours) {
    const ValueColours colourOf(grid);
    for (int j = 0; j < grid.nY(); ++j) {
        const std::size_t k = static_cast<std::size_t>(j) * static_cast<std::size_t>(grid.nX()) +
                              static_cast<std::size_t>(column);
        colours[k] = colourOrNone(grid.row(j)[static_cast<std::size_t>(column)], colourOf);
    }
}

const SeamLayer& seamLayer(double value) {
    if (value > base::kTolerance)
        return kSeamLayers[1];
    return kSeamLayers[value < -base::kTolerance ? 2 : 0];
}

bool drawnOnSeamLayers(const myGrid& grid) {
    return grid.cellWidthX() > kSmallestSeamCell && grid.cellWidthY() > kSmallestSeamCell;
}

CellColours coloursBySeam(const myGrid& grid) {
    return coloursBy(grid, [](double value) { return seamLayer(value).colour; });
}

CellColours oneColour(const myGrid& grid, int colour) {
    return coloursBy(grid, [colour](double /*value*/) { return colour; });
}

host::CellPatch cellPatch(const myGrid& grid, CellColours colours, bool filled) {
    return {grid.origin().plan(),
            grid.xStep().plan(),
            grid.yStep().plan(),
            grid.nX(),
            grid.nY(),
            filled,
            std::move(colours)};
}

std::vector<CellRun> columnRuns(const myGrid& grid, const CellColours& colours) {
    const auto columns = static_cast<std::size_t>(grid.nX());
    std::vector<CellRun> out;
    for (int i = 0; i < grid.nX(); ++i) {
        int colourBefore = 0;
        for (int j = 0; j < grid.nY(); ++j) {
            const int colour =
                colours[static_cast<std::size_t>(j) * columns + static_cast<std::size_t>(i)];
            if (colour != 0 && colour == colourBefore)
                out.back().lastRow = j;
            else if (colour != 0)
                out.push_back({i, j, j, colour});
            colourBefore = colour;
        }
    }
    return out;
}

std::array<Point2, 4> runOutline(const myGrid& grid, const CellRun& run) {
    const int left = run.column;
    const int top = run.lastRow + 1;
    return {grid.nodePoint(left, run.firstRow), grid.nodePoint(left + 1, run.firstRow),
            grid.nodePoint(left + 1, top), grid.nodePoint(left, top)};
}

std::vector<ColourArea> colourAreas(const myGrid& grid, const CellColours& colours) {
    const std::vector<std::int16_t> labels(colours.begin(), colours.end());
    const CellOutlines outlines =
        geometry::traceOutlines({grid.nX(), grid.nY(), std::span(labels)});
    std::vector<ColourArea> out;
    for (const CellLoop& loop : outlines.loops) {
        if (out.empty() || out.back().colour != loop.label)
            out.push_back({loop.label, {}});
        out.back().loops.push_back(loopThrough(grid, outlines.nodesOf(loop)));
    }
    return out;
}

bool gridMeetsBox(const myGrid& grid, const Box2& box) {
    const auto outline = grid.gridOutline();
    if (!outline || box.empty() || beside(*outline, box))
        return false;
    // The same seen along the grid's own axes, in cells.
    const Point2 x = grid.xStep().plan();
    const Point2 y = grid.yStep().plan();
    std::vector<Point2> corners;
    for (const Point2 corner : box.corners()) {
        const Point2 d = corner - grid.origin().plan();
        corners.push_back(
            {geometry::dot(d, x) / geometry::dot(x, x), geometry::dot(d, y) / geometry::dot(y, y)});
    }
    return !beside(corners,
                   {{0.0, 0.0}, {static_cast<double>(grid.nX()), static_cast<double>(grid.nY())}});
}

} // namespace tessaran::grid
