#pragma once

// A copy of the open drawing beside its file, kept while there is something to lose. Whoever runs
// the commands offers the drawing between them; a copy that is still there when a drawing is opened
// tells of a crash.

#include "base/result.h"
#include "drawing/database.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

namespace tessaran::drawing {

// "PLAN.autosave.dxf" for "PLAN.dxf", in the same folder.
std::filesystem::path autosavePath(const std::filesystem::path& drawing);

// The copy of that drawing that a crash left behind: there, and not older than the drawing.
std::optional<std::filesystem::path> leftBehind(const std::filesystem::path& drawing);

class Autosave {
  public:
    using Clock = std::chrono::steady_clock;
    using Save = std::function<base::Result<void>(const Database&, const std::filesystem::path&)>;

    explicit Autosave(Save save, Clock::duration interval = std::chrono::seconds(60))
        : save_(std::move(save)), interval_(interval) {}
    Autosave(const Autosave&) = delete;
    Autosave& operator=(const Autosave&) = delete;
    ~Autosave() { discard(); }

    // Writes the copy to `to` when the drawing has changed since it was saved and since the last
    // copy, no command runs, and the last one is long enough ago: the interval, and twenty times
    // what writing it took, so that large drawings are not slowed down. Removes the copy of a
    // drawing that is as saved. Whether it wrote.
    base::Result<bool> offer(const Database& database, const std::filesystem::path& to,
                             Clock::time_point now = Clock::now());

    // Removes the copy: the drawing was saved or closed in good order.
    void discard();

    // Leaves the copy where it is when this goes (the program is about to end badly).
    void keep() { written_.clear(); }

  private:
    Save save_;
    Clock::duration interval_;
    std::filesystem::path written_; // the copy that is there; empty: none
    std::uint64_t state_ = 0;       // of the drawing when it was written
    std::optional<Clock::time_point> last_;
    Clock::duration took_{};
};

} // namespace tessaran::drawing
