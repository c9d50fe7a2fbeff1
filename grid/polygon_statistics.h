#pragma once

// Statistics of the cells in and out of polygons that the user selects.

#include "grid/grid_statistics.h"

#include <optional>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// Asks for the polygons and for how much of a cell has to lie in them. Closed polylines, circles
// and regions count; others are left out, which is told. Nothing when the user ended it.
std::optional<GridStatistics> askPolygonStatistics(host::Host& host, const myGrid& grid);

} // namespace tessaran::grid
