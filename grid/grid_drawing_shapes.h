#pragma once

// What a drawn grid consists of, as plain shapes: colours of cells, runs and areas of equal colour.

#include "grid/my_grid.h"
#include "host/entity.h"
#include "host/graphics.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tessaran::grid {

// One colour index a cell, rows outer (j * nX + i); 0: the cell has no value.
using CellColours = std::vector<std::uint8_t>;

// By the grid's colour table, or all in the colour of its drawing settings where that is set.
CellColours coloursByValue(const myGrid& grid);
// The same for one column only, into its places in `colours`.
void colourColumn(const myGrid& grid, int column, CellColours& colours);

// The layers of a seam's cells: mined openings, coal pillars and caved areas.
struct SeamLayer {
    const char* name;
    int colour;
};
inline constexpr std::array<SeamLayer, 3> kSeamLayers{SeamLayer{"MineGrid_Opening", 3},
                                                      SeamLayer{"MineGrid_Pillar", 1},
                                                      SeamLayer{"MineGrid_Gob", 2}};
// By a cell's value: above zero a pillar, below a gob, else an opening.
const SeamLayer& seamLayer(double value);
// Whether the cells are large enough for their layers; smaller ones are drawn plainly.
bool drawnOnSeamLayers(const myGrid& grid);

CellColours coloursBySeam(const myGrid& grid);
CellColours oneColour(const myGrid& grid, int colour);

// Cell lines stand out every tenth time.
constexpr int lineColour(int number) {
    return number % 10 == 0 ? 6 : 7;
}

// The cells as one graphic.
host::CellPatch cellPatch(const myGrid& grid, CellColours colours, bool filled);

// Cells (column, firstRow..lastRow) of one colour, as long as they go.
struct CellRun {
    int column = 0;
    int firstRow = 0;
    int lastRow = 0;
    int colour = 0;

    friend bool operator==(const CellRun&, const CellRun&) = default;
};
// Column by column; cells without value belong to none.
std::vector<CellRun> columnRuns(const myGrid& grid, const CellColours& colours);
std::array<Point2, 4> runOutline(const myGrid& grid, const CellRun& run);

// All cells of one colour: loops around them, by the even-odd rule.
struct ColourArea {
    int colour = 0;
    std::vector<host::Loop> loops;
};
// By ascending colour.
std::vector<ColourArea> colourAreas(const myGrid& grid, const CellColours& colours);

// Whether the grid's outline and the box have a point in common.
bool gridMeetsBox(const myGrid& grid, const geometry::Box2& box);

} // namespace tessaran::grid
