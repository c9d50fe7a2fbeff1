#pragma once

// The port to the host's command stack and menu bar.

#include <string>
#include <vector>

namespace tessaran::host {

using CommandHandler = void (*)();

struct CommandEntry {
    std::string group;
    std::string globalName; // language independent
    std::string localName;  // what is typed
    unsigned flags = 0;     // 1: modal
    CommandHandler handler = nullptr;
};

class CommandStack {
  public:
    virtual ~CommandStack() = default;
    virtual void add(const CommandEntry& entry) = 0;
    virtual void remove(const std::string& group, const std::string& globalName) = 0;
};

// A pull-down menu's item: a separator, a command with its macro, or a submenu.
struct MenuItem {
    enum class Kind { separator, command, submenu };
    Kind kind = Kind::command;
    std::string label{}; // "&" before the mnemonic
    std::string helpText{};
    std::string macro{}; // characters sent to the command line; "\x03" cancels
    std::vector<MenuItem> items{};
};

class MenuBar {
  public:
    virtual ~MenuBar() = default;
    // Adds the pull-down, replacing one of the same name. False when the host has no menu bar.
    virtual bool setPullDown(const std::string& name, const std::vector<MenuItem>& items) = 0;
    virtual void removePullDown(const std::string& name) = 0;
};

} // namespace tessaran::host
