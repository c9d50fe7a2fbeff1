#include "base/numbers.h"
#include "base/text.h"
#include "console/answers.h"
#include "console/plain_commands.h"
#include "drawing/coordinates.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::console {
namespace {

using host::Point2;
using host::Point3;
using host::PromptStatus;

// --- layers ------------------------------------------------------------------------------------

void listLayers(ConsoleHost& host) {
    const std::string current = host.drawing().currentLayer();
    for (const host::Layer& layer : host.drawing().layers())
        host.print(fmt::format("\n{} \"{}\" {}{}{} colour {} linetype {}",
                               layer.name == current ? "*" : " ", layer.name,
                               layer.on ? "on" : "off", layer.frozen ? " frozen" : "",
                               layer.locked ? " locked" : "", layer.colour, layer.linetype));
}

void tell(ConsoleHost& host, const base::Result<void>& result) {
    if (!result)
        host.frontEnd().refused(result.error().message());
}

bool makeLayer(ConsoleHost& host, const std::string& name) {
    if (host.drawing().layer(name))
        return true;
    const auto made = host.drawing().createLayer({.name = name});
    tell(host, made);
    return made.ok();
}

std::vector<std::string> askNames(ConsoleHost& host, const std::string& message) {
    const auto names = host.prompts().getString(message, true);
    return names.ok() ? base::nameList(names.value) : std::vector<std::string>{};
}

template <class Change>
void changeLayers(ConsoleHost& host, const std::vector<std::string>& names, const Change& change) {
    for (const std::string& name : names) {
        auto layer = host.drawing().layer(name);
        if (!layer) {
            host.frontEnd().refused(fmt::format("no layer \"{}\"", name));
            continue;
        }
        change(*layer);
        tell(host, host.drawing().modifyLayer(*layer));
    }
}

// The names to give the colour or linetype to; Enter: the current layer.
std::vector<std::string> askNamesFor(ConsoleHost& host, const std::string& what) {
    const std::string current = host.drawing().currentLayer();
    auto names =
        askNames(host, fmt::format("\nEnter name list of layer(s) for {} <{}>:", what, current));
    return names.empty() ? std::vector<std::string>{current} : names;
}

void colourLayers(ConsoleHost& host) {
    const auto colour = host.prompts().getInteger(
        {.message = "\nEnter colour number (1-255):", .allowZero = false, .allowNegative = false});
    if (!colour.ok())
        return;
    if (colour.value > 255)
        return host.frontEnd().refused("A colour number is between 1 and 255.");
    changeLayers(host, askNamesFor(host, fmt::format("colour {}", colour.value)),
                 [&](host::Layer& layer) { layer.colour = colour.value; });
}

void linetypeLayers(ConsoleHost& host) {
    const auto linetype = host.prompts().getString("\nEnter linetype name:", true);
    if (!linetype.ok())
        return;
    if (!host.drawing().hasLinetype(linetype.value))
        return host.frontEnd().refused(fmt::format("no linetype \"{}\"", linetype.value));
    changeLayers(host, askNamesFor(host, "linetype " + linetype.value),
                 [&](host::Layer& layer) { layer.linetype = linetype.value; });
}

void switchLayers(ConsoleHost& host, const std::string& option) {
    changeLayers(host, askNames(host, "\nEnter name list of layer(s):"), [&](host::Layer& layer) {
        if (option == "ON" || option == "OFF")
            layer.on = option == "ON";
        else if (option == "Freeze" || option == "Thaw")
            layer.frozen = option == "Freeze";
        else
            layer.locked = option == "LOck";
    });
}

void newLayers(ConsoleHost& host, bool makeCurrent) {
    for (const std::string& name : askNames(host, "\nEnter name list for new layer(s):"))
        if (makeLayer(host, name) && makeCurrent)
            tell(host, host.drawing().setCurrentLayer(name));
}

void layerOption(ConsoleHost& host, const std::string& option) {
    if (option == "?") {
        listLayers(host);
    } else if (option == "Make" || option == "New") {
        newLayers(host, option == "Make");
    } else if (option == "Set") {
        const auto name = host.prompts().getString("\nEnter layer name to make current:", true);
        if (name.ok())
            tell(host, host.drawing().setCurrentLayer(name.value));
    } else if (option == "Color") {
        colourLayers(host);
    } else if (option == "LType") {
        linetypeLayers(host);
    } else {
        switchLayers(host, option);
    }
}

// --- the user's coordinate system ----------------------------------------------------------------

void setUcs(ConsoleHost& host, const drawing::Ucs& ucs) {
    tell(host, host.workspace().database().setUcs(ucs));
}

// Points for the X axis and the side of the Y axis; without them the axes stay.
void ucsFromOrigin(ConsoleHost& host, const Point3& origin) {
    const host::Coordinates& coordinates = host.coordinates();
    drawing::Ucs ucs = host.workspace().database().ucs();
    ucs.origin = coordinates.toWorld(origin);
    const auto onX = host.prompts().getPoint(
        {.message = "\nSpecify point on X-axis or <accept>:", .keywords = {}, .base = origin});
    if (onX.status == PromptStatus::cancel)
        return;
    if (onX.ok()) {
        ucs.xAxis = coordinates.toWorld(onX.value) - ucs.origin;
        ucs.yAxis = {-ucs.xAxis.y, ucs.xAxis.x, 0.0};
        const auto onY =
            host.prompts().getPoint({.message = "\nSpecify point on the XY plane or <accept>:",
                                     .keywords = {},
                                     .base = origin});
        if (onY.status == PromptStatus::cancel)
            return;
        if (onY.ok())
            ucs.yAxis = coordinates.toWorld(onY.value) - ucs.origin;
    }
    setUcs(host, ucs);
}

void turnUcs(ConsoleHost& host) {
    const auto angle =
        host.prompts().getOrientation({.message = "\nSpecify rotation angle about Z axis <90>:"});
    if (angle.status == PromptStatus::cancel)
        return;
    const double turn = angle.ok() ? angle.value : std::acos(0.0);
    drawing::Ucs ucs = host.workspace().database().ucs();
    const Point3 x = ucs.xAxis;
    const Point3 y = ucs.yAxis;
    ucs.xAxis = std::cos(turn) * x + std::sin(turn) * y;
    ucs.yAxis = std::cos(turn) * y - std::sin(turn) * x;
    setUcs(host, ucs);
}

// --- the view ------------------------------------------------------------------------------------

constexpr double kMargin = 1.05; // of a view on given extents

void viewOnCorners(ConsoleHost& host, const Point3& first) {
    const auto other = host.prompts().getCorner(
        {.message = "\nSpecify opposite corner:", .keywords = {}, .base = first});
    if (!other.ok())
        return;
    host::Box2 box;
    box.add(host.coordinates().toWorld(first).plan());
    box.add(host.coordinates().toWorld(other.value).plan());
    host.showInView(box, 1.0);
}

void viewOnCentre(ConsoleHost& host) {
    const auto centre =
        host.prompts().getPoint({.message = "\nSpecify center point:", .keywords = {}});
    if (!centre.ok())
        return;
    drawing::View view = host.workspace().database().view();
    const auto height = host.prompts().getReal(
        {.message = fmt::format("\nEnter height <{}>:", base::shortest(view.height)),
         .allowZero = false,
         .allowNegative = false});
    if (height.status == PromptStatus::cancel)
        return;
    view.centre = host.coordinates().toWorld(centre.value).plan();
    view.height = height.ok() ? height.value : view.height;
    host.workspace().database().setView(view);
}

// --- variables -----------------------------------------------------------------------------------

std::string valueText(const host::VariableValue& value) {
    struct Show {
        std::string operator()(int v) const { return std::to_string(v); }
        std::string operator()(double v) const { return base::shortest(v); }
        std::string operator()(const std::string& v) const { return "\"" + v + "\""; }
        std::string operator()(const Point2& v) const {
            return base::shortest(v.x) + "," + base::shortest(v.y);
        }
        std::string operator()(const Point3& v) const {
            return base::shortest(v.x) + "," + base::shortest(v.y) + "," + base::shortest(v.z);
        }
    };
    return std::visit(Show{}, value);
}

// A typed value of the variable's kind.
base::Result<host::VariableValue> parseValue(const std::string& text,
                                             const host::VariableValue& like) {
    if (std::holds_alternative<std::string>(like))
        return host::VariableValue(text == "." ? std::string{} : text);
    if (std::holds_alternative<Point2>(like) || std::holds_alternative<Point3>(like)) {
        const auto point = parsePoint(text, {});
        if (!point)
            return point.error();
        return host::VariableValue(*point);
    }
    const auto number = base::wholeDouble(text);
    if (!number || !std::isfinite(*number))
        return base::formatError("Requires numeric value.");
    return host::VariableValue(*number);
}

void listVariables(ConsoleHost& host) {
    for (const std::string& name : host.state().variables.names())
        if (const auto value = host.variables().get(name))
            host.print(fmt::format("\n{:<12} {}", name, valueText(*value)));
}

} // namespace

void layerCommand(ConsoleHost& host) {
    for (;;) {
        const auto option = host.prompts().getKeyword(
            "\nEnter an option [?/Make/Set/New/ON/OFF/Color/LType/Freeze/Thaw/LOck/Unlock]:",
            "?,? Make Set New ON OFF Color LType,L Freeze Thaw LOck Unlock");
        if (!option.ok())
            return;
        layerOption(host, option.value);
    }
}

void ucsCommand(ConsoleHost& host) {
    const auto origin = host.prompts().getPoint(
        {.message = "\nSpecify origin of UCS or [World/Z] <World>:", .keywords = "World Z"});
    if (origin.ok())
        return ucsFromOrigin(host, origin.value);
    if (origin.status == PromptStatus::keyword && origin.keyword == "Z")
        return turnUcs(host);
    if (origin.status != PromptStatus::cancel)
        setUcs(host, {});
}

void zoomCommand(ConsoleHost& host) {
    const auto corner = host.prompts().getPoint(
        {.message = "\nSpecify corner of window, or [All/Center/Extents/Window] <Extents>:",
         .keywords = "All Center Extents Window"});
    if (corner.ok())
        return viewOnCorners(host, corner.value);
    if (corner.status == PromptStatus::cancel)
        return;
    if (corner.keyword == "Center")
        return viewOnCentre(host);
    if (corner.keyword != "Window")
        return host.showInView(host.workspace().database().extents(), kMargin);
    const auto first =
        host.prompts().getPoint({.message = "\nSpecify first corner:", .keywords = {}});
    if (first.ok())
        viewOnCorners(host, first.value);
}

void setVariableCommand(ConsoleHost& host) {
    const auto name = host.prompts().getString("\nEnter variable name or [?]:", false);
    if (!name.ok())
        return;
    if (name.value == "?")
        return listVariables(host);
    const auto present = host.variables().get(name.value);
    if (!present)
        return host.frontEnd().refused(fmt::format("Unknown variable name \"{}\".", name.value));
    const auto typed = host.prompts().getString(
        fmt::format("\nEnter new value for {} <{}>:", name.value, valueText(*present)), true);
    if (!typed.ok())
        return;
    const auto value = parseValue(typed.value, *present);
    if (!value)
        return host.frontEnd().refused(value.error().text);
    tell(host, host.variables().set(name.value, *value));
}

} // namespace tessaran::console
