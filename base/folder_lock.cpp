#include "base/folder_lock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace tessaran::base {

Result<FolderLock> FolderLock::take(const std::filesystem::path& folder) {
    const std::string path = folder.empty() ? std::string(".") : folder.string();
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return Error{ErrorKind::io, std::strerror(errno), path, 0, IoCause::badPath};
    FolderLock lock(descriptor);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return Error{ErrorKind::state, "the folder is in use by another run", path, 0,
                     IoCause::none};
    return lock;
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

} // namespace tessaran::base
