#pragma once

// What the tests of the generator pages share: the script that opens a dialog on a small grid, and
// objects of the plan.

#include "grid/my_grid.h"
#include "host/host.h"
#include "host/services_layers.h"
#include "support/script_run.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaran::test {

struct Laid {
    int nX = 4;
    int nY = 4;
    double width = 10.0;
    double height = 10.0;
    double degrees = 0.0;
    double x = 0.0;
    double y = 0.0;
};

// The command with its "Grid Dimension" page filled in.
inline std::string opened(const std::string& command, const Laid& laid = {}) {
    return fmt::format("{}\n"
                       ":set Number of Cells in X Direction = {}\n"
                       ":set Number of Cells in Y Direction = {}\n"
                       ":set Cell Width in X Direction = {}\n"
                       ":set Cell Width in Y Direction = {}\n"
                       ":set Rotation to X axis (degree) = {}\n"
                       ":set X Coordinate of Grid Origin = {}\n"
                       ":set Y Coordinate of Grid Origin = {}\n",
                       command, laid.nX, laid.nY, laid.width, laid.height, laid.degrees, laid.x,
                       laid.y);
}

// After an Enter at the wait, nothing is kept of the drawing; the grid is saved as out.grd.
inline const std::string kBuildOnly = ":press Build Grid\n\n\n";
inline const std::string kSaveOk = ":set Output File (.grd) = out.grd\n:press Save Grid\n:ok\n";

inline host::EntityId add(ScriptRun& run, const std::string& layer, host::EntityGeometry geometry) {
    host::ensureLayer(run.host(), layer, 7);
    const auto id = run.drawing().add({{}, layer, 256, "ByLayer", std::move(geometry)});
    EXPECT_TRUE(id.ok());
    return id.ok() ? *id : host::EntityId{};
}

inline host::EntityId addPolyline(ScriptRun& run, const std::string& layer,
                                  const std::vector<host::PolylineVertex>& vertices,
                                  double elevation = 0.0, bool closed = false,
                                  host::Polyline::Form form = host::Polyline::Form::light) {
    return add(run, layer, host::Polyline{form, vertices, closed, elevation, 0.0});
}

inline host::EntityId addLine(ScriptRun& run, const std::string& layer, host::Point3 a,
                              host::Point3 b) {
    return add(run, layer, host::Line{a, b});
}

inline host::EntityId addPoint(ScriptRun& run, const std::string& layer, host::Point3 at) {
    return add(run, layer, host::PointMark{at});
}

inline void readSaved(ScriptRun& run, grid::myGrid& grid, const std::string& file = "out.grd") {
    ASSERT_TRUE(grid.readGrid(run.host(), file, true)) << run.report();
}

} // namespace tessaran::test
