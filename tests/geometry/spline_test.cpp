#include "geometry/spline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaran::geometry {
namespace {

TEST(Spline, WithWeightsIsTheCircle) {
    const double root = std::sqrt(0.5);
    const Spline half{2,
                      {0, 0, 0, 1, 1, 2, 2, 2},
                      {{1, 0, 5}, {1, 1, 5}, {0, 1, 5}, {-1, 1, 5}, {-1, 0, 5}},
                      {1, root, 1, root, 1}};
    const std::vector<Point3> points = pointsAlong(half, 8);
    ASSERT_EQ(points.size(), 17U);
    for (const Point3& p : points) {
        EXPECT_NEAR(std::hypot(p.x, p.y), 1.0, 1e-14);
        EXPECT_NEAR(p.z, 5.0, 1e-14);
    }
    EXPECT_NEAR(points.front().x, 1.0, 1e-15);
    EXPECT_NEAR(points[8].y, 1.0, 1e-15);
    EXPECT_NEAR(points.back().x, -1.0, 1e-15);
}

// A cubic Bernstein polynomial: (1-t)^3 P0 + 3 t (1-t)^2 P1 + 3 t^2 (1-t) P2 + t^3 P3; and a
// uniform spline, whose value at a knot is (P0 + 4 P1 + P2) / 6.
TEST(Spline, HasTheValuesOfItsPolynomials) {
    const Spline cubic{
        3, {2, 2, 2, 2, 4, 4, 4, 4}, {{0, 0, 0}, {0, 8, 0}, {8, 8, 0}, {8, 0, 0}}, {}};
    const std::vector<Point3> points = pointsAlong(cubic, 4);
    ASSERT_EQ(points.size(), 5U);
    EXPECT_NEAR(points[1].x, 8 * (3 * 0.0625 * 0.75 + 0.015625), 1e-14);
    EXPECT_NEAR(points[1].y, 8 * (3 * 0.25 * 0.5625 + 3 * 0.0625 * 0.75), 1e-14);
    EXPECT_NEAR(points[2].y, 6.0, 1e-14);

    const Spline uniform{3,
                         {0, 1, 2, 3, 4, 5, 6, 7, 8},
                         {{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {0, 6, 0}, {0, 12, 0}},
                         {}};
    const std::vector<Point3> along = pointsAlong(uniform, 2);
    ASSERT_EQ(along.size(), 5U);
    EXPECT_NEAR(along[0].x, 5.0, 1e-14);
    EXPECT_NEAR(along[0].y, 1.0, 1e-14);
    EXPECT_NEAR(along[2].x, 5.0, 1e-14);
    EXPECT_NEAR(along[2].y, 5.0, 1e-14);
    EXPECT_NEAR(along[4].x, 1.0, 1e-14);
    EXPECT_NEAR(along[4].y, 7.0, 1e-14);
}

TEST(Spline, OfNumbersThatDoNotFitHasNoPoints) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<Point3> two{{0, 0, 0}, {1, 1, 0}};
    EXPECT_EQ(pointsAlong({1, {0, 0, 1, 1}, two, {}}, 3).size(), 4U);
    for (const Spline& wrong :
         {Spline{0, {0, 0, 1}, two, {}}, Spline{2, {0, 0, 0, 1, 1}, two, {}},
          Spline{1, {0, 0, 1}, two, {}}, Spline{1, {0, 1, 0, 1}, two, {}},
          Spline{1, {0, 0, nan, 1}, two, {}}, Spline{1, {0, 0, 1, 1}, two, {1, 0}},
          Spline{1, {0, 0, 1, 1}, two, {1}}, Spline{1, {1, 1, 1, 1}, two, {}},
          Spline{1'000'000'000, {0, 1}, two, {}}})
        EXPECT_TRUE(pointsAlong(wrong, 3).empty());
}

} // namespace
} // namespace tessaran::geometry
