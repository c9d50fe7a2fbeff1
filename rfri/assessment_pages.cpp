#include "rfri/assessment_pages.h"

#include "host/host.h"

#include <fmt/format.h>

namespace tessaran::rfri {
namespace {

constexpr const char* kLabel = "Measurement Label";

std::vector<std::string> choicesOf(const Category& category, const std::string& given) {
    std::vector<std::string> texts(category.assessment.texts.begin(),
                                   category.assessment.texts.end());
    if (!isLevel(category, given))
        texts.push_back(given);
    return texts;
}

} // namespace

CRFRIDefectValue::CRFRIDefectValue(Assessment assessment) : assessment_(std::move(assessment)) {
    const Assessment defaults = defaultAssessment();
    for (std::size_t k = 0; k < kCategories; ++k)
        if (assessment_.levels[k].empty())
            assessment_.levels[k] = defaults.levels[k];
    given_ = assessment_;
}

void CRFRIDefectValue::describe(host::PageBuilder& page) {
    for (std::size_t k = 0; k < kCategories; ++k) {
        const Category& category = categories()[k];
        page.dropList(
            category.description,
            [this, &category, k] { return choicesOf(category, given_.levels[k]); },
            assessment_.levels[k]);
    }
    page.text(kLabel, assessment_.label);
    page.information("Notes", [this] { return foreignTexts(); });
}

std::string CRFRIDefectValue::foreignTexts() const {
    std::string notes;
    for (std::size_t k = 0; k < kCategories; ++k)
        if (!isLevel(categories()[k], assessment_.levels[k]))
            notes +=
                fmt::format("{}{}: \"{}\" is not one of the levels.", notes.empty() ? "" : "\n",
                            categories()[k].description, assessment_.levels[k]);
    return notes;
}

bool CRFRIDefectValue::accept(host::DialogSession& session) {
    if (!session.validate(*this))
        return false;
    if (assessment_.label.size() <= kMostLabelBytes)
        return true;
    session.host().dialogs().message(
        fmt::format("The measurement label is longer than {} bytes.", kMostLabelBytes));
    session.focus(kLabel);
    return false;
}

} // namespace tessaran::rfri
