#pragma once

// A user for dialogs on the offscreen screen: a queue of things to do, each in the window that is
// in front when its turn comes. What the queue does not expect (another window, none at all) fails
// the test and closes everything, so that no test hangs.

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>

class QWidget;

namespace tessaran::desktop {
class DialogWindow;
}

namespace tessaran::test {

class Robot : public QObject {
  public:
    Robot();
    ~Robot() override;

    using InDialog = std::function<void(desktop::DialogWindow&)>;
    // In the dialog of that title; "" is any.
    Robot& dialog(const std::string& title, InDialog act);
    // The box that holds that text: presses the button ("OK", "Yes", ...; "" is Escape).
    Robot& box(const std::string& text, const std::string& button);
    // Types the path into the file dialog; "" cancels it.
    Robot& file(const std::string& path);

    bool finished() const { return steps_.empty(); }
    // What stood in the boxes, in order.
    const std::vector<std::string>& boxes() const { return boxes_; }

  private:
    struct Step {
        std::string name;
        std::function<bool(QWidget*)> act; // false: not this window
    };
    void arm();
    void turn();
    void giveUp(QWidget* inFront);

    QTimer timer_;
    std::deque<Step> steps_;
    std::vector<std::string> boxes_;
    int waited_ = 0;
};

// --- what a user does in a dialog, by labels
// Types without leaving the field.
void beginTyping(desktop::DialogWindow& window, const std::string& label, const std::string& text);
// Types and goes on to the next control.
void type(desktop::DialogWindow& window, const std::string& label, const std::string& text);
void click(desktop::DialogWindow& window, const std::string& label);
void choose(desktop::DialogWindow& window, const std::string& label, const std::string& choice);
void turnTo(desktop::DialogWindow& window, int page);
void clickOk(desktop::DialogWindow& window);
void clickCancel(desktop::DialogWindow& window);

} // namespace tessaran::test
