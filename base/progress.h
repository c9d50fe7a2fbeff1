#pragma once

// How a long computation tells where it is and asks whether to go on. The host's status-bar meter
// and progress window stand behind it; tests and command-line tools use their own.

#include <string_view>

namespace tessaran::base {

class Progress {
  public:
    virtual ~Progress() = default;

    virtual void begin(std::string_view text, long lower, long upper) = 0;
    virtual void setPosition(long position) = 0;
    virtual void end() = 0;

    // Polled between steps; true once the user has asked to stop.
    virtual bool cancelled() = 0;
};

// Nobody watches.
class NoProgress final : public Progress {
  public:
    void begin(std::string_view /*text*/, long /*lower*/, long /*upper*/) override {}
    void setPosition(long /*position*/) override {}
    void end() override {}
    bool cancelled() override { return false; }
};

// Begins a stretch of work and ends it on every way out.
class ProgressRun {
  public:
    ProgressRun(Progress& progress, std::string_view text, long lower, long upper)
        : progress_(progress) {
        progress_.begin(text, lower, upper);
    }
    ProgressRun(const ProgressRun&) = delete;
    ProgressRun& operator=(const ProgressRun&) = delete;
    ~ProgressRun() { progress_.end(); }

    void at(long position) { progress_.setPosition(position); }

  private:
    Progress& progress_;
};

} // namespace tessaran::base
