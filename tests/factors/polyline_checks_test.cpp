// Contours that meet, closed polylines that are there twice or overlap.

#include "factors/contour_checks.h"
#include "factors/polygon_checks.h"
#include "geometry/polygon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace tessaran::factors {
namespace {

using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;
using testing::ElementsAre;
using testing::IsEmpty;

Curve curve(const std::vector<Point2>& points, bool closed, double z = 0.0) {
    std::vector<CurveVertex> vertices;
    for (const Point2 p : points)
        vertices.push_back({{p.x, p.y, z}});
    return {vertices, closed};
}

Curve outline(const std::vector<Point2>& points, Point2 by = {}) {
    std::vector<Point2> moved;
    for (const Point2 p : points)
        moved.push_back(p + by);
    return curve(moved, true);
}

Curve box(double x0, double y0, double x1, double y1) {
    return outline({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

std::vector<std::size_t> duplicates(const std::vector<Curve>& closed) {
    base::NoProgress progress;
    return *duplicatePolygons(closed, progress);
}

std::vector<std::size_t> overlaps(const std::vector<Curve>& closed) {
    base::NoProgress progress;
    return *overlappingPolygons(closed, progress);
}

std::vector<std::size_t> meetings(const std::vector<Curve>& contours) {
    base::NoProgress progress;
    return *meetingContours(contours, progress);
}

// The plain way: every pair is asked.
template <class Meet>
std::vector<std::size_t> membersOfPairs(const std::vector<Curve>& curves, const Meet& meet) {
    std::vector<bool> found(curves.size(), false);
    for (std::size_t a = 0; a < curves.size(); ++a)
        for (std::size_t b = a + 1; b < curves.size(); ++b)
            if (meet(curves[a], curves[b]))
                found[a] = found[b] = true;
    std::vector<std::size_t> members;
    for (std::size_t k = 0; k < found.size(); ++k)
        if (found[k])
            members.push_back(k);
    return members;
}

const std::vector<Point2> kHouse{{0, 0}, {8, 0}, {8, 5}, {4, 2}, {0, 5}}; // a dent in its roof

// At the origin and where mine plans lie.
class PolygonChecks : public testing::TestWithParam<Point2> {};
INSTANTIATE_TEST_SUITE_P(Places, PolygonChecks,
                         testing::Values(Point2{}, Point2{2'345'678.9, 1'234'567.1}));

TEST_P(PolygonChecks, FindCopiesInAnyDirectionFromAnyStart) {
    const Point2 at = GetParam();
    std::vector<Point2> turned(kHouse.rbegin(), kHouse.rend());
    std::rotate(turned.begin(), turned.begin() + 2, turned.end());
    std::vector<Point2> repeated{kHouse[0], kHouse[0], kHouse[1], kHouse[2],
                                 kHouse[3], kHouse[4], kHouse[0]};
    std::vector<Point2> halved = kHouse; // one more vertex, in the middle of a side
    halved.insert(halved.begin() + 1, {4, 0});
    const std::vector<Curve> all{outline(kHouse, at), outline(turned, at), outline(repeated, at),
                                 outline(halved, at), outline(kHouse, at + Point2{0, 0.01})};
    EXPECT_THAT(duplicates(all), ElementsAre(1, 2, 3));
    EXPECT_THAT(overlaps(all), ElementsAre(0, 1, 2, 3, 4));
}

TEST_P(PolygonChecks, TellTouchingFromOverlapping) {
    const Point2 at = GetParam();
    const std::vector<Point2> triangle{{8, 0}, {11, 4}, {8, 5}};    // along the house's wall
    const std::vector<Point2> roof{{0, 5}, {4, 2}, {8, 5}, {4, 9}}; // fills the dent exactly
    const std::vector<Point2> corner{{0, 0}, {-3, 0}, {-3, -3}};    // at one point
    const std::vector<Point2> slanted{{8, 5}, {11, 4}, {12, 9}};    // shares a slanted side
    const std::vector<Curve> all{outline(kHouse, at), outline(triangle, at), outline(roof, at),
                                 outline(corner, at), outline(slanted, at)};
    EXPECT_THAT(overlaps(all), IsEmpty());
    std::vector<Curve> more = all;
    more.push_back(outline({{3.9, 1.5}, {4.1, 1.5}, {4.1, 1.6}}, at)); // wholly in the house
    EXPECT_THAT(overlaps(more), ElementsAre(0, 5));
    EXPECT_THAT(duplicates(more), IsEmpty());
}

TEST(PolygonCheck, CountsEachDuplicateOnce) {
    const Curve a = box(0, 0, 4, 4);
    EXPECT_THAT(duplicates({a, a, a}), ElementsAre(1, 2));
    EXPECT_THAT(duplicates({a, box(0, 0, 4, 5), a, box(2, 2, 6, 6)}), ElementsAre(2));
    // Equal areas over each other, but not the same place.
    EXPECT_THAT(duplicates({box(0, 0, 4, 4), box(0, 0, 2, 8), box(1, 0, 5, 4)}), IsEmpty());
    EXPECT_THAT(duplicates({}), IsEmpty());
}

TEST(PolygonCheck, TakesSelfCrossingOutlinesByTheEvenOddRule) {
    const Curve bowTie = curve({{0, 0}, {4, 4}, {4, 0}, {0, 4}}, true); // shoelace area 0
    EXPECT_THAT(duplicates({bowTie, bowTie}), ElementsAre(1));
    EXPECT_THAT(overlaps({bowTie, box(0, 1, 1, 3)}), ElementsAre(0, 1));
    EXPECT_THAT(overlaps({bowTie, curve({{1, 0}, {2, 1}, {3, 0}}, true)}), IsEmpty());
    // Without any area: nothing to overlap and no duplicates.
    const Curve line = curve({{0, 0}, {4, 0}}, true);
    EXPECT_THAT(duplicates({line, line}), IsEmpty());
    EXPECT_THAT(overlaps({line, box(0, -1, 4, 1)}), IsEmpty());
}

TEST(PolygonCheck, FollowsArcs) {
    const Curve circle({{{0, 0, 0}, 1.0}, {{2, 0, 0}, 1.0}}, true);
    const Curve other({{{2, 0, 0}, 1.0}, {{0, 0, 0}, 1.0}}, true);
    const Curve inverse({{{0, 0, 0}, -1.0}, {{2, 0, 0}, -1.0}}, true);
    EXPECT_THAT(duplicates({circle, other, inverse}), ElementsAre(1, 2));
    // The chord polygon of the two vertices has no area; the circle reaches y = -1.
    EXPECT_THAT(overlaps({circle, box(0.9, -0.95, 1.1, -0.9)}), ElementsAre(0, 1));
    EXPECT_THAT(overlaps({circle, box(0, 0.9, 0.2, 1)}), IsEmpty());
}

// Random stars against a literal look at every pair.
TEST(PolygonCheck, FindsWhatEveryPairGives) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(0.0, 60.0);
    std::uniform_real_distribution<double> radius(0.5, 3.0);
    std::vector<Curve> stars;
    for (int s = 0; s < 120; ++s) {
        const Point2 at{place(random), place(random)};
        std::vector<Point2> points;
        for (int k = 0; k < 9; ++k) {
            const double a = 2.0 * std::numbers::pi * k / 9;
            points.push_back(at + radius(random) * Point2{std::cos(a), std::sin(a)});
        }
        stars.push_back(curve(points, true));
    }
    const auto expected = membersOfPairs(stars, [](const Curve& a, const Curve& b) {
        return geometry::overlapArea(a.flattenedPlan(1.0), b.flattenedPlan(1.0)) > 1e-10;
    });
    ASSERT_GT(expected.size(), 10u);
    ASSERT_LT(expected.size(), 110u);
    EXPECT_EQ(overlaps(stars), expected);
}

// --- contours -----------------------------------------------------------------------------------

TEST(Contours, MeetWhereTheyCrossTouchOrRunAlongEachOther) {
    const Curve base = curve({{0, 0}, {10, 0}, {20, 5}}, false);
    EXPECT_THAT(meetings({base, curve({{5, -5}, {5, 5}}, false), curve({{0, 9}, {9, 9}}, false)}),
                ElementsAre(0, 1));
    EXPECT_THAT(meetings({base, curve({{10, 0}, {10, -5}}, false)}), ElementsAre(0, 1)); // touches
    EXPECT_THAT(meetings({base, curve({{2, 0}, {8, 0}}, false)}), ElementsAre(0, 1));    // along
    EXPECT_THAT(meetings({base, curve({{0, 0}, {10, 0}, {20, 5}}, false, 7.0)}),
                ElementsAre(0, 1)); // in plan, whatever the height
    EXPECT_THAT(meetings({base, curve({{0, 1}, {10, 1}, {20, 6}}, false)}), IsEmpty());
    // A contour that crosses itself meets no other one.
    EXPECT_THAT(meetings({curve({{0, 0}, {4, 4}, {4, 0}, {0, 4}}, false)}), IsEmpty());
}

TEST(Contours, MeetAlongArcs) {
    const Curve arc({{{0, 0, 0}, 1.0}, {{2, 0, 0}}}, false); // half circle down to (1, -1)
    EXPECT_THAT(meetings({arc, curve({{0, -0.99}, {2, -0.99}}, false)}), ElementsAre(0, 1));
    EXPECT_THAT(meetings({arc, curve({{0, -1.01}, {2, -1.01}}, false)}), IsEmpty());
    EXPECT_THAT(meetings({arc, curve({{0, -1}, {2, -1}}, false)}), ElementsAre(0, 1)); // tangent
}

TEST(Contours, AreTheSameAsByEveryPairOfCurves) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> place(0.0, 1000.0);
    std::uniform_real_distribution<double> step(-8.0, 8.0);
    std::vector<Curve> lines;
    for (int k = 0; k < 150; ++k) {
        std::vector<Point2> points{{place(random), place(random)}};
        for (int v = 0; v < 40; ++v)
            points.push_back(points.back() + Point2{step(random), step(random)});
        lines.push_back(curve(points, k % 3 == 0));
    }
    const auto expected = membersOfPairs(
        lines, [](const Curve& a, const Curve& b) { return !geometry::crossings(a, b).empty(); });
    ASSERT_GT(expected.size(), 10u);
    ASSERT_LT(expected.size(), 145u);
    EXPECT_EQ(meetings(lines), expected);
}

TEST(Contours, LieAtAnElevationWithAllTheirLength) {
    EXPECT_TRUE(hasElevation(curve({{0, 0}, {1, 1}}, false, 120.0), 120.0 + 0.5e-10));
    EXPECT_FALSE(hasElevation(curve({{0, 0}, {1, 1}}, false, 120.0), 120.001));
    EXPECT_FALSE(hasElevation(Curve::line({0, 0, 120}, {1, 0, 121}), 120.0));
}

class Stopper final : public base::Progress {
  public:
    void begin(std::string_view, long, long) override {}
    void setPosition(long) override {}
    void end() override {}
    bool cancelled() override { return true; }
};

TEST(Checks, EndWhenTheUserWantsIt) {
    Stopper stopper;
    const std::vector<Curve> some{box(0, 0, 1, 1), box(0, 0, 1, 1)};
    EXPECT_FALSE(meetingContours(some, stopper));
    EXPECT_FALSE(duplicatePolygons(some, stopper));
    EXPECT_FALSE(overlappingPolygons(some, stopper));
}

} // namespace
} // namespace tessaran::factors
