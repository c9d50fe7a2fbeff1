#pragma once

// Arithmetic on the cells of a grid: with one value, and cell by cell with another grid of any
// geometry, which is sampled at the cell centres.
//
// Cells without a value keep none. A result that no cell can hold, because it is not finite or
// reads as "no value", is not stored: the cell stays as it is and is counted.

#include "grid/my_grid.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tessaran::grid {

enum class GridOperation { add, subtract, multiply, divide, square, squareRoot };

inline constexpr std::array<const char*, 6> kOperationNames{"Add",    "Subtract", "Multiply",
                                                            "Divide", "Square",   "Square Root"};

// By its name in any capitals.
std::optional<GridOperation> operationNamed(std::string_view name);
const char* nameOf(GridOperation operation);

// What became of the cells.
struct CellCounts {
    std::size_t changed = 0;
    std::size_t withoutValue = 0; // here or in the other grid
    std::size_t outside = 0;      // of the other grid
    std::size_t zeroDivisor = 0;  // within 1e-10
    std::size_t outOfRange = 0;   // the result is no value that a cell can hold
};

// `operand` is not used by square and squareRoot. Cells get v + c, v - c, v * c, v / c, v * v or
// the root of v.
CellCounts applyValue(myGrid& grid, GridOperation operation, double operand);

// add, subtract, multiply and divide. Cells whose centre lies outside the other grid and divisions
// by a value within 1e-10 of 0 leave the cell as it is.
CellCounts applyGrid(myGrid& grid, GridOperation operation, const myGrid& other);

// Every cell gets the value of the other grid's cell around its centre, outside of it that of the
// nearest one; cells without a value there have none here.
void takeValues(myGrid& grid, const myGrid& other);

} // namespace tessaran::grid
