#include "rfri/defect_grid.h"

#include "base/tolerance.h"
#include "grid/cells_within.h"

#include <algorithm>

namespace tessaran::rfri {
namespace {

using host::Polyline;

// The width of every segment where they are all the same.
std::optional<double> segmentWidth(const Polyline& polyline) {
    const auto& vertices = polyline.vertices;
    if (vertices.empty())
        return std::nullopt;
    const std::size_t segments =
        std::max<std::size_t>(1, polyline.closed ? vertices.size() : vertices.size() - 1);
    const double width = vertices.front().startWidth;
    for (std::size_t k = 0; k < segments; ++k)
        if (vertices[k].startWidth != width || vertices[k].endWidth != width)
            return std::nullopt;
    return width;
}

double candidate(const Defect& defect, double distance, bool graduated) {
    const double level = defect.level;
    if (!graduated || defect.reach < base::kTolerance)
        return level;
    return level * (defect.reach - distance) / defect.reach;
}

} // namespace

std::optional<double> constantWidth(const host::Entity& entity) {
    const auto* polyline = std::get_if<Polyline>(&entity.geometry);
    if (polyline == nullptr)
        return std::nullopt;
    if (polyline->form == Polyline::Form::light && polyline->constantWidth != 0.0)
        return polyline->constantWidth;
    return segmentWidth(*polyline);
}

bool isCounted(const Category& category, int level) {
    return category.levels.front().value <= level && level <= category.levels.back().value;
}

double reachOf(const Category& category, std::span<const double> distances, int level) {
    std::size_t at = 0;
    while (at + 1 < category.levels.size() && category.levels[at + 1].value <= level)
        ++at;
    return distances[at];
}

bool gridDefects(std::span<const Defect> defects, bool graduated, grid::myGrid& grid,
                 base::Progress& progress) {
    grid.fillValue(kBackground);
    std::vector<grid::ReachingCurve> curves;
    curves.reserve(defects.size());
    for (const Defect& defect : defects)
        curves.push_back({&defect.line, defect.reach});
    return grid::forCellsWithin(
        curves, grid, progress, [&](std::size_t k, double distance, double& value) {
            value = std::max(value, candidate(defects[k], distance, graduated));
        });
}

} // namespace tessaran::rfri
