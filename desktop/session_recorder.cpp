#include "desktop/session_recorder.h"

#include "base/text.h"

namespace tessaran::desktop {
namespace {

constexpr const char* kBreak = ":break ";

} // namespace

void SessionRecorder::record(const std::string& scriptLine) {
    lines_.push_back(scriptLine);
    polls_ = 0;
    if (recorded_)
        recorded_();
}

void SessionRecorder::recordCommand(const std::string& scriptLine) {
    command_ = lines_.size();
    record(scriptLine);
}

void SessionRecorder::dropLast() {
    if (!lines_.empty())
        lines_.pop_back();
}

void SessionRecorder::shortenCommand(const std::string& unused) {
    if (command_ >= lines_.size())
        return;
    std::string_view line = base::trimmed(lines_[command_]);
    if (line.ends_with(unused))
        lines_[command_] = base::trimmed(line.substr(0, line.size() - unused.size()));
}

// The break that was ordered for its line goes with it.
void SessionRecorder::dropCommand() {
    if (command_ > 0 && command_ <= lines_.size() && lines_[command_ - 1].starts_with(kBreak))
        --command_;
    if (command_ < lines_.size())
        lines_.resize(command_);
}

void SessionRecorder::cancelLast() {
    if (!lines_.empty())
        lines_.back() = "^C";
}

void SessionRecorder::broken() {
    const std::size_t last = lines_.empty() ? 0 : lines_.size() - 1;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last),
                  kBreak + std::to_string(polls_));
    if (last <= command_)
        ++command_;
}

std::string SessionRecorder::script(std::size_t from) const {
    std::string out;
    for (std::size_t k = from; k < lines_.size(); ++k)
        out += lines_[k] + "\n";
    return out;
}

} // namespace tessaran::desktop
