#include "stress/seam_commands.h"

#include "grid/base_grid_pages.h"
#include "stress/seam_pages.h"

namespace tessaran::stress {

void zelk_seamGrid(host::Host& host) {
    grid::CGridTab grid;
    CSeamTab seam;
    host::Dialog dialog("Seam Grid Generator for Plekton", {&grid, &seam});
    host::runDialog(host, dialog);
}

} // namespace tessaran::stress
