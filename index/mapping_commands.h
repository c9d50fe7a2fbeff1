#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::index {

// Draws an index grid onto the mine plan, as solid areas that cover only the entries.
void zelk_indexMapping(host::Host& host);

} // namespace tessaran::index
