#pragma once

// Other programs' hands and eyes: drawings made by them, and what they say of ours.

#include <filesystem>
#include <string>

namespace tessaran::test {

// A folder that is gone after the test.
class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

struct ProgramResult {
    int status = -1;
    std::string output; // both streams
};

// Runs a python script of the tests' folder with the system's interpreter, which has the packages
// that the set-up script installs.
ProgramResult runScript(const std::string& script, const std::string& arguments);

} // namespace tessaran::test
