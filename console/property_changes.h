#pragma once

// The properties of objects that can be changed by name.

#include "base/result.h"
#include "host/drawing.h"

#include <functional>
#include <string>

namespace tessaran::console {

// Changes one object; false when its kind has no such property.
using PropertyChange = std::function<bool(host::Entity&)>;

// `property`: "Color", "LAyer", "LType", "Elevation" (flat objects; drawing units), "Width" (the
// constant one of a polyline, drawing units), "CLosed" (yes or no), "TExt" or "Height" (drawing
// units). Fails when the value is none that it can have.
base::Result<PropertyChange> propertyChange(const host::Drawing& drawing,
                                            const std::string& property, const std::string& value);

// What asks for its value.
std::string propertyPrompt(const std::string& property);

} // namespace tessaran::console
