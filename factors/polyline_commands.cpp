#include "factors/polyline_commands.h"

#include "base/numbers.h"
#include "base/text.h"
#include "factors/contour_checks.h"
#include "factors/polygon_checks.h"
#include "factors/polyline_selection.h"
#include "factors/polyline_vertices.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/layer_dialog.h"
#include "host/services_dialogs.h"
#include "host/services_layers.h"

#include <fmt/format.h>

namespace tessaran::factors {
namespace {

using geometry::Curve;
using host::EntityId;
using host::Host;
using host::PromptStatus;

constexpr const char* kWaitMessage = "\n <Enter> to continue ...";
constexpr const char* kCancelled = "\nCanceled by user!";

// Objects that are curves, with their curves.
struct Curves {
    std::vector<EntityId> ids;
    std::vector<Curve> curves;
};

Curves curvesAmong(Host& host, const std::vector<EntityId>& objects) {
    Curves out;
    for (const EntityId id : objects) {
        const host::Entity* entity = host.drawing().find(id);
        auto curve = entity ? host::curveOf(*entity) : std::nullopt;
        if (!curve)
            continue;
        out.ids.push_back(id);
        out.curves.push_back(std::move(*curve));
    }
    return out;
}

std::vector<EntityId> idsAt(const std::vector<EntityId>& ids,
                            const std::vector<std::size_t>& places) {
    std::vector<EntityId> out;
    for (const std::size_t k : places)
        out.push_back(ids[k]);
    return out;
}

host::PromptResult<double> askElevation(Host& host) {
    host::NumberPrompt prompt;
    prompt.message = "\n<Intersection>/[Input the elevation value]:<I>";
    prompt.keywords = "Intersection";
    return host.prompts().getReal(prompt);
}

void checkElevation(Host& host, double elevation) {
    const std::string value = base::fixed6(elevation);
    const auto selected =
        selectFor(host, fmt::format("\nSelect objects to check value {} :", value));
    if (selected.empty())
        return;
    const Curves contours = curvesAmong(host, selected);
    std::vector<std::size_t> level;
    for (std::size_t k = 0; k < contours.ids.size(); ++k)
        if (hasElevation(contours.curves[k], elevation))
            level.push_back(k);
    host.graphics().highlight(idsAt(contours.ids, level), true);
    host.print(fmt::format("\n {} in {} contours have elevation of {}", level.size(),
                           contours.ids.size(), value));
}

void checkIntersections(Host& host) {
    const auto selected = selectFor(host, "\nSelect objects to check intersection:");
    if (selected.empty())
        return;
    const Curves contours = curvesAmong(host, selected);
    std::optional<std::vector<std::size_t>> meeting;
    {
        const base::ProgressRun run(host.meter(), "Check through contours...", 0,
                                    static_cast<long>(contours.ids.size()));
        meeting = meetingContours(contours.curves, host.meter());
    }
    if (!meeting) {
        host.print(kCancelled);
        return;
    }
    host.graphics().highlight(idsAt(contours.ids, *meeting), true);
    host.print(
        fmt::format("\n {} in {} contours may intersected!", meeting->size(), contours.ids.size()));
}

// --- closed polylines held against each other ---------------------------------------------------

using PolygonCheck = std::optional<std::vector<std::size_t>> (*)(std::span<const Curve>,
                                                                 base::Progress&);

// The closed polylines of a selection that the check finds; nothing when the user ended it.
std::optional<std::vector<EntityId>> findAmongClosed(Host& host, const std::string& meterText,
                                                     PolygonCheck check) {
    const auto selected = selectFor(host);
    if (selected.empty())
        return std::nullopt;
    const Curves closed = curvesAmong(host, polylinesOf(host, selected, true));
    host.print(
        fmt::format("\n {} objects (Total {}) are closed polylines and will being cross checked!",
                    closed.ids.size(), selected.size()));
    if (!host::waitForEnter(host, kWaitMessage))
        return std::nullopt;
    host.print("\n Processing polylines, please waiting...");
    const base::ProgressRun run(host.meter(), meterText, 0, static_cast<long>(closed.ids.size()));
    const auto found = check(closed.curves, host.meter());
    if (!found) {
        host.print(kCancelled);
        return std::nullopt;
    }
    return idsAt(closed.ids, *found);
}

// Stays until the next command.
void showOutlines(Host& host, const std::vector<EntityId>& ids) {
    for (const EntityId id : ids)
        if (const host::Entity* entity = host.drawing().find(id))
            host.graphics().showPolyline(host::outlineOf(*entity), true, host::colour::kMagenta);
    host.graphics().redraw();
}

std::size_t moveToWorkingLayer(Host& host, const std::vector<EntityId>& ids) {
    std::size_t moved = 0;
    if (!host::ensureWorkingLayer(host))
        return moved;
    for (const EntityId id : ids) {
        host::Entity entity = *host.drawing().find(id);
        entity.layer = host::kWorkingLayer;
        moved += host.drawing().modify(entity).ok() ? 1 : 0;
    }
    return moved;
}

std::size_t eraseAll(Host& host, const std::vector<EntityId>& ids) {
    std::size_t erased = 0;
    for (const EntityId id : ids)
        erased += host.drawing().erase(id) ? 1 : 0;
    return erased;
}

std::string keywordOf(const host::PromptResult<std::string>& answer) {
    return answer.keyword.empty() ? answer.value : answer.keyword;
}

void offerToTidy(Host& host, const std::vector<EntityId>& duplicates) {
    const auto answer = host.prompts().getKeyword(
        "\n Enter an Option[Move to working layer/Delete/<Do nothing> ]:", "Move Delete");
    const std::string option = keywordOf(answer);
    if (option == "Move")
        host.print(fmt::format("\n{} duplicate polyline are moved to layer.",
                               moveToWorkingLayer(host, duplicates)));
    else if (option == "Delete")
        host.print(fmt::format("\n{} duplicate polyline are removed.", eraseAll(host, duplicates)));
}

// --- layers -------------------------------------------------------------------------------------

std::optional<std::vector<std::string>> askLayersToClear(Host& host) {
    const auto answer = host.prompts().getKeyword(
        fmt::format("\n[Select Layers to clear/<{}>]:", host::kWorkingLayer), "Select");
    if (answer.status == PromptStatus::cancel)
        return std::nullopt;
    if (keywordOf(answer) == "Select")
        return host::chooseLayers(host, "Select Working", "Select Layers to Clear");
    return std::vector<std::string>{host::kWorkingLayer};
}

} // namespace

void zelk_checkClosedPolylines(Host& host) {
    printBanner(host, "This command checks non-closed polylines and trys to make them closed.");
    const auto selected = selectFor(host);
    if (selected.empty())
        return;
    const auto open = polylinesOf(host, selected, false);
    if (!askAboutOpenPolylines(host, open, selected.size(),
                               "Do you want to close these polylines?"))
        return;
    std::size_t closed = 0;
    for (const EntityId id : open) {
        host::Entity entity = *host.drawing().find(id);
        closed += closePolyline(entity) && host.drawing().modify(entity).ok() ? 1 : 0;
    }
    host.print(fmt::format("\n{} polylines are made closed", closed));
}

void zelk_checkContours(Host& host) {
    printBanner(host,
                "This module checks the intersection or specified elevation of contour lines!");
    const auto elevation = askElevation(host);
    if (elevation.status == PromptStatus::cancel)
        return;
    if (elevation.ok())
        checkElevation(host, elevation.value);
    else
        checkIntersections(host);
}

void zelk_checkDuplicates(Host& host) {
    printBanner(host,
                "This command check all selected objects and find duplicated close polylines.");
    const auto duplicates =
        findAmongClosed(host, "Finding overlapped polylines", duplicatePolygons);
    if (!duplicates)
        return;
    if (duplicates->empty()) {
        host.print("\nNo polylines are duplicated!");
        return;
    }
    host::ShownGraphics shown(host.graphics());
    for (const EntityId id : *duplicates)
        shown.polyline(host::outlineOf(*host.drawing().find(id)), true, host::colour::kMagenta);
    host.graphics().redraw();
    host.print(fmt::format("\n{} polylines may duplicated!", duplicates->size()));
    offerToTidy(host, *duplicates);
}

void zelk_checkOverlaps(Host& host) {
    printBanner(host,
                "This command check all selected objects and find overlaped close polylines.");
    const auto overlapped = findAmongClosed(host, "Progressing", overlappingPolygons);
    if (!overlapped)
        return;
    showOutlines(host, *overlapped);
    host.print(overlapped->empty()
                   ? std::string("\nNo polylines overlapped!")
                   : fmt::format("\n{} polylines may overlapped!", overlapped->size()));
}

void zelk_clearWorkingLayer(Host& host) {
    const auto layers = askLayersToClear(host);
    if (!layers)
        return;
    const std::string names = base::joined(*layers, ",");
    const auto objects = host::entitiesOnLayers(host, *layers);
    if (objects.empty()) {
        host.print(fmt::format("\n no objects in layer: {}", names));
        return;
    }
    const std::string question =
        fmt::format("Remove all {} objects in layer:<{}>!", objects.size(), names);
    if (host.dialogs().ask({question, host::Buttons::okCancel}) == host::Answer::ok)
        host.print(fmt::format("\n {} objects in layer:<{}> are removed!", eraseAll(host, objects),
                               names));
}

} // namespace tessaran::factors
