#include "console/property_changes.h"

#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace tessaran::console {
namespace {

using Result = base::Result<PropertyChange>;

// "ByLayer", "ByBlock" or a number of the colour table.
std::optional<int> parseColour(std::string_view text) {
    if (base::equalsIgnoringCase(text, "ByLayer"))
        return host::colour::kByLayer;
    if (base::equalsIgnoringCase(text, "ByBlock"))
        return host::colour::kByBlock;
    const auto number = base::wholeInt(text);
    return number && *number >= 1 && *number <= 255 ? std::optional(static_cast<int>(*number))
                                                    : std::nullopt;
}

Result colourChange(const host::Drawing& /*drawing*/, const std::string& value) {
    const auto colour = parseColour(value);
    if (!colour)
        return base::formatError("A colour is ByLayer, ByBlock or a number between 1 and 255.");
    return PropertyChange([colour = *colour](host::Entity& entity) {
        entity.colour = colour;
        return true;
    });
}

Result layerChange(const host::Drawing& drawing, const std::string& value) {
    if (!drawing.layer(value))
        return base::formatError(fmt::format("no layer \"{}\"", value));
    return PropertyChange([value](host::Entity& entity) {
        entity.layer = value;
        return true;
    });
}

Result linetypeChange(const host::Drawing& drawing, const std::string& value) {
    if (!drawing.hasLinetype(value) && !base::equalsIgnoringCase(value, "ByLayer") &&
        !base::equalsIgnoringCase(value, "ByBlock"))
        return base::formatError(fmt::format("no linetype \"{}\"", value));
    return PropertyChange([value](host::Entity& entity) {
        entity.linetype = value;
        return true;
    });
}

// A number for one member of some kinds of objects.
template <class Set>
Result numberChange(const std::string& value, const Set& set) {
    const auto number = base::wholeDouble(base::trimmed(value));
    if (!number || !std::isfinite(*number))
        return base::formatError(fmt::format("\"{}\" is not a number", value));
    return PropertyChange(
        [number = *number, set](host::Entity& entity) { return set(entity.geometry, number); });
}

bool setElevation(host::EntityGeometry& geometry, double elevation) {
    return std::visit(
        [elevation](auto& shape) {
            if constexpr (requires { shape.elevation; }) {
                shape.elevation = elevation;
                return true;
            } else {
                return false;
            }
        },
        geometry);
}

// Of every segment, whatever widths its vertices had.
bool setWidth(host::EntityGeometry& geometry, double width) {
    auto* polyline = std::get_if<host::Polyline>(&geometry);
    if (polyline == nullptr)
        return false;
    polyline->constantWidth = width;
    const bool old = polyline->form == host::Polyline::Form::old;
    for (host::PolylineVertex& vertex : polyline->vertices)
        vertex.startWidth = vertex.endWidth = old ? width : 0.0;
    return true;
}

bool setHeight(host::EntityGeometry& geometry, double height) {
    auto* text = std::get_if<host::Text>(&geometry);
    if (text == nullptr || !(height > 0.0))
        return false;
    text->height = height;
    return true;
}

bool setClosed(host::EntityGeometry& geometry, bool closed) {
    if (auto* polyline = std::get_if<host::Polyline>(&geometry))
        polyline->closed = closed;
    else if (auto* spatial = std::get_if<host::Polyline3d>(&geometry))
        spatial->closed = closed;
    else
        return false;
    return true;
}

Result elevationChange(const host::Drawing& /*drawing*/, const std::string& value) {
    return numberChange(value, setElevation);
}

Result widthChange(const host::Drawing& /*drawing*/, const std::string& value) {
    return numberChange(value, setWidth);
}

Result heightChange(const host::Drawing& /*drawing*/, const std::string& value) {
    return numberChange(value, setHeight);
}

Result closedChange(const host::Drawing& /*drawing*/, const std::string& value) {
    const bool yes = base::equalsIgnoringCase(value, "yes") || base::equalsIgnoringCase(value, "y");
    if (!yes && !base::equalsIgnoringCase(value, "no") && !base::equalsIgnoringCase(value, "n"))
        return base::formatError(fmt::format("\"{}\" is neither yes nor no", value));
    return PropertyChange([yes](host::Entity& entity) { return setClosed(entity.geometry, yes); });
}

Result textChange(const host::Drawing& /*drawing*/, const std::string& value) {
    return PropertyChange([value](host::Entity& entity) {
        auto* text = std::get_if<host::Text>(&entity.geometry);
        if (text != nullptr)
            text->text = value;
        return text != nullptr;
    });
}

struct Property {
    const char* name;
    const char* prompt;
    Result (*change)(const host::Drawing&, const std::string&);
};

constexpr std::array kProperties{
    Property{"Color", "\nEnter new colour (1-255 or ByLayer):", colourChange},
    Property{"LAyer", "\nEnter new layer name:", layerChange},
    Property{"LType", "\nEnter new linetype name:", linetypeChange},
    Property{"Elevation", "\nEnter new elevation:", elevationChange},
    Property{"Width", "\nEnter new width:", widthChange},
    Property{"CLosed", "\nClosed, Yes or No:", closedChange},
    Property{"TExt", "\nEnter new text:", textChange},
    Property{"Height", "\nEnter new height:", heightChange},
};

const Property* find(const std::string& name) {
    for (const Property& property : kProperties)
        if (name == property.name)
            return &property;
    return nullptr;
}

} // namespace

Result propertyChange(const host::Drawing& drawing, const std::string& property,
                      const std::string& value) {
    const Property* found = find(property);
    if (found == nullptr)
        return base::formatError(fmt::format("no property \"{}\"", property));
    return found->change(drawing, value);
}

std::string propertyPrompt(const std::string& property) {
    const Property* found = find(property);
    return found != nullptr ? found->prompt : std::string{};
}

} // namespace tessaran::console
