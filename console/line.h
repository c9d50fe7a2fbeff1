#pragma once

// One line of a script as its meaning.

#include <optional>
#include <string>
#include <string_view>

namespace tessaran::console {

enum class Verb {
    set,
    check,
    uncheck,
    choose,
    select,
    open,
    press,
    page,
    ok,
    cancel,
    answer,
    file,
    show,
    expect,
    breakAt,
};

struct Line {
    enum class Kind { enter, escape, text, directive, comment, badDirective };
    Kind kind = Kind::enter;
    std::string raw;        // as it was read
    std::string text{};     // the answer, or what stands behind the directive's verb
    Verb verb = Verb::show; // directive
    int number = 0;         // from 1

    bool is(Verb wanted) const { return kind == Kind::directive && verb == wanted; }
    // ":show", ":expect" and ":break" answer nothing: what is waiting goes on waiting.
    bool answersNothing() const { return is(Verb::show) || is(Verb::expect) || is(Verb::breakAt); }
};

Line parseLine(std::string raw, int number);

// The line that gives the text as an answer as it stands, whatever it begins with.
std::string answerLine(const std::string& text);

} // namespace tessaran::console
