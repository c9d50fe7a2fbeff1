// The dialog "Grid Utilities" through the console.

#include "grid/grid_utility_pages.h"
#include "grid/utility_script.h"
#include "host/host.h"
#include "host/services_entities.h"
#include "host/services_layers.h"
#include "support/recording_host.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace tessaran::grid {
namespace {

using host::Entity;
using host::EntityId;
using test::kLoad;
using test::kSaveAs;
using test::ScriptRun;
using testing::AllOf;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Rows = std::vector<std::vector<double>>;
constexpr double kNone = -1e20;
const std::string kAgain = "LINE\n0,0\n1,1\n\n"; // works only when the dialog has closed

void addBox(ScriptRun& run, double x0, double y0, double x1, double y1, bool closed = true) {
    Entity box = host::closedPolyline({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}, "0");
    std::get<host::Polyline>(box.geometry).closed = closed;
    ASSERT_TRUE(run.drawing().add(std::move(box)).ok());
}

// --- files and place ----------------------------------------------------------------------------

TEST(GridUtility, LoadsAndSaves) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2, 3}, {4, 5, 6}});
    run.folder().write("bad.grd", "no grid\n");
    run(kLoad +
        ":expect grid loaded:a.grd\n:press Load\n:file bad.grd\n"
        ":expect Grid file loading failed!\n"
        ":press Save\n:file copy\n:expect grid saved to copy.grd\n:show\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.folder().read("copy.grd"), run.folder().read("a.grd"));
    EXPECT_THAT(run.transcript(), HasSubstr("3 x 2 cells of 10 x 10, origin (0.00, 0.00)"));
    EXPECT_THAT(run.transcript(), HasSubstr("Status: grid saved to copy.grd"));
}

TEST(GridUtility, EveryFunctionAsksForAGridFirst) {
    for (const char* button :
         {"Save", "Apply Grid", "Get Values", "Statistics", "Statistics in Polygons",
          "Group Percentage", "Plot", "Preview", "Edit", "Legend", "Color Ramp"}) {
        ScriptRun run;
        run("zelk_gridUtility\n:press " + std::string(button) + "\n:show\n:ok\n");
        EXPECT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(), HasSubstr("Status: Grid is not defined!")) << button;
    }
    ScriptRun run;
    run("zelk_gridUtility\n:press Move Origin\n:show\n:set Value = 2\n:press Apply Value\n:show\n");
    EXPECT_THAT(run.transcript(), HasSubstr("Status: grid is not defined!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Status: Grid is not defined!"));
}

TEST(GridUtility, DefinesANewGridAndAsksBeforeDiscarding) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2, 3}, {4, 5, 6}});
    run(kLoad +
        ":set Value = 5\n:press Apply Value\n:press New\n" // not answered: kept
        ":press Load\n"
        ":press New\n:answer yes\n:set Number of Cells in X Direction = 7\n"
        ":set Number of Cells in Y Direction = 3\n:set Cell Width in X Direction = 10\n"
        ":set Cell Width in Y Direction = 10\n:ok\n:expect New Grid Defined ! (\n"
        ":press Save\n:file Untitled.grd\n:expect grid saved to Untitled.grd\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(question) Grid is modified but not saved, Do you "
                                            "want to discard anyway? -> no"));
    EXPECT_EQ(test::readCells(run, "Untitled.grd").size(), 3u);
}

TEST(GridUtility, MovesTheOriginInUserCoordinates) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2}, {3, 4}}, 10.0, 20.0);
    run("UCS\n100,0\n\n" + kLoad +
        ":press Move Origin\n5,6.5\n:expect Origin position moved from (10.000000,20.000000) to "
        "(105.000000,6.500000)\n:press Move Origin\n^C\n" +
        kSaveAs + kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.folder().read("out.grd"), testing::StartsWith("6.5"));
}

TEST(GridUtility, ClosingAsksAboutChanges) {
    for (const std::string end : {":ok\n", ":cancel\n"}) {
        ScriptRun run;
        test::writeGrid(run, "a.grd", {{1, 2}, {3, 4}});
        run(kLoad + ":set Value = 1\n:press Apply Value\n" + end +
            ":expect Grid is modified but not saved, Do you want exit anyway?\n"
            ":press Statistics\n:file\n" + // still open
            end +
            ":answer yes\n" + kAgain);
        EXPECT_EQ(run.status(), 0) << run.report();
    }
}

// --- operations ---------------------------------------------------------------------------------

TEST(GridUtility, AppliesValues) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2, 3}, {4, 5, kNone}});
    run(kLoad +
        ":set Value = 3\n:press Apply Value\n:answer ok\n:expect Apply <Add> to grid cells with "
        "value < "
        "3 >! Done!\n:expect 1 cells are left as they are: no value.\n"
        ":set Operation = multiply\n:press Apply Value\n:answer ok\n"
        ":expect Apply <Multiply> to grid cells with value <3>! Done!\n"
        ":set Operation = Subtract\n:press Apply Value\n:answer cancel\n"
        ":set Operation = Divide\n:set Value = 4\n:press Apply Value\n"
        ":set Operation = Square\n:press Apply Value\n"
        ":answer ok\n:expect Apply <Square> to grid cells! Done!\n" +
        kSaveAs);
    ASSERT_EQ(run.status(), 0) << run.report();
    // ((v + 3) * 3 / 4) squared
    EXPECT_THAT(test::readCells(run, "out.grd"),
                ElementsAre(ElementsAre(9.0, 14.0625, 20.25),
                            ElementsAre(DoubleNear(27.5625, 1e-6), 36.0, kNone)));
}

TEST(GridUtility, RefusesZeroUnknownAndRoots) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{-1, 2}, {3, 4}});
    run(kLoad +
        ":set Operation = Square\n:press Apply Value\n:expect (message) No Zero value makes "
        "sense!!\n"
        ":set Operation = Power\n:set Value = 0.00000000001\n:press Apply Value\n"
        ":expect (message) No Zero value makes sense!!\n"
        ":set Value = 2\n:press Apply Value\n:expect (message) Unsupported Operation!!\n"
        ":set Value = 2 apples\n:press Apply Value\n:expect (message) Please enter a number.\n"
        ":set Value = 1\n:set Operation = Square Root\n:press Apply Value\n"
        ":expect (message) Negative value can not find square root !!\n"
        ":press Apply Grid\n:expect (message) Unsupported Operation!!\n:ok\n" +
        kAgain); // nothing was changed
    EXPECT_EQ(run.status(), 0) << run.report();
}

TEST(GridUtility, CombinesWithAGridThatCoversAPart) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2, 3, 4}, {5, 6, 7, 8}});
    test::writeGrid(run, "b.grd", {{2, 0}, {kNone, 4}}, 10.0, 0.0); // columns 1 and 2
    run(kLoad +
        ":set Operation = Divide\n:press Apply Grid\n:file b.grd\n"
        ":answer ok\n:expect Apply <Divide> to grid cells with values from grid <b.grd>! Done!\n"
        ":expect 4 cells are left as they are: outside of the other grid.\n"
        ":expect 1 cells are left as they are: division by zero.\n"
        ":set Operation = ADD\n:press Apply Grid\n:file b.grd\n" +
        kSaveAs);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(test::readCells(run, "out.grd"),
                ElementsAre(ElementsAre(1, 3, 3, 4), ElementsAre(5, 6, 5.75, 8)));
    ScriptRun bad;
    test::writeGrid(bad, "a.grd", {{1, 2}, {3, 4}});
    bad.folder().write("b.grd", "0\n0\n");
    bad(kLoad +
        ":press Apply Grid\n:file b.grd\n:answer ok\n:expect Can not read in grid file!\n"
        ":press Get Values\n:file b.grd\n:answer ok\n:expect Read file error!\n"
        ":press Statistics\n:file b.grd\n:expect File read error!\n:ok\n" +
        kAgain);
    EXPECT_EQ(bad.status(), 0) << bad.report();
}

TEST(GridUtility, TakesTheNearestValues) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}});
    test::writeGrid(run, "b.grd", {{1, 2}, {3, 4}}, 10.0, -10.0);
    run(kLoad +
        ":press Get Values\n:file b.grd\n:expect Get grid values from b.grd, the nearest "
        "value will be assigned to grid cells out of range!\n"
        ":answer ok\n:expect Grid values have been read in from b.grd\n" +
        kSaveAs);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(
        test::readCells(run, "out.grd"),
        ElementsAre(ElementsAre(3, 3, 4, 4), ElementsAre(3, 3, 4, 4), ElementsAre(3, 3, 4, 4)));
}

TEST(GridUtility, RefusesValuesOfAFileThatIsNoGridOfCells) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2}, {3, 4}});
    run.folder().write("row.grd", "0\n0\n1\n2\n2\n1\n1\n2\n3\n4\n5\n6\n");
    run(kLoad +
        ":press Get Values\n:file row.grd\n:answer ok\n:expect File is not correctly read in!\n"
        ":press New Layer\na*b\n:expect Layer < a*b > can not been created!\n"
        ":press New Layer\n\n:ok\n" +
        kAgain);
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nInput new layer name:"));
}

// --- figures ------------------------------------------------------------------------------------

TEST(GridUtility, ShowsStatisticsAndCorrelation) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{1, 2, 3}, {6, 6, kNone}});
    test::writeGrid(run, "b.grd", {{2, 4, 6}, {12, 12, 1}});
    run(kLoad +
        ":press Statistics\n:file\n"
        ":expect Total Sample: 5\n:expect Mean: 3.600000\n"
        ":expect Standard Deviation: 2.302173\n" // sqrt(21.2 / 4)
        ":expect Minimum Value: 1.000000 (1 samples)\n"
        ":expect Maximum Value: 6.000000 (2 samples)\n:expect Cells without Value: 1\n"
        ":press Statistics\n:file b.grd\n:expect Correlation Coefficent: 1.000000\n:show\n"
        ":ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Status: Total Sample: 5\nMean: 3.600000"));
}

TEST(GridUtility, StatisticsInsidePolygons) {
    const auto start = [](ScriptRun& run) {
        test::writeGrid(run, "a.grd", {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}});
        addBox(run, 0, 0, 26, 30);        // columns 0, 1 and 0.6 of column 2
        addBox(run, 0, 0, 24, 30);        // overlaps: counts once
        addBox(run, -10, 20, 45, 40);     // row 2
        addBox(run, 0, 0, 40, 30, false); // open: no polygon
    };
    const auto ids = [](ScriptRun& run) {
        std::vector<std::string> handles;
        for (const EntityId id : run.drawing().select(host::SelectionFilter{}))
            handles.push_back(fmt::format("#{:X}", id.value));
        return handles;
    };
    ScriptRun run;
    start(run);
    const auto h = ids(run);
    const std::string press = kLoad + ":press Statistics in Polygons\n";
    run(press + h[0] + " " + h[1] + "\n\n" + h[2] +
        "\n\n\n"
        // columns 0 to 2 of rows 0 and 1: 1 2 3 5 6 7
        ":expect Statistics:\n:expect Total Sample: 6\n:expect Mean: 4.000000\n"
        // 61 percent: column 2 does not reach it
        ":press Statistics in Polygons\n" +
        h[0] +
        "\n\n\n61\n"
        ":expect Total Sample: 6\n:expect Mean: 5.500000\n"
        // no inclusion polygon: all cells; the open one is left out
        ":press Statistics in Polygons\n\n" +
        h[2] + " " + h[3] +
        "\n\n\n"
        ":expect 1 of 2 selected objects are not closed and left out.\n"
        ":expect Total Sample: 8\n:expect Mean: 4.500000\n:press Statistics in Polygons\n\n\n101\n"
        ":expect The percentage must be between 0 and 100!\n100\n:expect Total Sample: 12\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Select inclusion polygons:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Select exclusion polygons:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Input area percentage criteria of grid cell "
                                            "inside/outside polygons<50>:"));
}

// --- drawing ------------------------------------------------------------------------------------

std::vector<Entity> onLayer(ScriptRun& run, const std::string& layer) {
    std::vector<Entity> out;
    for (const EntityId id : run.drawing().select(host::SelectionFilter{{layer}, {}, {}}))
        out.push_back(*run.drawing().find(id));
    return out;
}

std::string textOf(const Entity& entity) {
    return std::get<host::Text>(entity.geometry).text;
}

TEST(GridUtility, DrawsTheGroupPercentage) {
    ScriptRun run;
    // 3 of 4 cells in the lower of two bands.
    test::writeGrid(run, "a.grd", {{0, 1, 2, 10}, {kNone, kNone, kNone, kNone}});
    run(kLoad +
        ":press Color Ramp\n:set Bands = 2\n:ok\n:set Layer = SHARES\n"
        ":press Group Percentage\nYes\n200,0\n100,40\n"
        ":expect 0 - 5: 3 cells, 75.00 %, area 300.00\n"
        ":press Group Percentage\n\n0,0\n0,0\n:expect Invalid point pair!\n"
        ":press Group Percentage\nNo\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    const std::vector<Entity> table = onLayer(run, "SHARES");
    ASSERT_EQ(table.size(), 8u);
    EXPECT_EQ(table[0].colour, 174);
    EXPECT_EQ(textOf(table[1]), "0 - 5");
    EXPECT_EQ(textOf(table[2]), "75.00 %");
    EXPECT_EQ(textOf(table[3]), "300.00");
    EXPECT_EQ(table[4].colour, 50);
    EXPECT_EQ(textOf(table[6]), "25.00 %");
    for (const EntityId id : run.drawing().group("ZELK Group Percentage")) {
        const auto extents = run.drawing().extents(id).value();
        EXPECT_GE(extents.low.x, 100.0);
        EXPECT_LE(extents.high.x, 200.0);
        EXPECT_GE(extents.low.y, 0.0);
        EXPECT_LE(extents.high.y, 40.0);
    }
}

TEST(GridUtility, RefusesColourGroupsThatCannotBeTold) {
    ScriptRun run;
    // Numbers of this size are 16 apart, ten bands between two of them are not.
    test::writeGrid(run, "a.grd", {{1e17, 1e17 + 16}, {1e17, 1e17}});
    run(kLoad +
        ":press Group Percentage\n\n:expect Invalid grid color group definition!\n:show\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Status: Invalid grid color group definition!"));
    EXPECT_EQ(run.drawing().entityCount(), 0u);
}

TEST(GridUtility, TipsNameTheFunctions) {
    test::RecordingHost host;
    GridUtilityPage page;
    dlg_gridutility dialog(page);
    const host::DialogSession session(host, dialog);
    const auto tip = [&](const char* label) {
        return session.find(label, host::DialogSession::Purpose::press).value().control->toolTip;
    };
    EXPECT_EQ(tip("Move Origin"), "Move grid origin point.");
    EXPECT_EQ(tip("Apply Grid"), "Apply operation with another grid.");
    EXPECT_EQ(tip("Apply Value"), "Apply operation with the value.");
    EXPECT_EQ(tip("Edit"), "Check and change element value.");
    EXPECT_EQ(tip("Preview"), "Preview the grid plot.");
}

TEST(GridUtility, PlotsCellByCellOrByGroup) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{0, 0, 100}, {0, 100, kNone}});
    run(kLoad +
        ":set Layer = CELLS\n:press Plot\n:expect Plot a.grd on layer CELLS in color\n"
        ":press New Layer\nCELLS\n:expect Layer < CELLS > has existed!\nBANDS\n"
        ":expect New layer < BANDS > has been created!\n:check Group by Color\n"
        ":check Black/White\n:press Plot\n"
        ":expect Plot a.grd on layer BANDS in black/white  to group\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    const std::vector<Entity> cells = onLayer(run, "CELLS");
    ASSERT_EQ(cells.size(), 5u);
    EXPECT_EQ(cells[0].colour, 174);
    EXPECT_EQ(cells[2].colour, 50);
    const std::vector<Entity> bands = onLayer(run, "BANDS");
    ASSERT_EQ(bands.size(), 2u); // dark for the low, light for the high
    EXPECT_EQ(bands[0].colour, 250);
    EXPECT_EQ(bands[1].colour, 255);
    EXPECT_EQ(run.drawing().group("Zelk_Grid_Group").size(), 2u);
}

TEST(GridUtility, PreviewsAndKeepsOnTheLayer) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{0, 0, 100}, {0, 100, kNone}});
    run(kLoad +
        ":set Layer = LOOK\n:press Preview\n\n"
        ":expect Preview a.grd on layer LOOK in color\n"
        ":check Group by Color\n:press Preview\nKeep\n:ok\n" +
        kAgain);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(onLayer(run, "LOOK").size(), 2u);
}

TEST(GridUtility, IsOneStepOfUndo) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", {{0, 0, 100}, {0, 100, kNone}});
    run(kLoad + ":set Layer = CELLS\n:press Plot\n:check Group by Color\n:press Plot\n"
                ":press Legend\n50,0\n60,50\n:press Group Percentage\n\n100,0\n200,90\n"
                ":set Value = 2\n:press Apply Value\n:ok\n:answer yes\nUNDO\n1\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.drawing().entityCount(), 0u);
    EXPECT_FALSE(run.drawing().layer("CELLS"));
    EXPECT_TRUE(run.drawing().groups().empty());
}

} // namespace
} // namespace tessaran::grid
