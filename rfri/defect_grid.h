#pragma once

// A category's grid from the defects that were drawn: in each cell the largest level of the defects
// within reach of its centre.

#include "base/progress.h"
#include "geometry/curve.h"
#include "grid/my_grid.h"
#include "host/entity.h"
#include "rfri/categories.h"

#include <optional>
#include <span>

namespace tessaran::rfri {

// What a cell holds that no defect reaches. Levels of 1 and below never exceed it.
inline constexpr double kBackground = 1.0;

struct Defect {
    geometry::Curve line;
    int level = 0;
    double reach = 0.0; // influence distance in plan, drawing units
};

// The constant width that a planar polyline holds its level as; nothing where its width varies.
std::optional<double> constantWidth(const host::Entity& entity);

// Whether a category's grids count defects of that level: between its first and last level.
bool isCounted(const Category& category, int level);
// The influence distance of a counted level; a level that is none of the list has that of the next
// lower one.
double reachOf(const Category& category, std::span<const double> distances, int level);

// Fills a defined grid with the background and raises the cells within reach to the defect's level;
// graduated, to level * (reach - distance) / reach. Distances are in plan, from the cell's centre
// to the true line. A reach of 0 counts cells whose centres lie on the line (to 1e-10), graduated
// or not. The progress runs over the defects, from 1 to their count; false when it was cancelled,
// which leaves the cells reached so far.
bool gridDefects(std::span<const Defect> defects, bool graduated, grid::myGrid& grid,
                 base::Progress& progress);

} // namespace tessaran::rfri
