#pragma once

// The host's own commands, in their simplest usual form.

#include "console/console_host.h"

namespace tessaran::console {

// The command group of all of them.
inline constexpr const char* kPlainGroup = "TESSARAN_HOST";

void addPlainCommands(ConsoleHost& host);

// One row a command: names, help text, handler, as `help` prints it.
struct PlainCommand {
    const char* name;
    const char* help;
    void (*run)(ConsoleHost&);
    bool undoStep;
};

// --- files and documents (file_commands.cpp)
void newDrawing(ConsoleHost& host);
void openCommand(ConsoleHost& host);
void saveCommand(ConsoleHost& host);
void saveAsCommand(ConsoleHost& host);
void closeCommand(ConsoleHost& host);
void documentCommand(ConsoleHost& host);
bool mayQuit(ConsoleHost& host); // asks about unsaved drawings

// --- drawing and editing (draw_commands.cpp, edit_commands.cpp)
void lineCommand(ConsoleHost& host);
void polylineCommand(ConsoleHost& host);
void pointCommand(ConsoleHost& host);
void textCommand(ConsoleHost& host);
void eraseCommand(ConsoleHost& host);
void moveCommand(ConsoleHost& host);
void listCommand(ConsoleHost& host);
void changePropertiesCommand(ConsoleHost& host);
void undoCommand(ConsoleHost& host);
void redoCommand(ConsoleHost& host);

// --- settings (settings_commands.cpp)
void layerCommand(ConsoleHost& host);
void ucsCommand(ConsoleHost& host);
void zoomCommand(ConsoleHost& host);
void setVariableCommand(ConsoleHost& host);
void helpCommand(ConsoleHost& host);
void menuCommand(ConsoleHost& host);

} // namespace tessaran::console
