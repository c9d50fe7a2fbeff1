#pragma once

// Models that the solver's benchmarks run: made here, as code maps would only fill the repository.

#include "stress/model.h"

#include <algorithm>
#include <chrono>

namespace tessaran::bench {

inline double seconds(const auto& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The six laws, as coal and gob at 1,000 ft under layers of 50 ft have them; inches and psi.
inline std::vector<stress::Material> allMaterials() {
    using stress::MaterialType;
    return {{MaterialType::elasticPlasticCoal, {4500, 0.015, 1000, 0.33, 0}},
            {MaterialType::linearElasticCoal, {3e5, 0, 0, 0, 0}},
            {MaterialType::strainSofteningCoal, {4000, 0.0133, 900, 0.05, 0.33}},
            {MaterialType::biLinearHardeningGob, {50, 0.1, 20000, 2, 0.25}},
            {MaterialType::strainHardeningGob, {100, 35000, 4000, 1.5, 0.25}},
            {MaterialType::linearElasticGob, {8000, 0, 1.5, 0, 0}}};
}

// Rooms of 2 elements between pillars of 6, gobs of every kind instead of a quarter of the panels
// (40 x 40 elements), and a barrier of coal around it all.
inline stress::ElementCodes roomsAndGobs(int nX, int nY, int shift) {
    stress::ElementCodes codes(static_cast<std::size_t>(nX) * static_cast<std::size_t>(nY));
    constexpr int kPanel = 40;
    constexpr int kPillar = 8;
    for (int i = 0; i < nX; ++i) {
        for (int j = 0; j < nY; ++j) {
            const int panel = (i + shift) / kPanel * 7 + (j + shift) / kPanel * 3;
            const int edge = std::min(std::min(i, nX - 1 - i), std::min(j, nY - 1 - j));
            char code = '1';
            if (edge < 20)
                code = 'B';
            else if (panel % 4 == 0)
                code = static_cast<char>('D' + panel / 4 % 3);
            else if ((i + shift) % kPillar >= 2 && (j + shift) % kPillar >= 2)
                code = panel % 4 == 1 ? 'C' : 'A';
            codes[static_cast<std::size_t>(i) * static_cast<std::size_t>(nY) +
                  static_cast<std::size_t>(j)] = code;
        }
    }
    return codes;
}

// Seams 100 ft apart, the upper one 1,000 ft deep, elements of 10 ft.
inline stress::CModelDat modelOf(int n, int seams) {
    stress::CModelDat m;
    m.title = "Rooms, pillars and gobs";
    m.poissonsRatio = 0.25;
    m.modulus = 3e6;
    m.laminationThickness = 600.0;
    m.materials = allMaterials();
    m.elementWidth = 120.0;
    m.nX = n;
    m.nY = n;
    m.gradient = 0.09;
    m.overRelaxation = 1.4;
    m.convergenceCriterion = 1e-3;
    m.maxIterations = 20000;
    m.steps = 1;
    m.boundaries = {1, 1, 1, 1};
    m.codes.resize(1);
    for (int k = 0; k < seams; ++k) {
        m.seams.push_back({0.0, 0.0, -12000.0 - 1200.0 * k, 72.0});
        m.codes[0].push_back(roomsAndGobs(n, n, 11 * k));
    }
    return m;
}

} // namespace tessaran::bench
