#include "grid/grid_objects.h"

#include "base/tolerance.h"
#include "host/host.h"

namespace tessaran::grid {

using geometry::Point2;
using geometry::Polygon;

Polygon outlineAround(const myGrid& grid, double reach) {
    const auto outline = grid.gridOutline();
    if (!outline)
        return {};
    const Point2 along{std::cos(grid.rotation()), std::sin(grid.rotation())};
    const Point2 up{-along.y, along.x};
    const auto moved = [&](std::size_t k, double x, double y) {
        return (*outline)[k] + (x * reach) * along + (y * reach) * up;
    };
    return {moved(0, -1, -1), moved(1, 1, -1), moved(2, 1, 1), moved(3, -1, 1)};
}

std::vector<host::EntityId> objectsOverGrid(host::Host& host, const myGrid& grid, double reach,
                                            const std::vector<std::string>& layers,
                                            const std::vector<std::string>& types) {
    if (layers.empty())
        return {};
    return host.drawing().select({host::SelectionShape::Kind::crossing, outlineAround(grid, reach)},
                                 {layers, types, {}});
}

void showGridOutline(host::ShownGraphics& shown, const myGrid& grid, int colour) {
    shown.polyline(outlineAround(grid, 0.0), true, colour);
}

host::CellPatch outlinesOfColumns(const myGrid& grid, int from, int to) {
    host::CellPatch patch{grid.nodePoint(from, 0),
                          grid.xStep().plan(),
                          grid.yStep().plan(),
                          to - from,
                          grid.nY(),
                          false,
                          {}};
    patch.colours.reserve(static_cast<std::size_t>(to - from) *
                          static_cast<std::size_t>(grid.nY()));
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = from; i < to; ++i) {
            const double value = grid.getValue(i, j);
            const int colour = base::hasValue(value) ? grid.colourOfValue(value) : 0;
            patch.colours.push_back(static_cast<std::uint8_t>(colour));
        }
    return patch;
}

} // namespace tessaran::grid
