#pragma once

// The two number conversions that files of millions of numbers spend their time in, at a few
// nanoseconds each, with exactly the C library's results.

#include <cstddef>

namespace tessaran::base {

// Room for any double's "%f": sign, 309 digits, point, 6 decimals.
inline constexpr std::size_t kFixed6Room = 320;

// Writes "%f" of the value to `out` (kFixed6Room bytes); returns the end. Rounds as printf does: to
// the nearest, ties of the exact binary value to the even digit.
char* writeFixed6(char* out, double value);

// A plain decimal number ("-123.456") at the start of [begin, end), correctly rounded. Returns the
// end of its digits, or null where the number is not plain or too long for the fast way (then
// leadingDouble() reads it).
const char* readPlainDouble(const char* begin, const char* end, double& value);

} // namespace tessaran::base
