#pragma once

// Where a page's grid goes: the output file's name with its rules, the description, saving, and the
// questions that keep an unsaved grid from getting lost. Every page that builds a grid holds one.

#include "grid/my_grid.h"
#include "host/dialog_model.h"

#include <functional>
#include <string>

namespace tessaran::grid {

inline constexpr const char* kGridExtension = "grd";
inline constexpr const char* kUntitledGrid = "Untitled.grd";

// What leaving an output file's field does to a changed, non-empty name: "." and the extension are
// appended unless there, and when such a file exists the user is asked; No brings back the name
// that stood there before.
void completeOutputName(host::DialogSession& session, std::string& name, const std::string& before,
                        const std::string& extension = kGridExtension);

class GridOutput {
  public:
    // `grid` is the page's working grid and outlives this.
    explicit GridOutput(myGrid& grid) : grid_(grid) {}

    // The fields with the button that browses for a file.
    void describeFile(host::PageBuilder& page, const std::string& label = "Output File (.grd) :");
    void describeDescription(host::PageBuilder& page,
                             const std::string& label = "Grid Description");

    const std::string& fileName() const { return fileName_; }
    void setFileName(std::string name) { fileName_ = std::move(name); }
    const std::string& description() const { return description_; }
    void setDescription(std::string text) { description_ = std::move(text); }

    bool built() const { return built_; }
    bool saved() const { return saved_; }
    void markBuilt() { built_ = true, saved_ = false; }
    void markChanged() { saved_ = false; } // by hand, after the build
    void markEmpty() { built_ = saved_ = false; }

    void markSaved() { saved_ = built_; } // by the page itself, in another form

    // Before a rebuild: whether an unsaved grid may go, built or (as the page tells) made by hand.
    bool mayRebuild(
        host::Host& host, bool madeByHand = false,
        const std::string& question = "Modified Grid is not saved yet! continue to rebuild") const;
    // Asks for a name when there is none, confirms, writes; whether the grid was written.
    bool save(host::Host& host, const std::string& what = "Grid value");
    // Before the dialog closes: an unsaved grid is offered to be saved, by `save` where the page
    // has its own way. False keeps the dialog open.
    bool mayClose(host::Host& host);
    bool mayClose(host::Host& host, const std::function<bool()>& save) const;

  private:
    bool chooseFile(host::Host& host);

    myGrid& grid_;
    std::string fileName_;
    std::string description_;
    bool built_ = false;
    bool saved_ = false;
};

} // namespace tessaran::grid
