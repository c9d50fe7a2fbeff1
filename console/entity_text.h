#pragma once

// An entity described for people: what LIST prints.

#include "host/host.h"

#include <string>

namespace tessaran::console {

std::string describe(const host::Entity& entity);

} // namespace tessaran::console
