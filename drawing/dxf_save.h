#pragma once

// The drawing into drawing files.

#include "base/result.h"
#include "drawing/database.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tessaran::drawing {

struct SaveOptions {
    bool keepBackup = true; // the earlier file stays as PATH.bak
};

struct SaveReport {
    std::string version;       // written: "AC1015", ...
    std::string upgraded;      // why this is not the release that was read; empty: it is
    std::size_t rewritten = 0; // entities whose record changed or is new
    std::size_t bytes = 0;
};

// Writes the drawing in the release and layout that it was read in; a new drawing as release 2000
// text. What was not changed is written byte for byte as it was read. The file is replaced whole or
// not at all.
base::Result<SaveReport> saveDxf(const Database& database, const std::filesystem::path& path,
                                 const SaveOptions& options = {});

// The same into memory or elsewhere, piece by piece.
base::Result<SaveReport> writeDxf(const Database& database,
                                  const std::function<void(std::string_view)>& sink);

} // namespace tessaran::drawing
