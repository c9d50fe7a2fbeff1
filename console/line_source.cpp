#include "console/line_source.h"

#include "base/text.h"

namespace tessaran::console {

void ScriptSource::load(std::string name, std::string_view text) {
    name_ = std::move(name);
    next_ = 0;
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    lines_ = base::split(text, '\n');
    // The line break of the last line begins no further line.
    if (lines_.back().empty())
        lines_.pop_back();
    for (std::string& line : lines_)
        if (line.ends_with('\r'))
            line.pop_back();
}

std::optional<std::string> ScriptSource::read(const std::string& /*prompt*/) {
    if (next_ == lines_.size())
        return std::nullopt;
    return lines_[next_++];
}

} // namespace tessaran::console
