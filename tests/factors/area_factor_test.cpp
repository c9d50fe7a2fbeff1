#include "factors/area_factor.h"
#include "support/literal_area_factor.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <limits>
#include <numbers>
#include <random>
#include <string>

namespace tessaran::factors {
namespace {

using geometry::Point2;
using geometry::Polygon;
using grid::myGrid;

Polygon rectangle(double x0, double y0, double x1, double y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

AreaFactorOptions byArea(int percent) {
    return {9, 2, percent, AreaAlgorithm::areaBased};
}
AreaFactorOptions byMiddle() {
    return {9, 2, 0, AreaAlgorithm::middlePoint};
}

// A grid as it looks on the plan, the highest row first: '#' inside, '.' outside.
std::vector<std::string> pictureOf(const myGrid& grid, const AreaFactorOptions& options) {
    std::vector<std::string> rows;
    for (int j = grid.nY(); j-- > 0;) {
        rows.emplace_back();
        for (int i = 0; i < grid.nX(); ++i) {
            const double value = grid.getValue(i, j);
            EXPECT_TRUE(value == options.insideFactor || value == options.outsideFactor);
            rows.back() += value == options.insideFactor ? '#' : '.';
        }
    }
    return rows;
}

using Picture = std::vector<std::string>;

// 6 x 4 cells of 10 x 10 from (0, 0), unless laid elsewhere.
Picture built(const std::vector<Polygon>& boundaries, const AreaFactorOptions& options,
              Point2 origin = {}, double degrees = 0.0) {
    myGrid grid;
    grid.setupGrid(6, 4, 10.0, 10.0, degrees);
    grid.setOrigin(origin.x, origin.y, 0.0);
    base::NoProgress progress;
    buildAreaFactor(grid, boundaries, options, progress);
    return pictureOf(grid, options);
}

const Picture kNothing{"......", "......", "......", "......"};

TEST(AreaFactor, TakesCellsByTheCoveredShare) {
    // Covers column 1 by 40 %, columns 2 and 3 whole, column 4 by 60 %; row 1 by half.
    const std::vector<Polygon> boundary{rectangle(16, 15, 46, 30)};
    EXPECT_EQ(built(boundary, byArea(40)), (Picture{"......", ".####.", "..##..", "......"}));
    EXPECT_EQ(built(boundary, byArea(41)), (Picture{"......", "..###.", "..##..", "......"}));
    EXPECT_EQ(built(boundary, byArea(50)), (Picture{"......", "..###.", "..##..", "......"}));
    EXPECT_EQ(built(boundary, byArea(61)), (Picture{"......", "..##..", "......", "......"}));
    EXPECT_EQ(built(boundary, byArea(100)), (Picture{"......", "..##..", "......", "......"}));
}

TEST(AreaFactor, TakesCellsByTheirMiddlePoint) {
    EXPECT_EQ(built({rectangle(16, 16, 46, 30)}, byMiddle()),
              (Picture{"......", "..###.", "......", "......"}));
    // Middle points on the outline: the lower and left sides belong to the boundary.
    EXPECT_EQ(built({rectangle(15, 15, 45, 35)}, byMiddle()),
              (Picture{"......", ".###..", ".###..", "......"}));
}

TEST(AreaFactor, AddsUpSharesOfAllBoundaries) {
    const Polygon left = rectangle(15, 10, 25, 30); // halves of columns 1 and 2
    const Polygon right = rectangle(25, 10, 35, 30);
    EXPECT_EQ(built({left}, byArea(51)), kNothing);
    EXPECT_EQ(built({left, right}, byArea(100)), (Picture{"......", "..#...", "..#...", "......"}));
    // The same half twice reaches the whole as well.
    EXPECT_EQ(built({left, left}, byArea(100)), (Picture{"......", ".##...", ".##...", "......"}));
}

TEST(AreaFactor, LeavesOutBoundariesInOneColumnOrRow) {
    myGrid grid;
    grid.setupGrid(6, 4, 10.0, 10.0, 0.0);
    base::NoProgress progress;
    const std::vector<Polygon> boundaries{
        rectangle(11, 1, 19, 39),             // one column
        rectangle(1, 11, 59, 19),             // one row
        rectangle(-50, 1, 9, 39),             // one column of what lies within the grid
        rectangle(20.5, 10.5, 31, 21),        // two of each
        {},                                   // nothing
        {{0, 0}, {std::nan(""), 4}, {50, 50}} // no place
    };
    const AreaFactorResult result = buildAreaFactor(grid, boundaries, byArea(50), progress);
    EXPECT_EQ(pictureOf(grid, byArea(50)), (Picture{"......", "......", "..#...", "......"}));
    EXPECT_EQ(result.boundariesInOneLine, 3U);
    EXPECT_EQ(result.boundariesWithoutShape, 2U);
    EXPECT_EQ(result.boundariesUsed, 1U);
    EXPECT_EQ(result.cellsInside, 1U);
    EXPECT_FALSE(result.cancelled);
}

TEST(AreaFactor, HoldsBoundariesWithinTheGrid) {
    const Picture all{"######", "######", "######", "######"};
    EXPECT_EQ(built({rectangle(-1e9, -1e9, 1e9, 1e9)}, byArea(100)), all);
    EXPECT_EQ(built({rectangle(-1e9, -1e9, 1e9, 1e9)}, byMiddle()), all);
    EXPECT_EQ(built({rectangle(-100, -100, -10, -10)}, byArea(1)), kNothing);
    EXPECT_EQ(built({rectangle(100, 100, 200, 200)}, byArea(1)), kNothing);
}

TEST(AreaFactor, TakesEveryCellWithoutAShareToReach) {
    const Picture all{"######", "######", "######", "######"};
    EXPECT_EQ(built({}, {9, 2, 50, AreaAlgorithm::none}), all);
    EXPECT_EQ(built({}, byArea(0)), all);
    EXPECT_EQ(built({}, byMiddle()), kNothing);
}

TEST(AreaFactor, CountsCellsWhollyInsideWhateverTheRounding) {
    // Outlines on the cells' sides, on turned grids far from the origin: 2 x 2 cells, exactly.
    const Picture expected{"......", "..##..", "..##..", "......"};
    for (const double degrees : {0.0, 30.0, 45.0, 77.7, 90.0, 123.4, 200.0, -15.0}) {
        myGrid grid;
        grid.setupGrid(6, 4, 10.0, 10.0, degrees);
        const Point2 origin{2'345'678.9, 6'543'210.1};
        grid.setOrigin(origin.x, origin.y, 0.0);
        const Polygon cells{grid.nodePoint(2, 1), grid.nodePoint(4, 1), grid.nodePoint(4, 3),
                            grid.nodePoint(2, 3)};
        EXPECT_EQ(built({cells}, byArea(100), origin, degrees), expected) << degrees;
        const Polygon lowerRight{grid.nodePoint(2, 1), grid.nodePoint(4, 1), grid.nodePoint(4, 3)};
        EXPECT_EQ(built({lowerRight}, byArea(50), origin, degrees),
                  (Picture{"......", "...#..", "..##..", "......"}))
            << degrees;
    }
}

class BreakAfter final : public base::Progress {
  public:
    explicit BreakAfter(int polls) : left_(polls) {}
    void begin(std::string_view text, long lower, long upper) override {
        heard += std::string(text) + std::to_string(lower) + ".." + std::to_string(upper) + " ";
    }
    void setPosition(long position) override { heard += std::to_string(position) + " "; }
    void end() override { heard += "end"; }
    bool cancelled() override { return --left_ <= 0; }
    std::string heard;

  private:
    int left_;
};

TEST(AreaFactor, KeepsTheBoundariesBeforeABreak) {
    myGrid grid;
    grid.setupGrid(6, 4, 10.0, 10.0, 0.0);
    const std::vector<Polygon> boundaries{rectangle(0, 0, 15, 15), rectangle(20, 0, 35, 15),
                                          rectangle(40, 0, 55, 15)};
    BreakAfter progress(2);
    const AreaFactorResult result = buildAreaFactor(grid, boundaries, byArea(100), progress);
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(result.boundariesUsed, 2U);
    EXPECT_EQ(pictureOf(grid, byArea(100)), (Picture{"......", "......", "......", "#.#..."}));
    EXPECT_EQ(progress.heard, "Search cells against boundaries ...0..2 0 1 end");
}

TEST(AreaFactor, DoesNothingToAnUndefinedGrid) {
    myGrid grid;
    base::NoProgress progress;
    EXPECT_EQ(
        buildAreaFactor(grid, std::vector<Polygon>{rectangle(0, 0, 9, 9)}, byArea(1), progress)
            .boundariesUsed,
        0U);
    EXPECT_FALSE(isRelatedToGrid(grid, rectangle(0, 0, 9, 9)));
    EXPECT_TRUE(cellsOfBoundary(grid, rectangle(0, 0, 9, 9)).empty());
}

TEST(AreaFactor, KeepsTheExtraColumnAndRow) {
    myGrid grid;
    grid.setBlankValue(-7.0);
    grid.setupGrid(6, 4, 10.0, 10.0, 0.0);
    base::NoProgress progress;
    buildAreaFactor(grid, std::vector<Polygon>{rectangle(-9, -9, 99, 99)}, byArea(1), progress);
    EXPECT_EQ(grid.getValue(6, 0), -7.0);
    EXPECT_EQ(grid.getValue(0, 4), -7.0);
    EXPECT_EQ(grid.getValue(5, 3), 9.0);
}

// A made-up mine on a turned grid: pillars, overlapping gobs, self-crossing outlines.
struct Mine {
    double degrees = 0.0;
    Point2 origin;
    std::vector<Polygon> boundaries;
};

constexpr int kColumns = 61;
constexpr int kRows = 43;

Mine madeUpMine(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> degrees(-180, 180);
    std::uniform_real_distribution<double> x(-100, 700);
    std::uniform_real_distribution<double> y(-100, 500);
    std::uniform_real_distribution<double> size(8, 150);
    std::uniform_real_distribution<double> reach(0.4, 1.0);
    Mine mine{seed % 3 == 0 ? 0.0 : degrees(random), {x(random) * 1000, y(random) * 1000}, {}};
    for (int k = 0; k < 25; ++k) {
        const Point2 centre{x(random), y(random)};
        const double radius = size(random);
        Polygon polygon;
        const int vertices = 3 + static_cast<int>(random() % 30);
        for (int v = 0; v < vertices; ++v) {
            const double angle = 2.0 * std::numbers::pi * v / vertices * (k % 5 == 0 ? 2.0 : 1.0);
            polygon.push_back(
                rotated(mine.origin + centre +
                            radius * reach(random) * Point2{std::cos(angle), std::sin(angle)},
                        mine.origin, mine.degrees * std::numbers::pi / 180));
        }
        if (k % 4 == 0)
            polygon.push_back(polygon.front());
        mine.boundaries.push_back(polygon);
    }
    return mine;
}

void lay(myGrid& grid, const Mine& mine) {
    grid.setupGrid(kColumns, kRows, 10.0, 9.0, mine.degrees);
    grid.setOrigin(mine.origin.x, mine.origin.y, 0.0);
}

TEST(AreaFactorTwins, EqualTestingEachCellByItself) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        const Mine mine = madeUpMine(seed);
        for (const AreaFactorOptions& options : {byMiddle(), byArea(1), byArea(37), byArea(100)}) {
            myGrid fast;
            myGrid plain;
            lay(fast, mine);
            lay(plain, mine);
            base::NoProgress progress;
            buildAreaFactor(fast, mine.boundaries, options, progress);
            test::literalAreaFactor(plain, mine.boundaries, options);
            EXPECT_EQ(pictureOf(fast, options), pictureOf(plain, options)) << "mine " << seed;
        }
    }
}

TEST(AreaFactorTwins, DoNotDependOnTheThreads) {
    const Mine mine = madeUpMine(77);
    const auto values = [&](std::size_t threads) {
        const tbb::global_control control(tbb::global_control::max_allowed_parallelism, threads);
        myGrid grid;
        lay(grid, mine);
        base::NoProgress progress;
        buildAreaFactor(grid, mine.boundaries, byArea(50), progress);
        return std::vector<double>(grid.values().begin(), grid.values().end());
    };
    EXPECT_EQ(values(1), values(8));
}

// The picture of a mine whose boundaries and grid origin both went through `change`.
template <class Change>
Picture pictureAfter(Mine mine, double turnedBy, Change change) {
    for (Polygon& boundary : mine.boundaries)
        for (Point2& p : boundary)
            p = change(p);
    mine.origin = change(mine.origin);
    mine.degrees += turnedBy;
    myGrid grid;
    lay(grid, mine);
    base::NoProgress progress;
    buildAreaFactor(grid, mine.boundaries, byArea(50), progress);
    return pictureOf(grid, byArea(50));
}

TEST(AreaFactorTwins, MoveAndTurnWithTheGrid) {
    const Mine mine = madeUpMine(5);
    const Picture plain = pictureAfter(mine, 0.0, [](Point2 p) { return p; });
    const auto move = [](Point2 p) { return p + Point2{12'345.0, -6'789.0}; };
    EXPECT_EQ(pictureAfter(mine, 0.0, move), plain);
    EXPECT_EQ(pictureAfter(mine, 90.0, [](Point2 p) { return Point2{-p.y, p.x}; }), plain);
}

TEST(RelatedToGrid, NeedsACommonArea) {
    myGrid grid;
    grid.setupGrid(6, 4, 10.0, 10.0, 0.0);
    EXPECT_TRUE(isRelatedToGrid(grid, rectangle(59, 39, 99, 99)));
    EXPECT_TRUE(isRelatedToGrid(grid, rectangle(-9, -9, 99, 99)));
    EXPECT_FALSE(isRelatedToGrid(grid, rectangle(60, 0, 99, 40))); // along a side
    EXPECT_FALSE(isRelatedToGrid(grid, rectangle(61, 0, 99, 40)));
    EXPECT_FALSE(isRelatedToGrid(grid, Polygon{{1, 1}, {9, 9}}));
}

TEST(OverlappingBoundaries, FindsPairsThatShareArea) {
    const std::vector<Polygon> boundaries{rectangle(0, 0, 10, 10),
                                          rectangle(10, 0, 20, 10),
                                          rectangle(9, 9, 11, 11),
                                          {},
                                          rectangle(2, 2, 3, 3)};
    EXPECT_EQ(overlappingBoundaries(boundaries),
              (std::vector<OverlappingPair>{{0, 2}, {0, 4}, {1, 2}}));
}

} // namespace
} // namespace tessaran::factors
