#pragma once

// The topography file, ".top": a grid's values for the stress solver's pre-processor.

#include "base/result.h"
#include "grid/my_grid.h"

#include <filesystem>

namespace tessaran::factors {

enum class DepthUnit { feet, meters };

// Writes the grid's cells, columns outer and rows inner, in drawing units. The file holds no
// rotation. `datum` is the elevation that the values are measured from.
base::Result<void> writeTopoFile(const std::filesystem::path& path, const grid::myGrid& grid,
                                 DepthUnit unit, double datum);

} // namespace tessaran::factors
