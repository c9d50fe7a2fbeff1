#pragma once

// The host where there is no CAD host around: open drawings, profile, variables, commands, menu and
// temporary graphics of its own, and a front end that shows and asks.

#include "console/command_stack.h"
#include "console/front_end.h"
#include "console/kept_graphics.h"
#include "console/profile_file.h"
#include "console/variables.h"
#include "console/workspace.h"
#include "host/host.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace tessaran::console {

// The state that a host keeps, whatever front end it has.
struct HostState {
    explicit HostState(const std::filesystem::path& profile)
        : variables(workspace), profileFile(profile) {}

    Workspace workspace;
    Variables variables;
    ProfileFile profileFile;
    CommandList commands;
    KeptMenuBar menuBar;
    KeptGraphics graphics;
};

class ConsoleHost final : public host::Host, private host::Coordinates {
  public:
    ConsoleHost(HostState& state, FrontEnd& frontEnd) : state_(state), frontEnd_(frontEnd) {}

    HostState& state() { return state_; }
    Workspace& workspace() { return state_.workspace; }
    FrontEnd& frontEnd() { return frontEnd_; }

    host::Drawing& drawing() override { return state_.workspace.database(); }
    host::Prompts& prompts() override { return frontEnd_.prompts(); }
    host::Dialogs& dialogs() override { return frontEnd_.dialogs(); }
    host::TemporaryGraphics& graphics() override { return state_.graphics; }
    base::Progress& meter() override { return frontEnd_.meter(); }
    host::ProgressView& progressView() override { return frontEnd_.progressView(); }
    host::Profile& profile() override { return state_.profileFile; }
    host::SystemVariables& variables() override { return state_.variables; }
    host::Coordinates& coordinates() override { return *this; }
    host::CommandStack& commands() override { return state_.commands; }
    host::MenuBar& menuBar() override { return state_.menuBar; }
    host::DocumentSlot& documentSlot() override { return state_.workspace; }

    void print(std::string_view text) override { frontEnd_.print(text); }
    bool userBreak() override { return frontEnd_.userBreak(); }
    void zoomWindow(const host::Box2& world) override { showInView(world, 1.0); }
    void zoomPrevious() override;
    // As near as the window's shape allows, `margin` times the box. A box without extent keeps the
    // height of the view.
    void showInView(const host::Box2& world, double margin);
    void openLink(const std::string& target) override { frontEnd_.openLink(target); }

    // What ends the program that runs the host.
    void setQuit(std::function<void()> quit) { quit_ = std::move(quit); }
    void quit();
    void endProgram(int status) override;
    // Of a program that had to end; nothing where it ends in good order. Whoever runs it keeps
    // copies of the drawings then (console/autosaves.h).
    const std::optional<int>& endStatus() const { return endStatus_; }

  private:
    // Between the current drawing's user coordinates and the world.
    host::Point3 toWorld(const host::Point3& user) const override;
    host::Point3 toUser(const host::Point3& world) const override;

    HostState& state_;
    FrontEnd& frontEnd_;
    std::optional<drawing::View> previousView_;
    std::function<void()> quit_;
    std::optional<int> endStatus_;
};

} // namespace tessaran::console
