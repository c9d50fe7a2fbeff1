#include "stress/plan_text.h"

#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::stress {
namespace {

base::Error expected(const char* what, const std::string& text) {
    return base::formatError(fmt::format("\"{}\" is not {}", text, what));
}

// All pieces from `first` on as numbers; nothing when one is none.
std::optional<std::vector<double>> numbers(const std::vector<std::string>& pieces,
                                           std::size_t first, std::size_t end) {
    std::vector<double> out;
    for (std::size_t k = first; k < end; ++k) {
        const auto value = base::wholeDouble(pieces[k]);
        if (!value || !std::isfinite(*value))
            return std::nullopt;
        out.push_back(*value);
    }
    return out;
}

std::optional<int> wholeNumber(const std::string& text, long long lowest, long long highest) {
    const auto value = base::wholeInt(text);
    if (!value || *value < lowest || *value > highest)
        return std::nullopt;
    return static_cast<int>(*value);
}

// "A=..." split into its code and what follows.
std::optional<std::pair<char, std::string>> assigned(const std::string& text) {
    const std::string_view trimmed = base::trimmed(text);
    if (trimmed.size() < 3 || trimmed[1] != '=')
        return std::nullopt;
    return std::pair(trimmed[0], std::string(base::trimmed(trimmed.substr(2))));
}

} // namespace

base::Result<Material> materialOf(const std::string& text) {
    constexpr const char* kForm = "a material: type (1 to 6) and up to five values";
    const auto pieces = base::split(text, ',');
    const auto type = wholeNumber(pieces.front(), 1, 6);
    const auto values = numbers(pieces, 1, pieces.size());
    if (!type || !values || values->size() > 5)
        return expected(kForm, text);
    Material out;
    out.type = static_cast<MaterialType>(*type);
    std::copy(values->begin(), values->end(), out.p.begin());
    return out;
}

std::string textOf(const Material& m) {
    std::string out = std::to_string(static_cast<int>(m.type));
    for (const double p : m.p)
        out += "," + base::shortest(p);
    return out;
}

base::Result<SeamPlan> seamOf(const std::string& text) {
    const auto pieces = base::split(text, ',');
    const auto values = pieces.size() >= 3 ? numbers(pieces, 0, 2) : std::nullopt;
    if (!values)
        return expected("a seam: Z, thickness and its code maps", text);
    SeamPlan out{(*values)[0], (*values)[1], {}};
    for (std::size_t k = 2; k < pieces.size(); ++k)
        out.maps.emplace_back(base::trimmed(pieces[k]));
    return out;
}

std::string textOf(const SeamPlan& seam) {
    return base::shortest(seam.z) + "," + base::shortest(seam.thickness) + "," +
           base::joined(seam.maps, ",");
}

base::Result<std::pair<char, int>> codeOf(const std::string& text) {
    const auto parts = assigned(text);
    if (parts && base::equalsIgnoringCase(parts->second, "open"))
        return std::pair(parts->first, kOpenCode);
    const auto material = parts ? wholeNumber(parts->second, 1, kMostMaterials) : std::nullopt;
    if (!material)
        return expected("a code and its material, such as S=2 or 0=open", text);
    return std::pair(parts->first, *material);
}

std::string textOf(const std::pair<const char, int>& code) {
    return fmt::format("{}={}", code.first,
                       code.second == kOpenCode ? "open" : std::to_string(code.second));
}

base::Result<RingPlan> ringsOf(const std::string& text) {
    constexpr const char* kForm = "a code and the materials of its rings, such as A=3,4,5";
    const auto parts = assigned(text);
    if (!parts)
        return expected(kForm, text);
    RingPlan out{parts->first, {}};
    for (const std::string& piece : base::split(parts->second, ',')) {
        const auto material = wholeNumber(piece, 1, kMostMaterials);
        if (!material)
            return expected(kForm, text);
        out.materials.push_back(*material);
    }
    return out;
}

std::string textOf(const RingPlan& rings) {
    std::vector<std::string> materials;
    for (const int material : rings.materials)
        materials.push_back(std::to_string(material));
    return fmt::format("{}={}", rings.coal, base::joined(materials, ","));
}

base::Result<Boundaries> boundariesOf(const std::string& text) {
    const auto pieces = base::split(text, ',');
    std::vector<int> values;
    for (const std::string& piece : pieces)
        if (const auto value = wholeNumber(piece, 0, 1))
            values.push_back(*value);
    if (pieces.size() != 4 || values.size() != 4)
        return expected("four boundary conditions (north,east,south,west), each 0 or 1", text);
    return Boundaries{values[0], values[1], values[2], values[3]};
}

std::string textOf(const Boundaries& b) {
    return fmt::format("{},{},{},{}", b.north, b.east, b.south, b.west);
}

base::Result<OffSeamGrid> offSeamOf(const std::string& text) {
    const auto pieces = base::split(text, ',');
    const bool six = pieces.size() == 6;
    const auto width = six ? numbers(pieces, 0, 1) : std::nullopt;
    const auto nX = six ? wholeNumber(pieces[1], 1, 100'000) : std::nullopt;
    const auto nY = six ? wholeNumber(pieces[2], 1, 100'000) : std::nullopt;
    const auto place = six ? numbers(pieces, 3, 6) : std::nullopt;
    if (!width || !nX || !nY || !place)
        return expected("an off-seam grid: block width, blocks in X, blocks in Y, x, y, z", text);
    return OffSeamGrid{*nX * *nY, (*width)[0], *nX, *nY, (*place)[0], (*place)[1], (*place)[2]};
}

std::string textOf(const OffSeamGrid& g) {
    return fmt::format("{},{},{},{},{},{}", base::shortest(g.blockWidth), g.nX, g.nY,
                       base::shortest(g.x), base::shortest(g.y), base::shortest(g.z));
}

} // namespace tessaran::stress
