// Polygons over cells, outlines of cells, boxes, and regions cut by polygons, each beside the plain
// way to the same result; "ratio" is plain time over time.

#include "geometry/box_index.h"
#include "geometry/cell_coverage.h"
#include "geometry/cell_outline.h"
#include "geometry/polygon.h"
#include "geometry/region.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <numbers>
#include <random>

namespace {

using namespace tessaran::geometry;

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void report(benchmark::State& state, const auto& fast, const auto& plain) {
    for (auto _ : state)
        fast();
    const double plainTime = seconds(plain);
    state.counters["plain_s"] = plainTime;
    state.counters["ratio"] = plainTime / seconds(fast);
}

Polygon star(std::mt19937& random, Point2 centre, double size, int vertices) {
    std::uniform_real_distribution<double> reach(0.7 * size, size);
    Polygon polygon;
    for (int k = 0; k < vertices; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / vertices;
        polygon.push_back(centre + reach(random) * Point2{std::cos(angle), std::sin(angle)});
    }
    return polygon;
}

// One outline of 60 vertices over some 300,000 cells.
void coverageOfAGob(benchmark::State& state) {
    std::mt19937 random(1);
    const Polygon gob = star(random, {500, 500}, 360, 60);
    CellWalker walker;
    report(
        state,
        [&] {
            benchmark::DoNotOptimize(walker.coverage(gob, {0, 1000, 0, 1000}).size());
        },
        [&] {
            const Box2 box = boxOf(gob);
            double sum = 0.0;
            for (int j = static_cast<int>(box.low.y); j <= box.high.y; ++j)
                for (int i = static_cast<int>(box.low.x); i <= box.high.x; ++i) {
                    const Point2 low{static_cast<double>(i), static_cast<double>(j)};
                    sum += intersectionArea(Box2{low, low + Point2{1, 1}}.corners(), gob);
                }
            benchmark::DoNotOptimize(sum);
        });
}
BENCHMARK(coverageOfAGob)->Unit(benchmark::kMicrosecond);

std::vector<std::int16_t> bands(int n) {
    std::vector<std::int16_t> labels;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            const double wave =
                std::sin(i * 0.013) * std::cos(j * 0.017) + std::sin((i + j) * 0.005);
            labels.push_back(static_cast<std::int16_t>(1 + std::clamp((wave + 2) * 2.5, 0.0, 9.0)));
        }
    return labels;
}

// Ten colours; the plain way unites the cells of each colour row run by row run, on a quarter of
// the columns and rows, so its time counts sixteen times.
void outlines(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<std::int16_t> labels = bands(n);
    const int small = n / 4;
    const std::vector<std::int16_t> few = bands(small);
    const CellLabels fewCells{small, small, few};
    const auto unitedRuns = [&](std::int16_t label) {
        std::vector<PlanarRegion> runs;
        for (int j = 0; j < small; ++j)
            for (int i = 0; i < small;) {
                int end = i;
                while (end < small && fewCells.at(end, j) == label)
                    ++end;
                if (end > i)
                    runs.push_back(regionOf({{1.0 * i, 1.0 * j},
                                             {1.0 * end, 1.0 * j},
                                             {1.0 * end, j + 1.0},
                                             {1.0 * i, j + 1.0}}));
                i = std::max(end, i + 1);
            }
        return unite(runs);
    };
    for (auto _ : state)
        benchmark::DoNotOptimize(traceOutlines({n, n, labels}));
    const double plain = 16.0 * seconds([&] {
                             for (std::int16_t label = 1; label <= 10; ++label)
                                 benchmark::DoNotOptimize(unitedRuns(label));
                         });
    state.counters["plain_s"] = plain;
    state.counters["ratio"] = plain / seconds([&] {
                                  benchmark::DoNotOptimize(traceOutlines({n, n, labels}));
                              });
}
BENCHMARK(outlines)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);

void outlinesOfNoise(benchmark::State& state) { // the most loops that a grid can have
    const int n = static_cast<int>(state.range(0));
    std::mt19937 random(2);
    std::vector<std::int16_t> labels;
    for (int k = 0; k < n * n; ++k)
        labels.push_back(static_cast<std::int16_t>(random() % 10));
    for (auto _ : state)
        benchmark::DoNotOptimize(traceOutlines({n, n, labels}));
}
BENCHMARK(outlinesOfNoise)->Arg(2000)->Unit(benchmark::kMillisecond);

void boxQueries(benchmark::State& state) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> at(0, 10000);
    std::vector<Box2> boxes;
    for (int k = 0; k < 50'000; ++k) {
        const Point2 low{at(random), at(random)};
        boxes.push_back({low, low + Point2{30, 30}});
    }
    const BoxIndex index(boxes);
    const auto queries = std::span(boxes).first(500);
    report(
        state,
        [&] {
            for (const Box2& box : queries)
                benchmark::DoNotOptimize(index.query(box));
        },
        [&] {
            for (const Box2& box : queries) {
                std::size_t found = 0;
                for (const Box2& other : boxes)
                    found += box.meets(other) ? 1U : 0U;
                benchmark::DoNotOptimize(found);
            }
        });
}
BENCHMARK(boxQueries)->Unit(benchmark::kMicrosecond);

// One cell less one pillar, as mapping cuts it.
void cellLessPillar(benchmark::State& state) {
    std::mt19937 random(4);
    const PlanarRegion cell = regionOf({{10, 0}, {15, 0}, {15, 5}, {10, 5}});
    const std::vector<PlanarRegion> pillars{regionOf(star(random, {0, 0}, 14, 20))};
    for (auto _ : state)
        benchmark::DoNotOptimize(subtract(cell, pillars));
}
BENCHMARK(cellLessPillar)->Unit(benchmark::kMicrosecond);

// All pillars from an area of many corners at once: the cells of a colour.
void colourLessPillars(benchmark::State& state) {
    std::mt19937 random(5);
    const std::vector<std::int16_t> labels = bands(1000);
    const CellOutlines traced = traceOutlines({1000, 1000, labels});
    PlanarRegion colour;
    for (const CellLoop& loop : traced.loopsOf(5)) {
        Polygon& polygon = colour.loops.emplace_back();
        for (const LatticeNode n : traced.nodesOf(loop))
            polygon.push_back({static_cast<double>(n.i), static_cast<double>(n.j)});
    }
    std::vector<PlanarRegion> pillars;
    for (int k = 0; k < 5000; ++k)
        pillars.push_back(
            regionOf(star(random, {7.0 + 14 * (k % 71), 7.0 + 14 * (k / 71)}, 5, 20)));
    for (auto _ : state)
        benchmark::DoNotOptimize(subtract(colour, pillars));
}
BENCHMARK(colourLessPillars)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
