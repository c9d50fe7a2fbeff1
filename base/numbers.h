#pragma once

// Numbers as text without regard to the locale, with the C library's conventions where the file
// formats are built on them.

#include <optional>
#include <string>
#include <string_view>

namespace tessaran::base {

// The longest leading number of the text after leading blanks; 0 when it holds none (as atof and
// atoi read). Integers outside the 32-bit range are held at its ends.
double leadingDouble(std::string_view text);
int leadingInt(std::string_view text);
// As leadingDouble(), but nothing where the text holds no number.
std::optional<double> leadingNumber(std::string_view text);

// The whole text (blanks around it allowed) as one number; nothing when anything else stands in it.
std::optional<double> wholeDouble(std::string_view text);
std::optional<long long> wholeInt(std::string_view text);

// "%f", "%.<n>f", "%g" and the shortest text that reads back as the same number; from 1 to 1e15
// without an exponent.
std::string fixed6(double value);
std::string fixed(double value, int decimals);
std::string general(double value); // "%g"
std::string shortest(double value);

// Appends "%f" of the value.
void appendFixed6(std::string& out, double value);

} // namespace tessaran::base
