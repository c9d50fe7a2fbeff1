#include "geometry/polygon.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaran::geometry {
namespace {

using test::movedBy;
using test::rectangle;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const Polygon kBowTie{{0, 0}, {2, 2}, {2, 0}, {0, 2}};

Polygon reversed(Polygon p) {
    std::reverse(p.begin(), p.end());
    return p;
}

Polygon rotatedBy(Polygon polygon, double angle) {
    for (Point2& p : polygon)
        p = rotated(p, {0, 0}, angle);
    return polygon;
}

TEST(PolygonArea, KeepsSignAndClosesOnce) {
    const Polygon triangle{{1, 1}, {5, 1}, {1, 4}};
    EXPECT_DOUBLE_EQ(signedArea(triangle), 6.0);
    EXPECT_DOUBLE_EQ(signedArea(reversed(triangle)), -6.0);
    EXPECT_DOUBLE_EQ(area(Polygon{{1, 1}, {5, 1}, {1, 4}, {1, 1}}), 6.0);
    EXPECT_DOUBLE_EQ(signedArea(kBowTie), 0.0);
}

TEST(PolygonArea, KeepsItsDigitsFarFromTheOrigin) {
    const Point2 far{4'231'000.0, 7'654'000.0};
    EXPECT_DOUBLE_EQ(area(movedBy(rectangle(0.25, 0.25, 0.5, 0.75), far)), 0.125);
}

TEST(PolygonArea, RefusesWhatIsNoPolygon) {
    EXPECT_EQ(area(Polygon{}), 0.0);
    EXPECT_EQ(area(Polygon{{0, 0}, {1, 1}}), 0.0);
    EXPECT_EQ(area(Polygon{{0, 0}, {1, 0}, {kNaN, 1}}), 0.0);
    EXPECT_EQ(area(Polygon{{0, 0}, {1e300, 0}, {1, 1}}), 0.0);
    EXPECT_FALSE(pointInPolygon({kNaN, 0}, rectangle(-1, -1, 1, 1)));
}

TEST(Clipping, CutsAgainstWindowsOfEitherOrientation) {
    const Polygon window = rectangle(0, 0, 2, 2);
    const Polygon diamond{{2, -1}, {4, 1}, {2, 3}, {0, 1}};
    // The window holds the left half of the diamond, without its two tips outside: 4 - 2 * 1/2 * 1.
    EXPECT_DOUBLE_EQ(intersectionArea(window, diamond), 3.0);
    EXPECT_DOUBLE_EQ(intersectionArea(reversed(window), diamond), 3.0);
    EXPECT_DOUBLE_EQ(intersectionArea(window, reversed(diamond)), 3.0);
}

TEST(Clipping, HandlesWholeNoneAndTouching) {
    const Polygon window = rectangle(0, 0, 2, 2);
    EXPECT_DOUBLE_EQ(intersectionArea(window, rectangle(0.5, 0.5, 1, 1)), 0.25);
    EXPECT_DOUBLE_EQ(intersectionArea(window, rectangle(-5, -5, 5, 5)), 4.0);
    EXPECT_EQ(intersectionArea(window, rectangle(3, 0, 4, 1)), 0.0);
    EXPECT_EQ(intersectionArea(window, rectangle(2, 0, 4, 2)), 0.0); // shares a side
    EXPECT_TRUE(clipToConvex(window, Polygon{{0, 0}, {1, 1}}).empty());
}

TEST(Clipping, JoinsPartsWithoutAddingArea) {
    // A comb whose teeth reach into the window from below: two teeth of 1 x 1.
    const Polygon comb{{0, -2}, {5, -2}, {5, 1}, {4, 1}, {4, -1}, {1, -1}, {1, 1}, {0, 1}};
    EXPECT_DOUBLE_EQ(intersectionArea(rectangle(-1, 0, 6, 9), comb), 2.0);
}

TEST(Clipping, AgreesAfterRotationAndMirror) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const Polygon window = rectangle(-1, -1, 2, 1.5);
        const Polygon subject = test::tangled(random, {-3, -3}, {3, 3}, 7);
        const double plain = intersectionArea(window, subject);
        EXPECT_NEAR(intersectionArea(rotatedBy(window, 0.7), rotatedBy(subject, 0.7)), plain,
                    1e-12);
        Polygon mirrored = subject;
        for (Point2& p : mirrored)
            p.x = -p.x;
        EXPECT_NEAR(intersectionArea(rectangle(-2, -1, 1, 1.5), mirrored), plain, 1e-12);
    }
}

TEST(PointInPolygon, SharesNoPointBetweenNeighbours) {
    const Polygon left = rectangle(0, 0, 1, 2);
    const Polygon right = rectangle(1, 0, 2, 2);
    const Polygon upper = rectangle(0, 2, 1, 3);
    EXPECT_TRUE(pointInPolygon({0, 1}, left));
    EXPECT_FALSE(pointInPolygon({1, 1}, left));
    EXPECT_TRUE(pointInPolygon({1, 1}, right));
    EXPECT_FALSE(pointInPolygon({0.5, 2}, left));
    EXPECT_TRUE(pointInPolygon({0.5, 2}, upper));
    const Polygon below{{0, 0}, {3, 0}, {3, 1}};
    const Polygon above{{0, 0}, {3, 1}, {0, 1}};
    for (const double x : {0.3, 0.9, 1.7, 2.9}) // on the shared slanted side, up to rounding
        EXPECT_NE(pointInPolygon({x, x / 3.0}, below), pointInPolygon({x, x / 3.0}, above));
}

TEST(PointInPolygon, WindsWithoutRegardToOrientation) {
    const Polygon twice{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {4, 0}, {4, 4}, {0, 4}};
    EXPECT_TRUE(pointInPolygon({1, 1}, twice));
    EXPECT_TRUE(pointInPolygon({1, 1}, reversed(twice)));
    EXPECT_TRUE(pointInPolygon({0.2, 1}, kBowTie));
    EXPECT_TRUE(pointInPolygon({1.8, 1}, kBowTie));
    EXPECT_FALSE(pointInPolygon({1, 0.2}, kBowTie));
}

TEST(OverlapArea, TakesAnyTwoPolygons) {
    // Two U shapes, one upside down, sharing 1 x 1 at the tip of each leg.
    const Polygon u{{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
    const Polygon cap{{0, 2}, {1, 2}, {1, 4}, {2, 4}, {2, 2}, {3, 2}, {3, 5}, {0, 5}};
    EXPECT_NEAR(overlapArea(u, cap), 2.0, 1e-12);
    const Point2 far{3'000'000.0, 6'000'000.0};
    EXPECT_NEAR(overlapArea(movedBy(u, far), movedBy(cap, far)), 2.0, 1e-9);
    EXPECT_NEAR(overlapArea(kBowTie, rectangle(0, 0, 2, 2)), 2.0, 1e-12);
    EXPECT_EQ(overlapArea(rectangle(0, 0, 1, 1), rectangle(1, 0, 2, 1)), 0.0);
    EXPECT_EQ(overlapArea(rectangle(0, 0, 1, 1), Polygon{{0, 0}, {1, 1}, {kNaN, 0}}), 0.0);
    EXPECT_EQ(overlapArea(rectangle(0, 0, 1, 1), Polygon{{0, 0}, {1, 1}, {0.5, 0.5}}), 0.0);
}

} // namespace
} // namespace tessaran::geometry
