#pragma once

// The topography file, ".top": values of square blocks for the stress models. The same layout holds
// depths for the topographic model and stresses for the solver.

#include "base/result.h"

#include <filesystem>
#include <functional>
#include <string>

namespace tessaran::grid {

struct TopoHeader {
    double width = 0.0; // of a block
    int nX = 0;
    int nY = 0;
    double x = 0.0; // of the low-left corner; the file holds no rotation
    double y = 0.0;
    double datum = 0.0; // the level that the values belong to
    std::string quantity{};
    std::string unit{};
};

// One header line, the quantity, the unit, then valueAt(column, row) one a line, columns outer.
// Written whole or not at all.
base::Result<void> writeTopoFile(const std::filesystem::path& path, const TopoHeader& header,
                                 const std::function<double(int, int)>& valueAt);

} // namespace tessaran::grid
