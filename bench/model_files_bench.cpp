// The solver's files: reading and echoing the codes of 4 seams and 20 steps of 400 x 400 elements
// beside one "%c " of the C library a code, and the transfer of one item of the last of 20 steps of
// 1000 x 1000 elements beside reading every line before it.

#include "base/file.h"
#include "bench/solver_models.h"
#include "stress/model_echo.h"
#include "stress/model_reader.h"
#include "stress/result_file.h"
#include "stress/result_reader.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace tessaran;
namespace fs = std::filesystem;

std::string modelText(int n, int seams, int steps) {
    std::string text = "Codes\n0.25, 3e6, 600, " + std::to_string(seams) + ", 0\n6\n";
    for (const stress::Material& m : bench::allMaterials()) {
        text += std::to_string(static_cast<int>(m.type));
        for (const double p : m.p)
            text += ", " + std::to_string(p);
        text += '\n';
    }
    text += "120, " + std::to_string(n) + ", " + std::to_string(n) + ", 0.09\n";
    for (int k = 0; k < seams; ++k)
        text += "0, 0, " + std::to_string(-12000 - 1200 * k) + ", 72\n";
    text += "1.4, 0.0001, 1000, 1, " + std::to_string(steps) + ", 0, 0, 0\n1, 1, 1, 1\n";
    const stress::ElementCodes codes = bench::roomsAndGobs(n, n, 0);
    for (int map = 0; map < seams * steps; ++map)
        for (int j = n; j-- > 0;) {
            for (int i = 0; i < n; ++i)
                text += codes[static_cast<std::size_t>(i) * static_cast<std::size_t>(n) +
                              static_cast<std::size_t>(j)];
            text += '\n';
        }
    return text;
}

void readAndEcho(benchmark::State& state) {
    const std::string text = modelText(400, 4, 20);
    double here = 1e9;
    for (auto _ : state)
        here = std::min(here, bench::seconds([&] {
                            const stress::ModelReading reading = stress::parseModel(text);
                            if (!reading.ok())
                                std::abort();
                            benchmark::DoNotOptimize(stress::modelEcho(reading.model));
                        }));
    // The codes alone, as the format's own description reads them.
    std::FILE* file = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), file);
    std::rewind(file);
    const double reference = bench::seconds([&] {
        char code = 0;
        long count = 0;
        while (std::fscanf(file, "%c ", &code) == 1)
            ++count;
        benchmark::DoNotOptimize(count);
    });
    std::fclose(file);
    state.counters["fscanf_s"] = reference;
    state.counters["ratio"] = reference / here;
}

// One step's lines, written as often as there are steps.
fs::path resultFile(int n, int steps) {
    stress::CModelDat model = bench::modelOf(n, 1);
    model.steps = steps;
    stress::SeamState seam(n, n);
    for (std::size_t k = 0; k < seam.elements(); ++k) {
        seam.total[k] = static_cast<double>(k) * 0.37;
        seam.overburden[k] = 1080.0;
    }
    const fs::path path = fs::temp_directory_path() / "tessaran_transfer_bench.f1";
    std::ofstream out(path, std::ios::binary);
    out << stress::resultHeader(model, 0);
    const std::string step = stress::resultStep(model, seam);
    for (int k = 0; k < steps; ++k)
        out << step;
    return path;
}

void transfer(benchmark::State& state) {
    constexpr int kSteps = 20;
    constexpr int kItem = 2;
    const fs::path path = resultFile(1000, kSteps);
    grid::myGrid grid;
    double here = 1e9;
    for (auto _ : state)
        here = std::min(here, bench::seconds([&] {
                            const auto header = stress::readResultHeader(path);
                            if (!header || !stress::readItem(path, *header, kItem, kSteps, grid))
                                std::abort();
                        }));
    std::size_t different = 0;
    const double reference = bench::seconds([&] {
        std::ifstream in(path);
        std::string line;
        for (long k = 0; k < 3 + (kSteps - 1) * 1'000'000L; ++k)
            std::getline(in, line);
        for (int i = 0; i < 1000; ++i)
            for (int j = 0; j < 1000; ++j) {
                std::getline(in, line);
                different += grid.getValue(i, j) != std::atof(line.c_str() + line.find(',') + 1);
            }
    });
    fs::remove(path);
    state.counters["getline_s"] = reference;
    state.counters["ratio"] = reference / here;
    state.counters["cells_that_differ"] = static_cast<double>(different);
}

BENCHMARK(readAndEcho)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(transfer)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);

} // namespace

BENCHMARK_MAIN();
