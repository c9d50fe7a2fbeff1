// A cell less one outline, walked: against the overlay, and where it leaves the work to it.

#include "geometry/polygon.h"
#include "index/cell_cut.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace tessaran::index {
namespace {

using geometry::PlanarRegion;
using geometry::Point2;
using geometry::Polygon;

double sumOf(const PlanarRegion& region) {
    double sum = 0.0;
    for (const Polygon& loop : region.loops)
        sum += geometry::signedArea(loop);
    return sum;
}

TEST(CellCut, ClosedForms) {
    // the upper right half beyond a diagonal line
    const auto half = cellLessOutline(3, 5, {{2.0, 4.0}, {5.5, 4.0}, {2.0, 7.5}});
    ASSERT_TRUE(half);
    EXPECT_NEAR(sumOf(*half), 0.125, 1e-12);
    ASSERT_EQ(half->loops.size(), 1U);
    EXPECT_EQ(half->loops[0].size(), 3U);
    // a bar through the middle leaves two pieces
    const auto bars = cellLessOutline(0, 0, {{-1.0, 0.4}, {2.0, 0.4}, {2.0, 0.6}, {-1.0, 0.6}});
    ASSERT_TRUE(bars);
    EXPECT_EQ(bars->loops.size(), 2U);
    EXPECT_NEAR(sumOf(*bars), 0.8, 1e-12);
    // a finger that ends inside leaves one
    const auto finger = cellLessOutline(0, 0, {{-1.0, 0.4}, {0.5, 0.4}, {0.5, 0.6}, {-1.0, 0.6}});
    ASSERT_TRUE(finger);
    EXPECT_EQ(finger->loops.size(), 1U);
    EXPECT_NEAR(sumOf(*finger), 0.9, 1e-12);
}

TEST(CellCut, LeavesUnsafeCasesToTheOverlay) {
    const auto safe = [](const Polygon& outline) {
        return cellLessOutline(0, 0, outline).has_value();
    };
    EXPECT_FALSE(safe({{0.2, 0.2}, {0.8, 0.2}, {0.5, 0.8}})) << "a hole";
    EXPECT_FALSE(safe({{5, 5}, {6, 5}, {6, 6}})) << "elsewhere";
    EXPECT_FALSE(safe({{-1, -1}, {2, -1}, {2, 2}, {-1, 2}})) << "around";
    EXPECT_FALSE(safe({{0.5, 0.0}, {2.0, 0.5}, {0.5, 1.0}})) << "vertices on sides";
    EXPECT_FALSE(safe({{-1.0, -1.0}, {2.0, 2.0}, {-1.0, 2.0}})) << "through two corners";
    EXPECT_FALSE(safe({{-1.0, -1.0}, {2.0, -1.0}, {2.0, 0.0}, {-1.0, 0.0}})) << "along a side";
    EXPECT_FALSE(safe({})) << "nothing";
}

TEST(CellCut, AgreesWithTheOverlay) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> at(-0.6, 1.6);
    std::uniform_real_distribution<double> size(0.2, 1.5);
    std::uniform_real_distribution<double> share(0.2, 1.0);
    std::uniform_int_distribution<int> corners(3, 14);
    const PlanarRegion cell = geometry::regionOf({{7, 9}, {8, 9}, {8, 10}, {7, 10}});
    int crossing = 0;
    int walked = 0;
    for (int n = 0; n < 3000; ++n) {
        const Point2 centre = Point2{7, 9} + Point2{at(random), at(random)};
        const double radius = size(random);
        const int count = corners(random);
        Polygon outline;
        for (int k = 0; k < count; ++k) {
            const double angle = 2.0 * std::numbers::pi * k / count;
            outline.push_back(centre +
                              radius * share(random) * Point2{std::cos(angle), std::sin(angle)});
        }
        const std::vector<PlanarRegion> pillar{geometry::regionOf(outline)};
        const auto overlaid = geometry::subtract(cell, pillar);
        ASSERT_TRUE(overlaid.ok());
        const auto open = cellLessOutline(7, 9, outline);
        crossing += sumOf(*overlaid) > 0.0 && sumOf(*overlaid) < 1.0 ? 1 : 0;
        if (!open)
            continue;
        ++walked;
        const std::vector<PlanarRegion> both{*open};
        EXPECT_NEAR(sumOf(*open), sumOf(*overlaid), 1e-9);
        EXPECT_NEAR(geometry::area(*geometry::subtract(*overlaid, both)), 0.0, 1e-9);
    }
    EXPECT_GT(walked, crossing * 8 / 10) << "the walk does the work";
}

} // namespace
} // namespace tessaran::index
