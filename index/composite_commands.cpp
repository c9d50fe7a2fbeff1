#include "index/composite_commands.h"

#include "index/composite_pages.h"

namespace tessaran::index {

void zelk_StabilityIndex(host::Host& host) {
    StabilityPage page;
    dlg_stability dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::index
