#include "base/file.h"
#include "stress/influence.h"
#include "stress/material.h"
#include "stress/relaxation.h"
#include "stress/result_file.h"
#include "stress/solver.h"
#include "tests/stress/literal_solver.h"
#include "tests/stress/solid_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <numeric>
#include <random>
#include <sstream>

using namespace tessaran;
using namespace tessaran::stress;
using test::cell;
using test::LiteralSeam;
using test::LiteralSolver;
using test::runBase;
using test::solidModel;
using test::solved;
using test::sum;

namespace {

// A plan of its own for every number: seams, offsets, steps, edges, units, surface, off-seam grid.
CModelDat randomModel(int plan, std::mt19937& random) {
    CModelDat model = solidModel(20, 30);
    model.convergenceCriterion = 1e-4;
    model.unitSystem = plan % 4;
    model.steps = 1 + plan % 2;
    const int seams = 1 + plan % 4;
    // Near seams under stiff layers: windows of 17 elements that end where terms still count.
    const bool near = plan == 1 || plan == 2;
    const double gap = near ? 200.0 : 1500.0;
    if (near)
        model.laminationThickness = 30000.0;
    model.seams.clear();
    for (int k = 0; k < seams; ++k)
        model.seams.push_back({37.0 * k, -55.0 * k, -9000.0 - gap * k, 72.0 + 12.0 * k});
    model.surfaceEffects = plan >= 3;
    model.offSeamDisplacements = plan % 2 == 1;
    model.offSeam = {12 * 9, 150.0, 12, 9, -70.0, 40.0, plan % 3 == 0 ? -8000.0 : -10000.0};
    model.boundaries = {plan % 2, 1, (plan / 2) % 2, 1};
    model.codes.clear();
    for (int step = 0; step < model.steps; ++step) {
        std::vector<ElementCodes> maps;
        for (int k = 0; k < seams; ++k) {
            ElementCodes codes(600);
            for (char& code : codes) {
                const unsigned pick = static_cast<unsigned>(random() % 9u);
                code = pick > 5 ? '1' : static_cast<char>('A' + static_cast<int>(pick));
            }
            maps.push_back(codes);
        }
        model.codes.push_back(maps);
    }
    return model;
}

// The numbers of a result file behind its header lines.
std::vector<double> numbersOf(const std::filesystem::path& path) {
    std::string text = base::readFile(path).value();
    for (int line = 0; line < 3; ++line)
        text.erase(0, text.find('\n') + 1);
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream in(text);
    std::vector<double> out;
    for (double number = 0.0; in >> number;)
        out.push_back(number);
    return out;
}

// Five significant digits are printed. Where terms cancel, `noise` is what is left of them.
void expectPrinted(double printed, double expected, double noise) {
    ASSERT_NEAR(printed, expected, 1.0001e-4 * std::abs(expected) + noise);
}

void expectResultFiles(const CModelDat& model, const LiteralSolver& literal,
                       const std::filesystem::path& base) {
    const double length = model.units().lengthFactor;
    const double stress = model.units().stressFactor;
    for (int k = 0; k < model.seamCount(); ++k) {
        const std::vector<double> numbers = numbersOf(resultPath(base, k + 1));
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(model.steps * model.elements() * 5));
        std::size_t next = 0;
        for (const std::vector<LiteralSeam>& step : literal.afterStep) {
            const LiteralSeam& l = step[static_cast<std::size_t>(k)];
            for (int i = 1; i <= model.nX; ++i) {
                for (int j = 1; j <= model.nY; ++j) {
                    expectPrinted(numbers[next++], cell(l.u, i, j) * length, 1e-9);
                    expectPrinted(numbers[next++], cell(l.stress, i, j) * stress, 1e-6 * stress);
                    expectPrinted(numbers[next++], cell(l.surface, i, j) * stress, 1e-6 * stress);
                    expectPrinted(numbers[next++], cell(l.multiple, i, j) * stress, 1e-6 * stress);
                    expectPrinted(numbers[next++], cell(l.overburden, i, j) * stress, 0.0);
                }
            }
        }
    }
    if (!model.offSeamDisplacements)
        return;
    const std::vector<double> numbers = numbersOf(offSeamPath(base));
    const std::size_t blocks = literal.offSeam.front().size();
    ASSERT_EQ(numbers.size(), literal.offSeam.size() * blocks);
    for (std::size_t n = 0; n < numbers.size(); ++n)
        expectPrinted(numbers[n], literal.offSeam[n / blocks][n % blocks] * length, 1e-9);
}

} // namespace

TEST(Solver, UniformCoalClosesByLoadTimesThicknessOverModulus) {
    const CModelDat model = solidModel(20, 10);
    const RunReport report = solved(model, "uniform");
    ASSERT_EQ(report.code(), 0) << report.message;
    const double q = 0.09 * 12000.0;
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 10; ++j)
            EXPECT_NEAR(report.seams[0].convergenceAt(i, j), q * 72.0 / 3e5, 1e-6);
    EXPECT_NEAR(report.seams[0].total[57], q, 1e-2);
}

TEST(Solver, ASlotBetweenElasticCoalFollowsTheDifferenceSolution) {
    constexpr int kOpen = 6;
    constexpr int kFirst = 97;
    CModelDat model = solidModel(200, 10);
    model.convergenceCriterion = 1e-12;
    model.overRelaxation = 1.8;
    for (int i = kFirst; i < kFirst + kOpen; ++i)
        for (int j = 0; j < 10; ++j)
            model.codes[0][0][static_cast<std::size_t>(i * 10 + j)] = '1';
    const RunReport report = solved(model, "slot");
    ASSERT_EQ(report.code(), 0) << report.message;
    const double q = 0.09 * 12000.0;
    const double a = model.elementWidth;
    const double s = 2.0 * a * a * 3e5 / (model.modulus * laminationConstant(model) * 72.0);
    const double r = 1.0 + s / 2.0 - std::sqrt(s + s * s / 4.0);
    for (int j = 1; j <= 40; ++j) {
        const double expected = q * (1.0 + kOpen / 2.0 * (1.0 - r) * std::pow(r, j - 1));
        const std::size_t east = static_cast<std::size_t>((kFirst + kOpen + j - 1) * 10 + 4);
        const std::size_t west = static_cast<std::size_t>((kFirst - j) * 10 + 7);
        EXPECT_NEAR(report.seams[0].total[east] / expected, 1.0, 1e-6) << j;
        EXPECT_NEAR(report.seams[0].total[west] / expected, 1.0, 1e-6) << j;
    }
}

TEST(Solver, IsTheLiteralSolverOnRandomPlans) {
    std::mt19937 random(7);
    for (int plan = 0; plan < 8; ++plan) {
        SCOPED_TRACE(testing::Message() << "plan " << plan);
        const CModelDat model = randomModel(plan, random);
        const RunReport report = solved(model, "random");
        ASSERT_EQ(report.code(), 0) << report.message;
        LiteralSolver literal(model);
        literal.run();
        long counted = 0;
        for (const SeamProfile& seam : report.profile)
            for (const LevelProfile& level : seam)
                counted += level.iterations;
        EXPECT_EQ(counted,
                  std::accumulate(literal.iterations.begin(), literal.iterations.end(), 0L));
        expectResultFiles(model, literal,
                          std::filesystem::temp_directory_path() / "tessaran_solver_test" /
                              "random");
    }
}

TEST(Solver, WithMirroredEdgesElementsCarryExactlyWhatIsPutOnThem) {
    CModelDat model = solidModel(40, 40);
    model.convergenceCriterion = 1e-10;
    model.surfaceEffects = true;
    model.seams.push_back({0.0, 0.0, -10500.0, 60.0});
    model.codes[0].push_back(model.codes[0][0]);
    for (int i = 10; i < 22; ++i)
        for (int j = 14; j < 20; ++j)
            model.codes[0][0][static_cast<std::size_t>(i * 40 + j)] = i < 14 ? '1' : 'E';
    const RunReport report = solved(model, "balance");
    ASSERT_EQ(report.code(), 0) << report.message;
    for (const SeamState& seam : report.seams) {
        const double carried = sum(seam.total);
        const double put = sum(seam.overburden) + sum(seam.multiple) + sum(seam.surface);
        EXPECT_NEAR(carried / put, 1.0, 1e-6);
    }
}

TEST(Solver, EndsWithTheCauseWhenItCannotConverge) {
    CModelDat model = solidModel(10, 10);
    model.codes[0][0][55] = '1';
    model.maxIterations = 100;
    model.convergenceCriterion = 1e-300;
    RunReport report = solved(model, "limit");
    EXPECT_EQ(report.code(), 1);
    EXPECT_TRUE(report.message.starts_with("Maximum Number of Iterations Reached - SOR1"));
    const auto log = base::readFile(runBase("nothing").parent_path() / "limit.out");
    ASSERT_TRUE(log.ok());
    EXPECT_NE(log->find("iteration number = 100, maximum displacement = "), std::string::npos);

    model = solidModel(10, 10);
    model.codes[0][0][55] = '1';
    model.overRelaxation = 2.5;
    report = solved(model, "unstable");
    EXPECT_EQ(report.code(), 1);
    EXPECT_NE(report.message.find("smaller over-relaxation factor"), std::string::npos);

    model = solidModel(10, 10);
    model.codes[0][0][23] = '0';
    report = solved(model, "badcode");
    EXPECT_EQ(report.message, "Material Code Out of Range in Element Stress Routine - ES1\n"
                              "i = 3, j = 4, integer code = 26\n");
}

TEST(Solver, TurnedAndMirroredPlansGiveTurnedAndMirroredResults) {
    CModelDat model = solidModel(20, 20);
    std::mt19937 random(11);
    for (char& code : model.codes[0][0])
        code = random() % 4u == 0 ? '1' : 'A';
    CModelDat turned = model;
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 20; ++j)
            turned.codes[0][0][static_cast<std::size_t>((19 - j) * 20 + i)] =
                model.codes[0][0][static_cast<std::size_t>(i * 20 + j)];
    const RunReport a = solved(model, "plan");
    const RunReport b = solved(turned, "turned");
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 20; ++j)
            EXPECT_NEAR(a.seams[0].convergenceAt(i, j), b.seams[0].convergenceAt(19 - j, i), 1e-6);
}
