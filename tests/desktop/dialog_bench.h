#pragma once

// The program with dialogs on a screen and prompts answered from lines, in a temporary folder:
// commands are run by name, a Robot does the rest.

#include "console/session.h"
#include "desktop/dialog_host.h"
#include "support/temporary_folder.h"

#include <QApplication>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::test {

// The one application of the test program.
QApplication& application();

// Lines for prompts, given when they are asked for; without more lines, Enter for a while.
class PromptLines final : public console::LineSource {
  public:
    std::optional<std::string> read(const std::string& prompt) override;
    std::string name() const override { return "test"; }

    void add(std::string line) { lines_.push_back(std::move(line)); }
    void setAsked(std::function<void()> asked) { asked_ = std::move(asked); }

  private:
    static constexpr int kMostEnters = 50;
    std::deque<std::string> lines_;
    int enters_ = 0;
    std::function<void()> asked_;
};

// The console's front end but for its dialogs.
class ScreenFrontEnd final : public console::FrontEnd {
  public:
    ScreenFrontEnd(console::LineFrontEnd& lines, host::Dialogs& dialogs)
        : lines_(lines), dialogs_(dialogs) {}

    host::Prompts& prompts() override { return lines_.prompts(); }
    host::Dialogs& dialogs() override { return dialogs_; }
    base::Progress& meter() override { return lines_.meter(); }
    host::ProgressView& progressView() override { return lines_.progressView(); }
    void print(std::string_view text) override { lines_.print(text); }
    bool userBreak() override { return lines_.userBreak(); }
    void openLink(const std::string& target) override { links.push_back(target); }
    void refused(const std::string& why) override { lines_.refused(why); }
    Unsaved unsavedChanges(const std::string& document) override {
        return lines_.unsavedChanges(document);
    }
    bool wantsRecovered(const std::filesystem::path& copy) override {
        return lines_.wantsRecovered(copy);
    }
    bool commandFollows() override { return lines_.commandFollows(); }

    std::vector<std::string> links;

  private:
    console::LineFrontEnd& lines_;
    host::Dialogs& dialogs_;
};

class DialogBench {
  public:
    DialogBench();

    TemporaryFolder& folder() { return folder_; }
    console::ConsoleHost& host() { return host_; }
    drawing::Database& drawing() { return state_.workspace.database(); }
    PromptLines& prompts() { return source_; }
    ScreenFrontEnd& frontEnd() { return screen_; }
    const std::string& transcript() const { return text_; }

    // Runs the command until it ends; its name is recorded as the window does it.
    void command(const std::string& name);
    // The recorded lines, as a script.
    std::string script() const { return recorder_.script(); }

  private:
    TemporaryFolder folder_;
    std::string text_;
    console::Transcript transcript_;
    PromptLines source_;
    console::HostState state_;
    console::Conversation conversation_;
    console::LineFrontEnd lines_;
    QWidget window_;
    desktop::SessionRecorder recorder_;
    desktop::DialogHost dialogs_;
    ScreenFrontEnd screen_;
    console::ConsoleHost host_;
    console::LoadedModule module_;
};

// Every command that may open a dialog: the module's, and those of the host that do.
std::vector<std::string> commandsWithDialogs();

} // namespace tessaran::test
