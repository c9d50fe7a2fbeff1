// The seam grid of a whole mine against clipping every cell of each outline's box by itself:
// 2000 x 2000 cells, 5,000 pillars, 5 gobs.

#include "geometry/polygon.h"
#include "stress/seam_grid.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using namespace tessaran;
using geometry::Point2;
using geometry::Polygon;

constexpr int kCells = 2000;
constexpr double kCellWidth = 5.0;
constexpr int kPercent = 50;

void layGrid(grid::myGrid& grid) {
    grid.setOrigin(2'345'678.0, 654'321.0, 0.0);
    grid.setupGrid(kCells, kCells, kCellWidth, kCellWidth, 12.0);
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

struct Mine {
    std::vector<Polygon> pillars;
    std::vector<Polygon> gobs;
};

const Mine& mine() {
    static const Mine made = [] {
        grid::myGrid grid;
        layGrid(grid);
        std::mt19937 random(2026);
        Mine m;
        for (int k = 0; k < 5000; ++k)
            m.pillars.push_back(rounded(random,
                                        grid.nodePoint(14 + 28 * (k % 71), 14 + 28 * (k / 71)),
                                        10.0 * kCellWidth, 4 + k % 37));
        for (const int at : {350, 700, 1000, 1300, 1650})
            m.gobs.push_back(rounded(random, grid.nodePoint(at, 2000 - at), 300 * kCellWidth, 60));
        return m;
    }();
    return made;
}

void literalSums(grid::myGrid& grid, const std::vector<Polygon>& outlines) {
    const double threshold = kPercent * 0.01 * kCellWidth * kCellWidth * (1.0 - 2e-9);
    grid.fillValue(0.0);
    for (const Polygon& outline : outlines) {
        int i0 = kCells, i1 = 0, j0 = kCells, j1 = 0;
        for (const Point2 p : outline) {
            const auto cell = grid.pointToCellClamped(p);
            i0 = std::min(i0, cell.column), i1 = std::max(i1, cell.column);
            j0 = std::min(j0, cell.row), j1 = std::max(j1, cell.row);
        }
        for (int j = j0; j <= j1; ++j)
            for (int i = i0; i <= i1; ++i)
                if (grid.getValue(i, j) < threshold)
                    grid.setValue(i, j,
                                  grid.getValue(i, j) +
                                      geometry::intersectionArea(*grid.cellCorners(i, j), outline));
    }
}

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void seamGrid(benchmark::State& state) {
    grid::myGrid grid;
    layGrid(grid);
    base::NoProgress nobody;
    const stress::SeamGridOptions options{stress::SeamAlgorithm::areaBased, kPercent};
    const auto build = [&] {
        stress::buildSeamGrid(grid, mine().pillars, mine().gobs, options, nobody);
    };
    for (auto _ : state)
        build();
    const double here = seconds(build);
    grid::myGrid plain;
    layGrid(plain);
    grid::myGrid plainGob;
    layGrid(plainGob);
    const double reference = seconds([&] {
        literalSums(plain, mine().pillars);
        literalSums(plainGob, mine().gobs);
    });
    state.counters["literal_s"] = reference;
    state.counters["ratio"] = reference / here;
}

BENCHMARK(seamGrid)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
