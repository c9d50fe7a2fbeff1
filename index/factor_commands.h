#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::index {

// Turns one factor grid file into an individual stability index grid file.
void zelk_genFactor(host::Host& host);

} // namespace tessaran::index
