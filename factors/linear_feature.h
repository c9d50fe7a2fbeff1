#pragma once

// The influence of linear geological features (faults, cutter roof): 100 on the feature, falling
// linearly to 0 at the influence distance.

#include "base/progress.h"
#include "geometry/curve.h"
#include "grid/my_grid.h"

#include <span>

namespace tessaran::factors {

struct LinearInfluence {
    double distance = 0.0;   // D, drawing units, above 0
    bool accumulate = false; // influences add up to 100; else the largest one counts
};

// Fills the cells of a defined grid with the features' influence, distances in plan and to the true
// curves; cells that none reaches hold 0. The progress runs over the features, from 1 to their
// count. False when it was cancelled: the grid then holds part of the features.
bool gridLinearFeatures(std::span<const geometry::Curve> features, const LinearInfluence& influence,
                        grid::myGrid& grid, base::Progress& progress);

} // namespace tessaran::factors
