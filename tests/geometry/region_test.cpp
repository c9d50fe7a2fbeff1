#include "geometry/polygon.h"
#include "geometry/region.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaran::geometry {
namespace {

using std::numbers::pi;
using test::movedBy;
using test::rectangle;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

PlanarRegion box(double x0, double y0, double x1, double y1) {
    return regionOf(rectangle(x0, y0, x1, y1));
}

// Outer loops run counter-clockwise and holes clockwise, so the plain sum is the area.
double sumOfLoops(const PlanarRegion& region) {
    double sum = 0.0;
    for (const Polygon& loop : region.loops)
        sum += signedArea(loop);
    return sum;
}

TEST(RegionArea, FollowsTheEvenOddRule) {
    EXPECT_DOUBLE_EQ(area({{rectangle(0, 0, 10, 10), rectangle(2, 2, 4, 4)}}), 96.0);
    EXPECT_DOUBLE_EQ(
        area({{rectangle(0, 0, 10, 10), rectangle(2, 2, 8, 8), rectangle(3, 3, 5, 5)}}), 68.0);
    EXPECT_DOUBLE_EQ(area({{rectangle(0, 0, 2, 2), rectangle(1, 1, 3, 3)}}), 6.0);
    EXPECT_DOUBLE_EQ(area({{rectangle(0, 0, 2, 2), rectangle(5, 5, 6, 6)}}), 5.0);
    EXPECT_DOUBLE_EQ(area(regionOf({{0, 0}, {2, 2}, {2, 0}, {0, 2}})), 2.0);
}

TEST(RegionUnite, JoinsSharedSidesAndKeepsHoles) {
    // Eight cells around a free one.
    std::vector<PlanarRegion> cells;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            if (i != 1 || j != 1)
                cells.push_back(box(i, j, i + 1, j + 1));
    const auto united = unite(cells);
    ASSERT_TRUE(united);
    ASSERT_EQ(united->loops.size(), 2U);
    EXPECT_DOUBLE_EQ(signedArea(united->loops[0]), 9.0);
    EXPECT_DOUBLE_EQ(signedArea(united->loops[1]), -1.0);
}

TEST(RegionSubtract, CutsAndEmpties) {
    const std::vector<PlanarRegion> pillars{box(0.5, -1, 2, 2), box(-1, 0.25, 0.25, 0.5)};
    const auto cut = subtract(box(0, 0, 1, 1), pillars);
    ASSERT_TRUE(cut);
    EXPECT_DOUBLE_EQ(sumOfLoops(*cut), 0.5 - 0.0625);
    const auto nothing = subtract(box(0, 0, 1, 1), std::vector{box(-1, -1, 2, 2)});
    ASSERT_TRUE(nothing);
    EXPECT_TRUE(nothing->empty());
    const auto holed = subtract(box(0, 0, 10, 10), std::vector{box(4, 4, 6, 6)});
    ASSERT_EQ(holed->loops.size(), 2U);
    EXPECT_DOUBLE_EQ(sumOfLoops(*holed), 96.0);
    const auto touched = subtract(box(0, 0, 1, 1), std::vector{box(1, 0, 2, 1)});
    EXPECT_DOUBLE_EQ(sumOfLoops(*touched), 1.0);
}

TEST(RegionIntersect, GivesTheCommonPart) {
    const PlanarRegion ring{{rectangle(0, 0, 10, 10), rectangle(2, 2, 8, 8)}};
    const auto common = intersect(ring, box(5, -5, 20, 20));
    ASSERT_TRUE(common);
    EXPECT_DOUBLE_EQ(sumOfLoops(*common), 50.0 - 18.0);
    EXPECT_TRUE(intersect(ring, box(3, 3, 4, 4))->empty());
    EXPECT_TRUE(intersect(ring, box(10, 0, 20, 10))->empty()); // a common side has no area
}

TEST(RegionTwins, PartsAddUpAndPlacesDoNotMatter) {
    std::mt19937 random(21);
    for (int round = 0; round < 100; ++round) {
        const Polygon a = test::tangled(random, {0, 0}, {10, 10}, 9);
        const Polygon b = test::starShaped(random, {5, 5}, 5.0, 11);
        const double both = area(*intersect(regionOf(a), regionOf(b)));
        const double onlyA = area(*subtract(regionOf(a), std::vector{regionOf(b)}));
        const double either = area(*unite(std::vector{regionOf(a), regionOf(b)}));
        EXPECT_NEAR(both + onlyA, area(regionOf(a)), 1e-9);
        EXPECT_NEAR(either, onlyA + area(b), 1e-9);
        const Point2 far{5'000'000.0, 3'000'000.0};
        EXPECT_NEAR(area(*intersect(regionOf(movedBy(a, far)), regionOf(movedBy(b, far)))), both,
                    1e-6);
    }
}

TEST(RegionFar, KeepsTheGivenVerticesToTheLastBit) {
    const Point2 far{4'000'000.1, 5'000'000.7};
    const Polygon cell = movedBy(rectangle(0, 0, 5, 5), far);
    const auto cut =
        subtract(regionOf(cell), std::vector{regionOf(movedBy(rectangle(2, -1, 9, 9), far))});
    ASSERT_EQ(cut->loops.size(), 1U);
    int kept = 0;
    for (const Point2 p : cut->loops[0])
        kept += std::count(cell.begin(), cell.end(), p) > 0 ? 1 : 0;
    EXPECT_EQ(kept, 2);
}

TEST(RegionHostile, TakesAnyLoops) {
    const PlanarRegion bad{{{},
                            {{0, 0}},
                            {{0, 0}, {1, 1}},
                            {{0, 0}, {1, 1}, {2, 2}},
                            {{kNaN, 0}, {1, 1}, {2, 0}},
                            {{1e300, 0}, {1, 1}, {2, 0}},
                            {{3, 3}, {3, 3}, {3, 3}, {3, 3}}}};
    EXPECT_EQ(area(bad), 0.0);
    EXPECT_TRUE(cleaned(bad));
    EXPECT_DOUBLE_EQ(area(*subtract(box(0, 0, 2, 2), std::vector{bad, PlanarRegion{}})), 4.0);
    EXPECT_DOUBLE_EQ(area(*unite(std::vector{bad, box(0, 0, 2, 2)})), 4.0);
    EXPECT_TRUE(intersect(bad, box(0, 0, 2, 2))->empty());
    EXPECT_TRUE(unite({})->empty());
    const Polygon square = rectangle(0, 0, 2, 2); // the same outline three times
    EXPECT_DOUBLE_EQ(
        area(*unite(std::vector{regionOf(square), regionOf(square), regionOf(square)})), 4.0);
}

// Points a little inside and outside of what must be the outline.
void expectWithin(const PlanarRegion& region, Point2 in, Point2 out) {
    EXPECT_TRUE(pointInPolygon(in, region.loops[0])) << in.x << " " << in.y;
    EXPECT_FALSE(pointInPolygon(out, region.loops[0])) << out.x << " " << out.y;
}

TEST(AreaAround, HasFlatEndsAndRoundCorners) {
    const std::vector<Point2> straight{{0, 0}, {10, 0}};
    const auto strip = areaAround(straight, 2.0);
    ASSERT_TRUE(strip);
    ASSERT_EQ(strip->loops.size(), 1U);
    EXPECT_NEAR(area(strip->loops[0]), 40.0, 1e-12);

    const std::vector<Point2> bent{{0, 0}, {10, 0}, {10, 10}};
    const auto elbow = areaAround(bent, 2.0);
    ASSERT_TRUE(elbow);
    ASSERT_EQ(elbow->loops.size(), 1U);
    // Two rectangles, less their common square, and a quarter disc outside the corner.
    EXPECT_NEAR(area(elbow->loops[0]), 80.0 - 4.0 + pi, 4e-3);
    const double diagonal = std::sqrt(0.5);
    expectWithin(*elbow, Point2{10, 0} + 1.997 * Point2{diagonal, -diagonal},
                 Point2{10, 0} + 2.0001 * Point2{diagonal, -diagonal});
    expectWithin(*elbow, {8.01, 9.99}, {8.01, 10.01});
}

TEST(AreaAround, EqualsTheDistanceAlongABentLine) {
    // Inside are the points nearer than the range, up to the arcs' chords.
    const std::vector<Point2> line{{0, 0}, {20, 3}, {35, -8}, {50, -8}, {55, 10}, {75, 12}};
    const double range = 4.0;
    const auto around = areaAround(line, range);
    ASSERT_TRUE(around);
    ASSERT_EQ(around->loops.size(), 1U);
    std::mt19937 random(4);
    std::uniform_real_distribution<double> x(5, 70);
    std::uniform_real_distribution<double> y(-20, 20);
    for (int k = 0; k < 20000; ++k) {
        const Point2 p{x(random), y(random)};
        double nearest = 1e9;
        for (std::size_t s = 0; s + 1 < line.size(); ++s) {
            const Vector2 d = line[s + 1] - line[s];
            const double share = std::clamp(dot(p - line[s], d) / dot(d, d), 0.0, 1.0);
            nearest = std::min(nearest, distance(p, line[s] + share * d));
        }
        if (std::abs(nearest - range) <= 1e-3 * range)
            continue;
        ASSERT_EQ(pointInPolygon(p, around->loops[0]), nearest < range)
            << p.x << " " << p.y << " " << nearest;
    }
}

TEST(AreaAround, TakesHostileLines) {
    EXPECT_FALSE(areaAround({}, 1.0));
    EXPECT_FALSE(areaAround(std::vector<Point2>{{1, 1}, {1, 1}}, 1.0));
    EXPECT_FALSE(areaAround(std::vector<Point2>{{0, 0}, {kNaN, 1}}, 1.0));
    EXPECT_FALSE(areaAround(std::vector<Point2>{{0, 0}, {1, 1}}, 0.0));
    EXPECT_FALSE(areaAround(std::vector<Point2>{{0, 0}, {1, 1}}, kNaN));
    // There and back again, and a range far above the segments' lengths.
    const auto back = areaAround(std::vector<Point2>{{0, 0}, {10, 0}, {0, 0}}, 1.0);
    ASSERT_TRUE(back);
    EXPECT_NEAR(area(*back), 20.0 + 0.5 * pi, 2e-3);
    const auto wide = areaAround(std::vector<Point2>{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 50.0);
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->loops.size(), 1U);
}

TEST(BandAround, HasAnOuterAndAnInnerLoop) {
    const auto band = bandAround(rectangle(0, 0, 10, 10), 1.0);
    ASSERT_TRUE(band);
    ASSERT_EQ(band->loops.size(), 2U);
    EXPECT_NEAR(signedArea(band->loops[0]), 100.0 + 40.0 + pi, 4e-3);
    EXPECT_NEAR(signedArea(band->loops[1]), -64.0, 1e-9);
    EXPECT_EQ(bandAround(rectangle(0, 0, 10, 10), 5.5)->loops.size(), 1U); // inside filled
}

TEST(RegionOffset, MovesBothWays) {
    const PlanarRegion square = box(0, 0, 10, 10);
    EXPECT_NEAR(area(*offset(square, 1.0)), 140.0 + pi, 4e-3);
    EXPECT_NEAR(area(*offset(square, -1.0)), 64.0, 1e-9);
    EXPECT_TRUE(offset(square, -6.0)->empty());
    const PlanarRegion ring{{rectangle(0, 0, 30, 30), rectangle(10, 10, 20, 20)}};
    EXPECT_NEAR(area(*offset(ring, 1.0)), 900.0 + 120.0 + pi - 64.0, 4e-3);
}

} // namespace
} // namespace tessaran::geometry
