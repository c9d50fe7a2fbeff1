#pragma once

// The final index, cell by cell, from the twelve defect grids.

#include "base/progress.h"
#include "base/result.h"
#include "grid/my_grid.h"
#include "rfri/categories.h"

#include <functional>

namespace tessaran::rfri {

// Fills a grid with category k's values. An error leaves it undefined.
using CategorySource = std::function<base::Result<void>(std::size_t k, grid::myGrid& grid)>;
// What a category without a readable grid is told to: it counts as zeros.
using MissingSink = std::function<void(std::size_t k, const base::Error& error)>;

// F = 1.11 (g1 + g2 + g3 + 2 (g4 + ... + g8) + g9 + g10) + g11 + g12 over the cells of the first
// grid, by cell index; where another grid has no such cell it counts as 0. `sum` comes laid out by
// the base grid and zero, which holds when the first grid cannot be read. A cell without a value in
// any grid has none. The progress runs to 100: 16 after the second grid, 8 more after each later
// one.
void sumCategories(const CategorySource& read, const MissingSink& missing, grid::myGrid& sum,
                   base::Progress& progress);

} // namespace tessaran::rfri
