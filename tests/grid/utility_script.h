#pragma once

// Scripts of the grid utilities over small grids.

#include "grid/grid_file.h"
#include "support/script_run.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tessaran::test {

// A grid file with cells of 10 from the origin (x, y); values by rows, the lowest row first.
inline void writeGrid(ScriptRun& run, const std::string& file,
                      const std::vector<std::vector<double>>& rows, double x = 0.0, double y = 0.0,
                      double width = 10.0) {
    grid::myGrid grid;
    ASSERT_TRUE(grid.setupGrid(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()),
                               width, width, 0.0));
    grid.setOrigin(x, y, 0.0);
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = 0; i < grid.nX(); ++i)
            grid.setValue(i, j, rows[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)]);
    grid.setTitle("Test");
    base::NoProgress nobody;
    ASSERT_TRUE(grid::writeGridFile(grid, (run.folder() / file).string(), nobody));
}

// The cells of a grid file, the lowest row first; empty when it cannot be read.
inline std::vector<std::vector<double>> readCells(ScriptRun& run, const std::string& file) {
    grid::myGrid grid;
    base::NoProgress nobody;
    std::vector<std::vector<double>> rows;
    if (!grid::readGridFile((run.folder() / file).string(), true, grid, nobody))
        return rows;
    for (int j = 0; j < grid.nY(); ++j) {
        const auto row = grid.row(j).first(static_cast<std::size_t>(grid.nX()));
        rows.emplace_back(row.begin(), row.end());
    }
    return rows;
}

inline const std::string kLoad = "zelk_gridUtility\n:press Load\n:file a.grd\n";
inline const std::string kSaveAs = ":press Save\n:file out.grd\n:ok\n";

} // namespace tessaran::test
