#include "cmrr/general_page.h"

#include "base/numbers.h"
#include "base/text.h"
#include "cmrr/detail_pages.h"
#include "cmrr/final_page.h"
#include "cmrr/roof_rating.h"
#include "cmrr/unit_file.h"
#include "host/host.h"

#include <fmt/format.h>

namespace tessaran::cmrr {
namespace {

using host::Answer;
using host::Buttons;
using host::Control;
using host::ControlKind;
using host::DialogSession;
using host::FileRequest;
using host::Host;
using host::Question;

constexpr const char* kUnitFileFilter = "CMRR Input Files (*.cmr)|*.cmr|All Files (*.*)|*.*||";
constexpr const char* kThicknessReadError =
    "There was an error reading the thickness grid file UD-BW-1";
constexpr const char* kRatingReadError = "There was an error reading the grid file - CL-BW-1";
constexpr const char* kGridShown = "Grid";

// What the rating's field shows: nothing, a number, or that it is a grid.
std::string ratingText(const CUnit& unit) {
    switch (unit.ratingSource) {
    case RatingSource::none:
        return {};
    case RatingSource::typed:
        return base::shortest(unit.rating.value_or(0.0));
    case RatingSource::computed:
        return unit.rating ? base::general(*unit.rating) : kGridShown;
    case RatingSource::file:
        return unit.ratingFile.empty() ? std::string{} : kGridShown;
    }
    return {};
}

// What is typed over what is shown becomes a typed rating.
base::Result<void> storeRating(CUnit& unit, int number, const std::string& text) {
    const FieldCheck field = unitRatingCheck(number);
    if (!text.empty() && text == ratingText(unit))
        return unit.rating ? check(field, unit.rating) : base::Result<void>{};
    const base::Result<double> typed = readNumber(field, text);
    if (!typed)
        return typed.error();
    unit.rating = *typed;
    unit.ratingSource = RatingSource::typed;
    return {};
}

// From the data, if they are complete.
void rateAgain(CUnit& unit, int number) {
    static_cast<void>(computeRating(unit, number));
}

} // namespace

void GeneralPage::describe(host::PageBuilder& page) {
    page.information("", [this] {
        return "Unit Data File: " + (roof_.file.empty() ? std::string("none") : roof_.file);
    });
    wholeField(page, "Number of Units", kUnitsCheck, roof_.data.units);
    for (int n = 1; n <= kMostUnits; ++n)
        describeUnit(page, n);
    page.group("");
    page.button("Open...", [this](DialogSession& session) { open(session); });
    page.button("Save", [this](DialogSession& session) { save(session.host()); });
    page.button("Save As...", [this](DialogSession& session) { saveAs(session.host()); });
}

void GeneralPage::describeUnit(host::PageBuilder& page, int number) {
    page.group(fmt::format("Unit{}", number));
    Control type = choice(ControlKind::radio, "Type of Data",
                          {"Underground Observation", "Core Hole Data"}, unit(number).type);
    type.enabled = inUse(number);
    type.changed = [this, number](DialogSession&, const std::string&) {
        if (unit(number).ratingSource != RatingSource::file)
            rateAgain(unit(number), number);
    };
    page.custom(std::move(type));
    page.button("Details...",
                [this, number](DialogSession& session) {
                    if (editDetails(session.host(), roof_, number))
                        session.discardTyped(*this);
                })
        .enabledWhen(inUse(number));
    describeRatingFile(page, number);
    describeThickness(page, number);
    describeRating(page, number);
}

void GeneralPage::describeRatingFile(host::PageBuilder& page, int number) {
    CUnit& edited = unit(number);
    const auto take = [this, number](DialogSession& session) {
        CUnit& u = unit(number);
        if (takeGrid(session.host(), roof_, u.ratingFile, GridKind::rating, &u.ratingFile,
                     kRatingReadError)) {
            u.ratingSource = RatingSource::file;
            u.rating.reset();
            session.discardTyped(*this);
            return;
        }
        u.ratingFile.clear();
        if (u.ratingSource == RatingSource::file)
            rateAgain(u, number);
    };
    Control file;
    file.kind = ControlKind::check;
    file.label = "File";
    file.enabled = inUse(number);
    file.shown = [&edited] {
        return std::string(edited.ratingSource == RatingSource::file ? "1" : "0");
    };
    file.store = [&edited, number](const std::string& text) -> base::Result<void> {
        if (text != "1") {
            rateAgain(edited, number);
            return {};
        }
        edited.ratingSource = RatingSource::file;
        edited.rating.reset();
        return {};
    };
    page.custom(std::move(file));
    page.text("Rating Grid File", edited.ratingFile).enabledWhen(inUse(number)).onChange(take);
    page.button("Grid...",
                [&edited, take](DialogSession& session) {
                    const auto chosen =
                        browse(session.host(), FileRequest::Mode::open, "grd", kGridFilter);
                    if (!chosen)
                        return;
                    edited.ratingFile = *chosen;
                    take(session);
                })
        .enabledWhen([this, number, &edited] {
            return number <= roof_.data.units && edited.ratingSource == RatingSource::file;
        });
}

void GeneralPage::describeThickness(host::PageBuilder& page, int number) {
    Input& thickness = unit(number).thickness;
    numberField(page, "Thickness", thicknessCheck(number), thickness.constant)
        .enabledWhen([this, number, &thickness] {
            return number <= roof_.data.units && !thickness.fromFile;
        });
    page.check("From File", thickness.fromFile).enabledWhen(inUse(number));
    gridField(page, roof_, thickness,
              {"Thickness Grid File", GridKind::thickness, kThicknessReadError, inUse(number)});
}

void GeneralPage::describeRating(host::PageBuilder& page, int number) {
    CUnit& edited = unit(number);
    Control rating;
    rating.label = "Rating";
    rating.shown = [&edited] { return ratingText(edited); };
    rating.store = [&edited, number](const std::string& text) {
        return storeRating(edited, number, text);
    };
    rating.enabled = [this, number, &edited] {
        return number <= roof_.data.units && edited.ratingSource != RatingSource::file;
    };
    page.custom(std::move(rating));
}

// --- on to the final data -----------------------------------------------------------------------

bool GeneralPage::acceptsThin(DialogSession& session, int number) {
    const Input& thickness = unit(number).thickness;
    if (thickness.fromFile || !thickness.constant || !isThin(*thickness.constant))
        return true;
    if (session.host().dialogs().ask(
            {thinUnitQuestion(number), Buttons::yesNo, Question::Stake::ordinary}) == Answer::yes)
        return true;
    session.focus(fmt::format("Unit{}/Thickness", number));
    return false;
}

bool GeneralPage::checkUnits(DialogSession& session) {
    if (!session.validate(*this))
        return false;
    for (int n = 1; n <= roof_.data.units; ++n) {
        if (!acceptsThin(session, n))
            return false;
        if (const auto checked = checkUnit(unit(n), n); !checked) {
            session.host().dialogs().message(checked.error().text);
            session.focus(fmt::format("Unit{}/Details...", n));
            return false;
        }
    }
    std::vector<GridUse> uses = gridsInUse(roof_.data);
    std::erase_if(uses, [](const GridUse& use) { return use.kind == GridKind::groundWater; });
    return readGrids(session.host(), roof_, uses);
}

void GeneralPage::next(DialogSession& session) {
    if (!checkUnits(session))
        return;
    FinalPage page(roof_);
    FinalDialog dialog(page);
    host::runDialog(session.host(), dialog);
}

// --- the unit data file -------------------------------------------------------------------------

void GeneralPage::open(DialogSession& session) {
    Host& host = session.host();
    if (!mayDiscard(host))
        return;
    const auto file = browse(host, FileRequest::Mode::open, kUnitFileExtension, kUnitFileFilter);
    if (!file)
        return;
    base::Result<RoofData> data = readUnitFile(*file);
    if (!data) {
        host.dialogs().message(data.error().text);
        host.print("\n" + data.error().message());
        return;
    }
    roof_.data = std::move(data).value();
    roof_.saved = roof_.data;
    roof_.file = *file;
    session.discardTyped(*this);
}

bool GeneralPage::save(Host& host) {
    if (roof_.file.empty())
        return saveAs(host);
    const auto written = writeUnitFile(roof_.file, roof_.data);
    if (!written) {
        host.dialogs().message(written.error().message());
        return false;
    }
    roof_.saved = roof_.data;
    return true;
}

bool GeneralPage::saveAs(Host& host) {
    const auto chosen = browse(host, FileRequest::Mode::save, kUnitFileExtension, kUnitFileFilter);
    if (!chosen)
        return false;
    const std::string before = roof_.file;
    roof_.file = base::withEnding(*chosen, std::string(".") + kUnitFileExtension);
    if (save(host))
        return true;
    roof_.file = before;
    return false;
}

bool GeneralPage::mayDiscard(Host& host) {
    if (!roof_.changed())
        return true;
    const Answer answer = host.dialogs().ask({"The unit data are not saved! Save them?",
                                              Buttons::yesNoCancel, Question::Stake::guarded});
    return answer == Answer::yes ? save(host) : answer == Answer::no;
}

bool GeneralPage::mayClose(DialogSession& session, bool /*accepted*/) {
    return mayDiscard(session.host());
}

} // namespace tessaran::cmrr
