#pragma once

// Where points that carry a value as their height come from: text files, and samples along lines.

#include "base/result.h"
#include "geometry/curve.h"
#include "geometry/point.h"

#include <filesystem>
#include <functional>

namespace tessaran::factors {

using PointSink = std::function<void(const geometry::Point3&)>;

struct PointFileCounts {
    long long points = 0;        // given to the sink
    long long skipped = 0;       // lines that do not have three fields, empty ones too
    long long withoutNumber = 0; // lines with a field that holds no number; it counts as 0
    long long unusable = 0;      // lines skipped for a number without bounds, such as 1e999
};

// Reads lines "x,y,z" one by one: files of any size take no memory here. An error when the file
// cannot be opened, or not be read to its end; `counts` then holds what came before.
base::Result<void> readPointFile(const std::filesystem::path& path, const PointSink& sink,
                                 PointFileCounts& counts);

// More samples than this are not taken of one line.
inline constexpr double kMostSamples = 1e8;

// The points at 0, step, 2 step ... along the curve, up to its length; lengths in space. False, and
// no point, when there would be more than kMostSamples.
bool samplesAlong(const geometry::Curve& curve, double step, const PointSink& sink);

} // namespace tessaran::factors
