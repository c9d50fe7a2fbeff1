#include "console/recovery.h"

#include "base/numbers.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>
#include <unistd.h>

namespace tessaran::console {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "recovery";

bool isRunning(long long process) {
    return process > 0 && (::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM);
}

} // namespace

fs::path recoveryFolder(const fs::path& configuration) {
    return configuration.empty() ? configuration
                                 : configuration / kFolder / std::to_string(::getpid());
}

RecoveryFolder::RecoveryFolder(const fs::path& configuration)
    : path_(recoveryFolder(configuration)) {
    std::error_code failed;
    if (!path_.empty() && !fs::create_directories(path_, failed) && failed)
        path_.clear();
}

RecoveryFolder::~RecoveryFolder() {
    std::error_code ignored;
    if (!path_.empty())
        fs::remove(path_, ignored); // only when it is empty
}

std::vector<fs::path> abandonedCopies(const fs::path& configuration) {
    std::vector<fs::path> copies;
    std::error_code failed;
    if (configuration.empty())
        return copies;
    for (const auto& folder : fs::directory_iterator(configuration / kFolder, failed)) {
        const auto process = base::wholeInt(folder.path().filename().string());
        if (!process || isRunning(*process))
            continue;
        for (const auto& file : fs::directory_iterator(folder.path(), failed))
            if (file.path().extension() == ".dxf")
                copies.push_back(file.path());
    }
    std::ranges::sort(copies, {}, [](const fs::path& copy) {
        std::error_code gone;
        return fs::last_write_time(copy, gone);
    });
    return copies;
}

void forgetCopy(const fs::path& copy) {
    std::error_code ignored;
    fs::remove(copy, ignored);
    fs::remove(copy.parent_path(), ignored); // only when it is empty
}

} // namespace tessaran::console
