#include "console/selection_run.h"

#include "console/picking.h"

#include <fmt/format.h>

#include <set>

namespace tessaran::console {

base::Result<std::string> SelectionRun::take(const SelectionStep& step) {
    if (step.kind == SelectionStep::Kind::remove || step.kind == SelectionStep::Kind::add) {
        removing_ = step.kind == SelectionStep::Kind::remove;
        return std::string{};
    }
    const auto found = selectedBy(step, document_, filter_);
    if (!found)
        return found.error();
    return removing_ ? removed(*found) : added(*found);
}

std::string SelectionRun::added(const std::vector<EntityId>& found) {
    std::set<EntityId> known(selected_.begin(), selected_.end());
    const bool first = selected_.empty();
    std::size_t duplicates = 0;
    for (const EntityId id : found) {
        if (known.insert(id).second)
            selected_.push_back(id);
        else
            ++duplicates;
    }
    std::string text = fmt::format("\n{} found", found.size());
    if (duplicates > 0)
        text += fmt::format(" ({} duplicate)", duplicates);
    if (!first)
        text += fmt::format(", {} total", selected_.size());
    return text;
}

std::string SelectionRun::removed(const std::vector<EntityId>& found) {
    const std::set<EntityId> going(found.begin(), found.end());
    const std::size_t gone =
        std::erase_if(selected_, [&](EntityId id) { return going.count(id) != 0; });
    return fmt::format("\n{} found, {} removed, {} total", found.size(), gone, selected_.size());
}

} // namespace tessaran::console
