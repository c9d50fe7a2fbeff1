#include "factors/linear_feature.h"

#include "grid/cells_within.h"

#include <algorithm>

namespace tessaran::factors {
namespace {

constexpr double kFullInfluence = 100.0;

} // namespace

bool gridLinearFeatures(std::span<const geometry::Curve> features, const LinearInfluence& influence,
                        grid::myGrid& grid, base::Progress& progress) {
    grid.fillValue(0.0);
    std::vector<grid::ReachingCurve> curves;
    curves.reserve(features.size());
    for (const geometry::Curve& feature : features)
        curves.push_back({&feature, influence.distance});
    return grid::forCellsWithin(curves, grid, progress, [&](std::size_t, double d, double& value) {
        const double f = (influence.distance - d) * kFullInfluence / influence.distance;
        value = influence.accumulate ? std::min(f + value, kFullInfluence) : std::max(f, value);
    });
}

} // namespace tessaran::factors
