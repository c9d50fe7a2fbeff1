#pragma once

// Small dialogs that ask for layers.

#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {

class Host;

// Some of the drawing's layers from a list with that label; nothing when cancelled or none was
// selected.
std::optional<std::vector<std::string>> chooseLayers(Host& host, const std::string& title,
                                                     const std::string& label);

// One layer, which may be new; nothing when cancelled or empty.
std::optional<std::string> chooseLayer(Host& host, const std::string& title,
                                       const std::string& preset);

} // namespace tessaran::host
