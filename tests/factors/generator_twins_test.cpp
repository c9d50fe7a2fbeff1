// The same plan moved or turned together with its grid, and the same work on other numbers of
// threads, give the same cells.

#include "factors/contour_interpolation.h"
#include "factors/horizontal_stress.h"
#include "factors/linear_feature.h"
#include "factors/point_interpolation.h"
#include "grid/cell_frame.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>

using namespace tessaran;
using namespace tessaran::factors;
using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;
using geometry::Point3;
using grid::myGrid;

namespace {

constexpr int kColumns = 60;
constexpr int kRows = 45;
constexpr double kCell = 10.0;

// Where a grid lies, and so the plan with it.
struct Place {
    double degrees = 0.0;
    Point2 origin{};
};

void lay(myGrid& grid, const Place& place) {
    grid.setOrigin(place.origin.x, place.origin.y, 0.0);
    ASSERT_TRUE(grid.setupGrid(kColumns, kRows, kCell, kCell, place.degrees));
}

// The grid's own rotation, which a shortened pi sets apart from that of the exact angle.
double rotationAt(const Place& place) {
    myGrid grid;
    lay(grid, place);
    return grid.rotation();
}

Point2 into(const Place& place, Point2 p) {
    const double a = rotationAt(place);
    return {place.origin.x + p.x * std::cos(a) - p.y * std::sin(a),
            place.origin.y + p.x * std::sin(a) + p.y * std::cos(a)};
}

// Points around and beyond the grid, the same for a seed.
class RandomPlan {
  public:
    explicit RandomPlan(unsigned seed) : random_(seed) {}
    Point2 point() { return {place_(random_), place_(random_)}; }
    double value() { return place_(random_); }
    double bulge() { return random_() % 3U == 0U ? bulge_(random_) : 0.0; }

  private:
    std::mt19937 random_;
    std::uniform_real_distribution<double> place_{-100.0, 700.0};
    std::uniform_real_distribution<double> bulge_{-1.2, 1.2};
};

std::vector<Point3> points(const Place& place) {
    RandomPlan plan(5);
    std::vector<Point3> out;
    for (int k = 0; k < 400; ++k) {
        const Point2 p = into(place, plan.point());
        out.push_back({p.x, p.y, plan.value()});
    }
    return out;
}

std::vector<Curve> curves(const Place& place, bool bulged) {
    RandomPlan plan(6);
    std::vector<Curve> out;
    for (int k = 0; k < 40; ++k) {
        const double level = 5.0 * k;
        std::vector<CurveVertex> chain;
        for (int v = 0; v < 6; ++v) {
            const Point2 p = into(place, plan.point());
            const double bulge = plan.bulge();
            chain.push_back({{p.x, p.y, level}, bulged ? bulge : 0.0});
        }
        out.emplace_back(chain, k % 4 == 0);
    }
    return out;
}

std::vector<std::vector<Point2>> entries(const Place& place) {
    RandomPlan plan(7);
    std::vector<std::vector<Point2>> out(50);
    for (std::vector<Point2>& line : out)
        for (int v = 0; v < 5; ++v)
            line.push_back(into(place, plan.point()));
    return out;
}

using Generator = std::function<void(const Place&, myGrid&)>;

void fillFromPoints(const Place& place, myGrid& grid) {
    base::NoProgress progress;
    const PointGridWatch nobody{[](int, int) {}, {}};
    ASSERT_TRUE(gridPoints(points(place), {Interpolation::inverseDistance, 6, 300.0}, grid, nobody,
                           progress)
                    .completed);
}
void fillFromContours(const Place& place, myGrid& grid) {
    base::NoProgress progress;
    ASSERT_TRUE(gridContours(
                    curves(place, true), {2000.0, 0.0}, grid, [](int, int) {}, progress)
                    .completed);
}
void fillFromFeatures(const Place& place, myGrid& grid) {
    base::NoProgress progress;
    ASSERT_TRUE(gridLinearFeatures(curves(place, true), {8.0, true}, grid, progress));
}
void fillFromEntries(const Place& place, myGrid& grid) {
    base::NoProgress progress;
    std::vector<int> tooShort;
    const double stress = std::numbers::pi / 6.0 + rotationAt(place);
    ASSERT_TRUE(gridHorizontalStress(entries(place), {25.0, stress}, grid, tooShort, progress));
}

const std::vector<std::pair<std::string, Generator>> kGenerators{
    {"points", fillFromPoints},
    {"contours", fillFromContours},
    {"linear features", fillFromFeatures},
    {"horizontal stress", fillFromEntries}};

std::vector<double> cellsAt(const Generator& fill, const Place& place) {
    myGrid grid;
    lay(grid, place);
    fill(place, grid);
    std::vector<double> out;
    for (int i = 0; i < kColumns; ++i)
        for (int j = 0; j < kRows; ++j)
            out.push_back(grid.getValue(i, j));
    return out;
}

// A cell whose centre lies within rounding of a limit may fall on either side of it.
long cellsThatDiffer(const std::vector<double>& a, const std::vector<double>& b) {
    long count = 0;
    for (std::size_t k = 0; k < a.size(); ++k)
        count += std::abs(a[k] - b[k]) > 1e-6 * std::max(1.0, std::abs(a[k])) ? 1 : 0;
    return count;
}

} // namespace

TEST(GeneratorTwins, MovedTogetherGiveTheSameCells) {
    for (const auto& [name, fill] : kGenerators) {
        const std::vector<double> here = cellsAt(fill, {});
        EXPECT_NE(*std::ranges::min_element(here), *std::ranges::max_element(here)) << name;
        EXPECT_EQ(cellsThatDiffer(here, cellsAt(fill, {0.0, {262144.0, 524288.0}})), 0) << name;
    }
}

TEST(GeneratorTwins, TurnedTogetherGiveTheSameCells) {
    for (const auto& [name, fill] : kGenerators) {
        if (name == "points")
            continue; // their search limit follows the world's axes
        const std::vector<double> here = cellsAt(fill, {});
        for (const double degrees : {33.0, 90.0, 201.5})
            EXPECT_EQ(cellsThatDiffer(here, cellsAt(fill, {degrees, {-3000.0, 500.0}})), 0)
                << name << " turned by " << degrees;
    }
}

TEST(GeneratorTwins, DoNotDependOnTheThreads) {
    for (const auto& [name, fill] : kGenerators) {
        const auto onThreads = [&](std::size_t threads) {
            const tbb::global_control control(tbb::global_control::max_allowed_parallelism,
                                              threads);
            return cellsAt(fill, {17.0, {100.0, 200.0}});
        };
        const std::vector<double> one = onThreads(1);
        EXPECT_EQ(onThreads(2), one) << name;
        EXPECT_EQ(onThreads(7), one) << name;
    }
}
