#include "geometry/cell_coverage.h"
#include "geometry/polygon.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaran::geometry {
namespace {

using test::rectangle;

constexpr int kColumns = 23;
constexpr int kRows = 17;
constexpr CellRange kLattice{0, kColumns, 0, kRows};

using Shares = std::vector<double>;

std::size_t cell(int i, int j) {
    return static_cast<std::size_t>(i) * kRows + static_cast<std::size_t>(j);
}

// Adds up, so that a cell given twice would show.
Shares walked(const Polygon& polygon, const CellRange& range = kLattice) {
    Shares shares(kColumns * kRows, 0.0);
    CellWalker walker;
    for (const CoverageRun& run : walker.coverage(polygon, range))
        for (int i = run.columnBegin; i < run.columnEnd; ++i)
            shares[cell(i, run.row)] += run.covered;
    return shares;
}

// Each cell clipped by itself.
Shares literal(const Polygon& polygon) {
    Shares shares(kColumns * kRows, 0.0);
    for (int i = 0; i < kColumns; ++i)
        for (int j = 0; j < kRows; ++j)
            shares[cell(i, j)] = intersectionArea(rectangle(i, j, i + 1, j + 1), polygon);
    return shares;
}

void expectSame(const Shares& actual, const Shares& expected, double tolerance = 2e-12) {
    for (int i = 0; i < kColumns; ++i)
        for (int j = 0; j < kRows; ++j)
            ASSERT_NEAR(actual[cell(i, j)], expected[cell(i, j)], tolerance) << i << ", " << j;
}

TEST(CellCoverage, GivesTheSharesOfATriangle) {
    const Shares shares = walked({{1, 1}, {4, 1}, {1, 4}});
    EXPECT_EQ(shares[cell(1, 1)], 1.0);
    EXPECT_EQ(shares[cell(2, 1)], 1.0);
    EXPECT_EQ(shares[cell(3, 1)], 0.5);
    EXPECT_EQ(shares[cell(2, 2)], 0.5);
    EXPECT_EQ(shares[cell(3, 2)], 0.0);
    EXPECT_EQ(shares[cell(0, 1)], 0.0);
}

TEST(CellCoverage, EqualsClippingEachCellByItself) {
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        const Polygon star = test::starShaped(random, {11, 8}, 4.0 + round % 12, 3 + round);
        expectSame(walked(star), literal(star));
    }
}

TEST(CellCoverage, CountsSelfCrossingOutlinesWithTheirSign) {
    std::mt19937 random(12);
    for (int round = 0; round < 60; ++round) {
        const Polygon knot = test::tangled(random, {-4, -3}, {27, 20}, 4 + round % 20);
        expectSame(walked(knot), literal(knot), 2e-11);
    }
    const Shares bowTie = walked({{2, 2}, {3, 3}, {3, 2}, {2, 3}});
    EXPECT_EQ(bowTie[cell(2, 2)], 0.0); // the two lobes cancel
}

TEST(CellCoverage, HandlesOutlinesOnTheLattice) {
    std::mt19937 random(13);
    std::uniform_int_distribution<int> x(-2, 2 * kColumns + 4);
    std::uniform_int_distribution<int> y(-2, 2 * kRows + 4);
    for (int round = 0; round < 100; ++round) {
        Polygon polygon;
        for (int k = 0; k < 3 + round % 9; ++k)
            polygon.push_back({0.5 * x(random), 0.5 * y(random)});
        expectSame(walked(polygon), literal(polygon));
    }
}

TEST(CellCoverage, CountsCellsWhollyInsideAsExactlyOne) {
    const double wide = 1e-10; // what is left of coordinates in the millions
    const Shares shares = walked(rectangle(3 + wide, 2 - wide, 7 - wide, 6 - wide));
    for (int i = 3; i < 7; ++i)
        for (int j = 2; j < 6; ++j)
            EXPECT_EQ(shares[cell(i, j)], 1.0);
    const Polygon thirds{{1.0 / 3, 0.1}, {20 + 1.0 / 3, 0.7}, {19.9, 16.3}, {0.7, 15.1}};
    EXPECT_EQ(walked(thirds)[cell(10, 8)], 1.0);
}

TEST(CellCoverage, BandsGiveTheSameBitsAsTheWhole) {
    std::mt19937 random(14);
    for (int round = 0; round < 20; ++round) {
        const Polygon knot = test::tangled(random, {-4, -3}, {27, 20}, 12);
        Shares parts(kColumns * kRows, 0.0);
        for (const auto& [begin, end] : {std::pair{0, 5}, {5, 6}, {6, kRows}}) {
            const Shares part = walked(knot, {0, kColumns, begin, end});
            for (std::size_t k = 0; k < parts.size(); ++k)
                parts[k] += part[k];
        }
        EXPECT_EQ(parts, walked(knot));
    }
}

TEST(CellCoverage, SharesAddUpToTheArea) {
    std::mt19937 random(15);
    const Polygon star = test::starShaped(random, {11, 8}, 7.5, 31);
    double sum = 0.0;
    for (const double share : walked(star))
        sum += share;
    EXPECT_NEAR(sum, area(star), 1e-11);
}

TEST(CellCoverage, TurnsWithThePolygon) {
    std::mt19937 random(16);
    const Polygon star = test::starShaped(random, {8, 8}, 7.5, 13);
    Polygon turned; // by 90 degrees about (8.5, 8.5)
    Polygon mirrored;
    for (const Point2 p : star) {
        turned.push_back({17.0 - p.y, p.x});
        mirrored.push_back({17.0 - p.x, p.y});
    }
    const Shares plain = walked(star);
    const Shares quarter = walked(turned);
    const Shares mirror = walked(mirrored);
    for (int i = 0; i < kRows; ++i)
        for (int j = 0; j < kRows; ++j) {
            EXPECT_NEAR(quarter[cell(16 - j, i)], plain[cell(i, j)], 1e-12);
            EXPECT_NEAR(mirror[cell(16 - i, j)], plain[cell(i, j)], 1e-12);
        }
}

TEST(CellCoverage, TakesHostileOutlines) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const Shares none(kColumns * kRows, 0.0);
    EXPECT_EQ(walked({}), none);
    EXPECT_EQ(walked({{1, 1}, {5, 5}}), none);
    EXPECT_EQ(walked({{1, 1}, {5, 5}, {3, 3}}), none);
    EXPECT_EQ(walked({{1, 1}, {5, nan}, {3, 9}}), none);
    EXPECT_EQ(walked({{1, 1}, {infinite, 5}, {3, 9}}), none);
    EXPECT_EQ(walked({{1, 1}, {1e300, 5}, {3, 9}}), none);
    EXPECT_EQ(walked(rectangle(100, 100, 200, 200)), none);
    EXPECT_EQ(walked(rectangle(-1e100, -1e100, 1e100, 1e100)), Shares(kColumns * kRows, 1.0));
    EXPECT_EQ(walked(rectangle(2, 2, 6, 6), {4, 4, 0, 9}), none);
}

Shares centresWalked(const Polygon& polygon) {
    Shares inside(kColumns * kRows, 0.0);
    CellWalker walker;
    for (const CellRun& run : walker.centresInside(polygon, kLattice))
        for (int i = run.columnBegin; i < run.columnEnd; ++i)
            inside[cell(i, run.row)] += 1.0;
    return inside;
}

Shares centresLiteral(const Polygon& polygon) {
    Shares inside(kColumns * kRows, 0.0);
    for (int i = 0; i < kColumns; ++i)
        for (int j = 0; j < kRows; ++j)
            inside[cell(i, j)] = pointInPolygon({i + 0.5, j + 0.5}, polygon) ? 1.0 : 0.0;
    return inside;
}

TEST(CellCentres, EqualTestingEachCentre) {
    std::mt19937 random(17);
    for (int round = 0; round < 100; ++round) {
        const Polygon star = test::starShaped(random, {11, 8}, 4.0 + round % 12, 3 + round % 40);
        EXPECT_EQ(centresWalked(star), centresLiteral(star));
        const Polygon knot = test::tangled(random, {-4, -3}, {27, 20}, 3 + round % 20);
        EXPECT_EQ(centresWalked(knot), centresLiteral(knot));
    }
}

TEST(CellCentres, EqualTestingEachCentreOnTheOutline) {
    std::mt19937 random(18);
    std::uniform_int_distribution<int> x(-2, 2 * kColumns + 4);
    std::uniform_int_distribution<int> y(-2, 2 * kRows + 4);
    for (int round = 0; round < 200; ++round) {
        Polygon polygon;
        for (int k = 0; k < 3 + round % 9; ++k)
            polygon.push_back({0.5 * x(random), 0.5 * y(random)});
        EXPECT_EQ(centresWalked(polygon), centresLiteral(polygon));
    }
}

} // namespace
} // namespace tessaran::geometry
