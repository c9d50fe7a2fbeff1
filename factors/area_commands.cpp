#include "factors/area_commands.h"

#include "factors/area_boundary_pages.h"
#include "factors/area_pages.h"
#include "grid/base_grid_pages.h"

namespace tessaran::factors {

void zelk_sFactorInArea(host::Host& host) {
    grid::CGridTab grid;
    CBoundTab tools;
    CAreaFactTab factor;
    host::Dialog dialog("Create Grid for Area Based Factor", {&grid, &tools, &factor});
    host::runDialog(host, dialog);
}

} // namespace tessaran::factors
