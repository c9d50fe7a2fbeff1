#pragma once

// Drawings from and to files.

#include "base/result.h"
#include "drawing/database.h"

#include <filesystem>
#include <memory>

namespace tessaran::console {

base::Result<std::unique_ptr<drawing::Database>> openDrawing(const std::filesystem::path& path);

// Writes the drawing; afterwards it has that path and counts as saved. The earlier file stays as
// PATH.bak.
base::Result<void> saveDrawing(drawing::Database& database, const std::filesystem::path& path);

// Writes a copy; the drawing keeps its path and state.
base::Result<void> saveCopy(const drawing::Database& database, const std::filesystem::path& path);

} // namespace tessaran::console
