// Index mapping: labels and open areas against closed forms and against literal clipping of every
// cell.

#include "geometry/polygon.h"
#include "host/curves.h"
#include "index/index_mapping.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <random>

namespace tessaran::index {
namespace {

using geometry::PlanarRegion;
using geometry::Point2;
using geometry::Polygon;
using Colours = std::vector<grid::ColourBreak>;

const Colours kOneColour{{0.0, 30}, {100.0, 30}};
const Colours kTwoColours{{0.0, 174}, {50.0, 10}, {100.0, 50}};

void setUp(grid::myGrid& grid, int nX, int nY, double width, double degrees = 0.0,
           Point2 origin = {}) {
    ASSERT_TRUE(grid.setupGrid(nX, nY, width, width, degrees));
    grid.setOrigin(origin.x, origin.y, 0.0);
}

Polygon square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

double areaOf(const ColouredRegion& region) {
    return geometry::area(region.area);
}

std::map<int, double> areasByColour(const std::vector<ColouredRegion>& regions) {
    std::map<int, double> areas;
    for (const ColouredRegion& region : regions)
        areas[region.colour] += areaOf(region);
    return areas;
}

std::map<int, double> singly(const IndexMapping& mapping) {
    const auto regions = mapping.cellRegions(0, mapping.labels().nY());
    EXPECT_TRUE(regions.ok());
    const auto count = mapping.countCellRegions(0, mapping.labels().nY());
    EXPECT_EQ(*count, regions->size());
    return areasByColour(*regions);
}

std::map<int, double> combined(const IndexMapping& mapping) {
    const auto regions = mapping.combinedRegions();
    EXPECT_TRUE(regions.ok());
    for (std::size_t k = 1; k < regions->size(); ++k)
        EXPECT_LT((*regions)[k - 1].colour, (*regions)[k].colour) << "one region a colour";
    return areasByColour(*regions);
}

void expectAreas(const IndexMapping& mapping, const std::map<int, double>& wanted,
                 double tolerance) {
    for (const auto& got : {singly(mapping), combined(mapping)}) {
        EXPECT_EQ(got.size(), wanted.size());
        for (const auto& [colour, area] : wanted)
            EXPECT_NEAR(got.count(colour) != 0 ? got.at(colour) : 0.0, area, tolerance)
                << "colour " << colour;
    }
}

// 4 x 4 cells of 10, a pillar 15 x 15 in the middle of the plan.
TEST(IndexMappingLabels, TellWholeCutAndCoveredCells) {
    grid::myGrid grid;
    setUp(grid, 4, 4, 10.0);
    IndexMapping mapping(grid, kOneColour);
    EXPECT_EQ(mapping.filterCells(ValueFilter::all, 0.0), 0U);
    ASSERT_TRUE(mapping.addPillar(77, square(10.0, 10.0, 15.0)).ok());
    EXPECT_EQ(mapping.label(1, 1), "N");
    EXPECT_EQ(mapping.label(2, 1), "77");
    EXPECT_EQ(mapping.label(2, 2), "77");
    EXPECT_EQ(mapping.label(0, 1), "0") << "the pillar only touches it along an edge";
    EXPECT_EQ(mapping.label(3, 3), "0");
    expectAreas(mapping, {{30, 1600.0 - 225.0}}, 1e-9);
}

TEST(IndexMappingLabels, TwoPillarsOnACellAreBothTakenAway) {
    grid::myGrid grid;
    setUp(grid, 2, 2, 10.0);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    ASSERT_TRUE(mapping.addPillar(5, {{{0, 0}, {4, 0}, {4, 10}, {0, 10}}}).ok());
    ASSERT_TRUE(mapping.addPillar(9, {{{3, 0}, {8, 0}, {8, 10}, {3, 10}}}).ok());
    EXPECT_EQ(mapping.label(0, 0), "5,9");
    expectAreas(mapping, {{30, 400.0 - 80.0}}, 1e-9);
}

TEST(IndexMappingLabels, ACellThatTwoPillarsCoverTogetherIsSkipped) {
    grid::myGrid grid;
    setUp(grid, 2, 2, 10.0, 30.0, {4.0e6, 7.0e6});
    const grid::CellFrame frame(grid);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    const Polygon left = frame.toWorld(Polygon{{0, 0}, {0.37, 0}, {0.37, 1}, {0, 1}});
    const Polygon right = frame.toWorld(Polygon{{0.37, 0}, {1, 0}, {1, 1}, {0.37, 1}});
    ASSERT_TRUE(mapping.addPillar(1, left).ok());
    ASSERT_TRUE(mapping.addPillar(2, right).ok());
    EXPECT_EQ(mapping.label(0, 0), "1,2");
    EXPECT_EQ(*mapping.countCellRegions(0, 2), 3U);
    expectAreas(mapping, {{30, 300.0}}, 1e-6);
}

TEST(IndexMappingLabels, AreAsExactFarFromTheWorldsOrigin) {
    grid::myGrid grid;
    setUp(grid, 6, 6, 7.0, 33.0, {4812345.678, 7654321.098});
    const grid::CellFrame frame(grid);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    // drawn along the cell sides of the turned grid: four cells wholly, none cut
    ASSERT_TRUE(mapping.addPillar(1, frame.toWorld(Polygon{{2, 2}, {4, 2}, {4, 4}, {2, 4}})).ok());
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j)
            EXPECT_EQ(mapping.label(i, j), i / 2 == 1 && j / 2 == 1 ? "N" : "0") << i << "," << j;
    expectAreas(mapping, {{30, 32 * 49.0}}, 1e-4);
}

TEST(IndexMappingFilter, ThresholdItselfIsNotMapped) {
    grid::myGrid grid;
    setUp(grid, 3, 2, 1.0);
    const double values[3] = {10.0, 50.0, 90.0};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j)
            grid.setValue(i, j, values[i]);
    IndexMapping larger(grid, kTwoColours);
    larger.filterCells(ValueFilter::largerThan, 50.0);
    EXPECT_EQ(larger.label(0, 0) + larger.label(1, 0) + larger.label(2, 0), "NN0");
    IndexMapping smaller(grid, kTwoColours);
    smaller.filterCells(ValueFilter::smallThan, 50.0);
    EXPECT_EQ(smaller.label(0, 0) + smaller.label(1, 0) + smaller.label(2, 0), "0NN");
    IndexMapping all(grid, kTwoColours);
    all.filterCells(ValueFilter::all, 50.0);
    expectAreas(all, {{174, 2.0}, {10, 4.0}}, 1e-12);
}

TEST(IndexMappingFilter, CellsWithoutAValueAreLeftOutAndCounted) {
    grid::myGrid grid;
    setUp(grid, 3, 3, 1.0);
    grid.setValue(1, 1, -1e20);
    grid.setValue(2, 2, std::nan(""));
    IndexMapping mapping(grid, kOneColour);
    EXPECT_EQ(mapping.filterCells(ValueFilter::smallThan, 5.0), 2U);
    expectAreas(mapping, {{30, 7.0}}, 1e-12);
}

// A round pillar of two half circles: its chords stand in for it in the overlap as in the cut.
TEST(IndexMappingPillars, ArcsCount) {
    grid::myGrid grid;
    setUp(grid, 4, 4, 10.0);
    host::Entity entity;
    entity.geometry = host::Polyline{
        host::Polyline::Form::light, {{{8.0, 20.0}, 1.0}, {{32.0, 20.0}, 1.0}}, true};
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    const Polygon outline = host::outlineOf(entity);
    ASSERT_TRUE(mapping.addPillar(1, outline).ok());
    EXPECT_EQ(mapping.label(0, 1), "1") << "only the bow reaches it";
    expectAreas(mapping, {{30, 1600.0 - geometry::area(outline)}}, 1e-9);
    expectAreas(mapping, {{30, 1600.0 - 144.0 * std::numbers::pi}}, 0.002 * 144.0 * 3.15);
}

TEST(IndexMappingPillars, DuplicateSelfCrossingAndCollapsedOutlines) {
    grid::myGrid grid;
    setUp(grid, 4, 4, 10.0);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    const Polygon bow{{5, 5}, {25, 25}, {25, 5}, {5, 25}}; // two triangles of 100
    ASSERT_TRUE(mapping.addPillar(1, bow).ok());
    ASSERT_TRUE(mapping.addPillar(2, bow).ok());
    ASSERT_TRUE(mapping.addPillar(3, Polygon{{30, 30}, {30, 30}, {30, 30}}).ok());
    ASSERT_TRUE(mapping.addPillar(4, Polygon{{30, 30}, {38, 38}, {30, 30}}).ok());
    ASSERT_TRUE(mapping.addPillar(5, Polygon{}).ok());
    ASSERT_TRUE(mapping.addPillar(6, Polygon{{0, 0}, {1e300, 5}, {std::nan(""), 7}}).ok());
    EXPECT_EQ(mapping.label(3, 3), "0");
    EXPECT_EQ(mapping.label(1, 1), "1,2");
    expectAreas(mapping, {{30, 1600.0 - 200.0}}, 1e-9);
}

TEST(IndexMappingPillars, BesideTheGridAndAroundItWhole) {
    grid::myGrid grid;
    setUp(grid, 3, 3, 10.0);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    ASSERT_TRUE(mapping.addPillar(1, square(-50.0, -50.0, 40.0)).ok());
    ASSERT_TRUE(mapping.addPillar(2, square(-5.0, 1e9, 10.0)).ok());
    expectAreas(mapping, {{30, 900.0}}, 1e-12);
    ASSERT_TRUE(mapping.addPillar(3, square(-1e9, -1e9, 2e9)).ok());
    EXPECT_EQ(mapping.label(0, 0) + mapping.label(2, 2), "NN");
    EXPECT_TRUE(mapping.combinedRegions()->empty());
    EXPECT_EQ(*mapping.countCellRegions(0, 3), 0U);
}

// A pillar inside one big colour leaves a hole: the merged region has both loops.
TEST(IndexMappingRegions, AMergedRegionHasAllItsLoops) {
    grid::myGrid grid;
    setUp(grid, 5, 5, 10.0);
    IndexMapping mapping(grid, kOneColour);
    mapping.filterCells(ValueFilter::all, 0.0);
    ASSERT_TRUE(mapping.addPillar(1, square(22.0, 22.0, 6.0)).ok());
    const auto regions = mapping.combinedRegions();
    ASSERT_EQ(regions->size(), 1U);
    EXPECT_EQ(regions->front().area.loops.size(), 2U);
    EXPECT_EQ(*mapping.countCellRegions(0, 5), 25U);
}

struct RandomPlan {
    double degrees;
    Point2 origin;
    bool overlapping;
};

class RandomPlans : public testing::TestWithParam<RandomPlan> {};

Polygon randomPillar(std::mt19937& random, Point2 centre, double radius) {
    std::uniform_real_distribution<double> share(0.4, 1.0);
    std::uniform_int_distribution<int> corners(3, 12);
    const int n = corners(random);
    Polygon pillar;
    for (int k = 0; k < n; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / n;
        const double r = radius * share(random);
        pillar.push_back(centre + r * Point2{std::cos(angle), std::sin(angle)});
    }
    return pillar;
}

// Pillars that lie apart: the cell less what window clipping finds of each.
double openAreaApart(const Polygon& cell, const std::vector<Polygon>& pillars) {
    double open = geometry::area(cell);
    for (const Polygon& pillar : pillars)
        open -= geometry::intersectionArea(cell, pillar);
    return open;
}

// Any pillars: subtracted from the cell in world coordinates.
double openAreaOverlaid(const Polygon& cell, const std::vector<Polygon>& pillars) {
    std::vector<PlanarRegion> regions;
    for (const Polygon& pillar : pillars)
        regions.push_back(geometry::regionOf(pillar));
    return geometry::area(*geometry::subtract(geometry::regionOf(cell), regions));
}

// The open area of every cell by itself.
std::map<int, double> literalAreas(const grid::myGrid& grid, const std::vector<Polygon>& pillars,
                                   const Colours& colours, bool overlapping) {
    std::map<int, double> areas;
    for (int i = 0; i < grid.nX(); ++i) {
        for (int j = 0; j < grid.nY(); ++j) {
            const auto corners = *grid.cellCorners(i, j);
            const Polygon cell(corners.begin(), corners.end());
            const double area =
                overlapping ? openAreaOverlaid(cell, pillars) : openAreaApart(cell, pillars);
            if (area > 1e-9)
                areas[grid::colourOfValue(colours, grid.getValue(i, j))] += area;
        }
    }
    return areas;
}

TEST_P(RandomPlans, GiveTheAreasOfLiteralSubtraction) {
    const auto& [degrees, origin, overlapping] = GetParam();
    std::mt19937 random(20);
    std::uniform_real_distribution<double> value(0.0, 100.0);
    std::uniform_real_distribution<double> place(-20.0, 220.0);
    grid::myGrid grid;
    setUp(grid, 21, 17, 10.0, degrees, origin);
    for (int i = 0; i < grid.nX(); ++i)
        for (int j = 0; j < grid.nY(); ++j)
            grid.setValue(i, j, value(random));
    IndexMapping mapping(grid, kTwoColours);
    mapping.filterCells(ValueFilter::all, 0.0);
    std::vector<Polygon> pillars;
    for (int k = 0; k < 40; ++k) {
        const Point2 lattice{30.0 * (k % 7), 30.0 * (k / 7)};
        const Point2 centre = overlapping ? Point2{place(random), place(random)} : lattice;
        pillars.push_back(randomPillar(random, origin + centre, overlapping ? 40.0 : 14.9));
        ASSERT_TRUE(mapping.addPillar(k + 1, pillars.back()).ok());
    }
    expectAreas(mapping, literalAreas(grid, pillars, kTwoColours, overlapping), 1e-5);
}

std::string planName(const testing::TestParamInfo<RandomPlan>& tested) {
    const auto& [degrees, origin, overlapping] = tested.param;
    return std::string(degrees == 0.0 ? "Straight" : "Turned") +
           (overlapping ? "Overlapping" : "Apart");
}

INSTANTIATE_TEST_SUITE_P(IndexMapping, RandomPlans,
                         testing::Values(RandomPlan{0.0, {}, false}, RandomPlan{0.0, {}, true},
                                         RandomPlan{27.5, {1000.0, -500.0}, true},
                                         RandomPlan{-12.0, {3.0e6, 5.0e6}, false}),
                         planName);

} // namespace
} // namespace tessaran::index
