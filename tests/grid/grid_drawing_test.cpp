#include "geometry/polygon.h"
#include "grid/grid_drawing.h"
#include "grid/grid_drawing_objects.h"
#include "grid/grid_drawing_shapes.h"
#include "support/recording_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <set>

namespace tessaran::grid {
namespace {

using host::Entity;
using host::EntityId;
using host::Hatch;
using test::RecordingHost;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr double kNone = -1e20;

// 3 columns, 2 rows, cells of 10 x 20; values shaped like the plan, north up.
void setUpSmall(myGrid& grid) {
    ASSERT_TRUE(grid.setupGrid(3, 2, 10.0, 20.0, 0.0));
    const double plan[2][3] = {{1.0, 9.0, kNone}, {1.0, 1.0, 9.0}};
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 3; ++i)
            grid.setValue(i, j, plan[1 - j][i]);
    grid.setColorBreaks({{0.0, 174}, {5.0, 50}, {10.0, 174}});
}

std::vector<Entity> entities(const RecordingHost& host) {
    std::vector<Entity> out;
    for (const EntityId id : host.database.select(host::SelectionFilter{}))
        out.push_back(*host.database.find(id));
    return out;
}

double areaOf(const Hatch& hatch) {
    double sum = 0.0; // holes run the other way
    for (const host::Loop& loop : hatch.loops) {
        geometry::Polygon points;
        for (const host::Loop::Vertex& vertex : loop.vertices)
            points.push_back(vertex.at);
        sum += geometry::signedArea(points);
    }
    return sum;
}

TEST(GridShapes, ColourEveryCellThatHasAValue) {
    myGrid grid;
    setUpSmall(grid);
    EXPECT_THAT(coloursByValue(grid), ElementsAre(174, 174, 50, 174, 50, 0));
    CellColours byColumn(6);
    for (int i = 0; i < 3; ++i)
        colourColumn(grid, i, byColumn);
    EXPECT_EQ(byColumn, coloursByValue(grid));
    grid.setDrawingSettings(5, 3, "", false, true);
    EXPECT_THAT(coloursByValue(grid), ElementsAre(3, 3, 3, 3, 3, 0));
}

TEST(GridShapes, MergeRunsInColumns) {
    myGrid grid;
    setUpSmall(grid);
    EXPECT_THAT(columnRuns(grid, coloursByValue(grid)),
                ElementsAre(CellRun{0, 0, 1, 174}, CellRun{1, 0, 0, 174}, CellRun{1, 1, 1, 50},
                            CellRun{2, 0, 0, 50}));
    EXPECT_EQ(runOutline(grid, {0, 0, 1, 174})[2], (Point2{10.0, 40.0}));
}

TEST(GridShapes, AreasCoverExactlyTheirCells) {
    // Random colours on a rotated grid: every colour's area is its number of cells, and so is the
    // area of its column runs.
    std::mt19937 random(5);
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(40, 30, 3.0, 2.0, 25.0));
    grid.setOrigin(2.5e6, -1.5e6, 0.0);
    CellColours colours(1200);
    std::map<int, int> cells;
    for (std::uint8_t& colour : colours) {
        colour = static_cast<std::uint8_t>(random() % 4);
        ++cells[colour];
    }
    const std::vector<ColourArea> areas = colourAreas(grid, colours);
    ASSERT_EQ(areas.size(), 3u);
    for (const ColourArea& area : areas) {
        Hatch hatch;
        hatch.loops = area.loops;
        EXPECT_NEAR(areaOf(hatch), 6.0 * cells[area.colour], 1e-5);
    }
    std::map<int, int> inRuns;
    for (const CellRun& run : columnRuns(grid, colours))
        inRuns[run.colour] += run.lastRow - run.firstRow + 1;
    for (const int colour : {1, 2, 3})
        EXPECT_EQ(inRuns[colour], cells[colour]);
}

TEST(GridShapes, KnowWhetherTheyMeetTheView) {
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(10, 10, 1.0, 1.0, 45.0)); // a diamond above the origin
    EXPECT_TRUE(gridMeetsBox(grid, {{-1.0, -1.0}, {1.0, 1.0}}));
    EXPECT_TRUE(gridMeetsBox(grid, {{-0.1, 6.0}, {0.1, 8.0}})); // wholly inside
    EXPECT_TRUE(gridMeetsBox(grid, {{-50.0, -50.0}, {50.0, 50.0}}));
    EXPECT_FALSE(gridMeetsBox(grid, {{20.0, 0.0}, {30.0, 9.0}}));
    EXPECT_FALSE(gridMeetsBox(grid, {{5.0, 0.0}, {7.0, 2.0}})); // beside the diamond's corner
    EXPECT_FALSE(gridMeetsBox(grid, {}));
}

TEST(DrawAfterBuild, ShowsOneGraphicAndKeepsNothingByDefault) {
    for (const DrawMode mode : {kPreviewCells, kPreviewSeam, kMapRuns, kMapFilled, kMapRegions}) {
        RecordingHost host;
        host.answers = {RecordingHost::kEnter};
        myGrid grid;
        setUpSmall(grid);
        EXPECT_FALSE(drawAfterBuild(host, grid, mode));
        ASSERT_EQ(host.patches.size(), 1u);
        EXPECT_EQ(host.patches[0].colours.size(), 6u);
        EXPECT_EQ(host.patches[0].colours[5], 0); // no value
        EXPECT_EQ(host.graphicsInView, 0u);
        EXPECT_TRUE(entities(host).empty());
        EXPECT_THAT(host.printed, HasSubstr("\n1 cells without value are left out."));
    }
}

TEST(DrawAfterBuild, KeepsCellLinesAsAGroup) {
    RecordingHost host;
    host.answers = {"k"};
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(12, 2, 10.0, 20.0, 0.0));
    EXPECT_TRUE(drawAfterBuild(host, grid, kPreviewLines));
    EXPECT_EQ(host.graphicsInView, 0u);
    const std::vector<Entity> lines = entities(host);
    ASSERT_EQ(lines.size(), 13u + 3u);
    std::size_t standingOut = 0;
    for (const Entity& line : lines)
        standingOut += line.colour == 6 ? 1 : 0;
    EXPECT_EQ(standingOut, 3u); // columns 0 and 10, row 0
    const auto& first = std::get<host::Line>(lines[1].geometry);
    EXPECT_EQ(first.start, (Point3{10.0, 0.0, 0.0}));
    EXPECT_EQ(first.end, (Point3{10.0, 40.0, 0.0}));
    EXPECT_EQ(host.database.group("PlekGrid").size(), 16u);
}

TEST(DrawAfterBuild, ChecksTheGridAndTheView) {
    RecordingHost host;
    myGrid grid;
    EXPECT_FALSE(drawAfterBuild(host, grid, kPreviewLines));
    EXPECT_EQ(host.printed, "\n Grid id not defined!");
    EXPECT_TRUE(host.asked.empty());

    host.printed.clear();
    host.values = {{"VIEWCTR", Point3{500.0, 500.0, 0.0}},
                   {"SCREENSIZE", Point2{200.0, 100.0}},
                   {"VIEWSIZE", 10.0}};
    setUpSmall(grid);
    host.answers = {"Keep"};
    EXPECT_TRUE(drawAfterBuild(host, grid, kPreviewCells));
    EXPECT_THAT(host.printed, HasSubstr("\nAttention: Grid may be drawn outside the view!"));
    EXPECT_EQ(entities(host).size(), 5u);
    host.printed.clear();
    host.values["VIEWCTR"] = Point3{20.0, 20.0, 0.0};
    EXPECT_FALSE(drawAfterBuild(host, grid, kPreviewCells));
    EXPECT_THAT(host.printed, Not(HasSubstr("Attention")));
}

TEST(DrawSeam, PutsCellsOnTheLayersOfTheirKind) {
    RecordingHost host;
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 10.0, 10.0, 0.0));
    grid.setValue(0, 0, 1.0);
    grid.setValue(1, 0, -1.0);
    grid.setValue(0, 1, 1e-10); // not above the tolerance
    EXPECT_TRUE(drawForGood(host, grid, kPreviewSeam));
    std::vector<std::string> layers;
    for (const Entity& entity : entities(host))
        layers.push_back(entity.layer);
    EXPECT_THAT(layers, ElementsAre("MineGrid_Pillar", "MineGrid_Gob", "MineGrid_Opening",
                                    "MineGrid_Opening"));
    EXPECT_EQ(host.database.layer("MineGrid_Opening")->colour, 3);
    EXPECT_EQ(host.database.layer("MineGrid_Pillar")->colour, 1);
    EXPECT_EQ(host.database.layer("MineGrid_Gob")->colour, 2);
    EXPECT_EQ(host.database.layer("MineGrid_Gob")->linetype, "Continuous");
}

TEST(DrawSeam, DrawsSmallCellsOnTheCurrentLayer) {
    RecordingHost host;
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 10.0, 2.0, 0.0));
    grid.setValue(0, 0, 1.0);
    EXPECT_TRUE(drawForGood(host, grid, kPreviewSeam));
    for (const Entity& entity : entities(host))
        EXPECT_EQ(entity.layer, "0");
    EXPECT_EQ(entities(host).size(), 4u);
}

TEST(ColourMap, EveryModeDrawsWhatItSays) {
    const std::map<int, std::pair<std::size_t, std::string>> expected{
        {0, {5, "LWPOLYLINE"}}, {1, {5, "LWPOLYLINE"}}, {2, {5, "LWPOLYLINE"}},
        {3, {4, "LWPOLYLINE"}}, {4, {3, "LWPOLYLINE"}}, {5, {2, "HATCH"}},
        {6, {5, "3DFACE"}},     {7, {2, "HATCH"}}};
    for (const auto& [mode, what] : expected) {
        SCOPED_TRACE(mode);
        RecordingHost host;
        myGrid grid;
        setUpSmall(grid);
        grid.setDrawingSettings(mode, 0, "MAP", false, true);
        EXPECT_TRUE(drawForGood(host, grid));
        const std::vector<Entity> made = entities(host);
        EXPECT_EQ(made.size(), what.first);
        for (const Entity& entity : made) {
            EXPECT_EQ(dxfName(entity), what.second);
            EXPECT_EQ(entity.layer, "MAP");
            EXPECT_TRUE(entity.colour == 174 || entity.colour == 50);
        }
        EXPECT_EQ(host.database.layer("MAP")->colour, 7);
    }
}

TEST(ColourMap, FacesLieAtTheirValue) {
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    EXPECT_TRUE(drawForGood(host, grid, colourMap(6)));
    const auto face = std::get<host::Face3d>(entities(host)[2].geometry); // cell (2, 0)
    EXPECT_EQ(face.corners[0], (Point3{20.0, 0.0, 9.0}));
    EXPECT_EQ(face.corners[2], (Point3{30.0, 20.0, 9.0}));
}

TEST(ColourMap, RegionsTellTheirStepsAndAreGathered) {
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    EXPECT_TRUE(drawForGood(host, grid, kMapRegions));
    EXPECT_THAT(host.printed,
                HasSubstr("\nCreating base regions ...\n Combining base regions ..."));
    EXPECT_THAT(host.printed, HasSubstr("\n 2 Hatchs are generated"));
    EXPECT_THAT(host.meterTexts,
                ElementsAre("Creating base regions ...", "Combining regions for color <50> ...",
                            "Combining regions for color <174> ..."));
    EXPECT_EQ(host.database.group("Zelk_Grid_Group").size(), 2u);
    const std::vector<Entity> made = entities(host);
    EXPECT_EQ(areaOf(std::get<Hatch>(made[0].geometry)), 2 * 200.0);
    EXPECT_EQ(areaOf(std::get<Hatch>(made[1].geometry)), 3 * 200.0);
}

TEST(ColourMap, TheCancelKeyLeavesTheDrawingAsItWas) {
    // Three columns, then two colours: polls 1 to 5.
    for (int poll = 1; poll <= 5; ++poll) {
        RecordingHost host;
        host.breakAt = poll;
        myGrid grid;
        setUpSmall(grid);
        EXPECT_FALSE(drawForGood(host, grid, kMapRegions));
        EXPECT_THAT(host.printed, HasSubstr("\nOperation is interrupted by user"));
        EXPECT_TRUE(entities(host).empty());
    }
}

TEST(ColourMap, AsksBeforeManyObjects) {
    RecordingHost host;
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(501, 500, 1.0, 1.0, 0.0));
    EXPECT_FALSE(drawForGood(host, grid, colourMap(0)));
    EXPECT_THAT(host.questions, ElementsAre("250500 objects will be added to the drawing. "
                                            "Do you want to keep them?"));
    EXPECT_TRUE(entities(host).empty());
    // Filled, the same grid is one object a colour.
    EXPECT_TRUE(drawForGood(host, grid, kMapFilled));
    EXPECT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(entities(host).size(), 1u);
}

TEST(ColourMap, FollowsTheValuesUnlessATableWasSet) {
    RecordingHost host;
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 1.0, 1.0, 0.0));
    grid.setValue(0, 0, 10.0);
    EXPECT_TRUE(drawForGood(host, grid, kMapFilled));
    EXPECT_EQ(grid.breakValue(10), 10.0);
    grid.setValue(0, 0, 100.0);
    EXPECT_TRUE(drawForGood(host, grid, kMapFilled));
    EXPECT_EQ(grid.breakValue(10), 100.0);
}

} // namespace
} // namespace tessaran::grid
