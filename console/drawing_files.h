#pragma once

// Drawings from and to files.

#include "base/progress.h"
#include "base/result.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"

#include <filesystem>
#include <memory>
#include <string>

namespace tessaran::console {

struct OpenedDrawing {
    std::unique_ptr<drawing::Database> database;
    drawing::LoadReport report;
};
base::Result<OpenedDrawing> openDrawing(const std::filesystem::path& path,
                                        base::Progress& progress);
// What a user should know of how it was read; empty: nothing.
std::string describe(const drawing::LoadReport& report);

// Writes the drawing; afterwards it has that path and counts as saved. The earlier file stays as
// PATH.bak.
base::Result<drawing::SaveReport> saveDrawing(drawing::Database& database,
                                              const std::filesystem::path& path);

// Writes a copy without a backup; the drawing keeps its path and state.
base::Result<void> saveCopy(const drawing::Database& database, const std::filesystem::path& path);

} // namespace tessaran::console
