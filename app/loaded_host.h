#pragma once

// The host that the module was loaded into: the module's only mutable global. Command handlers
// without arguments are called with it; everything below them is passed the host.

namespace tessaran::host {
class Host;
}

namespace tessaran::app {

host::Host* loadedHost(); // null before initialisation and after unloading
void setLoadedHost(host::Host* host);

// Runs a command body on the loaded host. Nothing is thrown past it: what is left over (memory
// that could not be had) is told to the user and the command ends.
void runCommand(void (*body)(host::Host&));

// The handler without arguments that the host's command stack takes.
template <void (*Body)(host::Host&)>
void commandHandler() {
    runCommand(Body);
}

} // namespace tessaran::app
