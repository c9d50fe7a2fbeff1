#include "factors/topo_file.h"

#include "base/file.h"
#include "base/numbers.h"

#include <fmt/format.h>

namespace tessaran::factors {

base::Result<void> writeTopoFile(const std::filesystem::path& path, const grid::myGrid& grid,
                                 DepthUnit unit, double datum) {
    base::Result<base::FileWriter> writer = base::FileWriter::create(path);
    if (!writer)
        return writer.error();
    const geometry::Point2 origin = grid.nodePoint(0, 0);
    writer->write(fmt::format("1,{},{:f},{},{},{:f},{:f},{:f}\n",
                              static_cast<long>(grid.nX()) * grid.nY(), grid.cellWidthX(),
                              grid.nX(), grid.nY(), origin.x, origin.y, datum));
    writer->write("1,Overburden Depth\n");
    writer->write(unit == DepthUnit::meters ? "1,Meter\n" : "1,Inch\n"); // the solver's own units
    std::string column;
    for (int i = 0; i < grid.nX(); ++i) {
        column.clear();
        for (int j = 0; j < grid.nY(); ++j) {
            base::appendFixed6(column, grid.getValue(i, j));
            column += '\n';
        }
        writer->write(column);
    }
    return writer->commit();
}

} // namespace tessaran::factors
