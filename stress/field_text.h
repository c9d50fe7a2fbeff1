#pragma once

// Numbers as the solver's input files take them: fields of at most 12 characters.

#include <string>

namespace tessaran::stress {

inline constexpr std::size_t kFieldWidth = 12;

// "%f" where that fits the field and reads back as the same number, else as many digits as the
// field holds.
std::string fieldText(double value);

} // namespace tessaran::stress
