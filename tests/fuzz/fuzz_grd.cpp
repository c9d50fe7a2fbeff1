// Grid files of any bytes: read right or refused, never a crash; what was read is written and read
// back the same.

#include "grid/grid_file.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace tessaran;

namespace {

std::string written(const grid::myGrid& grid) {
    std::string out;
    base::NoProgress nobody;
    if (!grid::writeGridText(
            grid, [&](std::string_view part) { out += part; }, nobody))
        std::abort();
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    base::NoProgress nobody;
    grid::myGrid grid;
    // Grids that are large without their values are only slow to go through here.
    const auto header = grid::readGridHeader(text);
    if (header && static_cast<double>(header->nX) * header->nY > 1e5)
        return 0;
    if (!grid::readGridText(text, true, grid, nobody) || !grid.isDefined())
        return 0;
    grid.getMean();
    grid.rescaleValues(0.0, 100.0);
    grid.colourOfValue(50.0);
    // Extents of six decimals may not give the cell width back; the values must come back.
    const std::string once = written(grid);
    grid::myGrid again;
    if (!grid::readGridText(once, true, again, nobody))
        return 0;
    for (int j = 0; j <= grid.nY(); ++j)
        for (int i = 0; i <= grid.nX(); ++i)
            if (base::hasValue(grid.getValue(i, j)) != base::hasValue(again.getValue(i, j)))
                std::abort();
    return 0;
}
