#pragma once

// The commands that can be typed: the module's and the host's own.

#include "host/commands.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::console {

struct Command {
    std::string group;
    std::string globalName;
    std::string localName;
    std::function<void()> run;
    bool undoStep = true; // its changes to the drawing are one step; not for UNDO, OPEN, ...
    std::string help{};
};

class CommandList final : public host::CommandStack {
  public:
    void add(const host::CommandEntry& entry) override;
    void remove(const std::string& group, const std::string& globalName) override;

    void add(Command command);
    // As typed: any capitals, the local name, or the global one behind "_"; "'" before either.
    const Command* find(std::string_view typed) const;
    // A typed line as a command and the answers behind its name.
    struct Typed {
        const Command* command = nullptr;
        std::string rest{};
    };
    Typed typed(std::string_view line) const;
    const std::vector<Command>& commands() const { return commands_; }

  private:
    std::vector<Command> commands_;
};

// Keeps the menu that the module hands over, for who shows it.
class KeptMenuBar final : public host::MenuBar {
  public:
    struct PullDown {
        std::string name;
        std::vector<host::MenuItem> items;
    };
    bool setPullDown(const std::string& name, const std::vector<host::MenuItem>& items) override;
    void removePullDown(const std::string& name) override;
    const std::vector<PullDown>& pullDowns() const { return pullDowns_; }

  private:
    std::vector<PullDown> pullDowns_;
};

} // namespace tessaran::console
