#include "desktop/recent_files.h"

#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr const char* kSection = "Recent";

} // namespace

std::vector<std::string> recentFiles(const host::Profile& profile) {
    std::vector<std::string> files;
    for (int k = 1; k <= kMostRecent; ++k)
        if (const auto file = profile.read(kSection, std::to_string(k)); file && !file->empty())
            files.push_back(*file);
    return files;
}

void addRecent(host::Profile& profile, const std::filesystem::path& path) {
    std::error_code failed;
    const std::string file = std::filesystem::absolute(path, failed).string();
    std::vector<std::string> files = recentFiles(profile);
    if (failed || (!files.empty() && files.front() == file))
        return;
    std::erase(files, file);
    files.insert(files.begin(), file);
    files.resize(std::min<std::size_t>(files.size(), kMostRecent));
    for (std::size_t k = 0; k < files.size(); ++k)
        profile.write(kSection, std::to_string(k + 1), files[k]);
}

} // namespace tessaran::desktop
