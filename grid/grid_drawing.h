#pragma once

// Grids in the drawing: previews of a grid's geometry and colour maps of its values.
//
// After a build a page calls drawAfterBuild: what is shown is temporary, one graphic whatever the
// number of cells, until the user answers; only "Keep" makes objects of it. A button that draws for
// good calls drawForGood.

#include "grid/my_grid.h"

namespace tessaran::grid {

struct DrawMode {
    enum class Kind { preview, colourMap };
    Kind kind = Kind::colourMap;
    int number = 5;
};

// Previews: every cell line (every tenth one stands out), every cell's outline in its value's
// colour, or every cell's outline on the layer of what it is in a seam.
inline constexpr DrawMode kPreviewLines{DrawMode::Kind::preview, 1};
inline constexpr DrawMode kPreviewCells{DrawMode::Kind::preview, 2};
inline constexpr DrawMode kPreviewSeam{DrawMode::Kind::preview, 3};

// Colour maps by the grid's colour table. 0, 1 and 2: every cell's outline; 3: outlines of the runs
// of equal colour in each column; 4: outlines of the areas of equal colour; 5: every cell filled,
// one solid hatch a colour; 6: 3-D faces at the values' height; 7: as 5, told step by step and
// stopped by the cancel key.
inline constexpr DrawMode kMapRuns{DrawMode::Kind::colourMap, 3};
inline constexpr DrawMode kMapFilled{DrawMode::Kind::colourMap, 5};
inline constexpr DrawMode kMapRegions{DrawMode::Kind::colourMap, 7};
constexpr DrawMode colourMap(int number) {
    return {DrawMode::Kind::colourMap, number};
}

// More objects than this are only put into the drawing after a question.
inline constexpr std::size_t kManyObjects = 250000;

// Both refuse an undefined grid, warn when it lies outside the view, and print how many cells have
// no value. Maps go to the layer of the grid's drawing settings, or to the current one.

// Shows the grid until the user answers; true when it was kept (as group "PlekGrid").
bool drawAfterBuild(host::Host& host, myGrid& grid, DrawMode mode);

// Previews are gathered as group "PlekGrid", filled maps as group "Zelk_Grid_Group". True when
// everything was drawn.
bool drawForGood(host::Host& host, myGrid& grid, DrawMode mode);
// By the mode of the grid's drawing settings.
bool drawForGood(host::Host& host, myGrid& grid);

} // namespace tessaran::grid
