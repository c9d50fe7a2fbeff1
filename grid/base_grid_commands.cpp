#include "grid/base_grid_commands.h"

#include "grid/base_grid_pages.h"
#include "host/host.h"

namespace tessaran::grid {
namespace {

bool runGridDialog(host::Host& host) {
    CGridTab page;
    host::Dialog dialog("Define a Grid", {&page});
    return host::runDialog(host, dialog);
}

} // namespace

void zelk_setGrid(host::Host& host) {
    if (!runGridDialog(host))
        return;
    host.print("\nDocument Base Grid for this session is defined!");
    recordBaseGrid(host, baseGrid(host));
}

void tabTest(host::Host& host) {
    const BaseGrid before = baseGrid(host);
    runGridDialog(host);
    baseGrid(host) = before;
}

} // namespace tessaran::grid
