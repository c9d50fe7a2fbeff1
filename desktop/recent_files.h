#pragma once

// The drawings opened last, kept in the profile.

#include "host/host.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tessaran::desktop {

inline constexpr int kMostRecent = 9;

std::vector<std::string> recentFiles(const host::Profile& profile);
void addRecent(host::Profile& profile, const std::filesystem::path& path);

} // namespace tessaran::desktop
