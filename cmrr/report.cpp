#include "cmrr/report.h"

#include "base/numbers.h"

#include <fmt/format.h>

namespace tessaran::cmrr {
namespace {

constexpr int kLabelWidth = 28;

std::string numberText(double value) {
    return base::general(value == 0.0 ? 0.0 : value); // no "-0"
}

std::string labelled(const std::string& label, const std::string& text) {
    return fmt::format("{:<{}}{}\n", label, kLabelWidth, text);
}

const char* sourceText(const CUnit& unit) {
    switch (unit.ratingSource) {
    case RatingSource::typed:
        return "typed";
    case RatingSource::file:
        return "from a grid of ratings";
    default:
        return unit.type == DataType::core ? "from core" : "from observation";
    }
}

std::string inputText(const Input& input) {
    return input.fromFile ? "from " + input.file : numberText(input.constant.value_or(0.0));
}

std::string unitLines(const RoofData& data, const RoofResult& result) {
    std::string text;
    for (int n = 1; n <= data.units; ++n) {
        const auto u = static_cast<std::size_t>(n) - 1;
        const CUnit& unit = data.unit[u];
        const Range& range = result.units[u];
        const bool ofGrid = range.lowest != range.highest || range.withoutValue > 0;
        text += labelled(fmt::format("Unit {} rating", n),
                         fmt::format("{}, {}", rangeText(range, ofGrid), sourceText(unit)));
        text += labelled("  thickness (ft)", inputText(unit.thickness));
        text +=
            labelled("  contact at its top", unit.contact() == Contact::weak ? "weak" : "strong");
    }
    return text;
}

std::string partLines(const RoofData& data, const RoofResult& result) {
    const Breakdown& how = result.how;
    std::string text;
    text += labelled("Bolt length (ft)", numberText(data.final.boltLength.value_or(0.0)));
    text += labelled("Bolted units", numberText(how.participating));
    text += labelled(how.participating > 1 ? "Average over the bolts" : "Immediate roof",
                     numberText(how.average));
    text += labelled("Strong bed adjustment", numberText(how.strongBed));
    text += labelled("Weak contacts adjustment", numberText(how.contacts));
    text += labelled("Ground water adjustment", numberText(how.groundWater));
    text += labelled("Surcharge adjustment", numberText(how.surcharge));
    return text;
}

bool anyCore(const RoofData& data) {
    for (int n = 0; n < data.units; ++n)
        if (data.unit[static_cast<std::size_t>(n)].type == DataType::core)
            return true;
    return false;
}

} // namespace

std::string rangeText(const Range& range, bool ofGrid) {
    if (range.none)
        return "none";
    if (!ofGrid)
        return numberText(range.mean);
    return fmt::format("mean {} ({} to {})", numberText(range.mean), numberText(range.lowest),
                       numberText(range.highest));
}

std::string reportText(const RoofData& data, const RoofResult& result) {
    const bool ofGrid = result.cells > 0;
    std::string text = unitLines(data, result);
    if (ofGrid && !result.cmrr.none)
        text += "Means over the cells that have a rating, and the most units that are bolted:\n";
    if (!result.cmrr.none)
        text += partLines(data, result);
    text += labelled("CMRR", rangeText(result.cmrr, ofGrid));
    if (ofGrid)
        text += labelled("Cells without a rating",
                         fmt::format("{} of {}", result.cmrr.withoutValue, result.cells));
    if (anyCore(data))
        text += std::string(kCoreMoistureNote) + "\n";
    text.pop_back();
    return text;
}

} // namespace tessaran::cmrr
