#pragma once

// Turns the values of a factor grid into an individual stability index of 0 to 100, cell by cell.

#include "grid/my_grid.h"

namespace tessaran::index {

// As chosen in lists and radio groups; nothing chosen leaves every value alone.
enum class FactorFunction { none = -1, linear = 0, step = 1, exponential = 2 };
enum class Tendency { none = -1, inverse = 0, normal = 1 };

struct FactorTransformation {
    FactorFunction function = FactorFunction::none;
    Tendency tendency = Tendency::normal;
    double lower = 0.0; // the step's threshold too
    double upper = 0.0;
};

struct FactorBounds {
    double lower = 0.0;
    double upper = 0.0;
};

// The bounds that a function begins with for values from `min` to `max`: all of them for a linear
// one, the middle for the others. Nothing chosen keeps `present`.
FactorBounds proposedBounds(FactorFunction function, double min, double max, FactorBounds present);

// The index of a value v between the bounds L and U:
//   normal:  0 below L, 100 ((v - L) / (U - L))^e, 100 above U
//   inverse: 0 below L, 100 ((U - v) / (U - L))^e, 100 above U (the outside is held as for normal)
// with e = 1 (linear) or 2 (exponential); step: above L 100 (normal) or 0 (inverse), else the
// other. Equal bounds give not-a-number or infinity on the bound itself.
double indexOf(const FactorTransformation& transformation, double value);

// All cells that have a value.
void transform(grid::myGrid& grid, const FactorTransformation& transformation);

} // namespace tessaran::index
