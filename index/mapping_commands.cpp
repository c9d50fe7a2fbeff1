#include "index/mapping_commands.h"

#include "index/mapping_pages.h"

namespace tessaran::index {

void zelk_indexMapping(host::Host& host) {
    MappingPage page;
    dlg_indexmapping dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::index
