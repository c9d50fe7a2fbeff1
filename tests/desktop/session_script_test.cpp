// "Save Session as Script": what it writes makes the same files without a window.

#include "console/drawing_files.h"
#include "support/script_run.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTabBar>
#include <QTest>

namespace tessaran::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

void writeDrawing(const std::filesystem::path& path, int points) {
    drawing::Database drawing;
    for (int k = 0; k < points; ++k) {
        host::Entity entity;
        entity.geometry = host::PointMark{{1.0 * k, 1.0, 0.0}};
        ASSERT_TRUE(drawing.add(entity).ok());
    }
    ASSERT_TRUE(console::saveCopy(drawing, path).ok());
}

// Step: the session so far, as "File > Save Session as Script" writes it.
void save(User& user, std::string& script) {
    user.look([&user, &script] {
        const auto path = user.folder() / "session.scr";
        user.window().saveSessionScript(QString::fromStdString(path.string()));
        script = user.folder().read("session.scr");
    });
}

void clickTab(User& user, int index) {
    user.look([&user, index] {
        auto* tabs = user.window().findChild<QTabBar*>("documentTabs");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
    });
}

TEST(SessionScript, MakesTheSameDrawing) {
    User user;
    writeDrawing(user.folder() / "plan.dxf", 3);
    std::string script;
    user.type("OPEN plan.dxf").type("LAYER").type("Make").type("PANELS").enter();
    user.type("PLINE").clickAt({0.2, 0.2}).clickAt({1.5, 0.3}).keyword("Width").type("0.25");
    user.clickAt({1.6, 1.4}).keyword("Close");
    user.type("MOVE").clickAt({0, 1}).enter().type("0,0").type("5,5");
    save(user, script);
    user.type("SAVEAS").type("by_hand.dxf");
    user.work();
    ASSERT_THAT(script, StartsWith("; tessaran run SCRIPT --drawing plan.dxf\nLAYER\n"));
    const std::string byHand = user.folder().read("by_hand.dxf");

    ScriptRun run;
    writeDrawing(run.folder() / "plan.dxf", 3);
    run.open("plan.dxf");
    run(script + "SAVEAS\nby_script.dxf\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.folder().read("by_script.dxf"), byHand);
    EXPECT_GT(byHand.size(), 1000u);
}

// Answers may stand behind the command's name; what is refused of them is asked for again.
TEST(SessionScript, KeepsWhatWasUsedOfALineWhoseEndWasRefused) {
    User user;
    user.type("POINT five").type("5,5");
    user.type("PLINE 10,10 20,10 here 20,20").type("20,20").enter();
    user.type("LINE 1,1").type("there").type("2,2").enter();
    user.type("ZOOM E too much");
    user.type("SAVEAS by_hand.dxf");
    user.work();
    EXPECT_THAT(user.history(), HasSubstr("\"here\" is not a point"));
    EXPECT_THAT(user.history(), HasSubstr("\"too much\" was not asked for"));
    const std::string byHand = user.folder().read("by_hand.dxf");

    ScriptRun run;
    run(user.script());
    EXPECT_EQ(run.status(), 0) << run.report() << user.script();
    EXPECT_EQ(run.drawing().entityCount(), 3u);
    EXPECT_EQ(run.folder().read("by_hand.dxf"), byHand) << user.script();
}

TEST(SessionScript, LeavesOutACommandThatFailed) {
    User user;
    addCommand(user.session(), "FAILS", [](host::Host& host) {
        static_cast<void>(host.prompts().getReal({.message = "\nHow much:"}));
        throw std::runtime_error("no room");
    });
    user.type("FAILS").type("7").type("POINT 1,1");
    user.work();
    EXPECT_THAT(user.history(), HasSubstr("FAILS failed: no room"));
    EXPECT_EQ(user.script(), "POINT 1,1\n");
}

// Two drawings, with work in the one opened first after the other was opened.
TEST(SessionScript, GoesBackToAnEarlierDrawing) {
    User user;
    writeDrawing(user.folder() / "a.dxf", 1);
    writeDrawing(user.folder() / "b.dxf", 2);
    std::string script;
    user.type("OPEN a.dxf").type("POINT 7,7").type("OPEN b.dxf").type("POINT 8,8");
    clickTab(user, 0);
    user.type("POINT 9,9").type("SAVEAS a2.dxf");
    clickTab(user, 1);
    user.type("POINT 6,6").type("SAVEAS b2.dxf");
    save(user, script);
    user.work();
    EXPECT_THAT(script, Not(HasSubstr("--drawing")));
    EXPECT_THAT(script, HasSubstr("DOCUMENT\na.dxf\n"));

    ScriptRun run;
    writeDrawing(run.folder() / "a.dxf", 1);
    writeDrawing(run.folder() / "b.dxf", 2);
    run(script);
    EXPECT_EQ(run.status(), 0) << run.report() << script;
    EXPECT_EQ(run.folder().read("a2.dxf"), user.folder().read("a2.dxf"));
    EXPECT_EQ(run.folder().read("b2.dxf"), user.folder().read("b2.dxf"));
    EXPECT_THAT(run.folder().read("a2.dxf"), Not(::testing::IsEmpty()));
}

// A tab that is not in front is closed: the window moves there and back in between.
TEST(SessionScript, ClosesATabBehind) {
    User user;
    writeDrawing(user.folder() / "a.dxf", 1);
    writeDrawing(user.folder() / "b.dxf", 2);
    std::string script;
    user.type("OPEN a.dxf").type("OPEN b.dxf").look([&] {
        auto* tabs = user.window().findChild<QTabBar*>("documentTabs");
        QWidget* cross = tabs->tabButton(0, QTabBar::RightSide);
        if (cross == nullptr)
            cross = tabs->tabButton(0, QTabBar::LeftSide);
        ASSERT_NE(cross, nullptr);
        QTest::mouseClick(cross, Qt::LeftButton);
    });
    user.type("POINT 8,8").type("SAVEAS b2.dxf");
    save(user, script);
    user.work();

    ScriptRun run;
    writeDrawing(run.folder() / "a.dxf", 1);
    writeDrawing(run.folder() / "b.dxf", 2);
    run(script);
    EXPECT_EQ(run.status(), 0) << run.report() << script;
    EXPECT_EQ(run.folder().read("b2.dxf"), user.folder().read("b2.dxf"));
}

// The question of QUIT comes for each drawing: given up, saved, and cancelled in the end.
TEST(SessionScript, SavesTheDrawingThatWasAskedAbout) {
    const auto prepare = [](const TemporaryFolder& folder) {
        for (const char* name : {"a.dxf", "b.dxf", "c.dxf"})
            writeDrawing(folder / name, 1);
    };
    User user;
    prepare(user.folder());
    std::string script;
    for (const char* name : {"a.dxf", "b.dxf", "c.dxf"})
        user.type(std::string("OPEN ") + name).type("POINT 7,7");
    user.look([&] { user.window().close(); }).answer("Discard").answer("Save").answer("Cancel");
    user.look([&] { EXPECT_EQ(user.session().workspace().current().name, "b.dxf"); });
    save(user, script);
    user.work();

    ScriptRun run;
    prepare(run.folder());
    run(script);
    EXPECT_EQ(run.status(), 0) << run.report() << script;
    EXPECT_EQ(run.host().workspace().current().name, "b.dxf");
    EXPECT_FALSE(run.drawing().modified());
    for (const char* name : {"a.dxf", "b.dxf", "c.dxf"})
        EXPECT_EQ(run.folder().read(name), user.folder().read(name)) << name;
}

} // namespace
} // namespace tessaran::test
