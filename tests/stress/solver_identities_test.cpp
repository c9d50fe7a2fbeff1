// What must hold for a solved model whatever the numbers: loads balance, plans may be moved,
// mirrored and turned.

#include "stress/exponential.h"
#include "stress/material.h"
#include "stress/solver.h"
#include "tests/stress/solid_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace tessaran;
using namespace tessaran::stress;

namespace {

std::size_t at(const CModelDat& m, int i, int j) {
    return static_cast<std::size_t>(i) * static_cast<std::size_t>(m.nY) +
           static_cast<std::size_t>(j);
}

// Rooms and single elements of every material, open entries among them.
ElementCodes anyCodes(const CModelDat& m, unsigned seed) {
    std::mt19937 random(seed);
    ElementCodes codes(static_cast<std::size_t>(m.elements()));
    for (int i = 0; i < m.nX; ++i)
        for (int j = 0; j < m.nY; ++j) {
            const auto pick = random() % 3u == 0
                                  ? random() % 9u
                                  : static_cast<std::uint_fast32_t>(i / 5 + j / 4) % 9u;
            codes[at(m, i, j)] = pick > 5 ? '1' : static_cast<char>('A' + static_cast<int>(pick));
        }
    return codes;
}

} // namespace

TEST(SolverIdentities, MirroredEdgesBalanceAnyLayoutOfAnyMaterial) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        CModelDat model = test::solidModel(40, 30);
        model.convergenceCriterion = 1e-10;
        model.surfaceEffects = seed % 2 == 0;
        model.codes[0][0] = anyCodes(model, seed);
        for (int k = 1; k < static_cast<int>(seed); ++k) {
            model.seams.push_back({60.0 * k, -30.0 * k, -12000.0 + 1500.0 * k, 60.0 + 5.0 * k});
            model.codes[0].push_back(anyCodes(model, 10 * seed + static_cast<unsigned>(k)));
        }
        const RunReport report = test::solved(model, "balance");
        ASSERT_EQ(report.code(), 0) << report.message;
        for (const SeamState& seam : report.seams) {
            const double put =
                test::sum(seam.overburden) + test::sum(seam.multiple) + test::sum(seam.surface);
            EXPECT_NEAR(test::sum(seam.total) / put, 1.0, 1e-5) << "seed " << seed;
        }
    }
}

TEST(SolverIdentities, StripPillarsCarryTheTributaryLoad) {
    CModelDat model = test::solidModel(60, 10);
    model.convergenceCriterion = 1e-11;
    model.overRelaxation = 1.7;
    constexpr int kRoom = 4;
    constexpr int kPillar = 6;
    for (int i = 0; i < 60; ++i)
        for (int j = 0; j < 10; ++j)
            if ((i + 7) % (kRoom + kPillar) < kRoom)
                model.codes[0][0][at(model, i, j)] = '1';
    const RunReport report = test::solved(model, "strips");
    ASSERT_EQ(report.code(), 0) << report.message;
    const double q = 0.09 * 12000.0;
    // Pillars from column 7 on; the middles of the rooms are mirror planes but for the ends.
    for (int first = 7; first + kPillar <= 57; first += kRoom + kPillar) {
        double carried = 0.0;
        for (int i = first; i < first + kPillar; ++i)
            carried += report.seams[0].total[at(model, i, 5)];
        EXPECT_NEAR(carried / kPillar, q * (kRoom + kPillar) / kPillar, 1e-4 * q) << first;
    }
}

TEST(SolverIdentities, ShiftedOriginsChangeNothing) {
    CModelDat model = test::solidModel(20, 30);
    model.convergenceCriterion = 1e-5;
    model.surfaceEffects = true;
    model.seams.push_back({300.0, -180.0, -10500.0, 60.0});
    model.codes[0] = {anyCodes(model, 5), anyCodes(model, 6)};
    const RunReport here = test::solved(model, "here");
    for (Seam& seam : model.seams) {
        seam.x += 65536.0;
        seam.y -= 1048576.0;
    }
    const RunReport there = test::solved(model, "there");
    ASSERT_EQ(here.code(), 0) << here.message;
    ASSERT_EQ(there.code(), 0) << there.message;
    for (std::size_t s = 0; s < 2; ++s) {
        EXPECT_EQ(here.seams[s].convergence, there.seams[s].convergence);
        EXPECT_EQ(here.seams[s].total, there.seams[s].total);
        EXPECT_EQ(here.seams[s].multiple, there.seams[s].multiple);
        EXPECT_EQ(here.seams[s].surface, there.seams[s].surface);
    }
}

TEST(SolverIdentities, AMirroredPlanGivesTheMirroredResult) {
    CModelDat model = test::solidModel(30, 20);
    model.boundaries = {0, 1, 1, 0};
    model.codes[0][0] = anyCodes(model, 8);
    CModelDat mirrored = model;
    mirrored.boundaries = {0, 0, 1, 1};
    for (int i = 0; i < model.nX; ++i)
        for (int j = 0; j < model.nY; ++j)
            mirrored.codes[0][0][at(model, model.nX - 1 - i, j)] =
                model.codes[0][0][at(model, i, j)];
    const RunReport a = test::solved(model, "plan");
    const RunReport b = test::solved(mirrored, "mirrored");
    ASSERT_EQ(a.code(), 0) << a.message;
    ASSERT_EQ(b.code(), 0) << b.message;
    for (int i = 0; i < model.nX; ++i)
        for (int j = 0; j < model.nY; ++j)
            EXPECT_NEAR(a.seams[0].convergenceAt(i, j),
                        b.seams[0].convergenceAt(model.nX - 1 - i, j), 1e-6);
}

TEST(Exponential, IsWithinTwoUnitsInTheLastPlace) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> any(-700.0, 709.0);
    for (int k = 0; k < 100'000; ++k) {
        const double x = k % 2 == 0 ? any(random) : any(random) / 1000.0;
        const double exact = std::exp(x);
        const double ulp = std::nextafter(exact, 1e308) - exact;
        ASSERT_LE(std::abs(exponential(x) - exact), 2.0 * ulp) << x;
    }
    EXPECT_EQ(exponential(0.0), 1.0);
    EXPECT_EQ(exponential(710.0), std::numeric_limits<double>::infinity());
    EXPECT_EQ(exponential(-std::numeric_limits<double>::infinity()), 0.0);
    EXPECT_TRUE(std::isnan(exponential(std::numeric_limits<double>::quiet_NaN())));
}
