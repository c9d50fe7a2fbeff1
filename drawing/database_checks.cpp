#include "drawing/database_checks.h"

#include "base/text.h"
#include "drawing/overloaded.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaran::drawing {
namespace {

using host::Loop;
using host::Point2;
using host::Point3;

constexpr std::size_t kLongestText = 255;   // bytes of a name, or of a text in extended data
constexpr std::size_t kLongestBinary = 254; // hexadecimal digits of a binary chunk

bool finite(double value) {
    return std::isfinite(value);
}
bool finite(Point2 p) {
    return finite(p.x) && finite(p.y);
}
bool finite(const Point3& p) {
    return finite(p.x) && finite(p.y) && finite(p.z);
}

bool finite(const host::Text& t) {
    return finite(t.at) && finite(t.height) && finite(t.rotation);
}

bool finite(const std::vector<Loop>& loops) {
    return std::ranges::all_of(loops, [](const Loop& loop) {
        return std::ranges::all_of(
            loop.vertices, [](const Loop::Vertex& v) { return finite(v.at) && finite(v.bulge); });
    });
}

bool finite(const host::Polyline& p) {
    return finite(p.elevation) && finite(p.constantWidth) &&
           std::ranges::all_of(p.vertices, [](const host::PolylineVertex& v) {
               return finite(v.at) && finite(v.bulge) && finite(v.startWidth) && finite(v.endWidth);
           });
}

bool hasLoops(const std::vector<Loop>& loops) {
    return !loops.empty() &&
           std::ranges::none_of(loops, [](const Loop& loop) { return loop.vertices.empty(); });
}

// Why the geometry is not one, or null.
const char* shapeFault(const host::EntityGeometry& geometry) {
    return std::visit(
        Overloaded{
            [](const host::Polyline& p) { return p.vertices.empty() ? "no vertices" : nullptr; },
            [](const host::Polyline3d& p) { return p.vertices.empty() ? "no vertices" : nullptr; },
            [](const host::Circle& c) { return c.radius > 0 ? nullptr : "no positive radius"; },
            [](const host::Arc& a) { return a.radius > 0 ? nullptr : "no positive radius"; },
            [](const host::Text& t) { return t.height > 0 ? nullptr : "no positive height"; },
            [](const host::Hatch& h) { return hasLoops(h.loops) ? nullptr : "an empty boundary"; },
            [](const host::Region& r) { return hasLoops(r.loops) ? nullptr : "an empty boundary"; },
            [](const host::Other&) { return "a type that only files bring"; },
            [](const auto&) -> const char* { return nullptr; },
        },
        geometry);
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool isHex(std::string_view text) {
    return text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

bool isFittingText(int code, const std::string& text) {
    switch (code) {
    case 1000:
    case 1003:
        return text.size() <= kLongestText;
    case 1002:
        return text == "{" || text == "}";
    case 1004:
        return text.size() <= kLongestBinary && text.size() % 2 == 0 && isHex(text);
    case 1005:
        return !text.empty() && text.size() <= 16 && isHex(text);
    default:
        return false;
    }
}

bool isFitting(const host::XDataItem& item) {
    const int code = item.code;
    return std::visit(
        Overloaded{
            [&](const std::string& text) { return isFittingText(code, text); },
            [&](double value) { return code >= 1040 && code <= 1042 && finite(value); },
            [&](std::int32_t value) {
                return code == 1071 ||
                       (code == 1070 && value >= std::numeric_limits<short>::min() &&
                        value <= std::numeric_limits<short>::max());
            },
            [&](const Point3& p) { return code >= 1010 && code <= 1013 && finite(p); },
        },
        item.value);
}

// Bytes of an item as drawing files hold it: a two-byte code and the value.
std::size_t itemSize(const host::XDataItem& item) {
    return 2 +
           std::visit(Overloaded{
                          [](const std::string& text) { return text.size() + 1; },
                          [](double) { return std::size_t{8}; },
                          [&](std::int32_t) { return std::size_t{item.code == 1070 ? 2u : 4u}; },
                          [](const Point3&) { return std::size_t{24}; },
                      },
                      item.value);
}

} // namespace

bool isValidSymbolName(std::string_view name) {
    return !name.empty() && name.size() <= kLongestText && base::trimmed(name) == name &&
           name.find_first_of("<>/\\\":;?*|,=`") == std::string_view::npos &&
           std::ranges::none_of(name, isControl) && base::isValidUtf8(name);
}

bool isFinite(const host::EntityGeometry& geometry) {
    return std::visit(
        Overloaded{
            [](const host::Line& l) { return finite(l.start) && finite(l.end); },
            [](const host::Polyline& p) { return finite(p); },
            [](const host::Polyline3d& p) {
                return std::ranges::all_of(p.vertices, [](const Point3& v) { return finite(v); });
            },
            [](const host::PointMark& p) { return finite(p.at); },
            [](const host::Circle& c) { return finite(c.centre) && finite(c.radius); },
            [](const host::Arc& a) {
                return finite(a.centre) && finite(a.radius) && finite(a.startAngle) &&
                       finite(a.endAngle);
            },
            [](const host::Text& t) { return finite(t); },
            [](const host::Hatch& h) { return finite(h.loops) && finite(h.elevation); },
            [](const host::Region& r) { return finite(r.loops) && finite(r.elevation); },
            [](const host::Face3d& f) {
                return std::ranges::all_of(f.corners, [](const Point3& c) { return finite(c); });
            },
            [](const host::Insert& i) {
                return finite(i.at) && finite(i.scale) && finite(i.rotation) &&
                       std::ranges::all_of(i.attributes, [](const host::Attribute& attribute) {
                           return finite(attribute.text);
                       });
            },
            [](const host::Other&) { return true; },
        },
        geometry);
}

base::Result<void> checkGeometry(const host::EntityGeometry& geometry) {
    if (!isFinite(geometry))
        return base::rangeError("The object has coordinates that are not finite numbers.");
    if (const char* fault = shapeFault(geometry))
        return base::rangeError(std::string("The object has ") + fault + ".");
    return {};
}

base::Result<void> checkXData(const std::vector<host::XDataItem>& items) {
    int depth = 0;
    for (const host::XDataItem& item : items) {
        if (!isFitting(item))
            return base::rangeError("Extended data: the value does not fit its group code " +
                                    std::to_string(item.code) + ".");
        if (item.code == 1002)
            depth += std::get<std::string>(item.value) == "{" ? 1 : -1;
        if (depth < 0)
            break;
    }
    if (depth != 0)
        return base::rangeError("Extended data: braces are not in pairs.");
    return {};
}

std::size_t xdataSize(const std::vector<ApplicationData>& data) {
    std::size_t size = 0;
    for (const ApplicationData& part : data) {
        size += 2 + part.application.size() + 1;
        for (const host::XDataItem& item : part.items)
            size += itemSize(item);
    }
    return size;
}

} // namespace tessaran::drawing
