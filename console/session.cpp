#include "console/session.h"

#include "app/entry_point.h"
#include "app/messages.h"
#include "console/plain_commands.h"

namespace tessaran::console {
namespace {

int tell(app::Message message, host::Host& host) {
    return acrxEntryPoint(static_cast<int>(message), &host);
}

} // namespace

LoadedModule::LoadedModule(host::Host& host) : host_(host) {
    tell(app::Message::initialise, host_);
}

LoadedModule::~LoadedModule() {
    tell(app::Message::unload, host_);
}

Session::Session(LineSource& source, Transcript& transcript, const Options& options)
    : state_(options.profile), conversation_(source, transcript),
      frontEnd_(state_, conversation_, options.showProgress), host_(state_, frontEnd_),
      module_(host_), interpreter_(host_, conversation_) {
    host_.setQuit([this] { conversation_.end(); });
    addPlainCommands(host_);
}

} // namespace tessaran::console
