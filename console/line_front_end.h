#pragma once

// The front end of scripts and of the terminal.

#include "console/console_host.h"
#include "console/conversation.h"
#include "console/front_end.h"
#include "console/line_dialogs.h"
#include "console/line_prompts.h"
#include "console/progress.h"

namespace tessaran::console {

class LineFrontEnd final : public FrontEnd {
  public:
    LineFrontEnd(HostState& state, Conversation& conversation, bool showProgress);

    host::Prompts& prompts() override { return prompts_; }
    host::Dialogs& dialogs() override { return dialogs_; }
    base::Progress& meter() override { return meter_; }
    host::ProgressView& progressView() override { return progressLine_; }
    void print(std::string_view text) override { conversation_.transcript().print(text); }
    bool userBreak() override { return conversation_.poll(); }
    void openLink(const std::string& target) override;
    void refused(const std::string& why) override { conversation_.refuse(why); }
    Unsaved unsavedChanges(const std::string& document) override;
    bool wantsRecovered(const std::filesystem::path& copy) override;
    bool commandFollows() override;

  private:
    const CommandList& commands_;
    Conversation& conversation_;
    LinePrompts prompts_;
    LineDialogs dialogs_;
    ProgressBar bar_;
    Meter meter_;
    ProgressLine progressLine_;
};

} // namespace tessaran::console
