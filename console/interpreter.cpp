#include "console/interpreter.h"

#include "console/plain_commands.h"

#include <fmt/format.h>

#include <exception>

namespace tessaran::console {
namespace {

constexpr const char* kCommandPrompt = "\nCommand: ";

} // namespace

Interpreter::Interpreter(ConsoleHost& host, Conversation& conversation)
    : host_(host), conversation_(conversation) {
    conversation_.setActivity(
        [this] { return host_.state().graphics.changes() + host_.workspace().database().state(); });
}

void Interpreter::run() {
    while (!conversation_.over()) {
        if (conversation_.next({{}, kCommandPrompt}) == nullptr)
            break;
        const Line line = conversation_.take();
        switch (line.kind) {
        case Line::Kind::enter:
        case Line::Kind::escape:
            break;
        case Line::Kind::directive:
            conversation_.refuse(line.is(Verb::answer) ? "no question is showing"
                                 : line.is(Verb::file) ? "no file dialog is showing"
                                                       : "no dialog is showing");
            break;
        default:
            command(line);
        }
        if (idle_)
            idle_();
    }
}

void Interpreter::command(const Line& line) {
    const CommandList::Typed typed = host_.state().commands.typed(line.text);
    if (typed.command == nullptr) {
        conversation_.refuse(fmt::format("Unknown command \"{}\".", line.text));
        return;
    }
    conversation_.beginCommand();
    conversation_.setGiven(typed.rest);
    runCommand(*typed.command);
    conversation_.refuseLeftOver();
}

// A command that was cancelled keeps what it did until then, as one step to undo; one that ended by
// an exception is taken back.
void Interpreter::runCommand(const Command& found) {
    const Command command = found; // the list may change while it runs
    if (!command.undoStep) {
        command.run();
        return;
    }
    if (command.group != kPlainGroup)
        host_.state().graphics.clear(); // what the one before left shown
    drawing::Database& database = host_.workspace().database();
    database.beginCommand(command.localName);
    try {
        command.run();
        database.endCommand();
    } catch (const std::exception& error) {
        database.rollBack();
        conversation_.refuseCommand(fmt::format("{} failed: {}", command.localName, error.what()));
    }
}

} // namespace tessaran::console
