#pragma once

// Legends: a box in each band's colour with the band's label beside it.

#include "grid/colour_ramp.h"
#include "host/entity.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

using geometry::Point2;

// Where rows of boxes go, in world coordinates; the corners are sorted in the user's system.
struct LegendPlace {
    Point2 low;
    Point2 high;
};

// Asks for two corners of a place for that many rows. Nothing when the user ended it or the place
// is flat, which is told.
std::optional<LegendPlace> askLegendPlace(host::Host& host, std::size_t rows);

// A solid box, and a text left of whose middle `at` lies.
host::Entity legendBox(Point2 low, Point2 high, int colour, const std::string& layer);
host::Entity legendText(Point2 at, double height, std::string text, const std::string& layer);

// Adds the objects and gathers those that the drawing took under the name; true when it took all.
bool addGathered(host::Host& host, std::vector<host::Entity> objects, const std::string& name);

// The legend's objects, the lowest band at the bottom: for each band a solid hatch, then its label
// right of it, on `layer`.
std::vector<host::Entity> legendObjects(const std::vector<ColourBreak>& table,
                                        const LegendPlace& place, const std::string& layer);

// Asks for two corners and draws the legend of a colour table (of a ramp: ramp.table(); of a grid:
// grid.colorBreaks()) on the current layer, gathered as group "ZELK Lengend". True when drawn.
bool drawLegend(host::Host& host, const std::vector<ColourBreak>& table);

} // namespace tessaran::grid
