#pragma once

// A stand-in for the host framework's application classes: it takes the host's messages apart and
// gives each a handler of its own, and registers the module's command table.

#include "app/command_table.h"
#include "app/messages.h"

#include <span>

namespace tessaran::app {

// The host interface's version that acrxGetApiVersion reports: major and minor number.
inline constexpr unsigned kApiVersion = (1u << 16) | 0u;

class AcRxDbxApp {
  public:
    virtual ~AcRxDbxApp() = default;

    // Calls the message's handler; any number beyond the known ones gives OK at once.
    int handle(int message, void* applicationId);

  protected:
    virtual int onInitialise(void* applicationId);
    virtual int onUnload(void* applicationId);
    // No functions for the host's scripting language are defined, so there is nothing to do when a
    // drawing comes or goes, and none to invoke.
    virtual int onLoadDrawing(void* /*applicationId*/) { return kReturnOk; }
    virtual int onUnloadDrawing(void* /*applicationId*/) { return kReturnOk; }
    virtual int onInvokeFunction(void* /*applicationId*/) { return kReturnOk; }
    virtual int onOther(Message /*message*/, void* /*applicationId*/) { return kReturnOk; }
};

// Adds the command table.
class AcRxArxApp : public AcRxDbxApp {
  protected:
    explicit AcRxArxApp(std::span<const CommandRow> commands) : commands_(commands) {}

    int onInitialise(void* applicationId) override; // registers every command
    int onUnload(void* applicationId) override;     // removes every command

  private:
    std::span<const CommandRow> commands_;
};

} // namespace tessaran::app
