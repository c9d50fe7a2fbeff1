#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::stress {

// Runs the laminated stress solver from its dialog.
void zelk_plekton(host::Host& host);

// Transfers items of result files into grid files from its dialog.
void zelk_convPlekGrid(host::Host& host);

} // namespace tessaran::stress
