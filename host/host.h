#pragma once

// THE PORT: what the system asks of a CAD host. One host serves one running program; drawing(),
// documentData() and coordinates() speak of the drawing that is current while a command runs.

#include "base/progress.h"
#include "host/commands.h"
#include "host/dialogs.h"
#include "host/document_data.h"
#include "host/drawing.h"
#include "host/graphics.h"
#include "host/prompts.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tessaran::host {

// Settings that outlive a run, as section, key and text.
class Profile {
  public:
    virtual ~Profile() = default;
    virtual std::optional<std::string> read(std::string_view section,
                                            std::string_view key) const = 0;
    virtual void write(const std::string& section, const std::string& key,
                       const std::string& text) = 0;
};

// "DWGPREFIX", "DWGNAME", "CMDECHO", "CLAYER", "VIEWCTR", "VIEWSIZE", "SCREENSIZE", "LUPREC", ...
using VariableValue = std::variant<int, double, std::string, Point2, Point3>;
class SystemVariables {
  public:
    virtual ~SystemVariables() = default;
    virtual std::optional<VariableValue> get(std::string_view name) const = 0;
    virtual base::Result<void> set(std::string_view name, const VariableValue& value) = 0;
};

// Between the user's current coordinate system and the world.
class Coordinates {
  public:
    virtual ~Coordinates() = default;
    virtual Point3 toWorld(const Point3& user) const = 0;
    virtual Point3 toUser(const Point3& world) const = 0;
};

// The small window of a long run, as pixels and events; its logic is CProgressWnd
// (host/progress_window.h).
class ProgressView {
  public:
    virtual ~ProgressView() = default;
    virtual void open(int x, int y) = 0;
    virtual void setCaption(const std::string& caption) = 0;
    virtual void setText(const std::string& text) = 0;
    virtual void setBar(int lower, int upper, int position) = 0;
    struct Events {
        bool escape = false;
        bool cancelClicked = false;
    };
    virtual Events pump(bool keepFocus) = 0; // handles what waits, without blocking
    virtual Point2 corner() const = 0;
    virtual void close() = 0;
};

// What the host services remember as long as the program runs.
struct SessionMemory {
    std::string fileFolder{};                // used last in a file dialog; empty: none yet
    std::map<std::string, double> numbers{}; // answers that are the next default, by their command
};

class Host {
  public:
    virtual ~Host() = default;

    virtual Drawing& drawing() = 0;
    virtual Prompts& prompts() = 0;
    virtual Dialogs& dialogs() = 0;
    virtual TemporaryGraphics& graphics() = 0;
    virtual base::Progress&
    meter() = 0; // the status bar's progress meter; cancelled() = userBreak()
    virtual ProgressView& progressView() = 0;
    virtual Profile& profile() = 0;
    virtual SystemVariables& variables() = 0;
    virtual Coordinates& coordinates() = 0;
    virtual CommandStack& commands() = 0;
    virtual MenuBar& menuBar() = 0;
    virtual DocumentSlot& documentSlot() = 0;

    // Prints at the command line as it stands (messages carry their own leading "\n").
    virtual void print(std::string_view text) = 0;
    // Whether the user pressed the cancel key since the command began.
    virtual bool userBreak() = 0;
    // The host's zoom by a window of the plan, and back to the view before. A host without a view
    // does nothing.
    virtual void zoomWindow(const Box2& /*world*/) {}
    virtual void zoomPrevious() {}
    // Opens a web page or mail link with the system's default handler.
    virtual void openLink(const std::string& target) = 0;
    // Ends the program with that exit status, without asking about unsaved drawings: copies of them
    // are kept. The command that asked for it returns; whatever it still asks is cancelled.
    virtual void endProgram(int status) = 0;

    SessionMemory& memory() { return memory_; }

  private:
    SessionMemory memory_;
};

} // namespace tessaran::host
