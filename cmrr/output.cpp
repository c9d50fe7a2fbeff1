#include "cmrr/output.h"

#include "base/file.h"
#include "grid/grid_file.h"

#include <fmt/format.h>

namespace tessaran::cmrr {
namespace {

using base::Result;

constexpr const char* kRoofError = "There was an error writing the CMRR grid file - DDWCG-1";
constexpr const char* kUnitError = "There was an error writing a unit grid file - DDWUG-1";

} // namespace

Result<Written> writeRoof(RoofResult& result, const RoofData& data,
                          const std::filesystem::path& folder,
                          const std::function<bool(const std::string& file)>& mayReplace,
                          base::Progress& progress) {
    Written done;
    const auto write = [&](grid::myGrid* grid, const std::string& name, const char* failure) {
        const std::string file = (folder / (name + ".grd")).string();
        if (base::fileExists(file) && !mayReplace(file)) {
            done.left.push_back(file);
            return Result<void>{};
        }
        const auto failed = [&](const base::Error& error) {
            return base::Error{error.kind, failure, file, 0, error.cause};
        };
        if (grid == nullptr)
            return Result<void>(failed(base::rangeError({})));
        grid->setTitle(name);
        const Result<void> written = grid::writeGridFile(*grid, file, progress);
        if (!written)
            return Result<void>(failed(written.error()));
        done.files.push_back(file);
        return Result<void>{};
    };
    if (!result.grid)
        return done;
    for (int n = 1; data.final.keepUnitGrids && n <= data.units; ++n)
        if (const auto unit = write(unitGrid(result, n), fmt::format("CMRR_Unit{}", n), kUnitError);
            !unit)
            return unit.error();
    if (const auto roof = write(result.grid.get(), "CMRR", kRoofError); !roof)
        return roof.error();
    return done;
}

} // namespace tessaran::cmrr
