#include "stress/influence.h"
#include "tests/support/literal_influence.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

using namespace tessaran;
using namespace tessaran::stress;

namespace {

std::size_t countOf(const ElementField& field) {
    return static_cast<std::size_t>(field.nX) * static_cast<std::size_t>(field.nY);
}

std::vector<double> anyClosure(const ElementField& field) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> closure(0.0, 2.0);
    std::vector<double> out(countOf(field));
    for (double& d : out)
        d = closure(random);
    return out;
}

void expectDirectSum(const Influence& influence, const ElementField& sources,
                     const ElementField& receivers) {
    const std::vector<double> closure = anyClosure(sources);
    base::NoProgress progress;
    for (const auto kind : {test::InfluenceKind::stress, test::InfluenceKind::displacement}) {
        std::vector<double> fast(countOf(receivers), 0.0);
        std::vector<double> direct = fast;
        if (kind == test::InfluenceKind::stress)
            ASSERT_TRUE(addInfluenceStress(influence, sources, closure, receivers, fast, progress));
        else
            ASSERT_TRUE(addInfluenceDisplacement(influence, 1.0, sources, closure, receivers, fast,
                                                 progress));
        test::addLiteralInfluence(kind, influence, sources, 0, sources.nX, closure, receivers,
                                  direct);
        double largest = 0.0;
        double worst = 0.0;
        for (std::size_t k = 0; k < direct.size(); ++k) {
            largest = std::max(largest, std::abs(direct[k]));
            worst = std::max(worst, std::abs(direct[k] - fast[k]));
        }
        EXPECT_GT(largest, 0.0);
        EXPECT_LT(worst, 2e-14 * largest);
    }
}

} // namespace

TEST(Influence, OfOneElementByHand) {
    // E = 8 pi, lambda = 1, h = 25, a = 10: E a^2 / (8 pi lambda h^2) = 0.16, 4 lambda h = 100, so
    // that z counts the squared distance in elements.
    const Influence influence{8.0 * std::numbers::pi, 1.0, 25.0};
    const ElementField field{0.0, 0.0, 10.0, 5, 5};
    std::vector<double> closure(25, 0.0);
    closure[12] = 2.0; // the middle one
    std::vector<double> stress(25, 0.0);
    std::vector<double> down(25, 0.0);
    base::NoProgress progress;
    ASSERT_TRUE(addInfluenceStress(influence, field, closure, field, stress, progress));
    ASSERT_TRUE(addInfluenceDisplacement(influence, -1.0, field, closure, field, down, progress));
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j) {
            const double z = (i - 2) * (i - 2) + (j - 2) * (j - 2);
            const auto at = static_cast<std::size_t>(5 * i + j);
            EXPECT_NEAR(stress[at], 0.32 * (z - 1.0) * std::exp(-z), 1e-15);
            // a^2 d / (8 pi lambda h) = 200 / (200 pi)
            EXPECT_NEAR(down[at], -std::exp(-z) / std::numbers::pi, 1e-15);
        }
    EXPECT_DOUBLE_EQ(stress[12], -0.32);
    EXPECT_NEAR(stress[13], 0.0, 1e-16); // z = 1
    EXPECT_NEAR(stress[14], 0.96 * std::exp(-4.0), 1e-16);
}

TEST(Influence, EqualsTheDirectSum) {
    const ElementField sources{13.0, -40.0, 120.0, 37, 23};
    const ElementField receivers{-400.0, 200.0, 60.0, 60, 50};
    for (const double h : {-900.0, 300.0})
        expectDirectSum({3e6, 180.0, h}, sources, receivers);
    // Windows that end where terms still count: 10 |h| is a few elements, z at the edge below 10.
    for (const double h : {-60.0, 61.0, 25.0, 12.0})
        expectDirectSum({3e6, 180.0, h}, sources, receivers);
    // Coarse sources whose centres lie on the receivers' edges: the window's ends are whole
    // numbers.
    expectDirectSum({3e6, 180.0, 60.0}, {0.0, 0.0, 600.0, 8, 6}, {0.0, 0.0, 60.0, 80, 60});
    expectDirectSum({3e6, 180.0, 48.0}, {0.0, 0.0, 120.0, 30, 30}, {0.0, 0.0, 60.0, 60, 60});
    // More receivers than are summed together.
    expectDirectSum({3e6, 20.0, 200.0}, {0.0, 0.0, 50.0, 12, 9}, {-300.0, 70.0, 10.0, 150, 140});
}

TEST(Influence, OfUniformClosureVanishes) {
    // Over all space (z - 1) exp(-z) integrates to 0.
    base::NoProgress progress;
    const ElementField wide{0.0, 0.0, 50.0, 200, 200};
    std::vector<double> stress(200 * 200, 0.0);
    ASSERT_TRUE(addInfluenceStress({3e6, 180.0, 300.0}, wide, std::vector<double>(40000, 1.0), wide,
                                   stress, progress));
    const double peak = 3e6 / (2.0 * 300.0); // of one element's worth of closure, spread
    EXPECT_LT(std::abs(stress[100 * 200 + 100]), 1e-6 * peak);
}
