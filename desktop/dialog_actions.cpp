#include "desktop/dialog_actions.h"

#include "console/directives.h"
#include "desktop/session_recorder.h"

namespace tessaran::desktop {

// What was typed goes first; false when nothing more can be done in the dialog.
bool DialogActions::commitTyped() {
    if (busy_)
        return false;
    if (commit_)
        commit_();
    return !busy_ && !session_.ended();
}

bool DialogActions::reachable(const Place& place) const {
    return !session_.ended() && place.page == session_.frontPage() &&
           session_.isEnabled(*place.control);
}

// The line comes first: what the action asks is recorded behind it.
void DialogActions::perform(const std::string& line, const std::function<void()>& action) {
    busy_ = true;
    if (recorder_ != nullptr)
        recorder_->record(line);
    try {
        action();
    } catch (...) {
        failure_ = std::current_exception();
        session_.end(false);
    }
    busy_ = false;
    if (done_)
        done_();
}

void DialogActions::set(const Place& place, const std::string& text) {
    if (busy_ || !reachable(place) || text == session_.text(*place.control))
        return;
    perform(console::setDirective(session_, place, text),
            [&] { static_cast<void>(session_.set(place, text)); });
}

void DialogActions::check(const Place& place, bool on) {
    if (commitTyped() && reachable(place))
        perform(console::checkDirective(session_, place, on),
                [&] { static_cast<void>(session_.check(place, on)); });
}

void DialogActions::choose(const Place& place) {
    if (commitTyped() && reachable(place))
        perform(console::chooseDirective(session_, place),
                [&] { static_cast<void>(session_.choose(place)); });
}

void DialogActions::select(const Place& place, const std::vector<int>& rows) {
    if (commitTyped() && reachable(place) && rows != *place.control->selection)
        perform(console::selectDirective(session_, place, rows),
                [&] { static_cast<void>(session_.select(place, rows)); });
}

void DialogActions::openRow(const Place& place, int row) {
    if (commitTyped() && reachable(place))
        perform(console::openDirective(session_, place, row),
                [&] { static_cast<void>(session_.openRow(place, row)); });
}

void DialogActions::press(const Place& place) {
    if (commitTyped() && reachable(place))
        perform(console::pressDirective(session_, place),
                [&] { static_cast<void>(session_.press(place)); });
}

void DialogActions::bringToFront(int page) {
    if (commitTyped() && page != session_.frontPage())
        perform(console::pageDirective(session_, page), [&] { session_.bringToFront(page); });
}

void DialogActions::ok() {
    if (commitTyped() && !session_.dialog().okLabel(session_).empty())
        perform(":ok", [&] { session_.ok(); });
}

void DialogActions::cancel() {
    if (commitTyped())
        perform(":cancel", [&] { session_.cancel(); });
}

} // namespace tessaran::desktop
