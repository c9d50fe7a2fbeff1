// Levels whose passes do not settle, and what the log tells of them and of closed entries.

#include "base/file.h"
#include "tests/stress/literal_solver.h"
#include "tests/stress/solid_model.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <string>

using namespace tessaran;
using namespace tessaran::stress;

namespace {

// Two seams so near to one another that each pass undoes much of the one before.
CModelDat nearSeams(double apart, double omega, double criterion) {
    CModelDat model = test::solidModel(10, 10);
    model.seams.push_back({0.0, 0.0, -12000.0 - apart, 72.0});
    model.codes[0].push_back(model.codes[0][0]);
    model.overRelaxation = omega;
    model.convergenceCriterion = criterion;
    model.maxIterations = 1'000'000;
    return model;
}

std::string logOf(const char* name) {
    return base::readFile(std::filesystem::temp_directory_path() / "tessaran_solver_test" /
                          (std::string(name) + ".out"))
        .value();
}

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST(Levels, ThatDoNotSettleGiveBackWhatTheyStartedFrom) {
    const CModelDat model = nearSeams(50.0, 0.02, 1e-6);
    const RunReport report = test::solved(model, "unsettled");
    ASSERT_EQ(report.code(), 0) << report.message;
    test::LiteralSolver literal(model);
    literal.run();
    ASSERT_EQ(literal.unsettled, std::vector<int>{1});
    const std::string log = logOf("unsettled");
    EXPECT_EQ(countOf(log, "The external stresses did not settle in 50 passes at level 1 of step "
                           "1; going on with the next finer level.\n"),
              1);
    EXPECT_EQ(countOf(log, "did not settle"), 1);
    EXPECT_EQ(report.profile[0][1].loops, 50);
    long counted = 0;
    for (const SeamProfile& seam : report.profile)
        for (const LevelProfile& level : seam)
            counted += level.iterations;
    EXPECT_EQ(counted, std::accumulate(literal.iterations.begin(), literal.iterations.end(), 0L));
    for (std::size_t s = 0; s < 2; ++s)
        for (int i = 0; i < 10; ++i)
            for (int j = 0; j < 10; ++j)
                ASSERT_NEAR(report.seams[s].convergenceAt(i, j),
                            test::cell(literal.seams[s].u, i + 1, j + 1), 1e-10);
}

TEST(Levels, ThatDoNotSettleAtTheFinestEndTheRun) {
    const RunReport report = test::solved(nearSeams(37.1, 0.3, 1e-4), "hopeless");
    EXPECT_EQ(report.code(), 1);
    EXPECT_EQ(report.message, "The external stresses did not settle in 500 passes at level 0 of "
                              "step 1. Try a smaller over-relaxation factor.");
    EXPECT_EQ(report.stepsDone, 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::temp_directory_path() /
                                         "tessaran_solver_test/hopeless.f1"));
}

TEST(Log, TellsOfAClosedEntryOnceAndCountsAfterEachRelaxation) {
    CModelDat model = test::solidModel(40, 40);
    model.seams[0].thickness = 3.0;
    model.overRelaxation = 0.3;
    model.convergenceCriterion = 1e-4;
    for (int i = 5; i < 35; ++i)
        for (int j = 5; j < 35; ++j)
            model.codes[0][0][static_cast<std::size_t>(40 * i + j)] = '1';
    const RunReport report = test::solved(model, "closed");
    ASSERT_EQ(report.code(), 0) << report.message;
    std::set<std::pair<int, int>> closed; // at the end
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 40; ++j)
            if (report.seams[0].convergenceAt(i, j) > 3.0)
                closed.insert({i + 1, j + 1});
    ASSERT_FALSE(closed.empty());
    const std::string log = logOf("closed");
    for (const auto& [i, j] : closed)
        EXPECT_EQ(countOf(log, fmt::format("Material Strain Greater Than 1 in Element Stress "
                                           "Routine - ES1a\ni = {}, j = {}, integer code = 27\n",
                                           i, j)),
                  1)
            << i << " " << j;
    EXPECT_EQ(countOf(log, "SOR took "), 5); // alone, and once a level
    EXPECT_EQ(countOf(log, "Strains greater than 1 were met "), 5);
}
