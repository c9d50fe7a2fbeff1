#include "factors/contour_pages.h"

#include "base/file.h"
#include "base/numbers.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "factors/contour_interpolation.h"
#include "factors/contour_lines.h"
#include "grid/grid_objects.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace tessaran::factors {
namespace {

using geometry::Curve;
using host::DialogSession;
using host::Host;

constexpr const char* kTopoExtension = "top";
constexpr const char* kUntitledTopo = "Untitled.top";
constexpr const char* kNoContours = "\nNo related contour line in specified layers!";

// Switches all layers off but some, until it goes.
class OtherLayersOff {
  public:
    OtherLayersOff(Host& host, const std::vector<std::string>& kept) : drawing_(host.drawing()) {
        for (const host::Layer& layer : drawing_.layers()) {
            const bool stays = std::ranges::any_of(kept, [&](const std::string& name) {
                return base::equalsIgnoringCase(name, layer.name);
            });
            if (layer.on && !stays && switchTo(layer, false))
                off_.push_back(layer.name);
        }
        host.print(fmt::format("\n{} layers are temporarily turned off!", off_.size()));
    }
    OtherLayersOff(const OtherLayersOff&) = delete;
    OtherLayersOff& operator=(const OtherLayersOff&) = delete;
    ~OtherLayersOff() {
        for (const std::string& name : off_)
            if (const auto layer = drawing_.layer(name))
                switchTo(*layer, true);
    }

  private:
    bool switchTo(host::Layer layer, bool on) {
        layer.on = on;
        return drawing_.modifyLayer(layer).ok();
    }

    host::Drawing& drawing_;
    std::vector<std::string> off_;
};

// The curve at another height.
Curve at(const Curve& curve, double z) {
    std::vector<geometry::CurveVertex> vertices = curve.vertices();
    for (geometry::CurveVertex& v : vertices)
        v.at.z = z;
    return {vertices, curve.closed()};
}

// The numbers among the layer's texts.
std::vector<ContourLabel> labelsOn(Host& host, const std::string& layer) {
    std::vector<ContourLabel> labels;
    for (const host::EntityId id : host::entitiesOnLayers(host, {layer}, {"TEXT", "MTEXT"})) {
        const host::Entity* entity = host.drawing().find(id);
        const auto* text = entity ? std::get_if<host::Text>(&entity->geometry) : nullptr;
        const auto value = text ? base::leadingNumber(text->text) : std::nullopt;
        if (value && std::isfinite(*value))
            labels.push_back({text->at.plan(), *value});
    }
    return labels;
}

} // namespace

// --- the page -----------------------------------------------------------------------------------

std::string CTopoTab::title() const {
    return use_ == Use::topography ? "Topography Grid Generator for Plekton" : "Contours";
}

void CTopoTab::describe(host::PageBuilder& page) {
    if (use_ == Use::topography)
        page.information("Topography Grid Generation for Plekton", [] {
            return std::string("generates a grid for importing into PlekPre application.");
        });
    describeLayers(page, "Define Contour Layers", "<Pick Layer");
    page.radio("Contour Type", {"Elevation", "Text Label"}, contourType_);
    page.radio("Units", {"Feet", "Meters"}, units_);
    describeSeam(page);
    page.real("Max. Search Distance", searchLimit_);
    output_.describeFile(page, "Output File <.grd>");
    page.text("Output File <.top>", topoFile_)
        .onChange([this](DialogSession& session, const std::string& before) {
            grid::completeOutputName(session, topoFile_, before, kTopoExtension);
        });
    page.button("Browse...", [this](DialogSession& session) { browseTopo(session); });
    describeButtons(page);
}

void CTopoTab::describeSeam(host::PageBuilder& page) {
    page.check("Use Seam Level", useSeamLevel_);
    page.text("Seam Level :", seamText_);
    page.button("< Pick Seam Level", [this](DialogSession& session) { pickSeamLevel(session); });
}

void CTopoTab::browseTopo(DialogSession& session) {
    const auto mode = host::FileRequest::Mode::save;
    const auto chosen = topoFile_.empty()
                            ? host::chooseFile(session.host(), mode, kTopoExtension, kUntitledTopo)
                            : host::chooseFileAt(session.host(), mode, kTopoExtension, topoFile_);
    if (chosen)
        topoFile_ = base::withEnding(*chosen, std::string(".") + kTopoExtension);
}

void CTopoTab::pickSeamLevel(DialogSession& session) {
    Host& host = session.host();
    const DialogSession::Hidden hidden(session);
    const auto pick =
        host::selectObject(host, "\nPick a polyline object to retrieve the seam elevation:");
    const host::Entity* entity = pick ? host.drawing().find(pick->entity) : nullptr;
    if (entity == nullptr)
        return;
    if (const auto* polyline = std::get_if<host::Polyline>(&entity->geometry))
        seamText_ = base::shortest(polyline->elevation);
    else
        host.print("\nNot a polyline!");
}

double CTopoTab::seamLevel() const {
    return useSeamLevel_ ? base::leadingDouble(seamText_) : 0.0;
}

// --- build --------------------------------------------------------------------------------------

bool CTopoTab::layGrid(Host& host) {
    if (!layWorkingGrid(host)) {
        host.dialogs().message("Grid definition error!");
        return false;
    }
    if (std::abs(grid_.cellWidthX() - grid_.cellWidthY()) <= base::kTolerance)
        return true;
    host.dialogs().message("Plekton grid requires square elements! You need to redefine the cell "
                           "width!!");
    return false;
}

void CTopoTab::build(DialogSession& session) {
    Host& host = session.host();
    if (!output_.mayRebuild(host, false, "grid is not saved yet! continue to rebuild") ||
        !session.validate(*this))
        return;
    if (layers_.empty()) {
        host.dialogs().message("No layer is selected!");
        return;
    }
    const std::optional<double> seam =
        useSeamLevel_ ? base::leadingNumber(seamText_) : std::optional(0.0);
    if (!seam || !std::isfinite(*seam)) {
        host.dialogs().message("Please enter a number.");
        session.focus("Seam Level :");
        return;
    }
    if (!layGrid(host))
        return;
    const DialogSession::Hidden hidden(session);
    const OtherLayersOff others(host, layers_);
    const std::vector<Curve> lines = contours(host);
    if (lines.empty()) {
        host.print(kNoContours);
        return;
    }
    host.print(
        fmt::format("\nTotal {} related contour lines found in specified layers.", lines.size()));
    host.print(fmt::format("\nGrid({} X {}) is going to be built from these contours!", grid_.nX(),
                           grid_.nY()));
    if (host::waitForEnter(host) && fill(host, lines))
        output_.markBuilt();
}

std::vector<Curve> CTopoTab::contours(Host& host) const {
    const auto objects = objectsOverGrid(host, grid_, 0.0, layers_, host::kPolylineTypes);
    if (contourType_ == static_cast<int>(ContourType::textLabel))
        return labelled(host, objects);
    std::vector<Curve> curves;
    curves.reserve(objects.size());
    for (const host::EntityId id : objects)
        if (const host::Entity* entity = host.drawing().find(id))
            if (auto curve = host::curveOf(*entity))
                curves.push_back(std::move(*curve));
    return curves;
}

// Lines at the height of the nearest number on their layer, layer by layer.
std::vector<Curve> CTopoTab::labelled(Host& host,
                                      const std::vector<host::EntityId>& objects) const {
    std::map<std::string, std::vector<Curve>> byLayer;
    for (const host::EntityId id : objects)
        if (const host::Entity* entity = host.drawing().find(id))
            if (auto curve = host::curveOf(*entity))
                byLayer[base::lowered(entity->layer)].push_back(std::move(*curve));
    std::vector<Curve> curves;
    std::size_t without = 0;
    for (const auto& [layer, lines] : byLayer) {
        const std::vector<ContourLabel> labels = labelsOn(host, layer);
        if (labels.empty()) {
            without += lines.size();
            continue;
        }
        const std::vector<double> values = valuesOfLabels(lines, labels, GridFrame(grid_));
        for (std::size_t k = 0; k < lines.size(); ++k)
            curves.push_back(at(lines[k], values[k]));
    }
    if (without > 0)
        host.print(fmt::format("\n{} contour lines have no number on their layer and are left out.",
                               without));
    return curves;
}

bool CTopoTab::fill(Host& host, const std::vector<Curve>& contours) {
    host.print("\n Analyzing contour lines ...");
    const base::ProgressRun run(host.meter(), "Building grids...", 0,
                                static_cast<long>(grid_.nX()) * grid_.nY());
    const ContourGridResult result = gridContours(
        contours, {searchLimit_, seamLevel()}, grid_,
        [&](int i, int j) {
            host.print(fmt::format("\n too few contour lines to grid point {},{}", i, j));
        },
        host.meter());
    if (!result.completed)
        host.print(kCancelledByUser);
    else if (result.tooFew > 0)
        host.print(fmt::format("\n{} grid points found too few contour lines.", result.tooFew));
    return result.completed;
}

// --- save ---------------------------------------------------------------------------------------

// Writes each of the files that has a name; without any, the grid file is asked for.
bool CTopoTab::save(Host& host) {
    const bool topoNamed = !base::trimmed(topoFile_).empty();
    if (!output_.built() || !output_.fileName().empty() || !topoNamed)
        if (!output_.save(host))
            return false;
    if (topoNamed && !saveTopo(host)) {
        output_.markChanged();
        return false;
    }
    output_.markSaved();
    return true;
}

bool CTopoTab::saveTopo(Host& host) const {
    const host::Question question{fmt::format("Grid value will be saved to < {} >", topoFile_),
                                  host::Buttons::okCancel, host::Question::Stake::confirmsSave};
    if (host.dialogs().ask(question) != host::Answer::ok)
        return false;
    if (std::abs(grid_.rotation()) > base::kTolerance)
        host.dialogs().message("The grid is turned. The .top file does not hold its rotation.");
    const auto written =
        writeTopoFile(topoFile_, grid_, static_cast<DepthUnit>(units_), seamLevel());
    if (!written)
        host.dialogs().message("File could not be written: " + written.error().message());
    return written.ok();
}

} // namespace tessaran::factors
