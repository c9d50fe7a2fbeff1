#pragma once

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

// Defines the document's base grid by the dialog "Define a Grid".
void zelk_setGrid(host::Host& host);

// Shows the same dialog; nothing is stored.
void tabTest(host::Host& host);

} // namespace tessaran::grid
