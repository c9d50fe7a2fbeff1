// What is done in the window's dialogs equals what a script does, and the recorded lines are such a
// script.

#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"
#include "desktop/robot.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tessaran;
using namespace tessaran::test;
using desktop::DialogWindow;
using testing::HasSubstr;

namespace {

// A square pond of 100 in the middle of the grid, on the working layer.
void drawPond(drawing::Database& drawing) {
    host::Polyline pond;
    for (const auto& [x, y] :
         {std::pair{5200.0, 2150.0}, {5300.0, 2150.0}, {5300.0, 2250.0}, {5200.0, 2250.0}})
        pond.vertices.push_back({{x, y}, 0.0});
    pond.closed = true;
    host::Entity entity;
    entity.layer = "ZELK_Working_Layer";
    entity.geometry = pond;
    EXPECT_TRUE(drawing.createLayer({.name = "ZELK_Working_Layer"}));
    EXPECT_TRUE(drawing.add(entity));
}

void fillGridPage(DialogWindow& window) {
    type(window, "Number of Cells in X Direction", "50");
    type(window, "Number of Cells in Y Direction", "40");
    type(window, "Rotation to X axis (degree)", "0");
    click(window, "Pick a Point"); // answered by the bench: 5000,2000
}

} // namespace

TEST(Replay, AreaFactorBuiltByMouseEqualsTheScriptThatIsRecorded) {
    DialogBench bench;
    drawPond(bench.drawing());
    bench.prompts().add("5000,2000");
    const std::string file = (bench.folder() / "pond.grd").string();
    Robot robot;
    robot
        .dialog("Create Grid for Area Based Factor",
                [&](DialogWindow& window) {
                    fillGridPage(window);
                    turnTo(window, 2);
                    type(window, "Inside Boundary", "80");
                    type(window, "Outside Boundary", "20");
                    click(window, "Area Based");
                    type(window, "Min. Area Inside (%)", "50");
                    click(window, "Browse...");
                    type(window, "Grid Description", "Pond");
                    click(window, "Build Grid");
                    click(window, "Save Grid");
                    clickOk(window);
                })
        .file(file)
        .box("1 are related to the grid", "Yes")
        .box("will be saved to", "OK");
    bench.command("zelk_sFactorInArea");
    const std::string written = bench.folder().read("pond.grd");
    ASSERT_THAT(written, HasSubstr("Pond")) << bench.script() << bench.transcript();

    // Without a screen, in another folder: prompts take what was typed at them.
    std::string script = bench.script();
    const std::size_t pick = script.find(":press Pick a Point\n");
    ASSERT_NE(pick, std::string::npos) << script;
    script.insert(pick + std::string(":press Pick a Point\n").size(), "5000,2000\n");
    const std::size_t path = script.find(file);
    ASSERT_NE(path, std::string::npos) << script;
    script.replace(path, file.size(), "pond.grd");
    ScriptRun run;
    drawPond(run.drawing());
    run(script);
    EXPECT_EQ(run.status(), 0) << script << run.report();
    EXPECT_EQ(run.folder().read("pond.grd"), written);
}

TEST(Replay, RoofRatingThroughItsDialogsEqualsTheScript) {
    DialogBench bench;
    Robot robot;
    std::string rating;
    robot
        .dialog("General Information",
                [](DialogWindow& window) {
                    type(window, "Unit1/Thickness", "6");
                    click(window, "Unit1/Details...");
                    clickOk(window); // "Next..."
                    clickCancel(window);
                })
        .dialog("Underground Observation Data",
                [](DialogWindow& window) {
                    type(window, "Strength Index", "3");
                    type(window, "Number of Discontinuities", "1");
                    click(window, "Sets...");
                    type(window, "Moisture Sensitivity Index", "1");
                    choose(window, "Contact at Top of the Unit", "Strong");
                    clickOk(window);
                })
        .dialog("Discontinuities",
                [](DialogWindow& window) {
                    type(window, "Set 1/Cohesion", "2");
                    type(window, "Set 1/Roughness", "2");
                    type(window, "Set 1/Spacing", "3");
                    type(window, "Set 1/Persistence", "2");
                    clickOk(window);
                })
        .dialog("Final Data Parameters", [](DialogWindow& window) { clickCancel(window); })
        .box("", "No");
    bench.command("CMRR");
    ScriptRun run;
    run(bench.script());
    EXPECT_EQ(run.status(), 0) << bench.script() << run.report();
}
