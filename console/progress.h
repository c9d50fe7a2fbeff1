#pragma once

// The status bar's meter and the progress window without a window: their state, and a bar on a
// terminal for who wants to watch.

#include "host/host.h"

#include <functional>
#include <string>

namespace tessaran::console {

// Draws one line over itself on standard error.
class ProgressBar {
  public:
    explicit ProgressBar(bool shown) : shown_(shown) {}
    void show(const std::string& text, double share); // 0 to 1; redrawn when the percentage changes
    void clear();

  private:
    bool shown_;
    int percent_ = -1;
    std::string text_;
    std::size_t width_ = 0;
};

class Meter final : public base::Progress {
  public:
    Meter(ProgressBar& bar, std::function<bool()> poll) : bar_(bar), poll_(std::move(poll)) {}

    void begin(std::string_view text, long lower, long upper) override;
    void setPosition(long position) override;
    void end() override { bar_.clear(); }
    bool cancelled() override { return poll_(); }

  private:
    ProgressBar& bar_;
    std::function<bool()> poll_;
    std::string text_;
    long lower_ = 0;
    long upper_ = 0;
};

class ProgressLine final : public host::ProgressView {
  public:
    ProgressLine(ProgressBar& bar, std::function<bool()> poll)
        : bar_(bar), poll_(std::move(poll)) {}

    void open(int x, int y) override { corner_ = {double(x), double(y)}; }
    void setCaption(const std::string& caption) override { caption_ = caption; }
    void setText(const std::string& text) override { text_ = text; }
    void setBar(int lower, int upper, int position) override;
    Events pump(bool keepFocus) override;
    host::Point2 corner() const override { return corner_; }
    void close() override { bar_.clear(); }

  private:
    ProgressBar& bar_;
    std::function<bool()> poll_;
    host::Point2 corner_;
    std::string caption_;
    std::string text_;
};

} // namespace tessaran::console
