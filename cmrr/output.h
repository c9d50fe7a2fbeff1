#pragma once

// The grid files of a roof rating: "CMRR.grd", and "CMRR_Unit1.grd" and so on where the unit grids
// are kept.

#include "base/progress.h"
#include "base/result.h"
#include "cmrr/roof_rating.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::cmrr {

struct Written {
    std::vector<std::string> files{};
    std::vector<std::string> left{}; // that were there and may not be replaced
};

// Unit grids first: when one cannot be written, there is no rating's grid either. The error's text
// is the stated one, and its file the one that failed. Nothing for a rating that is one number.
base::Result<Written> writeRoof(RoofResult& result, const RoofData& data,
                                const std::filesystem::path& folder,
                                const std::function<bool(const std::string& file)>& mayReplace,
                                base::Progress& progress);

} // namespace tessaran::cmrr
