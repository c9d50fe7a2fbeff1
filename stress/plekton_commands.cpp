#include "stress/plekton_commands.h"

#include "stress/plekton_pages.h"
#include "stress/transfer_pages.h"

namespace tessaran::stress {

void zelk_plekton(host::Host& host) {
    PlektonPage page;
    dlg_plekton dialog(page);
    host::runDialog(host, dialog);
}

void zelk_convPlekGrid(host::Host& host) {
    TransferPage page;
    dlg_convplekgrid dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::stress
