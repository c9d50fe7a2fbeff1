// Drawing defects, their grids and the final calculation through the console.

#include "grid/base_grid.h"
#include "grid/my_grid.h"
#include "host/host.h"
#include "host/services_layers.h"
#include "rfri/categories.h"
#include "support/other_programs.h"
#include "support/script_run.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::rfri {
namespace {

using host::EntityId;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

// 5 x 2 cells of 10.
const std::string kOpen = "zelk_RFRI_Draw\n"
                          ":set Number of Cells in X Direction = 5\n"
                          ":set Number of Cells in Y Direction = 2\n"
                          ":set Cell Width in X Direction = 10\n"
                          ":set Cell Width in Y Direction = 10\n"
                          ":set Rotation to X axis (degree) = 0\n"
                          ":set X Coordinate of Grid Origin = 0\n"
                          ":set Y Coordinate of Grid Origin = 0\n";

EntityId addDefect(ScriptRun& run, const std::string& layer, double width,
                   const std::vector<host::Point2>& points,
                   host::Polyline::Form form = host::Polyline::Form::light) {
    host::ensureLayer(run.host(), layer, 7);
    host::Polyline line;
    line.form = form;
    for (const host::Point2 p : points)
        line.vertices.push_back({p, 0.0, form == host::Polyline::Form::old ? width : 0.0,
                                 form == host::Polyline::Form::old ? width : 0.0});
    line.constantWidth = width;
    return *run.drawing().add({{}, layer, 256, "ByLayer", line});
}

// The cells of a saved grid, the top row first.
std::vector<double> cells(ScriptRun& run, const std::string& file) {
    grid::myGrid grid;
    EXPECT_TRUE(grid.readGrid(run.host(), file, true)) << file;
    std::vector<double> out;
    for (int j = grid.nY() - 1; j >= 0; --j)
        for (int i = 0; i < grid.nX(); ++i)
            out.push_back(grid.getValue(i, j));
    return out;
}

using Cells = std::vector<double>;

std::vector<const host::Polyline*> polylinesOn(ScriptRun& run, const std::string& layer) {
    std::vector<const host::Polyline*> out;
    for (const EntityId id : run.drawing().select(host::SelectionFilter{{layer}, {}, {}}))
        out.push_back(&std::get<host::Polyline>(run.drawing().find(id)->geometry));
    return out;
}

TEST(DefectDialog, ShowsAPageForEachCategoryAfterTheGrid) {
    ScriptRun run;
    std::string script = "zelk_RFRI_Draw\n";
    for (const Category& category : categories())
        script += fmt::format(":page {}\n", category.description);
    run(script + ":show\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nLeaving the RFRI Drawing Menus!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Defect Level"));
}

TEST(DefectDraw, MakesPolylinesOfTheLevelsWidth) {
    ScriptRun run;
    run(kOpen + ":page Angular Discontinuities\n:press Draw\n"
                "0,5\n20,5\n30,15\n\n" // level 3 by default
                "5\n40,0\n40,20\n\n"   // another level
                "7,7\n\n"              // one point is no line
                "\n:show\n"
                ":page Roof Def. Rate\n:set Defect Level = -5\n:press Draw\n1,1\n2,2\n\n^C\n"
                ":page Joint Separations\n:press Draw\n\n:ok\n"
                "SETVAR\nCLAYER\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nThe current defect level = 3\nChange defect level [2/3/4/5] or\n"
                          "Select first point of the Angular Discontinuity:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nThe current defect level = 5"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSpecify next point:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nChange defect level [-5/0/15/30] or\nSelect first "
                                            "point of the Roof Deformation Rate Area:"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nThe current assessment level = 5\nChange defect level [5] or\nSelect "
                          "first point of the Joint Separation:"));
    const auto drawn = polylinesOn(run, "RFRI_AngDisc");
    ASSERT_EQ(drawn.size(), 2u);
    EXPECT_EQ(drawn[0]->constantWidth, 3.0);
    EXPECT_EQ(drawn[0]->vertices.size(), 3u);
    EXPECT_FALSE(drawn[0]->closed);
    EXPECT_EQ(drawn[1]->constantWidth, 5.0);
    EXPECT_EQ(polylinesOn(run, "RFRI_RoofDefRate").at(0)->constantWidth, -5.0);
    EXPECT_EQ(run.drawing().layer("RFRI_RoofDefRate")->colour, 200);
    EXPECT_EQ(run.drawing().currentLayer(), "RFRI_JointSep");
    const auto& records = host::documentRecord<CategoryRecords>(run.host().documentSlot());
    EXPECT_EQ(records.records[0].level, 3) << "the index of level 5";
    EXPECT_EQ(records.records[11].level, 0);
}

// Also levels that are negative, as no line's width is.
TEST(DefectDraw, LevelsAreReadByAnotherProgramAndReadBackFromIt) {
    ScriptRun run;
    run.saveTo("drawn.dxf");
    run("zelk_RFRI_Draw\n:page Seismic Activity\n:press Draw\n-5\n0,0\n30,0\n\n25\n0,5\n30,5\n\n"
        "\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const auto seen = test::runScript(TESSARAN_SOURCE_DIR "/tests/rfri/check_defects.py",
                                      "drawn.dxf rewritten.dxf");
    EXPECT_EQ(seen.output, "RFRI_Seismic -5.0\nRFRI_Seismic 25.0\n");

    ScriptRun back;
    back.folder().write("rewritten.dxf", run.folder().read("rewritten.dxf"));
    back.open("rewritten.dxf");
    back(kOpen + ":page Seismic Activity\n:press Build Grid\n\n:press Save Grid\n:ok\n");
    ASSERT_EQ(back.status(), 0) << back.report();
    EXPECT_EQ(polylinesOn(back, "RFRI_Seismic").at(1)->constantWidth, -5.0);
    EXPECT_THAT(back.transcript(), HasSubstr("\n2 features have levels of 1 and below"));
}

TEST(DefectDraw, NeedsALevel) {
    ScriptRun run;
    host::documentRecord<CategoryRecords>(run.host().documentSlot()).records[8].level = 7;
    run("zelk_RFRI_Draw\n:page Roof Shape\n:press Draw\n:set Defect Level = 5\n:press Draw\n"
        "1,1\n2,2\n\n\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nPlease enter a valid defect level before drawing\n:set"));
    EXPECT_EQ(polylinesOn(run, "RFRI_RoofShape").at(0)->constantWidth, 5.0);
}

TEST(DefectBuild, NeedsAGridOfTwoRows) {
    ScriptRun run;
    run(kOpen + ":set Number of Cells in Y Direction = 1\n:page Roof Shape\n:press Build Grid\n"
                ":press Save Grid\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid initialization error!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid has not been built yet!"));
}

TEST(DefectBuild, GridsWhatLiesInReach) {
    ScriptRun run;
    addDefect(run, "RFRI_AngDisc", 4, {{25, 0}, {25, 20}});
    addDefect(run, "RFRI_AngDisc", 7, {{5, 0}, {5, 20}}); // no level
    addDefect(run, "RFRI_AngDisc", 2.9, {{45, 0}, {45, 20}}, host::Polyline::Form::old);
    addDefect(run, "RFRI_JointFreq", 5, {{5, 0}, {5, 20}}); // another category
    const EntityId varying =
        addDefect(run, "RFRI_AngDisc", 0, {{15, 0}, {15, 20}}, host::Polyline::Form::old);
    host::Entity entity = *run.drawing().find(varying);
    std::get<host::Polyline>(entity.geometry).vertices[0].endWidth = 5;
    ASSERT_TRUE(run.drawing().modify(entity).ok());
    run(kOpen + ":page Angular Discontinuities\n"
                ":set Defect Level = 4\n:set Influence Distance = 10\n"
                ":set Defect Level = 2\n:set Influence Distance = 0\n"
                ":press Save Grid\n:press Edit Grid\n"
                ":press Build Grid\n\n:press Save Grid\n:answer ok\n:show\n"
                ":press Edit Grid\n5,5\n\n2\n\nYES\n"
                ":press Build Grid\n:answer cancel\n"
                ":press Save Grid\n:ok\n"
                "zelk_RFRI_Draw\n:page Angular Discontinuities\n:show\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid has not been built yet!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) The Grid needs to be defined and built before editing!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nTotal number of features found: 4 in Layers: RFRI_AngDisc\n <Enter> "
                          "key to continue ..."));
    EXPECT_THAT(run.transcript(), HasSubstr("has no constant width and is skipped"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) Angular Discontinuitues values will be saved to < "));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) Old grid is not saved yet! Please save the grid -> cancel"));
    EXPECT_THAT(run.transcript(), HasSubstr("was successfully read into the grid"));
    EXPECT_EQ(cells(run, "RFRI_AngDisc.grd"), (Cells{1, 4, 4, 4, 2, 2, 4, 4, 4, 2}));
    EXPECT_TRUE(run.state().graphics.graphics().empty());
    EXPECT_TRUE(run.state().graphics.highlighted().empty());
    const auto& records = host::documentRecord<CategoryRecords>(run.host().documentSlot());
    EXPECT_EQ(records.records[0].distances, (std::vector<double>{0, 30, 10, 50}));
}

TEST(DefectBuild, FallsOffWhereGraduatedAndTellsOfLevelsBelowTheBackground) {
    ScriptRun run;
    addDefect(run, "RFRI_Seismic", 25, {{5, 0}, {5, 20}});
    addDefect(run, "RFRI_Seismic", -5, {{0, 5}, {50, 5}});
    run(kOpen + ":page Seismic Activity\n:set Defect Level = 25\n:set Influence Distance = 50\n"
                ":check Graduated\n:press Build Grid\n\n:press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(cells(run, "RFRI_Seismic.grd"), (Cells{25, 20, 15, 10, 5, 25, 20, 15, 10, 5}));
    EXPECT_THAT(run.transcript(), HasSubstr("1 features have levels of 1 and below, which never "
                                            "exceed the background of 1.0."));
}

TEST(DefectBuild, WithoutFeaturesKeepsNoGridAndAsksBeforeUnsavedOnesGo) {
    ScriptRun run;
    addDefect(run, "RFRI_Water", 5, {{25, 0}, {25, 20}});
    run(kOpen + ":page Rock Debris\n:press Build Grid\n\n:press Save Grid\n"
                ":page Ground Water\n:press Build Grid\n^C\n:press Edit Grid\n"
                ":break 1\n:press Build Grid\n\n:press Save Grid\n"
                ":press Build Grid\n\n:ok\n:answer yes\n:answer ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nTotal number of features found: 0 in Layers: "
                                            "RFRI_RockDebris\n <Enter> key to Quit ..."));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid needs to be built before editing!"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nCanceled by user!"));
    EXPECT_THAT(run.transcript(), HasSubstr("The Grid is not saved! Save it?"));
    EXPECT_TRUE(std::filesystem::exists("RFRI_Water.grd"));
    EXPECT_FALSE(std::filesystem::exists("RFRI_RockDebris.grd"));
}

// Nothing is lost before the build really begins.
TEST(DefectBuild, EscapeBeforeItBeginsKeepsThePresentGrid) {
    ScriptRun run;
    addDefect(run, "RFRI_Water", 5, {{25, 0}, {25, 20}});
    run(kOpen + ":page Ground Water\n:set Influence Distance = 10\n:set Defect Level = 5\n"
                ":set Influence Distance = 0\n:press Build Grid\n\n"
                ":set Influence Distance = 50\n:press Build Grid\n:answer ok\n^C\n"
                ":press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) Old grid is not saved yet! Please save the grid -> ok"));
    EXPECT_EQ(cells(run, "RFRI_Water.grd"), (Cells{1, 1, 5, 1, 1, 1, 1, 5, 1, 1}));
}

TEST(DefectBuild, TakesTheGridAsItIsNow) {
    ScriptRun run;
    addDefect(run, "RFRI_Water", 5, {{25, 0}, {25, 20}});
    run(kOpen + ":page Ground Water\n:press Build Grid\n\n"
                ":set Number of Cells in X Direction = 3\n:page Ground Water\n"
                ":press Build Grid\n:answer ok\n\n:press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(cells(run, "RFRI_Water.grd").size(), 6u);
}

TEST(DefectDialog, FilesGetTheirEndingAndKeepAName) {
    ScriptRun run;
    addDefect(run, "RFRI_Water", 5, {{25, 0}, {25, 20}});
    run(kOpen + ":page Ground Water\n:set File = wet\n:set File =  \n:press Build Grid\n\n"
                ":press Save Grid\n:ok\n"
                "zelk_RFRI_Draw\n:page Ground Water\n:show\n:expect File = wet.grd\n:cancel\n"
                "zelk_RFRI_Calc\n:press Final RFRI Calculation\n:set Output File =\n"
                ":set Output File = total\n:press Save\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("wet.grd was successfully read into the grid"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("is not saved")));
    EXPECT_TRUE(run.folder().has("wet.grd"));
    EXPECT_TRUE(run.folder().has("total.grd"));
    EXPECT_FALSE(run.folder().has("RFRI_Water.grd"));
}

TEST(DefectDialog, NamesAFileThatCannotBeRead) {
    ScriptRun run;
    run.folder().write("RFRI_Water.grd", "not a grid\n");
    run("zelk_RFRI_Draw\n:page Ground Water\n:press Save Grid\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nWarning: file "));
    EXPECT_THAT(run.transcript(), HasSubstr("RFRI_Water.grd cannot be read.\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid has not been built yet!"));
    EXPECT_EQ(run.folder().read("RFRI_Water.grd"), "not a grid\n");
}

TEST(DefectDialog, CancelledLeavesTheDocumentsRecordsAndDocumentsHaveTheirOwn) {
    ScriptRun run;
    run("zelk_RFRI_Draw\n:page Roof Shape\n:set Defect Level = 5\n:check Graduated\n:cancel\n"
        "zelk_RFRI_Draw\n:page Roof Shape\n:set Defect Level = 1\n:set Influence Distance = 8\n"
        ":ok\nNEW\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const auto& fresh = host::documentRecord<CategoryRecords>(run.host().documentSlot());
    EXPECT_EQ(fresh.records, CategoryRecords().records);
    ScriptRun one;
    one("zelk_RFRI_Draw\n:page Roof Shape\n:set Defect Level = 5\n:check Graduated\n:cancel\n"
        "zelk_RFRI_Draw\n:page Roof Shape\n:set Defect Level = 1\n:set Influence Distance = 8\n"
        ":ok\n");
    const auto& kept = host::documentRecord<CategoryRecords>(one.host().documentSlot());
    EXPECT_EQ(kept.records[8].level, 0);
    EXPECT_EQ(kept.records[8].distances, (std::vector<double>{8, 20, 50}));
    EXPECT_FALSE(kept.records[8].graduated);
}

// --- final calculation
// ----------------------------------------------------------------------------

const std::string kBaseGrid = "zelk_setGrid\n"
                              ":set Number of Cells in X Direction = 5\n"
                              ":set Number of Cells in Y Direction = 2\n"
                              ":set Cell Width in X Direction = 10\n"
                              ":set Cell Width in Y Direction = 10\n:ok\n";
const std::string kCalculate = "zelk_RFRI_Calc\n:press Final RFRI Calculation\n"
                               ":press Save\n:answer ok\n:ok\n";

TEST(FinalDialog, NeedsABaseGrid) {
    ScriptRun run;
    run("zelk_RFRI_Calc\n:press Final RFRI Calculation\n:press Draw\n:press Save\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nYou need to build RFRI grids before running this command"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) The final RFRI Grid has not been calculated yet!"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Leaving the RFRI Calculation!")));
    EXPECT_FALSE(std::filesystem::exists("RFRI_AngDisc.grd"));
}

TEST(FinalDialog, MakesDefaultFilesAndTheFinalGrid) {
    ScriptRun run;
    run(kBaseGrid + kCalculate);
    ASSERT_EQ(run.status(), 0) << run.report();
    for (const char* name :
         {"Angular Discontinuity", "Joint Frequency", "Strata Strength", "Shear Rupture Surface",
          "Joint Separation", "Strata Shift", "Strata Separation", "Rock Debris", "Roof Shape",
          "Ground Water", "Seismic", "Roof Deformation Rate"})
        EXPECT_THAT(run.transcript(),
                    HasSubstr(fmt::format("\nA default file was created for the {}\n", name)));
    EXPECT_THAT(run.transcript(), HasSubstr("\nThe Final RFRI Grid has been Calculated"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) The Final RFRI Values will be saved to < "));
    EXPECT_THAT(run.transcript(), HasSubstr("\nLeaving the RFRI Calculation!"));
    EXPECT_EQ(cells(run, "RFRI_FinalValue.grd"), Cells(10, 49.95));
    EXPECT_EQ(cells(run, "RFRI_RoofDefRate.grd"), Cells(10, 0.0));
    EXPECT_THAT(run.folder().read("RFRI_FinalValue.grd"), HasSubstr("Final RFRI Value"));
}

TEST(FinalDialog, TakesTheBaseGridFromFilesAndReplacesWhatDoesNotMatch) {
    ScriptRun run;
    grid::myGrid grid;
    grid.setOrigin(100, 200, 0);
    grid.setupGrid(3, 2, 10, 20, 0);
    grid.fillValue(5.0);
    ASSERT_TRUE(grid.writeGrid(run.host(), "RFRI_JointFreq.grd"));
    grid.setOrigin(100, 200.0000004, 0); // the file's rounding
    ASSERT_TRUE(grid.writeGrid(run.host(), "RFRI_Water.grd"));
    grid.setOrigin(100, 201, 0);
    grid.fillValue(4.0);
    ASSERT_TRUE(grid.writeGrid(run.host(), "RFRI_RoofShape.grd"));
    run.folder().write("RFRI_AngDisc.grd", "not a grid\n");
    run(kCalculate);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nThe base grid definition was set from file "));
    EXPECT_THAT(run.transcript(), HasSubstr("RFRI_JointFreq.grd \n"));
    EXPECT_THAT(run.transcript(), HasSubstr("A default file was created for the Roof Shape"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("created for the Ground Water")));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("created for the Angular")));
    EXPECT_THAT(run.transcript(), HasSubstr("RFRI_AngDisc.grd is taken as zeros"));
    EXPECT_EQ(grid::baseGrid(run.host()).cellsX, "3");
    EXPECT_EQ(cells(run, "RFRI_RoofShape.grd.bak"), Cells(6, 4.0));
    // Angular 0, joint frequency and water 5, the other seven at 3: five of them twice.
    EXPECT_EQ(cells(run, "RFRI_FinalValue.grd"), Cells(6, 51.06)); // 1.11 * 46
    EXPECT_EQ(run.folder().read("RFRI_AngDisc.grd"), "not a grid\n");
}

TEST(FinalDialog, KeepsWhatItReplacesEachTime) {
    ScriptRun run;
    const auto wider = [](int columns) {
        return fmt::format("zelk_setGrid\n:set Number of Cells in X Direction = {}\n:ok\n"
                           "zelk_RFRI_Calc\n:ok\n",
                           columns);
    };
    grid::myGrid observed;
    observed.setupGrid(5, 2, 10, 10, 0);
    observed.fillValue(4.0);
    ASSERT_TRUE(observed.writeGrid(run.host(), "RFRI_Water.grd"));
    run(kBaseGrid + wider(6) + wider(5));
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(cells(run, "RFRI_Water.grd.bak"), Cells(10, 4.0));
    EXPECT_EQ(cells(run, "RFRI_Water.grd.bak2"), Cells(12, 3.0));
    EXPECT_EQ(cells(run, "RFRI_Water.grd"), Cells(10, 3.0));
    EXPECT_THAT(run.transcript(), HasSubstr("RFRI_Water.grd.bak2\n"));
}

TEST(FinalDialog, DrawsTheGridInColours) {
    ScriptRun run;
    run(kBaseGrid + "zelk_RFRI_Calc\n:press Final RFRI Calculation\n:press Draw\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_FALSE(run.drawing().select(host::SelectionFilter{{}, {"HATCH"}, {}}).empty());
}

// The files hold no rotation; on a turned base grid they take it back.
TEST(FinalDialog, TurnsWithTheBaseGrid) {
    ScriptRun run;
    addDefect(run, "RFRI_JointSep", 5, {{0, 0}, {-10, 10}}); // up the first column at 45 degrees
    run("zelk_RFRI_Draw\n"
        ":set Number of Cells in X Direction = 5\n:set Number of Cells in Y Direction = 2\n"
        ":set Cell Width in X Direction = 10\n:set Cell Width in Y Direction = 10\n"
        ":set Rotation to X axis (degree) = 45\n"
        ":set X Coordinate of Grid Origin = 0\n:set Y Coordinate of Grid Origin = 0\n"
        ":page Joint Separations\n:set Influence Distance = 6\n:press Build Grid\n\n"
        ":press Save Grid\n:ok\n"
        "zelk_RFRI_Draw\n:page Joint Separations\n:press Edit Grid\n0,3\n\n4\n\nYES\n"
        ":press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    // The point 0,3 lies in cell (0, 0) of the turned grid, in no cell of an upright one.
    EXPECT_EQ(cells(run, "RFRI_JointSep.grd"), (Cells{5, 1, 1, 1, 1, 4, 1, 1, 1, 1}));
}

TEST(FinalDialog, DrawsOnTheTurnedBaseGrid) {
    ScriptRun run;
    run("zelk_setGrid\n"
        ":set Number of Cells in X Direction = 5\n:set Number of Cells in Y Direction = 2\n"
        ":set Cell Width in X Direction = 10\n:set Cell Width in Y Direction = 10\n"
        ":set Rotation to X axis (degree) = 90\n:ok\n"
        "zelk_RFRI_Calc\n:press Final RFRI Calculation\n:press Draw\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const auto drawn = run.drawing().select(host::SelectionFilter{{}, {"HATCH"}, {}});
    ASSERT_EQ(drawn.size(), 1u);
    const auto box = *run.drawing().extents(drawn[0]);
    EXPECT_NEAR(box.low.x, -20.0, 1e-5);
    EXPECT_NEAR(box.high.x, 0.0, 1e-5);
    EXPECT_NEAR(box.high.y, 50.0, 1e-5);
}

} // namespace
} // namespace tessaran::rfri
