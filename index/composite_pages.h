#pragma once

// The dialog in which a project of individual indexes is put together and its composite index is
// made.

#include "grid/my_grid.h"
#include "host/dialog_model.h"
#include "index/project_file.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::index {

inline constexpr const char* kNewProject = "Project1.prj";

class StabilityPage final : public host::DialogPage {
  public:
    void describe(host::PageBuilder& page) override;

    // Writes the project, asking for a name as long as it has none; false when nothing was written.
    bool saveProject(host::Host& host);

  private:
    void describeEntry(host::PageBuilder& page);

    void selectProject(host::Host& host);
    void selectGrid(host::Host& host);
    bool checkEdited(host::Host& host) const; // tells what is wrong
    void add(host::Host& host);
    void update(host::Host& host);
    void remove(host::Host& host);
    void edit(int row);
    std::vector<ProjectEntry>::iterator entryNamed(const std::string& name);

    void createIndex(host::Host& host) const;
    // The weighted sum of all entries and the total weight; nothing after a message.
    std::optional<double> sumUp(host::Host& host, grid::myGrid& sum) const;
    bool readEntry(host::Host& host, const ProjectEntry& entry, grid::myGrid& grid) const;
    void saveIndex(host::Host& host, grid::myGrid& sum, double totalWeight) const;

    std::string project_ = kNewProject;
    std::vector<ProjectEntry> entries_;
    std::vector<int> selected_;
    ProjectEntry edited_;
};

class dlg_stability final : public host::Dialog { // NOLINT(readability-identifier-naming)
  public:
    explicit dlg_stability(StabilityPage& page)
        : Dialog("Stability Index Generation", {&page}), page_(page) {}

    std::string okLabel(const host::DialogSession& /*session*/) const override {
        return "Save and Exit";
    }
    std::string cancelLabel(const host::DialogSession& /*session*/) const override {
        return "Exit";
    }
    bool okPressed(host::DialogSession& session) override;

  private:
    StabilityPage& page_;
};

} // namespace tessaran::index
