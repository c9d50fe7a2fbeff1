#include "desktop/window_lines.h"

namespace tessaran::desktop {
namespace {

constexpr const char* kEscape = "^C";

} // namespace

// What is there already; a command that waits its turn cancels the one that asks.
std::optional<std::string> WindowLines::next(bool atCommand) {
    if (atCommand)
        given_.clear();
    if (given_.empty() && !commands_.empty()) {
        if (!atCommand)
            return kEscape;
        given_.assign(commands_.front().begin(), commands_.front().end());
        several_ = given_.size() > 1;
        commands_.pop_front();
    }
    if (given_.empty())
        return std::nullopt;
    std::string line = std::move(given_.front());
    given_.pop_front();
    return line;
}

void WindowLines::wait(const std::string& prompt) {
    atCommand_ = prompt.empty();
    waiting_ = true;
    if (waitBegins_)
        waitBegins_();
    if (given_.empty() && commands_.empty() && !ended_)
        loop_.exec();
    waiting_ = false;
    if (waitEnds_)
        waitEnds_();
}

std::optional<std::string> WindowLines::read(const std::string& prompt) {
    const bool atCommand = prompt.empty();
    std::optional<std::string> line = ended_ ? std::nullopt : next(atCommand);
    while (!line && !ended_) {
        wait(prompt);
        if (given_.empty())
            line = next(atCommand);
        else {
            line = std::move(given_.front());
            given_.pop_front();
        }
    }
    if (line)
        record(*line, atCommand);
    return line;
}

// Enter and Escape say nothing where a command is asked for.
void WindowLines::record(const std::string& line, bool atCommand) {
    if (!atCommand)
        recorder_.record(line);
    else if (!line.empty() && line != kEscape)
        recorder_.recordCommand(line);
}

bool WindowLines::answer(Lines lines) {
    if (!waiting_ || lines.empty())
        return false;
    several_ = lines.size() > 1;
    given_.assign(std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
    loop_.quit();
    return true;
}

void WindowLines::prepare(Lines lines) {
    given_.assign(std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
}

void WindowLines::run(Lines command) {
    commands_.push_back(std::move(command));
    if (waiting_)
        loop_.quit();
}

void WindowLines::end() {
    ended_ = true;
    if (waiting_)
        loop_.quit();
}

void WindowLines::refused() {
    if (several_)
        given_.assign(2, kEscape);
    several_ = false;
}

} // namespace tessaran::desktop
