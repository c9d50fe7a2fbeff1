#pragma once

// What each colour band of a grid takes up, drawn as a table: a box in the band's colour, its
// label, its share of the cells in percent and its area, one row a band.

#include "grid/grid_statistics.h"
#include "grid/legend.h"

#include <string>
#include <vector>

namespace tessaran::grid {

// A colour table that shares can be counted by: a band at least, breaks ascending.
bool isUsableTable(const std::vector<ColourBreak>& table);

// The table's objects within the place, the lowest band at the bottom: box, label, share, area of
// each row in turn. Texts are as high as they fit.
std::vector<host::Entity> percentageObjects(const std::vector<BandShare>& shares,
                                            const LegendPlace& place, const std::string& layer);

// Asks for two corners and draws the table, gathered as group "ZELK Group Percentage". True when
// drawn.
bool drawGroupPercentage(host::Host& host, const std::vector<BandShare>& shares,
                         const std::string& layer);

// One line a band, from the highest.
std::string percentageText(const std::vector<BandShare>& shares);

} // namespace tessaran::grid
