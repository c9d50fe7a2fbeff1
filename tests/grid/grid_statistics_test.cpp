// Statistics, correlation, arithmetic and polygon cells beside literal computations.

#include "geometry/polygon.h"
#include "grid/cell_frame.h"
#include "grid/grid_arithmetic.h"
#include "grid/grid_statistics.h"
#include "grid/group_percentage.h"
#include "grid/polygon_cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaran::grid {
namespace {

using geometry::PlanarRegion;
using geometry::Polygon;
using testing::ElementsAre;

void lay(myGrid& grid, int nX, int nY, double width, Point2 origin, double degrees) {
    ASSERT_TRUE(grid.setupGrid(nX, nY, width, width, degrees));
    grid.setOrigin(origin.x, origin.y, 0.0);
}

void fill(myGrid& grid, std::mt19937& random, double offset) {
    std::normal_distribution<double> value(offset, 3.0);
    std::uniform_real_distribution<double> gap(0.0, 1.0);
    for (double& v : grid.values())
        v = gap(random) < 0.1 ? base::kNoValue : value(random);
}

// visit(v, w) for every cell and the sample around its centre, by the grid's own point location.
template <class Visit>
void literalPairs(const myGrid& grid, const myGrid& other, const Visit& visit) {
    for (int i = 0; i < grid.nX(); ++i)
        for (int j = 0; j < grid.nY(); ++j) {
            const CellIndex cell = other.pointToCell(grid.cellCenter(i, j)->plan());
            const bool outside = cell.column < 0 || cell.row < 0;
            visit(CellIndex{i, j},
                  outside ? std::nullopt : std::optional(other.getValue(cell.column, cell.row)));
        }
}

TEST(GridStatistics, AgreeWithLiteralSums) {
    std::mt19937 random(3);
    myGrid grid;
    lay(grid, 61, 47, 5.0, {0.0, 0.0}, 0.0);
    fill(grid, random, 1e6); // a large mean must not eat the deviation
    long double sum = 0.0L;
    long double n = 0.0L;
    for (int i = 0; i < 61; ++i)
        for (int j = 0; j < 47; ++j)
            if (base::hasValue(grid.getValue(i, j)))
                sum += grid.getValue(i, j), n += 1.0L;
    long double squares = 0.0L;
    for (int i = 0; i < 61; ++i)
        for (int j = 0; j < 47; ++j)
            if (base::hasValue(grid.getValue(i, j)))
                squares += (grid.getValue(i, j) - sum / n) * (grid.getValue(i, j) - sum / n);
    const GridStatistics s = statisticsOf(grid);
    EXPECT_EQ(s.samples, static_cast<std::size_t>(n));
    EXPECT_EQ(s.samples + s.withoutValue, 61u * 47u);
    EXPECT_NEAR(s.mean, static_cast<double>(sum / n), 1e-7);
    EXPECT_NEAR(s.deviation, static_cast<double>(std::sqrt(squares / (n - 1.0L))), 1e-9);
}

TEST(GridStatistics, FewAndNoSamples) {
    myGrid grid;
    EXPECT_EQ(statisticsText(statisticsOf(grid)), "Total Sample: 0");
    lay(grid, 2, 2, 1.0, {0.0, 0.0}, 0.0);
    grid.fillValue(base::kNoValue);
    EXPECT_EQ(statisticsText(statisticsOf(grid)), "Total Sample: 0\nCells without Value: 4");
    grid.setValue(1, 1, 7.0);
    const GridStatistics s = statisticsOf(grid);
    EXPECT_EQ(s.deviation, 0.0);
    EXPECT_EQ(s.atMin, 1u);
    EXPECT_EQ(s.atMax, 1u);
    CellSelection none(2, 2);
    EXPECT_EQ(statisticsOf(grid, none).samples, 0u);
}

TEST(GridStatistics, CorrelationOfAnyTwoGeometries) {
    std::mt19937 random(11);
    for (const double degrees : {0.0, 33.0}) {
        myGrid a;
        myGrid b;
        lay(a, 40, 30, 5.0, {1000.0, 2000.0}, 0.0);
        lay(b, 25, 25, 7.0, {1030.0, 1990.0}, degrees);
        fill(a, random, 50.0);
        fill(b, random, -20.0);
        std::vector<std::pair<double, double>> pairs;
        literalPairs(a, b, [&](CellIndex cell, std::optional<double> w) {
            const double v = a.getValue(cell.column, cell.row);
            if (w && base::hasValue(*w) && base::hasValue(v))
                pairs.emplace_back(v, *w);
        });
        double x = 0.0;
        double y = 0.0;
        for (const auto& [v, w] : pairs)
            x += v, y += w;
        x /= static_cast<double>(pairs.size());
        y /= static_cast<double>(pairs.size());
        double xx = 0.0;
        double yy = 0.0;
        double xy = 0.0;
        for (const auto& [v, w] : pairs)
            xx += (v - x) * (v - x), yy += (w - y) * (w - y), xy += (v - x) * (w - y);
        const Correlation found = correlation(a, b);
        EXPECT_EQ(found.pairs, pairs.size());
        ASSERT_TRUE(found.coefficient);
        EXPECT_NEAR(*found.coefficient, xy / std::sqrt(xx * yy), 1e-12);
        EXPECT_NEAR(correlation(a, a).coefficient.value(), 1.0, 1e-12);
    }
}

TEST(GridStatistics, NoCorrelationWithoutSpreadOrPairs) {
    myGrid a;
    myGrid b;
    lay(a, 3, 3, 1.0, {0.0, 0.0}, 0.0);
    lay(b, 3, 3, 1.0, {0.0, 0.0}, 0.0);
    a.fillValue(0.1);
    b.setValue(1, 1, 4.0);
    EXPECT_FALSE(correlation(a, b).coefficient);
    EXPECT_EQ(correlationText(correlation(a, b)),
              "Correlation Coefficent: not defined (9 samples)");
    b.setOrigin(100.0, 0.0, 0.0);
    EXPECT_EQ(correlation(a, b).pairs, 0u);
}

TEST(GridArithmetic, AgreesWithLiteralSampling) {
    std::mt19937 random(5);
    for (const double degrees : {0.0, 21.0})
        for (int k = 0; k < 4; ++k) {
            myGrid grid;
            myGrid before;
            myGrid other;
            lay(grid, 37, 29, 4.0, {0.0, 0.0}, 0.0);
            lay(before, 37, 29, 4.0, {0.0, 0.0}, 0.0);
            lay(other, 19, 21, 6.0, {20.0, 10.0}, degrees);
            fill(grid, random, 5.0);
            fill(other, random, 1.0);
            other.setValue(7, 7, 0.0);
            std::ranges::copy(grid.values(), before.values().begin());
            const auto counts = applyGrid(grid, static_cast<GridOperation>(k), other);
            EXPECT_EQ(counts.changed + counts.withoutValue + counts.outside + counts.zeroDivisor,
                      37u * 29u);
            literalPairs(before, other, [&](CellIndex c, std::optional<double> w) {
                const double v = before.getValue(c.column, c.row);
                double expected = v;
                if (w && base::hasValue(*w) && base::hasValue(v) && !(k == 3 && *w == 0.0))
                    expected = k == 0 ? v + *w : k == 1 ? v - *w : k == 2 ? v * *w : v / *w;
                EXPECT_EQ(grid.getValue(c.column, c.row), expected);
            });
        }
}

TEST(GridArithmetic, KeepsWhatNoCellCanHold) {
    myGrid grid;
    lay(grid, 2, 2, 1.0, {0.0, 0.0}, 0.0);
    grid.setValue(0, 0, 1e300);
    grid.setValue(1, 0, -5.0);
    grid.setValue(0, 1, std::numeric_limits<double>::quiet_NaN());
    grid.setValue(2, 0, 3.0); // the extra column
    const CellCounts squared = applyValue(grid, GridOperation::square, 1.0);
    EXPECT_EQ(squared.outOfRange, 1u);
    EXPECT_EQ(squared.withoutValue, 1u);
    EXPECT_EQ(grid.getValue(0, 0), 1e300);
    EXPECT_EQ(grid.getValue(1, 0), 25.0);
    EXPECT_EQ(grid.getValue(2, 0), 3.0);
    EXPECT_EQ(applyValue(grid, GridOperation::multiply, -1e20).outOfRange, 2u); // "no value"
    EXPECT_EQ(grid.getValue(1, 0), 25.0);
    myGrid none;
    EXPECT_EQ(applyValue(none, GridOperation::add, 1.0).changed, 0u);
    EXPECT_EQ(operationNamed(" square ROOT "), GridOperation::squareRoot);
    EXPECT_FALSE(operationNamed("Squareroot"));
}

TEST(PolygonCells, AgreeWithOverlaysCellByCell) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> any(0.0, 1.0);
    for (int round = 0; round < 12; ++round) {
        myGrid grid;
        lay(grid, 15, 12, 8.0, {5000.0, 7000.0}, 30.0 * round);
        const CellFrame frame(grid);
        // A ring and a triangle that overlaps it, in cell units.
        const double x = 2.0 + 5.0 * any(random);
        const double y = 2.0 + 4.0 * any(random);
        const PlanarRegion ring{
            {frame.toWorld(Polygon{{x, y}, {x + 6, y}, {x + 6, y + 5}, {x, y + 5}}),
             frame.toWorld(Polygon{
                 {x + 1.5, y + 1.5}, {x + 4.2, y + 1.5}, {x + 4.2, y + 3.6}, {x + 1.5, y + 3.6}})}};
        const PlanarRegion triangle{
            {frame.toWorld(Polygon{{x - 1, y - 1}, {x + 4, y}, {x, y + 4.5}})}};
        const std::vector<PlanarRegion> in{ring, triangle};
        const std::vector<PlanarRegion> out{
            {{frame.toWorld(Polygon{{0, 0}, {15, 0}, {15, y + 0.3}})}}};
        const double percent = 10.0 + 80.0 * any(random);
        const auto cells = cellsOfPolygons(grid, {in, out, percent});
        ASSERT_TRUE(cells);
        const auto all = geometry::unite(in).value();
        for (int j = 0; j < 12; ++j)
            for (int i = 0; i < 15; ++i) {
                const auto corners = *grid.cellCorners(i, j);
                const PlanarRegion cell{{Polygon(corners.begin(), corners.end())}};
                const double inside = geometry::area(geometry::intersect(all, cell).value()) / 64.0;
                const double outside =
                    geometry::area(geometry::intersect(out[0], cell).value()) / 64.0;
                EXPECT_EQ(cells->has({i, j}),
                          inside >= percent / 100.0 && outside < percent / 100.0)
                    << round << ": " << i << "," << j;
            }
    }
}

TEST(GroupPercentage, CountsEveryCellOnce) {
    myGrid grid;
    lay(grid, 10, 10, 2.0, {0.0, 0.0}, 0.0);
    for (int j = 0; j < 10; ++j)
        for (int i = 0; i < 10; ++i)
            grid.setValue(i, j, 10.0 * j + i - 5.0); // below the first break, above the last
    grid.setValue(0, 0, base::kNoValue);
    const auto shares = bandShares(grid, {{0.0, 1}, {20.0, 2}, {50.0, 3}});
    ASSERT_EQ(shares.size(), 2u);
    EXPECT_EQ(shares[0].cells, 24u);
    EXPECT_EQ(shares[1].cells, 75u);
    EXPECT_DOUBLE_EQ(shares[0].percent + shares[1].percent, 100.0);
    EXPECT_DOUBLE_EQ(shares[1].area, 300.0);
    EXPECT_FALSE(isUsableTable({{0.0, 1}}));
    EXPECT_FALSE(isUsableTable({{0.0, 1}, {0.0, 2}}));
    EXPECT_TRUE(isUsableTable({{0.0, 1}, {1.0, 2}}));
    EXPECT_TRUE(bandShares(grid, {}).empty());
}

} // namespace
} // namespace tessaran::grid
