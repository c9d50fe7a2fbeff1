#include "console/plain_commands.h"

#include "cmrr/cmrr_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace tessaran::console {
namespace {

// Not one of the module's commands: the CAD host has no name for it.
void roofRatingCommand(ConsoleHost& host) {
    cmrr::CMRR(host);
}

constexpr std::array kCommands{
    PlainCommand{"NEW", "begins an empty drawing", newDrawing, false},
    PlainCommand{"OPEN", "opens a drawing file", openCommand, false},
    PlainCommand{"SAVE", "saves the drawing to its file", saveCommand, false},
    PlainCommand{"SAVEAS", "saves the drawing to another file", saveAsCommand, false},
    PlainCommand{"CLOSE", "closes the drawing", closeCommand, false},
    PlainCommand{"DOCUMENT", "switches between open drawings", documentCommand, false},
    PlainCommand{"LINE", "draws lines from point to point", lineCommand, true},
    PlainCommand{"PLINE", "draws a polyline", polylineCommand, true},
    PlainCommand{"POINT", "draws points", pointCommand, true},
    PlainCommand{"TEXT", "writes a text", textCommand, true},
    PlainCommand{"ERASE", "erases objects", eraseCommand, true},
    PlainCommand{"MOVE", "moves objects", moveCommand, true},
    PlainCommand{"CHPROP", "changes objects' colour, layer and linetype", changePropertiesCommand,
                 true},
    PlainCommand{"LAYER", "makes and changes layers", layerCommand, true},
    PlainCommand{"UCS", "sets the user's coordinate system", ucsCommand, true},
    PlainCommand{"ZOOM", "sets the view", zoomCommand, true},
    PlainCommand{"SETVAR", "shows and sets system variables", setVariableCommand, true},
    PlainCommand{"UNDO", "takes commands back", undoCommand, false},
    PlainCommand{"REDO", "does again what was taken back", redoCommand, false},
    PlainCommand{"LIST", "describes objects", listCommand, true},
    PlainCommand{"CMRR", "rates the roof from its rock units", roofRatingCommand, true},
    PlainCommand{"HELP", "prints the commands", helpCommand, true},
    PlainCommand{"MENU", "prints the menu", menuCommand, true},
};

void printMenu(ConsoleHost& host, const std::vector<host::MenuItem>& items, int depth) {
    const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    for (const host::MenuItem& item : items) {
        std::string label;
        std::copy_if(item.label.begin(), item.label.end(), std::back_inserter(label),
                     [](char c) { return c != '&'; });
        if (item.kind == host::MenuItem::Kind::separator)
            host.print(fmt::format("\n{}--", indent));
        else if (item.kind == host::MenuItem::Kind::submenu)
            host.print(fmt::format("\n{}{} >", indent, label));
        else
            host.print(fmt::format("\n{}{} -- {}", indent, label, item.helpText));
        printMenu(host, item.items, depth + 1);
    }
}

} // namespace

void addPlainCommands(ConsoleHost& host) {
    CommandList& commands = host.state().commands;
    for (const PlainCommand& row : kCommands)
        commands.add(Command{kPlainGroup, row.name, row.name, [&host, run = row.run] { run(host); },
                             row.undoStep, row.help});
    commands.add(Command{kPlainGroup, "QUIT", "QUIT",
                         [&host] {
                             if (mayQuit(host))
                                 host.quit();
                         },
                         false, "ends the program"});
}

void helpCommand(ConsoleHost& host) {
    for (const Command& command : host.state().commands.commands())
        host.print(command.help.empty()
                       ? fmt::format("\n{}", command.localName)
                       : fmt::format("\n{:<10} {}", command.localName, command.help));
}

void menuCommand(ConsoleHost& host) {
    for (const KeptMenuBar::PullDown& pullDown : host.state().menuBar.pullDowns()) {
        host.print("\n" + pullDown.name);
        printMenu(host, pullDown.items, 1);
    }
}

} // namespace tessaran::console
