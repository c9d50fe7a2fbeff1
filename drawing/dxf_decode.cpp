#include "drawing/dxf_decode.h"

#include "base/text.h"
#include "drawing/acis_sat.h"
#include "drawing/dxf_hatch.h"
#include "drawing/dxf_look.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessaran::drawing::dxf {
namespace {

using host::Point3;

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr std::string_view kFitDataFrom = "AC1024"; // splines in hatches carry fit data

// Bits of group code 70.
namespace polyline_flag {
constexpr std::int64_t kClosed = 1;
constexpr std::int64_t kSplineFit = 4;
constexpr std::int64_t k3d = 8;
constexpr std::int64_t kMesh = 16;
constexpr std::int64_t kPolyface = 64;
} // namespace polyline_flag
constexpr std::int64_t kSplineFrameVertex = 16;

// Sets the coordinate of a point whose X has the group code `code`.
bool setCoordinate(Point3& p, int code, const Tag& tag, double value) {
    if (tag.code == code)
        p.x = value;
    else if (tag.code == code + 10)
        p.y = value;
    else if (tag.code == code + 20)
        p.z = value;
    else
        return false;
    return true;
}

bool isReal(int code) {
    return valueKind(code) == ValueKind::real;
}

// Group codes of a text's vertical justification.
constexpr int kTextUp = 73;
constexpr int kAttributeUp = 74;

} // namespace

// Reads the kinds one by one; the first unusable value is remembered and makes the entity an Other.
class EntityDecoder::Body {
  public:
    Body(const SourceFile& file, const EntityParts& parts)
        : file_(file), values_(file.values()), parts_(parts) {}

    const std::string& reason() const { return reason_; }

    host::Line line();
    host::Polyline lightPolyline();
    host::EntityGeometry polyline();
    host::PointMark point() { return {points({10})[0]}; }
    host::Circle circle();
    host::Arc arc();
    host::Text text(int upCode);
    host::EntityGeometry hatch();
    host::EntityGeometry region();
    host::Face3d face();
    host::Insert insert();

  private:
    void fail(std::string reason) {
        if (reason_.empty())
            reason_ = std::move(reason);
    }
    double real(const Tag& tag);
    double first(int code, double otherwise);
    std::vector<Point3> points(const std::vector<int>& codes);
    host::PolylineVertex vertex(std::span<const Tag> tags, double startWidth, double endWidth,
                                Point3& at, std::int64_t& flags);

    const SourceFile& file_;
    TagValues values_;
    const EntityParts& parts_;
    std::string reason_;
};

double EntityDecoder::Body::real(const Tag& tag) {
    const std::optional<double> value = values_.real(tag);
    if (value && std::abs(*value) <= kLargestCoordinate)
        return *value;
    std::string shown = values_.text() ? std::string(tag.value.substr(0, 40)) : "a binary value";
    fail("\"" + shown + "\" of group code " + std::to_string(tag.code) + " is no usable number");
    return 0.0;
}

double EntityDecoder::Body::first(int code, double otherwise) {
    for (const Tag& tag : parts_.body)
        if (tag.code == code)
            return real(tag);
    return otherwise;
}

// Points whose X coordinates have the given codes; what the record leaves out is 0.
std::vector<Point3> EntityDecoder::Body::points(const std::vector<int>& codes) {
    std::vector<Point3> out(codes.size());
    for (const Tag& tag : parts_.body)
        if (tag.code >= 10 && tag.code < 40)
            for (std::size_t i = 0; i < codes.size(); ++i)
                if ((tag.code - codes[i]) % 10 == 0)
                    setCoordinate(out[i], codes[i], tag, real(tag));
    return out;
}

host::Line EntityDecoder::Body::line() {
    const std::vector<Point3> ends = points({10, 11});
    return {ends[0], ends[1]};
}

host::Polyline EntityDecoder::Body::lightPolyline() {
    host::Polyline out;
    out.form = host::Polyline::Form::light;
    const std::int64_t count = firstInteger(values_, parts_.body, 90, 0);
    if (count > 0 && static_cast<std::uint64_t>(count) <= parts_.body.size() / 2)
        out.vertices.reserve(static_cast<std::size_t>(count));
    for (const Tag& tag : parts_.body) {
        if (tag.code == 70)
            out.closed = (values_.integer(tag).value_or(0) & polyline_flag::kClosed) != 0;
        if (tag.code < 10 || tag.code > 43)
            continue;
        const double value = isReal(tag.code) ? real(tag) : 0.0;
        if (tag.code == 10)
            out.vertices.push_back({{value, 0.0}, 0.0, 0.0, 0.0});
        else if (tag.code == 38)
            out.elevation = value;
        else if (tag.code == 43)
            out.constantWidth = value;
        else if (out.vertices.empty())
            continue;
        else if (tag.code == 20)
            out.vertices.back().at.y = value;
        else if (tag.code == 40)
            out.vertices.back().startWidth = value;
        else if (tag.code == 41)
            out.vertices.back().endWidth = value;
        else if (tag.code == 42)
            out.vertices.back().bulge = value;
    }
    if (out.vertices.empty())
        fail("it has no vertex");
    return out;
}

host::PolylineVertex EntityDecoder::Body::vertex(std::span<const Tag> tags, double startWidth,
                                                 double endWidth, Point3& at, std::int64_t& flags) {
    host::PolylineVertex out{{}, 0.0, startWidth, endWidth};
    for (const Tag& tag : tags) {
        if (tag.code == 70)
            flags = values_.integer(tag).value_or(0);
        else if (tag.code == 40)
            out.startWidth = real(tag);
        else if (tag.code == 41)
            out.endWidth = real(tag);
        else if (tag.code == 42)
            out.bulge = real(tag);
        else if (tag.code == 10 || tag.code == 20 || tag.code == 30)
            setCoordinate(at, 10, tag, real(tag));
    }
    out.at = at.plan();
    return out;
}

host::EntityGeometry EntityDecoder::Body::polyline() {
    const std::int64_t flags = firstInteger(values_, parts_.body, 70, 0);
    if ((flags & (polyline_flag::kMesh | polyline_flag::kPolyface)) != 0)
        return host::Other{"POLYLINE"};
    host::Polyline plane;
    host::Polyline3d spatial;
    plane.form = host::Polyline::Form::old;
    plane.closed = spatial.closed = (flags & polyline_flag::kClosed) != 0;
    plane.elevation = first(30, 0.0);
    plane.constantWidth = first(40, 0.0);
    const double endWidth = first(41, 0.0);
    for (const std::span<const Tag> child : childRecords(parts_.children)) {
        if (values_.name(child.front()) == "SEQEND")
            break;
        if (values_.name(child.front()) != "VERTEX")
            continue;
        Point3 at;
        std::int64_t vertexFlags = 0;
        const host::PolylineVertex v =
            vertex(child, plane.constantWidth, endWidth, at, vertexFlags);
        // The frame of a smoothed polyline is kept beside the points of the curve.
        if ((flags & polyline_flag::kSplineFit) != 0 && (vertexFlags & kSplineFrameVertex) != 0)
            continue;
        plane.vertices.push_back(v);
        spatial.vertices.push_back(at);
    }
    if (plane.vertices.empty())
        fail("it has no vertex");
    if ((flags & polyline_flag::k3d) != 0)
        return spatial;
    return plane;
}

host::Circle EntityDecoder::Body::circle() {
    const host::Circle out{points({10})[0], first(40, 0.0)};
    if (out.radius < 0.0)
        fail("its radius is negative");
    return out;
}

host::Arc EntityDecoder::Body::arc() {
    const host::Circle round = circle();
    return {round.centre, round.radius, first(50, 0.0) * kDegree, first(51, 0.0) * kDegree};
}

// `upCode`: where the vertical justification stands.
host::Text EntityDecoder::Body::text(int upCode) {
    using Across = host::Text::Across;
    using Up = host::Text::Up;
    host::Text out;
    const std::vector<Point3> at = points({10, 11});
    out.text = firstText(file_, parts_.body, 1);
    out.height = first(40, 1.0);
    out.rotation = first(50, 0.0) * kDegree;
    const std::int64_t across = firstInteger(values_, parts_.body, 72, 0);
    const std::int64_t up = firstInteger(values_, parts_.body, upCode, 0);
    out.across = across == 1 || across == 4 ? Across::centre
                 : across == 2              ? Across::right
                                            : Across::left;
    out.up = up == 1                  ? Up::bottom
             : up == 2 || across == 4 ? Up::middle
             : up == 3                ? Up::top
                                      : Up::baseline;
    // Texts that are aligned or fitted between two points (3, 5) begin at the first one.
    const bool second = across == 1 || across == 2 || across == 4 || (across == 0 && up != 0);
    out.at = second ? at[1] : at[0];
    return out;
}

host::EntityGeometry EntityDecoder::Body::hatch() {
    base::Result<host::Hatch> out = readHatch(parts_.body, values_, file_.version >= kFitDataFrom);
    if (!out) {
        fail(out.error().text);
        return host::Other{"HATCH"};
    }
    out->pattern = firstText(file_, parts_.body, 2);
    return std::move(out).value();
}

host::EntityGeometry EntityDecoder::Body::region() {
    std::vector<std::string> lines;
    for (const Tag& tag : parts_.body) {
        if (tag.code == 1)
            lines.emplace_back(tag.value);
        else if (tag.code == 3 && !lines.empty())
            lines.back() += tag.value;
    }
    for (std::string& line : lines)
        line = acis::deciphered(line);
    base::Result<host::Region> out = acis::readRegion(lines);
    if (!out) {
        // Later releases keep the data elsewhere; that is no fault of the entity.
        if (!lines.empty())
            fail(out.error().text);
        return host::Other{"REGION"};
    }
    return std::move(out).value();
}

host::Face3d EntityDecoder::Body::face() {
    const std::vector<Point3> corners = points({10, 11, 12, 13});
    const bool triangle = std::none_of(parts_.body.begin(), parts_.body.end(),
                                       [](const Tag& tag) { return tag.code == 13; });
    return {{corners[0], corners[1], corners[2], triangle ? corners[2] : corners[3]}};
}

host::Insert EntityDecoder::Body::insert() {
    host::Insert out;
    out.block = firstText(file_, parts_.body, 2);
    out.at = points({10})[0];
    out.scale = {first(41, 1.0), first(42, 1.0), first(43, 1.0)};
    out.rotation = first(50, 0.0) * kDegree;
    return out;
}

// --- entities -----------------------------------------------------------------------------------

EntityDecoder::EntityDecoder(const SourceFile& file) : file_(file), values_(file.values()) {}

host::EntityGeometry EntityDecoder::geometry(std::string_view type, const EntityParts& parts,
                                             std::string& warning) const {
    Body body(file_, parts);
    host::EntityGeometry out = host::Other{std::string(type)};
    const bool worldCoordinates = type == "LINE" || type == "POINT" || type == "3DFACE";
    const Facing facing = worldCoordinates ? Facing::up : facingOf(parts.body, values_);
    if (facing == Facing::tilted)
        return out;
    if (type == "LINE")
        out = body.line();
    else if (type == "LWPOLYLINE")
        out = body.lightPolyline();
    else if (type == "POLYLINE")
        out = body.polyline();
    else if (type == "POINT")
        out = body.point();
    else if (type == "CIRCLE")
        out = body.circle();
    else if (type == "ARC")
        out = body.arc();
    else if (type == "TEXT")
        out = body.text(kTextUp);
    else if (type == "HATCH")
        out = body.hatch();
    else if (type == "REGION")
        out = body.region();
    else if (type == "3DFACE")
        out = body.face();
    else if (type == "INSERT")
        out = body.insert();
    if (facing == Facing::down)
        turnOver(out);
    warning = body.reason();
    return out;
}

void EntityDecoder::readCommon(std::span<const Tag> common, host::Entity& entity) const {
    for (const Tag& tag : common) {
        if (tag.code == 8)
            entity.layer = file_.texts.decoded(values_.name(tag));
        else if (tag.code == 62)
            entity.colour = static_cast<int>(
                std::clamp<std::int64_t>(values_.integer(tag).value_or(256), 0, 256));
        else if (tag.code == 6)
            entity.linetype = file_.texts.decoded(values_.name(tag));
    }
    if (base::equalsIgnoringCase(entity.linetype, "ByLayer"))
        entity.linetype = "ByLayer";
}

host::Attribute EntityDecoder::attribute(std::span<const Tag> tags) const {
    constexpr std::int64_t kInvisible = 1;
    const EntityParts parts = splitEntity(tags, values_);
    host::Entity common;
    readCommon(parts.common, common);
    Body body(file_, parts);
    const Facing facing = facingOf(parts.body, values_);
    host::EntityGeometry text = body.text(kAttributeUp);
    if (facing == Facing::down)
        turnOver(text);
    const bool invisible = (firstInteger(values_, parts.body, 70, 0) & kInvisible) != 0;
    return {.tag = firstText(file_, parts.body, 2),
            .text = std::get<host::Text>(std::move(text)),
            .layer = std::move(common.layer),
            .colour = common.colour,
            .shown = !invisible && facing != Facing::tilted && body.reason().empty()};
}

std::vector<host::Attribute> EntityDecoder::attributes(std::span<const Tag> children) const {
    std::vector<host::Attribute> out;
    for (const std::span<const Tag> child : childRecords(children))
        if (values_.name(child.front()) == "ATTRIB")
            out.push_back(attribute(child));
    return out;
}

DecodedEntity EntityDecoder::decode(std::span<const Tag> tags) const {
    DecodedEntity out;
    const std::string_view type = values_.name(tags.front());
    const EntityParts parts = splitEntity(tags, values_);
    readCommon(parts.common, out.entity);
    out.entity.geometry = geometry(type, parts, out.warning);
    if (!out.warning.empty())
        out.entity.geometry = host::Other{std::string(type)};
    else if (auto* other = std::get_if<host::Other>(&out.entity.geometry))
        other->look = lookOf(file_, type, parts);
    else if (auto* insert = std::get_if<host::Insert>(&out.entity.geometry))
        insert->attributes = attributes(parts.children);
    if (!parts.xdata.empty())
        out.xdata = xdata(parts.xdata);
    return out;
}

std::vector<ApplicationData> EntityDecoder::xdata(std::span<const Tag> tags) const {
    std::vector<ApplicationData> out;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const Tag& tag = tags[i];
        if (tag.code == 1001) {
            out.push_back({file_.texts.decoded(values_.name(tag)), {}});
            continue;
        }
        if (out.empty())
            continue;
        std::vector<host::XDataItem>& items = out.back().items;
        const ValueKind kind = valueKind(tag.code);
        if (tag.code >= 1010 && tag.code < 1020) {
            Point3 p{values_.real(tag).value_or(0.0), 0.0, 0.0};
            if (i + 1 < tags.size() && tags[i + 1].code == tag.code + 10)
                p.y = values_.real(tags[++i]).value_or(0.0);
            if (i + 1 < tags.size() && tags[i + 1].code == tag.code + 20)
                p.z = values_.real(tags[++i]).value_or(0.0);
            items.push_back({tag.code, p});
        } else if (kind == ValueKind::real) {
            items.push_back({tag.code, values_.real(tag).value_or(0.0)});
        } else if (kind == ValueKind::int16 || kind == ValueKind::int32) {
            const std::int64_t value = values_.integer(tag).value_or(0);
            items.push_back({tag.code, static_cast<std::int32_t>(std::clamp<std::int64_t>(
                                           value, std::numeric_limits<std::int32_t>::min(),
                                           std::numeric_limits<std::int32_t>::max()))});
        } else if (kind == ValueKind::chunk) {
            TagWriter hexadecimal{Format{}};
            hexadecimal.chunk(tag.code, values_.chunk(tag));
            const std::string& lines = hexadecimal.bytes();
            const std::size_t begin = lines.find('\n') + 1;
            items.push_back({tag.code, lines.substr(begin, lines.size() - begin - 1)});
        } else {
            items.push_back({tag.code, file_.texts.decoded(tag.value)});
        }
    }
    return out;
}

// --- tables and objects -------------------------------------------------------------------------

std::string firstText(const SourceFile& file, std::span<const Tag> tags, int code) {
    for (const Tag& tag : tags)
        if (tag.code == code)
            return file.texts.decoded(tag.value);
    return {};
}

std::int64_t firstInteger(const TagValues& values, std::span<const Tag> tags, int code,
                          std::int64_t otherwise) {
    for (const Tag& tag : tags)
        if (tag.code == code)
            return values.integer(tag).value_or(otherwise);
    return otherwise;
}

host::Layer decodeLayer(const SourceFile& file, std::span<const Tag> tags) {
    const TagValues values = file.values();
    host::Layer layer;
    layer.name = std::string(base::trimmed(firstText(file, tags, 2)));
    const std::int64_t flags = firstInteger(values, tags, 70, 0);
    const std::int64_t colour = firstInteger(values, tags, 62, host::colour::kForeground);
    layer.frozen = (flags & 1) != 0;
    layer.locked = (flags & 4) != 0;
    layer.on = colour >= 0;
    layer.colour = static_cast<int>(std::clamp<std::int64_t>(std::abs(colour), 0, 256));
    const std::string linetype(base::trimmed(firstText(file, tags, 6)));
    if (!linetype.empty() && !base::equalsIgnoringCase(linetype, "Continuous"))
        layer.linetype = linetype;
    return layer;
}

std::vector<DictionaryItem> decodeDictionary(const SourceFile& file, std::span<const Tag> tags) {
    std::vector<DictionaryItem> out;
    const TagValues values = file.values();
    bool inside = false;
    for (const Tag& tag : tags) {
        if (tag.code == 100)
            inside = values.name(tag) == "AcDbDictionary";
        else if (!inside)
            continue;
        else if (tag.code == 3)
            out.push_back({file.texts.decoded(tag.value), 0});
        else if ((tag.code == 350 || tag.code == 360) && !out.empty() && out.back().handle == 0)
            out.back().handle = values.handle(tag).value_or(0);
    }
    return out;
}

} // namespace tessaran::drawing::dxf
