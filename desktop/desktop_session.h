#pragma once

// The running program behind a window: the host, the module loaded into it, and the interpreter,
// whose lines come from what the user types and clicks.

#include "console/autosaves.h"
#include "console/interpreter.h"
#include "console/recovery.h"
#include "console/session.h"
#include "desktop/main_window.h"
#include "desktop/window_front_end.h"

#include <QTimer>
#include <chrono>
#include <filesystem>

namespace tessaran::desktop {

class DesktopSession {
  public:
    struct Options {
        std::filesystem::path profile{};       // empty: settings live as long as the session
        std::filesystem::path configuration{}; // the folder of what else is kept; empty: nothing
        std::chrono::milliseconds autosave{60'000}; // the least time between two autosaves
    };
    explicit DesktopSession(const Options& options);

    MainWindow& window() { return window_; }
    console::ConsoleHost& host() { return host_; }
    console::Workspace& workspace() { return state_.workspace; }
    WindowLines& lines() { return lines_; }
    const SessionRecorder& recorder() const { return recorder_; }

    // Shows the window and lives until it is closed; the exit status. `drawing`: opened first; may
    // be empty.
    int run(const std::string& drawing);

  private:
    void offerAbandoned();
    void keepCopies();
    void refused(const console::Conversation::Refusal& refusal);

    Options options_;
    console::HostState state_;
    SessionRecorder recorder_;
    WindowLines lines_;
    console::Transcript transcript_;
    console::Conversation conversation_;
    PromptBoard board_;
    Busy busy_;
    MainWindow window_;
    WindowFrontEnd frontEnd_;
    console::ConsoleHost host_;
    console::LoadedModule module_;
    console::Interpreter interpreter_;
    console::RecoveryFolder copies_;
    console::Autosaves autosaves_;
    QTimer autosaveTimer_;
};

} // namespace tessaran::desktop
