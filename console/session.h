#pragma once

// A running program over lines: the host, the module loaded into it, and the interpreter.

#include "console/console_host.h"
#include "console/conversation.h"
#include "console/interpreter.h"
#include "console/line_front_end.h"

#include <filesystem>

namespace tessaran::console {

// The module in a host, from its initialisation to its unloading, through its entry point.
class LoadedModule {
  public:
    explicit LoadedModule(host::Host& host);
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule();

  private:
    host::Host& host_;
};

class Session {
  public:
    struct Options {
        std::filesystem::path profile{}; // empty: settings live as long as the session
        // The folder of what else is kept; empty: nothing.
        std::filesystem::path configuration{};
        bool showProgress = false;
    };
    Session(LineSource& source, Transcript& transcript, const Options& options);

    ConsoleHost& host() { return host_; }
    Workspace& workspace() { return state_.workspace; }
    HostState& state() { return state_; }
    Conversation& conversation() { return conversation_; }
    Interpreter& interpreter() { return interpreter_; }

  private:
    HostState state_;
    Conversation conversation_;
    LineFrontEnd frontEnd_;
    ConsoleHost host_;
    LoadedModule module_;
    Interpreter interpreter_;
};

} // namespace tessaran::console
