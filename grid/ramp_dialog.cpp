#include "grid/ramp_dialog.h"

#include "base/numbers.h"
#include "grid/my_grid.h"
#include "host/host.h"

#include <utility>

namespace tessaran::grid {
namespace {

constexpr const char* kTitle = "Color Ramp";

std::optional<ColourRamp> runRampDialog(host::Host& host, ColourRamp ramp, int bands) {
    CRampPage page(std::move(ramp), bands);
    host::Dialog dialog(kTitle, {&page});
    if (!host::runDialog(host, dialog))
        return std::nullopt;
    return page.ramp();
}

} // namespace

CRampPage::CRampPage(ColourRamp ramp, int bands)
    : ramp_(std::move(ramp)), lowest_(ramp_.lowest()), highest_(ramp_.highest()), bands_(bands) {}

void CRampPage::describe(host::PageBuilder& page) {
    const auto changed = [this](host::DialogSession& session) { rebuild(session); };
    page.real("Lowest", lowest_).onChange(changed);
    page.real("Highest", highest_).onChange(changed);
    page.integer("Bands", bands_, 1, kMostBands).onChange(changed);
    page.list(
        "Break Values", {"Value", "Band", "Colour"}, [this] { return rows(); }, selected_);
    page.button("Delete", [this](host::DialogSession& session) { deleteSelected(session); })
        .enabledWhen([this] { return !selected_.empty() && ramp_.bands() > 1; });
}

std::vector<host::Control::Row> CRampPage::rows() const {
    std::vector<host::Control::Row> out;
    const std::vector<double>& breaks = ramp_.breaks();
    for (std::size_t i = 0; i < breaks.size(); ++i) {
        host::Control::Row row{base::general(breaks[i]), "", ""};
        if (i + 1 < breaks.size()) {
            row[1] = bandLabel(breaks[i], breaks[i + 1]);
            row[2] = std::to_string(ramp_.colours()[i]);
        }
        out.push_back(std::move(row));
    }
    return out;
}

void CRampPage::rebuild(host::DialogSession& session) {
    ramp_ = ColourRamp::between(lowest_, highest_, bands_, ramp_.palette());
    selected_.clear();
    session.refresh();
}

void CRampPage::deleteSelected(host::DialogSession& session) {
    if (selected_.empty())
        return;
    const auto index = static_cast<std::size_t>(selected_.front());
    if (index >= ramp_.breaks().size())
        return;
    host::Question question;
    question.text = "Delete value break point: " + base::general(ramp_.breaks()[index]);
    if (session.host().dialogs().ask(question) != host::Answer::yes)
        return;
    ramp_.removeBreak(index);
    selected_.clear();
    session.refresh();
}

std::optional<ColourRamp> askColourRamp(host::Host& host, double lowest, double highest, int bands,
                                        Palette palette) {
    return runRampDialog(host, ColourRamp::between(lowest, highest, bands, palette), bands);
}

bool editColours(host::Host& host, myGrid& grid) {
    std::vector<double> breaks;
    for (const ColourBreak& entry : grid.colorBreaks())
        breaks.push_back(entry.value);
    ColourRamp ramp = breaks.size() < 2 ? grid.defaultRamp() : ColourRamp::fromBreaks(breaks);
    const int bands = ramp.bands();
    const std::optional<ColourRamp> edited = runRampDialog(host, std::move(ramp), bands);
    if (edited)
        grid.setColorBreaks(edited->table());
    return edited.has_value();
}

} // namespace tessaran::grid
