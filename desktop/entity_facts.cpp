#include "desktop/entity_facts.h"

#include "drawing/overloaded.h"
#include "geometry/curve.h"
#include "geometry/polygon.h"

#include <fmt/format.h>

#include <cmath>
#include <map>
#include <numbers>

namespace tessaran::desktop {
namespace {

using drawing::Overloaded;
using geometry::Curve;
using host::Point3;

using Facts = std::vector<Fact>;

constexpr double kDegrees = 180.0 / std::numbers::pi;

std::string number(double value) {
    return fmt::format("{:.4f}", value);
}

std::string place(Point3 p) {
    return fmt::format("{:.3f}, {:.3f}, {:.3f}", p.x, p.y, p.z);
}

Curve curveOf(const host::Polyline& polyline) {
    std::vector<geometry::CurveVertex> vertices;
    for (const auto& v : polyline.vertices)
        vertices.push_back({{v.at.x, v.at.y, polyline.elevation}, v.bulge});
    return {vertices, polyline.closed};
}

// Of the outline with its arcs by close chords.
double areaOf(const Curve& curve) {
    return std::abs(geometry::signedArea(curve.flattenedByShare(1e-6)));
}

double areaOf(const std::vector<host::Loop>& loops) {
    double outer = 0.0;
    for (const host::Loop& loop : loops) {
        std::vector<geometry::CurveVertex> vertices;
        for (const auto& v : loop.vertices)
            vertices.push_back({{v.at.x, v.at.y, 0.0}, v.bulge});
        outer = std::max(outer, areaOf(Curve(vertices, true)));
    }
    return outer;
}

void addPolyline(const host::Polyline& p, Facts& facts) {
    const Curve curve = curveOf(p);
    facts.push_back({"Vertices", std::to_string(p.vertices.size())});
    facts.push_back({"Closed", p.closed ? "yes" : "no"});
    facts.push_back({"Length", number(curve.length())});
    if (p.closed)
        facts.push_back({"Area", number(areaOf(curve))});
    facts.push_back({"Elevation", number(p.elevation)});
    facts.push_back({"Constant width", number(p.constantWidth)});
}

void addLoops(const std::vector<host::Loop>& loops, double elevation, Facts& facts) {
    facts.push_back({"Loops", std::to_string(loops.size())});
    facts.push_back({"Area of the largest", number(areaOf(loops))});
    facts.push_back({"Elevation", number(elevation)});
}

void addGeometry(const host::EntityGeometry& geometry, Facts& facts) {
    std::visit(Overloaded{
                   [&](const host::Line& l) {
                       facts.push_back({"Start", place(l.start)});
                       facts.push_back({"End", place(l.end)});
                       const Point3 d = l.end - l.start;
                       facts.push_back({"Length", number(std::hypot(d.x, d.y, d.z))});
                       facts.push_back({"Angle", number(std::atan2(d.y, d.x) * kDegrees)});
                   },
                   [&](const host::Polyline& p) { addPolyline(p, facts); },
                   [&](const host::Polyline3d& p) {
                       facts.push_back({"Vertices", std::to_string(p.vertices.size())});
                       facts.push_back({"Closed", p.closed ? "yes" : "no"});
                   },
                   [&](const host::PointMark& p) {
                       facts.push_back({"Position", place(p.at)});
                   },
                   [&](const host::Circle& c) {
                       facts.push_back({"Centre", place(c.centre)});
                       facts.push_back({"Radius", number(c.radius)});
                       facts.push_back({"Area", number(std::numbers::pi * c.radius * c.radius)});
                   },
                   [&](const host::Arc& a) {
                       facts.push_back({"Centre", place(a.centre)});
                       facts.push_back({"Radius", number(a.radius)});
                       facts.push_back({"Start angle", number(a.startAngle * kDegrees)});
                       facts.push_back({"End angle", number(a.endAngle * kDegrees)});
                   },
                   [&](const host::Text& t) {
                       facts.push_back({"Text", t.text});
                       facts.push_back({"Position", place(t.at)});
                       facts.push_back({"Height", number(t.height)});
                       facts.push_back({"Rotation", number(t.rotation * kDegrees)});
                   },
                   [&](const host::Hatch& h) {
                       facts.push_back({"Pattern", h.pattern});
                       addLoops(h.loops, h.elevation, facts);
                   },
                   [&](const host::Region& r) { addLoops(r.loops, r.elevation, facts); },
                   [&](const host::Face3d& f) {
                       for (std::size_t k = 0; k < f.corners.size(); ++k)
                           facts.push_back({fmt::format("Corner {}", k + 1), place(f.corners[k])});
                   },
                   [&](const host::Insert& i) {
                       facts.push_back({"Block", i.block});
                       facts.push_back({"Position", place(i.at)});
                       facts.push_back({"Rotation", number(i.rotation * kDegrees)});
                       for (const host::Attribute& attribute : i.attributes)
                           facts.push_back({attribute.tag, attribute.text.text});
                   },
                   [](const host::Other&) {},
               },
               geometry);
}

std::string itemText(const host::XDataItem& item) {
    return std::visit(Overloaded{
                          [](const std::string& text) { return text; },
                          [](double value) { return fmt::format("{}", value); },
                          [](std::int32_t value) { return std::to_string(value); },
                          [](const Point3& point) { return place(point); },
                      },
                      item.value);
}

} // namespace

std::string kindOf(const host::Entity& entity) {
    return std::visit(Overloaded{
                          [](const host::Line&) { return std::string("Line"); },
                          [](const host::Polyline&) { return std::string("Polyline"); },
                          [](const host::Polyline3d&) { return std::string("3D polyline"); },
                          [](const host::PointMark&) { return std::string("Point"); },
                          [](const host::Circle&) { return std::string("Circle"); },
                          [](const host::Arc&) { return std::string("Arc"); },
                          [](const host::Text&) { return std::string("Text"); },
                          [](const host::Hatch&) { return std::string("Hatch"); },
                          [](const host::Region&) { return std::string("Region"); },
                          [](const host::Face3d&) { return std::string("3D face"); },
                          [](const host::Insert&) { return std::string("Block reference"); },
                          [](const host::Other& other) { return other.dxfName; },
                      },
                      entity.geometry);
}

std::vector<Fact> factsOf(const drawing::EntityRecord& record) {
    Facts facts{{"Handle", fmt::format("{:X}", record.entity.id.value)}};
    addGeometry(record.entity.geometry, facts);
    for (const drawing::ApplicationData& data : record.xdata)
        for (const host::XDataItem& item : data.items)
            facts.push_back({data.application, itemText(item)});
    return facts;
}

std::string changedBy(const std::string& fact) {
    static const std::map<std::string, std::string> names{{"Closed", "CLosed"},
                                                          {"Elevation", "Elevation"},
                                                          {"Constant width", "Width"},
                                                          {"Text", "TExt"},
                                                          {"Height", "Height"}};
    const auto found = names.find(fact);
    return found == names.end() ? std::string{} : found->second;
}

} // namespace tessaran::desktop
