#include "console/profile_file.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace tessaran::console;
using tessaran::test::TemporaryFolder;

TEST(Profile, OutlivesTheProgramThatWroteIt) {
    const TemporaryFolder folder;
    const std::string odd = "a=b\\n\nc\r;[x] ";
    {
        ProfileFile profile(folder / "new/place/profile.ini");
        profile.write("Settings", "X", "10");
        profile.write("Files", "last folder", odd);
        profile.write("Settings", "X", "20");
    }
    const ProfileFile profile(folder / "new/place/profile.ini");
    EXPECT_EQ(profile.read("Settings", "X"), "20");
    EXPECT_EQ(profile.read("Files", "last folder"), odd);
    EXPECT_FALSE(profile.read("settings", "Y"));
    EXPECT_FALSE(profile.read("Other", "X"));
}

TEST(Profile, TakesWhatItCanOfADamagedFile) {
    const TemporaryFolder folder;
    folder.write("profile.ini",
                 std::string("noise\n[Settings\nX=1\n[Settings]\r\nX=2\r\n=\n") + '\0');
    const ProfileFile profile(folder / "profile.ini");
    EXPECT_EQ(profile.read("Settings", "X"), "2");
}

TEST(Profile, AnUnwritableFileCostsNoCommand) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "profile.ini");
    ProfileFile profile(folder / "profile.ini");
    profile.write("Settings", "X", "10");
    EXPECT_EQ(profile.read("Settings", "X"), "10") << "kept as long as the program runs";
    EXPECT_TRUE(profile.trouble());
}

TEST(Profile, LiesWhereTheEnvironmentSays) {
    setenv("TESSARAN_PROFILE", "/some/where.ini", 1);
    EXPECT_EQ(profilePath(), "/some/where.ini");
    unsetenv("TESSARAN_PROFILE");
    setenv("XDG_CONFIG_HOME", "/config", 1);
    EXPECT_EQ(profilePath(), "/config/tessaran/profile.ini");
    unsetenv("XDG_CONFIG_HOME");
}
