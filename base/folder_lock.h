#pragma once

// A folder held by one run of a program at a time.

#include "base/result.h"

#include <filesystem>

namespace tessaran::base {

// Held until it goes, or the program ends in whatever way. Leaves nothing in the folder.
class FolderLock {
  public:
    // A state error when the lock is held already, by this program or another one. File systems
    // that know no locks are let through.
    static Result<FolderLock> take(const std::filesystem::path& folder);

    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

  private:
    explicit FolderLock(int descriptor) : descriptor_(descriptor) {}

    int descriptor_ = -1;
};

} // namespace tessaran::base
