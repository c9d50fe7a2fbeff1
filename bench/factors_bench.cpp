// The factor generators against their plain references, on grids of one to four million cells.
// Where the reference would take hours it is measured on a part of the cells and scaled.

#include "factors/contour_interpolation.h"
#include "factors/horizontal_stress.h"
#include "factors/linear_feature.h"
#include "factors/point_interpolation.h"
#include "tests/support/literal_contours.h"
#include "tests/support/literal_generators.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using namespace tessaran;
using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;
using geometry::Point3;

constexpr double kCell = 10.0;

void layGrid(grid::myGrid& grid, int cells) {
    grid.setupGrid(cells, cells, kCell, kCell, 0.0);
    grid.setOrigin(0.0, 0.0, 0.0);
}

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void report(benchmark::State& state, double literal, double fast) {
    state.counters["literal_s"] = literal;
    state.counters["fast_s"] = fast;
    state.counters["ratio"] = literal / fast;
}

// --- points -------------------------------------------------------------------------------------

void points(benchmark::State& state) {
    constexpr int kCells = 1000;
    constexpr int kPart = 200; // cells that the literal search is measured on
    grid::myGrid grid;
    layGrid(grid, kCells);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(0.0, kCells * kCell);
    std::vector<Point3> all(100'000);
    for (Point3& p : all)
        p = {place(random), place(random), place(random)};
    const factors::PointSearch search{factors::Interpolation::inverseDistance, 8, 2000.0};
    base::NoProgress progress;
    const factors::PointGridWatch watch{[](int, int) {}, {}};
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] { factors::gridPoints(all, search, grid, watch, progress); });
    double sum = 0.0;
    const double literal = seconds([&] {
        for (int k = 0; k < kPart; ++k)
            sum +=
                *test::literalPointValue(all, search, kCell, grid.cellCenter(5 * k, 4 * k)->plan());
    });
    benchmark::DoNotOptimize(sum);
    report(state, literal * kCells * kCells / kPart, fast);
}
BENCHMARK(points)->Unit(benchmark::kMillisecond)->Iterations(1);

// --- linear features ----------------------------------------------------------------------------

void linearFeatures(benchmark::State& state) {
    constexpr int kCells = 2000;
    constexpr std::size_t kPart = 20; // features that the literal loop is measured on
    grid::myGrid grid;
    layGrid(grid, kCells);
    std::mt19937 random(2);
    std::uniform_real_distribution<double> place(0.0, kCells * kCell);
    std::uniform_real_distribution<double> turn(-0.4, 0.4);
    std::vector<Curve> features;
    for (int k = 0; k < 2000; ++k) {
        std::vector<CurveVertex> chain;
        Point2 at{place(random), place(random)};
        double heading = place(random);
        for (int v = 0; v < 50; ++v) {
            chain.push_back({{at.x, at.y, 0.0}, 0.0});
            heading += turn(random);
            at = at + 2.0 * kCell * Point2{std::cos(heading), std::sin(heading)};
        }
        features.emplace_back(chain, false);
    }
    const factors::LinearInfluence influence{20.0 * kCell, false};
    base::NoProgress progress;
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] { factors::gridLinearFeatures(features, influence, grid, progress); });
    grid::myGrid plain;
    layGrid(plain, kCells);
    const double literal = seconds(
        [&] { test::literalLinearFeatures(std::span(features).first(kPart), influence, plain); });
    report(state, literal * static_cast<double>(features.size()) / kPart, fast);
}
BENCHMARK(linearFeatures)->Unit(benchmark::kMillisecond)->Iterations(1);

// --- horizontal stress --------------------------------------------------------------------------

void horizontalStress(benchmark::State& state) {
    constexpr int kCells = 2000;
    grid::myGrid grid;
    layGrid(grid, kCells);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(0.0, kCells * kCell);
    std::uniform_real_distribution<double> angle(0.0, std::numbers::pi);
    std::vector<std::vector<Point2>> lines;
    for (int k = 0; k < 2000; ++k) { // of ten segments of eight cells
        const double heading = angle(random);
        std::vector<Point2> line{{place(random), place(random)}};
        for (int v = 0; v < 10; ++v)
            line.push_back(line.back() +
                           8.0 * kCell * Point2{std::cos(heading), std::sin(heading)});
        lines.push_back(line);
    }
    const factors::HorizontalStress stress{2.0 * kCell, 0.5};
    base::NoProgress progress;
    double fast = 0.0;
    std::vector<int> tooShort;
    for (auto _ : state)
        fast = seconds(
            [&] { factors::gridHorizontalStress(lines, stress, grid, tooShort, progress); });
    grid::myGrid plain;
    layGrid(plain, kCells);
    const double literal = seconds([&] { test::literalHorizontalStress(lines, stress, plain); });
    report(state, literal, fast);
}
BENCHMARK(horizontalStress)->Unit(benchmark::kMillisecond)->Iterations(1);

// --- contours -----------------------------------------------------------------------------------

// Hills and valleys: rings about many tops, and wavy lines through the whole plan between them.
std::vector<Curve> landscape(double size) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> place(0.0, size);
    std::uniform_real_distribution<double> wave(0.0, 2.0 * std::numbers::pi);
    constexpr int kVertices = 500;
    std::vector<Curve> lines;
    for (int hill = 0; hill < 150; ++hill) {
        const Point2 top{place(random), place(random)};
        const double phase = wave(random);
        for (int ring = 1; ring <= 10; ++ring) {
            std::vector<CurveVertex> chain;
            for (int v = 0; v < kVertices; ++v) {
                const double a = 2.0 * std::numbers::pi * v / kVertices;
                const double r = 0.003 * size * ring * (1.0 + 0.2 * std::sin(3.0 * a + phase));
                const Point2 p = top + r * Point2{std::cos(a), std::sin(a)};
                chain.push_back({{p.x, p.y, 500.0 - 10.0 * ring}, 0.0});
            }
            lines.emplace_back(chain, true);
        }
    }
    for (int k = 0; k < 1500; ++k) {
        std::vector<CurveVertex> chain;
        const double length = 0.1 * size;
        const Point2 from{place(random), place(random)};
        const double phase = wave(random);
        for (int v = 0; v < kVertices; ++v) {
            const double t = length * v / kVertices;
            chain.push_back(
                {{from.x + t, from.y + 0.01 * size * std::sin(phase + 0.004 * t), 10.0 * (k % 40)},
                 0.0});
        }
        lines.emplace_back(chain, false);
    }
    return lines;
}

void contours(benchmark::State& state) {
    constexpr int kCells = 1000;
    constexpr int kPart = 100; // cells that the literal rule is measured on
    grid::myGrid grid;
    layGrid(grid, kCells);
    const std::vector<Curve> lines = landscape(kCells * kCell);
    base::NoProgress progress;
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] {
            factors::gridContours(
                lines, {2000.0, 0.0}, grid, [](int, int) {}, progress);
        });
    const std::vector<geometry::Box2> extents = test::extentsOf(lines);
    int different = 0;
    const double literal = seconds([&] {
        for (int k = 0; k < kPart; ++k) {
            const int i = 10 * k;
            const int j = (37 * i) % kCells;
            const auto value = test::literalContourValue(
                lines, extents, grid.cellCenter(i, j)->plan(), kCell, 2000.0);
            different += std::abs(value.value_or(0.0) - grid.getValue(i, j)) > 1e-6 ? 1 : 0;
        }
    });
    report(state, literal * kCells * kCells / kPart, fast);
    state.counters["cells_that_differ"] = different;
}
BENCHMARK(contours)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
