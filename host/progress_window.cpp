#include "host/progress_window.h"

#include "base/numbers.h"
#include "host/host.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace tessaran::host {
namespace {

constexpr const char* kSection = "Settings";
constexpr const char* kKeyX = "X";
constexpr const char* kKeyY = "Y";

int keptNumber(const Profile& profile, const char* key) {
    return base::leadingInt(profile.read(kSection, key).value_or("0"));
}

int heldInt(long value) {
    return static_cast<int>(
        std::clamp<long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

CProgressWnd::CProgressWnd(Host& host, std::string title) : host_(host), title_(std::move(title)) {
    host_.progressView().open(keptNumber(host_.profile(), kKeyX),
                              keptNumber(host_.profile(), kKeyY));
    host_.progressView().setCaption(title_);
    host_.progressView().setBar(lower_, upper_, position_);
}

void CProgressWnd::setRange(int lower, int upper, int step) {
    lower_ = lower;
    upper_ = upper;
    step_ = step;
    host_.progressView().setBar(lower_, upper_, position_);
}

void CProgressWnd::setText(const std::string& text) {
    text_ = text;
    host_.progressView().setText(text_);
}

int CProgressWnd::percentOf(int position) const {
    const long long range = static_cast<long long>(upper_) - lower_;
    return range > 0 ? heldInt(static_cast<long>(position * 100LL / range)) : 0;
}

int CProgressWnd::setPosition(int position) {
    const int before = position_;
    position_ = position;
    const int percent = percentOf(position);
    if (percent != percent_) {
        percent_ = percent;
        showCaption();
    }
    host_.progressView().setBar(lower_, upper_, position_);
    return before;
}

void CProgressWnd::showCaption() {
    host_.progressView().setCaption(fmt::format("{} [{}{}%]", title_, text_, percent_));
}

void CProgressWnd::peekAndPump() {
    const ProgressView::Events events = host_.progressView().pump(keepFocus_);
    if ((events.escape && escapeCancels_) || events.cancelClicked)
        cancelled_ = true;
}

void CProgressWnd::destroy() {
    if (!shown_)
        return;
    shown_ = false;
    const Point2 corner = host_.progressView().corner();
    host_.profile().write(kSection, kKeyX, std::to_string(static_cast<int>(corner.x)));
    host_.profile().write(kSection, kKeyY, std::to_string(static_cast<int>(corner.y)));
    host_.progressView().close();
}

void WindowProgress::begin(std::string_view text, long lower, long upper) {
    window_.setText(std::string(text));
    window_.setRange(heldInt(lower), heldInt(upper));
    window_.setPosition(heldInt(lower));
}

void WindowProgress::setPosition(long position) {
    window_.setPosition(heldInt(position));
}

bool WindowProgress::cancelled() {
    window_.peekAndPump();
    return window_.cancelled();
}

} // namespace tessaran::host
