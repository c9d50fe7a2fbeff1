#include "stress/topo_stress_file.h"

#include "base/file.h"
#include "base/text.h"
#include "grid/topo_file.h"
#include "stress/field_scanner.h"

#include <cmath>

namespace tessaran::stress {
namespace {

class Reader {
  public:
    explicit Reader(std::string_view text) : scan_(text) {}

    TopoReading read() {
        static_cast<void>(header() && texts() && values());
        return std::move(out_);
    }

  private:
    bool fail(int code, std::string message) {
        out_.code = code;
        out_.message = std::move(message);
        out_.line = scan_.lineNumber();
        return false;
    }

    bool next(double& value) {
        const std::optional<double> read = scan_.comma() ? scan_.real() : std::nullopt;
        value = static_cast<double>(static_cast<float>(read.value_or(0.0)));
        return read.has_value() && std::isfinite(value);
    }
    bool next(int& value) {
        const std::optional<int> read = scan_.comma() ? scan_.integer() : std::nullopt;
        value = read.value_or(0);
        return read.has_value();
    }

    bool header() {
        ElementField& blocks = out_.grid.blocks;
        int total = 0;
        if (!scan_.integer() || !next(total) || !next(blocks.width) || !next(blocks.nX) ||
            !next(blocks.nY) || !next(blocks.x) || !next(blocks.y) || !next(out_.grid.datum))
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

    // A value and its line end take two characters at least: no memory for counts beyond the text.
    bool values() {
        const ElementField& blocks = out_.grid.blocks;
        const auto count =
            static_cast<std::size_t>(blocks.nX) * static_cast<std::size_t>(blocks.nY);
        if (count > scan_.left() / 2 + 1)
            return fail(3, kValuesMessage);
        allocated(ArrayKind::dmatrix, [&] { out_.grid.values.reserve(count); });
        for (std::size_t k = 0; k < count; ++k) {
            const std::optional<double> value = scan_.real();
            if (!value)
                return fail(3, kValuesMessage);
            out_.grid.values.push_back(*value);
        }
        return true;
    }

    static constexpr const char* kValuesMessage =
        "Error reading the Topographic Grid Stress - RTI3\n";

    FieldScanner scan_;
    TopoReading out_;
};

} // namespace

bool TopoReading::holdsDepths() const {
    return base::containsIgnoringCase(quantity, "Overburden Depth");
}

TopoReading parseTopoStress(std::string_view text) {
    return Reader(text).read();
}

TopoReading readTopoStress(const std::filesystem::path& path) {
    const base::Result<std::string> text = base::readFile(path);
    if (text)
        return parseTopoStress(*text);
    TopoReading out;
    out.code = 1;
    out.message = "Error in Opening Topographic Input File - RTI1a\n";
    return out;
}

base::Result<void> writeTopoStress(const std::filesystem::path& path, const TopographicGrid& grid,
                                   const std::string& stressUnit) {
    const ElementField& b = grid.blocks;
    return grid::writeTopoFile(
        path, {b.width, b.nX, b.nY, b.x, b.y, grid.datum, "Overburden Stress", stressUnit},
        [&](int i, int j) { return grid.at(i, j); });
}

} // namespace tessaran::stress
