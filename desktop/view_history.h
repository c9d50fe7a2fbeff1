#pragma once

// The views that each open drawing was shown in, to go back to.

#include "console/workspace.h"

#include <map>
#include <optional>
#include <vector>

namespace tessaran::desktop {

class ViewHistories {
  public:
    bool knows(const drawing::Database& database) const { return views_.contains(&database); }
    // The view is about to be left. Views left in quick succession, as the wheel turns, count as
    // one.
    void leave(const drawing::Database& database, const drawing::View& view);
    std::optional<drawing::View> back(const drawing::Database& database);
    // Forgets drawings that are closed.
    void keepOnly(const console::Workspace& workspace);

  private:
    struct Entry {
        std::vector<drawing::View> views;
        std::int64_t leftAt = 0; // milliseconds
    };
    std::map<const drawing::Database*, Entry> views_;
};

} // namespace tessaran::desktop
