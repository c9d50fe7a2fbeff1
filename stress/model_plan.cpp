#include "stress/model_plan.h"

#include "base/file.h"
#include "base/numbers.h"
#include "stress/field_text.h"
#include "stress/model_reader.h"
#include "stress/seam_map.h"
#include "stress/topo_model.h"
#include "stress/topo_stress_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::stress {
namespace {

constexpr char kOpen = '1';

base::Error wrong(const std::string& text, const std::string& file = {}) {
    return base::formatError(text, file);
}

// Which of a material's values are stresses.
std::array<bool, 5> stressValues(MaterialType type) {
    switch (type) {
    case MaterialType::linearElasticCoal:
    case MaterialType::linearElasticGob:
        return {true, true, false, false, false};
    case MaterialType::strainSofteningCoal:
    case MaterialType::elasticPlasticCoal:
    case MaterialType::biLinearHardeningGob:
        return {true, false, true, false, false};
    case MaterialType::strainHardeningGob:
        return {true, true, true, false, false};
    }
    return {};
}

bool isGob(const Material& material) {
    return material.type >= MaterialType::biLinearHardeningGob;
}

// --- codes --------------------------------------------------------------------------------------

// Turns the codes of one map into those of the model.
class Lettering {
  public:
    explicit Lettering(const ModelPlan& plan) : plan_(plan) {}

    base::Result<ElementCodes> of(const SeamMap& map, const std::string& file) const {
        ElementCodes out = map.codes;
        for (char& code : out) {
            const std::optional<char> letter = letterOf(code);
            if (!letter)
                return wrong(fmt::format("The code \"{}\" stands for no material", code), file);
            code = *letter;
        }
        reletter(out, map);
        return out;
    }

  private:
    std::optional<char> letterOf(char code) const {
        const auto entry = plan_.codes.find(code);
        if (entry != plan_.codes.end())
            return entry->second == kOpenCode ? kOpen : static_cast<char>('A' + entry->second - 1);
        if (code == kOpen)
            return kOpen;
        const bool known = code >= 'A' && code < 'A' + static_cast<int>(plan_.materials.size());
        return known ? std::optional(code) : std::nullopt;
    }

    void reletter(ElementCodes& codes, const SeamMap& map) const {
        if (plan_.rings.empty())
            return;
        std::vector<bool> mined;
        mined.reserve(codes.size());
        for (const char code : codes)
            mined.push_back(code == kOpen ||
                            isGob(plan_.materials[static_cast<std::size_t>(code - 'A')]));
        const std::vector<int> rings = ringsAround(mined, map.nX, map.nY);
        for (const RingPlan& plan : plan_.rings)
            for (std::size_t k = 0; k < codes.size(); ++k)
                if (map.codes[k] == plan.coal && rings[k] >= 1 &&
                    rings[k] <= static_cast<int>(plan.materials.size()))
                    codes[k] = static_cast<char>(
                        'A' + plan.materials[static_cast<std::size_t>(rings[k]) - 1] - 1);
    }

    const ModelPlan& plan_;
};

base::Result<void> checkMaterials(const ModelPlan& plan) {
    const auto known = [&](int material) {
        return material >= 1 && material <= static_cast<int>(plan.materials.size());
    };
    for (const auto& [code, material] : plan.codes)
        if (material != kOpenCode && !known(material))
            return wrong(fmt::format("The code \"{}\" is given material {}, which there is not",
                                     code, material));
    for (const RingPlan& rings : plan.rings)
        for (const int material : rings.materials)
            if (!known(material))
                return wrong(fmt::format("A ring of the coal \"{}\" is given material {}, which "
                                         "there is not",
                                         rings.coal, material));
    return {};
}

// --- maps ---------------------------------------------------------------------------------------

// The maps of one seam, one a step, read once each.
base::Result<std::vector<SeamMap>> mapsOf(const SeamPlan& seam, int number) {
    if (seam.maps.empty())
        return wrong(fmt::format("Seam {} has no code map", number));
    std::vector<SeamMap> out;
    for (const std::string& file : seam.maps) {
        auto map = readSeamMap(file);
        if (!map)
            return map.error();
        if (!out.empty() && (map->x != out.front().x || map->y != out.front().y))
            return wrong(fmt::format("The code maps of seam {} differ in their origins", number),
                         file);
        out.push_back(std::move(*map));
    }
    return out;
}

struct Maps {
    std::vector<std::vector<SeamMap>> ofSeam;
    int steps = 0;

    const SeamMap& first() const { return ofSeam.front().front(); }
    std::size_t ofStep(std::size_t seam, int step) const {
        return std::min(ofSeam[seam].size(), static_cast<std::size_t>(step)) - 1;
    }
};

base::Result<Maps> readMaps(const ModelPlan& plan) {
    if (plan.seams.empty())
        return wrong("A model needs at least one seam");
    if (plan.seams.size() > static_cast<std::size_t>(kMostSeams))
        return wrong("Can Only Specify up to 4 Different Seams - RI2b\n");
    Maps out;
    for (std::size_t s = 0; s < plan.seams.size(); ++s) {
        auto maps = mapsOf(plan.seams[s], static_cast<int>(s) + 1);
        if (!maps)
            return maps.error();
        out.steps = std::max(out.steps, static_cast<int>(maps->size()));
        out.ofSeam.push_back(std::move(*maps));
        for (std::size_t k = 0; k < out.ofSeam.back().size(); ++k)
            if (out.ofSeam.back()[k].nX != out.first().nX ||
                out.ofSeam.back()[k].nY != out.first().nY)
                return wrong("The code maps differ in their numbers of elements",
                             plan.seams[s].maps[k]);
    }
    if (plan.steps > 0)
        out.steps = plan.steps;
    return out;
}

// --- text ---------------------------------------------------------------------------------------

class Writer {
  public:
    Writer(const ModelPlan& plan, const Maps& maps)
        : plan_(plan), maps_(maps), units_(kUnits[static_cast<std::size_t>(plan.unitSystem)]) {}

    base::Result<std::string> text() {
        header();
        control();
        if (const auto codes = appendCodes(); !codes)
            return codes.error();
        return std::move(out_);
    }

  private:
    static std::string f(double value) { return fieldText(value); }
    std::string length(double value) const { return fieldText(value / units_.lengthFactor); }

    void header() {
        out_ = plan_.title.substr(0, plan_.title.find('\n')) + "\n";
        out_ +=
            fmt::format("{:>12}, {:>12}, {:>12}, {:3}, {:3}\n", f(plan_.poissonsRatio),
                        f(plan_.modulus / units_.stressFactor), length(plan_.laminationThickness),
                        plan_.seams.size(), plan_.unitSystem);
        out_ += fmt::format("{:3}\n", plan_.materials.size());
        for (const Material& given : plan_.materials) {
            const Material m = inConsistentUnits(given, units_);
            out_ += fmt::format("{:3}, {:>12}, {:>12}, {:>12}, {:>12}, {:>12}\n",
                                static_cast<int>(m.type), f(m.p[0]), f(m.p[1]), f(m.p[2]),
                                f(m.p[3]), f(m.p[4]));
        }
        out_ += fmt::format("{:>12}, {:3}, {:3}, {:>12}\n", length(plan_.elementWidth),
                            maps_.first().nX, maps_.first().nY,
                            f(plan_.gradient / units_.stressFactor * units_.lengthFactor));
        for (std::size_t s = 0; s < plan_.seams.size(); ++s) {
            const SeamMap& map = maps_.ofSeam[s].front();
            out_ += fmt::format("{:>12}, {:>12}, {:>12}, {:>12}\n", length(map.x), length(map.y),
                                length(plan_.seams[s].z), length(plan_.seams[s].thickness));
        }
    }

    void control() {
        out_ += fmt::format("{:>12}, {:>12}, {:7}, {:3}, {:3}, {:3}, {:3}, {:3}\n",
                            f(plan_.overRelaxation), length(plan_.convergenceCriterion),
                            plan_.maxIterations, 1, maps_.steps, plan_.surfaceEffects ? 1 : 0,
                            plan_.offSeam ? 1 : 0, plan_.topography.empty() ? 0 : 1);
        const Boundaries& b = plan_.boundaries;
        out_ += fmt::format("{:3}, {:3}, {:3}, {:3}\n", b.north, b.east, b.south, b.west);
        if (!plan_.offSeam)
            return;
        const OffSeamGrid& g = *plan_.offSeam;
        out_ += fmt::format("{:7}, {:>12}, {:3}, {:3}, {:>12}, {:>12}, {:>12}\n",
                            static_cast<long>(g.nX) * g.nY, length(g.blockWidth), g.nX, g.nY,
                            length(g.x), length(g.y), length(g.z));
    }

    base::Result<void> appendCodes() {
        const Lettering lettering(plan_);
        for (int step = 1; step <= maps_.steps; ++step)
            for (std::size_t s = 0; s < plan_.seams.size(); ++s) {
                const std::size_t k = maps_.ofStep(s, step);
                const auto codes = lettering.of(maps_.ofSeam[s][k], plan_.seams[s].maps[k]);
                if (!codes)
                    return codes.error();
                appendRows(*codes);
            }
        return {};
    }

    void appendRows(const ElementCodes& codes) {
        const auto nX = static_cast<std::size_t>(maps_.first().nX);
        const auto nY = static_cast<std::size_t>(maps_.first().nY);
        for (std::size_t j = nY; j-- > 0;) {
            for (std::size_t i = 0; i < nX; ++i)
                out_ += codes[i * nY + j];
            out_ += '\n';
        }
    }

    const ModelPlan& plan_;
    const Maps& maps_;
    const Units& units_;
    std::string out_;
};

// Result files print an origin with five digits.
std::vector<std::string> originWarnings(const ModelPlan& plan, const Maps& maps) {
    std::vector<std::string> out;
    for (std::size_t s = 0; s < plan.seams.size(); ++s)
        for (const double origin : {maps.ofSeam[s].front().x, maps.ofSeam[s].front().y}) {
            const std::string printed = fmt::format("{:12.5g}", origin);
            if (std::abs(base::leadingDouble(printed) - origin) > 1e-3 * plan.elementWidth)
                out.push_back(fmt::format(
                    "Seam {}: result files print the origin {:.10g} as{}. Their grids lie that "
                    "much aside unless they are transferred over the base grid they came from.",
                    s + 1, origin, printed));
        }
    return out;
}

base::Result<void> addTopography(const ModelPlan& plan, ComposedModel& composed) {
    if (plan.topography.empty())
        return {};
    TopoReading reading = readTopoStress(plan.topography);
    if (!reading.ok())
        return base::formatError(reading.message, plan.topography, reading.line);
    if (reading.holdsDepths())
        composed.warnings.push_back(plan.topography +
                                    " says \"Overburden Depth\": a file of depths is taken for "
                                    "one of stresses.");
    composed.model.topography = std::move(reading.grid);
    if (const std::string fault = topographyFault(composed.model); !fault.empty())
        return wrong(fault, plan.topography);
    for (std::string& warning : topographyWarnings(composed.model))
        composed.warnings.push_back(std::move(warning));
    return {};
}

std::filesystem::path topographyBeside(const std::filesystem::path& model) {
    return std::filesystem::path(model).replace_extension(".top");
}

} // namespace

Material inConsistentUnits(const Material& material, const Units& units) {
    Material out = material;
    const std::array<bool, 5> stress = stressValues(material.type);
    for (std::size_t k = 0; k < out.p.size(); ++k)
        if (stress[k])
            out.p[k] /= units.stressFactor;
    return out;
}

// Breadth first from everything mined, eight neighbours an element.
std::vector<int> ringsAround(const std::vector<bool>& mined, int nX, int nY) {
    std::vector<int> ring(mined.size(), 0);
    std::vector<std::size_t> front;
    std::vector<bool> seen = mined;
    for (std::size_t k = 0; k < mined.size(); ++k)
        if (mined[k])
            front.push_back(k);
    const auto rows = static_cast<std::size_t>(nY);
    for (int number = 1; !front.empty(); ++number) {
        std::vector<std::size_t> next;
        for (const std::size_t k : front) {
            const int i = static_cast<int>(k / rows);
            const int j = static_cast<int>(k % rows);
            for (int x = std::max(0, i - 1); x <= std::min(nX - 1, i + 1); ++x)
                for (int y = std::max(0, j - 1); y <= std::min(nY - 1, j + 1); ++y) {
                    const std::size_t at =
                        static_cast<std::size_t>(x) * rows + static_cast<std::size_t>(y);
                    if (seen[at])
                        continue;
                    seen[at] = true;
                    ring[at] = number;
                    next.push_back(at);
                }
        }
        front = std::move(next);
    }
    return ring;
}

base::Result<ComposedModel> composeModel(const ModelPlan& plan) {
    if (plan.unitSystem < 0 || plan.unitSystem > 3)
        return wrong("The system of units must be 0 to 3");
    if (const auto checked = checkMaterials(plan); !checked)
        return checked.error();
    const auto maps = readMaps(plan);
    if (!maps)
        return maps.error();
    auto text = Writer(plan, *maps).text();
    if (!text)
        return text.error();
    ComposedModel out;
    ModelReading reading = parseModel(*text);
    if (!reading.ok())
        return base::formatError(reading.message, {}, 0);
    if (const ModelFault fault = modelFault(reading.model))
        return wrong(fault.text);
    out.text = std::move(*text);
    out.model = std::move(reading.model);
    out.warnings = originWarnings(plan, *maps);
    if (const auto topography = addTopography(plan, out); !topography)
        return topography.error();
    return out;
}

base::Result<void> writeComposed(const ModelPlan& plan, const ComposedModel& composed,
                                 const std::filesystem::path& path) {
    if (!plan.topography.empty()) {
        const std::filesystem::path beside = topographyBeside(path);
        std::error_code none;
        if (!std::filesystem::equivalent(plan.topography, beside, none)) {
            const auto content = base::readFile(plan.topography);
            if (!content)
                return content.error();
            if (const auto written = base::writeFile(beside, *content); !written)
                return written;
        }
    }
    return base::writeFile(path, composed.text);
}

} // namespace tessaran::stress
