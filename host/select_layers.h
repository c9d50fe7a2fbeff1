#pragma once

// The dialog that chooses layers from the drawing's.

#include <string>
#include <vector>

namespace tessaran::host {

class DialogSession;

// Shows the dialog "Select Layers" over the session's; the chosen names, or those that were
// `chosen` before when it is cancelled.
std::vector<std::string> selectLayers(DialogSession& session,
                                      const std::vector<std::string>& chosen);

} // namespace tessaran::host
