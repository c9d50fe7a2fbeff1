#pragma once

// Which cells of a grid count for polygons in and out of which they lie.

#include "base/result.h"
#include "geometry/region.h"
#include "grid/grid_edit.h"
#include "grid/my_grid.h"

#include <span>

namespace tessaran::grid {

// Areas in drawing coordinates; those of one kind may overlap, which counts once.
struct PolygonCriteria {
    std::span<const geometry::PlanarRegion> inclusion; // none: all cells are included
    std::span<const geometry::PlanarRegion> exclusion;
    double percent = 50.0; // of a cell's area
};

// The cells of which at least the criterion's share lies inside the inclusion polygons, and less
// than that inside the exclusion polygons. Shares within 1e-9 of the criterion reach it. The grid
// must be defined.
base::Result<CellSelection> cellsOfPolygons(const myGrid& grid, const PolygonCriteria& criteria);

} // namespace tessaran::grid
