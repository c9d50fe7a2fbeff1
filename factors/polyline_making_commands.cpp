// The commands that make polylines: by chaining picked objects, and by joining open ones.

#include "base/numbers.h"
#include "factors/polyline_chain.h"
#include "factors/polyline_commands.h"
#include "factors/polyline_joining.h"
#include "factors/polyline_selection.h"
#include "geometry/curve.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_dialogs.h"
#include "host/services_entities.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::factors {
namespace {

using host::Entity;
using host::EntityId;
using host::Host;
using host::Polyline;
using host::Polyline3d;
using host::PromptStatus;

// --- chaining picked objects --------------------------------------------------------------------

class ChainTalk {
  public:
    explicit ChainTalk(Host& host) : host_(host), shown_(host.graphics()) {}

    void run() {
        tellElevation();
        for (;;) {
            const auto pick = host_.prompts().pickEntity(
                {prompt(), "Elevation Reverse Close Nearest Farthest Undo", true});
            if (pick.status == PromptStatus::cancel)
                return;
            if (pick.status == PromptStatus::none)
                return make(false);
            if (pick.status == PromptStatus::keyword && pick.keyword == "Close")
                return make(true);
            if (pick.status == PromptStatus::keyword)
                obey(pick.keyword);
            else if (pick.ok())
                append(pick.value);
            show();
        }
    }

  private:
    std::string prompt() const {
        const char* other = end_ == PolylineChain::End::nearest ? "Farthest" : "Nearest";
        return fmt::format(
            "\n[Elevation/Close/Reverse order/Undo object/to {} end/<Select object:>]", other);
    }

    void tellElevation() {
        host_.print(fmt::format("\nCurrent elevation is <{}>", base::fixed6(elevation_)));
    }

    void obey(const std::string& keyword) {
        if (keyword == "Elevation") {
            askElevation();
        } else if (keyword == "Reverse") {
            chain_.reverse();
            host_.print(fmt::format("\nInput <{}> Points  Reversed!", chain_.size()));
        } else if (keyword == "Undo") {
            if (!chain_.undo())
                host_.print("\nThere is no object to undo.");
        } else if (keyword == "Nearest") {
            end_ = PolylineChain::End::nearest;
        } else if (keyword == "Farthest") {
            end_ = PolylineChain::End::farthest;
        } else {
            host_.print(fmt::format("\nUnknown Key Word <{}>", keyword));
        }
    }

    void askElevation() {
        host::NumberPrompt ask;
        ask.message = fmt::format("\nInput new elevation <{}>:", base::fixed6(elevation_));
        const auto answer = host_.prompts().getReal(ask);
        if (!answer.ok())
            return;
        elevation_ = answer.value;
        tellElevation();
    }

    void append(const host::Pick& pick) {
        const Entity* entity = host_.drawing().find(pick.entity);
        VertexRun run = entity ? runThrough(*entity) : VertexRun{};
        if (run.empty())
            host_.print("\nThe object has no points.");
        else
            chain_.append(std::move(run), host_.coordinates().toWorld(pick.at).plan(), end_);
    }

    void show() {
        shown_.clear();
        host::Polyline outline;
        outline.vertices = chain_.vertices();
        if (!outline.vertices.empty())
            shown_.entity({{}, "0", host::colour::kMagenta, "ByLayer", outline});
        host_.graphics().redraw();
    }

    void make(bool closed) {
        if (chain_.size() < 2) {
            if (chain_.size() == 1)
                host_.print("\nA polyline needs two points at least.");
            return;
        }
        Polyline polyline;
        polyline.vertices = chain_.vertices();
        polyline.closed = closed;
        polyline.elevation = elevation_;
        // A chain that came back to its start has its closing segment already.
        if (closed && polyline.vertices.size() > 2 &&
            geometry::distance(polyline.vertices.front().at, polyline.vertices.back().at) <=
                joiningTolerance(host::curveOf({{}, "0", 0, "", polyline})->extents()))
            polyline.vertices.pop_back();
        Entity entity;
        entity.layer = host_.drawing().currentLayer();
        entity.geometry = std::move(polyline);
        host::appendEntity(host_, std::move(entity));
    }

    Host& host_;
    host::ShownGraphics shown_;
    PolylineChain chain_;
    PolylineChain::End end_ = PolylineChain::End::nearest;
    double elevation_ = 0.0;
};

// --- joining ------------------------------------------------------------------------------------

bool isLine(Host& host, EntityId id) {
    const Entity* entity = host.drawing().find(id);
    return entity != nullptr && std::holds_alternative<host::Line>(entity->geometry);
}

// A line that climbs becomes a 3-D polyline.
host::EntityGeometry polylineOf(const host::Line& line) {
    if (line.start.z != line.end.z)
        return Polyline3d{{line.start, line.end}, false};
    Polyline polyline;
    polyline.vertices = {{line.start.plan()}, {line.end.plan()}};
    polyline.elevation = line.start.z;
    return polyline;
}

// Replaces the lines among the objects by polylines where the user wants that.
void convertLines(Host& host, std::vector<EntityId>& objects) {
    const bool anyLine =
        std::any_of(objects.begin(), objects.end(), [&](EntityId id) { return isLine(host, id); });
    if (!anyLine || host.dialogs().ask({"Convert Line to Polyline?", host::Buttons::yesNo}) !=
                        host::Answer::yes)
        return;
    std::size_t converted = 0;
    for (EntityId& id : objects) {
        if (!isLine(host, id))
            continue;
        Entity entity = *host.drawing().find(id);
        entity.geometry = polylineOf(std::get<host::Line>(entity.geometry));
        const auto polyline = host::appendEntity(host, std::move(entity));
        if (!polyline || !host.drawing().erase(id))
            continue;
        id = *polyline;
        ++converted;
    }
    host.print(fmt::format("\n {} Lines are converted to Polylines.", converted));
}

// Open polylines of one kind, with their places in the drawing.
template <class Kind>
struct OpenOnes {
    std::vector<EntityId> ids;
    std::vector<Kind> polylines;
    std::vector<PolylineEnds> ends;
};

template <class Kind>
OpenOnes<Kind> openOnes(Host& host, const std::vector<EntityId>& open, double tolerance) {
    OpenOnes<Kind> out;
    for (const EntityId id : open) {
        const Entity* entity = host.drawing().find(id);
        if (entity == nullptr) // joined to another one already
            continue;
        const auto* polyline = std::get_if<Kind>(&entity->geometry);
        if (polyline == nullptr || polyline->vertices.size() < 2)
            continue;
        out.ids.push_back(id);
        out.polylines.push_back(*polyline);
        out.ends.push_back(endsOf(*polyline));
        const host::Box2 box = host.drawing().extents(id).value_or(host::Box2{});
        if (std::max(box.width(), box.height()) <= 2.0 * tolerance)
            out.ends.back().mayCloseItself = false; // all of it lies at one place
    }
    return out;
}

// Makes the chain's first polyline the whole chain and erases the others.
template <class Kind>
bool joinInDrawing(Host& host, const OpenOnes<Kind>& open, const JoinedChain& chain) {
    const std::size_t first = firstMember(chain);
    Entity entity = *host.drawing().find(open.ids[first]);
    entity.geometry = joined(std::span<const Kind>(open.polylines), chain);
    if (const auto changed = host.drawing().modify(entity); !changed) {
        host.print("\n" + changed.error().message());
        return false;
    }
    for (const ChainLink& link : chain.links)
        if (link.polyline != first)
            host.drawing().erase(open.ids[link.polyline]);
    return true;
}

template <class Kind>
std::size_t joinKind(Host& host, const std::vector<EntityId>& objects, double tolerance) {
    const auto open = openOnes<Kind>(host, objects, tolerance);
    std::size_t count = 0;
    for (const JoinedChain& chain : joinedChains(open.ends, tolerance))
        count += joinInDrawing(host, open, chain) ? chain.links.size() : 0;
    return count;
}

double toleranceOf(Host& host, const std::vector<EntityId>& objects) {
    host::Box2 all;
    for (const EntityId id : objects)
        if (const auto box = host.drawing().extents(id))
            all.add(*box);
    return joiningTolerance(all);
}

} // namespace

void zelk_createPolylineFromObjects(Host& host) {
    printBanner(host, "This command creates a polyline from selected objects");
    ChainTalk(host).run();
}

void zelk_joinPolylines(Host& host) {
    printBanner(host, "This command trys to join the polylines(lines) objects as many as possible");
    auto selected = selectFor(host);
    if (selected.empty())
        return;
    convertLines(host, selected);
    const auto open = polylinesOf(host, selected, false);
    if (!askAboutOpenPolylines(host, open, selected.size(), "Do you want to join these polylines?"))
        return;
    const double tolerance = toleranceOf(host, selected);
    const std::size_t count =
        joinKind<Polyline>(host, open, tolerance) + joinKind<Polyline3d>(host, open, tolerance);
    host.print(fmt::format("\n {} polylines have been joined", count));
    host::waitForEnter(host, "\n <Enter> to continue ...");
}

} // namespace tessaran::factors
