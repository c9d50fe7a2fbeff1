#include "drawing/dxf_entity_parts.h"

#include "drawing/overloaded.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaran::drawing::dxf {
namespace {

constexpr int kFirstXDataCode = 1000;
constexpr double kNormalTolerance = 1e-9;

double wrapped(double angle) {
    constexpr double kTurn = 2.0 * std::numbers::pi;
    const double a = std::fmod(angle, kTurn);
    return a < 0.0 ? a + kTurn : a;
}

template <class Vertices>
void turnOverVertices(Vertices& vertices) {
    for (auto& vertex : vertices) {
        vertex.at.x = -vertex.at.x;
        vertex.bulge = -vertex.bulge;
    }
}

void turnOverPoint(host::Point3& p) {
    p.x = -p.x;
    p.z = -p.z;
}

} // namespace

EntityParts splitEntity(std::span<const Tag> tags, const TagValues& values) {
    EntityParts parts;
    const auto find = [](std::span<const Tag> in, std::size_t from, const auto& test) {
        const auto it = std::find_if(
            in.begin() + static_cast<std::ptrdiff_t>(std::min(from, in.size())), in.end(), test);
        return static_cast<std::size_t>(it - in.begin());
    };
    const std::size_t child = find(tags, 1, [](const Tag& tag) { return tag.code == 0; });
    parts.children = tags.subspan(child);
    std::span<const Tag> main = tags.first(child);
    const std::size_t xdata =
        find(main, 0, [](const Tag& tag) { return tag.code >= kFirstXDataCode; });
    parts.xdata = main.subspan(xdata);
    main = main.first(xdata);
    const std::size_t embedded = find(main, 0, [](const Tag& tag) { return tag.code == 101; });
    parts.embedded = main.subspan(embedded);
    main = main.first(embedded);
    const auto isClassMarker = [&](const Tag& tag) {
        return tag.code == 100 && values.name(tag) != "AcDbEntity";
    };
    const std::size_t marker = find(main, 0, isClassMarker);
    parts.common = main.first(marker);
    parts.body = marker == main.size() ? main : main.subspan(marker);
    return parts;
}

std::vector<std::span<const Tag>> childRecords(std::span<const Tag> children) {
    std::vector<std::span<const Tag>> records;
    for (std::size_t i = 0; i < children.size();) {
        std::size_t end = i + 1;
        while (end < children.size() && children[end].code != 0)
            ++end;
        records.push_back(children.subspan(i, end - i));
        i = end;
    }
    return records;
}

Facing facingOf(std::span<const Tag> body, const TagValues& values) {
    double x = 0.0;
    double y = 0.0;
    double z = 1.0;
    for (const Tag& tag : body) {
        double* const part = tag.code == 210   ? &x
                             : tag.code == 220 ? &y
                             : tag.code == 230 ? &z
                                               : nullptr;
        if (part == nullptr)
            continue;
        const std::optional<double> value = values.real(tag);
        if (!value || !std::isfinite(*value))
            return Facing::tilted;
        *part = *value;
    }
    if (std::hypot(x, y) > kNormalTolerance * std::abs(z) || z == 0.0)
        return Facing::tilted;
    return z > 0.0 ? Facing::up : Facing::down;
}

void turnOver(host::EntityGeometry& geometry) {
    using std::numbers::pi;
    std::visit(Overloaded{
                   [](host::Polyline& p) {
                       turnOverVertices(p.vertices);
                       p.elevation = -p.elevation;
                   },
                   [](host::Circle& c) { turnOverPoint(c.centre); },
                   [](host::Arc& a) {
                       turnOverPoint(a.centre);
                       const double start = a.startAngle;
                       a.startAngle = wrapped(pi - a.endAngle);
                       a.endAngle = wrapped(pi - start);
                   },
                   [](host::Text& t) {
                       turnOverPoint(t.at);
                       t.rotation = wrapped(pi - t.rotation);
                   },
                   [](host::Hatch& h) {
                       for (host::Loop& loop : h.loops)
                           turnOverVertices(loop.vertices);
                       h.elevation = -h.elevation;
                   },
                   [](host::Insert& i) {
                       turnOverPoint(i.at);
                       i.rotation = wrapped(-i.rotation);
                       i.scale.x = -i.scale.x;
                       i.scale.z = -i.scale.z;
                   },
                   [](auto&) {},
               },
               geometry);
}

} // namespace tessaran::drawing::dxf
