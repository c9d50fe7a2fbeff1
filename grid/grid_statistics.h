#pragma once

// Figures about the values of a grid's cells. Cells without a value are left out and counted. Sums
// are taken row by row, so the results do not depend on the number of threads.

#include "grid/colour_ramp.h"
#include "grid/grid_edit.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {

struct GridStatistics {
    std::size_t samples = 0;
    std::size_t withoutValue = 0;
    double mean = 0.0;
    double deviation = 0.0; // standard deviation of a sample, by n - 1; 0 for fewer than two
    double min = 0.0;
    double max = 0.0;
    std::size_t atMin = 0; // within 1e-10
    std::size_t atMax = 0;
};

GridStatistics statisticsOf(const myGrid& grid);
GridStatistics statisticsOf(const myGrid& grid, const CellSelection& cells);

// The lines that are shown, without a line break at the end.
std::string statisticsText(const GridStatistics& statistics);

// Pearson's coefficient of correlation over the cells whose centres lie in a cell of the other grid
// and where both have a value.
struct Correlation {
    std::size_t pairs = 0;
    std::optional<double> coefficient; // nothing where either has no spread
};
Correlation correlation(const myGrid& grid, const myGrid& other);

std::string correlationText(const Correlation& correlation);

// What the cells of one band of a colour table take up.
struct BandShare {
    std::string label;
    int colour = 0;
    std::size_t cells = 0;
    double percent = 0.0; // of the cells with a value
    double area = 0.0;    // square drawing units
};
// From the lowest band.
std::vector<BandShare> bandShares(const myGrid& grid, const std::vector<ColourBreak>& table);

} // namespace tessaran::grid
