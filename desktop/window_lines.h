#pragma once

// The lines that the window gives: typed ones, clicks turned into the line that a script would
// hold, and the lines of menu items and panels. While a line is waited for the window lives in an
// event loop of its own here.

#include "console/line_source.h"
#include "desktop/session_recorder.h"

#include <QEventLoop>
#include <deque>
#include <functional>
#include <vector>

namespace tessaran::desktop {

class WindowLines final : public console::LineSource {
  public:
    using Lines = std::vector<std::string>;

    explicit WindowLines(SessionRecorder& recorder) : recorder_(recorder) {}

    std::optional<std::string> read(const std::string& prompt) override;
    bool interactive() const override { return true; }
    std::string name() const override { return "window"; }

    // Answers what waits, and the prompts that come after it; false when nothing waits.
    bool answer(Lines lines);
    bool answer(const std::string& line) { return answer(Lines{line}); }
    // Answers for the prompts that come next, given while nothing waits.
    void prepare(Lines lines);
    // A command and its answers, once what is running has been cancelled.
    void run(Lines command);
    // Ends the talk.
    void end();
    // The line given last was refused: what was to follow it makes no sense any more.
    void refused();

    bool waiting() const { return waiting_; }
    bool atCommandPrompt() const { return waiting_ && atCommand_; }
    bool ended() const { return ended_; }

    // Called before each wait, and after it.
    void setWait(std::function<void()> begins, std::function<void()> ends) {
        waitBegins_ = std::move(begins);
        waitEnds_ = std::move(ends);
    }

  private:
    std::optional<std::string> next(bool atCommand);
    void wait(const std::string& prompt);
    void record(const std::string& line, bool atCommand);

    SessionRecorder& recorder_;
    std::deque<std::string> given_; // answers that are there already
    std::deque<Lines> commands_;    // to run at the command prompt
    bool several_ = false;          // the answers given last were more than one
    bool waiting_ = false;
    bool atCommand_ = false;
    bool ended_ = false;
    QEventLoop loop_;
    std::function<void()> waitBegins_;
    std::function<void()> waitEnds_;
};

} // namespace tessaran::desktop
