#include "stress/relaxation_log.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::stress {

void LoggedRelaxation::report(int iteration, double change, int x, int y) {
    watch_.progress(static_cast<int>(100LL * iteration / std::max(1, maxIterations_)));
    const std::string line =
        fmt::format("iteration number = {}, maximum displacement = {:13.9g}\n", iteration, change);
    watch_.status(line);
    log_(line + fmt::format("X grid location = {}, Y grid location = {}\n\n", x, y));
}

} // namespace tessaran::stress
