#pragma once

// The roof rating of a whole set of roof data: one number, or a grid as soon as one of the inputs
// in use is a grid, over which all others are spread.

#include "base/result.h"
#include "cmrr/combination.h"
#include "cmrr/input_grids.h"
#include "cmrr/unit.h"

#include <array>
#include <memory>

namespace tessaran::cmrr {

// Computes the unit's rating from the data of its type. From numbers: the rating; from a grid: that
// it is computed. Otherwise there is none, and the error's text says why.
base::Result<void> computeRating(CUnit& unit, int number);

// Over the cells that have a value; a single number is its own range.
struct Range {
    double mean = 0.0;
    double lowest = 0.0;
    double highest = 0.0;
    std::size_t withoutValue = 0; // cells
    bool none = false;            // no cell has a value, and the numbers say nothing
};

struct RoofResult {
    Breakdown how{}; // the means of each part over the cells
    Range cmrr{};
    std::array<Range, kMostUnits> units{};
    std::size_t cells = 0;                // 0: one number
    std::unique_ptr<grid::myGrid> grid{}; // null: one number
    // Of units whose rating is one; the others are the same number everywhere.
    std::array<std::unique_ptr<grid::myGrid>, kMostUnits> unitGrids{};
};

// The data must have been checked; grids in use must have been read into `grids`. Cells without a
// rating hold "no value", in unit grids too, and so do the column and row beyond the cells.
base::Result<RoofResult> rateRoof(const RoofData& data, const InputGrids& grids);

// The unit's ratings as a grid on the cells of the result, which has one; made when they are a
// number. Null when there is no memory for it.
grid::myGrid* unitGrid(RoofResult& result, int unit);

} // namespace tessaran::cmrr
