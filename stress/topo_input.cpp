#include "stress/topo_input.h"

#include "stress/field_reader.h"
#include "stress/field_text.h"
#include "stress/model.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

constexpr const char* kTitle = "Overburden stress input file";

class Reader : FieldReader<TopoInputReading> {
  public:
    explicit Reader(std::string_view text) : FieldReader(text) {}

    TopoInputReading read() {
        static_cast<void>(title() && host() && grid() && seamOrigin() && control() &&
                          topographicHeader() && depths());
        return std::move(out_);
    }

  private:
    bool title() { return scan_.line() ? true : fail(1, "Error in Reading Title - RI1a\n"); }

    bool host() {
        CTopoModelDat& d = out_.data;
        if (!scan_.fields(d.poissonsRatio, d.modulus, d.laminationThickness, d.unitSystem))
            return fail(2, "Error reading the host properties - RI2a\n");
        if (d.unitSystem > 3 || d.unitSystem < 0)
            return fail(2, "Can Only Specify a Unit Number up to 4 - RI2c\n");
        return true;
    }

    bool grid() {
        ElementField& seam = out_.data.seam;
        if (!scan_.fields(seam.width, seam.nX, seam.nY, out_.data.gradient))
            return fail(5, "Error reading the general grid information - RI5a\n");
        if (seam.nX % kMeshDivisor != 0 || seam.nY % kMeshDivisor != 0)
            return fail(
                5, fmt::format("Fine mesh size must be divisible by {} - RI5b\n", kMeshDivisor));
        if (!(seam.width > 0.0))
            return fail(5, "Element width must be non-zero - RI5c\n");
        if (seam.nX < 1)
            return fail(5, "The number of X elements must be non-zero - RI5d\n");
        if (seam.nY < 1)
            return fail(5, "The number of Y elements must be non-zero - RI5e\n");
        return true;
    }

    bool seamOrigin() {
        ElementField& seam = out_.data.seam;
        return scan_.fields(seam.x, seam.y)
                   ? true
                   : fail(6, "Error reading the seam coordinate information - RI6\n");
    }

    bool control() {
        CTopoModelDat& d = out_.data;
        return scan_.fields(d.overRelaxation, d.convergenceCriterion, d.maxIterations)
                   ? true
                   : fail(7, "Error reading the program control parameters - RI7a\n");
    }

    bool topographicHeader() {
        ElementField& b = out_.data.depths.blocks;
        if (!scan_.fields(b.width, b.nX, b.nY, b.x, b.y, out_.data.depths.datum) || b.nX < 1 ||
            b.nY < 1 || !(b.width > 0.0))
            return fail(2, "Error Reading the Topographic Header Line - RTI2a\n");
        return true;
    }

    bool depths() {
        const ElementField& b = out_.data.depths.blocks;
        const auto count = static_cast<std::size_t>(b.nX) * static_cast<std::size_t>(b.nY);
        return scan_.reals(count, out_.data.depths.values)
                   ? true
                   : fail(3, "Error reading the Topographic Grid Stress - RTI3\n");
    }
};

} // namespace

// A line end stands before every line but the title.
std::string topoInputText(const CTopoModelDat& d) {
    const auto f = fieldText;
    const ElementField& b = d.depths.blocks;
    std::string out = kTitle;
    out += fmt::format("\n{},{},{},{}", f(d.poissonsRatio), f(d.modulus), f(d.laminationThickness),
                       d.unitSystem);
    out += fmt::format("\n{},{},{},{}", f(d.seam.width), d.seam.nX, d.seam.nY, f(d.gradient));
    out += "\n0.0,0.0";
    out +=
        fmt::format("\n{},{},{}", f(d.overRelaxation), f(d.convergenceCriterion), d.maxIterations);
    out += fmt::format("\n{},{},{},{},{},{}", f(b.width), b.nX, b.nY, f(b.x), f(b.y),
                       f(d.depths.datum));
    for (const double depth : d.depths.values)
        out += "\n" + f(depth);
    return out;
}

TopoInputReading parseTopoInput(std::string_view text) {
    return Reader(text).read();
}

TopoInputReading readTopoInput(const std::filesystem::path& path) {
    return readingOf(path, parseTopoInput, "Error in Opening Input File - RI1a\n");
}

} // namespace tessaran::stress
