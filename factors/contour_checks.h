#pragma once

// Checks of contour lines: which of them meet others, and at which height they lie.

#include "base/progress.h"
#include "geometry/curve.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::factors {

// The contours that meet at least one other in plan (crossing, touching, or along a stretch),
// ascending. Found through an index over short runs of segments. The progress runs from 0 to the
// number of contours. Nothing when it was cancelled.
std::optional<std::vector<std::size_t>> meetingContours(std::span<const geometry::Curve> contours,
                                                        base::Progress& progress);

// Whether the whole line lies at that elevation, to 1e-10.
bool hasElevation(const geometry::Curve& contour, double elevation);

} // namespace tessaran::factors
