#include "app/command_table.h"

#include "app/about.h"
#include "app/loaded_host.h"
#include "app/tessaran_app.h"
#include "factors/area_commands.h"
#include "factors/generator_commands.h"
#include "factors/polyline_commands.h"
#include "grid/base_grid_commands.h"
#include "grid/grid_utility_commands.h"
#include "host/host.h"
#include "index/composite_commands.h"
#include "index/factor_commands.h"
#include "index/mapping_commands.h"
#include "rfri/assessment_commands.h"
#include "rfri/defect_commands.h"
#include "stress/plekton_commands.h"
#include "stress/seam_commands.h"
#include "stress/topo_commands.h"

#include <array>

namespace tessaran::app {
namespace {

// In the order in which the host learns them.
constexpr std::array kCommands{
    CommandRow{"zelk_setGrid", commandHandler<grid::zelk_setGrid>},
    CommandRow{"zelk_gridFromContour", commandHandler<factors::zelk_gridFromContour>},
    CommandRow{"zelk_gridFromPoint", commandHandler<factors::zelk_gridFromPoint>},
    CommandRow{"zelk_geoFeatures", commandHandler<factors::zelk_geoFeatures>},
    CommandRow{"zelk_sFactorInArea", commandHandler<factors::zelk_sFactorInArea>},
    CommandRow{"zelk_topoStressModel", commandHandler<stress::zelk_topoStressModel>},
    CommandRow{"zelk_horizStress", commandHandler<factors::zelk_horizStress>},
    CommandRow{"zelk_topoGrid", commandHandler<factors::zelk_topoGrid>},
    CommandRow{"zelk_seamGrid", commandHandler<stress::zelk_seamGrid>},
    CommandRow{"zelk_plekton", commandHandler<stress::zelk_plekton>},
    CommandRow{"zelk_convPlekGrid", commandHandler<stress::zelk_convPlekGrid>},
    CommandRow{"zelk_genFactor", commandHandler<index::zelk_genFactor>},
    CommandRow{"zelk_StabilityIndex", commandHandler<index::zelk_StabilityIndex>},
    CommandRow{"zelk_indexMapping", commandHandler<index::zelk_indexMapping>},
    CommandRow{"zelk_gridUtility", commandHandler<grid::zelk_gridUtility>},
    CommandRow{"zelk_createPolylineFromObjects",
               commandHandler<factors::zelk_createPolylineFromObjects>},
    CommandRow{"zelk_joinPolylines", commandHandler<factors::zelk_joinPolylines>},
    CommandRow{"zelk_checkClosedPolylines", commandHandler<factors::zelk_checkClosedPolylines>},
    CommandRow{"zelk_checkOverlaps", commandHandler<factors::zelk_checkOverlaps>},
    CommandRow{"zelk_checkDuplicates", commandHandler<factors::zelk_checkDuplicates>},
    CommandRow{"zelk_checkContours", commandHandler<factors::zelk_checkContours>},
    CommandRow{"zelk_clearWorkingLayer", commandHandler<factors::zelk_clearWorkingLayer>},
    CommandRow{"zelk_RFRI_Draw", commandHandler<rfri::zelk_RFRI_Draw>},
    CommandRow{"zelk_RFRI_Calc", commandHandler<rfri::zelk_RFRI_Calc>},
    CommandRow{"zelk_zelkabout", commandHandler<zelk_zelkabout>},
    CommandRow{"tabTest", commandHandler<grid::tabTest>},
    CommandRow{"ZELKMenu", commandHandler<ZELKMenu>},
    CommandRow{"zelk_RFRI_Input", commandHandler<rfri::zelk_RFRI_Input>},
    CommandRow{"zelk_RFRI_List", commandHandler<rfri::zelk_RFRI_List>},
    CommandRow{"zelk_RFRI_Label", commandHandler<rfri::zelk_RFRI_Label>},
    CommandRow{"zelk_RFRI_Mapping", commandHandler<rfri::zelk_RFRI_Mapping>},
};

} // namespace

std::span<const CommandRow> commandTable() {
    return kCommands;
}

std::string globalNameOf(const CommandRow& row) {
    return std::string("_") + row.localName;
}

host::CommandEntry entryOf(const CommandRow& row) {
    return {kCommandGroup, globalNameOf(row), row.localName, kModal, row.handler};
}

} // namespace tessaran::app
