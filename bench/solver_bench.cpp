// The laminated solver: sweeps of one seam with all laws beside the plain double loop, and a whole
// run of two seams beside what the double loops would take for it. Results are compared bit for
// bit.

#include "bench/solver_models.h"
#include "stress/relaxation.h"
#include "stress/solver.h"
#include "stress/sweep_kernel.h"
#include "tests/support/literal_influence.h"
#include "tests/support/literal_relaxation.h"

#include <benchmark/benchmark.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <thread>

namespace {

using namespace tessaran;
namespace fs = std::filesystem;

struct Seam {
    stress::RelaxationProblem problem;
    stress::ElementLaws laws;
    stress::SeamState state;
};

Seam seamOf(int n) {
    const stress::CModelDat m = bench::modelOf(n, 1);
    Seam seam{{}, {}, stress::SeamState(n, n)};
    seam.problem.modulus = m.modulus;
    seam.problem.lambda = stress::laminationConstant(m);
    seam.problem.width = m.elementWidth;
    seam.problem.thickness = m.seams[0].thickness;
    seam.problem.omega = m.overRelaxation;
    seam.problem.criterion = -0.5; // never met: as many iterations as the limit says
    seam.problem.boundaries = m.boundaries;
    seam.problem.materials = m.materials;
    seam.laws = stress::lawsOf(m.codes[0][0], n, n, static_cast<int>(m.materials.size()));
    // A topographic load and another seam's, different at each element.
    for (std::size_t k = 0; k < seam.state.elements(); ++k) {
        seam.state.overburden[k] = 1080.0 + static_cast<double>(k % 97);
        seam.state.multiple[k] = static_cast<double>(k % 31);
    }
    return seam;
}

double relaxSeconds(const Seam& seam, int iterations, int threads, stress::SeamState& state) {
    stress::RelaxationProblem problem = seam.problem;
    problem.maxIterations = iterations;
    problem.threads = threads;
    stress::RelaxationWatch watch;
    return bench::seconds([&] { stress::relax(problem, seam.laws, state, watch); });
}

// Bytes a second at which so many threads change numbers in place by others: u = u + 0.5 b.
double updateBandwidth(std::size_t count, int threads) {
    std::vector<double> u(count, 1.0);
    const std::vector<double> b(count, 1e-9);
    constexpr int kRounds = 8;
    const double time = bench::seconds([&] {
        std::vector<std::thread> workers;
        for (int k = 0; k < threads; ++k)
            workers.emplace_back([&, k] {
                const std::size_t begin = count * static_cast<std::size_t>(k) / threads;
                const std::size_t end = count * static_cast<std::size_t>(k + 1) / threads;
                for (int round = 0; round < kRounds; ++round)
                    for (std::size_t i = begin; i < end; ++i)
                        u[i] += 0.5 * b[i];
            });
        for (std::thread& worker : workers)
            worker.join();
    });
    return 24.0 * static_cast<double>(count) * kRounds / time;
}

void sweeps(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const int threads = static_cast<int>(state.range(1));
    const int iterations = std::max(64, 64'000'000 / (n * n));
    const double updates = static_cast<double>(n) * n * iterations;
    const Seam seam = seamOf(n);
    stress::SeamState fast = seam.state;
    double here = 1e9;
    for (auto _ : state) {
        fast = seam.state;
        here = std::min(here, relaxSeconds(seam, iterations, threads, fast));
    }
    stress::SeamState literal = seam.state;
    stress::RelaxationProblem problem = seam.problem;
    problem.maxIterations = iterations;
    const double reference =
        bench::seconds([&] { test::LiteralRelaxation(problem, seam.laws, literal).run(); });
    int different = 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            different += fast.convergenceAt(i, j) != literal.convergenceAt(i, j);
    // An update reads and writes a convergence and reads two external stresses and a code.
    constexpr double kBytes = 33.0;
    state.SetLabel(stress::sweepKernel().name);
    state.counters["ns_an_update"] = 1e9 * here / updates;
    state.counters["literal_ns"] = 1e9 * reference / updates;
    state.counters["ratio"] = reference / here;
    state.counters["of_update_bandwidth"] =
        kBytes * updates / here /
        updateBandwidth(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), threads);
    state.counters["elements_that_differ"] = different;
}

// The same in vectors of four numbers, as machines without AVX-512 have them.
void sweepsInAvx2(benchmark::State& state) {
    if ((hwy::SupportedTargets() & HWY_AVX2) == 0)
        return state.SkipWithError("this machine has no AVX2");
    hwy::SetSupportedTargetsForTest(HWY_AVX2);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    sweeps(state);
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

// One relaxation that is settled after its first iteration: what it costs beside the sweep.
void relaxationCall(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Seam seam = seamOf(n);
    seam.problem.criterion = 1e9;
    seam.problem.maxIterations = 5;
    stress::RelaxationWatch watch;
    stress::RelaxationMemory memory;
    double least = 1e9;
    for (auto _ : state)
        least = std::min(least, bench::seconds([&] {
                             stress::relax(seam.problem, seam.laws, seam.state, watch, memory);
                         }));
    state.counters["ns_an_element"] = 1e9 * least / n / n;
}

// What the double loops take for a run of these iterations and passes.
double literalSeconds(const stress::CModelDat& model, const stress::RunReport& report) {
    const int n = model.nX;
    Seam seam = seamOf(n);
    seam.problem.maxIterations = 20;
    stress::SeamState scratch = seam.state;
    const double update =
        bench::seconds([&] { test::LiteralRelaxation(seam.problem, seam.laws, scratch).run(); }) /
        (20.0 * n * n);
    const stress::ElementField field{0.0, 0.0, model.elementWidth, n, n};
    const std::vector<double> convergence(static_cast<std::size_t>(n) * static_cast<std::size_t>(n),
                                          1.0);
    std::vector<double> out = convergence;
    const auto columnSeconds = [&](double h) {
        return bench::seconds([&] {
            test::addLiteralInfluence(test::InfluenceKind::stress,
                                      {model.modulus, stress::laminationConstant(model), h}, field,
                                      n / 2, n / 2 + 1, convergence, field, out);
        });
    };
    double column = 0.0; // one of sources, for all pairs of a pass
    for (const stress::Seam& from : model.seams)
        for (const stress::Seam& to : model.seams) {
            if (from.z != to.z)
                column += columnSeconds(from.z - to.z);
            column += columnSeconds(from.z + to.z);
        }
    double sum = 0.0;
    for (std::size_t level = 0; level < stress::kDetailLevels.size(); ++level) {
        const double factor = stress::kDetailLevels[level].aggregation;
        sum += report.profile[0][level].loops * column * n / (factor * factor);
        for (const stress::SeamProfile& profile : report.profile)
            sum += update * n * n *
                   static_cast<double>(profile[level].iterations + profile[level].loops);
    }
    return sum;
}

void wholeRun(benchmark::State& state) {
    stress::CModelDat model = bench::modelOf(static_cast<int>(state.range(0)), 2);
    model.surfaceEffects = true;
    const fs::path folder = fs::temp_directory_path() / "tessaran_solver_bench";
    fs::create_directories(folder);
    stress::RunReport report;
    double here = 0.0;
    for (auto _ : state) {
        stress::RunWatch watch;
        here = bench::seconds([&] { report = stress::solve(model, folder / "run", watch); });
        if (report.code() != 0)
            state.SkipWithError(report.message.c_str());
    }
    fs::remove_all(folder);
    long iterations = 0;
    double relaxing = 0.0;
    int loops = 0;
    for (const stress::SeamProfile& seam : report.profile)
        for (const stress::LevelProfile& level : seam) {
            iterations += level.iterations;
            relaxing += level.relaxationSeconds;
            loops += level.loops;
        }
    const double reference = literalSeconds(model, report);
    state.counters["run_s"] = here;
    state.counters["relaxing_s"] = relaxing;
    state.counters["iterations"] = static_cast<double>(iterations);
    state.counters["passes"] = loops / model.seamCount();
    state.counters["literal_s"] = reference;
    state.counters["ratio"] = reference / here;
}

BENCHMARK(sweeps)
    ->ArgsProduct({{400, 1000, 2000}, {1, 2}})
    ->ArgNames({"square", "threads"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(sweepsInAvx2)
    ->ArgsProduct({{400, 1000, 2000}, {1, 2}})
    ->ArgNames({"square", "threads"})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(relaxationCall)->Arg(400)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(wholeRun)->Arg(400)->Unit(benchmark::kSecond)->UseRealTime()->Iterations(1);

} // namespace

BENCHMARK_MAIN();
