#include "drawing/dxf_old_entities.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace tessaran::drawing::dxf {
namespace {

constexpr std::int64_t k3dPolyline = 8;
constexpr std::int64_t kPolygonMesh = 16;
constexpr std::int64_t kPolyfaceMesh = 64;

// One class's part of an entity: its marker and the group codes that it takes. Without codes it
// takes all that no other part does; `nothing` takes none.
struct ClassPart {
    std::string_view marker;
    std::vector<int> codes{};
    bool nothing = false;
};
using ClassPlan = std::vector<ClassPart>;

ClassPlan dimensionPlan(std::int64_t kind) {
    const ClassPart common{"AcDbDimension",
                           {2, 10, 20, 30, 11, 21, 31, 70, 71, 1, 3, 53, 51, 210, 220, 230}};
    switch (kind & 7) {
    case 0:
        return {common, {"AcDbAlignedDimension"}, {"AcDbRotatedDimension", {}, true}};
    case 1:
        return {common, {"AcDbAlignedDimension"}};
    case 2:
        return {common, {"AcDb2LineAngularDimension"}};
    case 3:
        return {common, {"AcDbDiametricDimension"}};
    case 4:
        return {common, {"AcDbRadialDimension"}};
    case 5:
        return {common, {"AcDb3PointAngularDimension"}};
    default:
        return {common, {"AcDbOrdinateDimension"}};
    }
}

ClassPlan vertexPlan(std::int64_t flags, std::int64_t parentFlags) {
    const ClassPart vertex{"AcDbVertex", {}, true};
    if ((parentFlags & kPolyfaceMesh) != 0)
        return (flags & kPolyfaceMesh) != 0 ? ClassPlan{vertex, {"AcDbPolyFaceMeshVertex"}}
                                            : ClassPlan{{"AcDbFaceRecord"}};
    if ((parentFlags & kPolygonMesh) != 0)
        return {vertex, {"AcDbPolygonMeshVertex"}};
    if ((parentFlags & k3dPolyline) != 0)
        return {vertex, {"AcDb3dPolylineVertex"}};
    return {vertex, {"AcDb2dVertex"}};
}

std::string_view polylineClass(std::int64_t flags) {
    return (flags & kPolyfaceMesh) != 0  ? "AcDbPolyFaceMesh"
           : (flags & kPolygonMesh) != 0 ? "AcDbPolygonMesh"
           : (flags & k3dPolyline) != 0  ? "AcDb3dPolyline"
                                         : "AcDb2dPolyline";
}

ClassPlan planOf(std::string_view type, std::span<const Tag> tags, const TagValues& values,
                 std::int64_t parentFlags) {
    struct Simple {
        std::string_view type;
        std::string_view marker;
    };
    static constexpr std::array kSimple{
        Simple{"LINE", "AcDbLine"},         Simple{"3DLINE", "AcDbLine"},
        Simple{"POINT", "AcDbPoint"},       Simple{"CIRCLE", "AcDbCircle"},
        Simple{"TRACE", "AcDbTrace"},       Simple{"SOLID", "AcDbTrace"},
        Simple{"SHAPE", "AcDbShape"},       Simple{"3DFACE", "AcDbFace"},
        Simple{"VIEWPORT", "AcDbViewport"}, Simple{"BLOCK", "AcDbBlockBegin"},
        Simple{"ENDBLK", "AcDbBlockEnd"},   Simple{"LWPOLYLINE", "AcDbPolyline"},
        Simple{"HATCH", "AcDbHatch"},       Simple{"REGION", "AcDbModelerGeometry"},
        Simple{"MTEXT", "AcDbMText"},       Simple{"ELLIPSE", "AcDbEllipse"},
        Simple{"SPLINE", "AcDbSpline"},
    };
    for (const Simple& simple : kSimple)
        if (simple.type == type)
            return {{simple.marker}};
    const std::int64_t flags = firstInteger(values, tags, 70, 0);
    if (type == "ARC")
        return {{"AcDbCircle"}, {"AcDbArc", {50, 51}}};
    if (type == "TEXT")
        return {{"AcDbText"}, {"AcDbText", {73}}};
    if (type == "ATTRIB")
        return {{"AcDbText"}, {"AcDbAttribute", {2, 70, 73, 74}}};
    if (type == "ATTDEF")
        return {{"AcDbText"}, {"AcDbAttributeDefinition", {3, 2, 70, 73, 74}}};
    if (type == "INSERT") {
        const bool many = flags > 1 || firstInteger(values, tags, 71, 0) > 1;
        return {{many ? "AcDbMInsertBlock" : "AcDbBlockReference"}};
    }
    if (type == "POLYLINE")
        return {{polylineClass(flags)}};
    if (type == "VERTEX")
        return vertexPlan(flags, parentFlags);
    if (type == "DIMENSION")
        return dimensionPlan(flags);
    return {};
}

bool isCommon(int code) {
    static constexpr std::array kCodes{8, 6, 62, 67, 48, 60, 370, 410, 420, 430, 440};
    return std::ranges::find(kCodes, code) != kCodes.end();
}

bool takes(const ClassPart& part, int code, const ClassPlan& plan) {
    if (part.nothing)
        return false;
    if (!part.codes.empty())
        return std::ranges::find(part.codes, code) != part.codes.end();
    return std::ranges::none_of(plan, [&](const ClassPart& other) {
        return std::ranges::find(other.codes, code) != other.codes.end();
    });
}

} // namespace

void TagCopier::copy(const Tag& tag) {
    if (same_) {
        to_.raw(std::string_view(from_.bytes).substr(tag.begin, tag.end - tag.begin));
        return;
    }
    switch (valueKind(tag.code)) {
    case ValueKind::text:
        to_.text(tag.code, tag.value);
        break;
    case ValueKind::real:
        to_.real(tag.code, values_.real(tag).value_or(0.0));
        break;
    case ValueKind::chunk:
        to_.chunk(tag.code, values_.chunk(tag));
        break;
    default:
        to_.integer(tag.code, values_.integer(tag).value_or(0));
        break;
    }
}

void EntityUpgrader::write(std::span<const Tag> tags, std::uint64_t owner) {
    const EntityParts parts = splitEntity(tags, values_);
    const std::span<const Tag> main = tags.first(tags.size() - parts.children.size());
    const std::uint64_t handle = writeOne(main, owner, 0);
    const std::int64_t flags = firstInteger(values_, main, 70, 0);
    bool ended = false;
    for (const std::span<const Tag> child : childRecords(parts.children)) {
        writeOne(child, handle, flags);
        ended = ended || values_.name(child.front()) == "SEQEND";
    }
    if (ended || values_.name(tags.front()) != "POLYLINE")
        return;
    writer_.text(0, "SEQEND");
    writer_.handle(5, handles_.take());
    writer_.handle(330, handle);
    writer_.text(100, "AcDbEntity");
    writer_.text(8, "0");
}

std::uint64_t EntityUpgrader::writeOne(std::span<const Tag> tags, std::uint64_t owner,
                                       std::int64_t parentFlags) {
    const std::string_view type = values_.name(tags.front());
    std::uint64_t handle = 0;
    std::uint64_t known = 0; // owner that the record names
    bool marked = false;
    bool braces = false;
    std::vector<Tag> rest;
    std::vector<Tag> reactors;
    for (const Tag& tag : tags.subspan(1)) {
        marked = marked || tag.code == 100;
        if (marked || tag.code >= 1000) {
            rest.push_back(tag);
            continue;
        }
        if (tag.code == 102)
            braces = values_.name(tag).starts_with('{');
        if (tag.code == 102 || braces)
            reactors.push_back(tag);
        else if (tag.code == 5 && handle == 0)
            handle = values_.handle(tag).value_or(0);
        else if (tag.code == 330)
            known = values_.handle(tag).value_or(0);
        else if (tag.code != 999 && tag.code != 5)
            rest.push_back(tag);
    }
    if (handle == 0)
        handle = handles_.take();
    writer_.text(0, type == "3DLINE" ? "LINE" : type);
    writer_.handle(5, handle);
    copier_.copy(reactors);
    writer_.handle(330, known != 0 ? known : owner);
    if (marked)
        copier_.copy(rest);
    else
        writeClasses(type, rest, parentFlags);
    return handle;
}

void EntityUpgrader::writeClasses(std::string_view type, std::span<const Tag> tags,
                                  std::int64_t parentFlags) {
    const auto firstXData = std::ranges::find_if(tags, [](const Tag& t) { return t.code >= 1000; });
    const auto size = static_cast<std::size_t>(firstXData - tags.begin());
    const std::span<const Tag> own = tags.first(size);
    const ClassPlan plan = planOf(type, own, values_, parentFlags);
    // The oldest releases give the height of a whole entity under group code 38.
    const auto height = std::ranges::find_if(own, [](const Tag& t) { return t.code == 38; });
    const bool lifted = height != own.end() && type != "LWPOLYLINE";
    const bool hasZ = std::ranges::any_of(own, [](const Tag& t) { return t.code == 30; });
    writer_.text(100, "AcDbEntity");
    if (std::ranges::none_of(own, [](const Tag& t) { return t.code == 8; }))
        writer_.text(8, "0");
    for (const Tag& tag : own)
        if (isCommon(tag.code) || plan.empty())
            copier_.copy(tag);
    for (const ClassPart& part : plan) {
        writer_.text(100, part.marker);
        for (const Tag& tag : own) {
            if (isCommon(tag.code) || (lifted && tag.code == 38) || !takes(part, tag.code, plan))
                continue;
            copier_.copy(tag);
            if (lifted && !hasZ && tag.code >= 20 && tag.code <= 23)
                writer_.real(tag.code + 10, values_.real(*height).value_or(0.0));
        }
    }
    copier_.copy(tags.subspan(size));
}

} // namespace tessaran::drawing::dxf
