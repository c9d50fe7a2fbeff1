#pragma once

// The drawing's objects that a grid is drawn with.

#include "grid/grid_drawing.h"
#include "host/host.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {

// How many objects a mode would put into the drawing.
std::size_t objectCount(const myGrid& grid, DrawMode mode);

// Adds them. Nothing when the layer could not be made, the drawing refused an object, or the user
// stopped; then none of them is left in the drawing.
std::optional<std::vector<host::EntityId>> addObjects(host::Host& host, const myGrid& grid,
                                                      DrawMode mode);

} // namespace tessaran::grid
