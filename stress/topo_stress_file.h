#pragma once

// The solver's topographic stress file (".top"): a header line, two lines of text, and the blocks'
// values one a line, columns outer. The manual's page on file formats shows it.

#include "base/result.h"
#include "stress/topography.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::stress {

// How reading ended: code 0, or 1 to 3 with the message to show.
struct TopoReading {
    int code = 0;
    std::string message{};
    long line = 0;
    TopographicGrid grid{};
    std::string quantity{}; // the second line, "1,Overburden Stress"

    bool ok() const { return code == 0; }
    // A file of depths has the same layout; its second line tells.
    bool holdsDepths() const;
};
TopoReading parseTopoStress(std::string_view text);
// A file that cannot be opened gives code 1.
TopoReading readTopoStress(const std::filesystem::path& path);

// Seam stresses at the seam's own level: written whole or not at all.
base::Result<void> writeTopoStress(const std::filesystem::path& path, const TopographicGrid& grid,
                                   const std::string& stressUnit);

} // namespace tessaran::stress
