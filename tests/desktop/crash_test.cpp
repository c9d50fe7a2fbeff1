// What is left after the program was killed, and what comes back.

#include "console/drawing_files.h"
#include "console/recovery.h"
#include "dialog_bench.h"
#include "drawing/autosave.h"
#include "user.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <csignal>
#include <fstream>

namespace tessaran::test {
namespace {

constexpr const char* kFolder = "TESSARAN_CRASH_FOLDER";
constexpr const char* kDrawing = "TESSARAN_CRASH_DRAWING";

// The program that is killed: run by the test below as a process of its own.
TEST(WindowCrash, DISABLED_DrawsAndIsKilled) {
    const std::filesystem::path folder = qgetenv(kFolder).toStdString();
    ASSERT_FALSE(folder.empty());
    User user({.configuration = folder, .autosave = std::chrono::milliseconds(0)});
    user.type("PLINE").type("1,2").type("3,4").enter().type("ZOOM").type("E");
    user.look([] { std::raise(SIGKILL); });
    user.work(qgetenv(kDrawing).toStdString());
}

// Runs that program to its end. `drawing`: opened first; may be empty.
void drawAndKill(const std::filesystem::path& configuration, const std::string& drawing) {
    application(); // knows this program's path
    QProcess killed;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kFolder, QString::fromStdString(configuration.string()));
    environment.insert(kDrawing, QString::fromStdString(drawing));
    killed.setProcessEnvironment(environment);
    killed.start(QCoreApplication::applicationFilePath(),
                 {"--gtest_also_run_disabled_tests", "--gtest_filter=*DrawsAndIsKilled"});
    ASSERT_TRUE(killed.waitForFinished(30'000));
    ASSERT_EQ(killed.exitStatus(), QProcess::CrashExit);
}

TEST(WindowCrash, ADrawingWithoutAFileComesBackAfterTheProgramWasKilled) {
    const TemporaryFolder configuration;
    drawAndKill(configuration.path(), {});
    ASSERT_EQ(console::abandonedCopies(configuration.path()).size(), 1u);

    User user({.configuration = configuration.path(), .autosave = std::chrono::hours(1)});
    user.answer("Recover").look([&] {
        ASSERT_EQ(user.drawing().entityCount(), 1u);
        const auto box = user.drawing().extents(user.drawing().lastEntity());
        EXPECT_EQ(box->low, (host::Point2{1, 2}));
        EXPECT_EQ(box->high, (host::Point2{3, 4}));
        EXPECT_TRUE(user.drawing().modified());
        EXPECT_TRUE(user.drawing().path().empty());
    });
    user.work();
    EXPECT_TRUE(console::abandonedCopies(configuration.path()).empty());
}

TEST(WindowCrash, AProgramThatHasToEndKeepsCopiesAndClosesTheWindow) {
    const TemporaryFolder configuration;
    User user({.configuration = configuration.path(), .autosave = std::chrono::hours(1)});
    user.session().host().state().commands.add(console::Command{
        "TEST", "FAIL", "FAIL", [&] { user.session().host().endProgram(1); }, true, ""});
    user.type("POINT").type("1,2").type("FAIL").answer("OK").work();
    EXPECT_FALSE(user.window().isVisible());
    const auto folder = console::recoveryFolder(configuration.path());
    EXPECT_TRUE(std::filesystem::exists(folder / "Drawing1.autosave.dxf"));
    EXPECT_EQ(user.session().host().endStatus(), 1);
}

TEST(WindowCrash, ADrawingWithAFileComesBackAfterTheProgramWasKilled) {
    const TemporaryFolder configuration;
    User user({.configuration = configuration.path(), .autosave = std::chrono::hours(1)});
    const std::string plan = (user.folder() / "plan.dxf").string();
    drawing::Database empty;
    ASSERT_TRUE(console::saveCopy(empty, plan).ok());
    const std::string before = user.folder().read("plan.dxf");
    drawAndKill(configuration.path(), plan);
    EXPECT_EQ(user.folder().read("plan.dxf"), before);

    user.answer("Recover").look([&] {
        EXPECT_EQ(user.drawing().entityCount(), 1u);
        EXPECT_TRUE(user.drawing().modified());
        EXPECT_EQ(user.drawing().path(), plan);
    });
    user.type("SAVE");
    user.work(plan);
    EXPECT_FALSE(drawing::leftBehind(plan).has_value());
    EXPECT_NE(user.folder().read("plan.dxf"), before);
}

TEST(WindowCrash, CopiesOfAProgramThatRunsAreLeftAlone) {
    const TemporaryFolder configuration;
    const auto own = console::recoveryFolder(configuration.path());
    std::filesystem::create_directories(own);
    std::ofstream(own / "Drawing1.autosave.dxf") << "0\nEOF\n";
    std::filesystem::create_directories(configuration / "recovery/not-a-number");
    std::ofstream(configuration / "recovery/not-a-number/x.dxf") << "0\nEOF\n";
    EXPECT_TRUE(console::abandonedCopies(configuration.path()).empty());
    EXPECT_TRUE(console::abandonedCopies({}).empty());
    EXPECT_TRUE(console::abandonedCopies(configuration / "missing").empty());
}

} // namespace
} // namespace tessaran::test
