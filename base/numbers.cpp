#include "base/numbers.h"

#include "base/fast_numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tessaran::base {
namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view withoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view withoutBlanks(std::string_view text) {
    text = withoutLeadingBlanks(text);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// from_chars takes no '+'; the C library does.
std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

// The number at the start of `text`, and how much of the text it takes (0 when there is none).
struct Parsed {
    double value = 0.0;
    std::size_t used = 0;
};

Parsed parseDouble(std::string_view text) {
    Parsed out;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), out.value);
    if (code == std::errc::invalid_argument)
        return {};
    out.used = static_cast<std::size_t>(end - text.data());
    if (code == std::errc::result_out_of_range) {
        // Too large or too small for a double: the sign and the exponent tell which.
        const std::string_view number = text.substr(0, out.used);
        const bool negative = number.front() == '-';
        const std::size_t e = number.find_first_of("eE");
        bool tiny = e != std::string_view::npos && number.substr(e + 1).starts_with('-');
        if (e == std::string_view::npos)
            tiny = number.find_first_of("123456789") > number.find('.');
        const double size = tiny ? 0.0 : std::numeric_limits<double>::infinity();
        out.value = negative ? -size : size;
    }
    return out;
}

std::string printed(double value, std::chars_format format, int precision) {
    std::array<char, 400> buffer{};
    const auto [end, code] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    if (code != std::errc{})
        return {};
    return std::string(buffer.data(), end);
}

} // namespace

double leadingDouble(std::string_view text) {
    return parseDouble(withoutPlus(withoutLeadingBlanks(text))).value;
}

std::optional<double> leadingNumber(std::string_view text) {
    const Parsed parsed = parseDouble(withoutPlus(withoutLeadingBlanks(text)));
    return parsed.used > 0 ? std::optional(parsed.value) : std::nullopt;
}

int leadingInt(std::string_view text) {
    text = withoutPlus(withoutLeadingBlanks(text));
    int value = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
    static_cast<void>(end);
    if (code == std::errc::result_out_of_range)
        return text.front() == '-' ? std::numeric_limits<int>::min()
                                   : std::numeric_limits<int>::max();
    return value;
}

std::optional<double> wholeDouble(std::string_view text) {
    text = withoutPlus(withoutBlanks(text));
    const Parsed parsed = parseDouble(text);
    if (text.empty() || parsed.used != text.size())
        return std::nullopt;
    return parsed.value;
}

std::optional<long long> wholeInt(std::string_view text) {
    text = withoutPlus(withoutBlanks(text));
    long long value = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || code != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::string fixed6(double value) {
    std::string out;
    appendFixed6(out, value);
    return out;
}

std::string fixed(double value, int decimals) {
    return printed(value, std::chars_format::fixed, decimals);
}

std::string general(double value) {
    return printed(value, std::chars_format::general, 6);
}

std::string shortest(double value) {
    constexpr double kLongest = 1e15; // from here on an exponent reads better
    std::array<char, 400> buffer{};
    char* const last = buffer.data() + buffer.size();
    const bool plain = std::abs(value) >= 1.0 && std::abs(value) < kLongest;
    const auto [end, code] =
        plain ? std::to_chars(buffer.data(), last, value, std::chars_format::fixed)
              : std::to_chars(buffer.data(), last, value);
    return code == std::errc{} ? std::string(buffer.data(), end) : std::string{};
}

void appendFixed6(std::string& out, double value) {
    std::array<char, kFixed6Room> buffer;
    out.append(buffer.data(), writeFixed6(buffer.data(), value));
}

} // namespace tessaran::base
