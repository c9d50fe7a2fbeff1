#include "grid/grid_utility_commands.h"

#include "grid/grid_utility_pages.h"

namespace tessaran::grid {

void zelk_gridUtility(host::Host& host) {
    GridUtilityPage page;
    dlg_gridutility dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::grid
