// Stresses between seams and displacements off them: 400 x 400 elements, a window of 100 elements
// to each side, beside the direct sum over element pairs, of which some columns of sources are run
// and scaled to all.

#include "bench/solver_models.h"
#include "tests/support/literal_influence.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace tessaran;
using test::InfluenceKind;

constexpr double kWidth = 120.0;
constexpr int kSampledColumns = 2;

bool addFast(InfluenceKind kind, const stress::Influence& influence,
             const stress::ElementField& field, const std::vector<double>& convergence,
             std::vector<double>& out) {
    base::NoProgress progress;
    return kind == InfluenceKind::stress
               ? stress::addInfluenceStress(influence, field, convergence, field, out, progress)
               : stress::addInfluenceDisplacement(influence, 1.0, field, convergence, field, out,
                                                  progress);
}

// `pairs` of seams (or of a seam and the grid off it) in one pass.
void spread(benchmark::State& state, InfluenceKind kind, int n, int window, int pairs) {
    const stress::ElementField field{0.0, 0.0, kWidth, n, n};
    const stress::Influence influence{3e6, 400.0, window * kWidth / 10.0};
    std::mt19937 random(4);
    std::uniform_real_distribution<double> closure(0.0, 10.0);
    std::vector<double> convergence(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    for (double& d : convergence)
        d = closure(random);
    std::vector<double> out(convergence.size(), 0.0);
    double here = 1e9;
    for (auto _ : state)
        here = std::min(here, bench::seconds([&] {
                            for (int k = 0; k < pairs; ++k)
                                addFast(kind, influence, field, convergence, out);
                        }));
    // Columns in the middle, whose windows are whole where the seam is large enough.
    const int first = n / 2;
    const int end = first + kSampledColumns;
    std::vector<double> some(convergence.size(), 0.0);
    std::copy(convergence.begin() + first * n, convergence.begin() + end * n,
              some.begin() + first * n);
    std::vector<double> direct(out.size(), 0.0);
    std::vector<double> fast(out.size(), 0.0);
    const double sampled = bench::seconds([&] {
        test::addLiteralInfluence(kind, influence, field, first, end, convergence, field, direct);
    });
    addFast(kind, influence, field, some, fast);
    double largest = 0.0;
    double difference = 0.0;
    for (std::size_t k = 0; k < direct.size(); ++k) {
        largest = std::max(largest, std::abs(direct[k]));
        difference = std::max(difference, std::abs(direct[k] - fast[k]));
    }
    // At the edges windows are cut off: the mean of a window's width over the seam.
    const double cut = 1.0 - static_cast<double>(std::min(window, n)) / (2.0 * n);
    const double literal = sampled / kSampledColumns * n * cut * pairs;
    state.counters["fast_s"] = here;
    state.counters["direct_sum_s"] = literal;
    state.counters["ratio"] = literal / here;
    state.counters["difference_of_largest"] = difference / largest;
}

BENCHMARK_CAPTURE(spread, interseam_400_window_100, InfluenceKind::stress, 400, 100, 2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(spread, off_seam_400_from_two_seams, InfluenceKind::displacement, 400, 100, 2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(spread, interseam_2000_window_200, InfluenceKind::stress, 2000, 200, 2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(2);

} // namespace

BENCHMARK_MAIN();
