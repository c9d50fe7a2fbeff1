#pragma once

// A selection being made, step by step.

#include "console/answers.h"
#include "console/workspace.h"

#include <string>
#include <vector>

namespace tessaran::console {

class SelectionRun {
  public:
    SelectionRun(const Document& document, const host::SelectionFilter& filter,
                 std::vector<EntityId> selected = {})
        : document_(document), filter_(filter), selected_(std::move(selected)) {}

    // Carries the step out; the text to print, such as "\n2 found, 5 total".
    base::Result<std::string> take(const SelectionStep& step);

    bool removing() const { return removing_; }
    const std::vector<EntityId>& selected() const { return selected_; } // in the order selected

  private:
    std::string added(const std::vector<EntityId>& found);
    std::string removed(const std::vector<EntityId>& found);

    const Document& document_;
    const host::SelectionFilter& filter_;
    std::vector<EntityId> selected_;
    bool removing_ = false;
};

} // namespace tessaran::console
