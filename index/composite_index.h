#pragma once

// The composite stability index: a weighted sum of individual index grids, on the geometry of the
// first, divided by the total weight and stretched onto 0 to 100. The other grids may have any
// origin, cell size and rotation; each is sampled at the cell centres of the first.

#include "grid/my_grid.h"

#include <cstddef>

namespace tessaran::index {

// Adds `weight` times the value of the cell of `other` around each cell centre of `sum`. Where
// there is none, or it has no value, nothing is added; cells of `sum` without a value keep none.
// Gives the number of centres that fell into a cell without a value.
std::size_t addSampled(grid::myGrid& sum, const grid::myGrid& other, double weight);

// A total weight that can be divided by.
bool hasWeight(double totalWeight);

// Divides the sum by the total weight, which hasWeight(), and stretches it onto 0 to 100; gives
// what the values ran from and to before the stretch. Values that are all the same stay so.
grid::MinMax finishComposite(grid::myGrid& sum, double totalWeight);

} // namespace tessaran::index
