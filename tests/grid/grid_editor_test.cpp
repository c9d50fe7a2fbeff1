// The grid editor on the port: what it prints, shows and leaves behind.

#include "grid/grid_editor.h"
#include "grid/my_grid.h"
#include "support/recording_host.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tessaran::grid {
namespace {

using host::Point3;
using test::RecordingHost;
using testing::ElementsAre;
using testing::HasSubstr;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const Point3 kEnter{kNaN, 0.0, 0.0};

// 3 x 2 cells of 10; the value of cell (i, j) is i + 10 j, the last has none.
void setUpSmall(myGrid& grid) {
    ASSERT_TRUE(grid.setupGrid(3, 2, 10.0, 10.0, 0.0));
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 3; ++i)
            grid.setValue(i, j, i + 10.0 * j);
    grid.setValue(2, 1, base::kNoValue);
}

TEST(GridEditor, AssignsToPickedCellsAndShowsThem) {
    RecordingHost host;
    host.ucsOrigin = {100.0, 0.0, 0.0};
    myGrid grid;
    setUpSmall(grid);
    host.points = {{-95.0, 5.0, 0.0}, {-75.0, 15.0, 0.0}, {-50.0, 5.0, 0.0}, kEnter};
    host.numbers = {4.5};
    host.answers = {RecordingHost::kEnter};
    EXPECT_TRUE(editGrid(host, grid));
    EXPECT_EQ(grid.getValue(0, 0), 4.5);
    EXPECT_EQ(grid.getValue(2, 1), 4.5);
    EXPECT_EQ(grid.getValue(1, 1), 11.0);
    EXPECT_EQ(host.printed,
              "\n1 cells added into selection.\n1 grid cells are in current selection."
              "\n1 cells added into selection.\n2 grid cells are in current selection."
              "\nThe point is outside of the Grid<-50.000000,5.000000>!"
              "\nAverage value at the 2 cells is: 0.000000."
              "\n1 of them have no value and are left out."
              "\n2 grid cells are assigned to 4.500000."
              "\nNew selection begins ...");
    EXPECT_THAT(host.asked, testing::Contains("\nChange 2 selected cell values to <0.000000>:"));
    EXPECT_EQ(host.asked.back(), "\nGrid values modified, accept the changes?<YES>:");
    EXPECT_THAT(host.statuses, ElementsAre("Cell(0,0) Value: 0.00", "Cell(2,1) Value: N", ""));
    EXPECT_THAT(host.meterTexts, ElementsAre("Initializing Grid Editor ..."));
    EXPECT_EQ(host.graphicsInView, 0u);

    // All cells, each in a colour; then the picked one, filled and outlined.
    ASSERT_GE(host.patches.size(), 3u);
    EXPECT_FALSE(host.patches[0].filled);
    EXPECT_THAT(host.patches[0].colours, testing::Each(testing::Ne(0)));
    EXPECT_TRUE(host.patches[1].filled);
    EXPECT_THAT(host.patches[1].colours, ElementsAre(host.patches[0].colours[0], 0, 0, 0, 0, 0));
    EXPECT_FALSE(host.patches[2].filled);
    EXPECT_THAT(host.patches[2].colours, ElementsAre(7, 0, 0, 0, 0, 0));
}

TEST(GridEditor, EnterTakesTheExactAverageAndDiscardingRestoresAll) {
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    grid.setValue(0, 0, 1e-9); // the average shows as 0.500000
    host.points = {{5.0, 5.0, 0.0}, {15.0, 5.0, 0.0}, kEnter, {5.0, 15.0, 0.0}, kEnter};
    host.numbers = {kNaN, 77.0};
    host.answers = {"n"};
    const std::vector<double> before(grid.values().begin(), grid.values().end());
    EXPECT_FALSE(editGrid(host, grid));
    EXPECT_THAT(host.printed, HasSubstr("\n2 grid cells are assigned to 0.500000."));
    EXPECT_THAT(host.printed, HasSubstr("\n1 grid cells are assigned to 77.000000."));
    EXPECT_THAT(host.printed, testing::EndsWith("\nExit grid editor without changes."));
    EXPECT_THAT(grid.values(), testing::ElementsAreArray(before));

    host.points = {{5.0, 5.0, 0.0}, {15.0, 5.0, 0.0}, kEnter};
    host.numbers = {kNaN};
    host.answers = {"Y"};
    EXPECT_TRUE(editGrid(host, grid));
    EXPECT_EQ(grid.getValue(1, 0), (1.0 + 1e-9) / 2.0);
}

TEST(GridEditor, TellsTheCellUnderTheCursorAtTheCornersOfShapesToo) {
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    host.pointKeywords = {"WINDOW"};
    host.points = {{5.0, 15.0, 0.0}, {25.0, 5.0, 0.0}, kEnter};
    EXPECT_FALSE(editGrid(host, grid));
    host.pointKeywords = {"FENCE"};
    host.points = {{15.0, 5.0, 0.0}, {35.0, 5.0, 0.0}, kEnter, kEnter};
    EXPECT_FALSE(editGrid(host, grid));
    EXPECT_THAT(host.statuses, ElementsAre("Cell(0,1) Value: 10.00", "Cell(2,0) Value: 2.00",
                                           "Cell(1,0) Value: 1.00", ""));
}

TEST(GridEditor, AsksNothingWhenNothingChanged) {
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    host.points = {{5.0, 5.0, 0.0}, kEnter, kEnter}; // the value prompt is cancelled, the next too
    EXPECT_FALSE(editGrid(host, grid));
    EXPECT_THAT(host.asked, testing::Not(testing::Contains(HasSubstr("accept the changes"))));
    EXPECT_EQ(grid.getValue(0, 0), 0.0);
    myGrid none;
    EXPECT_FALSE(editGrid(host, none));
    EXPECT_THAT(host.printed, testing::EndsWith("\nGrid is not defined!"));
}

TEST(GridEditor, EditsAFileInPlace) {
    test::TemporaryFolder folder;
    RecordingHost host;
    myGrid grid;
    setUpSmall(grid);
    grid.setTitle("Depth");
    const std::string file = (folder.path() / "depth.grd").string();
    ASSERT_TRUE(grid.writeGrid(host, file));
    const std::string before = folder.read("depth.grd");

    host.points = {{25.0, 5.0, 0.0}, kEnter};
    host.numbers = {6.25};
    host.answers = {"No"};
    EXPECT_FALSE(editGridFile(host, file));
    EXPECT_EQ(folder.read("depth.grd"), before);
    host.points = {{25.0, 5.0, 0.0}, kEnter};
    host.numbers = {6.25};
    host.answers = {RecordingHost::kEnter};
    EXPECT_TRUE(editGridFile(host, file));
    EXPECT_THAT(host.printed, testing::EndsWith("\nSaved grid to " + file + "."));
    myGrid read;
    ASSERT_TRUE(read.readGrid(host, file, true));
    EXPECT_EQ(read.getValue(2, 0), 6.25);
    EXPECT_EQ(read.getValue(1, 1), 11.0);
    EXPECT_EQ(read.title(), "Depth");

    EXPECT_FALSE(editGridFile(host, "missing.grd"));
    EXPECT_THAT(host.printed, testing::EndsWith("\nCan not load grid file: missing.grd"));
}

} // namespace
} // namespace tessaran::grid
