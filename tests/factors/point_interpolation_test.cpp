#include "factors/point_interpolation.h"
#include "support/literal_generators.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace tessaran;
using namespace tessaran::factors;
using geometry::Point2;
using geometry::Point3;
using grid::myGrid;

namespace {

std::vector<Point3> scattered(unsigned seed, int count, double size) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-0.3 * size, 1.3 * size);
    std::vector<Point3> out;
    for (int k = 0; k < count; ++k)
        out.push_back({place(random), place(random), place(random)});
    return out;
}

} // namespace

TEST(PointGrid, IsTheLiteralSearchBitForBit) {
    struct Plan {
        int points;
        int minimum;
        double limit;
        double degrees;
    };
    for (const Plan& plan :
         {Plan{200, 8, 60.0, 0.0}, Plan{200, 1, 500.0, 25.0}, Plan{7, 10, 1e4, 0.0},
          Plan{3000, 5, 30.0, 110.0}, Plan{40, 0, 0.0, 0.0}}) {
        for (const auto kind : {Interpolation::simpleAverage, Interpolation::inverseDistance}) {
            const std::vector<Point3> points = scattered(21, plan.points, 150.0);
            myGrid grid;
            grid.setOrigin(10.0, 5.0, 0.0);
            ASSERT_TRUE(grid.setupGrid(31, 22, 5.0, 6.0, plan.degrees));
            const PointSearch search{kind, plan.minimum, plan.limit};
            std::vector<std::pair<int, int>> empty;
            base::NoProgress progress;
            const PointGridResult result =
                gridPoints(points, search, grid,
                           {[&](int i, int j) { empty.emplace_back(i, j); }, {}}, progress);
            ASSERT_TRUE(result.completed);
            std::vector<std::pair<int, int>> expectedEmpty;
            for (int i = 0; i <= 31; ++i) {
                for (int j = 0; j <= 22; ++j) {
                    const auto expected =
                        test::literalPointValue(points, search, 5.0, grid.cellCenter(i, j)->plan());
                    if (!expected)
                        expectedEmpty.emplace_back(i, j);
                    ASSERT_EQ(grid.getValue(i, j), expected.value_or(0.0)) << i << "," << j;
                }
            }
            EXPECT_EQ(empty, expectedEmpty);
        }
    }
}

TEST(PointGrid, NearPointsCountAtEveryLargerRadius) {
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 10.0, 10.0, 0.0));
    // From the centre of cell (0, 0), (5, 5): 8 and 16 away.
    const std::vector<Point3> points{{13, 5, 30}, {21, 5, 90}};
    base::NoProgress progress;
    const PointGridWatch ignore{[](int, int) {}, {}};
    ASSERT_TRUE(gridPoints(points, {Interpolation::simpleAverage, 3, 100.0}, grid, ignore, progress)
                    .completed);
    EXPECT_EQ(grid.getValue(0, 0), (30.0 + 30.0 + 90.0) / 3.0);
    // One entry within the first circle is that point's value.
    ASSERT_TRUE(
        gridPoints(points, {Interpolation::inverseDistance, 1, 100.0}, grid, ignore, progress)
            .completed);
    EXPECT_EQ(grid.getValue(0, 0), 30.0);
    // The limit does not keep the first circle from being searched.
    ASSERT_TRUE(gridPoints(points, {Interpolation::simpleAverage, 9, 1.0}, grid, ignore, progress)
                    .completed);
    EXPECT_EQ(grid.getValue(0, 0), 30.0);
}

TEST(PointGrid, ACellOnItsFirstPointGetsNoNumberByInverseDistance) {
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(3, 3, 10.0, 10.0, 0.0));
    base::NoProgress progress;
    const PointGridWatch ignore{[](int, int) {}, {}};
    const PointSearch search{Interpolation::inverseDistance, 2, 100.0};
    PointGridResult result = gridPoints({{5, 5, 10}, {7, 5, 20}}, search, grid, ignore, progress);
    EXPECT_TRUE(std::isnan(grid.getValue(0, 0)));
    EXPECT_EQ(result.withoutNumber, 1);
    // In the extra column it is no cell of the grid.
    result = gridPoints({{35, 5, 10}, {37, 5, 20}}, search, grid, ignore, progress);
    EXPECT_TRUE(std::isnan(grid.getValue(3, 0)));
    EXPECT_EQ(result.withoutNumber, 0);
    // Second in the list, it only ends the walk.
    result = gridPoints({{7, 5, 20}, {5, 5, 10}}, search, grid, ignore, progress);
    EXPECT_EQ(grid.getValue(0, 0), 20.0);
    EXPECT_EQ(result.withoutNumber, 0);
}
