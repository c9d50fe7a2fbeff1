#pragma once

// The program with a window.

#include <string>

namespace tessaran::desktop {

// Lives until the window is closed; the exit status. `drawing`: opened first; may be empty.
int runWindow(const std::string& drawing);

} // namespace tessaran::desktop
