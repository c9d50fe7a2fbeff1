#include "stress/topo_input.h"

#include "base/file.h"
#include "stress/field_scanner.h"
#include "stress/field_text.h"
#include "stress/model.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::stress {
namespace {

constexpr const char* kTitle = "Overburden stress input file";

class Reader {
  public:
    explicit Reader(std::string_view text) : scan_(text) {}

    TopoInputReading read() {
        static_cast<void>(title() && host() && grid() && seamOrigin() && control() &&
                          topographicHeader() && depths());
        return std::move(out_);
    }

  private:
    bool fail(int code, std::string message) {
        out_.code = code;
        out_.message = std::move(message);
        out_.line = scan_.lineNumber();
        return false;
    }

    bool next(double& value, bool first = false) {
        if (!first && !scan_.comma())
            return false;
        const std::optional<double> read = scan_.real();
        value = static_cast<double>(static_cast<float>(read.value_or(0.0)));
        return read.has_value() && std::isfinite(value);
    }
    bool next(int& value, bool first = false) {
        if (!first && !scan_.comma())
            return false;
        const std::optional<int> read = scan_.integer();
        value = read.value_or(0);
        return read.has_value();
    }
    template <class First, class... Rest>
    bool fields(First& first, Rest&... rest) {
        return next(first, true) && (next(rest) && ...);
    }

    bool title() { return scan_.line() ? true : fail(1, "Error in Reading Title - RI1a\n"); }

    bool host() {
        CTopoModelDat& d = out_.data;
        if (!fields(d.poissonsRatio, d.modulus, d.laminationThickness, d.unitSystem))
            return fail(2, "Error reading the host properties - RI2a\n");
        if (d.unitSystem > 3 || d.unitSystem < 0)
            return fail(2, "Can Only Specify a Unit Number up to 4 - RI2c\n");
        return true;
    }

    bool grid() {
        ElementField& seam = out_.data.seam;
        if (!fields(seam.width, seam.nX, seam.nY, out_.data.gradient))
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
        return fields(seam.x, seam.y)
                   ? true
                   : fail(6, "Error reading the seam coordinate information - RI6\n");
    }

    bool control() {
        CTopoModelDat& d = out_.data;
        return fields(d.overRelaxation, d.convergenceCriterion, d.maxIterations)
                   ? true
                   : fail(7, "Error reading the program control parameters - RI7a\n");
    }

    bool topographicHeader() {
        ElementField& b = out_.data.depths.blocks;
        if (!fields(b.width, b.nX, b.nY, b.x, b.y, out_.data.depths.datum) || b.nX < 1 ||
            b.nY < 1 || !(b.width > 0.0))
            return fail(2, "Error Reading the Topographic Header Line - RTI2a\n");
        return true;
    }

    // A depth and its line end take two characters at least: no memory for counts beyond the text.
    bool depths() {
        const ElementField& b = out_.data.depths.blocks;
        const auto count = static_cast<std::size_t>(b.nX) * static_cast<std::size_t>(b.nY);
        if (count > scan_.left() / 2 + 1)
            return fail(3, kDepthsMessage);
        for (std::size_t k = 0; k < count; ++k) {
            const std::optional<double> depth = scan_.real();
            if (!depth)
                return fail(3, kDepthsMessage);
            out_.data.depths.values.push_back(*depth);
        }
        return true;
    }

    static constexpr const char* kDepthsMessage =
        "Error reading the Topographic Grid Stress - RTI3\n";

    FieldScanner scan_;
    TopoInputReading out_;
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
    const base::Result<std::string> text = base::readFile(path);
    if (text)
        return parseTopoInput(*text);
    TopoInputReading out;
    out.code = 1;
    out.message = "Error in Opening Input File - RI1a\n";
    return out;
}

} // namespace tessaran::stress
