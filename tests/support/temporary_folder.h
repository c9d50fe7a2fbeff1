#pragma once

// A folder of its own for a test, current while it lives, removed with all in it at the end.

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::test {

class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

    void write(std::string_view name, std::string_view content) const;
    std::string read(std::string_view name) const; // "" when there is no such file
    bool has(std::string_view name) const;

  private:
    std::filesystem::path path_;
    std::filesystem::path before_;
};

} // namespace tessaran::test
