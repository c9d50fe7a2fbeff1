#include "host/curves.h"

#include "base/tolerance.h"
#include "geometry/polygon.h"

namespace tessaran::host {

namespace {

using geometry::Curve;
using geometry::CurveVertex;
using geometry::Polygon;

std::optional<Curve> curveOfGeometry(const Line& line) {
    return Curve::line(line.start, line.end);
}

std::optional<Curve> curveOfGeometry(const Polyline& polyline) {
    std::vector<CurveVertex> vertices;
    for (const PolylineVertex& v : polyline.vertices)
        vertices.push_back({{v.at.x, v.at.y, polyline.elevation}, v.bulge});
    return Curve(vertices, polyline.closed);
}

std::optional<Curve> curveOfGeometry(const Polyline3d& polyline) {
    std::vector<CurveVertex> vertices;
    for (const Point3& p : polyline.vertices)
        vertices.push_back({p, 0.0});
    return Curve(vertices, polyline.closed);
}

std::optional<Curve> curveOfGeometry(const Circle& circle) {
    return Curve::circle(circle.centre, circle.radius);
}

std::optional<Curve> curveOfGeometry(const Arc& arc) {
    return Curve::arc(arc.centre, arc.radius, arc.startAngle, arc.endAngle);
}

template <class Any>
std::optional<Curve> curveOfGeometry(const Any& /*no curve*/) {
    return std::nullopt;
}

bool hasOutline(const Entity& entity) {
    return std::holds_alternative<Polyline>(entity.geometry) ||
           std::holds_alternative<Polyline3d>(entity.geometry) ||
           std::holds_alternative<Circle>(entity.geometry);
}

} // namespace

std::optional<Curve> curveOf(const Entity& entity) {
    std::optional<Curve> curve =
        std::visit([](const auto& any) { return curveOfGeometry(any); }, entity.geometry);
    if (curve && curve->empty())
        return std::nullopt;
    return curve;
}

bool isPolyline(const Entity& entity) {
    return std::holds_alternative<Polyline>(entity.geometry) ||
           std::holds_alternative<Polyline3d>(entity.geometry);
}

bool isClosedPolyline(const Entity& entity) {
    if (const auto* polyline = std::get_if<Polyline>(&entity.geometry))
        return polyline->closed;
    const auto* polyline3d = std::get_if<Polyline3d>(&entity.geometry);
    return polyline3d != nullptr && polyline3d->closed;
}

Polygon vertexPolygon(const Entity& entity) {
    Polygon polygon;
    if (const auto* polyline = std::get_if<Polyline>(&entity.geometry))
        for (const PolylineVertex& v : polyline->vertices)
            polygon.push_back(v.at);
    else if (const auto* polyline3d = std::get_if<Polyline3d>(&entity.geometry))
        for (const Point3& p : polyline3d->vertices)
            polygon.push_back(p.plan());
    return polygon;
}

Polygon outlineOf(const Entity& entity) {
    if (!hasOutline(entity))
        return {};
    const std::optional<Curve> curve = curveOf(entity);
    return curve ? curve->flattenedByShare(base::kArcSag) : Polygon{};
}

Polygon outlineOf(const Loop& loop) {
    std::vector<CurveVertex> vertices;
    vertices.reserve(loop.vertices.size());
    for (const Loop::Vertex& vertex : loop.vertices)
        vertices.push_back({{vertex.at.x, vertex.at.y, 0.0}, vertex.bulge});
    return Curve(vertices, true).flattenedByShare(base::kArcSag);
}

} // namespace tessaran::host
