#include "base/fast_numbers.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tessaran::base {
namespace {

// Below this the whole part fits an integer and the fraction is exact.
constexpr double kLargestFast = 1e15;
constexpr double kMillion = 1e6;

constexpr std::uint64_t kLargestExactMantissa = std::uint64_t{1} << 53;
constexpr std::array<double, 23> kPowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                              1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::ptrdiff_t kMostDigits = 18; // that never overflow 64 bits

struct DigitPairs {
    std::array<char, 200> text{};
    constexpr DigitPairs() {
        for (std::size_t i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr DigitPairs kPairs;

void putPair(char* out, std::uint32_t number) {
    std::memcpy(out, kPairs.text.data() + std::size_t{2} * number, 2);
}

char* putWhole(char* out, std::uint64_t number) {
    std::array<char, 20> digits{};
    char* const end = digits.data() + digits.size();
    char* begin = end;
    while (number >= 100) {
        begin -= 2;
        putPair(begin, static_cast<std::uint32_t>(number % 100));
        number /= 100;
    }
    if (number >= 10) {
        begin -= 2;
        putPair(begin, static_cast<std::uint32_t>(number));
    } else {
        *--begin = static_cast<char>('0' + number);
    }
    const auto size = static_cast<std::size_t>(end - begin);
    std::memcpy(out, begin, size);
    return out + size;
}

// `fraction` in millionths, 0 <= fraction < 1, rounded to the nearest, exact ties to even.
std::uint32_t millionths(double fraction) {
    const double product = fraction * kMillion;
    auto whole = static_cast<std::uint32_t>(product);
    const double rest = product - whole;
    // The product's own rounding is less than half of its last place, so that it can only matter
    // when the rest reads exactly one half.
    if (rest == 0.5) {
        const double error = std::fma(fraction, kMillion, -product);
        whole += error > 0.0 || (error == 0.0 && (whole & 1u) != 0) ? 1 : 0;
    } else {
        whole += rest > 0.5 ? 1 : 0;
    }
    return whole;
}

// --- eight characters at once, the first one in the lowest byte ---------------------------------

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::ptrdiff_t kRoomForEights = 24; // sign, seven digits, point, eight characters, more

std::uint64_t eightCharacters(const char* text) {
    std::uint64_t out = 0;
    std::memcpy(&out, text, sizeof out);
    return out;
}

// How many of the characters, each with '0' taken off, are digits before the first that is none.
// (A carry can only reach bytes behind that one.)
int leadingDigits(std::uint64_t characters) {
    const std::uint64_t others =
        ((characters + 0x76 * kEachByte) | characters) & (0x80 * kEachByte);
    return std::countr_zero(others) / 8;
}

// The number of eight digits: neighbours are joined to pairs, pairs to fours, fours to eight.
std::uint64_t numberOfEight(std::uint64_t digits) {
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t kPair = 0x000000FF000000FF;
    return (((digits & kPair) * (100 + (1000000ULL << 32))) +
            (((digits >> 16) & kPair) * (1 + (10000ULL << 32)))) >>
           32;
}

// The first `count` digits, 1 to 7, as a number.
std::uint64_t numberOf(std::uint64_t digits, int count) {
    return numberOfEight(digits << (64 - 8 * count));
}

// Numbers of up to seven digits before and after the point, as nearly all are.
const char* readShortDouble(const char* p, double& value) {
    const bool negative = *p == '-';
    p += negative ? 1 : 0;
    const std::uint64_t front = eightCharacters(p) ^ ('0' * kEachByte);
    const int wholeDigits = leadingDigits(front);
    if (wholeDigits == 0 || wholeDigits == 8 || p[wholeDigits] != '.')
        return nullptr;
    p += wholeDigits + 1;
    const std::uint64_t back = eightCharacters(p) ^ ('0' * kEachByte);
    const int decimals = leadingDigits(back);
    if (decimals == 0 || decimals == 8)
        return nullptr;
    static constexpr std::array<std::uint64_t, 8> kPowers{1,     10,     100,     1000,
                                                          10000, 100000, 1000000, 10000000};
    const auto place = static_cast<std::size_t>(decimals);
    const std::uint64_t mantissa =
        numberOf(front, wholeDigits) * kPowers[place] + numberOf(back, decimals);
    const double size = static_cast<double>(mantissa) / kPowersOfTen[place];
    p += decimals;
    if (*p == 'e' || *p == 'E')
        return nullptr;
    value = negative ? -size : size;
    return p;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

char* writeFixed6(char* out, double value) {
    double size = std::fabs(value);
    if (!(size < kLargestFast))
        return std::to_chars(out, out + kFixed6Room, value, std::chars_format::fixed, 6).ptr;
    if (std::signbit(value))
        *out++ = '-';
    auto whole = static_cast<std::uint64_t>(size);
    std::uint32_t decimals = millionths(size - static_cast<double>(whole));
    if (decimals == 1000000) {
        decimals = 0;
        ++whole;
    }
    out = putWhole(out, whole);
    *out++ = '.';
    putPair(out, decimals / 10000);
    putPair(out + 2, decimals / 100 % 100);
    putPair(out + 4, decimals % 100);
    return out + 6;
}

const char* readPlainDouble(const char* begin, const char* end, double& value) {
    if (std::endian::native == std::endian::little && end - begin >= kRoomForEights)
        if (const char* stop = readShortDouble(begin, value); stop != nullptr)
            return stop;
    const char* p = begin;
    const bool negative = p != end && *p == '-';
    p += negative ? 1 : 0;
    std::uint64_t mantissa = 0;
    const char* const digits = p;
    for (; p != end && isDigit(*p); ++p)
        mantissa = 10 * mantissa + static_cast<std::uint64_t>(*p - '0');
    std::ptrdiff_t count = p - digits;
    std::ptrdiff_t decimals = 0;
    if (p != end && *p == '.') {
        const char* const fraction = ++p;
        for (; p != end && isDigit(*p); ++p)
            mantissa = 10 * mantissa + static_cast<std::uint64_t>(*p - '0');
        decimals = p - fraction;
        count += decimals;
    }
    // Both numbers are exact doubles, so that their quotient is the correctly rounded value.
    if (count == 0 || count > kMostDigits || mantissa > kLargestExactMantissa)
        return nullptr;
    if (p != end && (*p == 'e' || *p == 'E'))
        return nullptr;
    value = static_cast<double>(mantissa) / kPowersOfTen[static_cast<std::size_t>(decimals)];
    if (negative)
        value = -value;
    return p;
}

} // namespace tessaran::base
