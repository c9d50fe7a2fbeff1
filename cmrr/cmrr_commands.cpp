#include "cmrr/cmrr_commands.h"

#include "cmrr/general_page.h"
#include "host/host.h"

namespace tessaran::cmrr {

void CMRR(host::Host& host) {
    RoofSession roof;
    GeneralPage page(roof);
    GeneralDialog dialog(page);
    host::runDialog(host, dialog);
}

} // namespace tessaran::cmrr
