#include "base/file.h"
#include "stress/influence.h"
#include "stress/material.h"
#include "stress/relaxation.h"
#include "stress/result_file.h"
#include "stress/solver.h"
#include "tests/stress/solid_model.h"
#include "tests/support/literal_influence.h"

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
using test::runBase;
using test::solidModel;
using test::solved;
using test::sum;

namespace {

// --- a second, literal solver: the formulas as they stand, arrays from 1, nothing fused
// -------------

using Matrix = std::vector<std::vector<double>>;

Matrix matrix(int nX, int nY) {
    return Matrix(static_cast<std::size_t>(nX) + 2,
                  std::vector<double>(static_cast<std::size_t>(nY) + 2, 0.0));
}

double& cell(Matrix& m, int i, int j) {
    return m[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
}
double cell(const Matrix& m, int i, int j) {
    return m[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
}

// The laws as the model's description states them.
double literalLaw(const Material& material, double e) {
    const auto& p = material.p;
    switch (material.type) {
    case MaterialType::linearElasticCoal:
        return p[0] * e;
    case MaterialType::strainSofteningCoal:
        if (e < p[1])
            return p[0] / p[1] * e;
        return e < p[3] ? p[0] + (p[2] - p[0]) * (e - p[1]) / (p[3] - p[1]) : p[2];
    case MaterialType::elasticPlasticCoal:
        return e < p[1] ? p[0] / p[1] * e : p[0] + p[2] * (e - p[1]);
    case MaterialType::biLinearHardeningGob:
        e /= p[3];
        return e < p[1] ? p[0] / p[1] * e : p[0] + p[2] * (e - p[1]);
    case MaterialType::strainHardeningGob: {
        const double b = (p[1] - p[0]) / p[2];
        return p[0] / b * (std::exp(b * e / p[3]) - 1.0);
    }
    case MaterialType::linearElasticGob:
        return p[0] * e / p[2];
    }
    return 0.0;
}

struct LiteralSeam {
    Matrix u, stress, overburden, surface, multiple;
};

class LiteralSolver {
  public:
    explicit LiteralSolver(const CModelDat& model)
        : m_(model),
          lambda_(std::sqrt(model.laminationThickness * model.laminationThickness /
                            (12.0 * (1.0 - model.poissonsRatio * model.poissonsRatio)))) {
        for (const Seam& seam : m_.seams) {
            LiteralSeam s{matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY),
                          matrix(m_.nX, m_.nY), matrix(m_.nX, m_.nY)};
            for (auto& column : s.overburden)
                std::fill(column.begin(), column.end(), m_.gradient * std::abs(seam.z));
            seams.push_back(std::move(s));
        }
    }

    void run() {
        for (int step = 0; step < m_.steps; ++step) {
            for (LiteralSeam& s : seams)
                s.stress = matrix(m_.nX, m_.nY);
            for (int k = 0; k < m_.seamCount(); ++k)
                sor(step, k);
            const int factors[] = {1, 2, 5, 10};
            const int limits[] = {20, 100, 500, 1000};
            for (int level = 3; level >= 0; --level) {
                int most = 0;
                do {
                    if (m_.seamCount() > 1 || m_.surfaceEffects)
                        external(factors[level]);
                    most = 0;
                    for (int k = 0; k < m_.seamCount(); ++k)
                        most = std::max(most, sor(step, k));
                } while (most > limits[level]);
            }
            afterStep.push_back(seams);
            if (m_.offSeamDisplacements)
                offSeam.push_back(displacements());
        }
    }

    std::vector<LiteralSeam> seams;
    std::vector<std::vector<LiteralSeam>> afterStep;
    std::vector<std::vector<double>> offSeam; // [step][block]
    std::vector<int> iterations;

  private:
    double elementStressAt(LiteralSeam& s, int step, int k, int i, int j) {
        const auto at = static_cast<std::size_t>((i - 1) * m_.nY + (j - 1));
        const char code = m_.codes[static_cast<std::size_t>(step)][static_cast<std::size_t>(k)][at];
        const double strain = cell(s.u, i, j) / m_.seams[static_cast<std::size_t>(k)].thickness;
        if (code == '1')
            return strain <= 1.0 ? 0.0
                                 : 0.1 * m_.modulus * (strain - 1.0) + 0.9 * cell(s.stress, i, j);
        return literalLaw(m_.materials[static_cast<std::size_t>(code - 'A')], strain);
    }

    void stresses(LiteralSeam& s, int step, int k) {
        for (int i = 1; i <= m_.nX; ++i)
            for (int j = 1; j <= m_.nY; ++j)
                cell(s.stress, i, j) = elementStressAt(s, step, k, i, j);
    }

    void boundaries(Matrix& u) {
        const Boundaries& b = m_.boundaries;
        const int nX = m_.nX;
        const int nY = m_.nY;
        for (int i = 0; b.north == 1 && i <= nX + 1; ++i)
            cell(u, i, nY + 1) = cell(u, i, nY);
        for (int j = 0; b.east == 1 && j <= nY + 1; ++j)
            cell(u, nX + 1, j) = cell(u, nX, j);
        for (int i = 0; b.south == 1 && i <= nX + 1; ++i)
            cell(u, i, 0) = cell(u, i, 1);
        for (int j = 0; b.west == 1 && j <= nY + 1; ++j)
            cell(u, 0, j) = cell(u, 1, j);
    }

    int sor(int step, int k) {
        LiteralSeam& s = seams[static_cast<std::size_t>(k)];
        const double w = m_.overRelaxation;
        const double kk = w / 4.0;
        const double c = (2.0 / (lambda_ * m_.modulus)) * m_.elementWidth * m_.elementWidth * kk;
        int n = 0;
        double largest = 0.0;
        do {
            ++n;
            stresses(s, step, k);
            boundaries(s.u);
            largest = 0.0;
            for (int i = 1; i <= m_.nX; ++i) {
                for (int j = 1; j <= m_.nY; ++j) {
                    const double old = cell(s.u, i, j);
                    const double next = kk * (cell(s.u, i - 1, j) + cell(s.u, i + 1, j) +
                                              cell(s.u, i, j - 1) + cell(s.u, i, j + 1)) +
                                        (1.0 - w) * old -
                                        c * (cell(s.stress, i, j) - cell(s.overburden, i, j) -
                                             cell(s.multiple, i, j) - cell(s.surface, i, j));
                    cell(s.u, i, j) = next;
                    largest = std::max(largest, std::abs(next - old));
                }
            }
        } while (largest > m_.convergenceCriterion);
        stresses(s, step, k);
        iterations.push_back(n - 1);
        return n - 1;
    }

    void propagate(int from, double h, int to, int factor, Matrix& out) {
        const Seam& source = m_.seams[static_cast<std::size_t>(from)];
        const Seam& receiver = m_.seams[static_cast<std::size_t>(to)];
        const double a = m_.elementWidth;
        const double as = a * factor;
        for (int si = 1; si <= m_.nX / factor; ++si) {
            for (int sj = 1; sj <= m_.nY / factor; ++sj) {
                double d = 0.0;
                for (int p = 1; p <= factor; ++p)
                    for (int q = 1; q <= factor; ++q)
                        d += cell(seams[static_cast<std::size_t>(from)].u, (si - 1) * factor + p,
                                  (sj - 1) * factor + q);
                d /= factor * factor;
                const double xs = (si - 0.5) * as + source.x;
                const double ys = (sj - 0.5) * as + source.y;
                const double px = (xs - receiver.x) / a + 0.5;
                const double py = (ys - receiver.y) / a + 0.5;
                const double reach = 10.0 * std::abs(h) / a;
                const int i0 = std::max(1, static_cast<int>(std::floor(px - reach)));
                const int i1 = std::min(m_.nX, static_cast<int>(std::ceil(px + reach)));
                const int j0 = std::max(1, static_cast<int>(std::floor(py - reach)));
                const int j1 = std::min(m_.nY, static_cast<int>(std::ceil(py + reach)));
                for (int i = i0; i <= i1; ++i) {
                    for (int j = j0; j <= j1; ++j) {
                        const double dx = (i - 0.5) * a + receiver.x - xs;
                        const double dy = (j - 0.5) * a + receiver.y - ys;
                        const double z = (dx * dx + dy * dy) / (4.0 * lambda_ * std::abs(h));
                        cell(out, i, j) += m_.modulus * as * as * d /
                                           (8.0 * std::numbers::pi * lambda_ * h * h) * (z - 1.0) *
                                           std::exp(-z);
                    }
                }
            }
        }
    }

    void external(int factor) {
        for (LiteralSeam& s : seams) {
            s.surface = matrix(m_.nX, m_.nY);
            s.multiple = matrix(m_.nX, m_.nY);
        }
        for (int from = 0; from < m_.seamCount(); ++from) {
            for (int to = 0; to < m_.seamCount(); ++to) {
                const double zFrom = m_.seams[static_cast<std::size_t>(from)].z;
                const double zTo = m_.seams[static_cast<std::size_t>(to)].z;
                LiteralSeam& receiver = seams[static_cast<std::size_t>(to)];
                if (from != to)
                    propagate(from, zFrom - zTo, to, factor, receiver.multiple);
                if (m_.surfaceEffects)
                    propagate(from, zFrom + zTo, to, factor, receiver.surface);
            }
        }
    }

    std::vector<double> displacements() {
        const OffSeamGrid& g = m_.offSeam;
        const ElementField points{g.x, g.y, g.blockWidth, g.nX, g.nY};
        std::vector<double> out(static_cast<std::size_t>(g.nX * g.nY), 0.0);
        for (std::size_t k = 0; k < seams.size(); ++k) {
            const Seam& seam = m_.seams[k];
            const ElementField field{seam.x, seam.y, m_.elementWidth, m_.nX, m_.nY};
            std::vector<double> closure;
            for (int i = 1; i <= m_.nX; ++i)
                for (int j = 1; j <= m_.nY; ++j)
                    closure.push_back(cell(seams[k].u, i, j));
            const auto add = [&](double h, double sign) {
                std::vector<double> part(out.size(), 0.0);
                test::addLiteralInfluence(test::InfluenceKind::displacement,
                                          {m_.modulus, lambda_, h}, field, 0, m_.nX, closure,
                                          points, part);
                for (std::size_t n = 0; n < out.size(); ++n)
                    out[n] += sign * part[n];
            };
            const double above = std::abs(seam.z) - std::abs(g.z);
            add(above, above > 0.0 ? 1.0 : -1.0);
            if (m_.surfaceEffects)
                add(std::abs(seam.z) + std::abs(g.z), 1.0);
        }
        return out;
    }

    const CModelDat& m_;
    double lambda_;
};

// A plan of its own for every number: seams, offsets, steps, edges, units, surface, off-seam grid.
CModelDat randomModel(int plan, std::mt19937& random) {
    CModelDat model = solidModel(20, 30);
    model.convergenceCriterion = 1e-4;
    model.unitSystem = plan % 4;
    model.steps = 1 + plan % 2;
    const int seams = 1 + plan % 4;
    model.seams.clear();
    for (int k = 0; k < seams; ++k)
        model.seams.push_back({37.0 * k, -55.0 * k, -9000.0 - 1500.0 * k, 72.0 + 12.0 * k});
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

TEST(Influence, EqualsTheDirectSumAndVanishesForUniformClosure) {
    const Influence influence{3e6, 180.0, -900.0};
    const ElementField sources{13.0, -40.0, 120.0, 37, 23};
    const ElementField receivers{-400.0, 200.0, 60.0, 60, 50};
    std::mt19937 random(3);
    std::uniform_real_distribution<double> closure(0.0, 2.0);
    std::vector<double> field(37 * 23);
    for (double& d : field)
        d = closure(random);
    std::vector<double> fast(60 * 50, 0.0);
    base::NoProgress progress;
    ASSERT_TRUE(addInfluenceStress(influence, sources, field, receivers, fast, progress));
    double largest = 0.0;
    double worst = 0.0;
    for (int i = 0; i < 60; ++i) {
        for (int j = 0; j < 50; ++j) {
            double direct = 0.0;
            for (int k = 0; k < 37; ++k) {
                for (int m = 0; m < 23; ++m) {
                    const double xs = sources.x + (k + 0.5) * 120.0;
                    const double ys = sources.y + (m + 0.5) * 120.0;
                    const double px = (xs - receivers.x) / 60.0 + 0.5;
                    const double py = (ys - receivers.y) / 60.0 + 0.5;
                    const double reach = 10.0 * 900.0 / 60.0;
                    if (i + 1 < std::floor(px - reach) || i + 1 > std::ceil(px + reach) ||
                        j + 1 < std::floor(py - reach) || j + 1 > std::ceil(py + reach))
                        continue;
                    const double dx = receivers.x + (i + 0.5) * 60.0 - xs;
                    const double dy = receivers.y + (j + 0.5) * 60.0 - ys;
                    const double z = (dx * dx + dy * dy) / (4.0 * 180.0 * 900.0);
                    direct += 3e6 * 120.0 * 120.0 * field[static_cast<std::size_t>(k * 23 + m)] /
                              (8.0 * std::numbers::pi * 180.0 * 900.0 * 900.0) * (z - 1.0) *
                              std::exp(-z);
                }
            }
            largest = std::max(largest, std::abs(direct));
            worst = std::max(worst, std::abs(direct - fast[static_cast<std::size_t>(i * 50 + j)]));
        }
    }
    EXPECT_LT(worst, 2e-14 * largest);

    // Over all space (z - 1) exp(-z) integrates to 0.
    const ElementField wide{0.0, 0.0, 50.0, 200, 200};
    std::vector<double> stress(200 * 200, 0.0);
    ASSERT_TRUE(addInfluenceStress({3e6, 180.0, 300.0}, wide, std::vector<double>(40000, 1.0), wide,
                                   stress, progress));
    const double peak = 3e6 / (2.0 * 300.0); // of one element's worth of closure, spread
    EXPECT_LT(std::abs(stress[100 * 200 + 100]), 1e-6 * peak);
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

TEST(Solver, ACancelKeepsWhatTheFinishedStepsWrote) {
    class CancelInStep2 final : public RunWatch {
      public:
        void status(const std::string& text) override {
            inStep2_ = inStep2_ || text.find("Step 2") != std::string::npos;
        }
        bool cancelled() override { return inStep2_; }

      private:
        bool inStep2_ = false;
    };
    CModelDat model = solidModel(10, 10);
    model.steps = 2;
    model.codes.push_back(model.codes[0]);
    CancelInStep2 watch;
    const auto base = runBase("cancel");
    const RunReport report = solve(model, base, watch);
    EXPECT_EQ(report.ending, RunReport::Ending::cancelled);
    EXPECT_EQ(report.code(), 1);
    EXPECT_EQ(report.stepsDone, 1);
    const auto results = base::readFile(resultPath(base, 1));
    ASSERT_TRUE(results.ok());
    EXPECT_EQ(std::count(results->begin(), results->end(), '\n'), 3 + 100);
    EXPECT_TRUE(results->starts_with("  2,     100,          120,  10,  10,            0,"));
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
