#pragma once

// The objects of the plan that lie over a grid, and the grid's outline among temporary graphics.

#include "geometry/point.h"
#include "grid/my_grid.h"
#include "host/entity.h"
#include "host/graphics.h"

#include <string>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// The grid's outline with every side moved outwards by `reach`, drawing units.
geometry::Polygon outlineAround(const myGrid& grid, double reach);

// Objects of these types on these layers that cross or lie inside that outline, in drawing order.
std::vector<host::EntityId> objectsOverGrid(host::Host& host, const myGrid& grid, double reach,
                                            const std::vector<std::string>& layers,
                                            const std::vector<std::string>& types);

void showGridOutline(host::ShownGraphics& shown, const myGrid& grid, int colour);

// Columns [from, to) of the grid as cell outlines in their values' colours.
host::CellPatch outlinesOfColumns(const myGrid& grid, int from, int to);

} // namespace tessaran::grid
