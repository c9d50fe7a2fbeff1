#pragma once

// The base grid: the one geometry that all grids built for a drawing share, kept per open drawing
// as the seven texts of the "Grid Dimension" page, just as they were typed or picked.

#include "grid/my_grid.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

struct BaseGrid {
    std::string cellsX;
    std::string cellsY;
    std::string widthX; // drawing units
    std::string widthY;
    std::string rotation = "0"; // degrees from the world's X axis
    std::string originX = "0";  // world coordinates of the low-left corner of cell (0, 0)
    std::string originY = "0";

    friend bool operator==(const BaseGrid&, const BaseGrid&) = default;
};

// A count or width that reads as the whole number 0 (so a width of 0.5 too) gives way to this.
inline constexpr const char* kCountAndWidthDefault = "10";

// One text that gave way although something stood in it.
struct BaseGridReset {
    std::string_view what;
    std::string text;
};

// Replaces counts and widths that read as the whole number 0; tells which were not just empty.
std::vector<BaseGridReset> fillCountsAndWidths(BaseGrid& base);

// Cells in X times cells in Y, below 1 for counts below 1.
long long totalCells(const BaseGrid& base);

// Sets the grid up from the texts. False when that fails or the grid is not defined afterwards.
bool setupFromBaseGrid(const BaseGrid& base, myGrid& grid);

// The texts that describe a grid ("%d" and "%f").
BaseGrid baseGridOf(const myGrid& grid);

// --- the current drawing's base grid ------------------------------------------------------------

BaseGrid& baseGrid(host::Host& host);

// What a grid builder begins with: its grid laid out by the drawing's base grid, all cells blank.
// False when the base grid is no usable definition.
bool defineFromBaseGrid(host::Host& host, myGrid& grid);

// Keeps the texts in the drawing's dictionary and in the application's profile. Both copies are for
// the record; nothing reads them back. False when the drawing could not take its copy.
bool recordBaseGrid(host::Host& host, const BaseGrid& base);

} // namespace tessaran::grid
