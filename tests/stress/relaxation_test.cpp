#include "stress/law_table.h"
#include "stress/relaxation.h"
#include "stress/sweep_kernel.h"
#include "tests/stress/each_width.h"
#include "tests/stress/solid_model.h"
#include "tests/support/literal_relaxation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <set>

using namespace tessaran;
using namespace tessaran::stress;

namespace {

std::vector<Material> everyType() {
    return test::solidModel(10, 10).materials;
}

struct Plan {
    RelaxationProblem problem;
    ElementLaws laws;
    SeamState state;
};

// Rooms of each law in blocks, single elements among them, loads that close some of the openings.
Plan randomPlan(unsigned seed, int nX, int nY, int materials) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Plan plan{{}, {}, SeamState(nX, nY)};
    RelaxationProblem& p = plan.problem;
    p.modulus = 3e6;
    p.lambda = 180.0;
    p.width = 120.0;
    p.thickness = seed % 2 == 0 ? 71.3 : 13.7; // the thin ones close
    p.omega = 1.3;
    p.criterion = 1e-6;
    p.maxIterations = 400; // some plans with closed openings go to and fro for ever
    p.boundaries = {static_cast<int>(seed % 2), static_cast<int>(seed / 2 % 2),
                    static_cast<int>(seed / 4 % 2), static_cast<int>(seed / 8 % 2)};
    const std::vector<Material> types = everyType();
    for (int k = 0; k < materials; ++k) {
        p.materials.push_back(types[static_cast<std::size_t>(k) % types.size()]);
        p.materials.back().p[0] *= 1.0 + 0.01 * k;
    }
    plan.laws.law.resize(plan.state.elements());
    std::vector<std::uint8_t> block(static_cast<std::size_t>((nX / 7 + 1) * (nY / 5 + 1)));
    const auto anyLaw = [&] {
        const auto pick = static_cast<int>(random() % static_cast<unsigned>(materials * 2));
        return pick < materials ? static_cast<std::uint8_t>(pick) : kOpenEntry;
    };
    for (auto& law : block)
        law = anyLaw();
    for (int i = 0; i < nX; ++i) {
        for (int j = 0; j < nY; ++j) {
            const std::size_t at = plan.state.plain(i, j);
            plan.laws.law[at] = random() % 10u == 0
                                    ? anyLaw()
                                    : block[static_cast<std::size_t>(i / 7 * (nY / 5 + 1) + j / 5)];
            plan.state.overburden[at] = seed % 4 == 0 ? 1111.1 : 1000.0 + 200.0 * unit(random);
            if (seed % 3 != 0)
                plan.state.multiple[at] = 500.0 * unit(random);
            if (seed % 3 == 2)
                plan.state.surface[at] = 5000.0 * unit(random);
            if (plan.laws.law[at] == kOpenEntry && random() % 20u == 0)
                plan.state.total[at] = 100.0 * unit(random);
        }
    }
    return plan;
}

class Listener final : public RelaxationWatch {
  public:
    void report(int iteration, double change, int x, int y) override {
        reports.push_back({iteration, change, x, y});
    }
    void overClosed(int x, int y) override {
        EXPECT_TRUE(told.insert({x, y}).second) << "told twice";
    }
    std::vector<test::LiteralReport> reports;
    std::set<std::pair<int, int>> told;
};

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a + 0.0) == std::bit_cast<std::uint64_t>(b + 0.0);
}

int differingConvergence(const SeamState& a, const SeamState& b) {
    int count = 0;
    for (int i = 0; i < a.nX; ++i)
        for (int j = 0; j < a.nY; ++j)
            count += !sameBits(a.convergenceAt(i, j), b.convergenceAt(i, j));
    return count;
}

int differingStresses(const SeamState& a, const SeamState& b) {
    int count = 0;
    for (std::size_t k = 0; k < a.total.size(); ++k)
        count += !sameBits(a.total[k], b.total[k]);
    return count;
}

void expectLiteral(const Plan& plan, const SeamState& literal, const test::LiteralOutcome& expected,
                   int threads) {
    SeamState state = plan.state;
    RelaxationProblem problem = plan.problem;
    problem.threads = threads;
    Listener listener;
    const RelaxationOutcome out = relax(problem, plan.laws, state, listener);
    EXPECT_EQ(differingConvergence(state, literal), 0);
    if (expected.converged) {
        EXPECT_EQ(out.ending, RelaxationOutcome::Ending::converged);
        EXPECT_EQ(out.iterations, expected.iterations - 1);
        EXPECT_EQ(differingStresses(state, literal), 0);
    } else {
        EXPECT_EQ(out.ending, RelaxationOutcome::Ending::iterationLimit);
    }
    EXPECT_EQ(listener.reports, expected.reports);
    EXPECT_EQ(out.overClosed, expected.overClosed);
    EXPECT_EQ(listener.told.empty(), expected.overClosed == 0);
}

} // namespace

TEST(Relaxation, IsThePlainLoopBitForBitAtEveryWidthAndNumberOfThreads) {
    struct Size {
        int nX;
        int nY;
        int materials;
    };
    unsigned seed = 0;
    long closed = 0;
    int converged = 0;
    for (const Size size : {Size{10, 10, 6},
                            {20, 50, 26},
                            {50, 30, 7},
                            {70, 40, 6},
                            {130, 60, 14},
                            {40, 130, 20},
                            {160, 160, 6}}) {
        for (int variant = 0; variant < 3; ++variant) {
            const Plan plan = randomPlan(++seed, size.nX, size.nY, size.materials);
            SeamState literal = plan.state;
            const test::LiteralOutcome expected =
                test::LiteralRelaxation(plan.problem, plan.laws, literal).run();
            closed += expected.overClosed;
            converged += expected.converged;
            test::EachWidth::run([&] {
                for (const int threads : {1, 2 + variant}) {
                    SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << size.nX << " x "
                                                    << size.nY << ", " << threads << " threads");
                    expectLiteral(plan, literal, expected, threads);
                }
            });
        }
    }
    EXPECT_GT(converged, 5);
    EXPECT_GT(closed, 1000) << "some openings should close in these plans";
}
