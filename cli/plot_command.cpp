#include "cli/options.h"
#include "cli/subcommands.h"

#include <fmt/format.h>

#include <cstdio>

namespace tessaran::cli {

int plotDrawing(const PlotOptions& /*options*/) {
    fmt::print(stderr, "Not available yet.\n");
    return kWrongUsage;
}

int describeGrid(const GridOptions& /*options*/) {
    fmt::print(stderr, "Not available yet.\n");
    return kWrongUsage;
}

} // namespace tessaran::cli
