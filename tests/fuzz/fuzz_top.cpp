// Grid definition files of any bytes: read right or refused, never a crash.

#include "grid/grid_file.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace tessaran;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    grid::myGrid grid;
    const bool read = grid::readDefinitionText(text, true, grid).ok();
    if (read && (grid.nX() > 2000 || grid.nY() > 2000))
        std::abort();
    if (grid.isDefined() && grid.values().size() < 10000 &&
        !grid::writeDefinitionText(grid, [](std::string_view) {}))
        std::abort();
    return 0;
}
