#pragma once

// Limits of this process for as long as they live.

#include <csignal>
#include <cstddef>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace tessaran::test {

class ResourceLimit {
  public:
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;
    ~ResourceLimit() { setrlimit(resource_, &before_); }

  protected:
    ResourceLimit(__rlimit_resource resource, rlim_t most) : resource_(resource) {
        getrlimit(resource_, &before_);
        rlimit limit = before_;
        limit.rlim_cur = most;
        setrlimit(resource_, &limit);
    }

  private:
    __rlimit_resource resource_;
    rlimit before_{};
};

// So many bytes of memory beyond what the process has.
class MemoryLimit : public ResourceLimit {
  public:
    explicit MemoryLimit(std::size_t more) : ResourceLimit(RLIMIT_AS, present() + more) {}

    static bool possible() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }

  private:
    static std::size_t present() {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    }
};

// Files no longer than so many bytes: what goes beyond cannot be written.
class FileSizeLimit : public ResourceLimit {
  public:
    explicit FileSizeLimit(std::size_t most)
        : ResourceLimit(RLIMIT_FSIZE, most), signal_(std::signal(SIGXFSZ, SIG_IGN)) {}
    ~FileSizeLimit() { std::signal(SIGXFSZ, signal_); }

  private:
    void (*signal_)(int);
};

} // namespace tessaran::test
