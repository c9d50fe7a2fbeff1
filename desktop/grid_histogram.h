#pragma once

// A grid's values as numbers and counts, for looking at.

#include "grid/my_grid.h"

#include <cstddef>
#include <vector>

namespace tessaran::desktop {

struct GridStatistics {
    std::size_t withValue = 0;
    std::size_t withoutValue = 0;
    double least = 0.0;
    double most = 0.0;
    double mean = 0.0;
    double deviation = 0.0; // standard, of the whole (divided by the count)
    double lowerQuarter = 0.0;
    double median = 0.0;
    double upperQuarter = 0.0;
    double area = 0.0; // of the cells with a value, square drawing units
};

// Cells without value are left out; quantiles are the values at the nearest rank.
GridStatistics statisticsOf(const grid::myGrid& grid);

// Counts of equal intervals from the least value to the most, which counts in the last one; empty
// when no cell has a value.
std::vector<std::size_t> histogramOf(const grid::myGrid& grid, int bins);

} // namespace tessaran::desktop
