#include "factors/contour_interpolation.h"
#include "support/literal_contours.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

namespace tessaran::factors {
namespace {

using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;
using geometry::Point3;
using grid::myGrid;

void define(myGrid& grid, int nX, int nY, double width, double degrees = 0.0, Point2 origin = {}) {
    grid.setOrigin(origin.x, origin.y, 0.0);
    ASSERT_TRUE(grid.setupGrid(nX, nY, width, width, degrees));
    grid.fillValue(-1.0);
}

ContourGridResult fill(const std::vector<Curve>& lines, myGrid& grid, double limit = 2000.0) {
    base::NoProgress progress;
    return gridContours(
        lines, {limit, 0.0}, grid, [](int, int) {}, progress);
}

// Wavy chains, some closed, some with arcs, some rising along their way.
std::vector<Curve> wildLines(unsigned seed, int count, double size, int vertices) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-0.1 * size, 1.1 * size);
    std::uniform_real_distribution<double> step(-0.05 * size, 0.05 * size);
    std::vector<Curve> lines;
    for (int k = 0; k < count; ++k) {
        std::vector<CurveVertex> chain;
        Point3 at{place(random), place(random), std::floor(place(random) / 10.0)};
        for (int v = 0; v < vertices; ++v) {
            chain.push_back({at, k % 5 == 0 ? 0.4 : 0.0});
            at = at + Point3{step(random), step(random), k % 7 == 0 ? 1.0 : 0.0};
        }
        lines.emplace_back(chain, k % 3 == 0);
    }
    return lines;
}

Point2 intoWorld(const myGrid& from, const myGrid& to, Point2 p) {
    return rotated(p - from.origin().plan() + to.origin().plan(), to.origin().plan(),
                   to.rotation());
}

std::vector<Curve> moved(const std::vector<Curve>& lines, const myGrid& from, const myGrid& to) {
    std::vector<Curve> out;
    for (const Curve& line : lines) {
        std::vector<CurveVertex> vertices = line.vertices();
        for (CurveVertex& v : vertices) {
            const Point2 p = intoWorld(from, to, v.at.plan());
            v.at = {p.x, p.y, v.at.z};
        }
        out.emplace_back(vertices, line.closed());
    }
    return out;
}

// Steep wavy lines from the lower left to the upper right in irregular steps: the extents of most
// hold most of the plan.
std::vector<Curve> slopingLines(unsigned seed, int count, double size) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> offset(-size, size);
    std::uniform_real_distribution<double> wave(-0.02 * size, 0.02 * size);
    std::vector<Curve> lines;
    for (int k = 0; k < count; ++k) {
        std::vector<CurveVertex> chain;
        const double c = offset(random);
        for (int v = 0; v <= 40; ++v) {
            const double t = size * v / 40.0;
            chain.push_back({{t + wave(random), c + t + wave(random), 10.0 * k}, 0.0});
        }
        lines.emplace_back(chain, false);
    }
    return lines;
}

void expectTheLiteralRule(const std::vector<Curve>& lines, double limit) {
    const std::vector<geometry::Box2> boxes = test::extentsOf(lines);
    myGrid grid;
    define(grid, 31, 40, 10.0);
    const ContourGridResult result = fill(lines, grid, limit);
    ASSERT_TRUE(result.completed);
    long tooFew = 0;
    for (int i = 0; i < 31; ++i)
        for (int j = 0; j < 40; ++j) {
            const auto expected =
                test::literalContourValue(lines, boxes, grid.cellCenter(i, j)->plan(), 10.0, limit);
            tooFew += expected ? 0 : 1;
            ASSERT_NEAR(grid.getValue(i, j), expected.value_or(-1.0),
                        1e-7 * std::max(1.0, std::abs(expected.value_or(0.0))))
                << lines.size() << ": " << i << "," << j;
        }
    EXPECT_EQ(result.tooFew, tooFew);
}

TEST(Contours, AreTheLiteralRule) {
    struct Plan {
        int lines;
        int vertices;
        double limit;
    };
    for (const Plan& plan : {Plan{5, 20, 2000.0}, Plan{30, 3, 60.0}, Plan{60, 40, 2000.0},
                             Plan{400, 12, 25.0}, Plan{300, 60, 2000.0}, Plan{90, 2, 15.0}})
        expectTheLiteralRule(wildLines(7, plan.lines, 400.0, plan.vertices), plan.limit);
    for (const int count : {30, 60, 200})
        expectTheLiteralRule(slopingLines(8, count, 400.0), 2000.0);
}

// Beyond the outermost lines every line lies on one side, so that all have to be gone through.
TEST(Contours, FarSlopesGoOnBeyondTheLastLine) {
    std::vector<Curve> lines;
    for (int k = 0; k < 80; ++k)
        lines.push_back(
            Curve::line({200.0 + 5.0 * k, -500, 10.0 * k}, {200.0 + 5.0 * k, 900, 10.0 * k}));
    myGrid grid;
    define(grid, 40, 40, 10.0);
    ASSERT_TRUE(fill(lines, grid).completed);
    for (int i = 0; i < 40; ++i)
        EXPECT_NEAR(grid.getValue(i, 7), (10.0 * i + 5.0 - 200.0) * 2.0, 1e-8) << i;
}

TEST(Contours, OfAPlaneGiveThePlane) {
    // z = 3 x + 4 y, drawn every 50: lines across (3, 4) / 5.
    std::vector<Curve> lines;
    for (int k = -40; k < 90; ++k) {
        const Point2 foot = (50.0 * k / 25.0) * Point2{3.0, 4.0};
        const Point2 along = 2000.0 * Point2{-0.8, 0.6};
        const Point2 a = foot - along;
        const Point2 b = foot + along;
        lines.push_back(Curve::line({a.x, a.y, 50.0 * k}, {b.x, b.y, 50.0 * k}));
    }
    myGrid grid;
    define(grid, 30, 30, 10.0);
    ASSERT_TRUE(fill(lines, grid).completed);
    for (int i = 0; i < 30; ++i)
        for (int j = 0; j < 30; ++j) {
            const Point2 c = grid.cellCenter(i, j)->plan();
            EXPECT_NEAR(grid.getValue(i, j), 3.0 * c.x + 4.0 * c.y, 1e-7);
        }
}

TEST(Contours, OfAConeGiveTheRadialValue) {
    std::vector<Curve> lines;
    for (int k = 1; k < 40; ++k)
        lines.push_back(Curve::circle({0, 0, 1000.0 - 20.0 * k}, 10.0 * k));
    myGrid grid;
    define(grid, 40, 40, 7.0, 0.0, {-140.0, -140.0});
    ASSERT_TRUE(fill(lines, grid).completed);
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 40; ++j) {
            const Point2 c = grid.cellCenter(i, j)->plan();
            const double r = std::hypot(c.x, c.y);
            if (r > 10.0) { // within the top circle the slope goes on from one line only
                EXPECT_NEAR(grid.getValue(i, j), 1000.0 - 2.0 * r, 1e-7) << r;
            }
        }
}

TEST(Contours, ACellOnALineAndOneBetweenEqualLines) {
    std::vector<Curve> lines;
    for (const double x : {-40.0, 15.0, 35.0, 80.0})
        lines.push_back(
            Curve::line({x, -100, x < 40.0 ? 7.0 : 90.0}, {x, 100, x < 40.0 ? 7.0 : 90.0}));
    myGrid grid;
    define(grid, 4, 4, 10.0);
    ASSERT_TRUE(fill(lines, grid).completed);
    EXPECT_EQ(grid.getValue(1, 2), 7.0); // on the line at 15
    EXPECT_EQ(grid.getValue(2, 2), 7.0); // half way between two of 7
}

TEST(Contours, ThreeLinesAreTooFew) {
    std::vector<Curve> lines;
    for (const double x : {0.0, 20.0, 40.0})
        lines.push_back(Curve::line({x, 0, x}, {x, 40, x}));
    myGrid grid;
    define(grid, 4, 4, 10.0);
    std::vector<std::pair<int, int>> named;
    base::NoProgress progress;
    ContourGridResult result = gridContours(
        lines, {2000.0, 0.0}, grid, [&](int i, int j) { named.emplace_back(i, j); }, progress);
    EXPECT_TRUE(result.completed);
    EXPECT_EQ(result.tooFew, 16);
    ASSERT_EQ(named.size(), 16U);
    EXPECT_EQ(named[1], (std::pair{0, 1}));
    EXPECT_EQ(grid.getValue(2, 2), -1.0);
    // A fourth one at 100: within a limit of 60, the columns at 45 and 55 alone meet all four.
    lines.push_back(Curve::line({100, 0, 100}, {100, 40, 100}));
    define(grid, 8, 4, 10.0);
    result = fill(lines, grid, 60.0);
    EXPECT_EQ(result.tooFew, 6 * 4);
    EXPECT_EQ(grid.getValue(3, 0), -1.0);
    EXPECT_NEAR(grid.getValue(4, 0), 45.0, 1e-9);
}

TEST(Contours, MovedAndTurnedTogetherGiveTheSameCells) {
    const std::vector<Curve> lines = wildLines(11, 80, 300.0, 25);
    myGrid plain;
    define(plain, 30, 30, 10.0);
    ASSERT_TRUE(fill(lines, plain).completed);
    for (const double degrees : {0.0, 37.0, 180.0, 271.0}) {
        myGrid twin;
        define(twin, 30, 30, 10.0, degrees, {4096.0, 8192.0});
        ASSERT_TRUE(fill(moved(lines, plain, twin), twin).completed);
        for (int i = 0; i < 30; ++i)
            for (int j = 0; j < 30; ++j)
                ASSERT_NEAR(twin.getValue(i, j), plain.getValue(i, j),
                            1e-6 * std::max(1.0, std::abs(plain.getValue(i, j))))
                    << degrees << ": " << i << "," << j;
    }
}

TEST(Contours, DatumBreakAndLinesWithoutExtent) {
    std::vector<Curve> lines;
    for (const double x : {0.0, 20.0, 40.0, 60.0})
        lines.push_back(Curve::line({x, -50, x}, {x, 90, x}));
    lines.emplace_back(std::vector<CurveVertex>{{{25, 25, 1000}, 0.0}}, true); // one vertex
    myGrid grid;
    define(grid, 4, 4, 10.0);
    base::NoProgress progress;
    gridContours(
        lines, {2000.0, 5.0}, grid, [](int, int) {}, progress);
    EXPECT_NEAR(grid.getValue(0, 0), 0.0, 1e-9);
    EXPECT_EQ(grid.getValue(2, 2), 995.0);

    class Break final : public base::Progress {
      public:
        void begin(std::string_view /*text*/, long /*lower*/, long /*upper*/) override {}
        void setPosition(long /*position*/) override {}
        void end() override {}
        bool cancelled() override { return true; }
    } cancelled;
    EXPECT_FALSE(gridContours(
                     lines, {2000.0, 0.0}, grid, [](int, int) {}, cancelled)
                     .completed);
}

} // namespace
} // namespace tessaran::factors
