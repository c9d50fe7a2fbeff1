#pragma once

// What the user does with the widgets of one dialog, handed on to its session and recorded as lines
// of a script. One thing at a time: what widgets report while an action goes on (a field that loses
// the focus to a message box, a click while a computation lets the window breathe) is no action.

#include "host/dialog_model.h"

#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::desktop {

class SessionRecorder;

class DialogActions {
  public:
    using Place = host::DialogSession::Place;

    // `recorder` may be null.
    DialogActions(host::DialogSession& session, SessionRecorder* recorder)
        : session_(session), recorder_(recorder) {}
    DialogActions(const DialogActions&) = delete;
    DialogActions& operator=(const DialogActions&) = delete;

    host::DialogSession& session() { return session_; }
    bool busy() const { return busy_; }

    // Called before all that is not typing, so that what was typed is handed on first.
    void setCommit(std::function<void()> commit) { commit_ = std::move(commit); }
    // Called after every action.
    void setDone(std::function<void()> done) { done_ = std::move(done); }

    void set(const Place& place, const std::string& text);
    void check(const Place& place, bool on);
    void choose(const Place& place);
    void select(const Place& place, const std::vector<int>& rows);
    void openRow(const Place& place, int row);
    void press(const Place& place);
    void bringToFront(int page);
    void ok();
    void cancel();

    // What an action threw; the dialog has ended then. Event loops must not be thrown through.
    std::exception_ptr failure() const { return failure_; }

  private:
    bool commitTyped();
    bool reachable(const Place& place) const;
    void perform(const std::string& line, const std::function<void()>& action);

    host::DialogSession& session_;
    SessionRecorder* recorder_;
    std::function<void()> commit_;
    std::function<void()> done_;
    bool busy_ = false;
    std::exception_ptr failure_;
};

} // namespace tessaran::desktop
