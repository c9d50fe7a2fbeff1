#include "app/menu.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace tessaran::app {
namespace {

constexpr std::string_view kSeparator = "--";
constexpr std::string_view kOpensSubmenu = "->";
constexpr std::string_view kEndsSubmenu = "<-";

// Two cancel characters end whatever command is running before the item's own begins.
constexpr std::string_view kCancelTwice = "\x03\x03";

constexpr std::array kMenu{
    MenuLine{"defines a base grid for this session", "_zelk_setgrid", "&Define Base Grid"},
    MenuLine{"", "", "--"},
    MenuLine{"generates grid files from various contour lines", "_zelk_gridFromContour",
             "Factor from &Contour Lines"},
    MenuLine{"generates grid file from point geological features such as drill holes",
             "_zelk_gridfrompoint", "Factor from Point Features"},
    MenuLine{"generates grid file from linear geological features such as faults and cutter roof",
             "_zelk_geofeatures", "Factor from Linear Features"},
    MenuLine{"generates grid file from closed boundary areas such as valleys or ponds",
             "_zelk_sFactorInArea", "Factor from &Area Boundaries"},
    MenuLine{"", "", "--"},
    MenuLine{"", "zelk_topostressmodel", "&Topography Stress Calculation"},
    MenuLine{"", "zelk_horizstress", "&Horizontal Stress Gridding"},
    MenuLine{"", "", "--"},
    MenuLine{"", "zelk_RFRI_Input", "RFRI - Assign/Input Defects"},
    MenuLine{"", "zelk_RFRI_List", "RFRI - List Defects"},
    MenuLine{"", "zelk_RFRI_Label", "RFRI - Label Defects"},
    MenuLine{"", "zelk_RFRI_Mapping", "RFRI - Calculate and Mapping"},
    MenuLine{"", "", "--"},
    MenuLine{"", "zelk_RFRI_Draw", "RFRI - Draw Defects"},
    MenuLine{"", "zelk_RFRI_Calc", "RFRI - Calculate RFRI"},
    MenuLine{"", "", "--"},
    MenuLine{"", "zelk_topogrid", "Topography Grid Generation for Plekton"},
    MenuLine{"generates a grid for importing into PlekPre application.", "zelk_seamgrid",
             "&Seam Grid Generation for Plekton"},
    MenuLine{"", "zelk_plekton", "&Plekton Calculation"},
    MenuLine{"transfers the results of Plekton to grid file of Tessaran Modules",
             "zelk_convplekgrid", "Transfer &Plekton/MulSim Results"},
    MenuLine{"", "", "--"},
    MenuLine{"generates individual stability index for selected grid", "_zelk_genFactor",
             "Transformation of Individual &Factors"},
    MenuLine{"integrates individual index grids into composite stability index",
             "zelk_StabilityIndex", "Final Stability &Index"},
    MenuLine{"mapping stability index grid over entries", "zelk_indexmapping", "&Index Mapping"},
    MenuLine{"", "", "--"},
    MenuLine{"views, plots and manipulates grids", "zelk_gridutility", "Grid &Utilities"},
    MenuLine{"", "", "->&Polyline Utilities"},
    MenuLine{"", "zelk_createPolylineFromObjects", "Create Polyline from Objects"},
    MenuLine{"", "zelk_joinPolylines", "Join Polylines"},
    // The misspelt command is kept: the item reaches no command of the table.
    MenuLine{"", "zelk_checkClosedPloylines", "Close Polylines"},
    MenuLine{"", "zelk_checkOverlaps", "Check Overlaped Polygones"},
    MenuLine{"", "zelk_checkDuplicates", "Check Duplicate Polygones"},
    MenuLine{"", "zelk_checkContours", "Check Abnormal Contour Lines"},
    MenuLine{"", "", "--"},
    MenuLine{"", "zelk_clearWorkingLayer", "<-Clear Objects in Layer"},
    MenuLine{"", "", "--"},
    // The apostrophe asks the host to run the command while another one waits.
    MenuLine{"About Tessaran System for Mines", "'_zelk_zelkabout", "About Tessaran"},
};

std::string helpTextOf(const MenuLine& line, std::string label) {
    if (!line.helpText.empty())
        return std::string(line.helpText);
    std::erase(label, '&');
    return label + " -- " + std::string(base::trimmed(line.command)) + " Command.";
}

std::string macroOf(std::string_view command) {
    const std::string_view name = base::trimmed(command);
    return name.empty() ? std::string{}
                        : std::string(kCancelTwice) + std::string(name) + std::string(" ");
}

host::MenuItem itemOf(const MenuLine& line, host::MenuItem::Kind kind, std::string_view label) {
    const std::string name(base::trimmed(label));
    return {kind, name, helpTextOf(line, name), macroOf(line.command), {}};
}

} // namespace

std::span<const MenuLine> menuTable() {
    return kMenu;
}

std::vector<host::MenuItem> menuItems(std::span<const MenuLine> lines) {
    using Kind = host::MenuItem::Kind;
    std::vector<host::MenuItem> items;
    bool inSubmenu = false;
    for (const MenuLine& line : lines) {
        std::string_view label = base::trimmed(line.label);
        const bool ends = label.starts_with(kEndsSubmenu);
        if (label.starts_with(kOpensSubmenu)) {
            items.push_back(itemOf(line, Kind::submenu, label.substr(kOpensSubmenu.size())));
            inSubmenu = true;
            continue;
        }
        std::vector<host::MenuItem>& level = inSubmenu ? items.back().items : items;
        if (label == kSeparator)
            level.push_back({Kind::separator, {}, {}, {}, {}});
        else
            level.push_back(
                itemOf(line, Kind::command, ends ? label.substr(kEndsSubmenu.size()) : label));
        inSubmenu = inSubmenu && !ends;
    }
    return items;
}

} // namespace tessaran::app
