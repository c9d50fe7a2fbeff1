#include "grid/my_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaran::grid {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void setUp(myGrid& grid, int nX, int nY, double rotation = 0.0) {
    ASSERT_TRUE(grid.setupGrid(nX, nY, 10.0, 20.0, rotation));
    grid.setOrigin(1000.0, 2000.0, 5.0);
}

TEST(MyGrid, IsUndefinedUntilSetUp) {
    const myGrid grid;
    EXPECT_FALSE(grid.isDefined());
    EXPECT_FALSE(grid.getDefinition());
    EXPECT_FALSE(grid.getMinMax());
    EXPECT_FALSE(grid.gridOutline());
    EXPECT_EQ(grid.getMean(), 0.0);
    EXPECT_EQ(grid.getValue(0, 0), 0.0);
    EXPECT_FALSE(grid.cellCenter(0, 0));
    EXPECT_EQ(grid.pointToCell({1.0, 1.0}), (CellIndex{kBefore, kBefore}));
    EXPECT_EQ(grid.drawingSettings().mode, 5);
    EXPECT_TRUE(grid.drawingSettings().grouped);
}

TEST(MyGrid, SetupRefusesBadCountsAndLeavesTheGrid) {
    myGrid grid;
    setUp(grid, 3, 2);
    grid.setValue(1, 1, 7.0);
    EXPECT_FALSE(grid.setupGrid(0, 5, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.setupGrid(5, 0, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.setupGrid(-5, -5, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.setupGrid(5, 5, 1.0, 0.00009, 0.0));
    EXPECT_FALSE(grid.setupGrid(2000000000, 2000000000, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.setupGrid(5, 5, 1.0, kNaN, 0.0));
    EXPECT_EQ(grid.nX(), 3);
    EXPECT_EQ(grid.getValue(1, 1), 7.0);
    // Only the Y width is checked; the X width shows in isDefined().
    EXPECT_TRUE(grid.setupGrid(5, 5, 0.0, 1.0, 0.0));
    EXPECT_FALSE(grid.isDefined());
    EXPECT_TRUE(grid.setupGrid(1, 5, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.isDefined());
}

TEST(MyGrid, FillsWithTheBlankValueAndReplacesValues) {
    myGrid grid;
    grid.setBlankValue(-3.5);
    setUp(grid, 2, 2);
    EXPECT_EQ(grid.getValue(2, 2), -3.5);
    grid.setValue(0, 0, 1.0);
    setUp(grid, 2, 2);
    EXPECT_EQ(grid.getValue(0, 0), -3.5);
}

TEST(MyGrid, ReadsAndWritesWithinTheStore) {
    myGrid grid;
    setUp(grid, 3, 2);
    EXPECT_TRUE(grid.setValue(3, 2, 9.0));
    EXPECT_EQ(grid.getValue(3, 2), 9.0);
    EXPECT_EQ(grid.getValue(4, 0), 0.0);
    EXPECT_FALSE(grid.setValue(4, 0, 1.0));
    EXPECT_FALSE(grid.setValue(0, -1, 1.0));
    double value = 0.0;
    EXPECT_TRUE(grid.getValue(3, 2, value));
    EXPECT_EQ(value, 9.0);
    EXPECT_FALSE(grid.getValue(0, 3, value));
    EXPECT_TRUE(grid.setValueText(1, 0, " 12.5ft"));
    EXPECT_EQ(grid.getValue(1, 0), 12.5);
    EXPECT_EQ(grid.row(0)[1], 12.5);
    EXPECT_EQ(grid.values()[2 * 4 + 3], 9.0); // rows outer
}

TEST(MyGrid, PlacesCellsAndNodes) {
    myGrid grid;
    setUp(grid, 3, 2);
    grid.setValue(3, 2, 9.0);
    EXPECT_EQ(grid.cellCenter(0, 0), (Point3{1005.0, 2010.0, 0.0}));
    EXPECT_EQ(grid.cellCenter(3, 2), (Point3{1035.0, 2050.0, 9.0}));
    EXPECT_FALSE(grid.cellCenter(4, 2));
    EXPECT_FALSE(grid.cellCorners(3, 0));
    EXPECT_EQ(grid.nodePoint(-1, 5), (Point2{990.0, 2100.0}));
    EXPECT_EQ(grid.nodePoint3(3, 2), (Point3{1030.0, 2040.0, 9.0}));
    const auto corners = grid.cellCorners(1, 1);
    ASSERT_TRUE(corners);
    EXPECT_EQ((*corners)[0], (Point2{1010.0, 2020.0}));
    EXPECT_EQ((*corners)[1], (Point2{1020.0, 2020.0}));
    EXPECT_EQ((*corners)[2], (Point2{1020.0, 2040.0}));
    EXPECT_EQ((*corners)[3], (Point2{1010.0, 2040.0}));
    EXPECT_EQ(grid.cellCorners3(2, 1)->at(2).z, 9.0);
    const auto outline = grid.gridOutline();
    ASSERT_TRUE(outline);
    EXPECT_EQ((*outline)[2], (Point2{1030.0, 2040.0}));
}

TEST(MyGrid, FindsTheCellOfAPoint) {
    myGrid grid;
    setUp(grid, 3, 2);
    EXPECT_EQ(grid.pointToCell({1015.0, 2039.0}), (CellIndex{1, 1}));
    EXPECT_EQ(grid.pointToCell({1010.0, 2020.0}), (CellIndex{1, 1}));
    EXPECT_EQ(grid.pointToCell({1000.0, 2000.0}), (CellIndex{kBefore, kBefore}));
    EXPECT_EQ(grid.pointToCellClamped({1000.0, 2000.0}), (CellIndex{0, 0}));
    EXPECT_EQ(grid.pointToCell({1030.0, 2040.0}), (CellIndex{kBeyond, kBeyond}));
    EXPECT_EQ(grid.pointToCellClamped({5000.0, 5000.0}), (CellIndex{2, 1}));
    EXPECT_EQ(grid.pointToCell({1e300, -1e300}), (CellIndex{kBeyond, kBefore}));
    EXPECT_EQ(grid.pointToCell({kNaN, 2010.0}).column, kBefore);
}

TEST(MyGrid, RotatesByTheShortPi) {
    myGrid grid;
    setUp(grid, 3, 2, 90.0);
    EXPECT_EQ(grid.rotation(), 90.0 * 3.1415926 / 180.0);
    EXPECT_NEAR(grid.xStep().x, 0.0, 1e-6);
    EXPECT_NEAR(grid.xStep().y, 10.0, 1e-12);
    EXPECT_NEAR(grid.yStep().x, -20.0, 1e-12);
    EXPECT_EQ(grid.pointToCell({1000.0 - 5.0, 2000.0 + 5.0}), (CellIndex{0, 0}));
}

TEST(MyGrid, CellOfEveryCentreIsItself) {
    for (const double rotation : {0.0, 17.0, -133.0, 301.5}) {
        myGrid grid;
        setUp(grid, 7, 5, rotation);
        for (int i = 0; i < 7; ++i)
            for (int j = 0; j < 5; ++j)
                EXPECT_EQ(grid.pointToCell(grid.cellCenter(i, j)->plan()), (CellIndex{i, j}));
    }
}

TEST(MyGrid, StatisticsLookAtCellsWithValue) {
    myGrid grid;
    setUp(grid, 2, 2);
    grid.scaleValues(0.0);
    grid.setValue(0, 0, kNaN);
    grid.setValue(1, 0, 4.0);
    grid.setValue(0, 1, -1e20);
    grid.setValue(1, 1, 10.0);
    grid.setValue(2, 2, 1000.0); // a node beyond the cells
    EXPECT_EQ(grid.countWithoutValue(), 2u);
    ASSERT_TRUE(grid.getMinMax());
    EXPECT_EQ(grid.getMinMax()->min, 4.0);
    EXPECT_EQ(grid.getMinMax()->max, 10.0);
    EXPECT_EQ(grid.getMean(), 7.0);

    grid.rescaleValues(100.0, 0.0);
    EXPECT_EQ(grid.getValue(1, 0), 0.0);
    EXPECT_EQ(grid.getValue(1, 1), 100.0);
    EXPECT_EQ(grid.getValue(0, 1), -1e20);
    EXPECT_TRUE(std::isnan(grid.getValue(0, 0)));
    EXPECT_EQ(grid.getValue(2, 2), 0.0 + (1000.0 - 4.0) * 100.0 / 6.0);

    grid.scaleValues(0.5);
    EXPECT_EQ(grid.getValue(1, 1), 50.0);
    EXPECT_EQ(grid.getValue(0, 1), -1e20);
    grid.fillValue(3.0);
    EXPECT_EQ(grid.getMinMax()->min, 3.0);
    EXPECT_EQ(grid.getValue(2, 2), 8300.0); // the extra nodes keep theirs
    grid.fillValue(-2e20);
    EXPECT_FALSE(grid.getMinMax());
    EXPECT_EQ(grid.getMean(), 0.0);
}

TEST(MyGrid, DoesNotStretchFlatValues) {
    myGrid grid;
    setUp(grid, 2, 2);
    grid.fillValue(5.0);
    grid.rescaleValues(0.0, 100.0);
    EXPECT_EQ(grid.getValue(0, 0), 5.0);
    grid.setValue(0, 0, 6.0);
    grid.rescaleValues(1.0, 1.0);
    EXPECT_EQ(grid.getValue(0, 0), 6.0);
}

TEST(MyGrid, CellListsEndWithFalse) {
    myGrid grid;
    grid.markedCells().add({3, 4});
    CellIndex cell;
    EXPECT_TRUE(grid.markedCells().get(0, cell));
    EXPECT_EQ(cell, (CellIndex{3, 4}));
    EXPECT_FALSE(grid.markedCells().get(1, cell));
    EXPECT_FALSE(grid.selectedCells().get(0, cell));
}

TEST(MyGrid, MakesTheDefaultColourTableOnFirstLookup) {
    myGrid grid;
    setUp(grid, 2, 2);
    grid.setValue(0, 0, 0.4);
    grid.setValue(1, 1, 99.3);
    EXPECT_EQ(grid.bandOfValue(50.0), -1); // looks no colour up
    EXPECT_EQ(grid.colourOfValue(5.0), 174);
    // 0 to 100 in ten bands of 10, each with its palette entry.
    EXPECT_EQ(grid.bandCount(), 10);
    EXPECT_EQ(grid.breakValue(3), 30.0);
    EXPECT_EQ(grid.breakValue(11), 0.0);
    EXPECT_EQ(grid.colourOfValue(95.0), 50);
    EXPECT_EQ(grid.colourOfValue(1e9), 50);
    EXPECT_EQ(grid.colourOfValue(-1e9), 174);
    EXPECT_EQ(grid.bandOfValue(10.0), 1); // a break begins its band
    EXPECT_EQ(grid.bandColour(-2), 190);
    EXPECT_EQ(grid.bandColour(10), 174);

    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    EXPECT_TRUE(grid.colorBreaks().empty());
    grid.setColorBreaks({{0.0, 1}, {5.0, 2}, {9.0, 3}});
    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    EXPECT_EQ(grid.colourOfValue(7.0), 2); // a table that was set stays
    EXPECT_EQ(grid.colourOfValue(9.5), 2);
    EXPECT_EQ(grid.colourOfValue(4.9), 1);
}

} // namespace
} // namespace tessaran::grid
