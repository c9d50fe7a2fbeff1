#include "stress/material.h"
#include "stress/relaxation.h"
#include "tests/stress/each_width.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace tessaran;
using namespace tessaran::stress;

TEST(Materials, LawsAtBelowAndAboveTheirBreaks) {
    const Material coal{MaterialType::linearElasticCoal, {3e5, 0, 0, 0, 0}};
    EXPECT_DOUBLE_EQ(elementStress(coal, 0.01), 3000.0);
    EXPECT_EQ(elementStress(coal, 0.0), 0.0);

    const Material softening{MaterialType::strainSofteningCoal, {4000, 0.01, 800, 0.04, 0}};
    EXPECT_DOUBLE_EQ(elementStress(softening, 0.005), 2000.0);
    EXPECT_DOUBLE_EQ(elementStress(softening, 0.01), 4000.0);
    EXPECT_DOUBLE_EQ(elementStress(softening, 0.025), 2400.0); // half way down
    EXPECT_DOUBLE_EQ(elementStress(softening, 0.04), 800.0);
    EXPECT_DOUBLE_EQ(elementStress(softening, 0.5), 800.0);
    EXPECT_DOUBLE_EQ(elementStress(softening, -0.001), -400.0);

    const Material plastic{MaterialType::elasticPlasticCoal, {4000, 0.01, 20000, 0.3, 0}};
    EXPECT_DOUBLE_EQ(elementStress(plastic, 0.0025), 1000.0);
    EXPECT_DOUBLE_EQ(elementStress(plastic, 0.01), 4000.0);
    EXPECT_DOUBLE_EQ(elementStress(plastic, 0.02), 4200.0);

    const Material biLinear{MaterialType::biLinearHardeningGob, {100, 0.1, 5000, 2, 0}};
    EXPECT_DOUBLE_EQ(elementStress(biLinear, 0.1), 50.0);  // e = 0.05
    EXPECT_DOUBLE_EQ(elementStress(biLinear, 0.2), 100.0); // at the break the upper branch
    EXPECT_DOUBLE_EQ(elementStress(biLinear, 0.4), 600.0);

    // The tangent modulus grows from P1 at no stress to P2 at the peak stress.
    const Material hardening{MaterialType::strainHardeningGob, {100, 35000, 4000, 1, 0}};
    const double b = (35000.0 - 100.0) / 4000.0;
    const double atPeak = std::log(4000.0 * b / 100.0 + 1.0) / b;
    EXPECT_NEAR(elementStress(hardening, atPeak), 4000.0, 1e-8);
    const double h = 1e-6;
    EXPECT_NEAR((elementStress(hardening, atPeak + h) - elementStress(hardening, atPeak - h)) /
                    (2 * h),
                35000.0, 0.01);
    const Material straight{MaterialType::strainHardeningGob, {100, 100, 4000, 2, 0}};
    EXPECT_DOUBLE_EQ(elementStress(straight, 0.5), 25.0);

    const Material gob{MaterialType::linearElasticGob, {3000, 0, 2, 0, 0}};
    EXPECT_DOUBLE_EQ(elementStress(gob, 0.5), 750.0);
}

TEST(Materials, AnOverClosedEntryIsDamped) {
    EXPECT_EQ(contactStress(1e6, 1.0, 500.0), 0.0);
    double stress = 0.0;
    for (int n = 0; n < 200; ++n)
        stress = contactStress(1e6, 1.01, stress);
    EXPECT_NEAR(stress, 1e6 * 0.01, 1e-4); // approaches E (strain - 1), a tenth at a time
    EXPECT_NEAR(contactStress(1e6, 1.01, 0.0), 1000.0, 1e-9);
}

TEST(Materials, InverseRoutinesRefuseAStressAboveThePeak) {
    const Material softening{MaterialType::strainSofteningCoal, {4000, 0.01, 800, 0.04, 0}};
    EXPECT_DOUBLE_EQ(*strainSofteningStrain(softening, 1000.0), 0.0025);
    EXPECT_EQ(strainSofteningStrain(softening, 4000.5).error().text,
              "Stress is Greater Than Peak Stress - SSS1");
    EXPECT_DOUBLE_EQ(*strainSofteningStrain(softening, 4000.0), 0.01);
    const Material plastic{MaterialType::elasticPlasticCoal, {4000, 0.01, 20000, 0.3, 0}};
    EXPECT_DOUBLE_EQ(*elasticPlasticStrain(plastic, 2000.0), 0.005);
    EXPECT_DOUBLE_EQ(*elasticPlasticStrain(plastic, 4000.0), 0.01);
    EXPECT_EQ(elasticPlasticStrain(plastic, 4001).error().text,
              "Primitive Stress is Greater Than Peak Stress - EPS1");
}

namespace {

// Stresses that the sweep's own evaluation gives for strains of elements of one law each.
std::vector<double> evaluated(const std::vector<Material>& materials, std::uint8_t law,
                              const std::vector<double>& strains) {
    RelaxationProblem problem;
    problem.modulus = 1e6;
    problem.lambda = problem.width = problem.thickness = 1.0;
    problem.materials = materials;
    problem.maxIterations = 0; // nothing is relaxed: the stresses at what is there
    SeamState state(10, 10);
    for (int k = 0; k < 100; ++k)
        state.convergence[state.ghosted(k / 10, k % 10)] =
            strains[static_cast<std::size_t>(k) % strains.size()];
    ElementLaws laws;
    laws.law.assign(100, law);
    RelaxationWatch nobody;
    relax(problem, laws, state, nobody);
    return state.total;
}

} // namespace

// The table that vectors look laws up in is another writing of them: at each break, and at the
// numbers next to it, both must take the same branch.
TEST(Materials, VectorsTakeTheSameBranchAtEveryBreak) {
    struct Law {
        Material material;
        std::vector<double> breaks;
    };
    const std::vector<Law> laws{
        {{MaterialType::linearElasticCoal, {3e5, 0, 0, 0, 0}}, {0.0, 1.0}},
        {{MaterialType::strainSofteningCoal, {4000, 0.01, 800, 0.04, 0}}, {0.01, 0.04}},
        {{MaterialType::elasticPlasticCoal, {4000, 0.01, 20000, 0.3, 0}}, {0.01}},
        {{MaterialType::biLinearHardeningGob, {100, 0.1, 5000, 2, 0}}, {0.2}},
        {{MaterialType::biLinearHardeningGob, {100, 0.1, 5000, 1.7, 0}}, {0.1 * 1.7, 0.17}},
        {{MaterialType::strainHardeningGob, {100, 35000, 4000, 1.5, 0}}, {0.0, 0.5}},
        {{MaterialType::linearElasticGob, {3000, 0, 2, 0, 0}}, {0.0, 2.0}},
    };
    std::vector<Material> materials;
    for (const Law& law : laws)
        materials.push_back(law.material);
    for (std::size_t k = 0; k < laws.size(); ++k) {
        std::vector<double> strains{-0.003};
        for (const double at : laws[k].breaks)
            for (const double strain : {std::nextafter(at, -1e9), at, std::nextafter(at, 1e9)})
                strains.push_back(strain);
        test::EachWidth::run([&] {
            const std::vector<double> stresses =
                evaluated(materials, static_cast<std::uint8_t>(k), strains);
            for (std::size_t n = 0; n < stresses.size(); ++n) {
                const double strain = strains[n % strains.size()];
                ASSERT_EQ(stresses[n], elementStress(materials[k], strain))
                    << "law " << k << " at " << strain;
            }
        });
    }
    // An open entry carries nothing up to a strain of 1, at 1 too.
    const double above = std::nextafter(1.0, 2.0);
    test::EachWidth::run([&] {
        const std::vector<double> stresses =
            evaluated(materials, kOpenEntry, {1.0, above, 1.5, -1.0});
        for (std::size_t n = 0; n < stresses.size(); n += 4) {
            ASSERT_EQ(stresses[n], 0.0);
            ASSERT_EQ(stresses[n + 1], 0.1 * 1e6 * (above - 1.0));
            ASSERT_EQ(stresses[n + 2], 0.1 * 1e6 * 0.5);
            ASSERT_EQ(stresses[n + 3], 0.0);
        }
    });
}
