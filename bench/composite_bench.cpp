// The composite index of ten grids of 2000 x 2000 cells on different geometries: the sampling
// beside the literal point location of every cell, and the whole of it with reading the files.

#include "grid/grid_file.h"
#include "index/composite_index.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tessaran;
namespace fs = std::filesystem;

constexpr int kCells = 2000;
constexpr int kGrids = 10;

// Same ground, other origins and cell widths.
std::unique_ptr<grid::myGrid> makeGrid(int number) {
    auto grid = std::make_unique<grid::myGrid>();
    std::mt19937 random(static_cast<unsigned>(number));
    std::uniform_real_distribution<double> value(0.0, 100.0);
    const double width = 10.0 + 0.37 * number;
    grid->setupGrid(kCells, kCells, width, width, 0.0);
    grid->setOrigin(500000.0 - 111.0 * number, 200000.0 + 57.0 * number, 0.0);
    for (double& v : grid->values())
        v = value(random);
    return grid;
}

std::string fileName(int number) {
    return (fs::temp_directory_path() / ("tessaran_composite_" + std::to_string(number) + ".grd"))
        .string();
}

const std::vector<std::unique_ptr<grid::myGrid>>& grids() {
    static std::vector<std::unique_ptr<grid::myGrid>> all;
    if (all.empty()) {
        base::NoProgress nobody;
        for (int k = 0; k < kGrids; ++k) {
            all.push_back(makeGrid(k));
            if (!grid::writeGridFile(*all.back(), fileName(k), nobody))
                std::abort();
        }
    }
    return all;
}

std::unique_ptr<grid::myGrid> firstGrid() {
    grids();
    return makeGrid(0);
}

// Every cell's centre located in the other grid by itself.
void literalAdd(grid::myGrid& sum, const grid::myGrid& other, double weight) {
    for (int i = 0; i < sum.nX(); ++i)
        for (int j = 0; j < sum.nY(); ++j) {
            const auto cell = other.pointToCell(sum.cellCenter(i, j)->plan());
            sum.setValue(i, j, sum.getValue(i, j) + other.getValue(cell.column, cell.row) * weight);
        }
}

double literalSeconds = 0.0;

template <class Add>
double sampled(grid::myGrid& sum, const Add& add) {
    const auto begin = std::chrono::steady_clock::now();
    for (int k = 1; k < kGrids; ++k)
        add(sum, *grids()[static_cast<std::size_t>(k)], 10.0 + k);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void samplingReference(benchmark::State& state) {
    for (auto _ : state) {
        const auto sum = firstGrid();
        literalSeconds = sampled(*sum, literalAdd);
        state.SetIterationTime(literalSeconds);
    }
}

void sampling(benchmark::State& state) {
    const auto expected = firstGrid();
    sampled(*expected, literalAdd);
    double total = 0.0;
    for (auto _ : state) {
        const auto sum = firstGrid();
        const double seconds = sampled(*sum, index::addSampled);
        state.SetIterationTime(seconds);
        total += seconds;
        for (int j = 0; j < kCells; j += 7)
            for (int i = 0; i < kCells; ++i)
                if (sum->getValue(i, j) != expected->getValue(i, j))
                    state.SkipWithError("the sums differ");
    }
    state.counters["times_faster"] =
        literalSeconds * static_cast<double>(state.iterations()) / total;
}

void compositeWithReading(benchmark::State& state) {
    grids();
    base::NoProgress nobody;
    for (auto _ : state) {
        grid::myGrid sum;
        if (!grid::readGridFile(fileName(0), true, sum, nobody))
            std::abort();
        double total = 10.0;
        sum.scaleValues(total);
        for (int k = 1; k < kGrids; ++k) {
            grid::myGrid other;
            if (!grid::readGridFile(fileName(k), true, other, nobody))
                std::abort();
            index::addSampled(sum, other, 10.0 + k);
            total += 10.0 + k;
        }
        benchmark::DoNotOptimize(index::finishComposite(sum, total));
    }
}

BENCHMARK(samplingReference)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
BENCHMARK(sampling)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);
BENCHMARK(compositeWithReading)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    for (int k = 0; k < kGrids; ++k) {
        std::error_code error;
        fs::remove(fileName(k), error);
    }
    return 0;
}
