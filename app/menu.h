#pragma once

// The pull-down menu that the module adds to the host's menu bar.

#include "host/commands.h"

#include <span>
#include <string_view>
#include <vector>

namespace tessaran::app {

inline constexpr const char* kMenuName = "Tessaran";

// One line of the menu's description. The label "--" makes a separator; a label beginning with
// "->" opens a submenu of that name; one beginning with "<-" is the submenu's last item.
struct MenuLine {
    std::string_view helpText; // empty: made from label and command
    std::string_view command;
    std::string_view label;
};

std::span<const MenuLine> menuTable();

// The description as the nested items of the host's menu.
std::vector<host::MenuItem> menuItems(std::span<const MenuLine> lines);

} // namespace tessaran::app
