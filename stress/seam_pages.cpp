#include "stress/seam_pages.h"

#include "base/file.h"
#include "base/text.h"
#include "base/tolerance.h"
#include "geometry/polygon.h"
#include "grid/base_grid.h"
#include "grid/boundary_cells.h"
#include "grid/cell_markers.h"
#include "grid/grid_drawing.h"
#include "host/curves.h"
#include "host/graphics.h"
#include "host/host.h"
#include "host/select_layers.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::stress {
namespace {

using geometry::Polygon;
using host::Answer;
using host::Buttons;
using host::DialogSession;
using host::Host;
using host::Question;

constexpr const char* kExtension = "txt";
constexpr const char* kMinimumArea = "Min. Area Inside (%):";
// Pairs of pillars whose common area is above this share of the area that makes a cell a pillar.
constexpr double kOverlapShare = 0.1;

int colourOfSeamCell(double value) {
    if (value > base::kTolerance)
        return host::colour::kRed;
    return value < -base::kTolerance ? host::colour::kYellow : host::colour::kGreen;
}

const char* nameOfSeamCell(double value) {
    if (value > base::kTolerance)
        return "pillar";
    return value < -base::kTolerance ? "gob" : "opening";
}

std::vector<Polygon> outlinesOf(Host& host, const std::vector<host::EntityId>& objects) {
    std::vector<Polygon> out;
    out.reserve(objects.size());
    for (const host::EntityId id : objects) {
        const host::Entity* entity = host.drawing().find(id);
        out.push_back(entity ? host::outlineOf(*entity) : Polygon{});
    }
    return out;
}

} // namespace

// --- the page -----------------------------------------------------------------------------------

void CSeamTab::describe(host::PageBuilder& page) {
    page.text("Output File (.txt) :", file_).onChange([this](DialogSession&) {
        if (!base::trimmed(file_).empty())
            file_ = base::withEnding(base::trimmed(file_), ".txt");
    });
    page.button("Browse...", [this](DialogSession& session) { browse(session.host()); });
    describeLayers(page, "Pillar Layer", "Pillar", pillars_);
    describeLayers(page, "Gob Layer", "Gob", gobs_);
    page.radio("Algorithm", {"Middle Point ", "Area Based"}, algorithm_);
    page.integer(kMinimumArea, minimumArea_, 0, 100).enabledWhen([this] {
        return options().algorithm == SeamAlgorithm::areaBased;
    });
    describeCodes(page);
    page.button(" &Build Grid ...", [this](DialogSession& session) { build(session); });
    page.button(" &Draw Grid ...", [this](DialogSession& session) { draw(session); });
    page.button(" &Save Grid ...", [this](DialogSession& session) { save(session.host()); });
    page.button(" Edit Cells ...", [this](DialogSession& session) { editCells(session); });
    page.button("Preview", [this](DialogSession& session) { preview(session); });
}

void CSeamTab::describeLayers(host::PageBuilder& page, const std::string& label,
                              const std::string& shortName, Kind& kind) {
    page.names(label, kind.layers);
    page.button("< Pick " + shortName + " Layer",
                [this, &kind](DialogSession& session) { pick(session, kind); });
    page.button("Select " + shortName + " Layers...",
                [this, &kind](DialogSession& session) { choose(session, kind); });
}

void CSeamTab::describeCodes(host::PageBuilder& page) {
    page.group("Element Code");
    page.text("Entry:", codes_.entry);
    page.text("Gob:", codes_.gob);
    page.text("Pillar:", codes_.pillar);
    page.group("");
}

SeamGridOptions CSeamTab::options() const {
    return {static_cast<SeamAlgorithm>(algorithm_), minimumArea_};
}

namespace {

void tellCount(Host& host, const std::vector<std::string>& layers, const char* text) {
    const std::size_t count = host::entitiesOnLayers(host, layers, host::kPolylineTypes).size();
    host.print(fmt::format(fmt::runtime(text), count, base::joined(layers, ",")));
}

} // namespace

void CSeamTab::pick(DialogSession& session, Kind& kind) {
    const DialogSession::Hidden hidden(session);
    kind.layers = host::pickLayers(session.host(), kind.layers, kind.pick);
    tellCount(session.host(), kind.layers, kind.count);
}

void CSeamTab::choose(DialogSession& session, Kind& kind) {
    kind.layers = host::selectLayers(session, kind.layers);
    tellCount(session.host(), kind.layers, kind.count);
}

void CSeamTab::browse(Host& host) {
    const auto chosen = host::chooseFileAt(host, host::FileRequest::Mode::save, kExtension,
                                           file_.empty() ? std::string("Untitled.txt") : file_);
    if (chosen)
        file_ = base::withEnding(*chosen, ".txt");
}

// --- build --------------------------------------------------------------------------------------

bool CSeamTab::layGrid(Host& host) {
    output_.markEmpty();
    if (!grid::defineFromBaseGrid(host, grid_)) {
        host.dialogs().message("Grid definition error!");
        return false;
    }
    grid_.fillValue(kEntryCell);
    if (std::abs(grid_.cellWidthX() - grid_.cellWidthY()) <= base::kTolerance)
        return true;
    host.dialogs().message("Plekton grid requires square elements! You need redefine the cell "
                           "width!!");
    return false;
}

void CSeamTab::build(DialogSession& session) {
    Host& host = session.host();
    if (!output_.mayRebuild(host, false, "grid is not saved yet! continue to rebuild") ||
        !session.validate(*this))
        return;
    if (pillars_.layers.empty()) {
        host.dialogs().message("No pillar layer is selected!");
        output_.markEmpty();
        return;
    }
    if (options().algorithm == SeamAlgorithm::none) {
        host.dialogs().message("No algorithm is selected!");
        output_.markEmpty();
        return;
    }
    if (!layGrid(host))
        return;
    const DialogSession::Hidden hidden(session);
    if (!fillGrid(host))
        return;
    output_.markBuilt();
    grid::drawAfterBuild(host, grid_, grid::kPreviewSeam);
}

// The pillars whose box meets the grid's; `objects` keeps theirs.
std::vector<Polygon> CSeamTab::relatedPillars(Host& host,
                                              std::vector<host::EntityId>& objects) const {
    host.print("\nFilter out the pillars outside the grid...");
    const auto outline = grid_.gridOutline();
    const geometry::Box2 extent = geometry::boxOf(*outline);
    std::vector<Polygon> all = outlinesOf(host, objects);
    std::vector<Polygon> kept;
    std::vector<host::EntityId> keptObjects;
    for (std::size_t k = 0; k < all.size(); ++k) {
        if (all[k].empty() || !geometry::boxOf(all[k]).meets(extent))
            continue;
        kept.push_back(std::move(all[k]));
        keptObjects.push_back(objects[k]);
    }
    objects = std::move(keptObjects);
    return kept;
}

bool CSeamTab::overlapping(const std::vector<Polygon>& pillars) const {
    if (options().algorithm != SeamAlgorithm::areaBased)
        return false;
    const double threshold = minimumArea_ * grid_.cellWidthX() * grid_.cellWidthY() * 0.01;
    return !grid::overlappingPairs(pillars, threshold * kOverlapShare).empty();
}

// Whether there is a seam grid now. Outlines and highlighting last as long as this.
bool CSeamTab::fillGrid(Host& host) {
    auto objects = host::entitiesOnLayers(host, pillars_.layers, host::kPolylineTypes);
    if (objects.empty()) {
        host.dialogs().message("No Pillar objects were in scope!");
        return false;
    }
    const std::size_t selected = objects.size();
    host::ShownGraphics shown(host.graphics());
    const auto outline = grid_.gridOutline();
    shown.polyline({outline->begin(), outline->end()}, true, host::colour::kMagenta);
    const std::vector<Polygon> pillars = relatedPillars(host, objects);
    const host::Highlighted highlighted(host.graphics(), objects);
    host.print("\nCheck overlpped pillars ...");
    std::string report =
        fmt::format("Pillar layers: {}\n{} Pillar objects were selected, {} are related to the "
                    "grid!",
                    base::joined(pillars_.layers, ","), selected, pillars.size());
    if (overlapping(pillars))
        report += "\nThere are Overlapped pillar objects!";
    if (host.dialogs().ask({report + "\nDo you want to continue?", Buttons::yesNo}) != Answer::yes)
        return false;
    std::vector<Polygon> gobs;
    if (!gobs_.layers.empty()) {
        const auto found = host::entitiesOnLayers(host, gobs_.layers, host::kPolylineTypes);
        gobs = outlinesOf(host, found);
        host.dialogs().message(fmt::format("Gob layers: {}\n{} Gob polygons were selected!",
                                           base::joined(gobs_.layers, ","), found.size()));
    }
    host.print("\n Building seam grid, please waiting...");
    const SeamGridResult result = buildSeamGrid(grid_, pillars, gobs, options(), host.meter());
    if (result.withoutShape > 0)
        host.print(fmt::format("\n{} polygons have no usable vertices and are skipped.",
                               result.withoutShape));
    if (result.cancelled)
        host.print("\nUser interrupted!!");
    return !result.cancelled;
}

// --- draw ---------------------------------------------------------------------------------------

void CSeamTab::draw(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    grid::drawForGood(session.host(), grid_, grid::kPreviewSeam);
}

void CSeamTab::preview(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    if (output_.built())
        grid::drawAfterBuild(session.host(), grid_, grid::kPreviewSeam);
    else
        session.host().dialogs().message("Grid is not defined or built!");
}

// --- save ---------------------------------------------------------------------------------------

bool CSeamTab::mayClose(DialogSession& session, bool /*accepted*/) {
    return output_.mayClose(session.host(), [&] { return save(session.host()); });
}

bool CSeamTab::save(Host& host) {
    if (!output_.built()) {
        host.dialogs().message("Grid is not defined or built!");
        return false;
    }
    if (base::trimmed(file_).empty())
        browse(host);
    else if (base::fileExists(file_) &&
             host.dialogs().ask({"File Exists, Do you want to Overwrite it?", Buttons::yesNo,
                                 Question::Stake::guarded}) != Answer::yes)
        return false;
    if (base::trimmed(file_).empty() ||
        host.dialogs().ask({fmt::format("Seam Grid value will be saved to < {} >", file_),
                            Buttons::okCancel, Question::Stake::confirmsSave}) != Answer::ok)
        return false;
    const SeamCodes defaults;
    for (auto code : {&SeamCodes::pillar, &SeamCodes::entry, &SeamCodes::gob})
        if ((codes_.*code).empty())
            codes_.*code = defaults.*code;
    if (std::abs(grid_.rotation()) > base::kTolerance)
        host.dialogs().message("The grid is turned. The .txt file does not hold its rotation.");
    const auto written = writeSeamMap(file_, grid_, codes_);
    if (written)
        output_.markSaved();
    else
        host.dialogs().message("File could not be opened for writing");
    return written.ok();
}

// --- edit cells ---------------------------------------------------------------------------------

void CSeamTab::editCells(DialogSession& session) {
    Host& host = session.host();
    if (!output_.built()) {
        if (!grid::defineFromBaseGrid(host, grid_)) {
            host.dialogs().message("Define grid fail!");
            return;
        }
        grid_.fillValue(kEntryCell);
        output_.markBuilt();
    }
    const DialogSession::Hidden hidden(session);
    grid::CellMarkers markers(host.graphics(), grid_, colourOfSeamCell,
                              grid::CellMarkers::Style::filled);
    while (const auto picked =
               grid::pickCell(host, grid_, "\nSelect a point in the cell to change:")) {
        const grid::CellIndex cell = *picked;
        const double next = nextSeamCell(grid_.getValue(cell.column, cell.row));
        grid_.setValue(cell.column, cell.row, next);
        host.print(fmt::format("\nCell({},{}) is change to {}!", cell.column + 1, cell.row + 1,
                               nameOfSeamCell(next)));
        output_.markChanged();
        markers.update(cell);
    }
}

} // namespace tessaran::stress
