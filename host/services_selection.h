#pragma once

// The standard selection of the system's commands: the host's, and by layer.

#include "host/prompts.h"

#include <vector>

namespace tessaran::host {

class Host;

// What the user selects, in the order selected; empty when nothing was or the user cancelled. The
// keyword "SLayer" adds what stands on layers (askForLayers) as far as the prompt's filter lets it
// pass, as often as it is given.
std::vector<EntityId> selectObjects(Host& host, SelectionPrompt prompt = {});

} // namespace tessaran::host
