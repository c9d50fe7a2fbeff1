// Reading and writing a grid file of 2000 x 2000 cells, beside getline + strtod and fprintf("%f").

#include "base/file.h"
#include "grid/grid_file.h"
#include "tests/support/literal_grid_file.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

namespace {

using namespace tessaran;
namespace fs = std::filesystem;

constexpr int kCells = 2000;

std::string fileName(const char* name) {
    return (fs::temp_directory_path() / name).string();
}

// Values as factor and stress grids hold them, a tenth of them missing.
const grid::myGrid& bigGrid() {
    static grid::myGrid grid;
    if (!grid.isDefined()) {
        grid.setupGrid(kCells, kCells, 10.0, 10.0, 0.0);
        grid.setOrigin(500000.0, 200000.0, 0.0);
        grid.setTitle("Benchmark");
        std::mt19937 random(1);
        std::uniform_real_distribution<double> number(0.0, 2500.0);
        for (double& value : grid.values())
            value = random() % 10 == 0 ? -1e20 : number(random);
    }
    return grid;
}

void write(const std::string& name) {
    base::NoProgress nobody;
    if (!grid::writeGridFile(bigGrid(), name, nobody))
        std::abort();
}

void writeLiteral(const std::string& name) {
    const grid::myGrid& grid = bigGrid();
    std::FILE* file = std::fopen(name.c_str(), "wb");
    test::literalWrite(file, grid.nX(), grid.nY(), grid.origin().x, grid.origin().y,
                       grid.cellWidthX(), grid.cellWidthY(), grid.title(), grid.values().data());
    std::fclose(file);
}

// Seconds an iteration of each run, for the ratios.
std::map<std::string, double>& seconds() {
    static std::map<std::string, double> all;
    return all;
}

template <class Work>
void measure(benchmark::State& state, const char* key, const char* reference, const Work& work) {
    double total = 0.0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        total += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    seconds()[key] = total / static_cast<double>(state.iterations());
    if (reference != nullptr)
        state.counters["times_faster"] = seconds()[reference] / seconds()[key];
}

void readReference(benchmark::State& state) {
    write(fileName("tessaran_bench.grd"));
    measure(state, "read reference", nullptr, [] {
        std::ifstream in(fileName("tessaran_bench.grd"), std::ios::binary);
        test::LiteralGrid grid;
        if (!test::literalRead(in, grid).empty())
            std::abort();
        benchmark::DoNotOptimize(grid.values.data());
    });
}

void readFast(benchmark::State& state) {
    measure(state, "read", "read reference", [] {
        grid::myGrid grid;
        base::NoProgress nobody;
        if (!grid::readGridFile(fileName("tessaran_bench.grd"), true, grid, nobody))
            std::abort();
        benchmark::DoNotOptimize(grid.values().data());
    });
}

void writeReference(benchmark::State& state) {
    bigGrid();
    measure(state, "write reference", nullptr,
            [] { writeLiteral(fileName("tessaran_literal.grd")); });
}

void writeFast(benchmark::State& state) {
    measure(state, "write", "write reference", [] { write(fileName("tessaran_bench.grd")); });
    const std::string ours = base::readFile(fileName("tessaran_bench.grd")).value();
    const std::string theirs = base::readFile(fileName("tessaran_literal.grd")).value();
    if (ours != theirs)
        state.SkipWithError("the outputs differ");
}

BENCHMARK(readReference)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(readFast)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(writeReference)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(writeFast)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    fs::remove(fileName("tessaran_bench.grd"));
    fs::remove(fileName("tessaran_literal.grd"));
    return 0;
}
