#pragma once

// The autosaved copies of all open drawings.

#include "console/workspace.h"
#include "drawing/autosave.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace tessaran::console {

class Autosaves {
  public:
    // Drawings without a file are kept in `folder`; empty: they are not.
    explicit Autosaves(std::filesystem::path folder,
                       drawing::Autosave::Clock::duration interval = std::chrono::seconds(60))
        : folder_(std::move(folder)), interval_(interval) {}

    // Between commands: copies what has changed, forgets what was closed.
    void offer(const Workspace& workspace);

    // Before the program has to end: copies all that has changed, and leaves the copies behind. A
    // line for the user of each drawing.
    std::string keep(const Workspace& workspace);

  private:
    std::filesystem::path copyOf(const Document& document) const;

    std::filesystem::path folder_;
    drawing::Autosave::Clock::duration interval_;
    std::map<const drawing::Database*, std::unique_ptr<drawing::Autosave>> copies_;
};

} // namespace tessaran::console
