#include "base/folder_lock.h"
#include "stress/model_run.h"
#include "stress/pillars.h"
#include "stress/run_outlook.h"
#include "stress/step_files.h"
#include "support/temporary_folder.h"
#include "tests/stress/small_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace tessaran::stress {
namespace {

using test::modelText;
using test::Nobody;
using test::TemporaryFolder;
using testing::HasSubstr;

TEST(StepFiles, StandInTheInputsFolderAndAreWhatIsSolved) {
    TemporaryFolder folder;
    std::filesystem::create_directory(folder / "deep");
    folder.write("deep/m.inp", modelText(2));
    auto prepared = prepareRun(std::filesystem::path("deep") / "m.inp");
    ASSERT_TRUE(prepared) << prepared.error().message();
    EXPECT_FALSE(folder.has("STEP1.CHR"));
    const std::string first = folder.read("deep/STEP1.CHR");
    EXPECT_EQ(first.size(), 10u * 21u);
    EXPECT_EQ(first.substr(3 * 21, 21), "AAAAAAAAAA1AAA1AAAAA\n");
    EXPECT_THAT(folder.read("deep/STEP2.CHR"), HasSubstr("1BBB1"));
    Nobody nobody;
    const RunReport report = solve(prepared->model, prepared->base, nobody);
    ASSERT_EQ(report.code(), 0) << report.message;
    EXPECT_EQ(report.ranges.size(), 2u);
    const auto fromFile = folder.read("deep/m.f1");

    // The same from codes in memory.
    auto again = prepareRun(std::filesystem::path("deep") / "m.inp");
    EXPECT_FALSE(again) << "the first run still holds the folder";
    EXPECT_THAT(again.error().text, HasSubstr("RI10c"));
    EXPECT_THAT(again.error().text, HasSubstr("Another run"));
    prepared->lock.reset();
    again = prepareRun(std::filesystem::path("deep") / "m.inp");
    ASSERT_TRUE(again);
    for (int step = 1; step <= 2; ++step)
        again->model.codes.push_back(*readStepFile("deep", step, again->model));
    EXPECT_EQ(solve(again->model, again->base, nobody).code(), 0);
    EXPECT_EQ(folder.read("deep/m.f1"), fromFile);
}

TEST(StepFiles, OfWholeStepsStayWhenTheInputIsCutShort) {
    TemporaryFolder folder;
    folder.write("m.inp", modelText(2).substr(0, modelText(2).size() - 30));
    const auto prepared = prepareRun("m.inp");
    ASSERT_FALSE(prepared);
    EXPECT_THAT(prepared.error().text, HasSubstr("RI10b"));
    EXPECT_TRUE(folder.has("STEP1.CHR"));
    EXPECT_FALSE(folder.has("STEP2.CHR"));
    EXPECT_FALSE(folder.has("m.out"));
}

TEST(StepFiles, ThatAreGoneEndTheRun) {
    TemporaryFolder folder;
    folder.write("m.inp", modelText(2));
    const auto prepared = prepareRun("m.inp");
    ASSERT_TRUE(prepared);
    std::filesystem::remove("STEP2.CHR");
    Nobody nobody;
    const RunReport report = solve(prepared->model, prepared->base, nobody);
    EXPECT_EQ(report.code(), 1);
    EXPECT_EQ(report.stepsDone, 1);
    EXPECT_THAT(report.message, HasSubstr("Error reading the fine mesh codes - RC2\n"));
    EXPECT_TRUE(folder.has("m.f1")) << "what the first step gave stays";
}

TEST(FolderLock, IsHeldOnce) {
    TemporaryFolder folder;
    auto lock = base::FolderLock::take(folder.path());
    ASSERT_TRUE(lock);
    EXPECT_FALSE(base::FolderLock::take(folder.path()));
    {
        const base::FolderLock taken = std::move(*lock);
        EXPECT_FALSE(base::FolderLock::take(folder.path()));
    }
    EXPECT_TRUE(base::FolderLock::take(folder.path()));
    EXPECT_FALSE(base::FolderLock::take(folder / "none"));
}

// --- before and after ---------------------------------------------------------------------------

TEST(Outlook, TellsWhatToLookAt) {
    TemporaryFolder folder;
    folder.write("m.inp", modelText(2));
    const auto prepared = prepareRun("m.inp");
    ASSERT_TRUE(prepared);
    // lambda = 50 / sqrt(12 (1 - 1/16)) = 14.907 ft; elements of 10 ft.
    for (const char* line :
         {"Model: 20 x 10 elements, 1 seams, 2 steps\n", "Lamination constant lambda: 14.91 ft\n",
          "Element width: 10 ft, 0.671 times lambda\n", "Depths: 1000 to 1000 ft\n",
          "Coal around the openings: 20 north, 50 east, 50 south, 100 west (ft)\n",
          "Memory: about ", "Time: about "})
        EXPECT_THAT(prepared->outlook, HasSubstr(line));
}

TEST(Pillars, AreRunsOfCoalThatShareASide) {
    CModelDat model;
    model.unitSystem = 1;
    model.elementWidth = 120.0;
    model.nX = 4;
    model.nY = 3;
    model.materials = {{MaterialType::linearElasticCoal, {}}, {MaterialType::linearElasticGob, {}}};
    // Columns from the west, rows from the south. The two A that touch at a corner are two pillars.
    const ElementCodes codes{'A', 'A', '1', 'B', '1', 'A', 'A', '1', 'A', 'A', '1', '1'};
    SeamState seam(4, 3);
    for (std::size_t k = 0; k < seam.total.size(); ++k)
        seam.total[k] = 100.0 * static_cast<double>(k);
    const auto pillars =
        pillarsOf(model.materials, lawsOf(codes, 4, 3, 2), seam, {1200.0, 2400.0, 120.0, 4, 3});
    ASSERT_EQ(pillars.size(), 3u);
    EXPECT_EQ(pillars[0].elements, 2);
    EXPECT_EQ(pillars[0].meanStress, 50.0);
    EXPECT_EQ(pillars[1].elements, 2); // (1, 2) and (2, 2): elements 5 and 8
    EXPECT_EQ(pillars[1].leastStress, 500.0);
    EXPECT_EQ(pillars[1].mostStress, 800.0);
    EXPECT_EQ(pillars[1].x, 1200.0 + 2.0 * 120.0);
    EXPECT_EQ(pillars[1].y, 2400.0 + 2.5 * 120.0);
    EXPECT_EQ(pillars[2].elements, 2); // (2, 0) and (3, 0)
    EXPECT_TRUE(pillars[2].atEdge);
    EXPECT_THAT(pillarText(model, {{pillars}}),
                HasSubstr("\n1,1,2,120,225,2,200,650,500,800,yes\n"));
}

} // namespace
} // namespace tessaran::stress
