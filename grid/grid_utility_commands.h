#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// A workbench for one grid: views, plots and manipulates it by the dialog "Grid Utilities".
void zelk_gridUtility(host::Host& host);

} // namespace tessaran::grid
