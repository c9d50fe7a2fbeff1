#include "index/mapping_pages.h"

#include "base/text.h"
#include "grid/grid_drawing.h"
#include "grid/grid_output.h"
#include "grid/legend.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"
#include "host/services_selection.h"
#include "index/mapping_analysis.h"
#include "index/mapping_hatches.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::index {
namespace {

using host::Answer;
using host::Buttons;
using host::DialogSession;
using host::EntityId;
using host::Host;
using host::YesNo;

constexpr int kNewLayerColour = 210; // of a mapping layer that is missing

std::string currentLayer(Host& host) {
    const auto value = host.variables().get("CLAYER");
    const std::string* name = value ? std::get_if<std::string>(&*value) : nullptr;
    return name != nullptr ? *name : host.drawing().currentLayer();
}

void forgetErased(Host& host, std::vector<EntityId>& regions) {
    std::erase_if(regions, [&](EntityId id) { return host.drawing().find(id) == nullptr; });
}

} // namespace

// --- description --------------------------------------------------------------------------------

void MappingPage::describe(host::PageBuilder& page) {
    describeGrid(page);
    describeLayers(page);
    describeValues(page);
    describeActions(page);
}

void MappingPage::describeGrid(host::PageBuilder& page) {
    page.text("Index Grid File:", gridFile_).onChange([this](DialogSession& session) {
        readIndexGrid(session.host());
    });
    page.button("Pick the file", [this](DialogSession& session) { chooseGrid(session); });
    page.information("Grid Infomation",
                     [this] { return gridReady_ ? grid_.title() : std::string{}; });
    page.button("Pre&view Grid", [this](DialogSession& session) { preview(session); })
        .enabledWhen([this] { return gridReady_; })
        .tip("Preview current grid in Drawing screen");
}

void MappingPage::describeLayers(host::PageBuilder& page) {
    page.names("Pillar Layers", pillarLayers_);
    page.button("Pick a layer", [this](DialogSession& session) {
        const DialogSession::Hidden hidden(session);
        pillarLayers_ = host::pickLayers(session.host(), pillarLayers_);
    });
    page.dropList(
            "Mapping Layer:", [this] { return layers_ ? layers_() : std::vector<std::string>{}; },
            mappingLayer_)
        .takesNewNames();
    page.button("New", [this](DialogSession& session) { createLayer(session); });
}

void MappingPage::describeValues(host::PageBuilder& page) {
    page.radio("Options", {"All Values", "Larger than", "Small than"}, option_);
    page.real("Threshold", threshold_).enabledWhen([this] { return option_ > 0; });
    page.check("Black/White", blackWhite_);
}

void MappingPage::describeActions(host::PageBuilder& page) {
    page.information("", [this] { return hint_; });
    page.button("< &Analyze ...", [this](DialogSession& session) { analyze(session); })
        .tip("Create regions over entries with current grid file");
    page.button("< Pick Region", [this](DialogSession& session) { pickRegions(session); })
        .tip("Pick the existing region or polylines as hatch region");
    page.button("&Hatch", [this](DialogSession& session) { hatch(session); })
        .enabledWhen([this] { return regionCount() > 0; })
        .tip("Create hatch for regions in collection");
    page.button("< Legend", [this](DialogSession& session) { drawLegend(session); })
        .enabledWhen([this] { return gridReady_; });
}

void MappingPage::opened(DialogSession& session) {
    Host& host = session.host();
    layers_ = [&host] { return host::layerNames(host.drawing()); };
    hint_ = "<Analyze> to create new region with grid file;  <Pick Region> to get existing "
            "regions.";
    mappingLayer_ = currentLayer(host);
    if (!base::equalsIgnoringCase(mappingLayer_, host::kWorkingLayer))
        return;
    mappingLayer_ = "0";
    if (const auto switched = host.drawing().setCurrentLayer(mappingLayer_); !switched)
        host.print("\n" + switched.error().message());
}

// --- grid ---------------------------------------------------------------------------------------

void MappingPage::chooseGrid(DialogSession& session) {
    const auto chosen =
        host::chooseFile(session.host(), host::FileRequest::Mode::open, grid::kGridExtension);
    if (!chosen)
        return;
    gridFile_ = *chosen;
    readIndexGrid(session.host());
}

void MappingPage::readIndexGrid(Host& host) {
    gridReady_ = grid_.readGrid(host, gridFile_, true) && grid_.isDefined();
    if (!gridReady_) {
        host.dialogs().message("Read grid file error!");
        return;
    }
    threshold_ = std::round(grid_.getMean() * 100.0) / 100.0;
}

// Over the values that there are.
grid::ColourRamp MappingPage::ramp() const {
    const grid::MinMax range = grid_.getMinMax().value_or(grid::MinMax{});
    return grid::ColourRamp::between(range.min, range.max, grid::kDefaultBands,
                                     blackWhite_ ? grid::Palette::greys : grid::Palette::rainbow);
}

void MappingPage::preview(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    grid::drawAfterBuild(session.host(), grid_, grid::kMapFilled);
}

void MappingPage::drawLegend(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    grid::drawLegend(session.host(), ramp().table());
}

// --- layers -------------------------------------------------------------------------------------

void MappingPage::createLayer(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    const auto name = host::askForNewLayer(session.host());
    if (!name)
        return;
    mappingLayer_ = *name;
    session.host().dialogs().message(fmt::format("New layer < {} > has been created!", *name));
}

bool MappingPage::prepareMappingLayer(Host& host) const {
    if (host::ensureLayer(host, mappingLayer_, kNewLayerColour))
        return true;
    host.dialogs().message(fmt::format("Layer: <{}> creation failed!", mappingLayer_));
    return false;
}

// --- regions ------------------------------------------------------------------------------------

bool MappingPage::isReadyToAnalyze(Host& host) const {
    const char* missing = nullptr;
    if (!gridReady_)
        missing = "Grid is not ready yet!";
    else if (pillarLayers_.empty())
        missing = "No Pillar layer selected!";
    else if (std::any_of(pillarLayers_.begin(), pillarLayers_.end(), [&](const std::string& name) {
                 return base::equalsIgnoringCase(name, base::trimmed(mappingLayer_));
             }))
        missing = "Error: pillar layer and drawing layer identical!";
    if (missing != nullptr)
        host.dialogs().message(missing);
    return missing == nullptr;
}

bool MappingPage::askAboutEarlierRegions(Host& host) {
    forgetErased(host, newRegions_);
    if (newRegions_.empty())
        return true;
    const Answer answer = host.dialogs().ask(
        {fmt::format("There have been {} regions in new region collection!\n\rDo you want to erase "
                     "them before rebulding it?",
                     newRegions_.size()),
         Buttons::yesNoCancel});
    if (answer == Answer::yes)
        eraseNewRegions(host);
    return answer != Answer::cancel;
}

void MappingPage::eraseNewRegions(Host& host) {
    for (const EntityId id : newRegions_)
        host.drawing().erase(id);
    newRegions_.clear();
}

void MappingPage::showRegionCount() {
    hint_ = fmt::format("Total {} hatch regions are ready!", regionCount());
}

void MappingPage::analyze(DialogSession& session) {
    Host& host = session.host();
    if (!session.validate(*this) || !isReadyToAnalyze(host) || !prepareMappingLayer(host))
        return;
    const DialogSession::Hidden hidden(session);
    const std::size_t before = regionCount();
    if (!askAboutEarlierRegions(host))
        return;
    auto mapped = mapOntoDrawing(host, {grid_, ramp().table(), pillarLayers_, mappingLayer_,
                                        static_cast<ValueFilter>(option_), threshold_});
    if (mapped)
        newRegions_.insert(newRegions_.end(), mapped->begin(), mapped->end());
    if (mapped || regionCount() != before)
        showRegionCount();
}

void MappingPage::pickRegions(DialogSession& session) {
    Host& host = session.host();
    const DialogSession::Hidden hidden(session);
    host::SelectionPrompt prompt;
    prompt.message = "\nSelect hatch regions to add:";
    const std::vector<EntityId> selected = host::selectObjects(host, prompt);
    if (selected.empty())
        return;
    std::size_t appended = 0;
    for (const EntityId id : selected) {
        const host::Entity* entity = host.drawing().find(id);
        const bool known =
            std::find(pickedRegions_.begin(), pickedRegions_.end(), id) != pickedRegions_.end();
        if (entity == nullptr || known || !isHatchable(*entity))
            continue;
        pickedRegions_.push_back(id);
        ++appended;
    }
    host::waitForEnter(host, fmt::format("\nTotal {} hatch regions are appended from {} selected "
                                         "objects.",
                                         appended, selected.size()));
    showRegionCount();
}

void MappingPage::hatch(DialogSession& session) {
    Host& host = session.host();
    forgetErased(host, newRegions_);
    forgetErased(host, pickedRegions_);
    if (regionCount() == 0) {
        host.dialogs().message("No hatch region defined!");
        showRegionCount();
        return;
    }
    const DialogSession::Hidden hidden(session);
    host.print(fmt::format("\nSolid Pattern will be used in mapping total {} hatch regions!",
                           regionCount()));
    if (!host::waitForEnter(host))
        return;
    std::vector<EntityId> regions = newRegions_;
    regions.insert(regions.end(), pickedRegions_.begin(), pickedRegions_.end());
    const std::vector<EntityId> hatches = hatchRegions(host, regions);
    const YesNo keep = host::askYesNo(
        host, fmt::format("{} hatchs are created, save it?", hatches.size()), YesNo::yes);
    if (keep == YesNo::yes) {
        newRegions_.clear();
        pickedRegions_.clear();
    } else {
        for (const EntityId id : hatches)
            host.drawing().erase(id);
    }
    showRegionCount();
}

bool MappingPage::mayClose(DialogSession& session, bool /*accepted*/) {
    Host& host = session.host();
    forgetErased(host, newRegions_);
    if (newRegions_.empty())
        return true;
    const Answer answer =
        host.dialogs().ask({"Some new regions do not hatched! Do you want to erase these regions?",
                            Buttons::yesNoCancel, host::Question::Stake::guarded});
    if (answer == Answer::yes)
        eraseNewRegions(host);
    return answer != Answer::cancel;
}

} // namespace tessaran::index
