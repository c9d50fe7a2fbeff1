#pragma once

// The seam grid: every cell of a seam is a pillar of solid coal (1), an open entry (0) or gob (-1).
// Pillars and gobs are closed outlines of the mine plan; pillars win.

#include "base/progress.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <span>

namespace tessaran::stress {

inline constexpr double kPillarCell = 1.0;
inline constexpr double kEntryCell = 0.0;
inline constexpr double kGobCell = -1.0;

enum class SeamAlgorithm {
    none = -1, // not chosen yet
    middlePoint = 0,
    areaBased = 1,
};

struct SeamGridOptions {
    SeamAlgorithm algorithm = SeamAlgorithm::none;
    int minimumAreaPercent = 0; // of a cell's area, areaBased only; at 0 every cell is a pillar
};

struct SeamGridResult {
    std::size_t withoutShape = 0; // outlines without usable vertices, left out
    bool cancelled = false;       // the cells hold no seam grid then
};

// Sets every cell of a defined grid. Polls for the user break after each outline, with the meters
// "Search cells against pillars ..." and "Search cells against gob polygons ...".
SeamGridResult buildSeamGrid(grid::myGrid& grid, std::span<const geometry::Polygon> pillars,
                             std::span<const geometry::Polygon> gobs,
                             const SeamGridOptions& options, base::Progress& progress);

// What a cell is turned into by hand: gob, entry, pillar, gob ...
double nextSeamCell(double value);

} // namespace tessaran::stress
