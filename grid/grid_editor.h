#pragma once

// The grid editor: the grid's cells are shown over the plan, the user selects cells with the host's
// selection shapes and gives all of them one value, as often as needed, and accepts or discards
// what was changed in the end.

#include <string>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

class myGrid;

// True when the user accepted changes, which the grid then holds; false when nothing was changed or
// the changes were discarded: every value is as before. A grid that is not defined is refused.
bool editGrid(host::Host& host, myGrid& grid);

// Edits a grid file in place; it is written only when changes were accepted. True when it was.
bool editGridFile(host::Host& host, const std::string& fileName);

} // namespace tessaran::grid
