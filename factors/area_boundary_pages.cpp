#include "factors/area_boundary_pages.h"

#include "base/text.h"
#include "base/tolerance.h"
#include "factors/area_boundary.h"
#include "host/curves.h"
#include "host/graphics.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::factors {
namespace {

using host::Answer;
using host::DialogSession;
using host::Entity;
using host::EntityId;
using host::Host;
using host::Polyline;
using host::Polyline3d;

constexpr const char* kLayers = "Layers";
constexpr const char* kRange = "Influence Range :";

std::string totalText(std::size_t count) {
    return fmt::format("Total {} new boundary polylines will be created in drawing!", count);
}

// The same polyline, closed, on the working layer.
std::optional<EntityId> addClosedCopy(Host& host, EntityId id) {
    const Entity* original = host.drawing().find(id);
    if (original == nullptr || !host::ensureWorkingLayer(host))
        return std::nullopt;
    Entity copy{{}, host::kWorkingLayer, host::colour::kByLayer, "ByLayer", original->geometry};
    if (auto* polyline = std::get_if<Polyline>(&copy.geometry))
        polyline->closed = true;
    else if (auto* polyline3d = std::get_if<Polyline3d>(&copy.geometry))
        polyline3d->closed = true;
    return host::appendEntity(host, std::move(copy));
}

void showOutline(Host& host, host::ShownGraphics& shown, EntityId id) {
    if (const Entity* entity = host.drawing().find(id))
        shown.polyline(host::vertexPolygon(*entity), false, host::colour::kMagenta);
    host.graphics().redraw();
}

void append(std::vector<EntityId>& all, const std::vector<EntityId>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace

void CBoundTab::describe(host::PageBuilder& page) {
    page.names(kLayers, layers_);
    page.button("Pick a layer", [this](DialogSession& session) {
        const DialogSession::Hidden hidden(session);
        layers_ = host::pickLayers(session.host(), layers_);
    });
    page.real(kRange, range_);
    page.button("< &Range", [this](DialogSession& session) { pickRange(session); }).beside();
    page.button("< Create from Polylines in Layer ",
                [this](DialogSession& session) { createFromLayers(session); });
    page.button("< Create from Center Lines",
                [this](DialogSession& session) { createFromCenterLines(session); });
    page.button("< Create from Area Boundary",
                [this](DialogSession& session) { createFromArea(session); });
    page.button("< Check Boundaries", [this](DialogSession& session) { check(session); });
    page.button("< Delete Boundaries",
                [this](DialogSession& session) { deleteBoundaries(session); });
}

bool CBoundTab::hasRange() const {
    return std::abs(range_) > base::kTolerance;
}

void CBoundTab::pickRange(DialogSession& session) {
    const DialogSession::Hidden hidden(session);
    host::NumberPrompt prompt;
    prompt.message = "\nInfluence Range:";
    const auto distance = session.host().prompts().getDistance(prompt);
    if (!distance.ok())
        return;
    session.discardTyped(*this);
    range_ = distance.value;
}

// --- from layers --------------------------------------------------------------------------------

void CBoundTab::createFromLayers(DialogSession& session) {
    Host& host = session.host();
    if (layers_.empty()) {
        host.dialogs().message("No specified layer!");
        session.focus(kLayers);
        return;
    }
    if (!session.validate(*this))
        return;
    const std::string names = base::joined(layers_, ",");
    const auto polylines = host::entitiesOnLayers(host, layers_, host::kPolylineTypes);
    if (polylines.empty()) {
        host.dialogs().message(fmt::format("No Polyline objects were in Layers < {} > !", names));
        return;
    }
    const DialogSession::Hidden hidden(session);
    const Made made = hasRange() ? surroundAll(host, polylines) : closeOpenOnes(host, polylines);
    const std::string text = fmt::format("{} polylines are in layers < {} >.\n{}", polylines.size(),
                                         names, totalText(made.size()));
    if (host.dialogs().ask({text, host::Buttons::yesNo}) == Answer::yes)
        return;
    for (const EntityId id : made)
        host.drawing().erase(id);
}

// The first open polyline asks for all.
CBoundTab::Made CBoundTab::closeOpenOnes(Host& host, const std::vector<EntityId>& polylines) const {
    Made made;
    std::size_t closed = 0;
    std::size_t unusable = 0; // meshes, and what no coordinates could be read of
    std::optional<Answer> answer;
    for (const EntityId id : polylines) {
        const Entity* entity = host.drawing().find(id);
        if (entity == nullptr || !host::isPolyline(*entity)) {
            ++unusable;
            continue;
        }
        if (host::isClosedPolyline(*entity)) {
            ++closed;
            continue;
        }
        if (!answer) {
            host::ShownGraphics shown(host.graphics());
            showOutline(host, shown, id);
            answer = host.dialogs().ask(
                {"Create boundaries from open polylines?", host::Buttons::yesNoCancel});
        }
        if (*answer == Answer::cancel)
            break;
        if (*answer == Answer::yes)
            if (const auto copy = addClosedCopy(host, id))
                made.push_back(*copy);
    }
    if (closed > 0)
        host.print(fmt::format("\n{} closed polylines are ignored.", closed));
    if (unusable > 0)
        host.print(fmt::format("\n{} polylines without usable vertices are left out.", unusable));
    return made;
}

CBoundTab::Made CBoundTab::surroundAll(Host& host, const std::vector<EntityId>& polylines) const {
    Made made;
    std::size_t failed = 0;
    host.meter().begin("Creating boundaries ...", 0, static_cast<long>(polylines.size()));
    for (std::size_t k = 0; k < polylines.size() && !host.meter().cancelled(); ++k) {
        host.meter().setPosition(static_cast<long>(k));
        const Made around = surround(host, polylines[k]);
        failed += around.empty() ? 1 : 0;
        append(made, around);
    }
    host.meter().end();
    if (failed > 0)
        host.print(
            fmt::format("\nNo boundary is created for {} polylines without length.", failed));
    return made;
}

CBoundTab::Made CBoundTab::surround(Host& host, EntityId line) const {
    const Entity* entity = host.drawing().find(line);
    const auto curve = entity ? host::curveOf(*entity) : std::nullopt;
    if (!curve || !host::ensureWorkingLayer(host))
        return {};
    const auto outlines = outlinesAround(*curve, std::abs(range_));
    if (!outlines)
        return {};
    Made made;
    for (const geometry::Polygon& outline : *outlines)
        if (const auto id =
                host::appendEntity(host, host::closedPolyline(outline, host::kWorkingLayer)))
            made.push_back(*id);
    return made;
}

// --- from picked objects ------------------------------------------------------------------------

void CBoundTab::createFromCenterLines(DialogSession& session) {
    Host& host = session.host();
    if (!session.validate(*this))
        return;
    if (!hasRange()) {
        host.dialogs().message("Range should not be zero!");
        session.focus(kRange);
        return;
    }
    const DialogSession::Hidden hidden(session);
    std::size_t count = 0;
    for (;;) {
        host.print("\nMake a closed area around a center polylines:");
        const auto pick = host.prompts().pickEntity({"\nSelect a center polyline:", {}});
        if (pick.status == host::PromptStatus::missed)
            continue;
        if (!pick.ok())
            break;
        const Entity* entity = host.drawing().find(pick.value.entity);
        const Made made =
            entity && host::isPolyline(*entity) ? surround(host, pick.value.entity) : Made{};
        if (made.empty())
            host.print("\n No boundary is created for this center line!");
        count += made.size();
    }
    host.dialogs().message(totalText(count));
}

void CBoundTab::createFromArea(DialogSession& session) {
    Host& host = session.host();
    const DialogSession::Hidden hidden(session);
    const auto pick = host::selectObject(host, "\nSelect a Closed Polyline:");
    const Entity* entity = pick ? host.drawing().find(pick->entity) : nullptr;
    if (entity == nullptr)
        return;
    if (!host::isPolyline(*entity))
        host.print("\nNot a polyline!");
    else if (!host::isClosedPolyline(*entity))
        host.print("\nNot a closed polyline!");
    else
        addClosedCopy(host, pick->entity);
}

// --- what is there ------------------------------------------------------------------------------

// Of the chosen layers; of the working layer as long as none is chosen.
void CBoundTab::check(DialogSession& session) {
    Host& host = session.host();
    const std::vector<std::string> layers =
        layers_.empty() ? std::vector<std::string>{host::kWorkingLayer} : layers_;
    const DialogSession::Hidden hidden(session);
    const auto polylines = host::entitiesOnLayers(host, layers, host::kPolylineTypes);
    host.print(fmt::format("\n{} polylines are in layers < {} >.", polylines.size(),
                           base::joined(layers, ",")));
    const host::Highlighted highlighted(host.graphics(), polylines);
    host::waitForEnter(host, "\n <Enter> to continue ...");
}

void CBoundTab::deleteBoundaries(DialogSession& session) {
    Host& host = session.host();
    const std::vector<std::string> working{host::kWorkingLayer};
    const std::size_t count = host::entitiesOnLayers(host, working).size();
    if (count == 0) {
        host.dialogs().message("There are no objects in the working layers!");
        return;
    }
    const DialogSession::Hidden hidden(session);
    host.print(
        fmt::format("\n{} objects in the working layers < {} >", count, host::kWorkingLayer));
    std::string message = "\n[Select an object to delete:<All>]:";
    while (!host::entitiesOnLayers(host, working).empty()) {
        const auto pick = host.prompts().pickEntity({message, "All"});
        message = "\n[<Select an object to delete>/All]:";
        if (pick.status == host::PromptStatus::cancel)
            return;
        if (pick.status == host::PromptStatus::none || pick.status == host::PromptStatus::keyword) {
            host.print(fmt::format("\nAll {} objects have been erased",
                                   host::eraseLayerObjects(host, host::kWorkingLayer)));
            return;
        }
        const Entity* entity = pick.ok() ? host.drawing().find(pick.value.entity) : nullptr;
        if (entity == nullptr)
            continue;
        if (!base::equalsIgnoringCase(entity->layer, host::kWorkingLayer))
            host.print("\nThe object is not in the working layers!");
        else if (host.drawing().erase(pick.value.entity))
            host.print("\nSelected object has been erased!");
    }
}

} // namespace tessaran::factors
