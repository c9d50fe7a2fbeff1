#pragma once

// The program as people call it, in a folder of its own.

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <sys/wait.h>

namespace tessaran::test {

class Program : public testing::Test {
  protected:
    void SetUp() override {
        setenv("TESSARAN_PROFILE", (folder_ / "profile.ini").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("TESSARAN_PROFILE");
        unsetenv("XDG_CONFIG_HOME");
    }

    // Exit status; output and errors in out() and err(). `before`: shell commands for its process.
    int run(const std::string& arguments, const std::string& before = "") {
        const std::string command =
            before + std::string(TESSARAN_PROGRAM) + " " + arguments + " >out.log 2>err.log";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string out() const { return folder_.read("out.log"); }
    std::string err() const { return folder_.read("err.log"); }

    TemporaryFolder folder_;
};

} // namespace tessaran::test
