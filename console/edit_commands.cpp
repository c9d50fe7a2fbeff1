#include "console/entity_text.h"
#include "console/plain_commands.h"
#include "console/property_changes.h"
#include "host/services_selection.h"

#include <fmt/format.h>

namespace tessaran::console {
namespace {

using host::Point2;
using host::Point3;
using host::PromptStatus;

struct Shift {
    Point3 by;

    void move(Point3& p) const { p = p + by; }
    void move(Point2& p) const { p = p + by.plan(); }
    void move(std::vector<host::Loop>& loops) const {
        for (host::Loop& loop : loops)
            for (host::Loop::Vertex& vertex : loop.vertices)
                move(vertex.at);
    }

    bool operator()(host::Line& line) const {
        move(line.start);
        move(line.end);
        return true;
    }
    bool operator()(host::Polyline& polyline) const {
        for (host::PolylineVertex& vertex : polyline.vertices)
            move(vertex.at);
        polyline.elevation += by.z;
        return true;
    }
    bool operator()(host::Polyline3d& polyline) const {
        for (Point3& vertex : polyline.vertices)
            move(vertex);
        return true;
    }
    bool operator()(host::Hatch& hatch) const {
        move(hatch.loops);
        hatch.elevation += by.z;
        return true;
    }
    bool operator()(host::Region& region) const {
        move(region.loops);
        region.elevation += by.z;
        return true;
    }
    bool operator()(host::Face3d& face) const {
        for (Point3& corner : face.corners)
            move(corner);
        return true;
    }
    bool operator()(host::PointMark& mark) const { return shifted(mark.at); }
    bool operator()(host::Circle& circle) const { return shifted(circle.centre); }
    bool operator()(host::Arc& arc) const { return shifted(arc.centre); }
    bool operator()(host::Text& text) const { return shifted(text.at); }
    bool operator()(host::Insert& insert) const {
        for (host::Attribute& attribute : insert.attributes)
            move(attribute.text.at);
        return shifted(insert.at);
    }
    bool operator()(host::Other&) const { return false; } // its geometry is not known

    bool shifted(Point3& p) const {
        move(p);
        return true;
    }
};

bool moveEntity(host::Drawing& drawing, host::EntityId id, const Shift& shift) {
    const host::Entity* found = drawing.find(id);
    if (found == nullptr)
        return false;
    host::Entity entity = *found;
    return std::visit(shift, entity.geometry) && drawing.modify(entity).ok();
}

// Two points, or one as the displacement itself; in world directions.
std::optional<Point3> askDisplacement(ConsoleHost& host) {
    const auto base = host.prompts().getPoint({.message = "\nSpecify base point:", .keywords = {}});
    if (!base.ok())
        return std::nullopt;
    host::PointPrompt prompt{.message =
                                 "\nSpecify second point or <use first point as displacement>:",
                             .keywords = {},
                             .base = base.value};
    prompt.rubberBand = host::RubberBand::line;
    const auto second = host.prompts().getPoint(prompt);
    const host::Coordinates& coordinates = host.coordinates();
    if (second.ok())
        return coordinates.toWorld(second.value) - coordinates.toWorld(base.value);
    if (second.status == PromptStatus::none)
        return coordinates.toWorld(base.value) - coordinates.toWorld({});
    return std::nullopt;
}

int askCount(ConsoleHost& host, const std::string& message) {
    if (host.frontEnd().commandFollows())
        return 1;
    const auto count =
        host.prompts().getInteger({.message = message, .allowZero = false, .allowNegative = false});
    if (count.status == PromptStatus::none)
        return 1;
    return count.ok() ? count.value : 0;
}

// Repeats a step back or forth, printing what it was.
template <class Step>
void repeat(ConsoleHost& host, int count, const char* nothingLeft, const Step& step) {
    for (int k = 0; k < count; ++k) {
        const auto name = step(host.workspace().database());
        host.print("\n" + name.value_or(nothingLeft));
        if (!name)
            return;
    }
}

void changeAll(ConsoleHost& host, const std::vector<host::EntityId>& ids,
               const PropertyChange& change) {
    std::size_t kept = 0;
    for (const host::EntityId id : ids) {
        const host::Entity* found = host.drawing().find(id);
        if (found == nullptr)
            continue;
        host::Entity entity = *found;
        if (!change(entity) || !host.drawing().modify(entity))
            ++kept;
    }
    if (kept > 0)
        host.print(fmt::format("\n{} could not be changed", kept));
}

} // namespace

void eraseCommand(ConsoleHost& host) {
    const auto selection = host::selectObjects(host, {});
    if (selection.empty())
        return;
    std::size_t kept = 0;
    for (const host::EntityId id : selection)
        if (!host.drawing().erase(id))
            ++kept;
    if (kept > 0)
        host.print(fmt::format("\n{} could not be erased (locked layer)", kept));
}

void moveCommand(ConsoleHost& host) {
    const auto selection = host::selectObjects(host, {});
    if (selection.empty())
        return;
    const auto by = askDisplacement(host);
    if (!by)
        return;
    std::size_t kept = 0;
    for (const host::EntityId id : selection)
        if (!moveEntity(host.drawing(), id, Shift{*by}))
            ++kept;
    if (kept > 0)
        host.print(fmt::format("\n{} could not be moved", kept));
}

void listCommand(ConsoleHost& host) {
    const auto selection = host::selectObjects(host, {});
    if (selection.empty())
        return;
    for (const host::EntityId id : selection)
        if (const host::Entity* entity = host.drawing().find(id))
            host.print("\n" + describe(*entity));
}

void changePropertiesCommand(ConsoleHost& host) {
    const auto selection = host::selectObjects(host, {});
    if (selection.empty())
        return;
    for (;;) {
        const auto property =
            host.prompts().getKeyword("\nEnter property to change "
                                      "[Color/LAyer/LType/Elevation/Width/CLosed/TExt/Height]:",
                                      "Color LAyer LType Elevation Width CLosed TExt Height");
        if (!property.ok())
            return;
        const auto value = host.prompts().getString(propertyPrompt(property.value), true);
        if (value.status == PromptStatus::cancel)
            return;
        if (!value.ok())
            continue;
        const auto change = propertyChange(host.drawing(), property.value, value.value);
        if (change)
            changeAll(host, selection, *change);
        else
            host.frontEnd().refused(change.error().text);
    }
}

void undoCommand(ConsoleHost& host) {
    repeat(host, askCount(host, "\nEnter the number of operations to undo <1>:"),
           "Nothing to undo.", [](drawing::Database& database) { return database.undo(); });
}

void redoCommand(ConsoleHost& host) {
    repeat(host, 1, "Nothing to redo.",
           [](drawing::Database& database) { return database.redo(); });
}

} // namespace tessaran::console
