// Every dialog of every command: values given by key and mouse are those that a script sets.

#include "base/text.h"
#include "console/show_dialog.h"
#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"
#include "desktop/robot.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <sstream>

using namespace tessaran;
using namespace tessaran::test;
using desktop::DialogWindow;
using host::ControlKind;
using testing::ElementsAreArray;
using Purpose = host::DialogSession::Purpose;

namespace {

std::vector<std::string> trimmed(std::vector<std::string> lines) {
    for (std::string& line : lines)
        line = base::trimmed(line);
    return lines;
}

// Gives each control of a dialog that can be used another value.
class Filler {
  public:
    explicit Filler(DialogWindow& window) : window_(window), session_(window.session()) {}

    int fill() {
        for (int page = 0; page < static_cast<int>(session_.pages().size()); ++page) {
            turnTo(window_, page);
            if (session_.frontPage() != page)
                continue; // the page in front does not let go of a value that is missing
            for (const auto& control : session_.pages()[static_cast<std::size_t>(page)].controls)
                if (!session_.ended() && session_.isEnabled(*control))
                    give({page, control.get(), -1});
        }
        return given_;
    }

  private:
    std::string label(host::DialogSession::Place place, Purpose purpose) const {
        return session_.labelOf(place, purpose);
    }

    void give(host::DialogSession::Place place) {
        const ControlKind kind = place.control->kind;
        const std::string before = session_.text(*place.control);
        if (kind == ControlKind::text || kind == ControlKind::names) {
            type(window_, label(place, Purpose::set), std::to_string(++number_));
        } else if (kind == ControlKind::check) {
            click(window_, label(place, Purpose::check));
        } else if (kind == ControlKind::radio) {
            place.option = static_cast<int>(place.control->options.size()) - 1;
            click(window_, label(place, Purpose::choose));
        } else if (kind == ControlKind::dropList) {
            takeLast(label(place, Purpose::set));
        }
        if (!session_.ended() && session_.text(*place.control) != before)
            ++given_;
    }

    void takeLast(const std::string& name) {
        const auto* box = window_.findChild<QComboBox*>(QString::fromStdString(name));
        ASSERT_NE(box, nullptr) << name;
        if (box->count() > 0)
            choose(window_, name, box->itemText(box->count() - 1).toStdString());
    }

    DialogWindow& window_;
    const host::DialogSession& session_;
    int number_ = 2;
    int given_ = 0;
};

// Fills the first dialog that opens, keeps what it tells then, and closes whatever opens.
class Visitor : public QObject {
  public:
    explicit Visitor(DialogBench& bench) : bench_(bench) {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, this, [this] { turn(); });
        arm();
    }

    int given = 0;                 // values that were changed
    std::string script;            // the lines recorded until then
    std::vector<std::string> told; // ":show" of the filled dialog

  private:
    void arm() { timer_.start(2); }

    void turn() {
        arm();
        QWidget* inFront = QApplication::activeModalWidget();
        auto* window = qobject_cast<DialogWindow*>(inFront);
        if (window != nullptr && !begun_) {
            if (!window->isActiveWindow())
                return;
            begun_ = true;
            given = Filler(*window).fill();
            script = bench_.script();
            told = trimmed(console::showDialog(window->session()));
            return;
        }
        auto* box = qobject_cast<QMessageBox*>(inFront);
        if (box != nullptr && !told.empty() && box->button(QMessageBox::No) != nullptr)
            return box->button(QMessageBox::No)->click(); // nothing is saved
        if (inFront != nullptr)
            inFront->close();
        if (window != nullptr && window == QApplication::activeModalWidget())
            clickOk(*window); // one that has no button to cancel
    }

    DialogBench& bench_;
    QTimer timer_;
    bool begun_ = false;
};

// What the last ":show" of a transcript printed: that many lines.
std::vector<std::string> lastShown(const std::string& transcript, std::size_t count) {
    const std::size_t at = transcript.rfind(":show\n");
    std::istringstream lines(at == std::string::npos ? "" : transcript.substr(at + 6));
    std::vector<std::string> shown;
    for (std::string line; shown.size() < count && std::getline(lines, line);)
        shown.push_back(line);
    return trimmed(shown);
}

} // namespace

// What opens a dialog needs no line here.
TEST(EveryValue, GivenInTheWindowIsTheOneOfTheScript) {
    int dialogs = 0;
    int given = 0;
    for (const std::string& command : test::commandsWithDialogs()) {
        SCOPED_TRACE(command);
        DialogBench bench;
        Visitor visitor(bench);
        bench.command(command);
        if (visitor.told.empty())
            continue;
        ++dialogs;
        given += visitor.given;
        ScriptRun run;
        run(visitor.script + ":show\n");
        EXPECT_EQ(run.status(), 0) << visitor.script << run.report();
        EXPECT_THAT(lastShown(run.transcript(), visitor.told.size()),
                    ElementsAreArray(visitor.told))
            << visitor.script;
    }
    EXPECT_GE(dialogs, 14);
    EXPECT_GE(given, 100);
}
