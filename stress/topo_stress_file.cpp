#include "stress/topo_stress_file.h"

#include "base/text.h"
#include "grid/topo_file.h"
#include "stress/field_reader.h"

namespace tessaran::stress {
namespace {

class Reader : FieldReader<TopoReading> {
  public:
    explicit Reader(std::string_view text) : FieldReader(text) {}

    TopoReading read() {
        static_cast<void>(header() && texts() && values());
        return std::move(out_);
    }

  private:
    bool header() {
        ElementField& blocks = out_.grid.blocks;
        int leading = 0;
        int total = 0;
        if (!scan_.fields(leading, total, blocks.width, blocks.nX, blocks.nY, blocks.x, blocks.y,
                          out_.grid.datum))
            return fail(2, "Error Reading the Topographic Header Line - RTI2a\n");
        if (blocks.nX < 0 || blocks.nY < 0 ||
            static_cast<long long>(blocks.nX) * blocks.nY != total)
            return fail(2, "Inconsistent Data in the Topographic Header Line - RTI2b\n");
        scan_.line();
        return true;
    }

    bool texts() {
        out_.quantity = std::string(scan_.line().value_or(""));
        scan_.line();
        return true;
    }

    bool values() {
        const ElementField& blocks = out_.grid.blocks;
        const auto count =
            static_cast<std::size_t>(blocks.nX) * static_cast<std::size_t>(blocks.nY);
        return scan_.reals(count, out_.grid.values)
                   ? true
                   : fail(3, "Error reading the Topographic Grid Stress - RTI3\n");
    }
};

} // namespace

bool TopoReading::holdsDepths() const {
    return base::containsIgnoringCase(quantity, "Overburden Depth");
}

TopoReading parseTopoStress(std::string_view text) {
    return Reader(text).read();
}

TopoReading readTopoStress(const std::filesystem::path& path) {
    return readingOf(path, parseTopoStress, "Error in Opening Topographic Input File - RTI1a\n");
}

base::Result<void> writeTopoStress(const std::filesystem::path& path, const TopographicGrid& grid,
                                   const std::string& stressUnit) {
    const ElementField& b = grid.blocks;
    return grid::writeTopoFile(
        path, {b.width, b.nX, b.nY, b.x, b.y, grid.datum, "Overburden Stress", stressUnit},
        [&](int i, int j) { return grid.at(i, j); });
}

} // namespace tessaran::stress
