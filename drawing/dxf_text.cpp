#include "drawing/dxf_text.h"

#include "base/text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <iconv.h>
#include <optional>

namespace tessaran::drawing::dxf {
namespace {

constexpr std::string_view kUtf8From = "AC1021";

bool isAscii(std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

void appendUtf8(std::string& out, std::uint32_t c) {
    const auto put = [&](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

// Bytes of the UTF-8 character at the start of the text; 0 when it is malformed.
std::size_t characterSize(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t size = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
    if (size == 0 || text.size() < size || !base::isValidUtf8(text.substr(0, size)))
        return 0;
    return size;
}

std::uint32_t characterOf(std::string_view utf8) {
    const auto lead = static_cast<unsigned char>(utf8[0]);
    if (utf8.size() == 1)
        return lead;
    std::uint32_t c = lead & (0x7Fu >> utf8.size());
    for (const char byte : utf8.substr(1))
        c = (c << 6) | (static_cast<unsigned char>(byte) & 0x3Fu);
    return c;
}

// UTF-8 with every malformed byte taken as the character of its number.
std::string repairedUtf8(std::string_view text) {
    if (base::isValidUtf8(text))
        return std::string(text);
    std::string out;
    while (!text.empty()) {
        const std::size_t size = characterSize(text);
        if (size == 0)
            appendUtf8(out, static_cast<unsigned char>(text[0]));
        else
            out += text.substr(0, size);
        text.remove_prefix(size == 0 ? 1 : size);
    }
    return out;
}

// The converter's name for a code page of the header; empty when there is none.
std::string converterName(std::string_view codePage) {
    const std::string page = base::lowered(base::trimmed(codePage));
    const std::string digits = page.substr(std::min(page.size(), page.find_first_of("0123456789")));
    if (page.starts_with("ansi_") || page.starts_with("dos"))
        return digits.empty() ? std::string{} : "CP" + digits;
    if (page == "mac-roman" || page == "macintosh")
        return "MACINTOSH";
    if (page.starts_with("iso8859-"))
        return "ISO-8859-" + page.substr(8);
    if (page == "gb2312")
        return "CP936";
    if (page == "big5")
        return "CP950";
    if (page == "ksc5601")
        return "CP949";
    if (page == "johab")
        return "CP1361";
    return {};
}

// The code page that the digit of a "\M+nXXXX" escape names.
std::string_view multibytePage(char digit) {
    static constexpr std::array<std::string_view, 5> kPages{"CP932", "CP950", "CP949", "CP1361",
                                                            "CP936"};
    return digit >= '1' && digit <= '5' ? kPages[static_cast<std::size_t>(digit - '1')]
                                        : std::string_view{};
}

// The four hexadecimal digits of an escape.
std::optional<std::uint32_t> hexadecimal(std::string_view digits) {
    std::uint32_t value = 0;
    if (digits.size() < 4)
        return std::nullopt;
    const auto [end, code] = std::from_chars(digits.data(), digits.data() + 4, value, 16);
    if (code != std::errc{} || end != digits.data() + 4)
        return std::nullopt;
    return value;
}

class Converter {
  public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (good())
            iconv_close(handle_);
    }

    bool good() const { return handle_ != reinterpret_cast<iconv_t>(-1); } // NOLINT: iconv's way

    // Converts as much of the text as it can and returns how many bytes that was.
    std::size_t convert(std::string_view text, std::string& out) {
        std::array<char, 512> buffer{};
        char* in = const_cast<char*>(text.data()); // NOLINT: iconv does not write there
        std::size_t left = text.size();
        while (left > 0) {
            char* to = buffer.data();
            std::size_t room = buffer.size();
            const std::size_t before = left;
            const std::size_t result = iconv(handle_, &in, &left, &to, &room);
            out.append(buffer.data(), buffer.size() - room);
            if (result == static_cast<std::size_t>(-1) && left == before)
                break;
        }
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        return text.size() - left;
    }

  private:
    iconv_t handle_;
};

} // namespace

class TextCodec::Page {
  public:
    explicit Page(const std::string& name)
        : toUtf8_("UTF-8", name.c_str()), fromUtf8_(name.c_str(), "UTF-8") {}

    bool good() const { return toUtf8_.good() && fromUtf8_.good(); }

    // Bytes that the page does not define stand for the characters of their numbers.
    std::string toUtf8(std::string_view bytes) {
        std::string out;
        while (!bytes.empty()) {
            bytes.remove_prefix(toUtf8_.convert(bytes, out));
            if (bytes.empty())
                break;
            appendUtf8(out, static_cast<unsigned char>(bytes[0]));
            bytes.remove_prefix(1);
        }
        return out;
    }

    std::optional<std::string> fromUtf8(std::string_view character) {
        std::string out;
        if (fromUtf8_.convert(character, out) == character.size())
            return out;
        const std::uint32_t c = characterOf(character);
        if (c < 0x80 || c > 0x9F)
            return std::nullopt;
        return std::string(1, static_cast<char>(c));
    }

  private:
    Converter toUtf8_;
    Converter fromUtf8_;
};

TextCodec::TextCodec() = default;

TextCodec::TextCodec(std::string_view version, std::string_view codePage)
    : utf8_(version >= kUtf8From) {
    if (utf8_)
        return;
    const std::string name = converterName(codePage.empty() ? "ANSI_1252" : codePage);
    auto page = std::make_shared<Page>(name.empty() ? "ISO-8859-1" : name);
    page_ = page->good() ? page : std::make_shared<Page>("ISO-8859-1");
}

std::string TextCodec::toUtf8(std::string_view bytes) const {
    return page_ ? page_->toUtf8(bytes) : repairedUtf8(bytes);
}

namespace {

// The escape at the start of the text ("\U+XXXX", "\M+nXXXX"): appends its character and returns
// its size, 0 when there is none.
std::size_t takeBackslashEscape(std::string_view text, std::string& out) {
    if (text.size() < 7 || text[2] != '+')
        return 0;
    if (text[1] == 'U' || text[1] == 'u') {
        const std::optional<std::uint32_t> c = hexadecimal(text.substr(3));
        if (!c || *c == 0)
            return 0;
        if (*c >= 0xD800 && *c < 0xDC00 && text.size() >= 14 && text.substr(7, 3) == "\\U+") {
            const std::optional<std::uint32_t> low = hexadecimal(text.substr(10));
            if (low && *low >= 0xDC00 && *low < 0xE000) {
                appendUtf8(out, 0x10000 + ((*c - 0xD800) << 10) + (*low - 0xDC00));
                return 14;
            }
        }
        if (*c >= 0xD800 && *c < 0xE000)
            return 0;
        appendUtf8(out, *c);
        return 7;
    }
    if (text[1] == 'M' && text.size() >= 8) {
        const std::string_view page = multibytePage(text[3]);
        const std::optional<std::uint32_t> c = hexadecimal(text.substr(4));
        if (page.empty() || !c)
            return 0;
        const std::array<char, 2> bytes{static_cast<char>(*c >> 8), static_cast<char>(*c & 0xFF)};
        Converter converter("UTF-8", std::string(page).c_str());
        std::string converted;
        if (!converter.good() || converter.convert({bytes.data(), 2}, converted) != 2)
            return 0;
        out += converted;
        return 8;
    }
    return 0;
}

} // namespace

std::string TextCodec::decoded(std::string_view fileText) const {
    const bool ascii = isAscii(fileText);
    if (ascii && fileText.find_first_of("^\\") == std::string_view::npos)
        return std::string(fileText);
    // Code pages of two bytes may hold '\' or '^' as a second byte: convert first.
    const std::string text = ascii ? std::string(fileText) : toUtf8(fileText);
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\\') {
            const std::size_t size = takeBackslashEscape(std::string_view(text).substr(i), out);
            if (size > 0) {
                i += size - 1;
                continue;
            }
        } else if (c == '^' && i + 1 < text.size()) {
            const char next = text[i + 1];
            if (next == ' ' || (next >= '@' && next <= '_')) {
                out.push_back(next == ' ' ? '^' : static_cast<char>(next - '@'));
                ++i;
                continue;
            }
        }
        out.push_back(c);
    }
    return out;
}

std::string TextCodec::encoded(std::string_view utf8) const {
    const auto appendEscape = [](std::string& out, std::uint32_t unit) {
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        out += "\\U+";
        for (int shift = 12; shift >= 0; shift -= 4)
            out.push_back(kDigits[(unit >> shift) & 15]);
    };
    const std::string repaired = repairedUtf8(utf8);
    std::string_view text = repaired;
    std::string out;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, characterSize(text));
        text.remove_prefix(character.size());
        const auto first = static_cast<unsigned char>(character[0]);
        if (first == '^') {
            out += "^ ";
        } else if (first < 0x20) {
            out.push_back('^');
            out.push_back(static_cast<char>(first + '@'));
        } else if (first < 0x80 || !page_) {
            out += character;
        } else if (const std::optional<std::string> bytes = page_->fromUtf8(character)) {
            out += *bytes;
        } else {
            const std::uint32_t c = characterOf(character);
            if (c >= 0x10000) {
                appendEscape(out, 0xD800 + ((c - 0x10000) >> 10));
                appendEscape(out, 0xDC00 + ((c - 0x10000) & 0x3FF));
            } else {
                appendEscape(out, c);
            }
        }
    }
    return out;
}

} // namespace tessaran::drawing::dxf
