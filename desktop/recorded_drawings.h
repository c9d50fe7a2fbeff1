#pragma once

// The open drawings in the record of the session: where the script of the current one begins.
//
// It begins where that drawing was opened, so that it can be run on the same drawing. When the user
// has moved between drawings since, such a script would speak of drawings that it does not open:
// then it begins with the session and opens them all.

#include "console/workspace.h"
#include "desktop/session_recorder.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessaran::desktop {

class RecordedDrawings {
  public:
    // To be told after each command, with the lines recorded so far. The files of the drawings that
    // have come.
    std::vector<std::filesystem::path> note(const console::Workspace& workspace, std::size_t lines);
    // A comment on how to run it, and the lines.
    std::string script(const SessionRecorder& recorder, const console::Workspace& workspace) const;

  private:
    struct Start {
        std::size_t line = 0;
        std::filesystem::path file; // empty: it was new
    };
    std::map<const drawing::Database*, Start> starts_;
    const drawing::Database* current_ = nullptr;
    std::size_t moved_ = 0; // lines when the user went back to a drawing that was open already
};

} // namespace tessaran::desktop
