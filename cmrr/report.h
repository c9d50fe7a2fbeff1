#pragma once

// How a roof rating came about, as lines of text: unit ratings, average, strong bed and each
// adjustment.

#include "cmrr/roof_rating.h"

#include <string>

namespace tessaran::cmrr {

// "53.8", or "mean 53.8 (41 to 60.2)" of a grid, or "none" where no cell has a value.
std::string rangeText(const Range& range, bool ofGrid);

// Lines without an end after the last.
std::string reportText(const RoofData& data, const RoofResult& result);

inline constexpr const char* kCoreMoistureNote =
    "The moisture sensitivity of core data is kept with the unit; it enters no formula.";

} // namespace tessaran::cmrr
