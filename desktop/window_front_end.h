#pragma once

// The window as the front end of the host: prompts from lines that are typed or clicked, dialogs
// as Qt shows them, the meter in the status bar, the small progress window.

#include "console/console_host.h"
#include "console/conversation.h"
#include "desktop/dialog_host.h"
#include "desktop/progress_dialog.h"
#include "desktop/session_recorder.h"
#include "desktop/status_meter.h"
#include "desktop/watched_dialogs.h"
#include "desktop/window_lines.h"
#include "desktop/window_prompts.h"

#include <QMainWindow>

namespace tessaran::desktop {

class WindowFrontEnd final : public console::FrontEnd {
  public:
    // What of the window it works with; all outlive it.
    struct Parts {
        QMainWindow& window;
        StatusMeter& meter;
        PromptBoard& board;
        Busy& busy;
        SessionRecorder& recorder;
        WindowLines& lines;
    };
    WindowFrontEnd(console::HostState& state, console::Conversation& conversation,
                   const Parts& parts);

    host::Prompts& prompts() override { return prompts_; }
    host::Dialogs& dialogs() override { return watched_; }
    base::Progress& meter() override { return parts_.meter; }
    host::ProgressView& progressView() override { return *progress_; }
    void print(std::string_view text) override { conversation_.transcript().print(text); }
    bool userBreak() override { return conversation_.poll(); }
    void openLink(const std::string& target) override;
    void refused(const std::string& why) override;
    bool commandFollows() override { return false; }
    Unsaved unsavedChanges(const std::string& document) override;
    bool wantsRecovered(const std::filesystem::path& copy) override;

    // Between commands: a drawing that was saved in the question of CLOSE is closed by the script
    // too.
    void settle();

    bool inDialog() const { return watched_.showing(); }

  private:
    bool interrupted();
    void recordSaving(const std::string& document);
    void recordQuitAgain();

    console::Conversation& conversation_;
    Parts parts_;
    WindowPrompts prompts_;
    DialogHost dialogs_;
    WatchedDialogs watched_;
    ProgressDialog* progress_; // the window's child
    bool broken_ = false;
    console::Workspace& workspace_;
    std::string savedFirst_; // the drawing that is saved before it is closed
    int discarded_ = 0;      // drawings whose changes were given up since the command began
};

} // namespace tessaran::desktop
