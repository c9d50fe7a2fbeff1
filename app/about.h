#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::app {

// Shows the About dialog.
void zelk_zelkabout(host::Host& host);

} // namespace tessaran::app
