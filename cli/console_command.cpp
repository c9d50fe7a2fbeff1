#include "cli/options.h"
#include "cli/subcommands.h"

#include <fmt/format.h>

#include <cstdio>

namespace tessaran::cli {

int runConsole(const ConsoleOptions& /*options*/) {
    fmt::print(stderr, "Not available yet.\n");
    return kWrongUsage;
}

} // namespace tessaran::cli
