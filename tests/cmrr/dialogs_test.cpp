// The sequence of dialogs, driven by scripts as users of the console drive it.

#include "cells.h"
#include "cmrr/unit_file.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace tessaran::cmrr {
namespace {

using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

// Unit 1: sets 30 and 36, so 30 - 4 - 3 (moisture) + 22 = 45.
constexpr const char* kObservedUnit = "CMRR\n"
                                      ":set Number of Units = 2\n"
                                      ":set Unit1/Thickness = 4\n"
                                      ":press Unit1/Details...\n"
                                      ":set Strength Index = 2\n"
                                      ":set Number of Discontinuities = 2\n"
                                      ":set Moisture Sensitivity Index = 2\n"
                                      ":set Contact at Top of the Unit = Weak\n"
                                      ":press Sets...\n"
                                      ":set Set 1/Cohesion = 4\n"
                                      ":set Set 1/Roughness = 2\n"
                                      ":set Set 1/Spacing = 3\n"
                                      ":set Set 1/Persistence = 3\n"
                                      ":set Set 2/Cohesion = 3\n"
                                      ":set Set 2/Roughness = 3\n"
                                      ":set Set 2/Spacing = 3\n"
                                      ":set Set 2/Persistence = 3\n"
                                      ":ok\n:ok\n";
// Unit 2: UCS 10000 gives 17.8, a strong estimate without fractures 48: 65.8.
constexpr const char* kCoreUnit = ":choose Unit2/Core Hole Data\n"
                                  ":set Unit2/Thickness = 4\n"
                                  ":press Unit2/Details...\n"
                                  ":choose No Diametral Available\n"
                                  ":set Diametral Estimate = Strong\n"
                                  ":choose No Fractures\n"
                                  ":choose UCS (psi)\n"
                                  ":set UCS (psi) = 10000\n"
                                  ":ok\n";
constexpr const char* kFinish = ":press Next...\n"
                                ":set Ground Water Adjustment = 3\n"
                                ":set Surcharge Adjustment = 2\n"
                                ":set Bolt Length(ft) = 5\n"
                                ":press Finish\n";

std::string lines(std::initializer_list<const char*> parts) {
    std::string script;
    for (const char* part : parts)
        script += part;
    return script;
}

TEST(CmrrDialogs, TheWholeSequenceGivesOneNumber) {
    ScriptRun run;
    run(lines({kObservedUnit, kCoreUnit, ":show\n:expect Rating = 45\n:expect Rating = 65.8\n",
               kFinish, ":show\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    // Average 49.16; strong bed 0.77 x (16.64 x 0.22 x 4 - 2.5); -2, -4, -5.
    for (const char* text : {"(dialog) General Information", "(dialog) Discontinuities -> ok",
                             "(dialog) Core Data -> ok", "(dialog) Final Data Parameters",
                             "Average over the bolts      49.16",
                             "CMRR                        47.5103", "Final CMRR: 47.5103"})
        EXPECT_THAT(run.transcript(), HasSubstr(text)) << run.report();
    EXPECT_FALSE(run.folder().has("CMRR.grd"));
}

TEST(CmrrDialogs, BackKeepsValuesAndChangesCountAgain) {
    ScriptRun run;
    run(lines({kObservedUnit, kCoreUnit, kFinish,
               ":press <---  Back\n"
               ":set Unit2/Rating = 45\n"
               ":press Next...\n"
               ":show\n"
               ":expect Bolt Length(ft) = 5\n"
               ":set Surcharge Adjustment = 1\n"
               ":ok\n"
               ":cancel\n"
               ":press Unit2/Details...\n:ok\n" // replaces what was typed
               ":show\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Unit 2 rating               45, typed"));
    EXPECT_THAT(run.transcript(), HasSubstr("CMRR                        39"));
    EXPECT_THAT(run.transcript().substr(run.transcript().rfind("Unit2/Details")),
                HasSubstr("Rating = 65.8"));
}

TEST(CmrrDialogs, TheTypeOfDataDecidesTheRating) {
    ScriptRun run;
    run(lines({kObservedUnit, ":set Unit1/Rating = 77\n"
                              ":choose Unit1/Core Hole Data\n" // has no data yet
                              ":press Next...\n"
                              ":expect UD-CR1-1\n"
                              ":choose Unit1/Underground Observation\n:show\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    const std::string& text = run.transcript();
    EXPECT_THAT(text.substr(text.rfind("group Unit1"), 600), HasSubstr("Rating = 45\n"));
}

TEST(CmrrDialogs, AChangeTakesTheResultAway) {
    ScriptRun run;
    run(lines({kObservedUnit, kCoreUnit, kFinish, ":set Bolt Length(ft) = 6\n:show\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript().substr(run.transcript().rfind("Final CMRR")),
                Not(HasSubstr("47.5103")));
}

// Also while the unit's rating is a typed one, which uses none of them.
TEST(CmrrDialogs, GridsOfOneUnitsDetailsHaveToFit) {
    ScriptRun run;
    run.folder().write("d.grd", evenGrid("100"));
    run.folder().write("else.grd", evenGrid("5000", {101.0}));
    run("CMRR\n:choose Unit1/Core Hole Data\n:set Unit1/Rating = 50\n:press Unit1/Details...\n"
        ":set Diametral Strength Grid File = d.grd\n:choose UCS (psi)\n"
        ":set Axial UCS Grid File = else.grd\n"
        ":expect same location as your previous grids - H-R-2\n");
    EXPECT_EQ(run.status(), 0) << run.report();
}

TEST(CmrrDialogs, CancelledDetailsLeaveTheUnitAsItWas) {
    ScriptRun run;
    run(lines({kObservedUnit, ":press Unit1/Details...\n"
                              ":set Strength Index = 5\n"
                              ":press Sets...\n"
                              ":set Set 1/Cohesion = 1\n"
                              ":cancel\n"
                              ":cancel\n"
                              ":press Save As...\n"
                              ":file roof.cmr\n"
                              ":cancel\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    const auto data = readUnitFile("roof.cmr");
    ASSERT_TRUE(data) << data.error().message();
    EXPECT_EQ(data->unit[0].observation.strengthIndex.constant, 2.0);
    EXPECT_EQ(data->unit[0].observation.sets[0].cohesion, 4.0);
    EXPECT_EQ(data->unit[0].rating, 45.0);
    EXPECT_THAT(run.transcript(), Not(HasSubstr("not saved"))); // nothing changed since
}

TEST(CmrrDialogs, EveryFailedCheckKeepsItsDialogOpen) {
    ScriptRun run;
    run("CMRR\n"
        ":set Number of Units = six\n"
        ":press Next...\n"
        ":expect (message) The input for the number of units must be an integer UD-OKENU-1\n"
        ":set Number of Units = 1\n"
        ":set Unit1/Thickness = 0\n"
        ":ok\n"
        ":expect (message) The input for the thickness 1 must be greater than zero - UD-CT1-2\n"
        ":set Unit1/Thickness = 3\n"
        ":ok\n"
        ":expect (message) The input for the unit rating 1 must be a real number UD-CR1-1\n"
        ":press Unit1/Details...\n"
        ":set Strength Index = 6\n"
        ":ok\n"
        ":expect (message) The input for the strength index must be between 1 and 5 - D-CSI-2\n"
        ":set Strength Index = 1\n"
        ":set Number of Discontinuities = 4\n"
        ":ok\n"
        ":expect (message) The number of sets must be between 0 and 3 - D-OKED-1\n"
        ":set Number of Discontinuities = 1\n"
        ":ok\n"
        ":expect (message) The input for set 1 cohesion must be a real number - S-CS1C-1\n"
        ":set Number of Discontinuities = 0\n"
        ":set No-Discontinuity Index = 1\n"
        ":ok\n"
        ":set Unit1/Rating = 101\n"
        ":ok\n"
        ":expect (message) The input for the unit rating 1 must be between 1 and 100 UD-CR1-2\n"
        ":set Unit1/Rating = 60\n"
        ":ok\n"
        ":set Surcharge Adjustment = 3\n"
        ":ok\n"
        ":expect (message) The input for the surcharge must be between 1 and 2 - F-CS-2\n"
        ":set Surcharge Adjustment = 1\n"
        ":ok\n"
        ":expect (message) The input for the bolt must be a real number - F-CB-1\n"
        ":set Bolt Length(ft) = 2\n"
        ":ok\n"
        ":expect CMRR                        60\n");
    EXPECT_EQ(run.status(), 0) << run.report();
}

TEST(CmrrDialogs, UnitsAndSetsBeyondTheirNumbersAreOutOfReach) {
    ScriptRun units;
    units("CMRR\n:set Unit2/Thickness = 3\n");
    EXPECT_THAT(units.error(), HasSubstr("disabled"));
    ScriptRun sets;
    sets("CMRR\n:press Unit1/Details...\n:set Number of Discontinuities = 1\n:press Sets...\n"
         ":set Set 2/Spacing = 1\n");
    EXPECT_THAT(sets.error(), HasSubstr("disabled"));
    ScriptRun index;
    index("CMRR\n:press Unit1/Details...\n:set Number of Discontinuities = 1\n"
          ":set No-Discontinuity Index = 1\n");
    EXPECT_THAT(index.error(), HasSubstr("disabled"));
}

TEST(CmrrDialogs, ThinUnitsAreAskedAbout) {
    ScriptRun run;
    run("CMRR\n:set Unit1/Thickness = 0.4\n:set Unit1/Rating = 60\n"
        ":press Next...\n:answer no\n"
        ":set Unit1/Rating = 61\n" // still the first dialog
        ":press Next...\n:answer yes\n"
        ":expect (dialog) Final Data Parameters\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("considered an individual unit.\nWould you like to continue with this "
                          "unit? -> no"));
}

TEST(CmrrDialogs, GridsAreLookedOverWhenTheyAreChosen) {
    ScriptRun run;
    run.folder().write("t.grd", evenGrid("4"));
    run.folder().write("bad.grd", evenGrid("-1"));
    run.folder().write("else.grd", evenGrid("3", {101.0}));
    run.folder().write("ucs.grd", gridText({"5000", "10000", "30000", "0", "N", "5000"}));
    run("CMRR\n"
        ":set Unit1/Thickness Grid File = none.grd\n"
        ":expect (message) There was an error reading the thickness grid file UD-BW-1\n"
        ":set Unit1/Thickness Grid File = bad.grd\n"
        ":answer no\n"
        ":set Unit1/Thickness Grid File = t.grd\n"
        ":choose Unit1/Core Hole Data\n"
        ":press Unit1/Details...\n"
        ":choose No Diametral Available\n"
        ":set Diametral Estimate = Moderate\n"
        ":choose No Fractures\n"
        ":choose UCS (psi)\n"
        ":set Axial UCS Grid File = else.grd\n"
        ":expect same location as your previous grids - H-R-2\n"
        ":set Axial UCS Grid File = ucs.grd\n"
        ":expect (message) The UCS grid that was entered contains some blank data points\n"
        ":ok\n"
        ":press Next...\n"
        ":set Bolt Length(ft) = 4\n"
        ":check Keep Unit Grid Files\n"
        ":press Finish\n"
        ":expect (message) The CMRR grid will be saved in your working directory - DDGCC-1\n"
        ":show\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Final CMRR: 54.2")); // 48.5, 53.8, 66, 48.5
    EXPECT_THAT(
        run.folder().read("CMRR.grd"),
        HasSubstr("\r\n48.500000\r\n53.800000\r\n66.000000\r\nN\r\nN\r\nN\r\n48.500000\r\n"));
    EXPECT_TRUE(run.folder().has("CMRR_Unit1.grd"));
    EXPECT_FALSE(run.folder().has("CMRR_Unit2.grd"));
}

TEST(CmrrDialogs, ReadyRatingsComeFromAFile) {
    ScriptRun run;
    run.folder().write("ready.grd", gridText({"40", "50", "60", "40", "50", "60"}));
    run.folder().write("CMRR.grd", "precious");
    run("CMRR\n:set Unit1/Thickness = 4\n"
        ":check Unit1/File\n"
        ":press Unit1/Grid...\n:file ready.grd\n"
        ":press Next...\n:set Bolt Length(ft) = 4\n"
        ":press Finish\n:answer no\n"
        ":expect (question) File Exists, Do you want to Overwrite it? -> no\n"
        ":expect mean 50 (40 to 60)\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.folder().read("CMRR.grd"), "precious");
}

TEST(CmrrDialogs, NoRatingAnywhereIsNoneAndNotZero) {
    ScriptRun run;
    run.folder().write("none.grd", evenGrid("-999"));
    run("CMRR\n:set Unit1/Thickness = 4\n"
        ":set Unit1/Rating Grid File = none.grd\n:answer yes\n"
        ":press Next...\n:set Bolt Length(ft) = 4\n:press Finish\n:show\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    for (const char* line :
         {"Final CMRR: none\n", "Unit 1 rating               none, from a grid of ratings\n",
          "CMRR                        none\n", "Cells without a rating      6 of 6\n"})
        EXPECT_THAT(run.transcript(), HasSubstr(line));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Strong bed")));
}

TEST(CmrrDialogs, GridsGoToTheDrawingsFolderFirstThenToTheUnitFiles) {
    ScriptRun run;
    run.folder().write("ready.grd", evenGrid("50"));
    std::filesystem::create_directories("plans");
    std::filesystem::create_directories("units");
    run("CMRR\n:set Unit1/Thickness = 4\n:set Unit1/Rating Grid File = ready.grd\n"
        ":press Save As...\n:file units/roof.cmr\n"
        ":press Next...\n:set Bolt Length(ft) = 4\n:press Finish\n:cancel\n:press Save\n:cancel\n"
        "SAVEAS\nplans/mine.dxf\n"
        "CMRR\n:press Open...\n:file units/roof.cmr\n:press Next...\n"
        ":check Keep Unit Grid Files\n:press Finish\n:cancel\n:cancel\n:answer no\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_TRUE(run.folder().has("units/CMRR.grd"));
    EXPECT_FALSE(run.folder().has("units/CMRR_Unit1.grd"));
    EXPECT_TRUE(run.folder().has("plans/CMRR.grd"));
    EXPECT_TRUE(run.folder().has("plans/CMRR_Unit1.grd"));
    EXPECT_FALSE(run.folder().has("CMRR.grd"));
}

TEST(CmrrDialogs, EachDialogSaysInItsWordsThatAGridCannotBeRead) {
    ScriptRun run;
    run.folder().write("broken.grd", "1\n2\n");
    run("CMRR\n:set Unit1/Rating = 50\n:set Unit1/Thickness = 4\n"
        ":press Unit1/Details...\n:set Strength Grid File = broken.grd\n"
        ":expect (message) There was an error reading the grid file - CL-BW-1\n:cancel\n"
        ":set Unit1/Thickness Grid File = broken.grd\n"
        ":expect (message) There was an error reading the thickness grid file UD-BW-1\n"
        ":press Next...\n:set Ground Water Grid File = broken.grd\n"
        ":expect (message) There was an error reading the thickness grid file - F-BW-1\n"
        ":set Bolt Length(ft) = 4\n:press Finish\n" // without it
        ":expect CMRR                        50\n");
    EXPECT_EQ(run.status(), 0) << run.report();
}

// A folder stands where the file would go.
TEST(CmrrDialogs, GridsThatCannotBeWrittenAreTold) {
    ScriptRun run;
    run.folder().write("ready.grd", evenGrid("50"));
    std::filesystem::create_directories("CMRR_Unit1.grd/in");
    run("CMRR\n:set Unit1/Thickness = 4\n:set Unit1/Rating Grid File = ready.grd\n"
        ":press Next...\n:set Bolt Length(ft) = 4\n:check Keep Unit Grid Files\n:press Finish\n"
        ":answer yes\n"
        ":expect (message) There was an error writing a unit grid file - DDWUG-1\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_FALSE(run.folder().has("CMRR.grd"));
    ScriptRun roof;
    roof.folder().write("ready.grd", evenGrid("50"));
    std::filesystem::create_directories("CMRR.grd/in");
    roof("CMRR\n:set Unit1/Thickness = 4\n:set Unit1/Rating Grid File = ready.grd\n"
         ":press Next...\n:set Bolt Length(ft) = 4\n:press Finish\n:answer yes\n"
         ":expect (message) There was an error writing the CMRR grid file - DDWCG-1\n"
         ":show\n:expect Final CMRR:\n");
    EXPECT_EQ(roof.status(), 0) << roof.report();
    EXPECT_THAT(roof.transcript(), Not(HasSubstr("Final CMRR: 50")));
}

TEST(CmrrDialogs, UnsavedDataAreAskedAboutAndOpenedAgain) {
    ScriptRun run;
    run(lines({kObservedUnit, ":cancel\n:answer yes\n:file roof\n"
                              "CMRR\n:press Open...\n:file roof.cmr\n:show\n"
                              ":expect Rating = 45\n"
                              ":cancel\n"
                              "CMRR\n:set Unit1/Thickness = 2\n:cancel\n:answer no\n"}));
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_TRUE(run.folder().has("roof.cmr"));
    EXPECT_EQ(readUnitFile("roof.cmr")->units, 2);
}

TEST(CmrrDialogs, BadUnitFilesLeaveTheDataAlone) {
    ScriptRun run;
    run.folder().write("bad.cmr", "1,1\n\n");
    run("CMRR\n:set Unit1/Thickness = 2\n"
        ":press Open...\n:answer no\n:file bad.cmr\n"
        ":expect (message) Read an empty line in the input file - DDOFO-1\n"
        ":show\n:expect Thickness = 2\n");
    EXPECT_EQ(run.status(), 0) << run.report();
}

} // namespace
} // namespace tessaran::cmrr
