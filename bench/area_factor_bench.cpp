// The area factor of a whole mine against clipping or testing every cell of each boundary's box by
// itself: 2000 x 2000 cells, 5,000 pillars of 4 to 40 vertices, 5 gobs of 300,000 cells and 60
// vertices.

#include "factors/area_factor.h"
#include "tests/support/literal_area_factor.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <numbers>
#include <random>

namespace {

using namespace tessaran;
using factors::AreaAlgorithm;
using geometry::Point2;
using geometry::Polygon;

constexpr int kCells = 2000;
constexpr double kCellWidth = 5.0;

void layGrid(grid::myGrid& grid) {
    grid.setupGrid(kCells, kCells, kCellWidth, kCellWidth, 12.0);
    grid.setOrigin(2'345'678.0, 654'321.0, 0.0);
}

Polygon rounded(std::mt19937& random, Point2 centre, double radius, int vertices) {
    std::uniform_real_distribution<double> reach(0.85 * radius, 1.15 * radius);
    Polygon polygon;
    for (int k = 0; k < vertices; ++k) {
        const double angle = 2.0 * std::numbers::pi * (k + 0.5) / vertices;
        polygon.push_back(centre + reach(random) * Point2{std::cos(angle), std::sin(angle)});
    }
    return polygon;
}

// Pillars over the whole grid, gobs on top.
const std::vector<Polygon>& mine() {
    static const std::vector<Polygon> polygons = [] {
        grid::myGrid grid;
        layGrid(grid);
        std::mt19937 random(2026);
        std::uniform_int_distribution<int> vertices(4, 40);
        std::vector<Polygon> all;
        for (int k = 0; k < 5000; ++k) {
            const int i = 14 + 28 * (k % 71);
            const int j = 14 + 28 * (k / 71);
            all.push_back(
                rounded(random, grid.nodePoint(i, j), 10.0 * kCellWidth, vertices(random)));
        }
        const double radius = std::sqrt(300'000.0 / std::numbers::pi) * kCellWidth;
        for (const Point2 at :
             {Point2{350, 350}, {1600, 400}, {1000, 1000}, {400, 1600}, {1600, 1600}})
            all.push_back(rounded(random,
                                  grid.nodePoint(static_cast<int>(at.x), static_cast<int>(at.y)),
                                  radius, 60));
        return all;
    }();
    return polygons;
}

factors::AreaFactorOptions optionsFor(AreaAlgorithm algorithm) {
    return {1, 0, 50, algorithm};
}

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void fast(benchmark::State& state, AreaAlgorithm algorithm) {
    grid::myGrid grid;
    layGrid(grid);
    base::NoProgress progress;
    for (auto _ : state)
        factors::buildAreaFactor(grid, mine(), optionsFor(algorithm), progress);
    grid::myGrid plain;
    layGrid(plain);
    const double reference =
        seconds([&] { test::literalAreaFactor(plain, mine(), optionsFor(algorithm)); });
    const double here =
        seconds([&] { factors::buildAreaFactor(grid, mine(), optionsFor(algorithm), progress); });
    std::size_t different = 0;
    for (std::size_t k = 0; k < plain.values().size(); ++k)
        different += plain.values()[k] != grid.values()[k] ? 1U : 0U;
    state.counters["literal_s"] = reference;
    state.counters["ratio"] = reference / here;
    state.counters["cells_that_differ"] = static_cast<double>(different);
}

BENCHMARK_CAPTURE(fast, area_based, AreaAlgorithm::areaBased)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fast, middle_point, AreaAlgorithm::middlePoint)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
