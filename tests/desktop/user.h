#pragma once

// A person at the window, for tests: real key and mouse events, one after the other, each given
// when the window waits for input.
//
//     User user;
//     user.type("PLINE").clickAt({10, 10}).clickAt({20, 10}).enter();
//     user.look([&] { EXPECT_EQ(user.drawing().entityCount(), 1u); });
//     user.work();   // all of it happens here; the window is closed at the end
//
// The drawing view shows 100 x 62.5 drawing units from 0,0 until something changes it.

#include "desktop/desktop_session.h"
#include "support/temporary_folder.h"

#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace tessaran::desktop {
class DialogWindow;
}

namespace tessaran::test {

class User {
  public:
    explicit User(const desktop::DesktopSession::Options& options = {});
    ~User();

    desktop::DesktopSession& session() { return *session_; }
    desktop::MainWindow& window() { return session_->window(); }
    desktop::DrawingView& view() { return window().view(); }
    drawing::Database& drawing() { return session_->workspace().database(); }
    TemporaryFolder& folder() { return folder_; }
    std::string history(); // what the command panel shows

    // --- what is done, in this order, by work()
    User& type(const std::string& line); // into the command line, with Enter
    User& enter() { return type(""); }
    User& escape();
    User& keys(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    User& moveTo(host::Point2 world);
    User& clickAt(host::Point2 world, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    User& drag(host::Point2 from, host::Point2 to);
    User& keyword(const std::string& name); // a click on the prompt's keyword
    User& menu(const QString& text);        // clicks the way to the item of that text, without "&"
    User& answer(const QString& button);    // a button of the box that is open
    User& file(const std::string& name);    // typed into the file dialog that is open
    // In the dialog of that title; what it does in the drawing and in boxes are steps of their own,
    // which follow this one.
    User& dialog(const QString& title, std::function<void(desktop::DialogWindow&)> act);
    User& look(std::function<void()> check);
    // While a command computes, not before and not after.
    User& whileBusy(std::function<void()> act);

    void work(const std::string& drawing = {});

    // The session's script so far, run headless on the same drawing in a folder of its own.
    std::string script() { return session_->recorder().script(); }

  private:
    struct Step {
        std::string name;
        std::function<bool()> ready;
        std::function<void()> act;
    };
    User& then(std::string name, std::function<bool()> ready, std::function<void()> act);
    User& atPrompt(std::string name, std::function<void()> act);
    bool somethingWaits() const;
    void next();
    void finish();
    QPoint pixel(host::Point2 world);

    TemporaryFolder folder_;
    std::unique_ptr<desktop::DesktopSession> session_;
    std::deque<Step> steps_;
    QTimer timer_;
    int closed_ = 0;
    int idle_ = 0; // looks without anything to do
};

// Adds a command for tests to the host.
void addCommand(desktop::DesktopSession& session, const std::string& name,
                std::function<void(host::Host&)> run);

} // namespace tessaran::test
