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

// The program that is killed: run by the test below as a process of its own.
TEST(WindowCrash, DISABLED_DrawsAndIsKilled) {
    const std::filesystem::path folder = qgetenv(kFolder).toStdString();
    ASSERT_FALSE(folder.empty());
    User user({.configuration = folder, .autosave = std::chrono::milliseconds(0)});
    user.type("PLINE").type("1,2").type("3,4").enter().type("ZOOM").type("E");
    user.look([] { std::raise(SIGKILL); });
    user.work();
}

TEST(WindowCrash, ADrawingWithoutAFileComesBackAfterTheProgramWasKilled) {
    const TemporaryFolder configuration;
    application(); // knows this program's path
    QProcess killed;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kFolder, QString::fromStdString(configuration.path().string()));
    killed.setProcessEnvironment(environment);
    killed.start(QCoreApplication::applicationFilePath(),
                 {"--gtest_also_run_disabled_tests", "--gtest_filter=*DrawsAndIsKilled"});
    ASSERT_TRUE(killed.waitForFinished(30'000));
    ASSERT_EQ(killed.exitStatus(), QProcess::CrashExit);
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
