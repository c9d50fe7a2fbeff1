// What the grid editor and the grid utilities do with a grid of 2000 x 2000 cells: selecting a
// million cells by shapes, arithmetic with a value and with another grid, statistics, correlation
// and the cells of polygons, each beside the literal way, cell by cell through the grid's own
// checked operations.

#include "geometry/polygon.h"
#include "grid/cell_frame.h"
#include "grid/grid_arithmetic.h"
#include "grid/grid_edit.h"
#include "grid/grid_statistics.h"
#include "grid/polygon_cells.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <map>
#include <random>
#include <string>

namespace {

using namespace tessaran;
using geometry::PlanarRegion;
using geometry::Polygon;
using grid::myGrid;
using grid::Point2;

constexpr int kCells = 2000;

void lay(myGrid& grid, unsigned seed, double x, double degrees) {
    grid.setupGrid(kCells, kCells, 10.0, 10.0, degrees);
    grid.setOrigin(x, 200000.0, 0.0);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> value(1.0, 100.0);
    for (double& v : grid.values())
        v = value(random);
}

myGrid& first() {
    static myGrid grid;
    if (!grid.isDefined())
        lay(grid, 1, 500000.0, 0.0);
    return grid;
}

// Shifted by some cells, or turned.
myGrid& second(bool turned) {
    static myGrid shifted;
    static myGrid rotated;
    myGrid& grid = turned ? rotated : shifted;
    if (!grid.isDefined())
        lay(grid, 2, 500123.0, turned ? 15.0 : 0.0);
    return grid;
}

// A polygon of many corners around a million and a half cells.
Polygon bigPolygon(const myGrid& grid) {
    Polygon cells;
    for (int k = 0; k < 500; ++k) {
        const double angle = 2.0 * M_PI * k / 500;
        const double r = 690.0 + 40.0 * std::sin(17.0 * angle);
        cells.push_back({1000.0 + r * std::cos(angle), 1000.0 + r * std::sin(angle)});
    }
    return grid::CellFrame(grid).toWorld(cells);
}

double secondsOf(const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// The literal way's time, taken by the first benchmark of a pair.
std::map<std::string, double>& literalSeconds() {
    static std::map<std::string, double> seconds;
    return seconds;
}

void literal(benchmark::State& state, const std::string& what, const auto& work) {
    for (auto _ : state)
        literalSeconds()[what] = secondsOf(work);
}

void fast(benchmark::State& state, const std::string& what, const auto& work) {
    double seconds = 0.0;
    for (auto _ : state)
        seconds += secondsOf(work);
    state.counters["times_faster"] =
        literalSeconds()[what] * static_cast<double>(state.iterations()) / seconds;
}

// --- selection ----------------------------------------------------------------------------------

// Every cell's corners held against the polygon's even simplest test: its centre.
void selectLiteral(benchmark::State& state) {
    const myGrid& grid = first();
    const Polygon polygon = bigPolygon(grid);
    literal(state, "select", [&] {
        std::size_t inside = 0;
        for (int j = 0; j < kCells; j += 20) // every 400th cell; the time is scaled
            for (int i = 0; i < kCells; i += 20)
                inside += geometry::pointInPolygon(grid.cellCenter(i, j)->plan(), polygon) ? 1 : 0;
        benchmark::DoNotOptimize(inside);
    });
    literalSeconds()["select"] *= 400.0;
}

void selectInside(benchmark::State& state) {
    const myGrid& grid = first();
    const Polygon polygon = bigPolygon(grid);
    std::size_t selected = 0;
    fast(state, "select", [&] {
        grid::CellSelection selection(kCells, kCells);
        selected = selection.add(grid::cellsInside(grid, polygon));
    });
    state.counters["cells"] = static_cast<double>(selected);
}

void selectTouched(benchmark::State& state) {
    const myGrid& grid = first();
    const Polygon polygon = bigPolygon(grid);
    fast(state, "select", [&] {
        grid::CellSelection selection(kCells, kCells);
        selection.add(grid::cellsTouched(grid, polygon));
        benchmark::DoNotOptimize(grid::meanOfSelected(grid, selection));
    });
}

// --- arithmetic ---------------------------------------------------------------------------------

void addValueLiteral(benchmark::State& state) {
    myGrid& grid = first();
    literal(state, "value", [&] {
        for (int i = 0; i < kCells; ++i)
            for (int j = 0; j < kCells; ++j)
                grid.setValue(i, j, grid.getValue(i, j) + 1e-9);
    });
}

void addValue(benchmark::State& state) {
    myGrid& grid = first();
    fast(state, "value",
         [&] { benchmark::DoNotOptimize(applyValue(grid, grid::GridOperation::add, 1e-9)); });
}

void addGridLiteral(benchmark::State& state) {
    myGrid& grid = first();
    const myGrid& other = second(state.range(0) != 0);
    literal(state, "grid" + std::to_string(state.range(0)), [&] {
        for (int i = 0; i < kCells; ++i)
            for (int j = 0; j < kCells; ++j) {
                const auto cell = other.pointToCell(grid.cellCenter(i, j)->plan());
                if (cell.column >= 0 && cell.row >= 0)
                    grid.setValue(i, j,
                                  grid.getValue(i, j) + other.getValue(cell.column, cell.row));
            }
    });
}

void addGrid(benchmark::State& state) {
    myGrid& grid = first();
    const myGrid& other = second(state.range(0) != 0);
    fast(state, "grid" + std::to_string(state.range(0)),
         [&] { benchmark::DoNotOptimize(applyGrid(grid, grid::GridOperation::add, other)); });
}

// --- figures ------------------------------------------------------------------------------------

void statisticsLiteral(benchmark::State& state) {
    const myGrid& grid = first();
    literal(state, "statistics", [&] {
        double sum = 0.0;
        for (int i = 0; i < kCells; ++i)
            for (int j = 0; j < kCells; ++j)
                sum += grid.getValue(i, j);
        double squares = 0.0;
        for (int i = 0; i < kCells; ++i)
            for (int j = 0; j < kCells; ++j)
                squares += std::pow(grid.getValue(i, j) - sum / 4e6, 2.0);
        benchmark::DoNotOptimize(squares);
    });
}

void statistics(benchmark::State& state) {
    const myGrid& grid = first();
    fast(state, "statistics", [&] { benchmark::DoNotOptimize(statisticsOf(grid)); });
}

void correlationWithOther(benchmark::State& state) {
    const myGrid& grid = first();
    const myGrid& other = second(state.range(0) != 0);
    fast(state, "grid" + std::to_string(state.range(0)),
         [&] { benchmark::DoNotOptimize(correlation(grid, other)); });
}

// 3000 pillars of 25 x 25 cells and some overlap.
std::vector<PlanarRegion> pillars(const myGrid& grid) {
    std::vector<PlanarRegion> all;
    for (int j = 0; j < 50; ++j)
        for (int i = 0; i < 60; ++i) {
            const double x = 33.0 * i + 0.3;
            const double y = 39.0 * j + 0.7;
            all.push_back({{grid::CellFrame(grid).toWorld(
                Polygon{{x, y}, {x + 34.0, y}, {x + 34.0, y + 25.0}, {x, y + 25.0}})}});
        }
    return all;
}

void polygonsLiteral(benchmark::State& state) {
    const myGrid& grid = first();
    const auto regions = pillars(grid);
    literal(state, "polygons", [&] {
        double shares = 0.0;
        for (std::size_t k = 0; k < regions.size(); k += 30) { // every 30th; the time is scaled
            const auto low = grid.pointToCellClamped(regions[k].loops[0][0]);
            const auto high = grid.pointToCellClamped(regions[k].loops[0][2]);
            for (int j = low.row; j <= high.row; ++j)
                for (int i = low.column; i <= high.column; ++i)
                    shares +=
                        geometry::intersectionArea(*grid.cellCorners(i, j), regions[k].loops[0]);
        }
        benchmark::DoNotOptimize(shares);
    });
    literalSeconds()["polygons"] *= 30.0;
}

void polygons(benchmark::State& state) {
    const myGrid& grid = first();
    const auto regions = pillars(grid);
    fast(state, "polygons", [&] {
        if (!grid::cellsOfPolygons(grid, {regions, {}, 50.0}))
            std::abort();
    });
}

BENCHMARK(selectLiteral)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(selectInside)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(selectTouched)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(addValueLiteral)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);
BENCHMARK(addValue)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(addGridLiteral)
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
BENCHMARK(addGrid)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(statisticsLiteral)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);
BENCHMARK(statistics)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(correlationWithOther)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(polygonsLiteral)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(polygons)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
