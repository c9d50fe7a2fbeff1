#include "console/entity_text.h"

#include "base/numbers.h"
#include "console/answers.h"

#include <fmt/format.h>

#include <numbers>

namespace tessaran::console {
namespace {

std::string at(const host::Point3& p) {
    return fmt::format("X = {}, Y = {}, Z = {}", base::shortest(p.x), base::shortest(p.y),
                       base::shortest(p.z));
}

std::string at(const host::Point2& p) {
    return fmt::format("X = {}, Y = {}", base::shortest(p.x), base::shortest(p.y));
}

std::string degrees(double radians) {
    return base::general(radians * 180.0 / std::numbers::pi);
}

struct Describe {
    std::string operator()(const host::Line& line) const {
        return fmt::format("\n  from {}\n  to {}", at(line.start), at(line.end));
    }
    std::string operator()(const host::Polyline& polyline) const {
        std::string out =
            fmt::format("\n  {}, elevation {}, width {}", polyline.closed ? "closed" : "open",
                        base::shortest(polyline.elevation), base::shortest(polyline.constantWidth));
        for (const host::PolylineVertex& vertex : polyline.vertices) {
            out += "\n  at " + at(vertex.at);
            if (vertex.bulge != 0.0)
                out += ", bulge " + base::shortest(vertex.bulge);
        }
        return out;
    }
    std::string operator()(const host::Polyline3d& polyline) const {
        std::string out = polyline.closed ? "\n  closed, space" : "\n  open, space";
        for (const host::Point3& vertex : polyline.vertices)
            out += "\n  at " + at(vertex);
        return out;
    }
    std::string operator()(const host::PointMark& mark) const { return "\n  at " + at(mark.at); }
    std::string operator()(const host::Circle& circle) const {
        return fmt::format("\n  centre {}\n  radius {}", at(circle.centre),
                           base::shortest(circle.radius));
    }
    std::string operator()(const host::Arc& arc) const {
        return fmt::format("\n  centre {}\n  radius {}, from {} to {} degrees", at(arc.centre),
                           base::shortest(arc.radius), degrees(arc.startAngle),
                           degrees(arc.endAngle));
    }
    std::string operator()(const host::Text& text) const {
        return fmt::format("\n  at {}\n  height {}, rotation {}\n  text {}", at(text.at),
                           base::shortest(text.height), degrees(text.rotation), text.text);
    }
    std::string operator()(const host::Hatch& hatch) const {
        return fmt::format("\n  pattern {}, {} loops", hatch.pattern, hatch.loops.size());
    }
    std::string operator()(const host::Region& region) const {
        return fmt::format("\n  {} loops", region.loops.size());
    }
    std::string operator()(const host::Face3d& face) const {
        std::string out;
        for (const host::Point3& corner : face.corners)
            out += "\n  at " + at(corner);
        return out;
    }
    std::string operator()(const host::Insert& insert) const {
        std::string out = fmt::format("\n  block {} at {}, rotation {}", insert.block,
                                      at(insert.at), degrees(insert.rotation));
        for (const host::Attribute& attribute : insert.attributes)
            out += fmt::format("\n  {}: {} at {}", attribute.tag, attribute.text.text,
                               at(attribute.text.at));
        return out;
    }
    std::string operator()(const host::Other&) const { return {}; }
};

std::string colourName(int colour) {
    if (colour == host::colour::kByLayer)
        return "ByLayer";
    return colour == host::colour::kByBlock ? "ByBlock" : std::to_string(colour);
}

} // namespace

std::string describe(const host::Entity& entity) {
    return fmt::format("{} {} on layer \"{}\", colour {}, linetype {}{}", host::dxfName(entity),
                       handleText(entity.id), entity.layer, colourName(entity.colour),
                       entity.linetype, std::visit(Describe{}, entity.geometry));
}

} // namespace tessaran::console
