// The roof rating of five units over 2000 x 2000 cells: the rating beside its definition cell by
// cell, and the whole of it, from reading twelve grids to writing the rating's and the units'.

#include "cmrr/output.h"
#include "cmrr/roof_rating.h"
#include "cmrr/unit_rating.h"
#include "grid/grid_file.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tessaran;
namespace fs = std::filesystem;

constexpr int kCells = 2000;
constexpr std::size_t kUnits = 5;
constexpr int kGrids = 12; // thickness and UCS of each unit, RQD of the first, ground water

fs::path folder() {
    return fs::temp_directory_path() / "tessaran_cmrr_bench";
}

std::string fileName(int number) {
    return (folder() / ("input" + std::to_string(number) + ".grd")).string();
}

void makeInputs() {
    static const bool made = [] {
        fs::create_directories(folder());
        base::NoProgress nobody;
        for (int k = 0; k < kGrids; ++k) {
            const double low = k < 5 ? 1.0 : k < 10 ? 2000.0 : k == 10 ? 20.0 : 1.0;
            const double high = k < 5 ? 4.0 : k < 10 ? 25000.0 : k == 10 ? 100.0 : 5.0;
            std::mt19937 random(static_cast<unsigned>(k));
            std::uniform_real_distribution<double> value(low, high);
            grid::myGrid grid;
            grid.setupGrid(kCells, kCells, 10.0, 10.0, 0.0);
            for (double& v : grid.values())
                v = std::round(value(random) * 100.0) / 100.0;
            if (!grid::writeGridFile(grid, fileName(k), nobody))
                std::abort();
        }
        return true;
    }();
    static_cast<void>(made);
}

cmrr::RoofData roofData() {
    makeInputs();
    cmrr::RoofData data;
    data.units = static_cast<int>(kUnits);
    for (std::size_t u = 0; u < kUnits; ++u) {
        cmrr::CUnit& unit = data.unit[u];
        unit.type = cmrr::DataType::core;
        unit.ratingSource = cmrr::RatingSource::computed;
        unit.thickness = {{}, fileName(static_cast<int>(u)), true};
        unit.core.diametralIs50.constant = 200.0;
        unit.core.rqd.constant = 60.0;
        unit.core.axialTest = cmrr::AxialTest::ucs;
        unit.core.ucs = {{}, fileName(static_cast<int>(u) + 5), true};
        unit.core.contact = u % 2 == 0 ? cmrr::Contact::weak : cmrr::Contact::strong;
    }
    data.unit[0].core.rqd = {{}, fileName(10), true};
    data.final = {{{}, fileName(11), true}, 1.5, 8.0, true};
    return data;
}

class Quiet final : public cmrr::GridAdvice {
    void warn(const std::string& /*text*/) override {}
    bool goOn(const std::string& /*question*/) override { return true; }
};

cmrr::InputGrids readAll(const cmrr::RoofData& data) {
    cmrr::InputGrids grids;
    Quiet quiet;
    base::NoProgress nobody;
    if (!cmrr::needAll(cmrr::gridsInUse(data), grids, quiet, nobody).ok())
        std::abort();
    return grids;
}

const cmrr::InputGrids& inputs() {
    static const cmrr::InputGrids grids = readAll(roofData());
    return grids;
}

// As the method is written down, step by step in every cell.
double literalCell(const std::array<double, kUnits>& ucs, const std::array<double, kUnits>& thick,
                   double rqd, double water) {
    std::vector<double> ratings;
    for (std::size_t u = 0; u < kUnits; ++u) {
        const double strength = ucs[u] <= 5000    ? ucs[u] / 1000 * 1.5 + 5
                                : ucs[u] <= 21300 ? ucs[u] / 1000 * 1.08 + 7
                                                  : 30;
        const double intensity = 10.5 * std::log(u == 0 ? rqd : 60.0) - 11.6;
        ratings.push_back(strength + std::min(0.104 * 200 + 27.5, intensity));
    }
    static constexpr std::array<double, 5> kWater{0, -2, -4, -7, -10};
    const auto low = static_cast<std::size_t>(water) - 1;
    const double wet =
        low == 4 ? -10
                 : kWater[low] + (kWater[low + 1] - kWater[low]) * (water - std::floor(water));
    constexpr double kBolt = 8.0;
    if (kBolt <= thick[0])
        return ratings[0] + wet - 2.5;
    double sum = 0;
    double depth = 0;
    std::size_t last = 0;
    for (std::size_t u = 0; u < kUnits && depth < kBolt; ++u) {
        sum += ratings[u] * std::min(thick[u], kBolt - depth);
        depth += thick[u];
        last = u;
    }
    const double average = sum / std::min(depth, kBolt);
    std::size_t strongest = 0;
    for (std::size_t u = 1; u <= last; ++u)
        if (ratings[u] >= ratings[strongest])
            strongest = u;
    double base = 0;
    for (std::size_t u = 0; u < strongest; ++u)
        base += thick[u];
    double bed = 0;
    if (ratings[strongest] - average > 5 && thick[strongest] >= 1)
        bed = (1 - (std::clamp(base, 1.7, 8.5) - 1.7) * 0.1) *
              ((ratings[strongest] - average) * 0.22 * std::min(thick[strongest], 4.0) - 2.5);
    std::size_t weak = 0;
    for (std::size_t u = 0; u < last; ++u)
        weak += u % 2 == 0 ? 1U : 0U;
    const double contacts = weak == 0 ? 0 : weak <= 2 ? -2 : weak <= 4 ? -4 : -5;
    return average + bed + contacts + wet - 2.5;
}

std::vector<double> literalRoof() {
    std::array<const grid::myGrid*, kGrids> grids{};
    for (int k = 0; k < kGrids; ++k)
        grids[static_cast<std::size_t>(k)] = inputs().find(fileName(k));
    std::vector<double> out;
    for (int j = 0; j < kCells; ++j)
        for (int i = 0; i < kCells; ++i) {
            std::array<double, kUnits> thick{};
            std::array<double, kUnits> ucs{};
            for (std::size_t u = 0; u < kUnits; ++u) {
                thick[u] = grids[u]->getValue(i, j);
                ucs[u] = grids[u + 5]->getValue(i, j);
            }
            out.push_back(
                literalCell(ucs, thick, grids[10]->getValue(i, j), grids[11]->getValue(i, j)));
        }
    return out;
}

double literalSeconds = 0.0;

template <class Work>
double timed(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void ratingReference(benchmark::State& state) {
    inputs();
    for (auto _ : state) {
        literalSeconds = timed([] { benchmark::DoNotOptimize(literalRoof()); });
        state.SetIterationTime(literalSeconds);
    }
}

void rating(benchmark::State& state) {
    const cmrr::RoofData data = roofData();
    const std::vector<double> expected = literalRoof();
    double total = 0.0;
    for (auto _ : state) {
        base::Result<cmrr::RoofResult> result = base::stateError("not yet");
        const double seconds = timed([&] { result = cmrr::rateRoof(data, inputs()); });
        state.SetIterationTime(seconds);
        total += seconds;
        for (int j = 0; j < kCells; ++j)
            for (int i = 0; i < kCells; ++i)
                if (std::abs(result->grid->getValue(i, j) -
                             expected[static_cast<std::size_t>(j * kCells + i)]) > 1e-9)
                    state.SkipWithError("the ratings differ");
    }
    state.counters["times_faster"] =
        literalSeconds * static_cast<double>(state.iterations()) / total;
}

void wholeRun(benchmark::State& state) {
    const cmrr::RoofData data = roofData();
    base::NoProgress nobody;
    for (auto _ : state) {
        const cmrr::InputGrids grids = readAll(data);
        auto result = cmrr::rateRoof(data, grids);
        const auto replace = [](const std::string&) { return true; };
        if (!result || !cmrr::writeRoof(*result, data, folder(), replace, nobody))
            std::abort();
    }
}

BENCHMARK(ratingReference)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
BENCHMARK(rating)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(2);
BENCHMARK(wholeRun)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::error_code error;
    fs::remove_all(folder(), error);
    return 0;
}
