#include "console/command_stack.h"

#include "base/text.h"

#include <algorithm>

namespace tessaran::console {

void CommandList::add(const host::CommandEntry& entry) {
    if (entry.handler != nullptr)
        add(Command{entry.group, entry.globalName, entry.localName, entry.handler});
}

void CommandList::add(Command command) {
    remove(command.group, command.globalName);
    commands_.push_back(std::move(command));
}

void CommandList::remove(const std::string& group, const std::string& globalName) {
    std::erase_if(commands_, [&](const Command& command) {
        return base::equalsIgnoringCase(command.group, group) &&
               base::equalsIgnoringCase(command.globalName, globalName);
    });
}

const Command* CommandList::find(std::string_view typed) const {
    std::string_view name = base::trimmed(typed);
    if (name.starts_with('\''))
        name.remove_prefix(1);
    const bool global = name.starts_with('_');
    const std::string_view bare = global ? name.substr(1) : name;
    // A later registration of a name hides an earlier one.
    const auto match = [&](auto matches) -> const Command* {
        const auto found = std::find_if(commands_.rbegin(), commands_.rend(), matches);
        return found == commands_.rend() ? nullptr : &*found;
    };
    if (!global)
        if (const Command* local = match([&](const Command& command) {
                return base::equalsIgnoringCase(command.localName, bare);
            }))
            return local;
    // Global names may carry the "_" themselves.
    return match([&](const Command& command) {
        return base::equalsIgnoringCase(command.globalName, bare) ||
               base::equalsIgnoringCase(command.globalName, name);
    });
}

CommandList::Typed CommandList::typed(std::string_view line) const {
    if (const Command* whole = find(line))
        return {whole};
    const std::string_view text = base::trimmed(line);
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos)
        return {};
    return {find(text.substr(0, blank)), std::string(base::trimmed(text.substr(blank + 1)))};
}

bool KeptMenuBar::setPullDown(const std::string& name, const std::vector<host::MenuItem>& items) {
    removePullDown(name);
    pullDowns_.push_back({name, items});
    return true;
}

void KeptMenuBar::removePullDown(const std::string& name) {
    std::erase_if(pullDowns_, [&](const PullDown& pullDown) { return pullDown.name == name; });
}

} // namespace tessaran::console
