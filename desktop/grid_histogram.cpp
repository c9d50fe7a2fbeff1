#include "desktop/grid_histogram.h"

#include <algorithm>
#include <cmath>

namespace tessaran::desktop {
namespace {

std::vector<double> valuesOf(const grid::myGrid& grid) {
    std::vector<double> values;
    if (!grid.isDefined())
        return values;
    values.reserve(static_cast<std::size_t>(grid.nX()) * static_cast<std::size_t>(grid.nY()));
    for (int j = 0; j < grid.nY(); ++j)
        for (const double value : grid.row(j).first(static_cast<std::size_t>(grid.nX())))
            if (base::hasValue(value))
                values.push_back(value);
    return values;
}

double quantile(std::vector<double>& values, double share) {
    const auto rank = static_cast<std::ptrdiff_t>(
        std::max(0.0, std::ceil(share * static_cast<double>(values.size())) - 1.0));
    std::nth_element(values.begin(), values.begin() + rank, values.end());
    return values[static_cast<std::size_t>(rank)];
}

} // namespace

GridStatistics statisticsOf(const grid::myGrid& grid) {
    GridStatistics out;
    out.withoutValue = grid.isDefined() ? grid.countWithoutValue() : 0;
    std::vector<double> values = valuesOf(grid);
    out.withValue = values.size();
    if (values.empty())
        return out;
    const auto range = std::minmax_element(values.begin(), values.end());
    out.least = *range.first;
    out.most = *range.second;
    out.mean = grid.getMean();
    double squares = 0.0;
    for (const double value : values)
        squares += (value - out.mean) * (value - out.mean);
    out.deviation = std::sqrt(squares / static_cast<double>(values.size()));
    out.lowerQuarter = quantile(values, 0.25);
    out.median = quantile(values, 0.5);
    out.upperQuarter = quantile(values, 0.75);
    out.area = static_cast<double>(values.size()) * grid.cellWidthX() * grid.cellWidthY();
    return out;
}

std::vector<std::size_t> histogramOf(const grid::myGrid& grid, int bins) {
    const auto range = grid.getMinMax();
    if (!range || bins < 1)
        return {};
    std::vector<std::size_t> counts(static_cast<std::size_t>(bins));
    const double width = (range->max - range->min) / bins;
    for (const double value : valuesOf(grid)) {
        const double bin = width > 0.0 ? (value - range->min) / width : 0.0;
        ++counts[static_cast<std::size_t>(std::clamp(bin, 0.0, bins - 1.0))];
    }
    return counts;
}

} // namespace tessaran::desktop
