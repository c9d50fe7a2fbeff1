#include "grid/grid_editor.h"

#include "grid/grid_edit.h"
#include "grid/grid_editor_prompts.h"
#include "grid/grid_editor_view.h"
#include "host/host.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace tessaran::grid {
namespace {

using host::Host;
using host::PromptStatus;
using Kind = EditorStep::Kind;

// Brings a grid's values back when it goes, unless they were accepted.
class ValuesBefore {
  public:
    explicit ValuesBefore(myGrid& grid)
        : grid_(grid), values_(grid.values().begin(), grid.values().end()) {}
    ValuesBefore(const ValuesBefore&) = delete;
    ValuesBefore& operator=(const ValuesBefore&) = delete;
    ~ValuesBefore() {
        if (!accepted_)
            std::ranges::copy(values_, grid_.values().begin());
    }
    void accept() { accepted_ = true; }

  private:
    myGrid& grid_;
    std::vector<double> values_;
    bool accepted_ = false;
};

class GridEditor {
  public:
    GridEditor(Host& host, myGrid& grid)
        : host_(host), grid_(grid), before_(grid), selection_(grid.nX(), grid.nY()),
          view_(host, grid) {}

    bool run() {
        while (step()) {
        }
        return changed_ && acceptChanges();
    }

  private:
    // False: the user leaves.
    bool step() {
        const EditorStep step = askEditorStep(host_, grid_, removing_);
        switch (step.kind) {
        case Kind::cells:
            take(step.cells);
            return true;
        case Kind::remove:
            removing_ = true;
            return true;
        case Kind::none:
            return true;
        case Kind::enter:
            if (selection_.empty())
                return false;
            changeValues();
            return true;
        case Kind::cancel:
            break;
        }
        return false;
    }

    void take(const CellRuns& cells) {
        if (removing_)
            host_.print(
                fmt::format("\n{} cells removed from selection.", selection_.remove(cells)));
        else
            host_.print(fmt::format("\n{} cells added into selection.", selection_.add(cells)));
        host_.print(fmt::format("\n{} grid cells are in current selection.", selection_.size()));
        view_.showSelection(selection_);
    }

    // Nothing when it was cancelled.
    std::optional<double> askValue() {
        const SelectedMean average = meanOfSelected(grid_, selection_);
        host_.print(fmt::format("\nAverage value at the {} cells is: {:f}.", selection_.size(),
                                average.mean));
        if (average.withValue < selection_.size())
            host_.print(fmt::format("\n{} of them have no value and are left out.",
                                    selection_.size() - average.withValue));
        const auto answer = host_.prompts().getReal(
            {.message = fmt::format(
                 "\nChange {} selected cell values to <{:f}>:", selection_.size(), average.mean)});
        if (answer.status == PromptStatus::none)
            return average.mean;
        return answer.ok() ? std::optional(answer.value) : std::nullopt;
    }

    void changeValues() {
        const std::optional<double> value = askValue();
        if (!value)
            return;
        assignSelected(grid_, selection_, *value);
        changed_ = true;
        host_.print(
            fmt::format("\n{} grid cells are assigned to {:f}.", selection_.size(), *value));
        beginSelection();
    }

    void beginSelection() {
        host_.print("\nNew selection begins ...");
        selection_.clear();
        removing_ = false;
        view_.showValues();
        view_.showSelection(selection_);
    }

    // Leaving the question by Escape keeps nothing, as all that is open at a script's end.
    bool acceptChanges() {
        const auto answer = host_.prompts().getKeyword(
            "\nGrid values modified, accept the changes?<YES>:", "YES,Y NO,N");
        if (answer.status == PromptStatus::none || answer.value == "YES") {
            before_.accept();
            return true;
        }
        host_.print("\nExit grid editor without changes.");
        return false;
    }

    Host& host_;
    myGrid& grid_;
    ValuesBefore before_;
    CellSelection selection_;
    GridEditorView view_;
    bool removing_ = false;
    bool changed_ = false;
};

} // namespace

bool editGrid(Host& host, myGrid& grid) {
    if (!grid.isDefined()) {
        host.print("\nGrid is not defined!");
        return false;
    }
    return GridEditor(host, grid).run();
}

bool editGridFile(Host& host, const std::string& fileName) {
    myGrid grid;
    if (!grid.readGrid(host, fileName, true)) {
        host.print("\nCan not load grid file: " + fileName);
        return false;
    }
    if (!editGrid(host, grid) || !grid.writeGrid(host, fileName))
        return false;
    host.print(fmt::format("\nSaved grid to {}.", fileName));
    return true;
}

} // namespace tessaran::grid
