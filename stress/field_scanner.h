#pragma once

// Numbers between commas, over line ends, as the solver's text files hold them.

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

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
    // Values behind one another, each but the first behind a comma; reals in single precision, as
    // the formats have always been read, and finite. False where one cannot be read.
    template <class First, class... Rest>
    bool fields(First& first, Rest&... rest) {
        return take(first) && ((comma() && take(rest)) && ...);
    }
    // So many reals behind blanks or line ends. False where one cannot be read, or where the text
    // is too short to hold so many: then no memory is taken for them.
    bool reals(std::size_t count, std::vector<double>& out);
    // The next character that is not a blank or a line end.
    std::optional<char> character();
    // Passes the comma that ends a field.
    bool comma();
    void skipBlanks();

    bool atEnd() const { return at_ >= text_.size(); }
    std::size_t left() const { return text_.size() - at_; }
    long lineNumber() const { return line_; } // from 1

  private:
    bool take(double& value);
    bool take(int& value);
    template <class Number>
    std::optional<Number> number();

    std::string_view text_;
    std::size_t at_ = 0;
    long line_ = 1;
};

} // namespace tessaran::stress
