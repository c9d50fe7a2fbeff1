#pragma once

// Commands from lines: the command prompt.

#include "console/console_host.h"
#include "console/conversation.h"

#include <functional>

namespace tessaran::console {

class Interpreter {
  public:
    Interpreter(ConsoleHost& host, Conversation& conversation);

    // Until the lines end, a script's line is in error, or QUIT.
    void run();
    // Called between commands.
    void setIdle(std::function<void()> idle) { idle_ = std::move(idle); }

  private:
    void command(const Line& line);
    void runCommand(const Command& command);

    ConsoleHost& host_;
    Conversation& conversation_;
    std::function<void()> idle_;
};

} // namespace tessaran::console
