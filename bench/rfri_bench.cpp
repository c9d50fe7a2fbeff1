// One category's page and the final calculation on four million cells, beside plain references: a
// look at every cell of each defect's box, and grids added one by one through getValue(). The
// reference of the page is measured on a part of the defects and scaled.

#include "grid/grid_file.h"
#include "rfri/defect_grid.h"
#include "rfri/final_value.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <random>

namespace {

using namespace tessaran;
using geometry::CurveVertex;
using geometry::Point2;

constexpr int kCells = 2000;
constexpr double kCell = 5.0;

double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void report(benchmark::State& state, double plain, double fast) {
    state.counters["plain_s"] = plain;
    state.counters["fast_s"] = fast;
    state.counters["ratio"] = plain / fast;
}

void layGrid(grid::myGrid& grid) {
    grid.setupGrid(kCells, kCells, kCell, kCell, 0.0);
    grid.setOrigin(0.0, 0.0, 0.0);
}

std::vector<rfri::Defect> someDefects() {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> place(0.0, kCells * kCell);
    std::uniform_real_distribution<double> turn(-0.6, 0.6);
    std::vector<rfri::Defect> defects;
    for (int k = 0; k < 2000; ++k) {
        std::vector<CurveVertex> chain;
        Point2 at{place(random), place(random)};
        double heading = place(random);
        for (int v = 0; v < 20; ++v) {
            chain.push_back({{at.x, at.y, 0.0}, 0.0});
            heading += turn(random);
            at = at + 25.0 * Point2{std::cos(heading), std::sin(heading)};
        }
        const int level = 2 + k % 4;
        defects.push_back({geometry::Curve(chain, false), level, 10.0 * level});
    }
    return defects;
}

void plainDefects(std::span<const rfri::Defect> defects, grid::myGrid& grid) {
    for (const rfri::Defect& defect : defects) {
        const geometry::Box2 box = defect.line.extents().enlarged(defect.reach);
        const auto [i0, j0] = grid.pointToCellClamped(box.low);
        const auto [i1, j1] = grid.pointToCellClamped(box.high);
        for (int i = i0; i <= i1; ++i)
            for (int j = j0; j <= j1; ++j) {
                const double d = defect.line.closestTo(grid.cellCenter(i, j)->plan())->distance;
                if (d <= defect.reach && grid.getValue(i, j) < defect.level)
                    grid.setValue(i, j, defect.level);
            }
    }
}

void defectPage(benchmark::State& state) {
    constexpr std::size_t kPart = 40;
    const auto defects = someDefects();
    grid::myGrid grid;
    layGrid(grid);
    base::NoProgress progress;
    double fast = 0.0;
    for (auto _ : state)
        fast = seconds([&] { rfri::gridDefects(defects, false, grid, progress); });
    const double plain = seconds([&] { plainDefects(std::span(defects).first(kPart), grid); });
    report(state, plain * static_cast<double>(defects.size()) / kPart, fast);
}
BENCHMARK(defectPage)->Unit(benchmark::kMillisecond)->Iterations(1);

void plainSum(const std::vector<std::string>& files, grid::myGrid& sum) {
    base::NoProgress progress;
    for (std::size_t k = 0; k < files.size(); ++k) {
        grid::myGrid one;
        if (!grid::readGridFile(files[k], true, one, progress))
            return;
        const rfri::Category& category = rfri::categories()[k];
        const double weight = category.weight * (category.scaled ? rfri::kScale : 1.0);
        for (int i = 0; i < kCells; ++i)
            for (int j = 0; j < kCells; ++j)
                sum.setValue(i, j, sum.getValue(i, j) + weight * one.getValue(i, j));
    }
}

void finalCalculation(benchmark::State& state) {
    const auto folder = std::filesystem::temp_directory_path() / "tessaran_rfri_bench";
    std::filesystem::create_directories(folder);
    base::NoProgress progress;
    std::vector<std::string> files;
    for (std::size_t k = 0; k < rfri::kCategories; ++k) {
        grid::myGrid grid;
        layGrid(grid);
        for (int j = 0; j < kCells; ++j)
            for (double& value : grid.row(j))
                value = static_cast<double>((static_cast<std::size_t>(j) + k) % 5 + 1);
        files.push_back((folder / rfri::categories()[k].file).string());
        if (!grid::writeGridFile(grid, files.back(), progress)) {
            state.SkipWithError("the grids cannot be written");
            return;
        }
    }
    grid::myGrid sum;
    layGrid(sum);
    double fast = 0.0;
    const auto read = [&](std::size_t k, grid::myGrid& grid) {
        base::NoProgress quiet;
        return grid::readGridFile(files[k], true, grid, quiet);
    };
    for (auto _ : state)
        fast = seconds([&] {
            rfri::sumCategories(
                read, [](std::size_t, const base::Error&) {}, sum, progress);
        });
    grid::myGrid plain;
    layGrid(plain);
    const double slow = seconds([&] { plainSum(files, plain); });
    state.counters["differ"] = std::abs(plain.getValue(7, 9) - sum.getValue(7, 9)) > 1e-9 ? 1 : 0;
    report(state, slow, fast);
    std::filesystem::remove_all(folder);
}
BENCHMARK(finalCalculation)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
