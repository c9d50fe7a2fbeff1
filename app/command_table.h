#pragma once

// The commands that the host learns when the module is loaded.

#include "host/commands.h"

#include <span>
#include <string>

namespace tessaran::app {

inline constexpr const char* kCommandGroup = "ZELKTessaran";
inline constexpr unsigned kModal = 1;

struct CommandRow {
    const char* localName; // what is typed; the global name is "_" and this
    host::CommandHandler handler;
};

std::span<const CommandRow> commandTable();

std::string globalNameOf(const CommandRow& row);
host::CommandEntry entryOf(const CommandRow& row);

} // namespace tessaran::app
