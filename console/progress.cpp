#include "console/progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace tessaran::console {
namespace {

constexpr int kBarWidth = 40;

double shareOf(long lower, long upper, long position) {
    if (upper <= lower)
        return 0.0;
    const double share = static_cast<double>(position - lower) / static_cast<double>(upper - lower);
    return std::clamp(share, 0.0, 1.0);
}

// One line of a text that may hold several.
std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

void ProgressBar::show(const std::string& text, double share) {
    const int percent = static_cast<int>(share * 100.0);
    if (!shown_ || (percent == percent_ && text == text_))
        return;
    percent_ = percent;
    text_ = text;
    const int filled = percent * kBarWidth / 100;
    const std::string line = fmt::format("{} [{:#<{}}{:.<{}}] {}%", oneLine(text), "", filled, "",
                                         kBarWidth - filled, percent);
    const std::size_t tail = width_ > line.size() ? width_ - line.size() : 0;
    fmt::print(stderr, "\r{}{:{}}", line, "", tail);
    std::fflush(stderr);
    width_ = line.size();
}

void ProgressBar::clear() {
    if (!shown_ || width_ == 0)
        return;
    fmt::print(stderr, "\r{:{}}\r", "", width_);
    std::fflush(stderr);
    width_ = 0;
    percent_ = -1;
}

void Meter::begin(std::string_view text, long lower, long upper) {
    text_ = text;
    lower_ = lower;
    upper_ = upper;
    bar_.show(text_, 0.0);
}

void Meter::setPosition(long position) {
    bar_.show(text_, shareOf(lower_, upper_, position));
}

void ProgressLine::setBar(int lower, int upper, int position) {
    bar_.show(caption_.empty() ? text_ : caption_, shareOf(lower, upper, position));
}

host::ProgressView::Events ProgressLine::pump(bool /*keepFocus*/) {
    return {.escape = poll_(), .cancelClicked = false};
}

} // namespace tessaran::console
