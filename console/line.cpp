#include "console/line.h"

#include "base/text.h"

#include <array>
#include <utility>

namespace tessaran::console {
namespace {

constexpr std::array<std::pair<std::string_view, Verb>, 15> kVerbs = {{
    {"set", Verb::set},
    {"check", Verb::check},
    {"uncheck", Verb::uncheck},
    {"choose", Verb::choose},
    {"select", Verb::select},
    {"open", Verb::open},
    {"press", Verb::press},
    {"page", Verb::page},
    {"ok", Verb::ok},
    {"cancel", Verb::cancel},
    {"answer", Verb::answer},
    {"file", Verb::file},
    {"show", Verb::show},
    {"expect", Verb::expect},
    {"break", Verb::breakAt},
}};

Line directive(Line line, std::string_view body) {
    const std::size_t blank = body.find_first_of(" \t");
    const std::string verb = base::lowered(body.substr(0, blank));
    if (blank != std::string_view::npos)
        line.text = base::trimmed(body.substr(blank));
    line.kind = Line::Kind::badDirective;
    for (const auto& [name, value] : kVerbs) {
        if (name == verb) {
            line.kind = Line::Kind::directive;
            line.verb = value;
        }
    }
    return line;
}

} // namespace

Line parseLine(std::string raw, int number) {
    Line line{.kind = Line::Kind::text, .raw = std::move(raw), .number = number};
    const std::string_view text = base::trimmed(line.raw);
    if (text.empty()) {
        line.kind = Line::Kind::enter;
    } else if (text.starts_with('\\')) {
        line.text = line.raw.substr(line.raw.find('\\') + 1);
    } else if (text.starts_with(';')) {
        line.kind = Line::Kind::comment;
    } else if (base::equalsIgnoringCase(text, "^c")) {
        line.kind = Line::Kind::escape;
    } else if (text.starts_with(':')) {
        return directive(std::move(line), text.substr(1));
    } else {
        line.text = text;
    }
    return line;
}

std::string answerLine(const std::string& text) {
    const bool special =
        !text.empty() && std::string_view(":;^\\ ").find(text[0]) != std::string_view::npos;
    return special ? "\\" + text : text;
}

} // namespace tessaran::console
