#include "grid/legend.h"

#include "base/tolerance.h"
#include "host/host.h"
#include "host/services_entities.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tessaran::grid {
namespace {

using geometry::Box2;
using geometry::Point2;
using host::Entity;
using host::EntityId;
using host::Host;

constexpr const char* kLegendGroup = "ZELK Lengend";
constexpr double kTextShare = 0.33; // text height and gap, of a row's height

Entity band(const Point2& low, const Point2& high, int colour, const std::string& layer) {
    host::Hatch hatch;
    hatch.loops.push_back({{{low}, {{high.x, low.y}}, {high}, {{low.x, high.y}}}});
    return {{}, layer, colour, "ByLayer", std::move(hatch)};
}

Entity label(const Point2& at, double height, std::string text, const std::string& layer) {
    host::Text out;
    out.at = {at.x, at.y, 0.0};
    out.text = std::move(text);
    out.height = height;
    out.up = host::Text::Up::middle;
    return {{}, layer, host::colour::kByLayer, "ByLayer", std::move(out)};
}

// The two corners in world coordinates; nothing when the user ended it.
std::optional<std::pair<Point2, Point2>> askCorners(Host& host) {
    host::PointPrompt first;
    first.message = "\nPick a Position Point:";
    const auto one = host.prompts().getPoint(first);
    if (!one.ok())
        return std::nullopt;
    host::PointPrompt second;
    second.message = "\nPick Another Corner Point:";
    second.base = one.value;
    second.rubberBand = host::RubberBand::box;
    const auto other = host.prompts().getCorner(second);
    if (!other.ok())
        return std::nullopt;
    Box2 box;
    box.add(one.value.plan());
    box.add(other.value.plan());
    const host::Coordinates& axes = host.coordinates();
    return std::pair{axes.toWorld({box.low.x, box.low.y, 0.0}).plan(),
                     axes.toWorld({box.high.x, box.high.y, 0.0}).plan()};
}

bool addAll(Host& host, std::vector<Entity> entities, std::vector<EntityId>& ids) {
    for (Entity& entity : entities) {
        const std::optional<EntityId> id = host::appendEntity(host, std::move(entity));
        if (!id)
            return false;
        ids.push_back(*id);
    }
    return true;
}

} // namespace

std::vector<Entity> legendObjects(const std::vector<ColourBreak>& table, const Point2& low,
                                  const Point2& high, const std::string& layer) {
    std::vector<Entity> out;
    const std::size_t bands = table.empty() ? 0 : table.size() - 1;
    const double height = bands > 0 ? (high.y - low.y) / static_cast<double>(bands) : 0.0;
    const double textHeight = kTextShare * std::fabs(height);
    const double textX = std::max(low.x, high.x) + textHeight;
    for (std::size_t i = 0; i < bands; ++i) {
        const double bottom = low.y + static_cast<double>(i) * height;
        const double top = low.y + static_cast<double>(i + 1) * height;
        out.push_back(band({low.x, bottom}, {high.x, top}, table[i].colour, layer));
        out.push_back(label({textX, 0.5 * (bottom + top)}, textHeight,
                            bandLabel(table[i].value, table[i + 1].value), layer));
    }
    return out;
}

bool drawLegend(Host& host, const std::vector<ColourBreak>& table) {
    if (table.size() < 2)
        return false;
    const auto corners = askCorners(host);
    if (!corners)
        return false;
    const auto& [low, high] = *corners;
    const double width = high.x - low.x;
    const double height = (high.y - low.y) / static_cast<double>(table.size() - 1);
    if (std::fabs(width) < base::kTolerance || std::fabs(height) < base::kTolerance) {
        host.print("\nInvalid point pair!");
        return false;
    }
    std::vector<EntityId> ids;
    const bool all =
        addAll(host, legendObjects(table, low, high, host.drawing().currentLayer()), ids);
    const base::Result<void> gathered = host.drawing().setGroup(kLegendGroup, ids);
    if (!gathered)
        host.print("\n" + gathered.error().message());
    return all && gathered.ok();
}

} // namespace tessaran::grid
