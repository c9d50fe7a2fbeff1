#include "base/file.h"
#include "drawing/autosave.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using namespace tessaran;
using namespace tessaran::drawing;
using std::chrono::seconds;

namespace {

class AutosaveTest : public ::testing::Test {
  protected:
    void SetUp() override {
        folder =
            std::filesystem::temp_directory_path() / ("autosave-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
        plan = folder / "PLAN.dxf";
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void change() {
        host::Entity entity;
        entity.geometry = host::PointMark{};
        ASSERT_TRUE(database.add(entity));
    }
    bool offer(seconds after) {
        const auto written = autosave.offer(database, autosavePath(plan), start + after);
        return written && *written;
    }

    std::filesystem::path folder;
    std::filesystem::path plan;
    Database database;
    bool fails = false;
    Autosave autosave{[this](const Database& saved, const std::filesystem::path& to) {
                          if (fails)
                              return base::Result<void>(base::stateError("no"));
                          return base::writeFile(to, std::to_string(saved.entityCount()));
                      },
                      seconds(60)};
    Autosave::Clock::time_point start = Autosave::Clock::now();
};

} // namespace

TEST_F(AutosaveTest, KeepsACopyWhileThereIsSomethingToLose) {
    const auto copy = autosavePath(plan);
    EXPECT_EQ(copy.filename(), "PLAN.autosave.dxf");
    EXPECT_FALSE(offer(seconds(0))); // nothing changed yet
    change();
    EXPECT_TRUE(offer(seconds(1)));
    EXPECT_EQ(*base::readFile(copy), "1");
    EXPECT_FALSE(offer(seconds(500))); // the copy is as the drawing
    change();
    EXPECT_FALSE(offer(seconds(60))); // 59 seconds after the last
    database.beginCommand("LINE");
    EXPECT_FALSE(offer(seconds(61)));
    database.endCommand();
    EXPECT_TRUE(offer(seconds(61)));
    EXPECT_EQ(*base::readFile(copy), "2");
    database.markSaved();
    EXPECT_FALSE(offer(seconds(62)));
    EXPECT_FALSE(base::fileExists(copy));
}

TEST_F(AutosaveTest, ReportsWhatFailsAndTriesAgainLater) {
    change();
    fails = true;
    EXPECT_FALSE(autosave.offer(database, autosavePath(plan), start));
    fails = false;
    EXPECT_FALSE(offer(seconds(30)));
    EXPECT_TRUE(offer(seconds(60)));
}

TEST_F(AutosaveTest, FindsWhatACrashLeftBehind) {
    ASSERT_TRUE(base::writeFile(plan, "plan"));
    EXPECT_FALSE(leftBehind(plan));
    change();
    ASSERT_TRUE(offer(seconds(0)));
    EXPECT_EQ(leftBehind(plan), autosavePath(plan));
    // Saved since: the copy is of no use.
    std::filesystem::last_write_time(plan, std::filesystem::last_write_time(autosavePath(plan)) +
                                               seconds(1));
    EXPECT_FALSE(leftBehind(plan));
    autosave.discard();
    EXPECT_FALSE(base::fileExists(autosavePath(plan)));
}
