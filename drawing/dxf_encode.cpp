#include "drawing/dxf_encode.h"

#include "base/text.h"
#include "drawing/acis_sat.h"
#include "drawing/dxf_hatch.h"
#include "drawing/overloaded.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tessaran::drawing::dxf {
namespace {

using host::Point3;

constexpr std::string_view kOwnersFrom = "AC1014"; // entities carry their owner
constexpr std::string_view kReactors = "{ACAD_REACTORS";
constexpr std::int64_t kClosed = 1;
constexpr std::int64_t k3dPolyline = 8;
constexpr std::int64_t k3dVertex = 32;
constexpr std::int64_t kFitFlags = 2 | 4; // smoothed polylines: gone once the vertices are new

// Degrees with the last bits of the conversion rounded away, so that 30 stays 30.
double degrees(double radians) {
    constexpr double kDecimals = 1e11;
    const double value = radians * 180.0 / std::numbers::pi;
    return std::abs(value) < 1e4 ? std::round(value * kDecimals) / kDecimals : value;
}

void writePoint(TagWriter& writer, int code, const Point3& p) {
    writer.point(code, p.x, p.y, p.z);
}

bool isNormal(int code) {
    return code == 210 || code == 220 || code == 230;
}

std::string_view classOf(const host::EntityGeometry& geometry) {
    return std::visit(
        Overloaded{
            [](const host::Line&) -> std::string_view { return "AcDbLine"; },
            [](const host::Polyline& p) -> std::string_view {
                return p.form == host::Polyline::Form::light ? "AcDbPolyline" : "AcDb2dPolyline";
            },
            [](const host::Polyline3d&) -> std::string_view { return "AcDb3dPolyline"; },
            [](const host::PointMark&) -> std::string_view { return "AcDbPoint"; },
            [](const host::Circle&) -> std::string_view { return "AcDbCircle"; },
            [](const host::Arc&) -> std::string_view { return "AcDbCircle"; },
            [](const host::Text&) -> std::string_view { return "AcDbText"; },
            [](const host::Hatch&) -> std::string_view { return "AcDbHatch"; },
            [](const host::Region&) -> std::string_view { return "AcDbModelerGeometry"; },
            [](const host::Face3d&) -> std::string_view { return "AcDbFace"; },
            [](const host::Insert&) -> std::string_view { return "AcDbBlockReference"; },
            [](const host::Other&) -> std::string_view { return ""; },
        },
        geometry);
}

// Group codes of the class part that the typed value speaks of.
std::span<const int> typedCodes(const host::EntityGeometry& geometry) {
    static constexpr std::array kLine{10, 20, 30, 11, 21, 31};
    static constexpr std::array kLight{90, 70, 43, 38, 10, 20, 40, 41, 42, 91};
    static constexpr std::array kOld{66, 10, 20, 30, 70, 40, 41, 75};
    static constexpr std::array kPoint{10, 20, 30};
    static constexpr std::array kRound{10, 20, 30, 40, 50, 51};
    static constexpr std::array kText{10, 20, 30, 40, 1, 50, 72, 73, 11, 21, 31};
    static constexpr std::array kRegion{70, 1, 3};
    static constexpr std::array kFace{10, 20, 30, 11, 21, 31, 12, 22, 32, 13, 23, 33};
    static constexpr std::array kInsert{2, 10, 20, 30, 41, 42, 43, 50};
    using Codes = std::span<const int>;
    return std::visit(Overloaded{
                          [](const host::Line&) -> Codes { return kLine; },
                          [](const host::Polyline& p) -> Codes {
                              return p.form == host::Polyline::Form::light ? Codes(kLight)
                                                                           : Codes(kOld);
                          },
                          [](const host::Polyline3d&) -> Codes { return kOld; },
                          [](const host::PointMark&) -> Codes { return kPoint; },
                          [](const host::Circle&) -> Codes { return kRound; },
                          [](const host::Arc&) -> Codes { return kRound; },
                          [](const host::Text&) -> Codes { return kText; },
                          [](const host::Hatch&) -> Codes { return {}; },
                          [](const host::Region&) -> Codes { return kRegion; },
                          [](const host::Face3d&) -> Codes { return kFace; },
                          [](const host::Insert&) -> Codes { return kInsert; },
                          [](const host::Other&) -> Codes { return {}; },
                      },
                      geometry);
}

} // namespace

bool keepsRegionsAsText(std::string_view version) {
    return version >= "AC1015" && version <= "AC1024";
}

class EntityEncoder::Kept {
  public:
    Kept() = default; // a new entity: nothing
    Kept(const SourceFile& file, std::span<const Tag> body, const host::EntityGeometry& geometry)
        : file_(&file), body_(body), typed_(typedCodes(geometry)) {}

    // The class marker as it stood, or the one of a new entity.
    void writeMarker(TagWriter& writer, std::string_view marker) const {
        if (body_.empty() || body_.front().code != 100)
            writer.text(100, marker);
        else
            copy(writer, body_.front());
    }
    void writeOthers(TagWriter& writer) const {
        for (const Tag& tag : body_)
            if (tag.code != 100 && !isNormal(tag.code) &&
                std::find(typed_.begin(), typed_.end(), tag.code) == typed_.end())
                copy(writer, tag);
    }
    void writeNormal(TagWriter& writer) const {
        for (const Tag& tag : body_)
            if (isNormal(tag.code))
                copy(writer, tag);
    }
    std::int64_t flags() const {
        return file_ == nullptr ? 0 : firstInteger(file_->values(), body_, 70, 0);
    }
    std::span<const Tag> body() const { return body_; }

  private:
    void copy(TagWriter& writer, const Tag& tag) const {
        writer.raw(std::string_view(file_->bytes).substr(tag.begin, tag.end - tag.begin));
    }

    const SourceFile* file_ = nullptr;
    std::span<const Tag> body_;
    std::span<const int> typed_;
};

EntityEncoder::EntityEncoder(const SourceFile& file, HandleSource& handles, std::uint64_t owner)
    : file_(file), values_(file.values()), decoder_(file), handles_(handles), owner_(owner) {}

void EntityEncoder::writeRaw(TagWriter& writer, std::span<const Tag> tags) const {
    if (!tags.empty())
        writer.raw(std::string_view(file_.bytes)
                       .substr(tags.front().begin, tags.back().end - tags.front().begin));
}

// --- new entities -------------------------------------------------------------------------------

void EntityEncoder::write(TagWriter& writer, const EntityRecord& record,
                          const ReactorEdit& reactors) {
    const host::EntityGeometry& geometry = record.entity.geometry;
    if (std::holds_alternative<host::Region>(geometry) && !keepsRegionsAsText(file_.version)) {
        writeRegionLoops(writer, record, reactors);
        return;
    }
    writeCommon(writer, host::dxfName(record.entity), record, record.entity.id.value, reactors);
    writeClass(writer, geometry, Kept{});
    writeXData(writer, record.xdata);
    writeVertices(writer, record, geometry, {});
}

void EntityEncoder::writeCommon(TagWriter& writer, std::string_view type,
                                const EntityRecord& record, std::uint64_t handle,
                                const ReactorEdit& reactors) {
    writer.text(0, type);
    writer.handle(5, handle);
    if (!reactors.added.empty()) {
        writer.text(102, kReactors);
        for (const std::uint64_t reactor : reactors.added)
            writer.handle(330, reactor);
        writer.text(102, "}");
    }
    if (file_.version >= kOwnersFrom)
        writer.handle(330, owner_);
    writer.text(100, "AcDbEntity");
    writer.text(8, encoded(record.entity.layer));
    if (record.entity.linetype != "ByLayer")
        writer.text(6, encoded(record.entity.linetype));
    if (record.entity.colour != host::colour::kByLayer)
        writer.integer(62, record.entity.colour);
}

void EntityEncoder::writeRegionLoops(TagWriter& writer, const EntityRecord& record,
                                     const ReactorEdit& reactors) {
    const auto& region = std::get<host::Region>(record.entity.geometry);
    const std::uint64_t first = record.entity.id.value;
    for (std::size_t i = 0; i < region.loops.size(); ++i) {
        host::Polyline loop;
        loop.closed = true;
        loop.elevation = region.elevation;
        for (const host::Loop::Vertex& vertex : region.loops[i].vertices)
            loop.vertices.push_back({vertex.at, vertex.bulge, 0.0, 0.0});
        const std::uint64_t handle = i == 0 ? first : handles_.take();
        writeCommon(writer, "LWPOLYLINE", record, handle, i == 0 ? reactors : ReactorEdit{});
        writeClass(writer, loop, Kept{});
        std::vector<ApplicationData> data = i == 0 ? record.xdata : std::vector<ApplicationData>{};
        data.push_back({std::string(kRegionApplication),
                        {{1005, handleText(first)},
                         {1071, static_cast<std::int32_t>(i)},
                         {1071, static_cast<std::int32_t>(region.loops.size())}}});
        writeXData(writer, data);
    }
}

// --- the class part -----------------------------------------------------------------------------

namespace {

void writeLight(TagWriter& writer, const host::Polyline& p) {
    const bool widths = std::any_of(p.vertices.begin(), p.vertices.end(), [](const auto& v) {
        return v.startWidth != 0.0 || v.endWidth != 0.0;
    });
    for (const host::PolylineVertex& v : p.vertices) {
        writer.point(10, v.at.x, v.at.y);
        if (widths) {
            writer.real(40, v.startWidth);
            writer.real(41, v.endWidth);
        }
        if (v.bulge != 0.0)
            writer.real(42, v.bulge);
    }
}

void writeText(TagWriter& writer, const host::Text& t, std::string_view content) {
    using Across = host::Text::Across;
    using Up = host::Text::Up;
    writePoint(writer, 10, t.at);
    writer.real(40, t.height);
    writer.text(1, content);
    if (t.rotation != 0.0)
        writer.real(50, degrees(t.rotation));
    const int across = t.across == Across::left ? 0 : t.across == Across::centre ? 1 : 2;
    if (across != 0)
        writer.integer(72, across);
    if (across != 0 || t.up != Up::baseline)
        writePoint(writer, 11, t.at);
}

void writeRegionText(TagWriter& writer, const host::Region& region) {
    constexpr std::size_t kLineSize = 255;
    writer.integer(70, 1);
    for (const std::string& line : acis::writeRegion(region))
        for (std::size_t i = 0; i == 0 || i < line.size(); i += kLineSize)
            writer.text(i == 0 ? 1 : 3,
                        acis::ciphered(std::string_view(line).substr(i, kLineSize)));
}

int upNumber(host::Text::Up up) {
    switch (up) {
    case host::Text::Up::bottom:
        return 1;
    case host::Text::Up::middle:
        return 2;
    case host::Text::Up::top:
        return 3;
    case host::Text::Up::baseline:
        break;
    }
    return 0;
}

} // namespace

void EntityEncoder::writeClass(TagWriter& writer, const host::EntityGeometry& geometry,
                               const Kept& kept) {
    if (const auto* hatch = std::get_if<host::Hatch>(&geometry)) {
        if (kept.body().empty())
            writeHatch(writer, *hatch, encoded(hatch->pattern), false);
        else
            rewriteHatch(writer, kept.body(), file_.bytes, *hatch);
        return;
    }
    kept.writeMarker(writer, classOf(geometry));
    if (const auto* light = std::get_if<host::Polyline>(&geometry);
        light != nullptr && light->form == host::Polyline::Form::light) {
        writer.integer(90, static_cast<std::int64_t>(light->vertices.size()));
        writer.integer(70, (kept.flags() & ~kClosed) | (light->closed ? kClosed : 0));
        if (light->constantWidth != 0.0)
            writer.real(43, light->constantWidth);
        if (light->elevation != 0.0)
            writer.real(38, light->elevation);
    }
    kept.writeOthers(writer);
    std::visit(Overloaded{
                   [&](const host::Line& line) {
                       writePoint(writer, 10, line.start);
                       writePoint(writer, 11, line.end);
                   },
                   [&](const host::Polyline& p) {
                       if (p.form == host::Polyline::Form::light) {
                           writeLight(writer, p);
                           return;
                       }
                       writer.integer(66, 1);
                       writePoint(writer, 10, {0.0, 0.0, p.elevation});
                       writer.integer(70, (kept.flags() & ~(kClosed | kFitFlags)) |
                                              (p.closed ? kClosed : 0));
                       if (p.constantWidth != 0.0) {
                           writer.real(40, p.constantWidth);
                           writer.real(41, p.constantWidth);
                       }
                   },
                   [&](const host::Polyline3d& p) {
                       writer.integer(66, 1);
                       writePoint(writer, 10, {});
                       writer.integer(70, (kept.flags() & ~(kClosed | kFitFlags)) | k3dPolyline |
                                              (p.closed ? kClosed : 0));
                   },
                   [&](const host::PointMark& p) { writePoint(writer, 10, p.at); },
                   [&](const host::Circle& c) {
                       writePoint(writer, 10, c.centre);
                       writer.real(40, c.radius);
                   },
                   [&](const host::Arc& a) {
                       writePoint(writer, 10, a.centre);
                       writer.real(40, a.radius);
                       kept.writeNormal(writer);
                       writer.text(100, "AcDbArc");
                       writer.real(50, degrees(a.startAngle));
                       writer.real(51, degrees(a.endAngle));
                   },
                   [&](const host::Text& t) {
                       writeText(writer, t, encoded(t.text));
                       kept.writeNormal(writer);
                       writer.text(100, "AcDbText");
                       if (t.up != host::Text::Up::baseline)
                           writer.integer(73, upNumber(t.up));
                   },
                   [&](const host::Region& r) { writeRegionText(writer, r); },
                   [&](const host::Face3d& f) {
                       for (int i = 0; i < 4; ++i)
                           writePoint(writer, 10 + i, f.corners[static_cast<std::size_t>(i)]);
                   },
                   [&](const host::Insert& i) {
                       writer.text(2, encoded(i.block));
                       writePoint(writer, 10, i.at);
                       writer.real(41, i.scale.x);
                       writer.real(42, i.scale.y);
                       writer.real(43, i.scale.z);
                       writer.real(50, degrees(i.rotation));
                   },
                   [](const auto&) {},
               },
               geometry);
    if (!std::holds_alternative<host::Arc>(geometry) &&
        !std::holds_alternative<host::Text>(geometry))
        kept.writeNormal(writer);
}

// --- vertices of old-style polylines ------------------------------------------------------------

void EntityEncoder::writePartHead(TagWriter& writer, std::string_view type,
                                  const EntityRecord& record, std::uint64_t handle) {
    writer.text(0, type);
    writer.handle(5, handle);
    if (file_.version >= kOwnersFrom)
        writer.handle(330, record.entity.id.value);
    writer.text(100, "AcDbEntity");
    writer.text(8, encoded(record.entity.layer));
}

void EntityEncoder::writeVertex(TagWriter& writer, const EntityRecord& record, std::uint64_t handle,
                                const host::PolylineVertex& vertex,
                                const host::Polyline& polyline) {
    writePartHead(writer, "VERTEX", record, handle);
    writer.text(100, "AcDbVertex");
    writer.text(100, "AcDb2dVertex");
    writePoint(writer, 10, {vertex.at.x, vertex.at.y, polyline.elevation});
    if (vertex.startWidth != polyline.constantWidth || vertex.endWidth != polyline.constantWidth) {
        writer.real(40, vertex.startWidth);
        writer.real(41, vertex.endWidth);
    }
    if (vertex.bulge != 0.0)
        writer.real(42, vertex.bulge);
    writer.integer(70, 0);
}

void EntityEncoder::writeVertex(TagWriter& writer, const EntityRecord& record, std::uint64_t handle,
                                const host::Point3& at) {
    writePartHead(writer, "VERTEX", record, handle);
    writer.text(100, "AcDbVertex");
    writer.text(100, "AcDb3dPolylineVertex");
    writePoint(writer, 10, at);
    writer.integer(70, k3dVertex);
}

// Old vertices lend their handles to the new ones, in order.
void EntityEncoder::writeVertices(TagWriter& writer, const EntityRecord& record,
                                  const host::EntityGeometry& geometry,
                                  std::span<const Tag> oldChildren) {
    const auto* plane = std::get_if<host::Polyline>(&geometry);
    const auto* spatial = std::get_if<host::Polyline3d>(&geometry);
    const bool old = plane != nullptr && plane->form == host::Polyline::Form::old;
    if (!old && spatial == nullptr)
        return;
    std::vector<std::uint64_t> known;
    std::span<const Tag> end;
    for (const std::span<const Tag> child : childRecords(oldChildren)) {
        if (end.empty() && values_.name(child.front()) == "SEQEND")
            end = child;
        for (const Tag& tag : child)
            if (tag.code == 5 && end.empty())
                known.push_back(values_.handle(tag).value_or(0));
    }
    std::size_t used = 0;
    const auto handle = [&] {
        return used < known.size() && known[used] != 0 ? known[used++] : handles_.take();
    };
    if (old)
        for (const host::PolylineVertex& vertex : plane->vertices)
            writeVertex(writer, record, handle(), vertex, *plane);
    else
        for (const host::Point3& at : spatial->vertices)
            writeVertex(writer, record, handle(), at);
    if (!end.empty())
        writeRaw(writer, end);
    else
        writePartHead(writer, "SEQEND", record, handles_.take());
}

// --- attributes of block references -------------------------------------------------------------

// They keep all but their places.
void EntityEncoder::writeAttributes(TagWriter& writer, std::span<const Tag> children,
                                    const host::Insert& before, const host::Insert& now) {
    const std::size_t count = std::min(before.attributes.size(), now.attributes.size());
    std::size_t next = 0;
    for (const std::span<const Tag> child : childRecords(children)) {
        const bool known = values_.name(child.front()) == "ATTRIB" && next < count;
        if (!known) {
            writeRaw(writer, child);
            continue;
        }
        writeShifted(writer, child, now.attributes[next].text.at - before.attributes[next].text.at);
        ++next;
    }
}

void EntityEncoder::writeShifted(TagWriter& writer, std::span<const Tag> text, host::Vector3 by) {
    const EntityParts parts = splitEntity(text, values_);
    const Facing facing = facingOf(parts.body, values_);
    if (facing == Facing::tilted || by == host::Vector3{}) {
        writeRaw(writer, text);
        return;
    }
    if (facing == Facing::down)
        by = {-by.x, by.y, -by.z};
    const Tag* const bodyEnd = parts.body.data() + parts.body.size();
    for (const Tag& tag : text) {
        const bool place = tag.code >= 10 && tag.code < 40 && tag.code % 10 < 2;
        const bool inBody = &tag >= parts.body.data() && &tag < bodyEnd;
        const std::optional<double> value = values_.real(tag);
        if (place && inBody && value)
            writer.real(tag.code, *value + (tag.code < 20 ? by.x : tag.code < 30 ? by.y : by.z));
        else
            writeRaw(writer, std::span(&tag, 1));
    }
}

// --- changed entities ---------------------------------------------------------------------------

void EntityEncoder::rewrite(TagWriter& writer, std::span<const Tag> tags,
                            const EntityRecord& record, const ReactorEdit& reactors) {
    const host::EntityGeometry& geometry = record.entity.geometry;
    const DecodedEntity before = decoder_.decode(tags);
    // A region that stands in the file as polylines is written anew.
    if (std::holds_alternative<host::Region>(geometry) && values_.name(tags.front()) != "REGION") {
        write(writer, record, reactors);
        return;
    }
    EntityParts parts = splitEntity(tags, values_);
    const bool sameShape =
        std::holds_alternative<host::Other>(geometry) || before.entity.geometry == geometry;
    if (!hasClassPart(parts)) {
        // Damaged: what describes the shape cannot be told from the rest, so it is written anew.
        if (!sameShape) {
            write(writer, record, reactors);
            if (std::holds_alternative<host::Insert>(geometry))
                writeRaw(writer, parts.children);
            return;
        }
        parts.body = {};
    }
    rewriteCommon(writer, parts.common, record, before.entity, reactors);
    host::EntityGeometry shape = geometry;
    if (sameShape) {
        writeRaw(writer, parts.body);
    } else {
        if (facingOf(parts.body, values_) == Facing::down)
            turnOver(shape);
        writeClass(writer, shape, Kept(file_, parts.body, geometry));
    }
    writeRaw(writer, parts.embedded);
    rewriteXData(writer, parts.xdata, record);
    const bool vertices = std::holds_alternative<host::Polyline3d>(geometry) ||
                          values_.name(tags.front()) == "POLYLINE";
    const auto* insert = std::get_if<host::Insert>(&geometry);
    if (vertices && !sameShape)
        writeVertices(writer, record, shape, parts.children);
    else if (insert != nullptr && !sameShape)
        writeAttributes(writer, parts.children, std::get<host::Insert>(before.entity.geometry),
                        *insert);
    else
        writeRaw(writer, parts.children);
}

void EntityEncoder::rewriteCommon(TagWriter& writer, std::span<const Tag> common,
                                  const EntityRecord& record, const host::Entity& before,
                                  const ReactorEdit& reactors) {
    const host::Entity& now = record.entity;
    const bool recoloured = now.colour != before.colour;
    const bool relined = now.linetype != before.linetype;
    const auto copy = [&](const Tag& tag) { writeRaw(writer, std::span(&tag, 1)); };
    const auto writeAdded = [&] {
        for (const std::uint64_t reactor : reactors.added)
            writer.handle(330, reactor);
    };
    const bool hasReactors = std::any_of(common.begin(), common.end(), [&](const Tag& tag) {
        return tag.code == 102 && values_.name(tag) == kReactors;
    });
    // A true colour left in place would hide the new one.
    const auto isColour = [](int code) { return code == 62 || code == 420 || code == 430; };
    bool inReactors = false;
    for (const Tag& tag : common) {
        if (tag.code == 102)
            inReactors = inReactors ? (writeAdded(), false) : values_.name(tag) == kReactors;
        const std::uint64_t handle = values_.handle(tag).value_or(0);
        if (inReactors && tag.code == 330 &&
            std::ranges::find(reactors.removed, handle) != reactors.removed.end())
            continue;
        if (tag.code == 5) {
            if (handle == now.id.value)
                copy(tag);
            else
                writer.handle(5, now.id.value);
            if (!hasReactors && !reactors.added.empty()) {
                writer.text(102, kReactors);
                writeAdded();
                writer.text(102, "}");
            }
        } else if (tag.code == 8) {
            if (now.layer == before.layer)
                copy(tag);
            else
                writer.text(8, encoded(now.layer));
            if (relined && now.linetype != "ByLayer")
                writer.text(6, encoded(now.linetype));
            if (recoloured && now.colour != host::colour::kByLayer)
                writer.integer(62, now.colour);
        } else if (!(relined && tag.code == 6) && !(recoloured && isColour(tag.code))) {
            copy(tag);
        }
    }
}

// --- extended data ------------------------------------------------------------------------------

void EntityEncoder::writeXData(TagWriter& writer, const std::vector<ApplicationData>& data) {
    for (const ApplicationData& application : data) {
        writer.text(1001, encoded(application.application));
        for (const host::XDataItem& item : application.items)
            std::visit(Overloaded{
                           [&](const std::string& text) {
                               if (valueKind(item.code) != ValueKind::chunk) {
                                   writer.text(item.code, encoded(text));
                                   return;
                               }
                               const TagValues hexadecimal{Format{}};
                               writer.chunk(item.code, hexadecimal.chunk({item.code, text, 0, 0}));
                           },
                           [&](double value) { writer.real(item.code, value); },
                           [&](std::int32_t value) { writer.integer(item.code, value); },
                           [&](const Point3& p) { writePoint(writer, item.code, p); },
                       },
                       item.value);
    }
}

void EntityEncoder::rewriteXData(TagWriter& writer, std::span<const Tag> tags,
                                 const EntityRecord& record) {
    if (!record.xdataChanged) {
        writeRaw(writer, tags);
        return;
    }
    // Applications whose list is the same keep their tags.
    std::map<std::string, std::span<const Tag>> before;
    for (std::size_t i = 0; i < tags.size();) {
        std::size_t end = i + 1;
        while (end < tags.size() && tags[end].code != 1001)
            ++end;
        before.emplace(file_.texts.decoded(values_.name(tags[i])), tags.subspan(i, end - i));
        i = end;
    }
    for (const ApplicationData& application : record.xdata) {
        const auto old = before.find(application.application);
        const std::vector<ApplicationData> decoded =
            old == before.end() ? std::vector<ApplicationData>{} : decoder_.xdata(old->second);
        if (decoded.size() == 1 && decoded.front().items == application.items)
            writeRaw(writer, old->second);
        else
            writeXData(writer, {application});
    }
}

} // namespace tessaran::drawing::dxf
