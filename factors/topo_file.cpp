#include "factors/topo_file.h"

#include "grid/topo_file.h"

namespace tessaran::factors {

base::Result<void> writeTopoFile(const std::filesystem::path& path, const grid::myGrid& grid,
                                 DepthUnit unit, double datum) {
    const geometry::Point2 origin = grid.nodePoint(0, 0);
    return grid::writeTopoFile(path,
                               {grid.cellWidthX(), grid.nX(), grid.nY(), origin.x, origin.y, datum,
                                "Overburden Depth", // the solver's own units:
                                unit == DepthUnit::meters ? "Meter" : "Inch"},
                               [&](int i, int j) { return grid.getValue(i, j); });
}

} // namespace tessaran::factors
