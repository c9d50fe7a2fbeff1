// How a run ends before its time: cancelled, on a full disk, without memory.

#include "stress/arrays.h"
#include "stress/memory_end.h"
#include "stress/model_run.h"
#include "stress/plekton_commands.h"
#include "stress/result_file.h"
#include "support/recording_host.h"
#include "support/resource_limits.h"
#include "support/script_run.h"
#include "support/temporary_folder.h"
#include "tests/stress/small_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace tessaran::stress {
namespace {

using test::modelText;
using test::Nobody;
using test::TemporaryFolder;
using testing::HasSubstr;
using testing::Not;

// --- cancel -------------------------------------------------------------------------------------

// Presses Cancel in step 2, once the run says that it does `what`.
class CancelDuring final : public RunWatch {
  public:
    explicit CancelDuring(std::string what) : what_(std::move(what)) {}
    void status(const std::string& text) override {
        last_ = text;
        secondStep_ = secondStep_ || text.find("Step 2") != std::string::npos;
        pressed_ = pressed_ || (secondStep_ && text.find(what_) != std::string::npos);
    }
    bool cancelled() override { return pressed_; }
    const std::string& last() const { return last_; }

  private:
    std::string what_;
    std::string last_;
    bool secondStep_ = false;
    bool pressed_ = false;
};

TEST(Cancel, WhereverItIsPressedGives1AndKeepsWhatWasWritten) {
    for (const char* during :
         {"Entering SOR", "Calculating Multi-Seam Stresses", "Calculating Mirror-Image Stresses",
          "Stress Propogating", "Calculating Off-Seam Disp. from Seam 2",
          "Calculating Off-Seam Disp. from Mirror Seam 1"}) {
        SCOPED_TRACE(during);
        TemporaryFolder folder;
        folder.write("m.inp", modelText({.steps = 2,
                                         .seams = 2,
                                         .surfaceEffects = true,
                                         .offSeam = "6, 240, 3, 2, 24000, 0, -6000\n"}));
        const auto prepared = prepareRun("m.inp");
        ASSERT_TRUE(prepared) << prepared.error().message();
        CancelDuring watch(during);
        const RunReport report = solve(prepared->model, prepared->base, watch);
        EXPECT_EQ(report.ending, RunReport::Ending::cancelled);
        EXPECT_EQ(report.code(), 1);
        EXPECT_EQ(report.message, "");
        EXPECT_EQ(report.stepsDone, 1);
        // What is under way ends there: no relaxation is begun after a propagation.
        EXPECT_TRUE(watch.last() == "Stress Propogating" || watch.last().find(during) == 0)
            << watch.last();
        const std::string results = folder.read("m.f1");
        const auto lines = std::count(results.begin(), results.end(), '\n');
        const bool afterResults = std::string(during).find("Off-Seam") != std::string::npos;
        EXPECT_EQ(lines, 3 + (afterResults ? 400 : 200));
        const std::string offSeam = folder.read("m.off");
        EXPECT_EQ(std::count(offSeam.begin(), offSeam.end(), '\n'), 3 + 6);
    }
}

// --- a full disk --------------------------------------------------------------------------------

TEST(FullDisk, IsToldForEveryFile) {
    TemporaryFolder folder;
    folder.write("m.inp", modelText({.offSeam = "6, 240, 3, 2, 24000, 0, -6000\n"}));
    const auto full = [&](const char* name) {
        std::filesystem::remove(folder / name);
        std::filesystem::create_symlink("/dev/full", folder / name);
    };
    Nobody nobody;
    {
        const auto prepared = prepareRun("m.inp");
        ASSERT_TRUE(prepared);
        full("m.off");
        RunReport report = solve(prepared->model, prepared->base, nobody);
        EXPECT_EQ(report.code(), 1);
        EXPECT_THAT(report.message, HasSubstr("Error in Opening Off-Seam Output File - OS1\n"));
        EXPECT_THAT(report.message, HasSubstr("No space left on device"));
        EXPECT_EQ(folder.read("m.f1").size(), resultHeader(prepared->model, 0).size() + 200 * 69);
        full("m.f1");
        report = solve(prepared->model, prepared->base, nobody);
        EXPECT_EQ(report.code(), 1);
        EXPECT_THAT(report.message, HasSubstr("Error in Opening Output File - PES1\n"));
        EXPECT_THAT(report.message, HasSubstr("No space left on device"));
        full("m.out");
        EXPECT_THAT(solve(prepared->model, prepared->base, nobody).message,
                    HasSubstr("Error in Opening Output File - M1\nNo space left on device"));
    }
    EXPECT_THAT(prepareRun("m.inp").error().text,
                HasSubstr("Trouble Printing Input File - PI2\nNo space left"));
    full("STEP1.CHR");
    EXPECT_THAT(prepareRun("m.inp").error().text, HasSubstr("RI10c\nNo space left"));
}

// --- memory -------------------------------------------------------------------------------------

std::string messageFor(ArrayKind kind, std::size_t size) {
    try {
        allocatedArray<double>(kind, size);
    } catch (const std::bad_alloc& failure) {
        return messageOf(failure);
    }
    return "there was enough";
}

TEST(Memory, ThatAnArrayCannotHaveIsToldInItsOwnWords) {
    const std::string exit = "\n...now exiting to the system...\n";
    constexpr std::size_t kTooLong = std::size_t{1} << 62;
    EXPECT_EQ(messageFor(ArrayKind::dvector, kTooLong), "allocation failure in dvector()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::ivector, kTooLong), "allocation failure in ivector()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::dmatrix, kTooLong), "allocation failure 1 in dmatrix()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::cmatrix, kTooLong), "allocation failure 1 in cmatrix()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::ccubix, kTooLong), "allocation failure 1 in ccubix()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::dcubix, kTooLong), "allocation failure 1 in dcubix()" + exit);
    EXPECT_EQ(messageOf(std::bad_alloc()), "There is not enough memory for this run." + exit);
    if (!test::MemoryLimit::possible())
        GTEST_SKIP() << "memory is not limited under a sanitizer";
    const test::MemoryLimit limit(64 << 20);
    constexpr std::size_t kRefused = 64 << 20;
    EXPECT_EQ(messageFor(ArrayKind::dvector, kRefused), "allocation failure in dvector()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::dmatrix, kRefused), "allocation failure 2 in dmatrix()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::ccubix, kRefused), "allocation failure 2 in ccubix()" + exit);
    EXPECT_EQ(messageFor(ArrayKind::dmatrix, 10), "there was enough");
}

TEST(Memory, ThatASeamCannotHaveEndsTheRun) {
    TemporaryFolder folder;
    CModelDat model;
    model.nX = model.nY = 2'000'000'000; // beyond what any array can hold
    model.seams.push_back({0.0, 0.0, -12000.0, 72.0});
    Nobody nobody;
    EXPECT_THROW(solve(model, folder / "m", nobody), AllocationFailure);
    EXPECT_FALSE(folder.has("m.f1"));
}

// A plane of 100 million blocks, which a limited memory has no room for once the seams are solved.
const std::string kLargePlane = "100000000, 1, 10000, 10000, 24000, 0, -6000\n";

TEST(Memory, ThatARunCannotHaveEndsTheProgramAfterItsMessage) {
    if (!test::MemoryLimit::possible())
        GTEST_SKIP() << "memory is not limited under a sanitizer";
    TemporaryFolder folder;
    folder.write("m.inp", modelText({.offSeam = kLargePlane}));
    test::RecordingHost host;
    host.answers = {test::RecordingHost::kEnter};
    bool ended = false;
    host.dialogScript = [&](host::DialogSession& session) {
        const auto place = [&](const char* label, host::DialogSession::Purpose purpose) {
            return *session.find(label, purpose);
        };
        using Purpose = host::DialogSession::Purpose;
        ASSERT_TRUE(session.set(place("Input File Name: (.inp)", Purpose::set), "m.inp"));
        const test::MemoryLimit limit(200 << 20);
        ASSERT_TRUE(session.press(place("Run", Purpose::press)));
        ended = session.ended();
    };
    zelk_plekton(host);
    EXPECT_THAT(host.messages,
                testing::ElementsAre(
                    "allocation failure 2 in dmatrix()\n...now exiting to the system...\n"));
    EXPECT_EQ(host.endStatus, 1);
    EXPECT_TRUE(ended) << "the dialog does not wait for more";
    const std::string results = folder.read("m.f1");
    EXPECT_EQ(std::count(results.begin(), results.end(), '\n'), 3 + 200)
        << "what was written stays";
    EXPECT_TRUE(prepareRun("m.inp")) << "the folder is free again";
}

TEST(Memory, ThatIsShortEndsAScriptAndKeepsCopiesOfItsDrawings) {
    if (!test::MemoryLimit::possible())
        GTEST_SKIP() << "memory is not limited under a sanitizer";
    test::ScriptRun run;
    run.folder().write("m.inp", modelText({.offSeam = kLargePlane}));
    {
        const test::MemoryLimit limit(200 << 20);
        run("POINT 1,2\nNEW\nNEW\nPOINT 3,4\n"
            "zelk_plekton\n:set Input File Name: (.inp) = m.inp\n:press Run\n"
            ":cancel\nPOINT 5,6\n");
    }
    EXPECT_EQ(run.status(), 1);
    EXPECT_THAT(run.transcript(), HasSubstr("(message) allocation failure 2 in dmatrix()"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("5,6"))) << "nothing is done any more";
    EXPECT_THAT(run.error(), HasSubstr("A copy of Drawing1 is kept: "));
    EXPECT_THAT(run.error(), HasSubstr("A copy of Drawing3 is kept: "));
    EXPECT_THAT(run.error(), Not(HasSubstr("Drawing2"))) << "nothing in it to lose";
    int copies = 0;
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(run.folder() / "recovery"))
        copies += file.path().extension() == ".dxf" ? 1 : 0;
    EXPECT_EQ(copies, 2);
}

} // namespace
} // namespace tessaran::stress
