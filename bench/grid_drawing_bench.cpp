// A colour map of a grid of 1000 x 1000 cells in ten colours, as one hatch a colour: the whole
// drawing (mode 7), and the tracing of areas beside merging the cells' sides in a hash table.

#include "grid/grid_drawing.h"
#include "grid/grid_drawing_shapes.h"
#include "tests/support/recording_host.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <vector>

namespace {

using namespace tessaran;

constexpr int kCells = 1000;

// Waves with pillars punched in, so that areas are of all sizes and have holes.
void makeIndexGrid(grid::myGrid& grid) {
    grid.setupGrid(kCells, kCells, 10.0, 10.0, 0.0);
    for (int j = 0; j < kCells; ++j)
        for (int i = 0; i < kCells; ++i) {
            const double wave = 50.0 + 45.0 * std::sin(i * 0.021) * std::cos(j * 0.017 + i * 0.003);
            const bool pillar = i % 14 < 8 && j % 14 < 8;
            grid.setValue(i, j, pillar ? 2.0 : wave + 3.0 * std::sin(i * 1.7 + j * 2.3));
        }
}

// The plain way: every side of a cell that its neighbour of the same colour does not share, found
// in a hash table, then chained by end points.
std::size_t literalAreas(const grid::myGrid& grid, const grid::CellColours& colours) {
    const auto node = [&](int i, int j) {
        return static_cast<std::uint64_t>(j) * (kCells + 1) + static_cast<std::uint64_t>(i);
    };
    std::size_t loops = 0;
    for (int colour = 1; colour < 256; ++colour) {
        std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> sides;
        const auto toggle = [&](std::uint64_t from, std::uint64_t to) {
            std::vector<std::uint64_t>& back = sides[to];
            for (std::uint64_t& end : back)
                if (end == from) {
                    end = back.back();
                    back.pop_back();
                    return;
                }
            sides[from].push_back(to);
        };
        for (int j = 0; j < grid.nY(); ++j)
            for (int i = 0; i < grid.nX(); ++i)
                if (colours[static_cast<std::size_t>(j) * kCells + static_cast<std::size_t>(i)] ==
                    colour) {
                    toggle(node(i, j), node(i + 1, j));
                    toggle(node(i + 1, j), node(i + 1, j + 1));
                    toggle(node(i + 1, j + 1), node(i, j + 1));
                    toggle(node(i, j + 1), node(i, j));
                }
        for (auto& [start, ends] : sides)
            while (!ends.empty()) {
                std::uint64_t at = start;
                for (auto* next = &ends; !next->empty(); next = &sides[at]) {
                    at = next->back();
                    next->pop_back();
                }
                ++loops;
            }
    }
    return loops;
}

double referenceSeconds = 0.0;

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void areasReference(benchmark::State& state) {
    grid::myGrid grid;
    makeIndexGrid(grid);
    const grid::CellColours colours = grid::coloursByValue(grid);
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(literalAreas(grid, colours));
        referenceSeconds = secondsSince(begin);
    }
}

void areasTraced(benchmark::State& state) {
    grid::myGrid grid;
    makeIndexGrid(grid);
    const grid::CellColours colours = grid::coloursByValue(grid);
    double seconds = 0.0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(grid::colourAreas(grid, colours));
        seconds += secondsSince(begin);
    }
    state.counters["times_faster"] =
        referenceSeconds * static_cast<double>(state.iterations()) / seconds;
}

void drawMode7(benchmark::State& state) {
    grid::myGrid grid;
    makeIndexGrid(grid);
    for (auto _ : state) {
        test::RecordingHost host;
        if (!grid::drawForGood(host, grid, grid::kMapRegions))
            std::abort();
    }
}

BENCHMARK(areasReference)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(areasTraced)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawMode7)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
