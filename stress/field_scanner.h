#pragma once

// Numbers between commas, over line ends, as the solver's text files hold them.

#include <optional>
#include <string_view>

namespace tessaran::stress {

// Walks over a text. Blanks and line ends before a value are skipped; a field ends at its comma or
// at the first character that does not belong to the number. Integers are decimal of any width.
class FieldScanner {
  public:
    explicit FieldScanner(std::string_view text) : text_(text) {}

    // The rest of the present line without its end; nothing at the end of the text.
    std::optional<std::string_view> line();
    std::optional<double> real();
    std::optional<int> integer();
    // The next character that is not a blank or a line end.
    std::optional<char> character();
    // Passes the comma that ends a field.
    bool comma();
    void skipBlanks();

    bool atEnd() const { return at_ >= text_.size(); }
    std::size_t left() const { return text_.size() - at_; }
    long lineNumber() const { return line_; } // from 1

  private:
    template <class Number>
    std::optional<Number> number();

    std::string_view text_;
    std::size_t at_ = 0;
    long line_ = 1;
};

} // namespace tessaran::stress
