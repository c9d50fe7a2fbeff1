#include "desktop/session_recorder.h"

namespace tessaran::desktop {

void SessionRecorder::record(const std::string& scriptLine) {
    lines_.push_back(scriptLine);
    polls_ = 0;
    if (recorded_)
        recorded_();
}

void SessionRecorder::dropLast() {
    if (!lines_.empty())
        lines_.pop_back();
}

void SessionRecorder::cancelLast() {
    if (!lines_.empty())
        lines_.back() = "^C";
}

void SessionRecorder::broken() {
    const std::size_t last = lines_.empty() ? 0 : lines_.size() - 1;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last),
                  ":break " + std::to_string(polls_));
}

std::string SessionRecorder::script(std::size_t from) const {
    std::string out;
    for (std::size_t k = from; k < lines_.size(); ++k)
        out += lines_[k] + "\n";
    return out;
}

} // namespace tessaran::desktop
