#include "stress/field_scanner.h"

#include "stress/arrays.h"

#include <charconv>
#include <cmath>

namespace tessaran::stress {
namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

std::optional<std::string_view> FieldScanner::line() {
    if (atEnd())
        return std::nullopt;
    const std::size_t end = text_.find('\n', at_);
    std::string_view out = text_.substr(at_, end - at_);
    at_ = end == std::string_view::npos ? text_.size() : end + 1;
    ++line_;
    if (out.ends_with('\r'))
        out.remove_suffix(1);
    return out;
}

void FieldScanner::skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) {
        if (text_[at_] == '\n')
            ++line_;
        ++at_;
    }
}

template <class Number>
std::optional<Number> FieldScanner::number() {
    skipBlanks();
    std::size_t from = at_;
    if (from + 1 < text_.size() && text_[from] == '+' && text_[from + 1] != '-')
        ++from;
    Number value{};
    const auto [end, code] =
        std::from_chars(text_.data() + from, text_.data() + text_.size(), value);
    if (code != std::errc{})
        return std::nullopt;
    at_ = static_cast<std::size_t>(end - text_.data());
    return value;
}

std::optional<double> FieldScanner::real() {
    return number<double>();
}

std::optional<int> FieldScanner::integer() {
    return number<int>();
}

bool FieldScanner::take(double& value) {
    const std::optional<double> read = real();
    value = static_cast<double>(static_cast<float>(read.value_or(0.0)));
    return read && std::isfinite(value);
}

bool FieldScanner::take(int& value) {
    const std::optional<int> read = integer();
    value = read.value_or(0);
    return read.has_value();
}

bool FieldScanner::reals(std::size_t count, std::vector<double>& out) {
    if (count > left() / 2 + 1) // a number and its line end take two characters at least
        return false;
    out = allocatedArray<double>(ArrayKind::dmatrix, count);
    for (double& value : out) {
        const std::optional<double> read = real();
        if (!read)
            return false;
        value = *read;
    }
    return true;
}

std::optional<char> FieldScanner::character() {
    skipBlanks();
    if (atEnd())
        return std::nullopt;
    return text_[at_++];
}

bool FieldScanner::comma() {
    std::size_t at = at_;
    while (at < text_.size() && (text_[at] == ' ' || text_[at] == '\t'))
        ++at;
    if (at >= text_.size() || text_[at] != ',')
        return false;
    at_ = at + 1;
    return true;
}

} // namespace tessaran::stress
