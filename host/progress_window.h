#pragma once

// The small window that long computations show and poll between steps. This is its logic; what it
// looks like is the host's ProgressView.

#include "base/progress.h"

#include <string>

namespace tessaran::host {

class Host;

class CProgressWnd {
  public:
    // Shows the window where it stood last (kept in the application's profile).
    explicit CProgressWnd(Host& host, std::string title = "Progress");
    CProgressWnd(const CProgressWnd&) = delete;
    CProgressWnd& operator=(const CProgressWnd&) = delete;
    ~CProgressWnd() { destroy(); }

    void setRange(int lower, int upper, int step = 1);
    void setText(const std::string& text); // above the bar
    // Gives the earlier position. The caption shows position * 100 / (upper - lower) percent: the
    // lower bound is not taken off the position.
    int setPosition(int position);
    int stepIt() { return offsetPosition(step_); }
    int offsetPosition(int by) { return setPosition(position_ + by); }

    // Gives the window time: handles what waits, without blocking.
    void peekAndPump();
    // Whether the user asked to stop; stays so until the window is destroyed.
    bool cancelled() const { return cancelled_; }

    void keepFocus(bool keep) { keepFocus_ = keep; }
    void allowEscape(bool allow) { escapeCancels_ = allow; }

    // Keeps the window's place and closes it; done once.
    void destroy();

    int percent() const { return percent_; } // shown last; -1: none yet
    int position() const { return position_; }

  private:
    int percentOf(int position) const;
    void showCaption();

    Host& host_;
    std::string title_;
    std::string text_;
    int lower_ = 0;
    int upper_ = 100;
    int step_ = 1;
    int position_ = 0;
    int percent_ = -1;
    bool cancelled_ = false;
    bool keepFocus_ = true;
    bool escapeCancels_ = true;
    bool shown_ = true;
};

// The window as the progress of a computation: text and range by begin(), pumped whenever it asks
// whether it was cancelled.
class WindowProgress final : public base::Progress {
  public:
    explicit WindowProgress(CProgressWnd& window) : window_(window) {}

    void begin(std::string_view text, long lower, long upper) override;
    void setPosition(long position) override;
    void end() override {}
    bool cancelled() override;

  private:
    CProgressWnd& window_;
};

} // namespace tessaran::host
