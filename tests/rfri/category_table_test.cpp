// What the twelve pages say and do, each row as users meet it: a second table beside the one that
// the program works from, since drawings, files and habits hang on every one of its values.

#include "host/host.h"
#include "support/script_run.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace tessaran::rfri {
namespace {

using test::ScriptRun;
using testing::HasSubstr;

struct Row {
    const char* title;
    const char* layer;
    int colour;
    std::vector<std::pair<int, int>> levels; // with their influence distances
    const char* first;                       // level to begin with
    const char* drawn;                       // what the level is called
    const char* prompt;
    const char* progress;
    const char* saved;
};

const std::vector<std::pair<int, int>> kOneToFive{{1, 0}, {2, 20}, {3, 30}, {4, 40}, {5, 50}};
const std::vector<std::pair<int, int>> kOneThreeFive{{1, 0}, {3, 20}, {5, 50}};

const std::vector<Row> kRows{
    {"Angular Discontinuities",
     "RFRI_AngDisc",
     1,
     {{2, 20}, {3, 30}, {4, 40}, {5, 50}},
     "3",
     "defect",
     "[2/3/4/5] or\nSelect first point of the Angular Discontinuity:",
     "Angular Discontinuity Griding...",
     "Angular Discontinuitues"},
    {"Joint Frequencies", "RFRI_JointFreq", 2, kOneToFive, "3", "defect",
     "[1/2/3/4/5] or\nSelect first point of the Joint Frequency Area:",
     "Joint Frequency Griding...", "Joint Frequency"},
    {"Strata Strength", "RFRI_StrataStrength", 3, kOneToFive, "3", "defect",
     "[1/2/3/4/5] or\nSelect first point of the Strata Strength Area:",
     "Strata Strength Griding...", "Strata Strength"},
    {"Shear Rupture Surfaces",
     "RFRI_ShearRupt",
     4,
     {{3, 30}, {5, 50}},
     "5",
     "assessment",
     "[3/5] or\nSelect first point of the Shear Rupture Surface:",
     "Shear Rupture Surface Griding...",
     "Shear Rupture Surface"},
    {"Joint Separations",
     "RFRI_JointSep",
     5,
     {{5, 50}},
     "5",
     "assessment",
     "[5] or\nSelect first point of the Joint Separation:",
     "Joint Separation Griding...",
     "Joint Separation"},
    {"Strata Shift", "RFRI_StrataShift", 6, kOneThreeFive, "3", "defect",
     "[1/3/5] or\nSelect first point of the Strata Shift Area:", "Strata Shift Griding...",
     "Strata Shift"},
    {"Strata Separation", "RFRI_StrataSep", 30, kOneThreeFive, "3", "defect",
     "[1/3/5] or\nSelect first point of the Strata Separation Area:",
     "Strata Separation Griding...", "Strata Separation"},
    {"Rock Debris", "RFRI_RockDebris", 60, kOneToFive, "3", "defect",
     "[1/2/3/4/5] or\nSelect first point of the Rock Debris Area:", "Rock Debris Griding...",
     "Rock Debris"},
    {"Roof Shape", "RFRI_RoofShape", 94, kOneThreeFive, "3", "defect",
     "[1/3/5] or\nSelect first point of the Roof Shape Area:", "Roof Shape Griding...",
     "Roof Shape"},
    {"Ground Water", "RFRI_Water", 140, kOneToFive, "3", "defect",
     "[1/2/3/4/5] or\nSelect first point of the Ground Water Area:", "Ground Water Griding...",
     "Ground Water"},
    {"Seismic Activity",
     "RFRI_Seismic",
     192,
     {{-5, 0}, {0, 20}, {25, 50}},
     "0",
     "defect",
     "[-5/0/25] or\nSelect first point of the Seismic Activity Area:",
     "Seismic Activity Griding...",
     "Seismic Activity"},
    {"Roof Def. Rate",
     "RFRI_RoofDefRate",
     200,
     {{-5, 0}, {0, 20}, {15, 30}, {30, 50}},
     "0",
     "defect",
     "[-5/0/15/30] or\nSelect first point of the Roof Deformation Rate Area:",
     "Roof Deformation Rate Griding...",
     "Roof Deformation Rate"},
};

// One defect of the level to begin with, gridded and saved.
std::string drawnAndGridded(const Row& row) {
    return fmt::format(":page {}\n:press Draw\n0,0\n30,30\n\n\n:press Build Grid\n\n"
                       ":press Save Grid\n",
                       row.title);
}

TEST(CategoryTable, EveryPageDrawsGridsAndSavesInItsOwnWords) {
    ScriptRun run;
    std::string script = "zelk_RFRI_Draw\n";
    for (const Row& row : kRows)
        script += drawnAndGridded(row);
    run(script + ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.title);
        EXPECT_THAT(run.transcript(), HasSubstr(fmt::format("\nThe current {} level = {}\nChange "
                                                            "defect level {}",
                                                            row.drawn, row.first, row.prompt)));
        EXPECT_THAT(run.transcript(),
                    HasSubstr(fmt::format("\nTotal number of features found: 1 in Layers: {}\n",
                                          row.layer)));
        EXPECT_THAT(run.transcript(),
                    HasSubstr(fmt::format("(question) {} values will be saved to < ", row.saved)));
        EXPECT_THAT(run.folder().read(fmt::format("{}.grd", row.layer)),
                    HasSubstr(fmt::format("\r\n{}\r\n", row.title)));
        ASSERT_TRUE(run.drawing().layer(row.layer));
        EXPECT_EQ(run.drawing().layer(row.layer)->colour, row.colour);
    }
}

TEST(CategoryTable, EveryLevelHasItsDistance) {
    ScriptRun run;
    std::string script = "zelk_RFRI_Draw\n";
    std::string expected;
    for (const Row& row : kRows)
        for (const auto& [level, distance] : row.levels) {
            script += fmt::format(":page {}\n:set Defect Level = {}\n:show\n", row.title, level);
            expected += fmt::format("{} {} {};", row.title, level, distance);
        }
    run(script + ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    // What the page in front showed after each change.
    std::string shown;
    const std::string& text = run.transcript();
    const auto valueAfter = [&](std::string_view label, std::size_t from) {
        const std::size_t at = text.find(label, from) + label.size();
        return text.substr(at, text.find('\n', at) - at);
    };
    for (std::size_t at = 0; (at = text.find(" (in front)", at)) != std::string::npos; ++at) {
        const std::size_t title = text.rfind("page ", at) + 5;
        shown +=
            fmt::format("{} {} {};", text.substr(title, at - title),
                        valueAfter("Defect Level = ", at), valueAfter("Influence Distance = ", at));
    }
    EXPECT_EQ(shown, expected);
}

TEST(CategoryTable, EveryBuildNamesItselfInTheStatusBar) {
    const test::TemporaryFolder folder;
    std::string script = "zelk_RFRI_Draw\n";
    for (const Row& row : kRows)
        script += drawnAndGridded(row);
    folder.write("draw.scr", script + ":ok\n");
    ASSERT_EQ(std::system(TESSARAN_PROGRAM " run draw.scr --progress >out.log 2>err.log"), 0);
    for (const Row& row : kRows)
        EXPECT_THAT(folder.read("err.log"), HasSubstr(row.progress));
}

} // namespace
} // namespace tessaran::rfri
