// Prompts answered by mouse and by keyboard, and what of it a script repeats.

#include "console/entity_text.h"
#include "support/script_run.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

namespace tessaran::test {
namespace {

using desktop::SnapKind;
using host::Point2;
using ::testing::HasSubstr;

std::vector<std::string> described(const drawing::Database& drawing) {
    std::vector<std::string> out;
    drawing.forEachEntity([&](const drawing::EntityRecord& record) {
        out.push_back(console::describe(record.entity));
    });
    return out;
}

// What the recorded lines make of an empty drawing, without a window.
std::vector<std::string> replayed(const std::string& script) {
    ScriptRun run;
    run(script);
    EXPECT_EQ(run.status(), 0) << run.report() << script;
    return described(run.drawing());
}

const host::Polyline& polylineOf(const drawing::Database& drawing) {
    return std::get<host::Polyline>(drawing.find(drawing.lastEntity())->geometry);
}

host::EntityId addLine(drawing::Database& drawing, Point2 from, Point2 to) {
    host::Entity entity;
    entity.geometry = host::Line{{from.x, from.y, 0.0}, {to.x, to.y, 0.0}};
    return *drawing.add(entity);
}

TEST(WindowPrompts, APolylineByMouseIsTheOneByKeyboard) {
    User mouse;
    mouse.type("PLINE").clickAt({10, 10}).clickAt({40, 10}).clickAt({40, 30}).keyword("Close");
    std::vector<std::string> made;
    mouse.look([&] {
        ASSERT_EQ(mouse.drawing().entityCount(), 1u);
        const host::Polyline& drawn = polylineOf(mouse.drawing());
        ASSERT_EQ(drawn.vertices.size(), 3u);
        EXPECT_TRUE(drawn.closed);
        const double pixel = mouse.drawing().view().unitsPerPixel();
        EXPECT_NEAR(drawn.vertices[0].at.x, 10.0, pixel);
        EXPECT_NEAR(drawn.vertices[2].at.y, 30.0, pixel);
        made = described(mouse.drawing());
    });
    mouse.work();
    EXPECT_EQ(replayed(mouse.script()), made);

    User keyboard;
    keyboard.type("pline").type("10,10").type("@30,0").type("40,30").type("c");
    keyboard.look([&] {
        const host::Polyline& drawn = polylineOf(keyboard.drawing());
        ASSERT_EQ(drawn.vertices.size(), 3u);
        EXPECT_EQ(drawn.vertices[1].at, (Point2{40, 10}));
        EXPECT_TRUE(drawn.closed);
    });
    keyboard.work();
    EXPECT_EQ(keyboard.script(), "pline\n10,10\n@30,0\n40,30\nc\n");
}

TEST(WindowPrompts, KeysOverTheDrawingGoToTheCommandLine) {
    User user;
    user.look([&] { QTest::keyClicks(&user.view(), "POINT"); });
    user.keys(Qt::Key_Return).look([&] { QTest::keyClicks(&user.view(), "5,6"); });
    user.keys(Qt::Key_Return).look([&] { EXPECT_EQ(user.drawing().entityCount(), 1u); });
    user.work();
}

TEST(WindowPrompts, EscapeCancelsAndEnterEnds) {
    User user;
    user.type("PLINE").clickAt({10, 10}).escape();
    user.look([&] {
        EXPECT_EQ(user.drawing().entityCount(), 0u);
        EXPECT_TRUE(user.session().lines().atCommandPrompt());
    });
    user.type("PLINE").clickAt({10, 10}).clickAt({20, 20}).keys(Qt::Key_Return);
    user.look([&] { EXPECT_EQ(user.drawing().entityCount(), 1u); });
    user.work();
    EXPECT_THAT(user.script(), HasSubstr("^C\n"));
}

TEST(WindowPrompts, ARefusedAnswerIsAskedAgainAndLeftOutOfTheScript) {
    User user;
    user.type("NOSUCH").type("POINT").type("five").type("5,5");
    user.look([&] {
        EXPECT_THAT(user.history(), HasSubstr("Unknown command \"NOSUCH\"."));
        EXPECT_THAT(user.history(), HasSubstr("\"five\" is not a point"));
        EXPECT_EQ(user.drawing().entityCount(), 1u);
    });
    user.work();
    EXPECT_EQ(user.script(), "POINT\n5,5\n");
}

TEST(WindowPrompts, SnapsGiveExactPlacesAndOrthoKeepsTheAxis) {
    User user;
    addLine(user.drawing(), {10.123456789, 10}, {30, 20});
    addLine(user.drawing(), {10, 20}, {30, 10});
    desktop::SnapModes modes;
    modes.set(SnapKind::end, true);
    modes.set(SnapKind::intersection, true);
    user.look([&] { user.view().setSnaps(modes); });
    user.type("LINE").clickAt({10.3, 9.8});
    user.look([&] {
        user.view().setSnaps({});
        user.view().setOrtho(true);
    });
    user.clickAt({50, 12}).enter();
    user.look([&] {
        const auto& line =
            std::get<host::Line>(user.drawing().find(user.drawing().lastEntity())->geometry);
        EXPECT_EQ(line.start, (host::Point3{10.123456789, 10, 0}));
        EXPECT_EQ(line.end.y, 10.0);
        EXPECT_NEAR(line.end.x, 50.0, 0.2);
    });
    user.work();
}

TEST(WindowPrompts, BoxesToTheRightTakeWhatIsInsideToTheLeftWhatTheyTouch) {
    User user;
    const auto inside = addLine(user.drawing(), {20, 20}, {30, 20});
    const auto across = addLine(user.drawing(), {35, 25}, {80, 25});
    user.type("LIST").drag({15, 15}, {40, 30}).enter();
    user.look([&] {
        EXPECT_EQ(user.session().workspace().current().previousSelection, std::vector{inside});
    });
    user.type("LIST").clickAt({40, 30}).clickAt({15, 15}).enter();
    user.look([&] {
        EXPECT_EQ(user.session().workspace().current().previousSelection,
                  (std::vector{inside, across}));
    });
    user.work();
    EXPECT_THAT(user.script(), HasSubstr("window "));
    EXPECT_THAT(user.script(), HasSubstr("crossing "));
}

TEST(WindowPrompts, AFenceByClicksTakesWhatItCrosses) {
    User user;
    const auto a = addLine(user.drawing(), {20, 20}, {20, 30});
    addLine(user.drawing(), {20, 40}, {20, 50});
    const auto c = addLine(user.drawing(), {60, 20}, {60, 30});
    user.type("LIST").keyword("Fence").clickAt({10, 25}).clickAt({40, 25}).clickAt({70, 25});
    user.enter().enter();
    user.look([&] {
        EXPECT_EQ(user.session().workspace().current().previousSelection, (std::vector{a, c}));
    });
    user.work();
}

TEST(WindowPrompts, SelectedObjectsAreTheCommandsAnswer) {
    User user;
    addLine(user.drawing(), {20, 20}, {30, 20});
    addLine(user.drawing(), {20, 40}, {30, 40});
    user.clickAt({25, 20}).look([&] { EXPECT_EQ(user.view().selection().size(), 1u); });
    user.menu("Erase");
    user.look([&] {
        EXPECT_EQ(user.drawing().entityCount(), 1u);
        EXPECT_TRUE(user.view().selection().empty());
    });
    user.menu("Undo ERASE").look([&] { EXPECT_EQ(user.drawing().entityCount(), 2u); });
    user.menu("Redo ERASE").look([&] { EXPECT_EQ(user.drawing().entityCount(), 1u); });
    user.work();
}

TEST(WindowPrompts, APickThatHitsNothingMissesInTheScriptToo) {
    User user;
    addLine(user.drawing(), {20, 20}, {30, 20});
    std::vector<host::PromptStatus> status;
    addCommand(user.session(), "PICKTWICE", [&](host::Host& host) {
        status.push_back(host.prompts().pickEntity({.message = "\nPick:"}).status);
        status.push_back(host.prompts().pickEntity({.message = "\nPick:"}).status);
    });
    user.type("PICKTWICE").clickAt({60, 50}).clickAt({25, 20});
    user.work();
    EXPECT_EQ(status, (std::vector{host::PromptStatus::missed, host::PromptStatus::ok}));
    EXPECT_THAT(user.script(), HasSubstr("#0 "));

    ScriptRun run;
    addLine(run.drawing(), {20, 20}, {30, 20});
    std::vector<host::PromptStatus> again;
    run.state().commands.add(console::Command{
        "TEST", "PICKTWICE", "PICKTWICE", [&] {
            for (int k = 0; k < 2; ++k)
                again.push_back(run.host().prompts().pickEntity({.message = "\nPick:"}).status);
        }});
    run(user.script());
    EXPECT_EQ(again, status) << run.report();
}

TEST(WindowPrompts, ADistanceIsTwoClicksOrANumber) {
    User user;
    std::vector<double> got;
    addCommand(user.session(), "FAR", [&](host::Host& host) {
        const host::Point3 base{10, 10, 0};
        got.push_back(host.prompts().getDistance({.message = "\nHow far:", .base = base}).value);
        got.push_back(host.prompts().getDistance({.message = "\nHow far:"}).value);
    });
    user.type("FAR").clickAt({40, 50}).type("7.5");
    user.work();
    ASSERT_EQ(got.size(), 2u);
    EXPECT_NEAR(got[0], 50.0, 0.2);
    EXPECT_EQ(got[1], 7.5);
}

TEST(WindowPrompts, AMenuItemCancelsWhatRuns) {
    User user;
    user.type("PLINE").clickAt({10, 10}).menu("Point").clickAt({30, 30});
    user.look([&] {
        ASSERT_EQ(user.drawing().entityCount(), 1u);
        EXPECT_EQ(host::dxfName(*user.drawing().find(user.drawing().lastEntity())), "POINT");
    });
    user.work();
    EXPECT_THAT(replayed(user.script()), ::testing::SizeIs(1));
}

} // namespace
} // namespace tessaran::test
