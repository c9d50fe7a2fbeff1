#include "grid/topo_file.h"

#include "base/file.h"
#include "base/numbers.h"

#include <fmt/format.h>

namespace tessaran::grid {

base::Result<void> writeTopoFile(const std::filesystem::path& path, const TopoHeader& header,
                                 const std::function<double(int, int)>& valueAt) {
    base::Result<base::FileWriter> writer = base::FileWriter::create(path);
    if (!writer)
        return writer.error();
    writer->write(fmt::format("1,{},{:f},{},{},{:f},{:f},{:f}\n",
                              static_cast<long>(header.nX) * header.nY, header.width, header.nX,
                              header.nY, header.x, header.y, header.datum));
    writer->write(fmt::format("1,{}\n1,{}\n", header.quantity, header.unit));
    std::string column;
    for (int i = 0; i < header.nX; ++i) {
        column.clear();
        for (int j = 0; j < header.nY; ++j) {
            base::appendFixed6(column, valueAt(i, j));
            column += '\n';
        }
        writer->write(column);
    }
    return writer->commit();
}

} // namespace tessaran::grid
