#include "app/tessaran_app.h"

#include "app/document_data.h"
#include "app/loaded_host.h"
#include "app/menu.h"
#include "host/host.h"

#include <memory>

namespace tessaran::app {

CTessaranApp::CTessaranApp() : AcRxArxApp(commandTable()) {}

int CTessaranApp::onInitialise(void* applicationId) {
    const int result = AcRxArxApp::onInitialise(applicationId);
    if (result != kReturnOk)
        return result;
    host::Host& host = *loadedHost();
    host.documentSlot().setFactory([] { return std::make_unique<CDocData>(); });
    ZELKMenu(host);
    return kReturnOk;
}

int CTessaranApp::onUnload(void* applicationId) {
    if (host::Host* host = loadedHost()) {
        host->menuBar().removePullDown(kMenuName);
        host->documentSlot().setFactory(nullptr);
    }
    return AcRxArxApp::onUnload(applicationId);
}

void ZELKMenu(host::Host& host) {
    // A host without a menu bar is no failure: the commands are there all the same.
    host.menuBar().setPullDown(kMenuName, menuItems(menuTable()));
}

} // namespace tessaran::app
