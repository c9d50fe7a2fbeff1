#include "host/prompts.h"

#include "base/text.h"

#include <sstream>

namespace tessaran::host {
namespace {

// The capitals and digits of a keyword: "LType" is reached by "LT".
std::string capitalsOf(std::string_view name) {
    std::string out;
    for (const char c : name)
        if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
            out += c;
    return out;
}

bool beginsWith(std::string_view whole, std::string_view beginning) {
    return whole.size() >= beginning.size() &&
           base::equalsIgnoringCase(whole.substr(0, beginning.size()), beginning);
}

} // namespace

std::vector<Keyword> parseKeywords(std::string_view form) {
    std::vector<Keyword> out;
    std::istringstream words{std::string(form)};
    for (std::string word; words >> word;) {
        const std::size_t comma = word.find(',');
        Keyword keyword{word.substr(0, comma),
                        comma == std::string::npos ? std::string{} : word.substr(comma + 1)};
        if (keyword.abbreviation.empty())
            keyword.abbreviation = capitalsOf(keyword.name);
        out.push_back(std::move(keyword));
    }
    return out;
}

std::optional<std::string> matchKeyword(const std::vector<Keyword>& keywords,
                                        std::string_view answer) {
    if (answer.empty())
        return std::nullopt;
    for (const Keyword& keyword : keywords)
        if (base::equalsIgnoringCase(answer, keyword.name) ||
            base::equalsIgnoringCase(answer, keyword.abbreviation))
            return keyword.name;
    // A longer beginning than the abbreviation ("Far" for "Farthest").
    for (const Keyword& keyword : keywords)
        if (answer.size() >= keyword.abbreviation.size() && beginsWith(keyword.name, answer))
            return keyword.name;
    return std::nullopt;
}

} // namespace tessaran::host
