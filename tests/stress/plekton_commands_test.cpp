#include "grid/my_grid.h"
#include "stress/result_reader.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::stress {
namespace {

using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

// Ten by twenty elements of elastic coal 12,000 in deep with two open ones; results in feet.
std::string smallModel(int steps = 1) {
    std::string text = "A small model\n0.25, 3000000, 600, 1, 1\n1\n1, 300000, 0, 0, 0, 0\n"
                       "120, 10, 20, 0.09\n24000, 36000, -12000, 72\n1.35, 0.00001, 5000, 1, " +
                       std::to_string(steps) + ", 0, 0, 0\n1, 1, 1, 1\n";
    for (int step = 0; step < steps; ++step)
        for (int row = 0; row < 20; ++row)
            text += row == 4 ? "AAAA11AAAA\n" : "AAAAAAAAAA\n";
    return text;
}

TEST(Plekton, RunsAModelAndNamesItsFiles) {
    ScriptRun run;
    run.folder().write("small.inp", smallModel());
    run("zelk_plekton\n:set Input File Name: (.inp) = small.inp\n:press Run\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("Plekton Stress Calculation is ready to run, <Enter> to continue ..."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Plekton was finished successfully!\nResults were saved to "
                          "File(s):\n\t<small.f1> for Seam 1\nTo transfer results"));
    const std::string results = run.folder().read("small.f1");
    // Lengths of the header and of the convergence stand in feet.
    EXPECT_TRUE(
        results.starts_with("  1,     200,           10,  10,  20,         2000,         3000\n"))
        << results.substr(0, 80);
    EXPECT_THAT(run.folder().read("small.out"), HasSubstr("SOR took "));
}

TEST(Plekton, TellsWhatIsWrongAndWritesNothing) {
    ScriptRun run;
    run.folder().write("bad.inp", "title only\n");
    run("zelk_plekton\n:set Input File Name: (.inp) = bad.inp\n:press Run\n"
        ":set Input File Name: (.inp) = none.inp\n:press Run\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Error reading the host properties - RI2a"));
    EXPECT_THAT(run.transcript(), HasSubstr("Error in Opening Input File - RI1a"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Plekton was finished unsuccessfully!"));
    EXPECT_FALSE(std::filesystem::exists("bad.out"));
    EXPECT_FALSE(std::filesystem::exists("bad.f1"));
}

TEST(Transfer, TurnsOneItemOfOneStepIntoAGrid) {
    ScriptRun run;
    run.folder().write("two.f1",
                       "  2,       4,           10,   2,   2,          100,          200\n"
                       "  2,Seam Convergence         ,Total Vertical Stress    \n"
                       "  2,                       ft,                      psi\n"
                       "1, 10\n2, 20\n3, 30\n4, 40\n5, 50\n6, 60\n7, 70\n8, 80\n");
    run("zelk_convPlekGrid\n:press Select\n:file two.f1\n:show\n:select List = 4\n"
        ":press Transfer\n:file stress.grd\n:press Preview\n:ok\nSETVAR VIEWCTR\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("VIEWCTR <110,210,0>")) << "the preview zooms to it";
    EXPECT_THAT(run.transcript(), HasSubstr("Current Plekton File: two.f1"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) Convert the item: Total Vertical Stress<2> in step 2 -> ok"));
    EXPECT_THAT(run.transcript(), HasSubstr("stress.grd is saved!"));
    grid::myGrid grid;
    ASSERT_TRUE(grid.readGrid(run.host(), "stress.grd", true));
    EXPECT_EQ(grid.title(), "Total Vertical Stress");
    EXPECT_EQ(grid.origin().x, 100.0);
    EXPECT_EQ(grid.cellWidthX(), 10.0);
    EXPECT_EQ(grid.getValue(0, 0), 50.0); // columns outer, rows inner
    EXPECT_EQ(grid.getValue(0, 1), 60.0);
    EXPECT_EQ(grid.getValue(1, 0), 70.0);
}

TEST(Transfer, TakesPlaceAndTurnOfTheBaseGridThatItLiesOn) {
    ScriptRun run;
    run.folder().write(
        "m.f1", "  1,       4,           10,   2,   2,   1.2346e+05,         -200\n"
                "  1,Seam Convergence         \n  1,                       ft\n1\n2\n3\n4\n");
    const auto base = [](const char* x) {
        return std::string("zelk_seamGrid\n:set Number of Cells in X Direction = 2\n"
                           ":set Number of Cells in Y Direction = 2\n"
                           ":set Cell Width in X Direction = 10\n"
                           ":set Cell Width in Y Direction = 10\n"
                           ":set Rotation to X axis (degree) = 30\n"
                           ":set Y Coordinate of Grid Origin = -200\n"
                           ":set X Coordinate of Grid Origin = ") +
               x + "\n:page Seam Grid\n:ok\n";
    };
    const std::string transfer = "zelk_convPlekGrid\n:press Select\n:file m.f1\n"
                                 ":select List = #1\n:press Transfer\n:file ";
    run(base("123456.75") + transfer +
        "same.grd\n:expect Grid files do not hold the rotation of a grid!\n:ok\n" + base("123444") +
        transfer + "other.grd\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    grid::myGrid grid;
    ASSERT_TRUE(grid.readGrid(run.host(), "same.grd", true));
    EXPECT_EQ(grid.origin().x, 123456.75) << "prints as 1.2346e+05";
    ASSERT_TRUE(grid.readGrid(run.host(), "other.grd", true));
    EXPECT_EQ(grid.origin().x, 123460.0) << "123444 would print as 1.2344e+05";
}

TEST(Transfer, NamesTheFirstMissingLine) {
    ScriptRun run;
    run.folder().write("cut.f1", "1,4,10,2,2,0,0\n1,A\n1,ft\n1\n2\n3\n");
    run("zelk_convPlekGrid\n:press Transfer\n:press Select\n:file cut.f1\n:select List = #1\n"
        ":press Transfer\n:file a.grd\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) No items were selected!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("Read an empty line in the input file for row 1 col 1"));
    EXPECT_FALSE(std::filesystem::exists("a.grd"));
}

TEST(ResultHeaders, AreRefusedByTheirMessages) {
    const auto refused = [](std::string_view text) {
        const auto header = parseResultHeader(text, text.size());
        return header ? std::string("read") : header.error().text;
    };
    EXPECT_EQ(refused(""), "Read an empty line in the input file - CHR2-1");
    EXPECT_EQ(refused("1,2,3\n"), "Only Read  3 Fields from Header Buffer");
    EXPECT_EQ(refused("1,4,10,2,2,0,0\n\n"), "Read an empty line in the input file - CHR2-2");
    EXPECT_EQ(refused("1,4,10,2,2,0,0\n1,A\n"), "Read an empty line in the input file - CHR2-3");
    EXPECT_EQ(refused("1,2000000000,10,50000,40000,0,0\n1,A\n1,ft\n"),
              "The header of the result file is not correct");
    EXPECT_EQ(refused("-1,4,10,2,2,0,0\n1,A\n1,ft\n"),
              "The header of the result file is not correct");
}

} // namespace
} // namespace tessaran::stress
