#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::stress {

// Generates the seam grid, the map of pillars, entries and gobs that the solver works on.
void zelk_seamGrid(host::Host& host);

} // namespace tessaran::stress
