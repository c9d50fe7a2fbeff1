#include "host/services_entities.h"

#include "base/tolerance.h"
#include "geometry/enclosing_face.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::host {
namespace {

using geometry::Curve;
using geometry::CurveVertex;

// Ends of boundary objects this close, as a share of the object's size, meet.
constexpr double kJoinTolerance = 1e-9;

Loop loopOf(const Curve& curve) {
    Loop loop;
    for (const CurveVertex& vertex : curve.vertices())
        loop.vertices.push_back({vertex.at.plan(), vertex.bulge});
    return loop;
}

double joinDistance(const Curve& curve) {
    const Box2 box = curve.extents();
    const double size = std::max({box.width(), box.height(), std::abs(box.low.x),
                                  std::abs(box.low.y), std::abs(box.high.x), std::abs(box.high.y)});
    return std::max(base::kTolerance, size * kJoinTolerance);
}

Point2 startOf(const Curve& curve) {
    return curve.vertices().front().at.plan();
}
Point2 endOf(const Curve& curve) {
    return curve.vertices().back().at.plan();
}

// Appends the part to the chain, whose last vertex is the part's first.
void extend(std::vector<CurveVertex>& chain, const Curve& part) {
    chain.pop_back();
    chain.insert(chain.end(), part.vertices().begin(), part.vertices().end());
}

// Joins open curves end to end, the first one growing until it closes.
std::optional<std::vector<Loop>> chained(std::vector<Curve> open) {
    std::vector<Loop> loops;
    while (!open.empty()) {
        std::vector<CurveVertex> chain = open.back().vertices();
        const double join = joinDistance(open.back());
        open.pop_back();
        while (chain.size() < 3 ||
               distance(chain.front().at.plan(), chain.back().at.plan()) > join) {
            const Point2 end = chain.back().at.plan();
            const auto next = std::find_if(open.begin(), open.end(), [&](const Curve& c) {
                return distance(startOf(c), end) <= join || distance(endOf(c), end) <= join;
            });
            if (next == open.end())
                return std::nullopt;
            extend(chain, distance(startOf(*next), end) <= join ? *next : next->reversed());
            open.erase(next);
        }
        chain.pop_back();
        loops.push_back(loopOf(Curve(chain, true)));
    }
    return loops;
}

// Whether the object brought loops of its own or went to the open curves.
bool sortOut(const Entity& entity, std::vector<Loop>& loops, std::vector<Curve>& open) {
    if (const Region* region = std::get_if<Region>(&entity.geometry)) {
        loops.insert(loops.end(), region->loops.begin(), region->loops.end());
        return true;
    }
    const std::optional<Curve> curve = curveOf(entity);
    if (!curve || curve->vertices().size() < 2)
        return false;
    const bool endsMeet = curve->vertices().size() > 2 &&
                          distance(startOf(*curve), endOf(*curve)) <= joinDistance(*curve);
    if (curve->closed() || endsMeet)
        loops.push_back(loopOf(Curve(curve->vertices(), true)));
    else
        open.push_back(*curve);
    return true;
}

// Chords of the candidates' curves.
std::vector<geometry::Polygon> linework(const Drawing& drawing,
                                        const std::vector<EntityId>& candidates) {
    std::vector<geometry::Polygon> chains;
    for (const EntityId id : candidates) {
        const Entity* entity = drawing.find(id);
        const std::optional<Curve> curve = entity ? curveOf(*entity) : std::nullopt;
        if (!curve || curve->empty())
            continue;
        const Box2 box = curve->extents();
        geometry::Polygon chain =
            curve->flattenedPlan(base::kArcSag * std::max(box.width(), box.height()));
        if (curve->closed() && !chain.empty())
            chain.push_back(chain.front());
        chains.push_back(std::move(chain));
    }
    return chains;
}

} // namespace

std::optional<EntityId> appendEntity(Host& host, Entity entity) {
    const auto added = host.drawing().add(std::move(entity));
    if (added)
        return *added;
    if (added.error().kind == base::ErrorKind::state)
        host.print("\nCouldn't get Model Space Drawing corrupt.\n");
    else
        host.print("\n" + added.error().message());
    return std::nullopt;
}

Entity closedPolyline(const std::vector<Point2>& points, const std::string& layer, int colour) {
    Polyline polyline;
    polyline.closed = true;
    for (const Point2 point : points)
        polyline.vertices.push_back({point});
    Entity entity;
    entity.layer = layer;
    entity.colour = colour;
    entity.geometry = std::move(polyline);
    return entity;
}

std::optional<EntityId> addClosedPolyline(Host& host, const std::array<Point2, 4>& corners) {
    return appendEntity(
        host, closedPolyline({corners.begin(), corners.end()}, host.drawing().currentLayer()));
}

std::optional<std::vector<Loop>> boundaryLoops(const Drawing& drawing,
                                               const std::vector<EntityId>& boundary) {
    std::vector<Loop> loops;
    std::vector<Curve> open;
    for (const EntityId id : boundary) {
        const Entity* entity = drawing.find(id);
        if (entity == nullptr || !sortOut(*entity, loops, open))
            return std::nullopt;
    }
    const std::optional<std::vector<Loop>> joined = chained(std::move(open));
    if (!joined)
        return std::nullopt;
    loops.insert(loops.end(), joined->begin(), joined->end());
    return loops.empty() ? std::nullopt : std::optional(std::move(loops));
}

std::optional<Entity> solidHatch(Host& host, const std::vector<EntityId>& boundary) {
    std::optional<std::vector<Loop>> loops = boundaryLoops(host.drawing(), boundary);
    if (!loops)
        return std::nullopt;
    Entity entity;
    entity.layer = host.drawing().currentLayer();
    entity.geometry = Hatch{std::move(*loops), "SOLID", 0.0};
    return entity;
}

std::optional<EntityId> hatchByCommand(Host& host, const std::vector<EntityId>& boundary) {
    const CommandEchoOff quiet(host);
    std::optional<Entity> hatch = solidHatch(host, boundary);
    return hatch ? appendEntity(host, std::move(*hatch)) : std::nullopt;
}

std::optional<EntityId> boundaryFromPoints(Host& host, const std::vector<EntityId>& candidates,
                                           const std::vector<Point3>& inside) {
    const geometry::Faces faces(linework(host.drawing(), candidates));
    std::optional<EntityId> last;
    for (const Point3& point : inside) {
        const geometry::Polygon face = faces.around(host.coordinates().toWorld(point).plan());
        if (face.empty())
            continue;
        if (const auto made =
                appendEntity(host, closedPolyline(face, host.drawing().currentLayer())))
            last = made;
    }
    return last;
}

void listVertices(Host& host, EntityId polyline) {
    const Entity* entity = host.drawing().find(polyline);
    const geometry::Polygon vertices = entity ? vertexPolygon(*entity) : geometry::Polygon{};
    if (vertices.empty())
        host.print("\nopen polyline vertex failed!");
    for (std::size_t i = 0; i < vertices.size(); ++i)
        host.print(
            fmt::format("\nPoint No {}, X = {:f}, Y = {:f}", i, vertices[i].x, vertices[i].y));
}

int luminance(int red, int green, int blue) {
    return static_cast<int>(std::lround(0.3 * red + 0.59 * green + 0.11 * blue));
}

} // namespace tessaran::host
