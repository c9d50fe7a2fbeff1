// The window around the drawing: long runs, unsaved work, recovery, several drawings, panels.

#include "console/drawing_files.h"
#include "desktop/dialog_window.h"
#include "desktop/robot.h"
#include "drawing/autosave.h"
#include "host/progress_window.h"
#include "support/script_run.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

namespace tessaran::test {
namespace {

using desktop::DialogWindow;
using ::testing::HasSubstr;

void addPoint(drawing::Database& drawing, double x) {
    host::Entity entity;
    entity.geometry = host::PointMark{{x, 1.0, 0.0}};
    ASSERT_TRUE(drawing.add(entity).ok());
}

void writeDrawing(const std::filesystem::path& path, int points) {
    drawing::Database drawing;
    for (int k = 0; k < points; ++k)
        addPoint(drawing, k);
    ASSERT_TRUE(console::saveCopy(drawing, path).ok());
}

// --- long runs
// --------------------------------------------------------------------------------------

// Runs until it is told to stop, and keeps how many rows it had done by then.
void longRun(host::Host& host, long& rows) {
    const base::ProgressRun progress(host.meter(), "Working", 0, 1'000'000);
    for (rows = 1; rows < 1'000'000 && !host.meter().cancelled(); ++rows)
        host.meter().setPosition(rows);
}

TEST(Window, EscapeEndsALongRunAndAScriptEndsItInTheSamePlace) {
    User user;
    long rows = 0;
    addCommand(user.session(), "LONGRUN", [&](host::Host& host) { longRun(host, rows); });
    user.type("LONGRUN").whileBusy([&] { QTest::keyClick(&user.view(), Qt::Key_Escape); });
    user.look([&] { EXPECT_LT(rows, 1'000'000); });
    user.work();
    ASSERT_THAT(user.script(), HasSubstr(":break "));

    ScriptRun run;
    long again = 0;
    run.state().commands.add(
        console::Command{"TEST", "LONGRUN", "LONGRUN", [&] { longRun(run.host(), again); }});
    run(user.script());
    EXPECT_EQ(again, rows) << run.report();
}

TEST(Window, NothingElseBeginsWhileACommandComputes) {
    User user;
    long rows = 0;
    addCommand(user.session(), "LONGRUN", [&](host::Host& host) { longRun(host, rows); });
    user.type("LONGRUN");
    user.whileBusy([&] {
        QTest::keyClicks(&user.window().commands().line(), "POINT");
        QTest::keyClick(&user.window().commands().line(), Qt::Key_Return);
        QTest::mouseClick(&user.view(), Qt::LeftButton, {}, QPoint(100, 100));
        EXPECT_FALSE(user.window().run({"POINT", "1,1"}));
    });
    user.whileBusy([&] { user.window().close(); });
    user.whileBusy([&] { QTest::keyClick(&user.window(), Qt::Key_Escape); });
    user.look([&] {
        EXPECT_EQ(user.drawing().entityCount(), 0u);
        EXPECT_TRUE(user.session().lines().atCommandPrompt());
        EXPECT_EQ(user.window().commands().line().text(), "");
    });
    user.work();
}

// 4 million cells from 60 points, which takes long enough to be given up.
TEST(Window, EscapeGivesUpAGridThatIsBeingBuilt) {
    User user;
    ASSERT_TRUE(user.drawing().createLayer({.name = "HOLES"}).ok());
    for (int k = 0; k < 60; ++k) {
        host::Entity entity;
        entity.layer = "HOLES";
        entity.geometry = host::PointMark{{1.5 * k, 60.0 - (k * 7 % 50), 1.0 * k}};
        ASSERT_TRUE(user.drawing().add(entity).ok());
    }
    user.menu("Factor from Point Features");
    user.dialog("Create Grid from Survey Points", [](DialogWindow& window) {
        type(window, "Number of Cells in X Direction", "2000");
        type(window, "Number of Cells in Y Direction", "2000");
        type(window, "Cell Width in X Direction", "0.05");
        type(window, "Cell Width in Y Direction", "0.05");
        turnTo(window, 1);
        type(window, "Define Point Layers", "HOLES");
        click(window, "Inverse Distance");
        type(window, "Min. Points", "4");
        type(window, "Max. Search R (%)", "100");
        click(window, "Build Grid");
        EXPECT_TRUE(window.isVisible()); // back again
        clickCancel(window);
    });
    user.keys(Qt::Key_Return); // "<Enter> key to continue"
    user.whileBusy([&] { QTest::keyClick(&user.view(), Qt::Key_Escape); });
    user.work();
    EXPECT_THAT(user.history(), HasSubstr("Cancel"));
    EXPECT_THAT(user.script(), HasSubstr(":break "));
}

TEST(Window, TheProgressWindowIsCancelledByItsButtonAndKeepsItsPlace) {
    User user;
    bool cancelled = false;
    QString caption;
    addCommand(user.session(), "SOLVE", [&](host::Host& host) {
        host::CProgressWnd progress(host, "Solver");
        progress.setRange(0, 200);
        progress.setText("Step 1 ");
        progress.setPosition(50);
        for (int k = 0; k < 1'000'000 && !progress.cancelled(); ++k)
            progress.peekAndPump();
        cancelled = progress.cancelled();
    });
    user.type("SOLVE").whileBusy([&] {
        auto* dialog = user.window().findChild<QDialog*>("progressDialog");
        ASSERT_NE(dialog, nullptr);
        caption = dialog->windowTitle();
        dialog->move(77, 55);
        QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    user.look([&] {
        EXPECT_TRUE(cancelled);
        const auto& profile = user.session().host().profile();
        EXPECT_EQ(profile.read("Settings", "X"), "77");
        EXPECT_EQ(profile.read("Settings", "Y"), "55");
    });
    user.work();
    EXPECT_EQ(caption, "Solver [Step 1 25%]");
}

TEST(Window, AMillionMessagesStayReadable) {
    User user;
    addCommand(user.session(), "CHATTER", [](host::Host& host) {
        for (int k = 0; k < 1'000'000; ++k)
            host.print("\nmessage " + std::to_string(k));
    });
    user.type("CHATTER").look([&] {
        const std::string shown = user.history();
        EXPECT_NE(shown.find("message 999999"), std::string::npos);
        EXPECT_NE(shown.find("lines are not shown"), std::string::npos);
        EXPECT_LE(user.window().commands().history().blockCount(), 2000);
        EXPECT_GT(user.window().commands().history().leftOut(), 900'000);
    });
    user.work();
}

// --- unsaved work and recovery
// -------------------------------------------------------------------------

TEST(Window, ClosingWithUnsavedWorkAsks) {
    User user;
    user.type("POINT").type("1,1");
    user.look([&] { user.window().close(); }).answer("Cancel");
    user.look([&] {
        EXPECT_TRUE(user.window().isVisible());
        EXPECT_EQ(user.drawing().entityCount(), 1u);
    });
    user.look([&] { user.window().close(); }).answer("Discard");
    user.work();
    EXPECT_TRUE(user.session().lines().ended());
}

TEST(Window, SavingInTheQuestionWritesTheFile) {
    User user;
    writeDrawing(user.folder() / "plan.dxf", 2);
    user.type("OPEN plan.dxf").type("POINT").type("1,1");
    user.look([&] { user.window().close(); }).answer("Save");
    user.work();
    base::NoProgress progress;
    const auto saved = console::openDrawing(user.folder() / "plan.dxf", progress);
    ASSERT_TRUE(saved.ok());
    EXPECT_EQ(saved->database->entityCount(), 3u);
}

TEST(Window, ACrashedDrawingIsOfferedForRecovery) {
    User user;
    writeDrawing(user.folder() / "plan.dxf", 1);
    writeDrawing(drawing::autosavePath(user.folder() / "plan.dxf"), 4);
    user.answer("Recover").look([&] {
        EXPECT_EQ(user.drawing().entityCount(), 4u);
        EXPECT_TRUE(user.drawing().modified());
        EXPECT_EQ(user.drawing().path().filename(), "plan.dxf");
    });
    user.work((user.folder() / "plan.dxf").string());

    User again;
    writeDrawing(again.folder() / "plan.dxf", 1);
    writeDrawing(drawing::autosavePath(again.folder() / "plan.dxf"), 4);
    again.answer("Open as saved").look([&] {
        EXPECT_EQ(again.drawing().entityCount(), 1u);
        EXPECT_FALSE(again.drawing().modified());
    });
    again.work((again.folder() / "plan.dxf").string());
}

// --- several drawings
// --------------------------------------------------------------------------------------

TEST(Window, EachTabIsADrawingWithDataOfItsOwn) {
    User user;
    writeDrawing(user.folder() / "a.dxf", 1);
    writeDrawing(user.folder() / "b.dxf", 2);
    host::DocumentData* ofA = nullptr;
    user.type("OPEN a.dxf").look([&] { ofA = user.session().host().documentSlot().data(); });
    user.type("OPEN b.dxf").look([&] {
        EXPECT_NE(user.session().host().documentSlot().data(), ofA);
        auto* tabs = user.window().findChild<QTabBar*>("documentTabs");
        ASSERT_EQ(tabs->count(), 2);
        EXPECT_EQ(tabs->tabText(1), "b.dxf");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
    });
    user.look([&] {
        EXPECT_EQ(user.session().workspace().current().name, "a.dxf");
        EXPECT_EQ(user.session().host().documentSlot().data(), ofA);
        EXPECT_EQ(user.drawing().entityCount(), 1u);
    });
    user.work();
}

} // namespace
} // namespace tessaran::test
