#include "grid/grid_utility_pages.h"

#include "base/text.h"
#include "grid/grid_drawing.h"
#include "grid/group_percentage.h"
#include "grid/legend.h"
#include "grid/ramp_dialog.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"

#include <fmt/format.h>

namespace tessaran::grid {
namespace {

using host::DialogSession;
using host::Host;

constexpr const char* kExitQuestion = "Grid is modified but not saved, Do you want exit anyway?";
constexpr DrawMode kCellByCell = colourMap(0);

// A button that works on the drawing: the dialog hides meanwhile.
host::PageBuilder::Action hiding(std::function<void(Host&)> action) {
    return [action = std::move(action)](DialogSession& session) {
        const DialogSession::Hidden hidden(session);
        action(session.host());
    };
}

host::PageBuilder::Action showing(std::function<void(Host&)> action) {
    return [action = std::move(action)](DialogSession& session) { action(session.host()); };
}

} // namespace

// --- description --------------------------------------------------------------------------------

void GridUtilityPage::describe(host::PageBuilder& page) {
    describeGrid(page);
    describeValues(page);
    describeFigures(page);
    describePlot(page);
    page.group("");
    page.information("Status", [this] { return bench_.status(); });
}

void GridUtilityPage::describeGrid(host::PageBuilder& page) {
    page.group("Grid");
    page.information("Grid File", [this] { return bench_.fileName(); });
    page.information("Definition", [this] { return bench_.description(); });
    page.button("&Load", showing([this](Host& host) {
                    if (bench_.load(host))
                        anotherGrid();
                }));
    page.button("&Save", showing([this](Host& host) { bench_.save(host); }));
    page.button("&New", showing([this](Host& host) {
                    if (bench_.define(host))
                        anotherGrid();
                }));
    page.button("< &Move Origin", hiding([this](Host& host) { bench_.moveOrigin(host); }))
        .tip("Move grid origin point.");
}

void GridUtilityPage::describeValues(host::PageBuilder& page) {
    page.group("Values");
    // What is typed is looked at when it is applied.
    page.dropList(
            "Operation",
            [] { return std::vector<std::string>(kOperationNames.begin(), kOperationNames.end()); },
            operation_)
        .takesNewNames();
    page.text("Value", operand_);
    page.button("&Apply Value",
                showing([this](Host& host) { bench_.apply(host, operation_, operand_); }))
        .tip("Apply operation with the value.");
    page.button("Apply &Grid", showing([this](Host& host) { bench_.applyFile(host, operation_); }))
        .tip("Apply operation with another grid.");
    page.button("Get &Values", showing([this](Host& host) { bench_.takeValuesFromFile(host); }));
    page.button("< &Edit", hiding([this](Host& host) {
                    if (bench_.grid().isDefined())
                        bench_.grid().setColorBreaks(colourTable());
                    bench_.edit(host);
                }))
        .tip("Check and change element value.");
}

void GridUtilityPage::describeFigures(host::PageBuilder& page) {
    page.group("Statistics");
    page.button("S&tatistics", showing([this](Host& host) { bench_.showStatistics(host); }));
    page.button("< Statistics &in Polygons",
                hiding([this](Host& host) { bench_.showPolygonStatistics(host); }));
    page.button("< Group &Percentage", hiding([this](Host& host) { groupPercentage(host); }));
}

void GridUtilityPage::describePlot(host::PageBuilder& page) {
    page.group("Plot");
    page.dropList(
            "Layer", [this] { return layers_ ? layers_() : std::vector<std::string>{}; }, layer_)
        .takesNewNames();
    page.button("< New Layer", hiding([this](Host& host) { newLayer(host); }));
    page.check("Black/White", blackWhite_);
    page.check("Group by Color", toGroup_);
    page.button("Color Ramp...", showing([this](Host& host) { editRamp(host); }));
    page.button("< Plot", hiding([this](Host& host) { plot(host); }));
    page.button("< Preview", hiding([this](Host& host) { preview(host); }))
        .tip("Preview the grid plot.");
    page.button("< Legend", hiding([this](Host& host) { legend(host); }));
}

void GridUtilityPage::opened(DialogSession& session) {
    Host& host = session.host();
    layers_ = [&host] { return host::layerNames(host.drawing()); };
    layer_ = host.drawing().currentLayer();
}

bool GridUtilityPage::mayClose(DialogSession& session, bool /*accepted*/) {
    return bench_.mayLose(session.host(), kExitQuestion);
}

// --- drawing ------------------------------------------------------------------------------------

void GridUtilityPage::anotherGrid() {
    breaks_.clear();
}

std::vector<ColourBreak> GridUtilityPage::colourTable() {
    ColourRamp ramp =
        breaks_.empty() ? bench_.grid().defaultRamp() : ColourRamp::fromBreaks(breaks_);
    ramp.setPalette(blackWhite_ ? Palette::greys : Palette::rainbow);
    return ramp.table();
}

bool GridUtilityPage::prepareDrawing(Host& host) {
    if (!bench_.isReady(host))
        return false;
    layer_ = base::trimmed(layer_);
    if (layer_.empty())
        layer_ = host.drawing().currentLayer();
    if (!host::ensureLayer(host, layer_, host::colour::kForeground)) {
        host.print(fmt::format("\nLayer < {} > can not been created!", layer_));
        return false;
    }
    const DrawMode mode = toGroup_ ? kMapRegions : kCellByCell;
    bench_.grid().setColorBreaks(colourTable());
    bench_.grid().setDrawingSettings(mode.number, 0, layer_, false, true);
    return true;
}

std::string GridUtilityPage::drawingText(const char* what) const {
    return fmt::format("{} {} on layer {} in {} {}", what, bench_.fileName(), layer_,
                       blackWhite_ ? "black/white" : "color", toGroup_ ? " to group" : "");
}

void GridUtilityPage::plot(Host& host) {
    if (prepareDrawing(host) && drawForGood(host, bench_.grid()))
        bench_.setStatus(host, drawingText("Plot"));
}

void GridUtilityPage::preview(Host& host) {
    if (!prepareDrawing(host))
        return;
    bench_.setStatus(host, drawingText("Preview"));
    drawAfterBuild(host, bench_.grid(), toGroup_ ? kMapFilled : kCellByCell);
}

void GridUtilityPage::editRamp(Host& host) {
    if (!bench_.isReady(host))
        return;
    bench_.grid().setColorBreaks(colourTable());
    if (!editColours(host, bench_.grid()))
        return;
    breaks_.clear();
    for (const ColourBreak& entry : bench_.grid().colorBreaks())
        breaks_.push_back(entry.value);
}

void GridUtilityPage::legend(Host& host) {
    if (bench_.isReady(host))
        drawLegend(host, colourTable());
}

void GridUtilityPage::groupPercentage(Host& host) {
    if (!bench_.isReady(host) ||
        host::askYesNo(host, "Compute Group Percentage?", host::YesNo::yes) != host::YesNo::yes ||
        !prepareDrawing(host))
        return;
    const std::vector<ColourBreak> table = colourTable();
    if (!isUsableTable(table)) {
        bench_.setStatus(host, "Invalid grid color group definition!");
        return;
    }
    const std::vector<BandShare> shares = bandShares(bench_.grid(), table);
    bench_.setStatus(host, percentageText(shares));
    drawGroupPercentage(host, shares, layer_);
}

void GridUtilityPage::newLayer(Host& host) {
    const auto name = host::askForNewLayer(host);
    if (!name)
        return;
    layer_ = *name;
    bench_.setStatus(host, fmt::format("New layer < {} > has been created!", layer_));
}

} // namespace tessaran::grid
