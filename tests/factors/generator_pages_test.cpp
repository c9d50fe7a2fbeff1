// The dialogs that build factor grids from points, linear features and the horizontal stress,
// through the console.

#include "app/document_data.h"
#include "factors/generator_commands.h"
#include "factors/point_interpolation.h"
#include "factors/point_sources.h"
#include "generator_script.h"
#include "support/recording_host.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>

namespace tessaran::factors {
namespace {

using grid::myGrid;
using test::add;
using test::addLine;
using test::addPoint;
using test::addPolyline;
using test::kBuildOnly;
using test::kSaveOk;
using test::opened;
using test::readSaved;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

// --- points -------------------------------------------------------------------------------------

const std::string kPoints = opened("zelk_gridFromPoint");
const std::string kSearch = ":set Min. Points = 1\n:set Max. Search R (%) = 100\n";
const std::string kHoles = ":set Define Point Layers = HOLES\n";

TEST(PointsPage, GridsTheDrillHolesOfALayer) {
    ScriptRun run;
    addPoint(run, "HOLES", {5, 5, 10});
    addPoint(run, "HOLES", {35, 35, 30});
    addPoint(run, "HOLES", {900, 900, 1000}); // beyond the search limit
    addPoint(run, "OTHER", {25, 5, 999});
    run(kPoints + kHoles + kSearch + ":choose Simple Average\n:set Grid Title = Shale\n" +
        ":press Build Grid\n:answer ok\n\n\n" + kSaveOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n3 points are obtained in layers: HOLES"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nfiltering the points..."));
    EXPECT_THAT(run.transcript(), HasSubstr("(question) Only 2 points for 16 grid size! -> ok"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nTotal 2 points are in search ranges"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nGrid(4 X 4) is going to be built from these points!"));
    EXPECT_TRUE(run.state().graphics.graphics().empty());
    myGrid grid;
    readSaved(run, grid);
    EXPECT_EQ(grid.title(), "Shale");
    EXPECT_EQ(grid.getValue(0, 0), 10.0);
    EXPECT_EQ(grid.getValue(3, 3), 30.0);
    EXPECT_EQ(grid.getValue(0, 3), 20.0); // 30 from both
    EXPECT_EQ(grid.getValue(2, 1), 20.0); // at 25, 15: 22.4 from both
    EXPECT_EQ(grid.getValue(1, 0), 10.0);
}

TEST(PointsPage, ReadsAFileAndTellsWhatItCouldNotUse) {
    ScriptRun run;
    run.folder().write("holes.txt", "\xEF\xBB\xBF"
                                    "5,5,10\r\n"
                                    "\t 35 , 35 , 30 \r\n"
                                    "\r\n"
                                    "x;y;z\n"
                                    "1,2,3,4\n"
                                    "25,15,\"7\"\n"
                                    "5,35,1e999\n"
                                    "900,900,1");
    run(kPoints + kSearch + ":check From External File\n:press Build Grid\n:file holes.txt\n" +
        ":answer ok\n\n\n" + kSaveOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n3 lines without exactly three fields are skipped."));
    EXPECT_THAT(run.transcript(), HasSubstr("\n1 lines with numbers out of range are skipped."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\n1 lines hold a field that is no number and counts as 0."));
    EXPECT_THAT(run.transcript(), HasSubstr("\n4 point are imported from "));
    EXPECT_THAT(run.transcript(), HasSubstr("\nTotal 3 points are in search ranges"));
    myGrid grid;
    readSaved(run, grid);
    EXPECT_EQ(grid.getValue(0, 0), 10.0);
    EXPECT_EQ(grid.getValue(2, 1), 0.0); // the quoted one
}

TEST(PointsPage, RefusesWhatCannotBeGridded) {
    ScriptRun run;
    addPoint(run, "LEVEL", {5, 5, 10});
    addPoint(run, "LEVEL", {15, 5, 10});
    addPoint(run, "FAR", {1e6, 5, 10});
    addLine(run, "EMPTY2", {0, 0, 0}, {1e12, 0, 0});
    run.folder().write("four.txt", "1,2,3,4\n5,6,7,8\n");
    const std::string build = ":press Build Grid\n";
    run(kPoints + build + kSearch + build + ":set Define Point Layers = NOWHERE\n" + build +
        ":set Define Point Layers = LEVEL\n" + build + ":answer ok\n" +
        ":set Define Point Layers = FAR\n" + build + ":set Define Point Layers = EMPTY2\n" + build +
        ":check From External File\n" + build + ":file four.txt\n" + build + ":file missing.txt\n" +
        ":press Save Grid\n:ok\n");
    const std::string& text = run.transcript();
    EXPECT_THAT(text, HasSubstr("(message) Please enter an integer between 1 and 10."));
    EXPECT_THAT(text, HasSubstr("(message) No layer is selected!"));
    EXPECT_THAT(text, HasSubstr("(message) No related point objects in specified layers!"));
    EXPECT_THAT(text, HasSubstr("(message) All points have same z value!"));
    EXPECT_THAT(text, HasSubstr("(message) No points is related!"));
    EXPECT_THAT(text, HasSubstr("\n1 objects are too long for the cell width and are skipped."));
    EXPECT_THAT(text, HasSubstr("(message) No points is available!"));
    EXPECT_THAT(text, HasSubstr("(message) No point are imported from "));
    EXPECT_THAT(text, Not(HasSubstr("is going to be built")));
}

TEST(PointsPage, ACellOnItsPointHasNoNumberAndKeepsThatInTheFile) {
    ScriptRun run;
    addPoint(run, "HOLES", {5, 5, 10});
    addPoint(run, "HOLES", {15, 5, 30});
    run(kPoints + kHoles + ":set Min. Points = 2\n:set Max. Search R (%) = 100\n" +
        ":choose Inverse Distance\n:press Build Grid\n:answer ok\n\n\n" + kSaveOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n1 cells got no number"));
    myGrid grid;
    readSaved(run, grid);
    EXPECT_TRUE(std::isnan(grid.getValue(0, 0)));
    EXPECT_EQ(grid.getValue(1, 0), 10.0); // the walk ends at its own point, the second
}

TEST(PointsPage, CellsBeyondAnyPointAreNamedAndABreakLeavesNoGrid) {
    ScriptRun run;
    addPoint(run, "HOLES", {1, 1, 10});
    addPoint(run, "HOLES", {2, 1, 12});
    const std::string near = ":set Min. Points = 1\n:set Max. Search R (%) = 25\n";
    run(kPoints + kHoles + near + ":press Build Grid\n:answer ok\n\n\n:break 1\n" +
        ":press Build Grid\n:answer ok\n:answer ok\n\n:press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nCan not find point for cell : 1,0\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nCan not find point for cell : 4,4\n"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Can not find point for cell : 0,0\n")));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) grid is not saved yet! continue to rebuild -> ok"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nCanceled by user!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid is not defined or built!"));
    EXPECT_TRUE(run.state().graphics.graphics().empty());
}

TEST(PointsPage, TellsWhenTheFileCannotBeReadOrTheGridNotBeLaid) {
    ScriptRun run;
    run(opened("zelk_gridFromPoint", {.nX = 1}) + kSearch + ":press Build Grid\n" +
        ":page Grid Dimension\n:set Number of Cells in X Direction = 2\n:page Points\n" +
        ":check From External File\n:press Build Grid\n:file .\n:cancel\n");
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid definition error!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Can't open file ., error = "));
}

TEST(PointSources, SamplesLinesInSpaceAndAlongArcs) {
    std::vector<geometry::Point3> points;
    const PointSink sink = [&](const geometry::Point3& p) { points.push_back(p); };
    // Length 5 in space over a plan length of 3.
    ASSERT_TRUE(samplesAlong(geometry::Curve::line({0, 0, 0}, {3, 0, 4}), 2.5, sink));
    ASSERT_EQ(points.size(), 3U);
    EXPECT_NEAR(points[1].x, 1.5, 1e-12);
    EXPECT_NEAR(points[1].z, 2.0, 1e-12);
    EXPECT_NEAR(points[2].z, 4.0, 1e-12);
    points.clear();
    const geometry::Curve vertical = geometry::Curve::line({1, 1, 0}, {1, 1, 2});
    ASSERT_TRUE(samplesAlong(vertical, 1.0, sink));
    EXPECT_EQ(points, (std::vector<geometry::Point3>{{1, 1, 0}, {1, 1, 1}, {1, 1, 2}}));
    points.clear();
    // Half a circle of radius 10, then straight on.
    const geometry::Curve bow({{{10, 0, 7}, 1.0}, {{-10, 0, 7}, 0.0}, {{-10, -20, 7}, 0.0}}, false);
    ASSERT_TRUE(samplesAlong(bow, 1.0, sink));
    ASSERT_EQ(points.size(), 52U); // 10 pi + 20 = 51.4
    EXPECT_NEAR(std::hypot(points[20].x, points[20].y), 10.0, 1e-9);
    EXPECT_NEAR(points[51].y, -(51.0 - 10.0 * std::acos(-1.0)), 1e-9);
    EXPECT_EQ(points[51].z, 7.0);
    EXPECT_FALSE(samplesAlong(bow, 1e-9, sink));
}

TEST(PointSources, EndlessLinesTakeNoMemory) {
    const test::TemporaryFolder folder;
    {
        std::ofstream file(folder.path() / "long.txt");
        const std::string piece(1 << 20, '1');
        for (int k = 0; k < 8; ++k)
            file << piece;
        file << ",2,3\n1,2,3\n\n4,5";
    }
    PointFileCounts counts;
    std::vector<geometry::Point3> points;
    ASSERT_TRUE(readPointFile(
        folder.path() / "long.txt", [&](const geometry::Point3& p) { points.push_back(p); },
        counts));
    EXPECT_EQ(points, (std::vector<geometry::Point3>{{1, 2, 3}}));
    EXPECT_EQ(counts.skipped, 3);
    EXPECT_FALSE(readPointFile(
        folder.path(), [](const geometry::Point3&) {}, counts));
}

// --- the meter ----------------------------------------------------------------------------------

// Builds in the dialog's second page with these fields.
void buildWith(test::RecordingHost& host, void (*command)(host::Host&),
               const std::vector<std::pair<std::string, std::string>>& fields) {
    using Purpose = host::DialogSession::Purpose;
    host.answers = {test::RecordingHost::kEnter};
    host.dialogScript = [&](host::DialogSession& session) {
        ASSERT_TRUE(session.bringToFront(1));
        for (const auto& [label, text] : fields)
            ASSERT_TRUE(session.set(session.find(label, Purpose::set).value(), text)) << label;
        ASSERT_TRUE(session.press(session.find("Build Grid", Purpose::press).value()));
    };
    command(host);
}

TEST(GeneratorPages, TellTheMeterWhatTheyBuild) {
    test::RecordingHost host;
    host.documentSlot().setFactory([] { return std::make_unique<app::CDocData>(); });
    host.boxAnswers = {host::Answer::ok}; // few points
    for (const double y : {5.0, 15.0, 25.0, 35.0})
        ASSERT_TRUE(host.database.add(
            {{}, "0", 256, "ByLayer", host::Polyline{{}, {{{0, y}}, {{100, y}}}, false, y, 0.0}}));
    buildWith(host, zelk_gridFromPoint,
              {{"Define Point Layers", "0"}, {"Min. Points", "1"}, {"Max. Search R (%)", "9"}});
    buildWith(host, zelk_gridFromContour, {{"Define Contour Layers", "0"}});
    buildWith(host, zelk_geoFeatures,
              {{"Define Feature Layers", "0"}, {"Influence Distance", "5"}});
    buildWith(host, zelk_horizStress, {{"Projection Line Layers", "0"}, {"Entry Width", "5"}});
    EXPECT_THAT(host.meterTexts, testing::ElementsAre("Building grids...", "Building grids...",
                                                      "Geological Features Griding...",
                                                      "Horizontal Stress Effect Griding..."))
        << host.printed;
    EXPECT_EQ(host.graphicsInView, 0u);
}

// --- linear features ----------------------------------------------------------------------------

const std::string kFeatures = opened("zelk_geoFeatures") + ":set Define Feature Layers = FAULTS\n"
                                                           ":set Influence Distance = 20\n";

TEST(FeaturesPage, AFaultGivesARampAlsoFromOutsideTheGrid) {
    ScriptRun run;
    addPolyline(run, "FAULTS", {{{-5, -100}}, {{-5, 100}}}); // outside, within the distance
    addPolyline(run, "FAULTS", {{{-90, -100}}, {{-90, 100}}});
    addLine(run, "FAULTS", {30, 0, 0}, {30, 40, 0}); // no polyline
    run(kFeatures + kBuildOnly + kSaveOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nTotal number of features found: 1 in Layers: FAULTS"));
    EXPECT_TRUE(run.state().graphics.graphics().empty());
    EXPECT_TRUE(run.state().graphics.highlighted().empty());
    myGrid grid;
    readSaved(run, grid);
    for (int j = 0; j < 4; ++j) {
        EXPECT_EQ(grid.getValue(0, j), 50.0);
        EXPECT_EQ(grid.getValue(1, j), 0.0);
    }
}

TEST(FeaturesPage, OldStyleArcsAreFollowedAndInfluencesAddUp) {
    for (const bool accumulate : {false, true}) {
        ScriptRun run;
        // A circle of radius 10 about 20, 20, twice; every inner centre is 7.07 from its middle.
        for (const auto form : {host::Polyline::Form::old, host::Polyline::Form::light})
            addPolyline(run, "FAULTS", {{{30, 20}, 1.0}, {{10, 20}, 1.0}}, 0.0, true, form);
        run(kFeatures + (accumulate ? ":check Accumulation\n" : "") + kBuildOnly + kSaveOk);
        ASSERT_EQ(run.status(), 0) << run.report();
        myGrid grid;
        readSaved(run, grid);
        const double one = (20.0 - (10.0 - std::sqrt(50.0))) * 5.0;
        EXPECT_NEAR(grid.getValue(1, 1), accumulate ? 100.0 : one, 1e-6);
        const double corner = (20.0 - (std::sqrt(450.0) - 10.0)) * 5.0;
        EXPECT_NEAR(grid.getValue(0, 0), accumulate ? 2.0 * corner : corner, 2e-6);
    }
}

TEST(FeaturesPage, RefusalsQuitsAndBreaks) {
    ScriptRun run;
    addPolyline(run, "FAULTS", {{{15, 0}}, {{15, 40}}});
    const std::string build = ":press Build Grid\n";
    run(opened("zelk_geoFeatures") + build + ":set Define Feature Layers = FAULTS\n" + build +
        ":set Influence Distance = 100000000000\n" + build +
        ":set Influence Distance = 99999999999\n" + build + "\n\n" + // built
        build + ":answer cancel\n" + build + ":answer ok\n^C\n" +    // not rebuilt; given up
        ":set Define Feature Layers = NONE\n" + build + "\n" +
        ":set Define Feature Layers = FAULTS\n:break 1\n" + build + "\n" +
        ":press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const std::string& text = run.transcript();
    EXPECT_THAT(text, HasSubstr("(message) Select layer name first!!"));
    EXPECT_THAT(text, HasSubstr("(message) Influence distance must greater than zero!!"));
    EXPECT_THAT(text, HasSubstr("(message) Please enter a number between 0 and 1e+11."));
    EXPECT_THAT(text, HasSubstr("(question) Grid is not saved yet! Continue to discard and "
                                "rebuild -> cancel"));
    EXPECT_THAT(text, HasSubstr("\nTotal number of features found: 0 in Layers: NONE"));
    EXPECT_THAT(text, HasSubstr("\n <Enter> key to Quit ..."));
    EXPECT_THAT(text, HasSubstr("\nCanceled by user!"));
    EXPECT_THAT(text, HasSubstr("(message) Grid is not defined or built!"));
    EXPECT_THAT(text, Not(HasSubstr("Save it?")));
    EXPECT_TRUE(run.state().graphics.graphics().empty());
}

TEST(FeaturesPage, PicksTheDistanceAndLayersAndRefusesWhatIsNoGrid) {
    ScriptRun run;
    addPolyline(run, "FAULTS", {{{15, 0}}, {{15, 40}}});
    addLine(run, "MARKS", {30, 0, 0}, {30, 40, 0});
    run(opened("zelk_geoFeatures", {.nY = 1}) +
        ":press Pick Layer\n15,5\n30,5\n15,9\n5,5\n\n:press Pick a distance\n0,0\n3,4\n" +
        ":press Pick a distance\n\n:show\n:expect Define Feature Layers = FAULTS,MARKS\n" +
        ":expect Influence Distance = 5\n:press Build Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nSelect any object in the layer"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nselected layer: FAULTS"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid initialization error!"));
}

TEST(FeaturesPage, AnUnsavedGridIsAskedForAtTheEnd) {
    ScriptRun run;
    addPolyline(run, "FAULTS", {{{15, 0}}, {{15, 40}}});
    run(kFeatures + ":set Output File (.grd) = out.grd\n" + kBuildOnly +
        ":ok\n:answer yes\n:answer ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(question) The Grid is not saved! Save it? -> yes"));
    myGrid grid;
    readSaved(run, grid);
    EXPECT_EQ(grid.getValue(1, 2), 100.0);
}

// --- horizontal stress --------------------------------------------------------------------------

const std::string kStress =
    opened("zelk_horizStress") + ":set Projection Line Layers = ENTRIES\n:set Entry Width = 10\n";

TEST(StressPage, TypedAndPickedOrientationsRateAlike) {
    for (const std::string orientation :
         {":set Stress Orientation = 30\n", ":set Stress Orientation = 210\n",
          ":press Orientation\n30\n", ":press Orientation\n10,5.773502691896258\n"}) {
        ScriptRun run;
        addLine(run, "ENTRIES", {-10, 5, 0}, {50, 5, 0});
        addPolyline(run, "ENTRIES", {{{35, 60}}, {{35, 20}}});
        addPolyline(run, "ENTRIES", {{{5, 5}}});
        run(kStress + orientation + kBuildOnly + kSaveOk);
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(),
                    HasSubstr("\nTotal number of projection lines found: 3 in Layers: ENTRIES"));
        EXPECT_THAT(run.transcript(), HasSubstr("\n Projection line 2 has too few points."));
        myGrid grid;
        readSaved(run, grid);
        EXPECT_EQ(grid.title(), "Horizontal Stress");
        EXPECT_NEAR(grid.getValue(1, 0), 50.0, 1e-5) << orientation;
        EXPECT_NEAR(grid.getValue(3, 2), 86.602540, 1e-5);
        EXPECT_EQ(grid.getValue(1, 1), 0.0);
        EXPECT_EQ(grid.getValue(2, 3), 0.0);
    }
}

TEST(StressPage, AWidthIsNotPickedBelowZero) {
    ScriptRun run;
    run(opened("zelk_horizStress") + ":press Width\n-5\n");
    EXPECT_EQ(run.status(), 1);
}

TEST(StressPage, ShowsWhatWasPickedAndRefusesBadInput) {
    ScriptRun run;
    addLine(run, "ENTRIES", {0, 5, 0}, {40, 5, 0});
    const std::string build = ":press Build Grid\n";
    run(opened("zelk_horizStress") + build + ":set Projection Line Layers = ENTRIES\n" + build +
        ":press Width\n6.5\n:press Orientation\n10,10\n:show\n" +
        ":expect Stress Orientation = 45\n:set Stress Orientation = north\n:show\n" + build +
        "\n\n" + kSaveOk);
    const std::string& text = run.transcript();
    EXPECT_THAT(text, HasSubstr("(message) Select layer name first!!"));
    EXPECT_THAT(text, HasSubstr("(message) entry width must biger than zero!!?"));
    EXPECT_THAT(text, HasSubstr("\nInput width of entry <0.000000>:"));
    EXPECT_THAT(text, HasSubstr("\nInput orientation of the maxmum horizontal stress <>: "));
    EXPECT_THAT(text, HasSubstr("(message) Please enter a number."));
    ASSERT_EQ(run.status(), 0) << run.report();
    myGrid grid;
    readSaved(run, grid);
    EXPECT_NEAR(grid.getValue(2, 0), 70.710678, 1e-6);
}

} // namespace
} // namespace tessaran::factors
