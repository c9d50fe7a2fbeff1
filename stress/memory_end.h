#pragma once

// What a command does when one of the solver's arrays cannot be had.

#include <functional>

namespace tessaran::host {
class Host;
}

namespace tessaran::stress {

// Does the work; where it runs out of memory, shows the failed array's message and ends the
// program. False then.
bool orEndProgram(host::Host& host, const std::function<void()>& work);

} // namespace tessaran::stress
