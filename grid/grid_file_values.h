#pragma once

// The long part of a grid file, one value a line, read and written by all cores.

#include "base/progress.h"
#include "base/result.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

namespace tessaran::grid {

// Reads `values.size()` lines of the text from `at` on: a number, or "N" for no value. Returns
// where the line after the last value begins. An error means that the text ends too early (what
// was there has been read) or that `progress` was cancelled. Progress stands at value / rowLength.
base::Result<std::size_t> readValueLines(std::string_view text, std::size_t at,
                                         std::span<double> values, std::size_t rowLength,
                                         base::Progress& progress);

// Gives the lines of all values to `sink`, in order and in pieces.
base::Result<void> writeValueLines(std::span<const double> values, std::size_t rowLength,
                                   const std::function<void(std::string_view)>& sink,
                                   base::Progress& progress);

} // namespace tessaran::grid
