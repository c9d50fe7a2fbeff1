#include "base/numbers.h"
#include "console/plain_commands.h"

#include <fmt/format.h>

#include <numbers>

namespace tessaran::console {
namespace {

using host::Point3;
using host::PromptStatus;

// Adds on the current layer; what the drawing refuses is told.
host::EntityId draw(ConsoleHost& host, host::EntityGeometry geometry) {
    host::Entity entity;
    entity.layer = host.drawing().currentLayer();
    entity.geometry = std::move(geometry);
    const auto added = host.drawing().add(std::move(entity));
    if (!added)
        host.frontEnd().refused(added.error().message());
    return added ? *added : host::EntityId{};
}

host::PromptResult<Point3> nextPoint(ConsoleHost& host, const std::string& message,
                                     const std::string& keywords, const Point3& from) {
    host::PointPrompt prompt{.message = message, .keywords = keywords, .base = from};
    prompt.rubberBand = host::RubberBand::line;
    return host.prompts().getPoint(prompt);
}

} // namespace

void lineCommand(ConsoleHost& host) {
    const auto first =
        host.prompts().getPoint({.message = "\nSpecify first point:", .keywords = {}});
    if (!first.ok())
        return;
    std::vector<Point3> points{first.value};
    std::vector<host::EntityId> lines;
    const auto drawTo = [&](const Point3& to) {
        lines.push_back(draw(host, host::Line{host.coordinates().toWorld(points.back()),
                                              host.coordinates().toWorld(to)}));
        points.push_back(to);
    };
    for (;;) {
        const bool mayClose = lines.size() >= 2;
        const auto next = nextPoint(host,
                                    mayClose ? "\nSpecify next point or [Close/Undo]:"
                                             : "\nSpecify next point or [Undo]:",
                                    mayClose ? "Close Undo" : "Undo", points.back());
        if (next.ok()) {
            drawTo(next.value);
        } else if (next.status == PromptStatus::keyword && next.keyword == "Undo") {
            if (lines.empty())
                continue;
            host.drawing().erase(lines.back());
            lines.pop_back();
            points.pop_back();
        } else {
            if (next.status == PromptStatus::keyword)
                drawTo(points.front());
            return;
        }
    }
}

void polylineCommand(ConsoleHost& host) {
    const auto first =
        host.prompts().getPoint({.message = "\nSpecify start point:", .keywords = {}});
    if (!first.ok())
        return;
    std::vector<Point3> points{first.value};
    host::Polyline polyline;
    for (;;) {
        const auto next = nextPoint(
            host, "\nSpecify next point or [Close/Undo/Width]:", "Close Undo Width", points.back());
        if (next.ok()) {
            points.push_back(next.value);
        } else if (next.status != PromptStatus::keyword) {
            break;
        } else if (next.keyword == "Undo") {
            if (points.size() > 1)
                points.pop_back();
        } else if (next.keyword == "Width") {
            const auto width = host.prompts().getReal(
                {.message =
                     fmt::format("\nSpecify width <{}>:", base::shortest(polyline.constantWidth)),
                 .allowNegative = false});
            if (width.ok())
                polyline.constantWidth = width.value;
        } else {
            polyline.closed = points.size() > 2;
            break;
        }
    }
    if (points.size() < 2)
        return;
    polyline.elevation = host.coordinates().toWorld(points.front()).z;
    for (const Point3& point : points)
        polyline.vertices.push_back({.at = host.coordinates().toWorld(point).plan()});
    draw(host, std::move(polyline));
}

void pointCommand(ConsoleHost& host) {
    const auto at = host.prompts().getPoint({.message = "\nSpecify a point:", .keywords = {}});
    if (at.ok())
        draw(host, host::PointMark{host.coordinates().toWorld(at.value)});
}

void textCommand(ConsoleHost& host) {
    const auto at =
        host.prompts().getPoint({.message = "\nSpecify start point of text:", .keywords = {}});
    if (!at.ok())
        return;
    const auto size = host.variables().get("TEXTSIZE");
    const double* usual = size ? std::get_if<double>(&*size) : nullptr;
    host::Text text;
    text.height = usual != nullptr ? *usual : 1.0;
    text.at = host.coordinates().toWorld(at.value);
    const auto height = host.prompts().getDistance(
        {.message = fmt::format("\nSpecify height <{}>:", base::shortest(text.height)),
         .base = at.value,
         .allowZero = false,
         .allowNegative = false});
    if (height.status == PromptStatus::cancel)
        return;
    if (height.ok())
        text.height = height.value;
    const auto rotation = host.prompts().getOrientation(
        {.message = "\nSpecify rotation angle of text <0>:", .base = at.value});
    if (rotation.status == PromptStatus::cancel)
        return;
    // From the user's X axis to the world's.
    const Point3 origin = host.coordinates().toWorld({});
    const Point3 axis = host.coordinates().toWorld({1.0, 0.0, 0.0}) - origin;
    text.rotation = (rotation.ok() ? rotation.value : 0.0) + std::atan2(axis.y, axis.x);
    const auto content = host.prompts().getString("\nEnter text:", true);
    if (!content.ok() || content.value.empty())
        return;
    text.text = content.value;
    static_cast<void>(host.variables().set("TEXTSIZE", text.height));
    draw(host, std::move(text));
}

} // namespace tessaran::console
