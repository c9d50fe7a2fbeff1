#include "drawing/autosave.h"

#include <algorithm>
#include <system_error>

namespace tessaran::drawing {

std::filesystem::path autosavePath(const std::filesystem::path& drawing) {
    std::filesystem::path copy = drawing;
    copy.replace_filename(drawing.stem().string() + ".autosave.dxf");
    return copy;
}

std::optional<std::filesystem::path> leftBehind(const std::filesystem::path& drawing) {
    std::error_code failed;
    const std::filesystem::path copy = autosavePath(drawing);
    const auto written = std::filesystem::last_write_time(copy, failed);
    if (failed)
        return std::nullopt;
    const auto saved = std::filesystem::last_write_time(drawing, failed);
    if (!failed && saved > written)
        return std::nullopt;
    return copy;
}

base::Result<bool> Autosave::offer(const Database& database, const std::filesystem::path& to,
                                   Clock::time_point now) {
    constexpr int kShare = 20;
    if (database.inCommand())
        return false;
    if (!database.modified()) {
        discard();
        return false;
    }
    const bool there = written_ == to && state_ == database.state();
    const bool early = last_ && now - *last_ < std::max(interval_, kShare * took_);
    if (there || early)
        return false;
    const Clock::time_point start = Clock::now();
    auto saved = save_(database, to);
    took_ = Clock::now() - start;
    last_ = now;
    if (!saved)
        return saved.error();
    if (written_ != to)
        discard(); // the drawing has got another name
    written_ = to;
    state_ = database.state();
    return true;
}

void Autosave::discard() {
    if (written_.empty())
        return;
    std::error_code ignored; // gone already, or not ours to remove any more
    std::filesystem::remove(written_, ignored);
    written_.clear();
}

} // namespace tessaran::drawing
