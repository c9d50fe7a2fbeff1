#pragma once

// The drawing's entities as values: what the system reads from a CAD drawing and puts into it.
// Coordinates are world coordinates in drawing units; angles are radians, counter-clockwise from
// the world's X axis. Planar entities lie in planes parallel to world XY (entities of other planes
// come as Other and are kept untouched).

#include "geometry/curve.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace tessaran::host {

using geometry::Box2;
using geometry::Point2;
using geometry::Point3;
using geometry::Vector3;

// An entity's handle, opaque outside the drawing; 0 is none. Shown to people in hexadecimal.
struct EntityId {
    std::uint64_t value = 0;

    explicit operator bool() const { return value != 0; }
    friend auto operator<=>(EntityId, EntityId) = default;
};

// Colour indexes of the host's 256-colour table.
namespace colour {
inline constexpr int kByBlock = 0;
inline constexpr int kRed = 1;
inline constexpr int kYellow = 2;
inline constexpr int kGreen = 3;
inline constexpr int kMagenta = 6;
inline constexpr int kForeground = 7;
inline constexpr int kByLayer = 256;
} // namespace colour

struct Line {
    Point3 start;
    Point3 end;

    friend bool operator==(const Line&, const Line&) = default;
};

// The segment from this vertex to the next is an arc when `bulge` (the tangent of a quarter of its
// included angle, positive counter-clockwise) is not 0.
struct PolylineVertex {
    Point2 at;
    double bulge = 0.0;
    double startWidth = 0.0;
    double endWidth = 0.0;

    friend bool operator==(const PolylineVertex&, const PolylineVertex&) = default;
};

// Light ("LWPOLYLINE") and old-style planar ("POLYLINE") polylines.
struct Polyline {
    enum class Form { light, old };

    Form form = Form::light;
    std::vector<PolylineVertex> vertices;
    bool closed = false;
    double elevation = 0.0;
    double constantWidth =
        0.0; // light: the constant width; old: the default width. May be negative.

    friend bool operator==(const Polyline&, const Polyline&) = default;
};

struct Polyline3d {
    std::vector<Point3> vertices;
    bool closed = false;

    friend bool operator==(const Polyline3d&, const Polyline3d&) = default;
};

struct PointMark {
    Point3 at;

    friend bool operator==(const PointMark&, const PointMark&) = default;
};

struct Circle {
    Point3 centre;
    double radius = 0.0;

    friend bool operator==(const Circle&, const Circle&) = default;
};

struct Arc { // counter-clockwise from start to end
    Point3 centre;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;

    friend bool operator==(const Arc&, const Arc&) = default;
};

struct Text {
    enum class Across { left, centre, right };
    enum class Up { baseline, bottom, middle, top };

    Point3 at; // the point that the justification speaks of
    std::string text;
    double height = 1.0;
    double rotation = 0.0;
    Across across = Across::left;
    Up up = Up::baseline;

    friend bool operator==(const Text&, const Text&) = default;
};

// A closed loop of straight and arc segments, the first vertex not repeated.
struct Loop {
    struct Vertex {
        Point2 at;
        double bulge = 0.0;

        friend bool operator==(const Vertex&, const Vertex&) = default;
    };
    std::vector<Vertex> vertices;

    friend bool operator==(const Loop&, const Loop&) = default;
};

// Filled by the even-odd rule over all loops.
struct Hatch {
    std::vector<Loop> loops;
    std::string pattern = "SOLID";
    double elevation = 0.0;

    friend bool operator==(const Hatch&, const Hatch&) = default;
};

// A planar area: outer loops and holes, told apart by the even-odd rule.
struct Region {
    std::vector<Loop> loops;
    double elevation = 0.0;

    friend bool operator==(const Region&, const Region&) = default;
};

struct Face3d {
    std::array<Point3, 4> corners;

    friend bool operator==(const Face3d&, const Face3d&) = default;
};

// A value of a block's reference, such as a drill hole's name; a text of its own in the drawing.
struct Attribute {
    std::string tag;
    Text text;
    std::string layer = "0";
    int colour = colour::kByLayer;
    bool shown = true;

    friend bool operator==(const Attribute&, const Attribute&) = default;
};

struct Insert {
    std::string block;
    Point3 at;
    Vector3 scale{1.0, 1.0, 1.0};
    double rotation = 0.0;
    std::vector<Attribute> attributes{}; // of drawings that were read; new ones are not written

    friend bool operator==(const Insert&, const Insert&) = default;
};

// What an entity of another kind shows: curved outlines as chains of chords.
struct Look {
    std::vector<geometry::Curve> curves;
    std::vector<geometry::Curve> areas; // each filled by itself
    std::vector<Text> texts;
    std::string block; // drawn in place, such as a dimension's; empty: none
};

// Anything the system does not work with; kept as it is, and shown where its look is known.
struct Other {
    std::string dxfName;
    std::shared_ptr<const Look> look{}; // null: not known

    friend bool operator==(const Other&, const Other&) = default;
};

using EntityGeometry = std::variant<Line, Polyline, Polyline3d, PointMark, Circle, Arc, Text, Hatch,
                                    Region, Face3d, Insert, Other>;

struct Entity {
    EntityId id; // given by the drawing when added
    std::string layer = "0";
    int colour = colour::kByLayer;
    std::string linetype = "ByLayer";
    EntityGeometry geometry;
};

// One item of an entity's extended data: group code (1000 text, 1010 point, 1040 real, 1070 short,
// 1071 long, ...) and value. The leading 1001 item with the application's name is not part of a
// list.
struct XDataItem {
    int code = 1000;
    std::variant<std::string, double, std::int32_t, Point3> value;

    friend bool operator==(const XDataItem&, const XDataItem&) = default;
};

// DXF type name of an entity: "LINE", "LWPOLYLINE", "POLYLINE" (old-style and 3-D), "POINT", ...
std::string dxfName(const Entity& entity);

} // namespace tessaran::host
