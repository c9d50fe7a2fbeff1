#include "stress/window_watch.h"

#include "base/text.h"
#include "host/host.h"

namespace tessaran::stress {

WindowWatch::WindowWatch(host::Host& host, const std::string& title, const std::string& meterText)
    : host_(host), window_(host, title) {
    window_.setRange(0, 100);
    if (!meterText.empty())
        meter_.emplace(host.meter(), meterText, 0, 100);
}

void WindowWatch::progress(int percent) {
    window_.setPosition(percent);
    if (meter_)
        meter_->at(percent);
}

void WindowWatch::status(const std::string& text) {
    window_.setText(std::string(base::trimmed(text)));
    window_.peekAndPump();
}

void WindowWatch::message(const std::string& text) {
    host_.dialogs().message(text);
}

bool WindowWatch::cancelled() {
    window_.peekAndPump();
    return window_.cancelled();
}

} // namespace tessaran::stress
