#include "drawing/dxf_tags.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace tessaran::drawing::dxf {
namespace {

constexpr std::size_t kCodeRoom = 8;    // a group code and its line end
constexpr std::size_t kNumberRoom = 24; // the longest of the shortest texts of numbers

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

template <class Number>
Number load(std::string_view bytes) {
    Number value{};
    std::memcpy(&value, bytes.data(), sizeof value); // files and machines are little-endian
    return value;
}

// Size of a binary value of fixed size; 0 for texts and chunks.
std::size_t binarySize(ValueKind kind) {
    switch (kind) {
    case ValueKind::real:
    case ValueKind::int64:
        return 8;
    case ValueKind::int32:
        return 4;
    case ValueKind::int16:
        return 2;
    case ValueKind::boolean:
        return 1;
    case ValueKind::text:
    case ValueKind::chunk:
        return 0;
    }
    return 0;
}

std::optional<std::int64_t> binaryInteger(ValueKind kind, std::string_view bytes) {
    switch (kind) {
    case ValueKind::int16:
        return load<std::int16_t>(bytes);
    case ValueKind::int32:
        return load<std::int32_t>(bytes);
    case ValueKind::int64:
        return load<std::int64_t>(bytes);
    case ValueKind::boolean:
        return static_cast<unsigned char>(bytes[0]);
    default:
        return std::nullopt;
    }
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
    text = withoutBlanks(text);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    std::int64_t value = 0;
    const char* last = text.data() + text.size();
    const auto [end, code] = std::from_chars(text.data(), last, value);
    if (text.empty() || code != std::errc{})
        return std::nullopt;
    if (end != last) { // "1.0" for an integer is written by some programs
        const std::optional<double> real = base::wholeDouble(text);
        if (!real || std::floor(*real) != *real || std::abs(*real) > 1e15)
            return std::nullopt;
        return static_cast<std::int64_t>(*real);
    }
    return value;
}

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

} // namespace

Format detectFormat(std::string_view bytes) {
    Format format;
    if (bytes.starts_with(kBinarySignature)) {
        // The first tag is "0 SECTION": a second zero byte belongs to a code of two bytes.
        const std::size_t second = kBinarySignature.size() + 1;
        const bool wide = bytes.size() > second && bytes[second] == '\0';
        format.layout = wide ? Format::Layout::binary16 : Format::Layout::binary8;
        return format;
    }
    const std::size_t feed = bytes.find('\n');
    if (feed == std::string_view::npos)
        format.newline = bytes.find('\r') == std::string_view::npos ? "\n" : "\r";
    else
        format.newline = feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
    return format;
}

namespace {

constexpr int kCodes = 1072;

constexpr std::array<ValueKind, kCodes> valueKinds() {
    struct Range {
        int first;
        int last;
        ValueKind kind;
    };
    constexpr std::array kRanges{
        Range{10, 59, ValueKind::real},      Range{60, 79, ValueKind::int16},
        Range{90, 99, ValueKind::int32},     Range{110, 149, ValueKind::real},
        Range{160, 169, ValueKind::int64},   Range{170, 179, ValueKind::int16},
        Range{210, 239, ValueKind::real},    Range{270, 289, ValueKind::int16},
        Range{290, 299, ValueKind::boolean}, Range{310, 319, ValueKind::chunk},
        Range{370, 389, ValueKind::int16},   Range{400, 409, ValueKind::int16},
        Range{420, 429, ValueKind::int32},   Range{440, 459, ValueKind::int32},
        Range{460, 469, ValueKind::real},    Range{1004, 1004, ValueKind::chunk},
        Range{1010, 1059, ValueKind::real},  Range{1060, 1070, ValueKind::int16},
        Range{1071, 1071, ValueKind::int32},
    };
    std::array<ValueKind, kCodes> kinds{}; // the rest are texts
    for (const Range& range : kRanges)
        for (int code = range.first; code <= range.last; ++code)
            kinds[static_cast<std::size_t>(code)] = range.kind;
    return kinds;
}

} // namespace

ValueKind valueKind(int code) {
    static constexpr std::array<ValueKind, kCodes> kKinds = valueKinds();
    return code >= 0 && code < kCodes ? kKinds[static_cast<std::size_t>(code)] : ValueKind::text;
}

// --- reading ------------------------------------------------------------------------------------

TagReader::TagReader(std::string_view bytes, const Format& format, std::size_t offset, long line)
    : bytes_(bytes), layout_(format.layout), lineEnd_(format.newline.back()), offset_(offset),
      line_(line), nextLine_(line) {
    if (offset != 0)
        return;
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (layout_ != Format::Layout::text)
        offset_ = kBinarySignature.size();
    else if (bytes_.starts_with(kByteOrderMark))
        offset_ = kByteOrderMark.size();
}

bool TagReader::fail(std::string reason) {
    error_ = base::formatError(std::move(reason), {}, line_);
    return false;
}

bool TagReader::next(Tag& tag) {
    if (error_ || offset_ >= bytes_.size())
        return false;
    line_ = nextLine_;
    tag.begin = offset_;
    const bool read = layout_ == Format::Layout::text ? nextText(tag) : nextBinary(tag);
    tag.end = offset_;
    return read;
}

bool TagReader::takeLine(std::string_view& line) {
    if (offset_ >= bytes_.size())
        return false;
    const char* begin = bytes_.data() + offset_;
    const std::size_t rest = bytes_.size() - offset_;
    const void* found = std::memchr(begin, lineEnd_, rest);
    const std::size_t size =
        found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - begin) : rest;
    line = std::string_view(begin, size);
    offset_ += size + (found != nullptr ? 1 : 0);
    if (lineEnd_ == '\n' && line.ends_with('\r'))
        line.remove_suffix(1);
    ++nextLine_;
    return true;
}

bool TagReader::nextText(Tag& tag) {
    std::string_view codeLine;
    takeLine(codeLine);
    const std::string_view digits = withoutBlanks(codeLine);
    const char* last = digits.data() + digits.size();
    const auto [end, result] = std::from_chars(digits.data(), last, tag.code);
    if (digits.empty() || result != std::errc{} || end != last) {
        if (digits.empty() && withoutBlanks(bytes_.substr(offset_)).empty()) {
            offset_ = bytes_.size();
            return false; // a blank line at the very end
        }
        return fail("a group code is expected, not \"" + std::string(codeLine.substr(0, 40)) +
                    "\"");
    }
    if (tag.code < -5 || tag.code > 1071)
        return fail("there is no group code " + std::to_string(tag.code));
    if (!takeLine(tag.value))
        return fail("the file is cut off: a group code without a value");
    return true;
}

bool TagReader::nextBinary(Tag& tag) {
    std::string_view rest = bytes_.substr(offset_);
    std::size_t used = 1;
    tag.code = static_cast<unsigned char>(rest[0]);
    const bool escaped = layout_ == Format::Layout::binary8 && tag.code == 255;
    if (escaped || layout_ == Format::Layout::binary16) {
        const std::size_t at = escaped ? 1 : 0;
        used = at + 2;
        if (rest.size() < used)
            return fail("the file is cut off inside a group code");
        tag.code = load<std::int16_t>(rest.substr(at));
    }
    if (tag.code < -5 || tag.code > 1071)
        return fail("there is no group code " + std::to_string(tag.code));
    rest.remove_prefix(used);
    const ValueKind kind = valueKind(tag.code);
    std::size_t skip = 0; // bytes of the value that are not content
    std::size_t size = binarySize(kind);
    if (kind == ValueKind::text) {
        size = rest.find('\0');
        skip = 1;
    } else if (kind == ValueKind::chunk) {
        size = rest.empty() ? std::string_view::npos : static_cast<unsigned char>(rest[0]);
        if (!rest.empty())
            rest.remove_prefix(1);
        ++used;
    }
    if (size == std::string_view::npos || rest.size() < size + skip)
        return fail("the file is cut off inside a value");
    tag.value = rest.substr(0, size);
    offset_ += used + size + skip;
    ++nextLine_;
    return true;
}

// --- values -------------------------------------------------------------------------------------

std::optional<double> TagValues::real(const Tag& tag) const {
    if (!text_) {
        if (tag.value.size() == 8 && valueKind(tag.code) == ValueKind::real)
            return load<double>(tag.value);
        return std::nullopt;
    }
    std::string_view number = withoutBlanks(tag.value);
    double value = 0.0;
    const char* last = number.data() + number.size();
    const auto [end, code] = std::from_chars(number.data(), last, value);
    if (!number.empty() && code == std::errc{} && end == last)
        return value;
    return base::wholeDouble(number); // signs and exponents out of the ordinary
}

std::optional<std::int64_t> TagValues::integer(const Tag& tag) const {
    return text_ ? parseInteger(tag.value) : binaryInteger(valueKind(tag.code), tag.value);
}

std::optional<std::uint64_t> TagValues::handle(const Tag& tag) const {
    return parseHandle(tag.value);
}

std::string_view TagValues::name(const Tag& tag) const {
    return withoutBlanks(tag.value);
}

std::string TagValues::chunk(const Tag& tag) const {
    if (!text_)
        return std::string(tag.value);
    std::string out;
    const std::string_view digits = withoutBlanks(tag.value);
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        unsigned value = 0;
        std::from_chars(digits.data() + i, digits.data() + i + 2, value, 16);
        out.push_back(static_cast<char>(value));
    }
    return out;
}

std::optional<std::uint64_t> parseHandle(std::string_view text) {
    text = withoutBlanks(text);
    std::uint64_t value = 0;
    const char* last = text.data() + text.size();
    const auto [end, code] = std::from_chars(text.data(), last, value, 16);
    if (text.empty() || code != std::errc{} || end != last)
        return std::nullopt;
    return value;
}

std::string handleText(std::uint64_t handle) {
    std::array<char, 16> digits{};
    std::size_t first = digits.size();
    do {
        digits[--first] = kHexDigits[handle & 15];
        handle >>= 4;
    } while (handle != 0);
    return std::string(digits.data() + first, digits.size() - first);
}

void readTags(std::string_view bytes, const Format& format, std::size_t begin, std::size_t end,
              std::vector<Tag>& tags) {
    tags.clear();
    TagReader reader(bytes.substr(0, end), format, begin);
    Tag tag;
    while (reader.next(tag))
        tags.push_back(tag);
}

// --- writing ------------------------------------------------------------------------------------

template <class Number>
void TagWriter::binary(Number value) {
    std::array<char, sizeof value> bytes{};
    std::memcpy(bytes.data(), &value, sizeof value);
    out_.append(bytes.data(), bytes.size());
}

void TagWriter::code(int code) {
    if (!format_.text()) {
        binary(static_cast<std::int16_t>(code));
        return;
    }
    std::array<char, kCodeRoom> line;
    out_.append(line.data(), putCode(line.data(), code));
}

// A line with the code in three columns or more.
char* TagWriter::putCode(char* to, int code) const {
    std::array<char, kCodeRoom> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), code).ptr;
    for (auto size = end - digits.data(); size < 3; ++size)
        *to++ = ' ';
    return putNewline(std::copy(static_cast<const char*>(digits.data()), end, to));
}

char* TagWriter::putNewline(char* to) const {
    return std::copy(format_.newline.begin(), format_.newline.end(), to);
}

void TagWriter::text(int tagCode, std::string_view value) {
    code(tagCode);
    out_ += value;
    if (format_.text())
        out_ += format_.newline;
    else
        out_.push_back('\0');
}

void TagWriter::real(int tagCode, double value) {
    if (!format_.text()) {
        code(tagCode);
        binary(value);
        return;
    }
    std::array<char, kCodeRoom + kNumberRoom + 4> lines; // ".0" and a line end follow
    char* const number = putCode(lines.data(), tagCode);
    char* end = std::to_chars(number, number + kNumberRoom, value).ptr;
    if (std::none_of(number, end, [](char c) { return c == '.' || c == 'e'; })) {
        // Readers tell reals from integers by the point.
        *end++ = '.';
        *end++ = '0';
    }
    out_.append(lines.data(), putNewline(end));
}

void TagWriter::integer(int tagCode, std::int64_t value) {
    code(tagCode);
    if (format_.text()) {
        out_ += std::to_string(value);
        out_ += format_.newline;
        return;
    }
    switch (valueKind(tagCode)) {
    case ValueKind::int16:
        return binary(static_cast<std::int16_t>(value));
    case ValueKind::int32:
        return binary(static_cast<std::int32_t>(value));
    case ValueKind::boolean:
        return binary(static_cast<std::int8_t>(value));
    default:
        return binary(value);
    }
}

void TagWriter::handle(int tagCode, std::uint64_t value) {
    text(tagCode, handleText(value));
}

void TagWriter::chunk(int tagCode, std::string_view bytes) {
    code(tagCode);
    if (!format_.text()) {
        out_.push_back(static_cast<char>(bytes.size()));
        out_ += bytes;
        return;
    }
    for (const char byte : bytes) {
        out_.push_back(kHexDigits[static_cast<unsigned char>(byte) >> 4]);
        out_.push_back(kHexDigits[static_cast<unsigned char>(byte) & 15]);
    }
    out_ += format_.newline;
}

void TagWriter::point(int tagCode, double x, double y) {
    real(tagCode, x);
    real(tagCode + 10, y);
}

void TagWriter::point(int tagCode, double x, double y, double z) {
    point(tagCode, x, y);
    real(tagCode + 20, z);
}

} // namespace tessaran::drawing::dxf
