#pragma once

// Drawing files into the drawing.

#include "base/progress.h"
#include "base/result.h"
#include "drawing/database.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaran::drawing {

struct LoadReport {
    std::string version;      // of the file: "AC1015", ...
    std::string codePage;     // as the header names it
    std::size_t entities = 0; // of model space
    std::size_t kept = 0;     // of them, kinds that are only kept
    std::size_t inPaper = 0;  // entities of paper layouts, which are only kept
    std::string upgraded;     // what was completed to make a whole drawing; empty: nothing
    std::size_t warningCount = 0;
    std::vector<std::string> warnings; // "FILE:LINE: reason", the first kMostWarnings of them

    static constexpr std::size_t kMostWarnings = 100;
};

// Reads a DXF file, text or binary, of any release into a database that is as its constructor left
// it. Refuses what is no DXF and files that are cut off, with file and line; an entity of a known
// kind with values that are no use stays as it is, with a warning. After an error or a break the
// database is to be thrown away.
base::Result<LoadReport> loadDxf(Database& database, const std::filesystem::path& path,
                                 base::Progress& progress);
base::Result<LoadReport> loadDxf(Database& database, std::string bytes, const std::string& name,
                                 base::Progress& progress);

// Makes the database a new drawing, of release 2000.
base::Result<void> startDrawing(Database& database);

} // namespace tessaran::drawing
