#pragma once

// The exponential of the strain-hardening gob, step by step as the vector code does it too, so that
// both give the same bits on every machine: x = n ln 2 + r, |r| <= ln 2 / 2, the power series of
// exp(r) to r^13, and n put into the exponent. Within 2 units in the last place; above 709 it is
// infinite, below -708 it is 0.

#include <array>
#include <bit>
#include <cstdint>
#include <limits>

namespace tessaran::stress {

inline constexpr double kExpMost = 709.0;
inline constexpr double kExpLeast = -708.0;
inline constexpr double kLog2E = 1.4426950408889634;
inline constexpr double kLn2High = 6.93147180369123816490e-01; // 33 bits
inline constexpr double kLn2Low = 1.90821492927058770002e-10;
// Added to a number below 2^51 it leaves the nearest integer in the low bits.
inline constexpr double kRounder = 6755399441055744.0;
inline constexpr int kMantissaBits = 52;

// 1 / n! for n = 0 ... 13.
inline constexpr std::array<double, 14> kExpSeries = [] {
    std::array<double, 14> c{};
    double factorial = 1.0;
    for (std::size_t n = 0; n < c.size(); ++n) {
        factorial *= n == 0 ? 1.0 : static_cast<double>(n);
        c[n] = 1.0 / factorial;
    }
    return c;
}();

inline double exponential(double x) {
    if (x > kExpMost)
        return std::numeric_limits<double>::infinity();
    if (x < kExpLeast)
        return 0.0;
    const double shifted = x * kLog2E + kRounder;
    const double n = shifted - kRounder;
    const double r = (x - n * kLn2High) - n * kLn2Low;
    const double rr = r * r;
    // Even and odd powers apart: two short chains instead of a long one.
    double even = kExpSeries[12];
    double odd = kExpSeries[13];
    for (std::size_t k = 12; k >= 2; k -= 2) {
        even = even * rr + kExpSeries[k - 2];
        odd = odd * rr + kExpSeries[k - 1];
    }
    const double series = odd * r + even;
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(series) +
                                 (std::bit_cast<std::uint64_t>(shifted) << kMantissaBits));
}

} // namespace tessaran::stress
