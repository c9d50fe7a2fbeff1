#include "rfri/assessment.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaran::rfri {
namespace {

constexpr int kTextItem = 1000;
constexpr int kStep = 10;

int roundedDown(int value) {
    return static_cast<int>(std::floor(value / static_cast<double>(kStep))) * kStep;
}

int truncated(double value) {
    constexpr double kLargest = std::numeric_limits<int>::max();
    return static_cast<int>(std::trunc(std::clamp(value, -kLargest, kLargest)));
}

} // namespace

Assessment defaultAssessment() {
    Assessment out;
    for (std::size_t k = 0; k < kCategories; ++k) {
        const AssessmentLevels& levels = categories()[k].assessment;
        out.levels[k] = levels.texts[levels.byDefault];
    }
    out.label = kDefaultLabel;
    return out;
}

std::optional<Assessment> assessmentOf(const std::vector<host::XDataItem>& items) {
    if (items.size() != kCategories + 1)
        return std::nullopt;
    Assessment out;
    for (std::size_t k = 0; k < items.size(); ++k) {
        const auto* text = std::get_if<std::string>(&items[k].value);
        if (items[k].code != kTextItem || text == nullptr)
            return std::nullopt;
        (k < kCategories ? out.levels[k] : out.label) = *text;
    }
    return out;
}

std::vector<host::XDataItem> itemsOf(const Assessment& assessment) {
    std::vector<host::XDataItem> items;
    for (const std::string& level : assessment.levels)
        items.push_back({kTextItem, level});
    items.push_back({kTextItem, assessment.label});
    return items;
}

bool isLevel(const Category& category, const std::string& text) {
    const auto& texts = category.assessment.texts;
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

int indexValue(const Assessment& assessment) {
    double scaled = 0.0;
    double adjustments = 0.0;
    for (std::size_t k = 0; k < kCategories; ++k) {
        const Category& category = categories()[k];
        (category.scaled ? scaled : adjustments) +=
            category.weight * levelValue(assessment.levels[k]);
    }
    return truncated(kScale * scaled + adjustments);
}

std::pair<int, int> widenedRange(int smallest, int largest) {
    const int p = roundedDown(smallest);
    const int q = roundedDown(largest);
    const int upper = largest - q >= 5 ? q + 10 : (largest - q > 0 ? q + 5 : q);
    const int lower = smallest - p >= 5 ? p + 5 : p;
    return {lower, upper};
}

} // namespace tessaran::rfri
