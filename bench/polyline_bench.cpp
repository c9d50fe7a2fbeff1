// The polyline checks against plain references that hold every pair against each other. The
// references are measured on a part of the pairs and scaled.

#include "factors/contour_checks.h"
#include "factors/polygon_checks.h"
#include "geometry/polygon.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using namespace tessaran;
using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void report(benchmark::State& state, double plain, double fast, std::size_t found) {
    state.counters["plain_s"] = plain;
    state.counters["fast_s"] = fast;
    state.counters["ratio"] = plain / fast;
    state.counters["found"] = static_cast<double>(found);
}

double pairsOf(std::size_t count) {
    return 0.5 * static_cast<double>(count) * static_cast<double>(count - 1);
}

// Contours one beside the other across the whole plan: boxes that all lie over each other, no
// crossing but those of a few that stray.
std::vector<Curve> contours(std::size_t count) {
    constexpr int kVertices = 500;
    std::vector<Curve> lines;
    for (std::size_t c = 0; c < count; ++c) {
        std::vector<CurveVertex> chain;
        const double stray = c % 100 == 0 ? 3.0 : 0.0;
        for (int v = 0; v < kVertices; ++v) {
            const double x = 20.0 * v;
            const double y = 2.0 * static_cast<double>(c) + 400.0 * std::sin(0.002 * x) +
                             stray * std::sin(0.01 * x);
            chain.push_back({{x, y + 0.3 * x, 10.0 * static_cast<double>(c % 50)}});
        }
        lines.emplace_back(chain, false);
    }
    return lines;
}

void contourCrossings(benchmark::State& state) {
    const std::vector<Curve> lines = contours(3000);
    constexpr std::size_t kPart = 30;
    base::NoProgress progress;
    std::size_t found = 0;
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] { found = factors::meetingContours(lines, progress)->size(); });
    const double plain = seconds([&] {
        for (std::size_t a = 0; a < kPart; ++a)
            for (std::size_t b = a + 1; b < kPart; ++b)
                benchmark::DoNotOptimize(geometry::crossings(lines[a], lines[b]));
    });
    report(state, plain * pairsOf(lines.size()) / pairsOf(kPart), fast, found);
}
BENCHMARK(contourCrossings)->Unit(benchmark::kMillisecond)->Iterations(1);

// Rooms and pillars far from the origin: neighbours share their slanted sides, every tenth is there
// twice, every hundredth a third time turned around. Every second one has a dent.
std::vector<Curve> pillars(std::size_t count) {
    std::vector<Curve> out;
    const auto side = static_cast<std::size_t>(std::sqrt(0.9 * static_cast<double>(count)));
    for (std::size_t k = 0; out.size() < count; ++k) {
        const double x = 2e6 + 40.0 * static_cast<double>(k % side);
        const double y = 1e6 + 30.0 * static_cast<double>(k / side) + 0.1 * (x - 2e6);
        std::vector<Point2> points{{x, y}, {x + 40, y + 4}, {x + 40, y + 34}, {x, y + 30}};
        if (k % 2 == 0) {
            points.insert(points.begin() + 3, {x + 20, y + 25});
            for (int v = 1; v < 16; ++v)
                points.insert(points.begin() + v, {x + 2.5 * v, y + 0.25 * v + 0.01 * (v % 2)});
        }
        const auto add = [&] {
            std::vector<CurveVertex> vertices;
            for (const Point2 p : points)
                vertices.push_back({{p.x, p.y, 0.0}});
            out.emplace_back(vertices, true);
        };
        add();
        if (k % 10 == 0)
            add();
        if (k % 100 == 0) {
            std::reverse(points.begin(), points.end());
            add();
        }
    }
    out.resize(count);
    return out;
}

template <class Check>
void measure(benchmark::State& state, Check check) {
    const std::vector<Curve> all = pillars(20'000);
    constexpr std::size_t kPart = 300;
    base::NoProgress progress;
    std::size_t found = 0;
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] { found = check(all, progress)->size(); });
    const double plain = seconds([&] {
        for (std::size_t a = 0; a < kPart; ++a)
            for (std::size_t b = a + 1; b < kPart; ++b)
                benchmark::DoNotOptimize(geometry::overlapArea(all[a].flattenedByShare(1e-3),
                                                               all[b].flattenedByShare(1e-3)));
    });
    report(state, plain * pairsOf(all.size()) / pairsOf(kPart), fast, found);
}

void duplicates(benchmark::State& state) {
    measure(state, factors::duplicatePolygons);
}
BENCHMARK(duplicates)->Unit(benchmark::kMillisecond)->Iterations(1);

void overlaps(benchmark::State& state) {
    measure(state, factors::overlappingPolygons);
}
BENCHMARK(overlaps)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
