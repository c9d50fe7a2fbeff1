// Every dialog of every command, on the screen as in the console.

#include "base/text.h"
#include "console/dialog_lines.h"
#include "console/directives.h"
#include "console/show_dialog.h"
#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"
#include "desktop/robot.h"
#include "desktop/seen_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTimer>
#include <algorithm>
#include <set>

using namespace tessaran;
using namespace tessaran::test;
using desktop::DialogWindow;
using host::ControlKind;
using testing::ElementsAreArray;
using Purpose = host::DialogSession::Purpose;

namespace {

// What ":show" prints, without indentation.
std::vector<std::string> told(const host::DialogSession& session) {
    std::vector<std::string> lines = console::showDialog(session);
    for (std::string& line : lines)
        line = base::trimmed(line);
    return lines;
}

Purpose purposeOf(ControlKind kind) {
    switch (kind) {
    case ControlKind::check:
        return Purpose::check;
    case ControlKind::radio:
        return Purpose::choose;
    case ControlKind::list:
        return Purpose::select;
    case ControlKind::button:
    case ControlKind::link:
        return Purpose::press;
    case ControlKind::information:
        return Purpose::show;
    default:
        return Purpose::set;
    }
}

// Every control of the page in front is found by the label that the window records for it.
void checkLabels(const host::DialogSession& session) {
    const int page = session.frontPage();
    std::set<std::pair<Purpose, std::string>> seen;
    for (const auto& control : session.pages()[static_cast<std::size_t>(page)].controls) {
        const Purpose purpose = purposeOf(control->kind);
        if (purpose == Purpose::show)
            continue;
        const int buttons =
            purpose == Purpose::choose ? static_cast<int>(control->options.size()) : 1;
        for (int k = 0; k < buttons; ++k) {
            const int option = purpose == Purpose::choose ? k : -1;
            const std::string label = session.labelOf({page, control.get(), option}, purpose);
            const auto found = session.find(label, purpose);
            ASSERT_TRUE(found) << label;
            EXPECT_EQ(found->control, control.get()) << label;
            EXPECT_EQ(found->option, option) << label;
            EXPECT_TRUE(seen.insert({purpose, base::lowered(label)}).second) << label;
        }
    }
}

// The Tab key goes through the fields in the order of the description.
void checkKeyboardOrder(const DialogWindow& window) {
    std::vector<const QWidget*> chain;
    for (const QWidget* w = window.nextInFocusChain(); w != &window; w = w->nextInFocusChain())
        chain.push_back(w);
    std::vector<std::ptrdiff_t> places;
    for (const auto& page : window.session().pages())
        for (const auto& control : page.controls) {
            if (control->kind == ControlKind::information || control->kind == ControlKind::radio)
                continue;
            const std::string label = window.session().labelOf(
                {static_cast<int>(&page - window.session().pages().data()), control.get(), -1},
                purposeOf(control->kind));
            const auto* widget = window.findChild<QWidget*>(QString::fromStdString(label));
            ASSERT_NE(widget, nullptr) << label;
            places.push_back(std::find(chain.begin(), chain.end(), widget) - chain.begin());
        }
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
}

// Looks at whatever opens: a dialog on all its pages, which is closed then; boxes are closed.
class Visitor : public QObject {
  public:
    Visitor() {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, this, [this] { turn(); });
        arm();
    }

    std::set<std::string> dialogs; // titles

  private:
    void arm() { timer_.start(5); }

    void turn() {
        arm();
        QWidget* inFront = QApplication::activeModalWidget();
        if (auto* window = qobject_cast<DialogWindow*>(inFront))
            visit(*window);
        if (inFront != nullptr)
            inFront->close();
        if (auto* window = qobject_cast<DialogWindow*>(QApplication::activeModalWidget()))
            clickOk(*window); // one that has no button to cancel
    }

    void visit(DialogWindow& window) {
        const host::DialogSession& session = window.session();
        if (!dialogs.insert(session.dialog().title()).second)
            return;
        SCOPED_TRACE(session.dialog().title());
        EXPECT_THAT(seenDialog(window), ElementsAreArray(told(session)));
        checkLabels(session);
        checkKeyboardOrder(window);
        for (int page = 1; page < static_cast<int>(session.pages().size()); ++page) {
            turnTo(window, page); // the page in front may refuse, and tell why
            EXPECT_THAT(seenDialog(window), ElementsAreArray(told(session)));
            if (session.frontPage() == page)
                checkLabels(session);
        }
    }

    QTimer timer_;
};

} // namespace

// Every command is run; what opens a dialog needs no line here.
TEST(EveryDialog, ShowsWhatTheConsoleShows) {
    std::set<std::string> dialogs;
    for (const std::string& command : test::commandsWithDialogs()) {
        SCOPED_TRACE(command);
        DialogBench bench;
        Visitor visitor;
        bench.command(command);
        dialogs.insert(visitor.dialogs.begin(), visitor.dialogs.end());
    }
    EXPECT_GE(dialogs.size(), 14U);
    EXPECT_TRUE(dialogs.contains("Mapping Stability Index on Entries"));
    EXPECT_TRUE(dialogs.contains("General Information"));
}
