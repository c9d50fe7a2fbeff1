// The dialog "Create Grid for Area Based Factor" through the console.

#include "geometry/polygon.h"
#include "grid/grid_file.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_layers.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace tessaran::factors {
namespace {

using host::Entity;
using host::EntityId;
using host::Polyline;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

// A base grid of 4 x 4 cells of 10.
const std::string kOpen = "zelk_sFactorInArea\n"
                          ":set Number of Cells in X Direction = 4\n"
                          ":set Number of Cells in Y Direction = 4\n"
                          ":set Cell Width in X Direction = 10\n"
                          ":set Cell Width in Y Direction = 10\n"
                          ":set Rotation to X axis (degree) = 0\n"
                          ":set X Coordinate of Grid Origin = 0\n"
                          ":set Y Coordinate of Grid Origin = 0\n";
const std::string kFactors = ":set Inside Boundary = 80\n:set Outside Boundary = 20\n";
const std::string kHalf = ":choose Area Based\n:set Min. Area Inside (%) = 50\n";
const std::string kBuild = ":press Build Grid\n:answer yes\n";
const std::string kSave = ":set Output File (.grd) = out.grd\n:set Grid Description = Ponds\n"
                          ":press Save Grid\n:answer ok\n";
const std::string kOk = ":ok\n";

EntityId addPolyline(ScriptRun& run, const std::vector<geometry::Point2>& points,
                     const std::string& layer = host::kWorkingLayer, bool closed = true) {
    host::ensureLayer(run.host(), layer, 7);
    Polyline polyline;
    polyline.closed = closed;
    for (const geometry::Point2 p : points)
        polyline.vertices.push_back({p});
    const auto id = run.drawing().add({{}, layer, 256, "ByLayer", polyline});
    EXPECT_TRUE(id.ok());
    return *id;
}

EntityId addBox(ScriptRun& run, double x0, double y0, double x1, double y1) {
    return addPolyline(run, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// The saved grid's cells as people see them, the top row first: "I" inside, "." outside.
std::string savedCells(ScriptRun& run, double inside = 80.0) {
    grid::myGrid grid;
    EXPECT_TRUE(grid.readGrid(run.host(), "out.grd", true));
    std::string rows;
    for (int j = grid.nY() - 1; j >= 0; --j) {
        for (int i = 0; i < grid.nX(); ++i)
            rows += grid.getValue(i, j) == inside ? 'I' : '.';
        rows += '|';
    }
    return rows;
}

std::size_t objectsOn(ScriptRun& run, const std::string& layer) {
    return run.drawing().select(host::SelectionFilter{{layer}, {}, {}}).size();
}

double areaOnWorkingLayer(ScriptRun& run) {
    double area = 0.0;
    for (const EntityId id :
         run.drawing().select(host::SelectionFilter{{host::kWorkingLayer}, {}, {}}))
        area += geometry::area(host::vertexPolygon(*run.drawing().find(id)));
    return area;
}

// --- build --------------------------------------------------------------------------------------

TEST(AreaBuild, AreaBasedCountsHalfCoveredCells) {
    ScriptRun run;
    addBox(run, 5.0, 0.0, 25.0, 14.0); // half of columns 0 and 2; 40 % of row 1
    run(kOpen + kFactors + kHalf + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(savedCells(run), "....|....|....|III.|");
    EXPECT_THAT(run.transcript(),
                HasSubstr("Working layers: ZELK_Working_Layer\n1 Boundary objects existed, 1 are "
                          "related to the grid!\nDo you want to continue?"));
    EXPECT_THAT(run.transcript(), HasSubstr("Filter out the objects outside the grid..."));
    EXPECT_THAT(run.transcript(), HasSubstr(" Building grid, please waiting..."));
    EXPECT_THAT(run.transcript(), HasSubstr("Grid value will be saved to < out.grd >"));
    EXPECT_TRUE(run.state().graphics.graphics().empty()) << "temporary outlines are gone";
}

// Column 1 is covered by 40 % from each side, its middle by neither.
TEST(AreaBuild, SharesAddUpByAreaButNotByMiddlePoint) {
    for (const bool byArea : {true, false}) {
        ScriptRun run;
        addBox(run, 0.0, 0.0, 14.0, 20.0);
        addBox(run, 16.0, 0.0, 30.0, 20.0);
        const std::string how = byArea ? kHalf : ":choose Middle Point\n";
        run(kOpen + kFactors + how + kBuild + kSave + kOk);
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_EQ(savedCells(run), byArea ? "....|....|III.|III.|" : "....|....|I.I.|I.I.|");
    }
}

TEST(AreaBuild, ABoundaryWithinOneColumnContributesNothingAndIsTold) {
    ScriptRun run;
    addBox(run, 11.0, 1.0, 19.0, 39.0);
    run(kOpen + kFactors + kHalf + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(savedCells(run), "....|....|....|....|");
    EXPECT_THAT(run.transcript(), HasSubstr("1 boundaries cover only one column or one row"));
}

TEST(AreaBuild, TouchingAndOutsideBoundariesAreFilteredOut) {
    ScriptRun run;
    addBox(run, 40.0, 0.0, 60.0, 40.0); // touches along the grid's side
    addBox(run, 100.0, 100.0, 160.0, 160.0);
    run(kOpen + kFactors + kHalf + ":press Build Grid\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Working layers: ZELK_Working_Layer\n2 "
                          "Boundary objects existed, 0 are related to the grid!"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Building grid")));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Save it?"))) << "no grid is kept";
}

TEST(AreaBuild, RefusesEqualFactorsBadNumbersAndAnEmptyLayer) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + ":set Inside Boundary = 30\n:set Outside Boundary = 30\n:press Build Grid\n" +
        ":set Outside Boundary = 101\n:press Build Grid\n:set Outside Boundary = x\n" +
        ":press Build Grid\n:set Outside Boundary = 20\n:choose Area Based\n" +
        ":press Build Grid\n:choose Middle Point\n:press Build Grid\n:answer no\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Error: Inside boundary factor is equal to outside factor!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Please enter an integer between 0 and 100."));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Please enter a number."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Please enter an integer between 1 and 100."));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Building grid")));

    ScriptRun empty;
    empty(kOpen + kFactors + kHalf + ":press Build Grid\n" + kOk);
    EXPECT_THAT(empty.transcript(),
                HasSubstr("(message) No boundary objects were in Layer < ZELK_Working_Layer > !"));
}

TEST(AreaBuild, TheShareBoxIsEnabledForAreaBasedOnly) {
    ScriptRun run;
    run(kOpen + ":choose Middle Point\n:set Min. Area Inside (%) = 50\n");
    EXPECT_NE(run.status(), 0);
    EXPECT_THAT(run.error(), HasSubstr("disabled"));
}

TEST(AreaBuild, AUserBreakKeepsWhatWasDoneAndGivesItFactors) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    addBox(run, 20.0, 20.0, 40.0, 40.0);
    run(kOpen + kFactors + kHalf + ":break 1\n" + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("User interrupted!!"));
    const std::string cells = savedCells(run);
    EXPECT_TRUE(cells == "....|....|II..|II..|" || cells == "..II|..II|II..|II..|") << cells;
}

TEST(AreaBuild, WithoutAnAlgorithmEveryCellIsInsideAndThatIsPrinted) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + kFactors + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(savedCells(run), "IIII|IIII|IIII|IIII|");
    EXPECT_THAT(run.transcript(), HasSubstr("every cell counts as inside"));
}

TEST(AreaBuild, RemovesBoundariesWhenAsked) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + kFactors + kHalf + ":check Remove Boundaries\n" + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(objectsOn(run, host::kWorkingLayer), 0U);
    EXPECT_THAT(run.transcript(), HasSubstr("Boundary polylines are removed!"));
}

TEST(AreaBuild, HostileBoundariesLeaveTheOthersAlone) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    addPolyline(run, {{5.0, 5.0}, {5.0, 5.0}, {5.0, 5.0}});
    addPolyline(run, {{5.0, 5.0}});
    addPolyline(run, {{-1e300, -1e300}, {1e300, -1e300}, {1e300, 1e300}});
    run(kOpen + kFactors + kHalf + kBuild + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(savedCells(run), "....|....|II..|II..|");
}

// --- drawing, saving, closing -------------------------------------------------------------------

TEST(AreaGrid, IsDrawnForAWhileUnlessKept) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + kFactors + kHalf + kBuild + "\n" + kSave + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.drawing().entityCount(), 1U);

    ScriptRun kept;
    addBox(kept, 0.0, 0.0, 20.0, 20.0);
    kept(kOpen + kFactors + kHalf + kBuild + "Keep\n" + kSave + kOk);
    ASSERT_EQ(kept.status(), 0) << kept.report();
    // runs of equal colour: two in each of the columns 0 and 1, one in 2 and 3
    EXPECT_EQ(kept.drawing().entityCount(), 1U + 6U);
    EXPECT_EQ(kept.drawing().group("PlekGrid").size(), 6U);
}

TEST(AreaGrid, RebuildingAndClosingAskAboutAnUnsavedGrid) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + kFactors + kHalf + kBuild + ":press Build Grid\n:answer cancel\n" +
        ":set Output File (.grd) = out\n:ok\n:answer yes\n:answer ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(question) Modified Grid is not saved yet! continue "
                                            "to rebuild -> cancel"));
    EXPECT_THAT(run.transcript(), HasSubstr("(question) The Grid is not saved! Save it? -> yes"));
    EXPECT_TRUE(run.folder().has("out.grd")) << "the ending was added";
}

TEST(AreaGrid, AnExistingFileIsOnlyTakenWhenAllowed) {
    ScriptRun run;
    run.folder().write("there.grd", "precious");
    run(kOpen + ":set Output File (.grd) = mine\n:set Output File (.grd) = there\n:answer no\n"
                ":show\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("File Exists, Do you want to Overwrite it? -> no"));
    EXPECT_THAT(run.transcript(), HasSubstr("Output File (.grd) = mine.grd"));
    EXPECT_EQ(run.folder().read("there.grd"), "precious");
}

TEST(AreaGrid, CellsChangeByHand) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    run(kOpen + kFactors + kHalf + kBuild + kSave +
        ":press Change Cells\n5,5\n35,35\n35,35\n41,5\n\n:press Build Grid\n:answer cancel\n" +
        ":press Save Grid\n:answer ok\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(1,1) is change to opening!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(4,4) is change to opening!"))
        << "the outside factor is above 0";
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(4,4) is change to pillar!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("Sorry,this point (41.000000,5.000000) is outside the grid!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Modified Grid is not saved yet!"));
    EXPECT_EQ(savedCells(run, 0.0), "....|....|....|I...|");
    EXPECT_EQ(savedCells(run, 1.0), "...I|....|....|....|");
}

TEST(AreaCheck, TellsCountsAndOverlaps) {
    ScriptRun run;
    addBox(run, 0.0, 0.0, 20.0, 20.0);
    addBox(run, 10.0, 10.0, 30.0, 30.0);
    addBox(run, 30.0, 30.0, 38.0, 38.0); // meets the second at a corner only
    addBox(run, 100.0, 0.0, 120.0, 20.0);
    run(kOpen + kHalf + ":press Area Factor/Check Boundaries\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Filter out the polylines outside the grid..."));
    EXPECT_THAT(run.transcript(), HasSubstr("Check overlpped polylines ..."));
    EXPECT_THAT(run.transcript(), HasSubstr("2 polylines overlap others."));
    EXPECT_THAT(run.transcript(), HasSubstr("4 Boundary objects existed, 3 are related"));
}

// --- building tools -----------------------------------------------------------------------------

const std::string kTools = kOpen + ":page Building Tools\n";
const std::string kFromLayer = ":press Create from Polylines in Layer\n";

TEST(BuildingTools, CloseOpenPolylinesOfLayers) {
    ScriptRun run;
    addPolyline(run, {{0, 0}, {10, 0}, {10, 10}}, "ROAD", false);
    addPolyline(run, {{0, 0}, {20, 0}, {20, 20}}, "ROAD", false);
    addPolyline(run, {{0, 0}, {5, 0}, {5, 5}}, "ROAD", true);
    run(kTools + ":set Layers = ROAD\n" + kFromLayer + ":answer yes\n:answer yes\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Create boundaries from open polylines? -> yes"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("3 polylines are in layers < ROAD >.\nTotal 2 new boundary polylines "
                          "will be created in drawing! -> yes"));
    EXPECT_EQ(objectsOn(run, host::kWorkingLayer), 2U);
    EXPECT_NEAR(areaOnWorkingLayer(run), 50.0 + 200.0, 1e-9);
}

TEST(BuildingTools, NoErasesWhatWasMade) {
    ScriptRun run;
    addPolyline(run, {{0, 0}, {10, 0}, {10, 10}}, "ROAD", false);
    run(kTools + kFromLayer + ":set Layers = NONE\n" + kFromLayer + ":set Layers = ROAD\n" +
        kFromLayer + ":answer cancel\n:answer no\n" + kFromLayer + ":answer yes\n:answer no\n" +
        kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) No specified layer!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) No Polyline objects were in Layers < NONE > !"));
    EXPECT_THAT(run.transcript(), HasSubstr("Total 0 new boundary polylines"));
    EXPECT_EQ(objectsOn(run, host::kWorkingLayer), 0U);
}

// Around a line of length L: 2 r L and nothing beyond its ends; around a closed one a band.
TEST(BuildingTools, SurroundPolylines) {
    ScriptRun run;
    addPolyline(run, {{0, 0}, {30, 0}}, "CENTRE", false);
    run(kTools + ":set Layers = CENTRE\n:set Influence Range = 2\n" + kFromLayer + ":answer yes\n" +
        kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(objectsOn(run, host::kWorkingLayer), 1U);
    EXPECT_NEAR(areaOnWorkingLayer(run), 120.0, 1e-9);

    ScriptRun ring;
    addPolyline(ring, {{0, 0}, {40, 0}, {40, 40}, {0, 40}}, "CENTRE", true);
    ring(kTools + ":set Layers = CENTRE\n:set Influence Range = 2\n" + kFromLayer +
         ":answer yes\n" + kOk);
    ASSERT_EQ(ring.status(), 0) << ring.report();
    EXPECT_EQ(objectsOn(ring, host::kWorkingLayer), 1U);
    // outer square with corners rounded by 2, less the inner one
    EXPECT_NEAR(areaOnWorkingLayer(ring),
                44.0 * 44.0 - (4.0 - std::numbers::pi) * 4.0 - 36.0 * 36.0, 0.02);
}

TEST(BuildingTools, SurroundPickedCenterLines) {
    ScriptRun run;
    addPolyline(run, {{0, 10}, {30, 10}}, "CENTRE", false);
    addPolyline(run, {{0, 20}, {0, 20}}, "DOT", false);
    run(kTools + ":press Create from Center Lines\n:set Influence Range = 1\n" +
        ":press Create from Center Lines\n15,10\n0,20\n\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Range should not be zero!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Make a closed area around a center polylines:"));
    EXPECT_THAT(run.transcript(), HasSubstr(" No boundary is created for this center line!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("Total 1 new boundary polylines will be created in drawing!"));
    EXPECT_NEAR(areaOnWorkingLayer(run), 60.0, 1e-9);
}

TEST(BuildingTools, CopyAPickedAreaBoundary) {
    ScriptRun run;
    addPolyline(run, {{0, 0}, {30, 0}, {30, 30}}, "POND", true);
    addPolyline(run, {{50, 0}, {80, 0}}, "POND", false);
    ASSERT_TRUE(
        run.drawing().add({{}, "POND", 256, "ByLayer", host::Line{{0, 50, 0}, {9, 50, 0}}}));
    const std::string press = ":press Create from Area Boundary\n";
    run(kTools + press + "15,0\n" + press + "60,0\n" + press + "5,50\n" + press + "\n" + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Not a closed polyline!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Not a polyline!"));
    EXPECT_NEAR(areaOnWorkingLayer(run), 450.0, 1e-9);
}

TEST(BuildingTools, CheckAndDelete) {
    ScriptRun run;
    addBox(run, 0, 0, 10, 10);
    addBox(run, 20, 0, 30, 10);
    addBox(run, 40, 0, 50, 10);
    addPolyline(run, {{0, 50}, {30, 50}}, "OTHER", false);
    const std::string press = ":press Delete Boundaries\n";
    run(kTools + ":press Building Tools/Check Boundaries\n\n" + press + "5,0\n15,50\n^C\n" + press +
        "All\n" + press + kOk);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("3 polylines are in layers < ZELK_Working_Layer >."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("3 objects in the working layers < ZELK_Working_Layer >"));
    EXPECT_THAT(run.transcript(), HasSubstr("Selected object has been erased!"));
    EXPECT_THAT(run.transcript(), HasSubstr("All 2 objects have been erased"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) There are no objects in the working layers!"));
    EXPECT_EQ(objectsOn(run, "OTHER"), 1U);
}

} // namespace
} // namespace tessaran::factors
