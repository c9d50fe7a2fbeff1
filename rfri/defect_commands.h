#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::rfri {

// Draws defects of the twelve categories and makes their grids.
void zelk_RFRI_Draw(host::Host& host);

// Combines the twelve grids into the final index.
void zelk_RFRI_Calc(host::Host& host);

} // namespace tessaran::rfri
