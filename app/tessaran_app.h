#pragma once

// The module as an application of the host: commands, menu and the data of the open drawings come
// with its initialisation and go with its unloading.

#include "app/arx_framework.h"

namespace tessaran::host {
class Host;
}

namespace tessaran::app {

class CTessaranApp final : public AcRxArxApp {
  public:
    CTessaranApp();

  protected:
    int onInitialise(void* applicationId) override;
    int onUnload(void* applicationId) override;
};

// The command that builds the menu again, replacing the one that is there.
void ZELKMenu(host::Host& host);

} // namespace tessaran::app
