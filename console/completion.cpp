#include "console/completion.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace tessaran::console {
namespace {

constexpr std::array<std::string_view, 15> kDirectives = {
    ":set ", ":check ", ":uncheck ", ":choose ", ":select ", ":open ",   ":press ", ":page ",
    ":ok",   ":cancel", ":answer ",  ":file ",   ":show",    ":expect ", ":break "};

bool beginsWith(std::string_view whole, std::string_view beginning) {
    return whole.size() >= beginning.size() &&
           base::equalsIgnoringCase(whole.substr(0, beginning.size()), beginning);
}

void addMatching(const std::vector<std::string>& names, std::string_view typed, Completion& out) {
    for (const std::string& name : names)
        if (beginsWith(name, typed))
            out.candidates.push_back(name);
}

void addFiles(std::string_view typed, Completion& out) {
    const std::size_t slash = typed.rfind('/');
    const std::string folder =
        slash == std::string_view::npos ? "" : std::string(typed.substr(0, slash + 1));
    const std::string_view name = typed.substr(folder.size());
    std::error_code error;
    const std::filesystem::path where = folder.empty() ? "." : folder;
    for (const auto& entry : std::filesystem::directory_iterator(where, error)) {
        const std::string file = entry.path().filename().string();
        if (file.starts_with(name) && (!name.empty() || !file.starts_with('.')))
            out.candidates.push_back(folder + file + (entry.is_directory(error) ? "/" : ""));
    }
}

Completion sorted(Completion out) {
    std::sort(out.candidates.begin(), out.candidates.end());
    out.candidates.erase(std::unique(out.candidates.begin(), out.candidates.end()),
                         out.candidates.end());
    return out;
}

Completion completeDirective(std::string_view line, const CompletionContext& context) {
    Completion out;
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) {
        for (const std::string_view directive : kDirectives)
            if (beginsWith(directive, line))
                out.candidates.emplace_back(directive);
        return out;
    }
    const std::size_t equals = line.find("= ");
    const bool value = equals != std::string_view::npos;
    out.from = value ? equals + 2 : blank + 1;
    if (value || base::equalsIgnoringCase(line.substr(0, blank), ":file"))
        addFiles(line.substr(out.from), out);
    else
        addMatching(context.labels, line.substr(out.from), out);
    return out;
}

} // namespace

Completion complete(std::string_view line, const CompletionContext& context) {
    if (line.starts_with(':'))
        return sorted(completeDirective(line, context));
    Completion out;
    // "_" and "'" may stand before a command's name.
    out.from = std::min(line.find_first_not_of("_'"), line.size());
    addMatching(context.commands, line.substr(out.from), out);
    addMatching(context.keywords, line.substr(out.from), out);
    if (!out.candidates.empty())
        return sorted(std::move(out));
    // A file's name may hold blanks where it is the whole answer; behind a command it is the rest.
    const std::size_t blank = context.commands.empty() ? std::string_view::npos : line.find(' ');
    out.from = blank == std::string_view::npos ? 0 : blank + 1;
    addFiles(line.substr(out.from), out);
    return sorted(std::move(out));
}

std::string commonBeginning(const std::vector<std::string>& candidates) {
    if (candidates.empty())
        return {};
    std::string common = candidates.front();
    for (const std::string& candidate : candidates)
        while (!beginsWith(candidate, common))
            common.pop_back();
    return common;
}

std::vector<std::string> keywordsOf(std::string_view message) {
    const std::size_t open = message.rfind('[');
    const std::size_t close = message.rfind(']');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return {};
    std::vector<std::string> out;
    for (std::string word : base::split(message.substr(open + 1, close - open - 1), '/')) {
        std::erase_if(word, [](char c) { return c == '<' || c == '>'; });
        if (!word.empty())
            out.push_back(std::move(word));
    }
    return out;
}

} // namespace tessaran::console
