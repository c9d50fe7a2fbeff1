#include "geometry/polygon.h"
#include "host/curves.h"

#include <gtest/gtest.h>

#include <numbers>

namespace tessaran::host {
namespace {

using std::numbers::pi;

Entity entityOf(EntityGeometry geometry) {
    Entity entity;
    entity.geometry = std::move(geometry);
    return entity;
}

Polyline stadium() { // two straight sides of 10, two half circles of radius 3
    Polyline polyline;
    polyline.vertices = {{{0, 0}}, {{10, 0}, 1.0}, {{10, 6}}, {{0, 6}, 1.0}};
    polyline.closed = true;
    polyline.elevation = 42.0;
    return polyline;
}

TEST(EntityCurves, FollowEachKind) {
    const auto length = [](EntityGeometry geometry) {
        const auto curve = curveOf(entityOf(std::move(geometry)));
        return curve ? curve->length() : -1.0;
    };
    EXPECT_DOUBLE_EQ(length(Line{{0, 0, 0}, {3, 4, 9}}), 5.0);
    EXPECT_DOUBLE_EQ(length(stadium()), 20.0 + 6.0 * pi);
    EXPECT_DOUBLE_EQ(length(Polyline3d{{{0, 0, 0}, {3, 0, 5}, {3, 4, 5}}, true}), 12.0);
    EXPECT_DOUBLE_EQ(length(Circle{{1, 1, 0}, 2.0}), 4.0 * pi);
    EXPECT_DOUBLE_EQ(length(Arc{{1, 1, 0}, 2.0, 0.0, pi / 2}), pi);
    EXPECT_EQ(length(PointMark{{1, 1, 0}}), -1.0);
    EXPECT_EQ(length(Text{}), -1.0);
    EXPECT_EQ(length(Polyline{}), -1.0);
    EXPECT_EQ(curveOf(entityOf(stadium()))->pointAt(3).z, 42.0);
}

TEST(EntityOutlines, FollowArcsOnlyWhereAsked) {
    EXPECT_DOUBLE_EQ(geometry::area(vertexPolygon(entityOf(stadium()))), 60.0);
    // Chords a thousandth of the radius off the arc take 4/3 of a thousandth off the disc.
    const double lost = 1.34e-3;
    EXPECT_NEAR(geometry::area(outlineOf(entityOf(stadium()))), 60.0 + 9.0 * pi, lost * 9.0 * pi);
    EXPECT_NEAR(geometry::area(outlineOf(entityOf(Circle{{0, 0, 0}, 5.0}))), 25.0 * pi,
                lost * 25.0 * pi);
    EXPECT_TRUE(outlineOf(entityOf(Line{})).empty());
    EXPECT_TRUE(vertexPolygon(entityOf(Circle{{0, 0, 0}, 5.0})).empty());
}

} // namespace
} // namespace tessaran::host
