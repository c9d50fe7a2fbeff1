#include "console/picking.h"

#include "base/text.h"
#include "drawing/coordinates.h"
#include "drawing/hit_test.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {
namespace {

using host::Point2;
using host::SelectionFilter;
using host::SelectionShape;
using Kind = SelectionStep::Kind;

bool isVisible(const drawing::Database& database, EntityId id) {
    const host::Entity* entity = database.find(id);
    if (entity == nullptr)
        return false;
    const auto layer = database.layer(entity->layer);
    return !layer || (layer->on && !layer->frozen);
}

bool isThawed(const drawing::Database& database, EntityId id) {
    const host::Entity* entity = database.find(id);
    if (entity == nullptr)
        return false;
    const auto layer = database.layer(entity->layer);
    return !layer || !layer->frozen;
}

bool passes(const drawing::Database& database, EntityId id, const SelectionFilter& filter) {
    const host::Entity* entity = database.find(id);
    if (entity == nullptr)
        return false;
    const auto among = [](const std::vector<std::string>& names, const std::string& name) {
        return names.empty() || std::any_of(names.begin(), names.end(), [&](const auto& one) {
                   return base::equalsIgnoringCase(one, name);
               });
    };
    return among(filter.layers, entity->layer) && among(filter.types, host::dxfName(*entity)) &&
           (filter.xdataApplication.empty() || database.xdata(id, filter.xdataApplication));
}

void keepPassing(const drawing::Database& database, const SelectionFilter& filter,
                 std::vector<EntityId>& ids) {
    std::erase_if(ids, [&](EntityId id) { return !passes(database, id, filter); });
}

std::vector<Point2> worldPoints(const Document& document, const std::vector<Point3>& user) {
    std::vector<Point2> out;
    out.reserve(user.size());
    for (const Point3& point : user)
        out.push_back(drawing::toWorld(document.database->ucs(), point).plan());
    return out;
}

SelectionShape shapeOf(const SelectionStep& step, const Document& document) {
    std::vector<Point3> corners = step.points;
    if (step.kind == Kind::window || step.kind == Kind::crossing) {
        const Point3 a = step.points[0];
        const Point3 b = step.points[1];
        corners = {a, {b.x, a.y, a.z}, b, {a.x, b.y, a.z}};
    }
    SelectionShape shape;
    shape.kind = step.kind == Kind::fence ? SelectionShape::Kind::fence
                 : step.kind == Kind::window || step.kind == Kind::windowPolygon
                     ? SelectionShape::Kind::window
                     : SelectionShape::Kind::crossing;
    shape.points = worldPoints(document, corners);
    return shape;
}

base::Result<std::vector<EntityId>> known(const drawing::Database& database,
                                          const std::vector<EntityId>& handles) {
    for (const EntityId id : handles)
        if (database.find(id) == nullptr)
            return base::stateError(fmt::format("no object {}", handleText(id)));
    return handles;
}

std::vector<EntityId> pickedAt(const SelectionStep& step, const Document& document) {
    std::vector<EntityId> out;
    for (const Point2 at : worldPoints(document, step.points))
        if (const EntityId id = pickAt(*document.database, at))
            out.push_back(id);
    return out;
}

} // namespace

EntityId pickAt(const drawing::Database& database, const Point2& world) {
    const auto hit = drawing::hitTest(database, world);
    return hit ? hit->entity : EntityId{};
}

Point3 placeOn(const drawing::Database& database, const host::Entity& entity) {
    struct FirstPoint {
        std::optional<Point3> operator()(const host::Line& line) const { return line.start; }
        std::optional<Point3> operator()(const host::Polyline& polyline) const {
            if (polyline.vertices.empty())
                return std::nullopt;
            const Point2 at = polyline.vertices.front().at;
            return Point3{at.x, at.y, polyline.elevation};
        }
        std::optional<Point3> operator()(const host::Polyline3d& polyline) const {
            return polyline.vertices.empty() ? std::nullopt
                                             : std::optional(polyline.vertices.front());
        }
        std::optional<Point3> operator()(const host::PointMark& mark) const { return mark.at; }
        std::optional<Point3> operator()(const host::Circle& circle) const {
            return circle.centre + Point3{circle.radius, 0.0, 0.0};
        }
        std::optional<Point3> operator()(const host::Text& text) const { return text.at; }
        std::optional<Point3> operator()(const host::Face3d& face) const { return face.corners[0]; }
        std::optional<Point3> operator()(const host::Insert& insert) const { return insert.at; }
        std::optional<Point3> operator()(const host::Arc&) const { return std::nullopt; }
        std::optional<Point3> operator()(const host::Hatch&) const { return std::nullopt; }
        std::optional<Point3> operator()(const host::Region&) const { return std::nullopt; }
        std::optional<Point3> operator()(const host::Other&) const { return std::nullopt; }
    };
    if (const auto first = std::visit(FirstPoint{}, entity.geometry))
        return *first;
    const auto box = database.extents(entity.id);
    const Point2 centre = box ? box->centre() : Point2{};
    return {centre.x, centre.y, 0.0};
}

base::Result<std::vector<EntityId>> selectedBy(const SelectionStep& step, const Document& document,
                                               const SelectionFilter& filter) {
    const drawing::Database& database = *document.database;
    std::vector<EntityId> ids;
    switch (step.kind) {
    case Kind::all:
        ids = database.select(filter);
        std::erase_if(ids, [&](EntityId id) { return !isThawed(database, id); });
        return ids;
    case Kind::last:
        if (const EntityId last = database.lastEntity())
            ids = {last};
        break;
    case Kind::previous:
        ids = document.previousSelection;
        break;
    case Kind::points:
        ids = pickedAt(step, document);
        break;
    case Kind::handles: {
        auto handles = known(database, step.handles);
        if (!handles)
            return handles;
        ids = std::move(*handles);
        break;
    }
    case Kind::remove:
    case Kind::add:
        return ids;
    default:
        ids = database.select(shapeOf(step, document), filter);
        std::erase_if(ids, [&](EntityId id) { return !isVisible(database, id); });
        return ids;
    }
    keepPassing(database, filter, ids);
    return ids;
}

} // namespace tessaran::console
