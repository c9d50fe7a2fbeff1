// Defect grids and the final index from plain values.

#include "base/tolerance.h"
#include "rfri/defect_grid.h"
#include "rfri/final_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tessaran::rfri {
namespace {

using geometry::Curve;
using geometry::Point2;

Curve line(const std::vector<Point2>& points, bool closed = false) {
    std::vector<geometry::CurveVertex> vertices;
    for (const Point2 p : points)
        vertices.push_back({{p.x, p.y, 0.0}, 0.0});
    return {vertices, closed};
}

// The lowest rows of a grid with cells of 10, centres at 5, 15, ...; the upper row first, as people
// see them.
std::vector<double> gridded(const std::vector<Defect>& defects, bool graduated, int nX = 5,
                            int nY = 1) {
    grid::myGrid grid;
    grid.setOrigin(0, 0, 0);
    grid.setupGrid(nX, nY + 1, 10, 10, 0); // one row is no grid
    base::NoProgress progress;
    EXPECT_TRUE(gridDefects(defects, graduated, grid, progress));
    std::vector<double> out;
    for (int j = nY - 1; j >= 0; --j)
        for (int i = 0; i < nX; ++i)
            out.push_back(grid.getValue(i, j));
    return out;
}

using Row = std::vector<double>;

TEST(Defects, RaiseCellsWithinReach) {
    const Curve upright = line({{25, 0}, {25, 10}});
    EXPECT_EQ(gridded({{upright, 4, 10.0}}, false), (Row{1, 4, 4, 4, 1})); // at the very distance
    EXPECT_EQ(gridded({{upright, 4, 9.99}}, false), (Row{1, 1, 4, 1, 1}));
    EXPECT_EQ(gridded({}, false), (Row{1, 1, 1, 1, 1}));
}

TEST(Defects, ReachInPlanWhateverTheirElevation) {
    const Curve high({{{25, 0, 700}, 0.0}, {{25, 10, 900}, 0.0}}, false);
    EXPECT_EQ(gridded({{high, 4, 10.0}}, false), (Row{1, 4, 4, 4, 1}));
}

TEST(Defects, TheHigherLevelWinsAndWithFallOffTheNearerMay) {
    const std::vector<Defect> both{{line({{5, 0}, {5, 10}}), 5, 50.0},
                                   {line({{35, 0}, {35, 10}}), 3, 30.0}};
    EXPECT_EQ(gridded(both, false), (Row{5, 5, 5, 5, 5}));
    // 5 * (50 - d) / 50 at d = 0, 10, ...; 3 * (30 - d) / 30 at d = 30, 20, 10, 0, 10.
    EXPECT_EQ(gridded(both, true), (Row{5, 4, 3, 3, 2}));
    EXPECT_EQ(gridded({both[1], both[0]}, true), (Row{5, 4, 3, 3, 2}));
}

TEST(Defects, WithoutReachCountOnlyCentresOnTheLine) {
    const Curve through = line({{0, 5}, {20, 5}, {40, 12}});
    EXPECT_EQ(gridded({{through, 2, 0.0}}, false), (Row{2, 2, 1, 1, 1}));
    EXPECT_EQ(gridded({{through, 2, 0.0}}, true), (Row{2, 2, 1, 1, 1})); // graduated or not
    EXPECT_EQ(gridded({{line({{0, 5.0001}, {50, 5.0001}}), 2, 0.0}}, false), (Row{1, 1, 1, 1, 1}));
}

TEST(Defects, OfLevelOneAndBelowNeverExceedTheBackground) {
    const Curve through = line({{0, 5}, {50, 5}});
    for (const int level : {1, 0, -5})
        EXPECT_EQ(gridded({{through, level, 50.0}}, false), (Row{1, 1, 1, 1, 1}));
}

TEST(Defects, MayBeClosedLines) { // the line counts, not what it encloses
    const Curve ring = line({{5, 5}, {45, 5}, {45, 45}, {5, 45}}, true);
    EXPECT_EQ(gridded({{ring, 5, 0.0}}, false, 5, 5),
              (Row{5, 5, 5, 5, 5, 5, 1, 1, 1, 5, 5, 1, 1, 1, 5, 5, 1, 1, 1, 5, 5, 5, 5, 5, 5}));
}

// Against every cell and every line, on a turned grid far from the origin.
TEST(Defects, AreTheLiteralRuleOnATurnedGrid) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-50.0, 450.0);
    const Point2 at{1'420'000.0, 312'000.0};
    grid::myGrid grid;
    grid.setOrigin(at.x, at.y, 0);
    grid.setupGrid(60, 40, 7, 5, 30);
    std::vector<Defect> defects;
    for (int k = 0; k < 40; ++k) {
        std::vector<Point2> points;
        for (int v = 0; v < 5; ++v)
            points.push_back(at + Point2{place(random), place(random)});
        defects.push_back({line(points), 2 + k % 4, 5.0 * (k % 4)});
    }
    for (const bool graduated : {false, true}) {
        base::NoProgress progress;
        ASSERT_TRUE(gridDefects(defects, graduated, grid, progress));
        int raised = 0;
        for (int i = 0; i < 60; ++i)
            for (int j = 0; j < 40; ++j) {
                double expected = 1.0;
                for (const Defect& defect : defects) {
                    const double d = defect.line.closestTo(grid.cellCenter(i, j)->plan())->distance;
                    if (d > defect.reach)
                        continue;
                    const double share =
                        graduated && defect.reach > 0 ? (defect.reach - d) / defect.reach : 1.0;
                    expected = std::max(expected, defect.level * share);
                }
                raised += expected > 1.0 ? 1 : 0;
                EXPECT_NEAR(grid.getValue(i, j), expected, 1e-8);
            }
        EXPECT_GT(raised, 200);
        EXPECT_LT(raised, 2300);
    }
}

TEST(Levels, BetweenListedOnesTakeTheNextLowerDistance) {
    const Category& shear = categories()[3]; // 3 and 5
    const CategoryRecord record = defaultRecord(shear);
    EXPECT_FALSE(isCounted(shear, 2));
    EXPECT_TRUE(isCounted(shear, 4));
    EXPECT_FALSE(isCounted(shear, 6));
    EXPECT_EQ(reachOf(shear, record.distances, 3), 30.0);
    EXPECT_EQ(reachOf(shear, record.distances, 4), 30.0);
    EXPECT_EQ(reachOf(shear, record.distances, 5), 50.0);
    const Category& rate = categories()[11]; // -5 0 15 30
    EXPECT_EQ(reachOf(rate, defaultRecord(rate).distances, -5), 0.0);
    EXPECT_EQ(reachOf(rate, defaultRecord(rate).distances, 14), 20.0);
    EXPECT_FALSE(isCounted(categories()[0], 0)); // the host's own width
}

TEST(Levels, AreTheConstantWidthOfAnyPlanarPolyline) {
    host::Polyline polyline;
    polyline.vertices = {{{0, 0}, 0, 4, 4}, {{1, 0}, 0, 4, 4}, {{2, 0}, 0, 9, 9}};
    const auto width = [](const host::EntityGeometry& g) {
        return constantWidth({{}, "0", 256, "", g});
    };
    EXPECT_EQ(width(polyline), 4.0); // the last vertex has no segment
    polyline.form = host::Polyline::Form::old;
    EXPECT_EQ(width(polyline), 4.0);
    polyline.closed = true;
    EXPECT_EQ(width(polyline), std::nullopt);
    polyline.form = host::Polyline::Form::light;
    polyline.constantWidth = -5.0;
    EXPECT_EQ(width(polyline), -5.0);
    EXPECT_EQ(width(host::Polyline3d{}), std::nullopt);
    EXPECT_EQ(width(host::Polyline{}), std::nullopt);
}

// --- the final index
// ------------------------------------------------------------------------------

class Meter final : public base::Progress {
  public:
    void begin(std::string_view, long, long) override {}
    void setPosition(long position) override { positions.push_back(position); }
    void end() override {}
    bool cancelled() override { return false; }
    std::vector<long> positions;
};

CategorySource constants(const std::vector<double>& values) {
    return [values](std::size_t k, grid::myGrid& grid) -> base::Result<void> {
        grid.setupGrid(3, 2, 10, 10, 0);
        grid.fillValue(values[k]);
        return {};
    };
}

TEST(FinalValue, OfDefaultsIsTheAssessmentsValueUntruncated) {
    std::vector<double> defaults(12, 3.0);
    defaults[10] = defaults[11] = 0.0;
    grid::myGrid sum;
    sum.setupGrid(3, 2, 10, 10, 0);
    Meter meter;
    const auto fail = [](std::size_t, const base::Error&) { FAIL(); };
    sumCategories(constants(defaults), fail, sum, meter);
    EXPECT_DOUBLE_EQ(sum.getValue(0, 0), 49.95);
    EXPECT_DOUBLE_EQ(sum.getValue(2, 1), 49.95);
    EXPECT_EQ(meter.positions, (std::vector<long>{16, 24, 32, 40, 48, 56, 64, 72, 80, 88, 96}));

    auto quiet = defaults;
    quiet[10] = quiet[11] = -5.0;
    sumCategories(constants(quiet), fail, sum, meter);
    EXPECT_DOUBLE_EQ(sum.getValue(1, 1), 39.95);
    sumCategories(constants({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}), fail, sum, meter);
    EXPECT_DOUBLE_EQ(sum.getValue(1, 1), 1.11 * (1 + 2 + 3 + 2 * 30 + 9 + 10) + 23);
}

TEST(FinalValue, CountsUnreadableGridsAsZerosAndKeepsHoles) {
    const auto read = [](std::size_t k, grid::myGrid& grid) -> base::Result<void> {
        if (k == 0 || k == 4)
            return base::formatError("broken");
        grid.setupGrid(k == 1 ? 2 : 3, 2, 10, 10, 0); // the second one is too narrow
        grid.fillValue(1.0);
        if (k == 7)
            grid.setValue(0, 0, base::kNoValue);
        return {};
    };
    std::vector<std::size_t> missing;
    grid::myGrid sum;
    sum.setOrigin(100, 200, 0);
    sum.setupGrid(3, 2, 10, 10, 0);
    base::NoProgress progress;
    sumCategories(
        read, [&](std::size_t k, const base::Error&) { missing.push_back(k); }, sum, progress);
    EXPECT_EQ(missing, (std::vector<std::size_t>{0, 4}));
    EXPECT_EQ(sum.origin().x, 100.0) << "the base grid's place";
    EXPECT_FALSE(base::hasValue(sum.getValue(0, 0)));
    EXPECT_DOUBLE_EQ(sum.getValue(1, 0), 1.11 * (1 + 1 + 2 * 4 + 2) + 2);
    EXPECT_DOUBLE_EQ(sum.getValue(2, 0), 1.11 * (0 + 1 + 2 * 4 + 2) + 2);
}

} // namespace
} // namespace tessaran::rfri
