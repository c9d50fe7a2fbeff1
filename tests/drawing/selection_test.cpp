#include "drawing/database_builder.h"
#include "drawing/hit_test.h"
#include "drawing/selection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace tessaran;
using namespace tessaran::drawing;
using host::EntityId;
using host::Point2;
using host::SelectionShape;
using Kind = host::SelectionShape::Kind;

namespace {

constexpr double kPi = std::numbers::pi;

EntityId add(Database& database, host::EntityGeometry geometry, const std::string& layer = "0") {
    host::Entity entity;
    entity.layer = layer;
    entity.geometry = std::move(geometry);
    const auto id = database.add(std::move(entity));
    EXPECT_TRUE(id);
    return id ? *id : EntityId{};
}

host::Line line(double x0, double y0, double x1, double y1) {
    return {{x0, y0, 0}, {x1, y1, 0}};
}

SelectionShape box(Kind kind, double x0, double y0, double x1, double y1) {
    return {kind, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}};
}

using Ids = std::vector<EntityId>;

// --- an independent reading by sampling ---------------------------------------------------------

// Points along what an entity shows, close together; literal formulas of the field.
std::vector<Point2> samples(const host::EntityGeometry& geometry) {
    std::vector<Point2> points;
    constexpr int kSteps = 4000;
    const auto segment = [&](Point2 a, Point2 b, double bulge) {
        for (int i = 0; i <= kSteps; ++i) {
            const double t = static_cast<double>(i) / kSteps;
            if (bulge == 0.0) {
                points.push_back(a + t * (b - a));
                continue;
            }
            // In the chord's frame (middle as origin, half the chord as unit) a circle that is seen
            // from its ends under the half angle 2 atan(bulge).
            const double half = 2.0 * std::atan(bulge);
            const double turned = half * (2.0 * t - 1.0);
            const double u = std::sin(turned) / std::sin(half);
            const double v = (std::cos(turned) - std::cos(half)) / std::sin(half);
            const Point2 chord = b - a;
            const Point2 middle = 0.5 * (a + b);
            points.push_back(middle + 0.5 * u * chord + 0.5 * v * Point2{chord.y, -chord.x});
        }
    };
    const auto arc = [&](host::Point3 c, double r, double from, double sweep) {
        for (int i = 0; i <= kSteps; ++i) {
            const double angle = from + sweep * i / kSteps;
            points.push_back({c.x + r * std::cos(angle), c.y + r * std::sin(angle)});
        }
    };
    if (const auto* l = std::get_if<host::Line>(&geometry))
        segment(l->start.plan(), l->end.plan(), 0.0);
    if (const auto* c = std::get_if<host::Circle>(&geometry))
        arc(c->centre, c->radius, 0.0, 2.0 * kPi);
    if (const auto* a = std::get_if<host::Arc>(&geometry))
        arc(a->centre, a->radius, a->startAngle,
            a->endAngle - a->startAngle + (a->endAngle < a->startAngle ? 2.0 * kPi : 0.0));
    if (const auto* p = std::get_if<host::PointMark>(&geometry))
        points.push_back(p->at.plan());
    if (const auto* p = std::get_if<host::Polyline>(&geometry))
        for (std::size_t i = 0; i + (p->closed ? 0 : 1) < p->vertices.size(); ++i)
            segment(p->vertices[i].at, p->vertices[(i + 1) % p->vertices.size()].at,
                    p->vertices[i].bulge);
    return points;
}

bool isInside(Point2 p, const std::vector<Point2>& polygon) {
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++)
        if ((polygon[i].y > p.y) != (polygon[j].y > p.y) &&
            p.x < (polygon[j].x - polygon[i].x) * (p.y - polygon[i].y) /
                          (polygon[j].y - polygon[i].y) +
                      polygon[i].x)
            inside = !inside;
    return inside;
}

host::EntityGeometry randomGeometry(std::mt19937& random) {
    const auto at = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const Point2 c{at(0, 100), at(0, 100)};
    switch (std::uniform_int_distribution<int>(0, 4)(random)) {
    case 0:
        return line(c.x, c.y, c.x + at(-20, 20), c.y + at(-20, 20));
    case 1:
        return host::Circle{{c.x, c.y, 0}, at(0.5, 15)};
    case 2:
        return host::Arc{{c.x, c.y, 0}, at(0.5, 15), at(0, 6.2), at(0, 6.2)};
    case 3:
        return host::PointMark{{c.x, c.y, 0}};
    default: {
        host::Polyline polyline;
        polyline.closed = at(0, 1) < 0.5;
        for (int i = 0; i < 4; ++i)
            polyline.vertices.push_back(
                {{c.x + at(-12, 12), c.y + at(-12, 12)}, at(0, 1) < 0.5 ? at(-1.5, 1.5) : 0.0});
        return polyline;
    }
    }
}

} // namespace

TEST(Selection, WindowHoldsWhollyCrossingTouches) {
    Database database;
    const EntityId inside = add(database, line(2, 2, 8, 8));
    const EntityId edge = add(database, line(0, 0, 10, 0)); // along the window's side
    const EntityId across = add(database, line(5, 5, 15, 5));
    const EntityId through = add(database, line(-5, 4, 15, 4)); // no vertex inside
    add(database, host::Circle{{5, 5, 0}, 50});
    const EntityId point = add(database, host::PointMark{{10, 10, 0}});
    const EntityId zero = add(database, line(3, 3, 3, 3)); // no length
    add(database, line(13, 0, 13, 20));
    EXPECT_EQ(database.select(box(Kind::window, 0, 0, 10, 10), {}),
              (Ids{inside, edge, point, zero}));
    EXPECT_EQ(database.select(box(Kind::crossing, 0, 0, 10, 10), {}),
              (Ids{inside, edge, across, through, point, zero}));
    // The same square turned by an eighth of a turn about its centre: a diamond.
    const SelectionShape diamond{Kind::window, {{5, -2}, {12, 5}, {5, 12}, {-2, 5}}};
    EXPECT_EQ(database.select(diamond, {}), (Ids{inside, zero}));
    EXPECT_EQ(database.select({Kind::crossing, diamond.points}, {}),
              (Ids{inside, edge, across, through, zero}));
}

TEST(Selection, FollowsArcsAndNotTheirChords) {
    Database database;
    // The bow of a half circle below its chord reaches down to y = -5.
    const EntityId bow =
        add(database, host::Polyline{host::Polyline::Form::light, {{{0, 0}, 1.0}, {{10, 0}}}});
    EXPECT_EQ(database.select(box(Kind::crossing, 4.9, -6, 5.1, -4.9), {}), Ids{bow});
    EXPECT_EQ(database.select(box(Kind::crossing, 4, -4, 6, -1), {}), Ids{}); // inside the bow
    EXPECT_EQ(database.select(box(Kind::window, -1, -4.9, 11, 1), {}), Ids{});
    EXPECT_EQ(database.select(box(Kind::window, 0, -5.001, 10, 0), {}), Ids{bow});
    EXPECT_EQ(database.select({Kind::fence, {{5, -1}, {5, -4}}}, {}), Ids{});
    EXPECT_EQ(database.select({Kind::fence, {{5, -1}, {5, -4}, {9, -4}}}, {}), Ids{bow});
}

TEST(Selection, TakesTextsByTheirBoxAndFillsByTheirBoundary) {
    Database database;
    const EntityId text = add(database, host::Text{{50, 50, 0}, "PANEL 7", 10, kPi / 2});
    const EntityId fill =
        add(database, host::Hatch{{{{{{0, 0}}, {{40, 0}}, {{40, 40}}, {{0, 40}}}}}});
    EXPECT_EQ(database.select(box(Kind::crossing, 41, 60, 45, 65), {}), Ids{text});
    EXPECT_EQ(database.select(box(Kind::crossing, 10, 10, 30, 30), {}), Ids{});
    EXPECT_EQ(database.select(box(Kind::crossing, 10, 10, 30, 45), {}), Ids{fill});
    EXPECT_FALSE(hitTest(database, {20, 20}, 1.0));
    EXPECT_EQ(hitTest(database, {20, 0.5}, 1.0)->entity, fill);
    EXPECT_EQ(hitTest(database, {45, 70}, 0.1)->entity, text);
}

TEST(Selection, KnowsShownFromHidden) {
    Database database;
    ASSERT_TRUE(database.createLayer({"Off"}));
    const EntityId hidden = add(database, line(0, 0, 10, 10), "Off");
    const EntityId shown = add(database, line(0, 10, 10, 0));
    host::Layer off = *database.layer("Off");
    off.on = false;
    ASSERT_TRUE(database.modifyLayer(off));
    const SelectionShape all = box(Kind::window, -1, -1, 11, 11);
    EXPECT_EQ(database.select(all, {}), (Ids{hidden, shown}));
    EXPECT_EQ(selectByShape(database, all, {}, Visibility::shown), Ids{shown});
    EXPECT_FALSE(hitTest(database, {1, 1}, 0.5));
    off.on = true;
    ASSERT_TRUE(database.modifyLayer(off));
    EXPECT_EQ(hitTest(database, {1, 1}, 0.5)->entity, hidden);
}

TEST(Selection, RefusesShapesThatAreNone) {
    Database database;
    add(database, line(0, 0, 1, 1));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(database.select({Kind::window, {}}, {}).empty());
    EXPECT_TRUE(database.select({Kind::crossing, {{0, 0}, {1, 1}}}, {}).empty());
    EXPECT_TRUE(database.select({Kind::fence, {{0, 0}}}, {}).empty());
    EXPECT_TRUE(database.select({Kind::window, {{-9, -9}, {9, nan}, {9, 9}}}, {}).empty());
    EXPECT_FALSE(hitTest(database, {nan, 0}, 1.0));
    EXPECT_FALSE(hitTest(database, {0, 0}, -1.0));
}

TEST(Selection, AgreesWithSampledCurves) {
    std::mt19937 random(7);
    const std::vector<Point2> polygon{{20, 15}, {85, 25}, {70, 80}, {50, 45}, {25, 75}};
    Database database;
    for (int round = 0; round < 6; ++round) {
        for (int i = 0; i < 60; ++i)
            add(database, randomGeometry(random));
        const Ids all = database.select({});
        for (std::size_t i = 0; i < all.size(); i += 5) {
            host::Entity moved = *database.find(all[i]);
            const auto other = randomGeometry(random);
            if (other.index() == moved.geometry.index()) {
                moved.geometry = other;
                ASSERT_TRUE(database.modify(moved));
            } else if (i % 2 == 0) {
                database.erase(all[i]);
            }
        }
        if (round % 2 == 1)
            database.undo();

        const Ids window = database.select({Kind::window, polygon}, {});
        const Ids crossing = database.select({Kind::crossing, polygon}, {});
        int judged = 0;
        for (const EntityId id : database.select({})) {
            std::size_t in = 0;
            const auto points = samples(database.find(id)->geometry);
            for (const Point2 p : points)
                in += isInside(p, polygon) ? 1u : 0u;
            // A share of the samples too small to be sure of is left to the tests above.
            if (in > 0 && in < points.size() && (in < 5 || points.size() - in < 5))
                continue;
            ++judged;
            EXPECT_EQ(std::ranges::count(window, id), in == points.size() ? 1 : 0)
                << host::dxfName(*database.find(id)) << ' ' << in << '/' << points.size();
            if (in > 0) {
                EXPECT_EQ(std::ranges::count(crossing, id), 1);
            }
        }
        EXPECT_GT(judged, 40);
    }
}

TEST(HitTest, TakesTheTopmostWithinReach) {
    Database database;
    const EntityId below = add(database, line(0, 0, 10, 0));
    const EntityId above = add(database, line(0, 0.4, 10, 0.4));
    EXPECT_EQ(hitTest(database, {5, -0.05}, 0.5)->entity, above); // nearer is not on top
    EXPECT_EQ(hitTest(database, {5, -0.2}, 0.5)->entity, below);
    EXPECT_FALSE(hitTest(database, {5, -0.6}, 0.5));

    host::SelectionFilter circles;
    circles.types = {"CIRCLE"};
    EXPECT_FALSE(hitTest(database, {5, 0}, 0.5, circles));

    const auto hit = hitTest(database, {4, 0.9}, 0.5);
    ASSERT_TRUE(hit);
    EXPECT_NEAR(hit->at.x, 4.0, 1e-12);
    EXPECT_NEAR(hit->at.y, 0.4, 1e-12);
    EXPECT_NEAR(hit->distance, 0.5, 1e-12);

    // Wide polylines are hit on their width, also a long way from their vertices.
    const EntityId wide =
        add(database,
            host::Polyline{host::Polyline::Form::light, {{{0, 50}}, {{900, 50}}}, false, 0, 8});
    EXPECT_EQ(hitTest(database, {450, 54}, 0.1)->entity, wide);
    EXPECT_FALSE(hitTest(database, {450, 54.2}, 0.1));
}

TEST(HitTest, ReachesHalfAPercentOfTheViewsHeight) {
    Database database;
    View view;
    view.centre = {0, 0};
    view.height = 200;
    database.setView(view);
    const EntityId id = add(database, line(0, 0, 10, 0));
    EXPECT_EQ(hitTest(database, {5, 0.99})->entity, id);
    EXPECT_FALSE(hitTest(database, {5, 1.01}));
}

TEST(HitTest, EntersBlocks) {
    Database database;
    host::Entity part;
    part.geometry = host::Circle{{0, 0, 0}, 1.0};
    {
        DatabaseBuilder builder(database);
        builder.addBlock({"HOLE", {0, 0, 0}, {part}});
    }
    // Scaled by 3 and 1: an ellipse with half axes 3 and 1.
    const EntityId ellipse = add(database, host::Insert{"hole", {100, 100, 0}, {3, 1, 1}});
    const EntityId mirrored = add(database, host::Insert{"HOLE", {200, 100, 0}, {-2, 2, 2}});
    EXPECT_EQ(hitTest(database, {103, 100}, 0.01)->entity, ellipse);
    EXPECT_EQ(hitTest(database, {100, 101}, 0.01)->entity, ellipse);
    EXPECT_FALSE(hitTest(database, {100, 102}, 0.5));
    EXPECT_EQ(hitTest(database, {200 + std::sqrt(2.0), 100 + std::sqrt(2.0)}, 1e-6)->entity,
              mirrored);
}
