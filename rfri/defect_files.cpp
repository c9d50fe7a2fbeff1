#include "rfri/defect_files.h"

#include "base/file.h"
#include "base/text.h"
#include "grid/base_grid.h"
#include "grid/grid_file.h"
#include "host/host.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace tessaran::rfri {
namespace {

using grid::myGrid;
using host::Host;

constexpr double kMatchTolerance = 1e-6;

bool near(double a, double b, double width) {
    return std::abs(a - b) <= std::max(kMatchTolerance, kMatchTolerance * width);
}

// The geometry alone; nothing said.
bool readDefinition(const std::string& path, myGrid& grid) {
    base::NoProgress progress;
    return grid::readGridFile(path, false, grid, progress).ok() && grid.isDefined();
}

enum class FileState { missing, unreadable, matching, different };

FileState stateOf(const std::string& path, const myGrid& base) {
    if (!base::fileExists(path))
        return FileState::missing;
    myGrid found;
    if (!readDefinition(path, found))
        return FileState::unreadable;
    return matches(found, base) ? FileState::matching : FileState::different;
}

// The first readable file gives the base grid.
bool findBaseGrid(Host& host, const CategoryRecords& records) {
    myGrid base;
    if (grid::defineFromBaseGrid(host, base))
        return true;
    for (const CategoryRecord& record : records.records) {
        const std::string path = workingPath(host, record.file);
        myGrid found;
        if (!base::fileExists(path) || !readDefinition(path, found))
            continue;
        grid::baseGrid(host) = grid::baseGridOf(found);
        host.print(fmt::format("\nThe base grid definition was set from file {} ", path));
        return true;
    }
    return false;
}

// "FILE.bak", or "FILE.bak2" and so on where such files are there already: a base grid that changes
// twice must not cost what was kept the first time.
std::string freeBackupName(const std::string& path) {
    std::string name = path + ".bak";
    for (int k = 2; base::fileExists(name); ++k)
        name = fmt::format("{}.bak{}", path, k);
    return name;
}

// False, and told, when the file in the way cannot be put aside.
bool putAside(Host& host, const std::string& path) {
    const std::string kept = freeBackupName(path);
    std::error_code error;
    std::filesystem::rename(path, kept, error);
    if (error) {
        host.print(fmt::format("\nFile {} is not on the base grid and cannot be renamed: {}", path,
                               error.message()));
        return false;
    }
    host.print(fmt::format("\nFile {} is not on the base grid and is kept as {}", path, kept));
    return true;
}

void makeDefault(Host& host, const Category& category, const CategoryRecord& record,
                 const std::string& path) {
    myGrid made;
    if (!grid::defineFromBaseGrid(host, made))
        return;
    made.fillValue(category.valueByDefault);
    made.setTitle(record.description);
    if (made.writeGrid(host, path))
        host.print(fmt::format("\nA default file was created for the {}", category.defaultMade));
}

void prepare(Host& host, const Category& category, const CategoryRecord& record,
             const myGrid& base) {
    const std::string path = workingPath(host, record.file);
    switch (stateOf(path, base)) {
    case FileState::matching:
        return;
    case FileState::unreadable:
        host.print(fmt::format("\nWarning: file {} cannot be read.", path));
        return;
    case FileState::different:
        if (!putAside(host, path))
            return;
        break;
    case FileState::missing:
        break;
    }
    makeDefault(host, category, record, path);
}

} // namespace

std::string workingPath(Host& host, const std::string& file) {
    const std::filesystem::path path(file);
    if (path.is_absolute())
        return file;
    const auto prefix = host.variables().get("DWGPREFIX");
    const std::string* folder = prefix ? std::get_if<std::string>(&*prefix) : nullptr;
    return folder == nullptr || folder->empty() ? file
                                                : (std::filesystem::path(*folder) / path).string();
}

std::string gridFileName(const std::string& typed, const std::string& before) {
    const std::string_view name = base::trimmed(typed);
    return name.empty() ? before : base::withEnding(name, ".grd");
}

bool matches(const myGrid& grid, const myGrid& base) {
    return grid.nX() == base.nX() && grid.nY() == base.nY() &&
           near(grid.cellWidthX(), base.cellWidthX(), base.cellWidthX()) &&
           near(grid.cellWidthY(), base.cellWidthY(), base.cellWidthY()) &&
           near(grid.origin().x, base.origin().x, base.cellWidthX()) &&
           near(grid.origin().y, base.origin().y, base.cellWidthY());
}

void takeBaseRotation(Host& host, myGrid& grid) {
    myGrid turned;
    if (!grid::defineFromBaseGrid(host, turned) || turned.rotation() == 0.0 ||
        !matches(grid, turned))
        return;
    std::copy(grid.values().begin(), grid.values().end(), turned.values().begin());
    grid::BaseGrid base = grid::baseGrid(host);
    if (!grid::setupFromBaseGrid(base, grid))
        return;
    std::copy(turned.values().begin(), turned.values().end(), grid.values().begin());
}

bool prepareDefectFiles(Host& host, const CategoryRecords& records) {
    if (!findBaseGrid(host, records))
        return false;
    myGrid base;
    if (!grid::defineFromBaseGrid(host, base))
        return false;
    for (std::size_t k = 0; k < kCategories; ++k)
        prepare(host, categories()[k], records.records[k], base);
    return true;
}

} // namespace tessaran::rfri
