#include "base/fast_numbers.h"
#include "base/numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace tessaran::base {
namespace {

std::string fast(double value) {
    std::array<char, kFixed6Room> room{};
    return std::string(room.data(), writeFixed6(room.data(), value));
}

std::string printed(double value) {
    std::array<char, kFixed6Room> room{};
    std::snprintf(room.data(), room.size(), "%f", value);
    return room.data();
}

TEST(WriteFixed6, EqualsPrintfWhereRoundingIsDelicate) {
    const double limit = std::numeric_limits<double>::max();
    for (const double value : {0.0,
                               -0.0,
                               1.0,
                               0.5,
                               0.0078125,
                               0.0234375,
                               2.0000005,
                               0.9999995,
                               0.99999949999999999,
                               999999.9999995,
                               123456789.123456789,
                               1e14,
                               999999999999999.875,
                               1e15,
                               1e16,
                               1e20,
                               -1e20,
                               1e300,
                               limit,
                               5e-324,
                               4.9999999999999998e-7,
                               5e-7,
                               5.0000000000000004e-7,
                               -5e-8,
                               1e-7,
                               0.1 + 0.2,
                               std::nextafter(1.0, 0.0),
                               std::nextafter(10.0, 0.0),
                               HUGE_VAL,
                               -HUGE_VAL,
                               std::nan("")}) {
        EXPECT_EQ(fast(value), printed(value));
        EXPECT_EQ(fast(-value), printed(-value));
    }
}

TEST(WriteFixed6, EqualsPrintfForTiesAndAnyBits) {
    // Odd multiples of 2^-7 end in an exact tie at the sixth decimal.
    for (int k = -20001; k < 20001; k += 2)
        ASSERT_EQ(fast(k / 128.0), printed(k / 128.0));
    std::mt19937_64 random(7);
    for (int k = 0; k < 200000; ++k) {
        const auto any = std::bit_cast<double>(random());
        ASSERT_EQ(fast(any), printed(any));
        const double usual =
            std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 80));
        ASSERT_EQ(fast(usual), printed(usual));
    }
}

// What the fast way reads is what strtod reads, to the bit; what it leaves is left untouched.
void expectAsStrtod(const std::string& text) {
    double value = 0.0;
    const char* end = readPlainDouble(text.data(), text.data() + text.size(), value);
    // The same number within a longer text, where there is room for the fastest way.
    const std::string longer = text + "\r\n0.000000\r\n0.000000\r\n";
    double inside = 0.0;
    const char* stopInside = readPlainDouble(longer.data(), longer.data() + longer.size(), inside);
    ASSERT_EQ(end == nullptr, stopInside == nullptr) << text;
    if (end == nullptr)
        return;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(inside), std::bit_cast<std::uint64_t>(value)) << text;
    EXPECT_EQ(stopInside - longer.data(), end - text.data()) << text;
    char* stop = nullptr;
    const double expected = std::strtod(text.c_str(), &stop);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << text;
    EXPECT_EQ(end, stop) << text;
}

TEST(ReadPlainDouble, EqualsStrtod) {
    for (const char* text : {"0", "-0.000000", "1.", ".5", "-.25", "123.456789", "9007199254740992",
                             "0.1", "100000000000000000", "12abc", "3.5 ", "00012.50", "1e5", "N"})
        expectAsStrtod(text);
    std::mt19937_64 random(11);
    for (int k = 0; k < 200000; ++k) {
        const double value =
            std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 70));
        expectAsStrtod(fast(value));
        expectAsStrtod(fixed(value, static_cast<int>(random() % 10)));
        expectAsStrtod(fixed(-value * 1e-6, static_cast<int>(random() % 10)));
    }
}

TEST(ReadPlainDouble, LeavesTheRest) {
    double value = 42.0;
    for (const std::string text :
         {"", "-", ".", "nan", "inf", "1e5", "99999999999999999999", "0.1234567890123456789", "+1"})
        EXPECT_EQ(readPlainDouble(text.data(), text.data() + text.size(), value), nullptr) << text;
    EXPECT_EQ(value, 42.0);
}

} // namespace
} // namespace tessaran::base
