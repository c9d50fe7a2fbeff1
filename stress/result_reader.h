#pragma once

// Result files read back: what items they hold, and one item of one step as a grid.

#include "base/result.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::stress {

struct ResultHeader {
    int steps = 0;
    int elements = 0; // of one step, nX * nY
    double width = 0.0;
    int nX = 0;
    int nY = 0;
    double x = 0.0;
    double y = 0.0;
    std::vector<std::string> items; // names, in the order of a line's values
    std::vector<std::string> units;
};

// The three header lines at the beginning of a text. An error's text is the message to show.
// `fileSize` is that of the whole file, which bounds what the header may claim.
base::Result<ResultHeader> parseResultHeader(std::string_view text, std::size_t fileSize);
// Of a file. An error of the kind io: it could not be opened.
base::Result<ResultHeader> readResultHeader(const std::filesystem::path& file);

// Item `item` (from 1) of step `step` (from 1), X outermost, into a grid of the result's geometry
// titled by the item's name; the file's other steps are passed over. An empty or missing line ends
// it with the message that names its row and column. An error of the kind io: the file could not be
// opened or read.
base::Result<void> readItem(const std::filesystem::path& file, const ResultHeader& header, int item,
                            int step, grid::myGrid& grid);

} // namespace tessaran::stress
