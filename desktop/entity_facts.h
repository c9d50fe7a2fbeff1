#pragma once

// What the property panel tells of an object: names and values, lengths and areas worked out.

#include "drawing/records.h"

#include <string>
#include <utility>
#include <vector>

namespace tessaran::desktop {

using Fact = std::pair<std::string, std::string>; // name, value

// "Polyline", "Text", ...
std::string kindOf(const host::Entity& entity);
std::vector<Fact> factsOf(const drawing::EntityRecord& record);
// The name by which CHPROP changes what the fact of that name tells; empty: it cannot be changed.
std::string changedBy(const std::string& fact);

} // namespace tessaran::desktop
