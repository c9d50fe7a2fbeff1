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

// The commands that open a dialog at once, and which one.
const std::vector<std::pair<std::string, std::string>> kDialogs{
    {"zelk_setGrid", "Define a Grid"},
    {"tabTest", "Define a Grid"},
    {"zelk_gridFromContour", "Create Grid from Contours"},
    {"zelk_gridFromPoint", "Create Grid from Survey Points"},
    {"zelk_geoFeatures", "Create Grid from Linear Geological Features"},
    {"zelk_sFactorInArea", "Create Grid for Area Based Factor"},
    {"zelk_horizStress", "Create Grid for Horizontal Stress Effect"},
    {"zelk_topoGrid", "Topography Grid Generator for Plekton"},
    {"zelk_plekton", "Plekton Stress Calculation"},
    {"zelk_convPlekGrid", "Transfer Plekton/MulSim Results"},
    {"zelk_genFactor", "Individual Factor Generation/Normalization"},
    {"zelk_StabilityIndex", "Stability Index Generation"},
    {"zelk_indexMapping", "Mapping Stability Index on Entries"},
    {"zelk_zelkabout", "About Tessaran System"},
    {"CMRR", "General Information"},
};

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

} // namespace

TEST(EveryDialog, ShowsWhatTheConsoleShows) {
    for (const auto& [command, title] : kDialogs) {
        SCOPED_TRACE(command);
        DialogBench bench;
        Robot robot;
        robot.dialog(title, [](DialogWindow& window) {
            EXPECT_THAT(seenDialog(window), ElementsAreArray(told(window.session())));
            checkLabels(window.session());
            checkKeyboardOrder(window);
            clickCancel(window);
            if (window.isVisible()) // a dialog without a button there
                clickOk(window);
        });
        bench.command(command);
    }
}

TEST(EveryDialog, TurnsToItsPagesAndShowsThemAsTheConsoleDoes) {
    for (const auto& [command, title] : kDialogs) {
        SCOPED_TRACE(command);
        DialogBench bench;
        Robot robot;
        const bool refuses = command == "zelk_genFactor"; // without an input grid
        robot.dialog(title, [refuses](DialogWindow& window) {
            const int pages = static_cast<int>(window.session().pages().size());
            for (int page = 1; page < pages; ++page) {
                turnTo(window, page);
                EXPECT_EQ(window.session().frontPage(), refuses ? 0 : page);
                EXPECT_THAT(seenDialog(window), ElementsAreArray(told(window.session())));
                checkLabels(window.session());
            }
            window.close();
        });
        if (refuses)
            robot.box("Input Grid file is not ready !", "OK");
        bench.command(command);
    }
}

TEST(EveryDialog, OpensForEveryCommandThatHasOne) {
    // A command that prints only, or asks at the command line, opens none; whichever opens one
    // stands in the table above.
    for (const console::Command& command : DialogBench().host().state().commands.commands()) {
        if (command.group == "TESSARAN_HOST")
            continue;
        SCOPED_TRACE(command.localName);
        DialogBench bench;
        bool opened = false;
        Robot robot;
        const bool listed = std::any_of(kDialogs.begin(), kDialogs.end(), [&](const auto& row) {
            return row.first == command.localName;
        });
        if (listed)
            continue;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [&] {
            if (QWidget* window = QApplication::activeModalWidget()) {
                opened = true;
                window->close();
            }
        });
        watch.start(5);
        bench.command(command.localName);
        EXPECT_FALSE(opened);
    }
}
