#include "drawing/paragraph_text.h"

#include <algorithm>

namespace tessaran::drawing {
namespace {

constexpr std::string_view kSwitches = "LlOoKk"; // lines under, over and through
constexpr std::string_view kWithValue =
    "AaCcFfHhPpQqTtWw"; // up to a semicolon; "P" alone is a break

class Formatted {
  public:
    explicit Formatted(std::string_view text) : text_(text) {}

    std::string plain() {
        while (at_ < text_.size()) {
            const char c = text_[at_++];
            if (c == '\\')
                code();
            else if (c != '{' && c != '}')
                out_ += c;
        }
        return std::move(out_);
    }

  private:
    void code() {
        if (at_ == text_.size())
            return;
        const char c = text_[at_++];
        if (c == 'P' || c == 'N' || c == 'X')
            out_ += '\n';
        else if (c == '~')
            out_ += ' ';
        else if (c == 'S')
            stacked();
        else if (kWithValue.find(c) != std::string_view::npos)
            upToSemicolon();
        else if (kSwitches.find(c) == std::string_view::npos)
            out_ += c; // a backslash or brace, and what is no code
    }

    std::string_view upToSemicolon() {
        const std::size_t end = std::min(text_.find(';', at_), text_.size());
        const std::string_view value = text_.substr(at_, end - at_);
        at_ = std::min(end + 1, text_.size());
        return value;
    }

    // "1/2", "1#2" are fractions, "+1^ -2" limits.
    void stacked() {
        for (const char c : upToSemicolon())
            out_ += c == '#' ? '/' : c == '^' ? ' ' : c;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::string out_;
};

constexpr std::size_t kMostBytes = 4; // of a character

std::size_t characters(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

bool isWider(std::string_view line, std::size_t widest) {
    return line.size() > widest && (line.size() > kMostBytes * widest || characters(line) > widest);
}

void breakLine(std::string_view line, std::size_t widest, std::vector<std::string>& out) {
    while (widest != 0 && isWider(line, widest)) {
        // The last blank that leaves no more than `widest` characters before it, else the first.
        std::size_t blank = std::string_view::npos;
        for (std::size_t k = line.find(' ', 1); k != std::string_view::npos;
             k = line.find(' ', k + 1)) {
            if (blank != std::string_view::npos && isWider(line.substr(0, k), widest))
                break;
            blank = k;
        }
        if (blank == std::string_view::npos)
            break;
        out.emplace_back(line.substr(0, blank));
        line.remove_prefix(blank + 1);
    }
    out.emplace_back(line);
}

} // namespace

std::vector<std::string> linesOfParagraph(std::string_view text, std::size_t widest) {
    const std::string plain = Formatted(text).plain();
    std::vector<std::string> out;
    for (std::string_view rest = plain;;) {
        const std::size_t end = rest.find('\n');
        breakLine(rest.substr(0, end), widest, out);
        if (end == std::string_view::npos)
            return out;
        rest.remove_prefix(end + 1);
    }
}

} // namespace tessaran::drawing
