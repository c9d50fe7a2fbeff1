#include "stress/model_reader.h"

#include "stress/arrays.h"
#include "stress/field_reader.h"
#include "stress/material.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>

namespace tessaran::stress {
namespace {

constexpr std::size_t kLongestTitle = 79;

class Reader : FieldReader<ModelReading> {
  public:
    explicit Reader(std::string_view text) : FieldReader(text) {}

    ModelReading read() {
        static_cast<void>(title() && host() && materials() && grid() && seams() && control() &&
                          boundaries() && offSeam() && codes());
        return std::move(out_);
    }

  private:
    bool title() {
        const std::optional<std::string_view> line = scan_.line();
        if (!line)
            return fail(1, "Error in Reading Title - RI1a\n");
        model().title = std::string(line->substr(0, kLongestTitle));
        return true;
    }

    bool host() {
        CModelDat& m = model();
        if (!scan_.fields(m.poissonsRatio, m.modulus, m.laminationThickness, seamCount_,
                          m.unitSystem))
            return fail(2, "Error reading the host properties - RI2a\n");
        out_.lines.host = scan_.lineNumber();
        if (seamCount_ > kMostSeams)
            return fail(2, "Can Only Specify up to 4 Different Seams - RI2b\n");
        if (m.unitSystem > 3)
            return fail(2, "Can Only Specify a Unit Number up to 4 - RI2c\n");
        return true;
    }

    bool materials() {
        int count = 0;
        if (!scan_.fields(count))
            return fail(3, "Error reading the number of in seam materials - RI3a\n");
        if (count < 1 || count > kMostMaterials)
            return fail(3, "The Number of In Seam Materials Must Be Between 1 and 26 - RI3b\n");
        for (int k = 0; k < count; ++k) {
            int type = 0;
            Material material;
            auto& p = material.p;
            if (!scan_.fields(type, p[0], p[1], p[2], p[3], p[4]))
                return fail(4, "Error reading the in seam material properties - RI4a\n");
            if (type < 1 || type > 6)
                return fail(4, "The Material Type Number Must Be Between 1 and 6 - RI4b\n");
            out_.lines.materials.push_back(scan_.lineNumber());
            material.type = static_cast<MaterialType>(type);
            model().materials.push_back(material);
        }
        return true;
    }

    bool grid() {
        CModelDat& m = model();
        if (!scan_.fields(m.elementWidth, m.nX, m.nY, m.gradient))
            return fail(5, "Error reading the general grid information - RI5a\n");
        out_.lines.grid = scan_.lineNumber();
        if (m.nX % kMeshDivisor != 0 || m.nY % kMeshDivisor != 0)
            return fail(
                5, fmt::format("Fine mesh size must be divisible by {} - RI5b\n", kMeshDivisor));
        if (m.elementWidth == 0.0)
            return fail(5, "Element width must be non-zero - RI5c\n");
        if (m.nX == 0)
            return fail(5, "The number of X elements must be non-zero - RI5d\n");
        if (m.nY == 0)
            return fail(5, "The number of Y elements must be non-zero - RI5e\n");
        return true;
    }

    bool seams() {
        for (int k = 0; k < seamCount_; ++k) {
            Seam seam;
            if (!scan_.fields(seam.x, seam.y, seam.z, seam.thickness))
                return fail(6, "Error reading the seam coordinate information - RI6\n");
            out_.lines.seams.push_back(scan_.lineNumber());
            model().seams.push_back(seam);
        }
        return true;
    }

    bool control() {
        CModelDat& m = model();
        int surface = 0;
        int offSeamFlag = 0;
        int topographic = 0;
        if (!scan_.fields(m.overRelaxation, m.convergenceCriterion, m.maxIterations, m.startingStep,
                          m.steps, surface, offSeamFlag, topographic))
            return fail(7, "Error reading the program control parameters - RI7a\n");
        out_.lines.control = scan_.lineNumber();
        if (m.steps > kMostSteps)
            return fail(
                7, fmt::format("The Number of Steps Must be Less Than {} - RI7b\n", kMostSteps));
        m.surfaceEffects = surface == 1;
        m.offSeamDisplacements = offSeamFlag == 1;
        m.topographicStress = topographic == 1;
        return true;
    }

    bool boundaries() {
        Boundaries& b = model().boundaries;
        if (!scan_.fields(b.north, b.east, b.south, b.west))
            return fail(8, "Error reading the boundary condition parameters - RI8a\n");
        if (b.north > 1 || b.east > 1 || b.south > 1 || b.west > 1)
            return fail(8, "The Boundary Conditions must be either a '0' or a '1' - RI8b\n");
        return true;
    }

    bool offSeam() {
        if (!model().offSeamDisplacements)
            return true;
        OffSeamGrid& g = model().offSeam;
        if (!scan_.fields(g.blocks, g.blockWidth, g.nX, g.nY, g.x, g.y, g.z))
            return fail(9, "Error reading the off-seam grid details - RI9a\n");
        out_.lines.offSeam = scan_.lineNumber();
        if (static_cast<long long>(g.nX) * g.nY != g.blocks)
            return fail(9, "Inconsistent Data in the Offseam Input Line - RI9b\n");
        return true;
    }

    bool codes() {
        CModelDat& m = model();
        if (m.nX < 0 || m.nY < 0)
            return true; // nothing to read; such counts are refused as a fault of the model
        for (int step = 0; step < m.steps; ++step) {
            std::vector<ElementCodes> seamCodes;
            for (int seam = 0; seam < seamCount_; ++seam) {
                std::optional<ElementCodes> map = codeMap();
                if (!map)
                    return fail(10, "Error reading the fine mesh codes - RI10b\n");
                seamCodes.push_back(std::move(*map));
            }
            m.codes.push_back(std::move(seamCodes));
        }
        return true;
    }

    // Rows from north to south, columns from west to east.
    std::optional<ElementCodes> codeMap() {
        const auto nX = static_cast<std::size_t>(model().nX);
        const auto nY = static_cast<std::size_t>(model().nY);
        if (nX * nY > scan_.left()) {
            while (scan_.character())
                ;                // to the line at which the codes end
            return std::nullopt; // no memory for counts beyond the text
        }
        ElementCodes out = allocatedArray<char>(ArrayKind::ccubix, nX * nY);
        for (std::size_t j = nY; j-- > 0;) {
            for (std::size_t i = 0; i < nX; ++i) {
                const std::optional<char> code = scan_.character();
                if (!code)
                    return std::nullopt;
                out[i * nY + j] = *code;
            }
        }
        return out;
    }

    CModelDat& model() { return out_.model; }

    int seamCount_ = 0;
};

long lineOf(const std::vector<long>& lines, int k) {
    const auto at = static_cast<std::size_t>(k);
    return at < lines.size() ? lines[at] : 0;
}

ModelFault seamFault(const CModelDat& m, const ModelLines& lines) {
    for (int k = 0; k < m.seamCount(); ++k) {
        const Seam& seam = m.seams[static_cast<std::size_t>(k)];
        const long line = lineOf(lines.seams, k);
        if (!(seam.thickness > 0.0))
            return {fmt::format("The thickness of seam {} must be larger than 0", k + 1), line};
        if (m.surfaceEffects && seam.z == 0.0)
            return {
                fmt::format("Seam {} lies in the surface: no surface effects at depth 0", k + 1),
                line};
        for (int other = 0; other < k; ++other) {
            const Seam& above = m.seams[static_cast<std::size_t>(other)];
            if (seam.z == above.z)
                return {fmt::format("Seams {} and {} lie at one depth", other + 1, k + 1), line};
            if (seam.z * above.z < 0.0)
                return {
                    fmt::format("The depths of seams {} and {} differ in sign", other + 1, k + 1),
                    line};
        }
    }
    return {};
}

ModelFault offSeamFault(const CModelDat& m, const ModelLines& lines) {
    if (!m.offSeamDisplacements)
        return {};
    if (!(m.offSeam.blockWidth > 0.0))
        return {"The width of the off-seam blocks must be larger than 0", lines.offSeam};
    if (m.offSeam.nX < 1 || m.offSeam.nY < 1)
        return {"The off-seam grid needs at least one block in each direction", lines.offSeam};
    for (const Seam& seam : m.seams)
        if (std::abs(seam.z) == std::abs(m.offSeam.z))
            return {"The off-seam grid lies on a seam", lines.offSeam};
    return {};
}

ModelFault materialsFault(const CModelDat& m, const ModelLines& lines) {
    int number = 0;
    for (const Material& material : m.materials) {
        const std::string fault = materialFault(material);
        if (!fault.empty())
            return {fmt::format("Material {} has {}", number + 1, fault),
                    lineOf(lines.materials, number)};
        ++number;
    }
    return {};
}

} // namespace

ModelReading parseModel(std::string_view text) {
    return Reader(text).read();
}

ModelReading readModel(const std::string& path) {
    return readingOf(path, parseModel, "Error in Opening Input File - RI1a\n");
}

ModelFault modelFault(const CModelDat& m, const ModelLines& lines) {
    if (m.seams.empty())
        return {"A model needs at least one seam", lines.host};
    if (m.steps < 1)
        return {"A model needs at least one step", lines.control};
    if (m.unitSystem < 0)
        return {kUnitsOutOfRange, lines.host};
    if (!(std::abs(m.poissonsRatio) < 1.0))
        return {"Poisson's ratio must lie between -1 and 1", lines.host};
    if (!(m.modulus > 0.0) || !(m.laminationThickness > 0.0))
        return {"The modulus and the lamination thickness of the rock must be larger than 0",
                lines.host};
    if (!(m.overRelaxation > 0.0))
        return {"The over-relaxation factor must be larger than 0", lines.control};
    if (!(m.elementWidth > 0.0))
        return {"The element width must be larger than 0", lines.grid};
    if (m.nX < kMeshDivisor || m.nY < kMeshDivisor)
        return {"The numbers of elements must be 10 or more", lines.grid};
    if (ModelFault fault = offSeamFault(m, lines))
        return fault;
    if (ModelFault fault = materialsFault(m, lines))
        return fault;
    return seamFault(m, lines);
}

} // namespace tessaran::stress
