#include "app/arx_framework.h"

#include "app/loaded_host.h"
#include "host/host.h"

namespace tessaran::app {

int AcRxDbxApp::handle(int message, void* applicationId) {
    if (message < 0 || message > kLastMessage)
        return kReturnOk;
    switch (static_cast<Message>(message)) {
    case Message::initialise:
        return onInitialise(applicationId);
    case Message::unload:
        return onUnload(applicationId);
    case Message::loadDrawing:
        return onLoadDrawing(applicationId);
    case Message::unloadDrawing:
        return onUnloadDrawing(applicationId);
    case Message::invokeFunction:
        return onInvokeFunction(applicationId);
    default:
        return onOther(static_cast<Message>(message), applicationId);
    }
}

int AcRxDbxApp::onInitialise(void* applicationId) {
    if (applicationId == nullptr)
        return kReturnError;
    setLoadedHost(static_cast<host::Host*>(applicationId));
    return kReturnOk;
}

int AcRxDbxApp::onUnload(void* /*applicationId*/) {
    setLoadedHost(nullptr);
    return kReturnOk;
}

int AcRxArxApp::onInitialise(void* applicationId) {
    const int result = AcRxDbxApp::onInitialise(applicationId);
    if (result != kReturnOk)
        return result;
    for (const CommandRow& row : commands_)
        loadedHost()->commands().add(entryOf(row));
    return kReturnOk;
}

int AcRxArxApp::onUnload(void* applicationId) {
    if (host::Host* host = loadedHost())
        for (const CommandRow& row : commands_)
            host->commands().remove(kCommandGroup, globalNameOf(row));
    return AcRxDbxApp::onUnload(applicationId);
}

} // namespace tessaran::app
