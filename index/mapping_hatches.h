#pragma once

// Solid hatches over regions and closed curves of the drawing.

#include "host/entity.h"

#include <span>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::index {

// Regions, and curves that close.
bool isHatchable(const host::Entity& entity);

// One hatch for each entity, with all its loops, on its layer in its colour; erased entities are
// passed over. Under the meter "Hatching is progressing : "; a user break ends it, and what was
// made until then is given back.
std::vector<host::EntityId> hatchRegions(host::Host& host, std::span<const host::EntityId> regions);

} // namespace tessaran::index
