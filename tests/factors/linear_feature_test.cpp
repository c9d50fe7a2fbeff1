#include "factors/horizontal_stress.h"
#include "factors/linear_feature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <random>

using namespace tessaran;
using namespace tessaran::factors;
using geometry::Curve;
using geometry::Point2;
using grid::myGrid;

namespace {

void define(myGrid& grid, int nX, int nY, double width, double degrees = 0.0, double x = 0.0,
            double y = 0.0) {
    grid.setOrigin(x, y, 0.0);
    ASSERT_TRUE(grid.setupGrid(nX, nY, width, width, degrees));
}

// Every cell against every feature, by the curve's own closest point.
double literalInfluence(const std::vector<Curve>& features, const LinearInfluence& influence,
                        const myGrid& grid, int i, int j) {
    double value = 0.0;
    const Point2 centre = grid.cellCenter(i, j)->plan();
    for (const Curve& feature : features) {
        const double d = feature.closestTo(centre)->distance;
        if (d > influence.distance)
            continue;
        const double f = (influence.distance - d) * 100.0 / influence.distance;
        value = influence.accumulate ? std::min(100.0, f + value) : std::max(f, value);
    }
    return value;
}

std::vector<Curve> randomFeatures(unsigned seed, int count, double size) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-0.2 * size, 1.2 * size);
    std::uniform_real_distribution<double> bulge(-1.5, 1.5);
    std::vector<Curve> out;
    for (int k = 0; k < count; ++k) {
        std::vector<geometry::CurveVertex> vertices;
        for (int v = 0; v < 5; ++v)
            vertices.push_back(
                {{place(random), place(random), 0.0}, random() % 2u == 0 ? bulge(random) : 0.0});
        out.emplace_back(vertices, k % 3 == 0);
    }
    return out;
}

} // namespace

TEST(LinearFeatures, AStraightFaultGivesALinearRamp) {
    myGrid grid;
    define(grid, 20, 20, 10.0);
    // The fault runs through the centres of column 4; D is four and a half cells.
    const std::vector<Curve> fault{Curve::line({45, -500, 0}, {45, 500, 0})};
    base::NoProgress progress;
    ASSERT_TRUE(gridLinearFeatures(fault, {45.0, false}, grid, progress));
    for (int j = 0; j < 20; ++j) {
        EXPECT_DOUBLE_EQ(grid.getValue(4, j), 100.0);
        EXPECT_DOUBLE_EQ(grid.getValue(5, j), 3500.0 / 45.0);
        EXPECT_DOUBLE_EQ(grid.getValue(0, j), 500.0 / 45.0);
        EXPECT_EQ(grid.getValue(9, j), 0.0); // 50 away
    }
    ASSERT_TRUE(gridLinearFeatures(fault, {50.0, false}, grid, progress));
    EXPECT_EQ(grid.getValue(9, 3), 0.0); // exactly at the distance
    EXPECT_DOUBLE_EQ(grid.getValue(8, 3), 20.0);
}

TEST(LinearFeatures, AnArcGivesConcentricRampsAndAccumulationIsHeldAt100) {
    myGrid grid;
    define(grid, 40, 40, 5.0, 0.0, -100.0, -100.0);
    const std::vector<Curve> circle{Curve::circle({0, 0, 0}, 60.0)};
    base::NoProgress progress;
    ASSERT_TRUE(gridLinearFeatures(circle, {30.0, false}, grid, progress));
    for (int i = 0; i < 40; ++i) {
        for (int j = 0; j < 40; ++j) {
            const Point2 c = grid.cellCenter(i, j)->plan();
            const double d = std::abs(std::hypot(c.x, c.y) - 60.0);
            EXPECT_NEAR(grid.getValue(i, j), std::max(0.0, (30.0 - d) * 100.0 / 30.0), 1e-9);
        }
    }
    const std::vector<Curve> parallel{Curve::line({-100, 0, 0}, {100, 0, 0}),
                                      Curve::line({-100, 15, 0}, {100, 15, 0})};
    ASSERT_TRUE(gridLinearFeatures(parallel, {30.0, true}, grid, progress));
    // Row 21 has its centres at y = 7.5: 75 from each.
    EXPECT_DOUBLE_EQ(grid.getValue(20, 21), 100.0);
    // Row 16 at y = -17.5: 12.5 / 30 from the first only.
    EXPECT_NEAR(grid.getValue(20, 16), 12.5 * 100.0 / 30.0, 1e-9);
    // Row 17 at y = -12.5: 17.5 and 2.5 of 30.
    EXPECT_NEAR(grid.getValue(20, 17), 2000.0 / 30.0, 1e-9);
}

TEST(LinearFeatures, EqualTheLiteralLoopOnTurnedGridsToo) {
    for (const double degrees : {0.0, 33.0, 200.0}) {
        for (const bool accumulate : {false, true}) {
            myGrid grid;
            define(grid, 37, 29, 7.0, degrees, 120.0, 80.0);
            const std::vector<Curve> features = randomFeatures(5, 12, 300.0);
            const LinearInfluence influence{40.0, accumulate};
            base::NoProgress progress;
            ASSERT_TRUE(gridLinearFeatures(features, influence, grid, progress));
            for (int i = 0; i < 37; ++i)
                for (int j = 0; j < 29; ++j)
                    ASSERT_NEAR(grid.getValue(i, j),
                                literalInfluence(features, influence, grid, i, j), 1e-8)
                        << degrees << " " << i << "," << j;
        }
    }
}

TEST(LinearFeatures, AccumulationIsNeverBelowTheSingleInfluence) {
    const std::vector<Curve> features = randomFeatures(8, 25, 400.0);
    myGrid single;
    myGrid summed;
    define(single, 40, 40, 10.0, 12.0);
    define(summed, 40, 40, 10.0, 12.0);
    base::NoProgress progress;
    ASSERT_TRUE(gridLinearFeatures(features, {60.0, false}, single, progress));
    ASSERT_TRUE(gridLinearFeatures(features, {60.0, true}, summed, progress));
    int above = 0;
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 40; ++j) {
            ASSERT_GE(summed.getValue(i, j), single.getValue(i, j)) << i << "," << j;
            ASSERT_LE(summed.getValue(i, j), 100.0);
            above += summed.getValue(i, j) > single.getValue(i, j) ? 1 : 0;
        }
    EXPECT_GT(above, 0);
}

TEST(LinearFeatures, AHugeDistanceReachesEverywhere) {
    myGrid grid;
    define(grid, 10, 10, 1.0, 0.0, 1e6, 1e6);
    base::NoProgress progress;
    ASSERT_TRUE(gridLinearFeatures(std::vector<Curve>{Curve::line({0, 0, 0}, {1, 0, 0})},
                                   {99999999999.0, false}, grid, progress));
    EXPECT_NEAR(grid.getValue(9, 9), 100.0, 0.01);
}

TEST(LinearFeatures, ACancelEndsTheWork) {
    class Cancelled final : public base::Progress {
      public:
        void begin(std::string_view, long, long) override {}
        void setPosition(long) override {}
        void end() override {}
        bool cancelled() override { return true; }
    } progress;
    myGrid grid;
    define(grid, 10, 10, 1.0);
    EXPECT_FALSE(gridLinearFeatures(std::vector<Curve>{Curve::line({0, 0, 0}, {9, 9, 0})},
                                    {3.0, false}, grid, progress));
}

TEST(HorizontalStress, RatesTheAngleBetweenEntryAndStress) {
    const double quarter = std::numbers::pi / 4.0;
    EXPECT_NEAR(horizontalStressRating({0, 0}, {1, 0}, 0.0), 0.0, 1e-12);
    EXPECT_NEAR(horizontalStressRating({0, 0}, {0, 1}, 0.0), 100.0, 1e-12);
    EXPECT_NEAR(horizontalStressRating({0, 0}, {1, 1}, 0.0), 100.0 * std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(horizontalStressRating({1, 1}, {0, 0}, 0.0), 100.0 * std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(horizontalStressRating({0, 0}, {1, -1}, quarter), 100.0, 1e-12);
    EXPECT_NEAR(horizontalStressRating({0, 0}, {1, 1}, quarter + std::numbers::pi), 0.0, 1e-10);
    EXPECT_NEAR(horizontalStressRating({0, 0}, {-1, 0}, 3.0 * quarter), 100.0 * std::sqrt(0.5),
                1e-12);
}

TEST(HorizontalStress, CellsKeepTheLargestRatingWithinHalfTheEntry) {
    myGrid grid;
    define(grid, 20, 20, 2.0);
    base::NoProgress progress;
    std::vector<int> tooShort;
    const std::vector<std::vector<Point2>> lines{
        {{0, 21}, {40, 21}}, {{5, 5}}, {{21, 0}, {21, 40}}, {}};
    ASSERT_TRUE(
        gridHorizontalStress(lines, {8.0, std::numbers::pi / 6.0}, grid, tooShort, progress));
    EXPECT_EQ(tooShort, (std::vector<int>{1, 3}));
    // Along X: 30 degrees to the stress, 50; along Y: 60 degrees, 86.6.
    EXPECT_NEAR(grid.getValue(2, 10), 50.0, 1e-9);
    EXPECT_NEAR(grid.getValue(2, 12), 50.0, 1e-9); // centre at 25, exactly 4 away
    EXPECT_EQ(grid.getValue(2, 13), 0.0);
    EXPECT_NEAR(grid.getValue(10, 2), 100.0 * std::sqrt(0.75), 1e-9);
    EXPECT_NEAR(grid.getValue(10, 10), 100.0 * std::sqrt(0.75), 1e-9);
    EXPECT_EQ(grid.getValue(2, 2), 0.0);
}
