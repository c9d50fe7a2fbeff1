// The topographic model: relaxing 200 x 200 blocks with a good factor and spreading their load to
// 400 x 400 elements, beside the spreading summed block by block for some of the elements.

#include "stress/topography.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <numbers>

namespace {

using namespace tessaran;
using namespace tessaran::stress;

constexpr int kBlocks = 200;
constexpr int kElements = 400;
constexpr double kModulus = 3e6;
constexpr double kLambda = 178.9; // layers of 50 ft
constexpr double kDistance = 3600.0;
constexpr ElementField kBlockField{0.0, 0.0, 240.0, kBlocks, kBlocks};
constexpr ElementField kElementField{0.0, 0.0, 120.0, kElements, kElements};

std::vector<double> hills() {
    std::vector<double> load;
    for (int i = 0; i < kBlocks; ++i)
        for (int j = 0; j < kBlocks; ++j)
            load.push_back(300.0 * std::sin(0.07 * i) * std::cos(0.05 * j) + 2.0 * ((i * j) % 7));
    return datumLoad(load).deviation;
}

// The sum over all blocks within the window, for every 50th element in each direction.
double literalSecondsOfAll(const std::vector<double>& down) {
    const auto start = std::chrono::steady_clock::now();
    double sum = 0.0;
    int elements = 0;
    for (int x = 0; x < kElements; x += 50)
        for (int y = 0; y < kElements; y += 50, ++elements)
            for (int i = 0; i < kBlocks; ++i)
                for (int j = 0; j < kBlocks; ++j) {
                    const double dx = (x + 0.5) * 120.0 - (i + 0.5) * 240.0;
                    const double dy = (y + 0.5) * 120.0 - (j + 0.5) * 240.0;
                    const double z = (dx * dx + dy * dy) / (4.0 * kLambda * kDistance);
                    sum +=
                        down[static_cast<std::size_t>(i * kBlocks + j)] * (1.0 - z) * std::exp(-z);
                }
    benchmark::DoNotOptimize(sum);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    return took.count() / elements * kElements * kElements;
}

void topographicStress(benchmark::State& state) {
    const std::vector<double> load = hills();
    const double omega = 2.0 / (1.0 + std::sin(std::numbers::pi / (kBlocks + 1)));
    RelaxationWatch nobody;
    base::NoProgress noProgress;
    DatumDisplacement found;
    double spreading = 0.0;
    for (auto _ : state) {
        found = relaxDatum(kModulus, kLambda, kBlockField, load, omega, 1e-6, 20000, nobody);
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(spreadToSeam({kModulus, kLambda, kDistance}, kBlockField,
                                              found.down, kElementField, noProgress));
        spreading = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    const double literal = literalSecondsOfAll(found.down);
    state.counters["iterations"] = found.outcome.iterations;
    state.counters["spreading_s"] = spreading;
    state.counters["literal_spreading_s"] = literal;
    state.counters["ratio"] = literal / spreading;
}

BENCHMARK(topographicStress)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
