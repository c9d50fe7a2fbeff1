#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::index {

// Puts a project of individual indexes together and makes its composite stability index.
void zelk_StabilityIndex(host::Host& host);

} // namespace tessaran::index
