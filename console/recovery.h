#pragma once

// Copies of drawings without a file, and who left them behind: each running program keeps its own
// in a folder named by its process number, so what lies in a folder whose process has gone was lost
// in a crash.

#include <filesystem>
#include <vector>

namespace tessaran::console {

// Of this process; empty without a configuration folder.
std::filesystem::path recoveryFolder(const std::filesystem::path& configuration);

// Makes this process's folder, and removes it at the end when nothing was left in it.
class RecoveryFolder {
  public:
    explicit RecoveryFolder(const std::filesystem::path& configuration);
    RecoveryFolder(const RecoveryFolder&) = delete;
    RecoveryFolder& operator=(const RecoveryFolder&) = delete;
    ~RecoveryFolder();

    const std::filesystem::path& path() const { return path_; } // empty: copies are not kept

  private:
    std::filesystem::path path_;
};

// The copies of processes that have gone, oldest first.
std::vector<std::filesystem::path> abandonedCopies(const std::filesystem::path& configuration);

// Removes a copy, and its folder when it was the last one.
void forgetCopy(const std::filesystem::path& copy);

} // namespace tessaran::console
