#include "grid/legend.h"

#include "base/tolerance.h"
#include "host/host.h"
#include "host/services_entities.h"

#include <algorithm>
#include <cmath>

namespace tessaran::grid {
namespace {

using geometry::Box2;
using host::Entity;
using host::EntityId;
using host::Host;

constexpr const char* kLegendGroup = "ZELK Lengend";
constexpr double kTextShare = 0.33; // text height and gap, of a row's height

std::optional<LegendPlace> askCorners(Host& host) {
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
    return LegendPlace{axes.toWorld({box.low.x, box.low.y, 0.0}).plan(),
                       axes.toWorld({box.high.x, box.high.y, 0.0}).plan()};
}

} // namespace

std::optional<LegendPlace> askLegendPlace(Host& host, std::size_t rows) {
    const auto place = askCorners(host);
    if (!place)
        return std::nullopt;
    const Point2 size = place->high - place->low;
    if (std::fabs(size.x) < base::kTolerance ||
        std::fabs(size.y / static_cast<double>(rows)) < base::kTolerance) {
        host.print("\nInvalid point pair!");
        return std::nullopt;
    }
    return place;
}

Entity legendBox(Point2 low, Point2 high, int colour, const std::string& layer) {
    host::Hatch hatch;
    hatch.loops.push_back({{{low}, {{high.x, low.y}}, {high}, {{low.x, high.y}}}});
    return {{}, layer, colour, "ByLayer", std::move(hatch)};
}

Entity legendText(Point2 at, double height, std::string text, const std::string& layer) {
    host::Text out;
    out.at = {at.x, at.y, 0.0};
    out.text = std::move(text);
    out.height = height;
    out.up = host::Text::Up::middle;
    return {{}, layer, host::colour::kByLayer, "ByLayer", std::move(out)};
}

bool addGathered(Host& host, std::vector<Entity> objects, const std::string& name) {
    std::vector<EntityId> ids;
    bool all = true;
    for (Entity& object : objects) {
        const std::optional<EntityId> id =
            all ? host::appendEntity(host, std::move(object)) : std::nullopt;
        all = id.has_value();
        if (all)
            ids.push_back(*id);
    }
    const base::Result<void> gathered = host.drawing().setGroup(name, ids);
    if (!gathered)
        host.print("\n" + gathered.error().message());
    return all && gathered.ok();
}

std::vector<Entity> legendObjects(const std::vector<ColourBreak>& table, const LegendPlace& place,
                                  const std::string& layer) {
    const auto& [low, high] = place;
    std::vector<Entity> out;
    const std::size_t bands = table.empty() ? 0 : table.size() - 1;
    const double height = bands > 0 ? (high.y - low.y) / static_cast<double>(bands) : 0.0;
    const double textHeight = kTextShare * std::fabs(height);
    const double textX = std::max(low.x, high.x) + textHeight;
    for (std::size_t i = 0; i < bands; ++i) {
        const double bottom = low.y + static_cast<double>(i) * height;
        const double top = low.y + static_cast<double>(i + 1) * height;
        out.push_back(legendBox({low.x, bottom}, {high.x, top}, table[i].colour, layer));
        out.push_back(legendText({textX, 0.5 * (bottom + top)}, textHeight,
                                 bandLabel(table[i].value, table[i + 1].value), layer));
    }
    return out;
}

bool drawLegend(Host& host, const std::vector<ColourBreak>& table) {
    if (table.size() < 2)
        return false;
    const auto place = askLegendPlace(host, table.size() - 1);
    return place && addGathered(host, legendObjects(table, *place, host.drawing().currentLayer()),
                                kLegendGroup);
}

} // namespace tessaran::grid
