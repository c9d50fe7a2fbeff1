#include "factors/generator_commands.h"

#include "factors/contour_pages.h"
#include "factors/linear_pages.h"
#include "factors/point_pages.h"
#include "factors/stress_pages.h"
#include "grid/base_grid_pages.h"

namespace tessaran::factors {
namespace {

// Every generator's dialog begins with the grid.
void runGenerator(host::Host& host, const std::string& title, host::DialogPage& page) {
    grid::CGridTab grid;
    host::Dialog dialog(title, {&grid, &page});
    host::runDialog(host, dialog);
}

} // namespace

void zelk_gridFromPoint(host::Host& host) {
    CPointsTab page;
    runGenerator(host, "Create Grid from Survey Points", page);
}

void zelk_gridFromContour(host::Host& host) {
    CTopoTab page(CTopoTab::Use::factor);
    runGenerator(host, "Create Grid from Contours", page);
}

void zelk_topoGrid(host::Host& host) {
    CTopoTab page(CTopoTab::Use::topography);
    runGenerator(host, page.title(), page);
}

void zelk_geoFeatures(host::Host& host) {
    CGeoFeatureTab page;
    runGenerator(host, "Create Grid from Linear Geological Features", page);
}

void zelk_horizStress(host::Host& host) {
    CHorizonStressTab page;
    runGenerator(host, "Create Grid for Horizontal Stress Effect", page);
}

} // namespace tessaran::factors
