#include "geometry/curve.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaran::geometry {
namespace {

using std::numbers::pi;

void expectNear(Point2 actual, Point2 expected, double tolerance = 1e-12) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
}

// Two straight sides of 10 and two half circles of radius 3.
Curve stadium() {
    return {{{{0, 0, 0}}, {{10, 0, 0}, 1.0}, {{10, 6, 0}}, {{0, 6, 0}, 1.0}}, true};
}

TEST(CurveLength, FollowsArcs) {
    EXPECT_DOUBLE_EQ(Curve::circle({5, 5, 0}, 2.0).length(), 4.0 * pi);
    EXPECT_DOUBLE_EQ(stadium().length(), 20.0 + 6.0 * pi);
    EXPECT_DOUBLE_EQ(Curve::line({0, 0, 0}, {3, 4, 100}).length(), 5.0); // in plan
    EXPECT_DOUBLE_EQ(Curve::arc({0, 0, 0}, 2.0, 1.5 * pi, 0.5 * pi).length(), 2.0 * pi);
    const double flat = 1e-9; // an arc that is straight to the last digits
    EXPECT_DOUBLE_EQ(Curve({{{0, 0, 0}, flat}, {{7, 0, 0}}}, false).length(), 7.0);
}

TEST(CurvePoints, StandAtTheirDistance) {
    const Curve curve = stadium();
    expectNear(curve.pointAt(4.0).plan(), {4, 0});
    expectNear(curve.pointAt(10.0 + 1.5 * pi).plan(), {13, 3});
    expectNear(curve.pointAt(curve.length() - 1.5 * pi).plan(), {-3, 3});
    expectNear(curve.pointAt(-1.0).plan(), {0, 0});
    expectNear(curve.pointAt(1e9).plan(), {0, 0}); // closed: the end is the start
    const Curve slope({{{0, 0, 10}}, {{10, 0, 20}}, {{10, 30, -10}}}, false);
    EXPECT_DOUBLE_EQ(slope.pointAt(5).z, 15.0);
    EXPECT_DOUBLE_EQ(slope.pointAt(25).z, 5.0);
    EXPECT_DOUBLE_EQ(slope.pointAt(99).z, -10.0);
}

TEST(CurveClosest, FindsTrueArcsAndHeights) {
    const Curve curve = stadium();
    const auto right = curve.closestTo({20, 3});
    ASSERT_TRUE(right);
    expectNear(right->point.plan(), {13, 3});
    EXPECT_NEAR(right->distance, 7.0, 1e-12);
    EXPECT_NEAR(right->along, 10.0 + 1.5 * pi, 1e-12);
    EXPECT_EQ(right->segment, 1U);
    const auto inside = curve.closestTo({4, 2});
    expectNear(inside->point.plan(), {4, 0});
    const Curve slope({{{0, 0, 10}}, {{10, 0, 20}}}, false);
    EXPECT_DOUBLE_EQ(slope.closestTo({2.5, 7})->point.z, 12.5);
    expectNear(slope.closestTo({-4, 3})->point.plan(), {0, 0}); // not extended
    EXPECT_DOUBLE_EQ(slope.closestTo({-4, 3})->distance, 5.0);
}

TEST(CurveClosest, IsNoFartherThanAnyPointOfTheCurve) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> at(-10, 10);
    std::uniform_real_distribution<double> bulge(-3, 3);
    for (int round = 0; round < 100; ++round) {
        std::vector<CurveVertex> vertices;
        for (int k = 0; k < 5; ++k)
            vertices.push_back({{at(random), at(random), 0}, bulge(random)});
        const Curve curve(vertices, round % 2 == 0);
        const Point2 p{at(random), at(random)};
        const auto closest = curve.closestTo(p);
        ASSERT_TRUE(closest);
        EXPECT_NEAR(distance(curve.pointAt(closest->along).plan(), p), closest->distance, 1e-9);
        double sampled = 1e9;
        for (int k = 0; k <= 5000; ++k)
            sampled =
                std::min(sampled, distance(curve.pointAt(curve.length() * k / 5000).plan(), p));
        EXPECT_LE(closest->distance, sampled + 1e-9);
        EXPECT_GE(closest->distance, sampled - curve.length() / 5000);
    }
}

TEST(CurveExtents, HoldTheBowsAndNoMore) {
    const Box2 box = stadium().extents();
    expectNear(box.low, {-3, 0});
    expectNear(box.high, {13, 6});
    const Box2 quarter = Curve::arc({1, 1, 0}, 2, 0, pi / 2).extents();
    expectNear(quarter.low, {1, 1});
    expectNear(quarter.high, {3, 3});
    const Box2 wide = Curve({{{0, 0, 0}, -2.0}, {{1, 0, 0}}}, false).extents();
    EXPECT_NEAR(wide.high.y, 1.0, 1e-12); // the height of an arc is bulge * half chord
    EXPECT_NEAR(wide.width(), 1.25, 1e-12);
}

TEST(CurveFlattening, StaysWithinTheSag) {
    const Curve circle = Curve::circle({0, 0, 5}, 10.0);
    for (const double sag : {1.0, 0.1, 0.001}) {
        const auto points = circle.flattened(sag);
        for (std::size_t k = 0; k < points.size(); ++k) {
            const Point3 middle = 0.5 * (points[k] + points[(k + 1) % points.size()]);
            EXPECT_GE(length(middle.plan()), 10.0 - sag - 1e-12);
            EXPECT_NEAR(length(points[k].plan()), 10.0, 1e-12);
            EXPECT_EQ(points[k].z, 5.0);
        }
    }
    EXPECT_LT(circle.flattened(0.1).size(), 30U); // and spends no more chords than it needs
    EXPECT_LE(circle.flattened(0.0).size(), 10000U);
    const Curve open({{{0, 0, 0}, 0.5}, {{4, 0, 0}}}, false);
    expectNear(open.flattenedPlan(0.01).back(), {4, 0});
}

TEST(CurveReversed, RunsBackOverTheSamePoints) {
    for (const bool closed : {false, true}) {
        const Curve curve({{{0, 0, 1}, 0.5}, {{4, 0, 2}, -0.3}, {{4, 5, 3}}, {{0, 6, 4}, 2.0}},
                          closed);
        const Curve back = curve.reversed();
        ASSERT_NEAR(back.length(), curve.length(), 1e-12);
        // A closed curve starts again at its last vertex: one closing segment ahead.
        const double shift = closed ? curve.length() - curve.closestTo({0, 6})->along : 0.0;
        for (double s = 0.0; s < curve.length() - shift; s += 0.37)
            expectNear(back.pointAt(s).plan(), curve.pointAt(curve.length() - shift - s).plan(),
                       1e-9);
    }
}

TEST(CurveCrossings, FindEachPlaceOnceInOrder) {
    const Curve line = Curve::line({-10, 3, 0}, {30, 3, 0});
    const auto two = crossings(line, stadium());
    ASSERT_EQ(two.size(), 2U);
    expectNear(two[0], {-3, 3});
    expectNear(two[1], {13, 3});
    const auto corner = crossings(Curve::line({-1, 1, 0}, {1, -1, 0}), stadium());
    ASSERT_EQ(corner.size(), 1U); // through a vertex, which ends two segments
    expectNear(corner[0], {0, 0});
    const auto circles = crossings(Curve::circle({0, 0, 0}, 5), Curve::circle({6, 0, 0}, 5));
    ASSERT_EQ(circles.size(), 2U);
    expectNear(circles[0], {3, 4}, 1e-9);
    expectNear(circles[1], {3, -4}, 1e-9);
    EXPECT_EQ(crossings(Curve::circle({0, 0, 0}, 5), Curve::circle({10, 0, 0}, 5)).size(), 1U);
    EXPECT_TRUE(crossings(Curve::circle({0, 0, 0}, 5), Curve::circle({0, 0, 0}, 4)).empty());
    const auto along =
        crossings(Curve::line({0, 0, 0}, {10, 0, 0}), Curve::line({4, 0, 0}, {20, 0, 0}));
    ASSERT_EQ(along.size(), 2U);
    expectNear(along[0], {4, 0});
    expectNear(along[1], {10, 0});
}

TEST(CurveCrossings, FindThemFarFromTheOrigin) {
    const Point3 far{2'345'678.0, 7'654'321.0, 0.0};
    const auto found = crossings(Curve::line(far + Point3{0, 0, 0}, far + Point3{3, 3, 0}),
                                 Curve::line(far + Point3{0, 3, 0}, far + Point3{3, 0, 0}));
    ASSERT_EQ(found.size(), 1U);
    expectNear(found[0], (far + Point3{1.5, 1.5, 0}).plan(), 1e-8);
}

TEST(CurveMeets, TakesInsideCrossingTouchingAndAround) {
    const Polygon area = test::rectangle(0, 0, 10, 10);
    EXPECT_TRUE(meets(Curve::line({1, 1, 0}, {2, 2, 0}), area));
    EXPECT_TRUE(meets(Curve::line({-5, 5, 0}, {15, 5, 0}), area));
    EXPECT_TRUE(meets(Curve::line({10, 5, 0}, {15, 5, 0}), area));
    EXPECT_FALSE(meets(Curve::line({-5, 9, 0}, {1, 16, 0}), area)); // past the corner
    EXPECT_TRUE(meets(Curve::circle({5, 5, 0}, 100), area));
    EXPECT_FALSE(meets(Curve({{{-100, 5, 0}, 1.0}, {{110, 5, 0}, 1.0}, {{-100, 5, 0}}}, false),
                       area)); // an open ring around it
}

TEST(CurveHostile, LeavesOutWhatIsNoNumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Curve curve({{{0, 0, 0}}, {{nan, 1, 0}}, {{1e300, 1, 0}}, {{0, 0, 0}, nan}, {{3, 4, 0}}},
                      false);
    EXPECT_DOUBLE_EQ(curve.length(), 5.0);
    EXPECT_FALSE(curve.closestTo({nan, 0}));
    const Curve none({}, true);
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.length(), 0.0);
    EXPECT_FALSE(none.closestTo({0, 0}));
    EXPECT_TRUE(none.extents().empty());
    EXPECT_TRUE(none.flattened(1).empty());
    EXPECT_TRUE(none.reversed().empty());
    EXPECT_TRUE(crossings(none, curve).empty());
    const Curve point({{{2, 2, 7}}, {{2, 2, 7}}}, true);
    EXPECT_EQ(point.pointAt(3).z, 7.0);
    EXPECT_EQ(point.closestTo({2, 5})->distance, 3.0);
}

} // namespace
} // namespace tessaran::geometry
