#pragma once

// Legends: a box in each band's colour with the band's label beside it.

#include "grid/colour_ramp.h"
#include "host/entity.h"

#include <string>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// The legend's objects, the lowest band at the bottom: for each band a solid hatch, then its label
// right of it, on `layer`. `low` and `high` are the boxes' corners in world coordinates.
std::vector<host::Entity> legendObjects(const std::vector<ColourBreak>& table,
                                        const geometry::Point2& low, const geometry::Point2& high,
                                        const std::string& layer);

// Asks for two corners and draws the legend of a colour table (of a ramp: ramp.table(); of a grid:
// grid.colorBreaks()) on the current layer, gathered as group "ZELK Lengend". True when drawn.
bool drawLegend(host::Host& host, const std::vector<ColourBreak>& table);

} // namespace tessaran::grid
