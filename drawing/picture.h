#pragma once

// A drawing as a picture file, without a screen: PNG, SVG or PDF by the file's ending. The map in a
// frame, with title, scale bar and north arrow.

#include "base/result.h"
#include "drawing/canvas.h"
#include "drawing/colour_table.h"
#include "drawing/database.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::drawing {

inline constexpr int kSmallestPicture = 64;   // pixels wide
inline constexpr int kLargestPicture = 10000; // keeps the memory within reason

struct PictureOptions {
    int width = 1600;                   // pixels; in PDF three quarters of a point each
    std::optional<host::Box2> extent{}; // world; without one, what is shown
    std::vector<std::string> layers{};  // only these; empty: all. Off and frozen ones never
    std::string title{};
    Rgb background{255, 255, 255};
    // Drawn over the drawing: temporary graphics, a grid's cells.
    std::function<void(Canvas&)> overlay{};
    std::string units{}; // beside the scale bar; empty: from the drawing's INSUNITS
};

struct PictureSummary {
    std::size_t drawn = 0;    // entities
    std::size_t notShown = 0; // entities of types that the system does not draw
};

// Errors: a width out of range, an empty or not finite extent, a layer that is not there, an
// unknown file ending, a file that cannot be written. An earlier file stays until the new one is
// complete.
base::Result<PictureSummary> writePicture(const Database& database,
                                          const std::filesystem::path& path,
                                          const PictureOptions& options = {});

} // namespace tessaran::drawing
