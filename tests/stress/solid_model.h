#pragma once

// Models that the solver's tests start from, and how they run them.

#include "stress/solver.h"

#include <filesystem>
#include <numeric>
#include <vector>

namespace tessaran::test {

// One seam of elastic coal, 12,000 in deep, mirrored edges; a material of each type.
inline stress::CModelDat solidModel(int nX, int nY) {
    using stress::MaterialType;
    stress::CModelDat m;
    m.title = "solid";
    m.poissonsRatio = 0.25;
    m.modulus = 3e6;
    m.laminationThickness = 600.0;
    m.materials = {{MaterialType::linearElasticCoal, {3e5, 0, 0, 0, 0}},
                   {MaterialType::strainSofteningCoal, {4000, 0.0133, 900, 0.05, 0.33}},
                   {MaterialType::elasticPlasticCoal, {4500, 0.015, 1000, 0.33, 0}},
                   {MaterialType::biLinearHardeningGob, {50, 0.1, 20000, 2, 0.25}},
                   {MaterialType::strainHardeningGob, {100, 35000, 4000, 1.5, 0.25}},
                   {MaterialType::linearElasticGob, {8000, 0, 1.5, 0, 0}}};
    m.elementWidth = 120.0;
    m.nX = nX;
    m.nY = nY;
    m.gradient = 0.09;
    m.seams = {{0.0, 0.0, -12000.0, 72.0}};
    m.overRelaxation = 1.35;
    m.convergenceCriterion = 1e-9;
    m.maxIterations = 100000;
    m.steps = 1;
    m.boundaries = {1, 1, 1, 1};
    m.codes = {{stress::ElementCodes(static_cast<std::size_t>(nX * nY), 'A')}};
    return m;
}

// A run's path without the files of an earlier run.
inline std::filesystem::path runBase(const char* name) {
    const auto folder = std::filesystem::temp_directory_path() / "tessaran_solver_test";
    std::filesystem::create_directories(folder);
    for (const auto& file : std::filesystem::directory_iterator(folder))
        if (file.path().stem() == name)
            std::filesystem::remove(file.path());
    return folder / name;
}

inline stress::RunReport solved(const stress::CModelDat& model, const char* name) {
    stress::RunWatch watch;
    return stress::solve(model, runBase(name), watch);
}

inline double sum(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

} // namespace tessaran::test
