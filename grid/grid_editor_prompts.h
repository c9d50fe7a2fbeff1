#pragma once

// The selection prompts of the grid editor: which shape, and its points.

#include "grid/grid_edit.h"
#include "host/prompts.h"

#include <optional>
#include <string>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// One answer to the selection prompt.
struct EditorStep {
    enum class Kind {
        cells,  // `cells` to be added or removed
        remove, // shapes from here on take cells out
        none,   // a shape was left early, or a point hit no cell
        enter,
        cancel,
    };
    Kind kind = Kind::cancel;
    CellRuns cells{};
};

// Asks once. While the cursor moves, the status area tells about the cell under it.
EditorStep askEditorStep(host::Host& host, const myGrid& grid, bool removing);

// "Cell(3,4) Value: 1.50" of the cell around a point in drawing coordinates; empty outside.
std::string cellStatus(const myGrid& grid, Point2 point);

} // namespace tessaran::grid
