#pragma once

// What file dialogs have in common, whoever answers them.

#include "host/dialogs.h"

#include <string>

namespace tessaran::console {

// The name that the file dialog stands on, in the folder that it starts in. A path in the current
// folder stays short.
std::string proposedPath(const host::FileRequest& request);
// As the dialog completes a name: with its ending where none was typed.
std::string completedPath(const host::FileRequest& request, const std::string& typed);
// Asked before a file is chosen for saving that is there already.
host::Question replaceQuestion(const std::string& path);

} // namespace tessaran::console
