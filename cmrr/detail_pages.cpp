#include "cmrr/detail_pages.h"

#include "cmrr/report.h"
#include "cmrr/roof_rating.h"
#include "host/host.h"

#include <fmt/format.h>

namespace tessaran::cmrr {
namespace {

using host::ControlKind;
using host::DialogSession;

constexpr const char* kGridReadError = "There was an error reading the grid file - CL-BW-1";
constexpr const char* kContact = "Contact at Top of the Unit";
constexpr const char* kMoisture = "Moisture Sensitivity Index";
constexpr const char* kSets = "Sets...";

void describeContact(host::PageBuilder& page, Contact& member) {
    page.custom(choice(ControlKind::dropList, kContact, {"Strong", "Weak"}, member));
}

} // namespace

// --- underground observation --------------------------------------------------------------------

void ObservationPage::describe(host::PageBuilder& page) {
    Input& strength = data_.strengthIndex;
    numberField(page, "Strength Index", kStrengthIndexCheck, strength.constant)
        .enabledWhen([&strength] { return !strength.fromFile; });
    gridField(page, roof_, strength,
              {"Strength Grid File", GridKind::strength, kGridReadError, {}});
    wholeField(page, "Number of Discontinuities", kDiscontinuitiesCheck, data_.discontinuities);
    numberField(page, "No-Discontinuity Index", kNoDiscontinuityCheck, data_.noDiscontinuityIndex)
        .enabledWhen([this] { return data_.discontinuities == 0; });
    page.button(kSets, [this](DialogSession& session) { editSets(session); }).enabledWhen([this] {
        return data_.discontinuities > 0;
    });
    numberField(page, kMoisture, kMoistureCheck, data_.moisture);
    describeContact(page, data_.contact);
}

bool ObservationPage::accept(DialogSession& session) {
    const auto checked = checkSets(data_);
    if (checked)
        return true;
    session.host().dialogs().message(checked.error().text);
    session.focus(kSets);
    return false;
}

void ObservationPage::editSets(DialogSession& session) {
    const auto before = data_.sets;
    Sets page(data_);
    host::Dialog dialog("Discontinuities", {&page});
    if (!host::runDialog(session.host(), dialog))
        data_.sets = before;
}

void Sets::describe(host::PageBuilder& page) {
    for (int s = 1; s <= kMostSets; ++s) {
        DiscontinuitySet& set = data_.sets[static_cast<std::size_t>(s) - 1];
        const auto inUse = [this, s] { return s <= data_.discontinuities; };
        page.group(fmt::format("Set {}", s));
        numberField(page, "Cohesion", cohesionCheck(s), set.cohesion).enabledWhen(inUse);
        numberField(page, "Roughness", roughnessCheck(s), set.roughness).enabledWhen(inUse);
        numberField(page, "Spacing", spacingCheck(s), set.spacing).enabledWhen(inUse);
        numberField(page, "Persistence", persistenceCheck(s), set.persistence).enabledWhen(inUse);
    }
}

// --- drill core ---------------------------------------------------------------------------------

void CorePage::describe(host::PageBuilder& page) {
    describeDiametral(page);
    describeFractures(page);
    describeAxial(page);
    page.group("");
    numberField(page, kMoisture, kMoistureCheck, data_.moisture);
    page.information("", [] { return std::string(kCoreMoistureNote); });
    describeContact(page, data_.contact);
}

void CorePage::describeInput(host::PageBuilder& page, const std::string& label,
                             const FieldCheck& field, Input& input, const std::string& gridLabel,
                             GridKind kind, const Condition& inUse) {
    numberField(page, label, field, input.constant).enabledWhen([&input, inUse] {
        return inUse() && !input.fromFile;
    });
    gridField(page, roof_, input, {gridLabel, kind, kGridReadError, inUse});
}

void CorePage::describeDiametral(host::PageBuilder& page) {
    page.group("Diametral Test");
    page.custom(choice(ControlKind::radio, "Diametral Test",
                       {"Is(50) (psi)", "No Diametral Available"}, data_.diametralTest));
    describeInput(page, "Is(50) (psi)", kDiametralIs50Check, data_.diametralIs50,
                  "Diametral Strength Grid File", GridKind::diametral,
                  [this] { return data_.diametralTest == DiametralTest::is50; });
    page.custom(choice(ControlKind::dropList, "Diametral Estimate", {"Weak", "Moderate", "Strong"},
                       data_.estimate))
        .enabledWhen([this] { return data_.diametralTest == DiametralTest::notAvailable; });
}

void CorePage::describeFractures(host::PageBuilder& page) {
    page.group("Fracture Information");
    page.custom(choice(ControlKind::radio, "Fracture Information",
                       {"RQD %", "Discontinuity Spacing (in)", "No Fractures"}, data_.fractures));
    describeInput(page, "RQD %", kRqdCheck, data_.rqd, "RQD% Grid File", GridKind::rqd,
                  [this] { return data_.fractures == Fractures::rqd; });
    describeInput(page, "Discontinuity Spacing (in)", kDiscontinuitySpacingCheck, data_.spacing,
                  "Discontinuity Spacing Grid File", GridKind::spacing,
                  [this] { return data_.fractures == Fractures::spacing; });
}

void CorePage::describeAxial(host::PageBuilder& page) {
    page.group("Axial Test");
    page.custom(
        choice(ControlKind::radio, "Axial Test", {"Is(50) (psi)", "UCS (psi)"}, data_.axialTest));
    describeInput(page, "Is(50) (psi)", kAxialIs50Check, data_.axialIs50, "Axial Is50 Grid File",
                  GridKind::axialIs50, [this] { return data_.axialTest == AxialTest::is50; });
    describeInput(page, "UCS (psi)", kUcsCheck, data_.ucs, "Axial UCS Grid File", GridKind::ucs,
                  [this] { return data_.axialTest == AxialTest::ucs; });
}

// --- either -------------------------------------------------------------------------------------

bool editDetails(host::Host& host, RoofSession& roof, int number) {
    CUnit& unit = roof.data.unit[static_cast<std::size_t>(number) - 1];
    const CUnit before = unit;
    unit.ratingSource = RatingSource::computed; // so that its grids count among those in use
    ObservationPage observation(roof, unit);
    CorePage core(roof, unit);
    const bool ofCore = unit.type == DataType::core;
    host::DialogPage* page = &observation;
    if (ofCore)
        page = &core;
    host::Dialog dialog(ofCore ? "Core Data" : "Underground Observation Data", {page});
    if (!host::runDialog(host, dialog)) {
        unit = before;
        return false;
    }
    if (const auto computed = computeRating(unit, number); !computed)
        host.dialogs().message(computed.error().text);
    return true;
}

} // namespace tessaran::cmrr
