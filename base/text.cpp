#include "base/text.h"

#include <algorithm>

namespace tessaran::base {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Length of the UTF-8 sequence that starts with `lead`; 0 for a byte that starts none.
std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return lowered(text).find(lowered(part)) != std::string::npos;
}

bool endsWithIgnoringCase(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() &&
           equalsIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> out;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        out.emplace_back(text.substr(start, end - start));
        if (end == std::string_view::npos)
            return out;
        start = end + 1;
    }
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            out += separator;
        out += parts[i];
    }
    return out;
}

std::vector<std::string> nameList(std::string_view text) {
    std::vector<std::string> out;
    for (const std::string& part : split(text, ','))
        if (const std::string_view name = trimmed(part); !name.empty())
            out.emplace_back(name);
    return out;
}

std::string withLastReplaced(std::string_view text, std::string_view ending,
                             std::string_view replacement) {
    const std::size_t at = lowered(text).rfind(lowered(ending));
    std::string out(text);
    if (at == std::string::npos)
        return out += replacement;
    return out.replace(at, ending.size(), replacement);
}

std::string withEnding(std::string_view text, std::string_view ending) {
    std::string out(text);
    if (!endsWithIgnoringCase(text, ending))
        out += ending;
    return out;
}

bool isValidUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = sequenceLength(lead);
        if (length == 0 || i + length > text.size())
            return false;
        unsigned code = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0u) != 0x80u)
                return false;
            code = code << 6u | (next & 0x3Fu);
        }
        const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
        if (overlong || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF)
            return false;
        i += length;
    }
    return true;
}

} // namespace tessaran::base
