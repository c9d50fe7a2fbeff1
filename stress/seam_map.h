#pragma once

// Seam code maps, ".txt": what every cell of a seam is, one character a cell. The first line is
// "nX,nY,x,y" with the origin in drawing units; then one line a row, the northernmost first.
// Neither the cells' width nor a rotation is in the file.

#include "base/result.h"
#include "grid/my_grid.h"
#include "stress/model.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::stress {

struct SeamMap {
    int nX = 0;
    int nY = 0;
    double x = 0.0; // of the low-left corner, drawing units
    double y = 0.0;
    ElementCodes codes; // columns outer, as a model holds them
};

// Refuses rows that are missing, too short or too long: codes are single characters.
base::Result<SeamMap> parseSeamMap(std::string_view text);
base::Result<SeamMap> readSeamMap(const std::filesystem::path& path);

// The codes that the cells of a seam grid are written with.
struct SeamCodes {
    std::string pillar = "A"; // cells above 0
    std::string entry = "1";
    std::string gob = "S"; // cells below 0
};

// A seam grid as a code map: written whole or not at all.
base::Result<void> writeSeamMap(const std::filesystem::path& path, const grid::myGrid& grid,
                                const SeamCodes& codes);

} // namespace tessaran::stress
