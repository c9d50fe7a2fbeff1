#pragma once

// The module's exported entry. The CAD host, or the program that stands in for it, sends its
// application messages here; nothing else of the module is called from outside.

extern "C" {

// `applicationId` leads to the host that loaded the module (app/loaded_host.h) and has to stay
// valid from the initialisation message to the unloading message. Messages beyond the known ones
// are answered with OK and ignored.
int acrxEntryPoint(int message, void* applicationId);

// The version of the host interface that the module was built for.
unsigned acrxGetApiVersion();
}
