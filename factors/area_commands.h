#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::factors {

// Generates a grid file from closed boundary areas such as valleys or ponds.
void zelk_sFactorInArea(host::Host& host);

} // namespace tessaran::factors
