#include "app/loaded_host.h"

#include "host/host.h"

#include <exception>
#include <new>
#include <string>

namespace tessaran::app {
namespace {

host::Host* theHost = nullptr;

} // namespace

host::Host* loadedHost() {
    return theHost;
}

void setLoadedHost(host::Host* host) {
    theHost = host;
}

void runCommand(void (*body)(host::Host&)) {
    if (theHost == nullptr)
        return;
    try {
        body(*theHost);
    } catch (const std::bad_alloc&) {
        theHost->dialogs().message("There is not enough memory for this command.");
    } catch (const std::exception& error) {
        theHost->dialogs().message(std::string("The command failed: ") + error.what());
    }
}

} // namespace tessaran::app
