#include "factors/area_pages.h"

#include "base/tolerance.h"
#include "grid/base_grid.h"
#include "grid/cell_markers.h"
#include "grid/grid_drawing.h"
#include "grid/grid_objects.h"
#include "host/curves.h"
#include "host/graphics.h"
#include "host/host.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <set>

namespace tessaran::factors {
namespace {

using geometry::Polygon;
using grid::myGrid;
using host::Answer;
using host::DialogSession;
using host::Host;
using host::ShownGraphics;

constexpr const char* kOutside = "Outside Boundary:";
constexpr const char* kMinimumArea = "Min. Area Inside (%):";
constexpr const char* kDefinitionError = "Grid definition error!";

void tellSkipped(Host& host, const AreaFactorResult& result) {
    if (result.boundariesInOneLine > 0)
        host.print(fmt::format(
            "\n{} boundaries cover only one column or one row of cells and are skipped.",
            result.boundariesInOneLine));
    if (result.boundariesWithoutShape > 0)
        host.print(fmt::format("\n{} boundaries have no usable vertices and are skipped.",
                               result.boundariesWithoutShape));
    if (result.cancelled)
        host.print("\nUser interrupted!!");
}

} // namespace

void CAreaFactTab::describe(host::PageBuilder& page) {
    output_.describeFile(page);
    output_.describeDescription(page);
    page.integer("Inside Boundary:", insideFactor_, 0, 100);
    page.integer(kOutside, outsideFactor_, 0, 100);
    page.radio("Algorithm", {"Middle Point", "Area Based"}, algorithm_)
        .onChange([this](DialogSession& session) {
            if (options().algorithm == AreaAlgorithm::areaBased)
                session.focus(kMinimumArea);
        });
    page.integer(kMinimumArea, minimumArea_, 1, 100).enabledWhen([this] {
        return options().algorithm == AreaAlgorithm::areaBased;
    });
    page.check("Remove Boundaries", removeBoundaries_);
    page.button("< &Build Grid", [this](DialogSession& session) { build(session); });
    page.button("< &Draw Grid", [this](DialogSession& session) { draw(session); });
    page.button("< &Save Grid", [this](DialogSession& session) {
        if (output_.save(session.host()))
            changedByHand_ = false;
    });
    page.button("< Check Boundaries", [this](DialogSession& session) { check(session); });
    page.button("< Change Cells", [this](DialogSession& session) { changeCells(session); });
}

AreaFactorOptions CAreaFactTab::options() const {
    return {insideFactor_, outsideFactor_, minimumArea_, static_cast<AreaAlgorithm>(algorithm_)};
}

// --- boundaries ---------------------------------------------------------------------------------

CAreaFactTab::Boundaries CAreaFactTab::workingBoundaries(Host& host) {
    Boundaries boundaries;
    boundaries.entities = host::entitiesOnLayers(host, {host::kWorkingLayer}, host::kPolylineTypes);
    boundaries.existed = boundaries.entities.size();
    boundaries.outlines.reserve(boundaries.existed);
    for (const host::EntityId id : boundaries.entities) {
        const host::Entity* entity = host.drawing().find(id);
        boundaries.outlines.push_back(entity ? host::vertexPolygon(*entity) : Polygon{});
    }
    return boundaries;
}

void CAreaFactTab::keepRelated(const myGrid& grid, Boundaries& boundaries) {
    std::size_t kept = 0;
    for (std::size_t k = 0; k < boundaries.entities.size(); ++k) {
        if (!isRelatedToGrid(grid, boundaries.outlines[k]))
            continue;
        boundaries.entities[kept] = boundaries.entities[k];
        if (kept != k)
            boundaries.outlines[kept] = std::move(boundaries.outlines[k]);
        ++kept;
    }
    boundaries.entities.resize(kept);
    boundaries.outlines.resize(kept);
}

std::string CAreaFactTab::countText(const Boundaries& boundaries) {
    return fmt::format(
        "Working layers: {}\n{} Boundary objects existed, {} are related to the grid!",
        host::kWorkingLayer, boundaries.existed, boundaries.entities.size());
}

void CAreaFactTab::removeBoundaries(Host& host) const {
    if (!removeBoundaries_)
        return;
    host.print("\nBoundary polylines are removed!");
    host::eraseLayerObjects(host, host::kWorkingLayer);
}

// --- build --------------------------------------------------------------------------------------

bool CAreaFactTab::readDialog(DialogSession& session) {
    if (!session.validate(*this))
        return false;
    if (insideFactor_ != outsideFactor_)
        return true;
    session.host().dialogs().message("Error: Inside boundary factor is equal to outside factor!");
    session.focus(kOutside);
    return false;
}

// The earlier grid is gone from here on.
bool CAreaFactTab::defineWorkingGrid(Host& host) {
    output_.markEmpty();
    changedByHand_ = false;
    gridEmpty_ = true;
    return grid::defineFromBaseGrid(host, grid_);
}

void CAreaFactTab::build(DialogSession& session) {
    Host& host = session.host();
    if (!output_.mayRebuild(host, changedByHand_) || !readDialog(session))
        return;
    if (!defineWorkingGrid(host)) {
        host.dialogs().message(kDefinitionError);
        return;
    }
    Boundaries boundaries = workingBoundaries(host);
    if (boundaries.existed == 0) {
        host.dialogs().message(
            fmt::format("No boundary objects were in Layer < {} > !", host::kWorkingLayer));
        return;
    }
    const DialogSession::Hidden hidden(session);
    if (!fillGrid(host, boundaries))
        return;
    gridEmpty_ = false;
    output_.markBuilt();
    grid::drawAfterBuild(host, grid_, grid::kMapRuns);
}

// Whether there is a grid now. Outlines and highlighting last as long as this.
bool CAreaFactTab::fillGrid(Host& host, Boundaries& boundaries) {
    ShownGraphics shown(host.graphics());
    showGridOutline(shown, grid_, host::colour::kMagenta);
    host.print("\nFilter out the objects outside the grid...");
    keepRelated(grid_, boundaries);
    const std::string count = countText(boundaries);
    if (boundaries.entities.empty()) {
        host.dialogs().message(count);
        return false;
    }
    {
        const host::Highlighted highlighted(host.graphics(), boundaries.entities);
        host.graphics().redraw();
        if (host.dialogs().ask({count + "\nDo you want to continue?", host::Buttons::yesNo}) !=
            Answer::yes)
            return false;
        host.print("\n Building grid, please waiting...");
        if (options().algorithm == AreaAlgorithm::none)
            host.print("\nNo algorithm is chosen: every cell counts as inside.");
        for (const Polygon& outline : boundaries.outlines)
            if (!cellsOfBoundary(grid_, outline).empty())
                shown.polyline(outline, true, host::colour::kMagenta);
        tellSkipped(host, buildAreaFactor(grid_, boundaries.outlines, options(), host.meter()));
    }
    removeBoundaries(host);
    return true;
}

void CAreaFactTab::draw(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    if (gridEmpty_)
        session.host().print("\n Grid id not defined!");
    else
        grid::drawForGood(session.host(), grid_, grid::kMapRuns);
}

// --- check --------------------------------------------------------------------------------------

void CAreaFactTab::check(DialogSession& session) {
    Host& host = session.host();
    Boundaries boundaries = workingBoundaries(host);
    if (boundaries.existed == 0) {
        host.dialogs().message(
            fmt::format("No boundary polyline objects are in layer < {} >!", host::kWorkingLayer));
        return;
    }
    myGrid grid; // the working grid stays as it is
    if (!grid::defineFromBaseGrid(host, grid)) {
        host.dialogs().message(kDefinitionError);
        return;
    }
    const DialogSession::Hidden hidden(session);
    ShownGraphics shown(host.graphics());
    showGridOutline(shown, grid, host::colour::kMagenta);
    host.print("\nFilter out the polylines outside the grid...");
    keepRelated(grid, boundaries);
    const host::Highlighted highlighted(host.graphics(), boundaries.entities);
    host.print("\nCheck overlpped polylines ...");
    if (options().algorithm == AreaAlgorithm::areaBased) {
        std::set<std::size_t> overlapping;
        for (const OverlappingPair& pair : overlappingBoundaries(boundaries.outlines))
            overlapping.insert({pair.a, pair.b});
        for (const std::size_t k : overlapping)
            shown.polyline(boundaries.outlines[k], true, host::colour::kMagenta);
        host.print(fmt::format("\n{} polylines overlap others.", overlapping.size()));
    }
    host.graphics().redraw();
    host.dialogs().message(countText(boundaries));
}

// --- change cells -------------------------------------------------------------------------------

void CAreaFactTab::changeCells(DialogSession& session) {
    Host& host = session.host();
    if (gridEmpty_ && !defineWorkingGrid(host)) {
        host.dialogs().message("Define grid fail!");
        return;
    }
    gridEmpty_ = false;
    const DialogSession::Hidden hidden(session);
    grid::CellMarkers markers(host.graphics(), grid_);
    while (const auto picked =
               grid::pickCell(host, grid_, "\nSelect a point in the cell to reverse:")) {
        const grid::CellIndex cell = *picked;
        const bool wasPillar = grid_.getValue(cell.column, cell.row) > base::kTolerance;
        grid_.setValue(cell.column, cell.row, wasPillar ? 0.0 : 1.0);
        host.print(fmt::format("\nCell({},{}) is change to {}!", cell.column + 1, cell.row + 1,
                               wasPillar ? "opening" : "pillar"));
        changedByHand_ = true;
        output_.markChanged();
        markers.update(cell);
    }
}

} // namespace tessaran::factors
