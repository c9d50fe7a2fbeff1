#pragma once

// Lines of a text that is held in memory, as the C library's text mode hands them out: without
// their line end, LF or CR LF; a last line without an end counts when it is not empty.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessaran::grid {

class TextLines {
  public:
    explicit TextLines(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

    std::optional<std::string_view> next() {
        if (at_ >= text_.size())
            return std::nullopt;
        const std::size_t end = text_.find('\n', at_);
        std::string_view line = text_.substr(at_, end - at_);
        at_ = end == std::string_view::npos ? text_.size() : end + 1;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        return line;
    }

    std::size_t position() const { return at_; } // where the next line begins

  private:
    std::string_view text_;
    std::size_t at_;
};

// A title as a line of a file: a line break in it would push what follows from its place.
inline std::string onOneLine(std::string title) {
    for (char& c : title)
        if (c == '\n' || c == '\r')
            c = ' ';
    return title;
}

} // namespace tessaran::grid
