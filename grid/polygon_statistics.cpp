#include "grid/polygon_statistics.h"

#include "base/numbers.h"
#include "grid/polygon_cells.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_entities.h"
#include "host/services_selection.h"

#include <fmt/format.h>

#include <vector>

namespace tessaran::grid {
namespace {

using geometry::PlanarRegion;
using host::EntityId;
using host::Host;

constexpr double kProposedPercent = 50.0;

// The areas of selected objects; open ones have none.
std::vector<PlanarRegion> areasOf(Host& host, const std::vector<EntityId>& objects) {
    std::vector<PlanarRegion> areas;
    for (const EntityId id : objects) {
        const auto loops = host::boundaryLoops(host.drawing(), {id});
        if (!loops)
            continue;
        areas.emplace_back();
        for (const host::Loop& loop : *loops)
            areas.back().loops.push_back(host::outlineOf(loop));
    }
    if (areas.size() < objects.size())
        host.print(fmt::format("\n{} of {} selected objects are not closed and left out.",
                               objects.size() - areas.size(), objects.size()));
    return areas;
}

std::vector<EntityId> askPolygons(Host& host, const char* message) {
    host::SelectionPrompt prompt;
    prompt.message = message;
    prompt.filter.types = {"LWPOLYLINE", "POLYLINE", "CIRCLE", "REGION"};
    return host::selectObjects(host, prompt);
}

std::optional<double> askPercent(Host& host) {
    const std::string message =
        fmt::format("\nInput area percentage criteria of grid cell inside/outside polygons<{}>:",
                    base::general(kProposedPercent));
    for (;;) {
        const auto answer = host.prompts().getReal({.message = message, .allowNegative = false});
        if (answer.status == host::PromptStatus::none)
            return kProposedPercent;
        if (!answer.ok())
            return std::nullopt;
        if (answer.value <= 100.0)
            return answer.value;
        host.print("\nThe percentage must be between 0 and 100!");
    }
}

} // namespace

std::optional<GridStatistics> askPolygonStatistics(Host& host, const myGrid& grid) {
    const auto in = askPolygons(host, "\nSelect inclusion polygons:");
    const auto out = askPolygons(host, "\nSelect exclusion polygons:");
    const auto percent = askPercent(host);
    if (!percent)
        return std::nullopt;
    const std::vector<PlanarRegion> inclusion = areasOf(host, in);
    const std::vector<PlanarRegion> exclusion = areasOf(host, out);
    if (inclusion.empty() && !in.empty())
        return std::nullopt; // told already: all cells are not what was meant
    const auto cells = cellsOfPolygons(grid, {inclusion, exclusion, *percent});
    if (!cells) {
        host.print("\n" + cells.error().message());
        return std::nullopt;
    }
    return statisticsOf(grid, *cells);
}

} // namespace tessaran::grid
