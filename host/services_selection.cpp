#include "host/services_selection.h"

#include "base/text.h"
#include "host/host.h"
#include "host/services_layers.h"

#include <fmt/format.h>

#include <set>

namespace tessaran::host {
namespace {

constexpr const char* kByLayer = "SLayer";

void addFromLayers(Host& host, const SelectionFilter& filter, std::vector<EntityId>& selected) {
    const auto names = askForLayers(host);
    if (!names)
        return;
    const std::vector<std::string> layers = base::nameList(*names);
    for (const std::string& name : layers)
        if (!host.drawing().layer(name))
            host.print(fmt::format("\nThere is no layer <{}>.", name));
    const auto found = entitiesOnLayers(host, layers, filter.types);
    std::set<EntityId> known(selected.begin(), selected.end());
    std::size_t count = 0;
    for (const EntityId id : found) {
        if (!filter.xdataApplication.empty() && !host.drawing().xdata(id, filter.xdataApplication))
            continue;
        ++count;
        if (known.insert(id).second)
            selected.push_back(id);
    }
    host.print(fmt::format("\n{} found, {} total", count, selected.size()));
}

} // namespace

std::vector<EntityId> selectObjects(Host& host, SelectionPrompt prompt) {
    prompt.keywords = prompt.keywords.empty() ? kByLayer : prompt.keywords + " " + kByLayer;
    for (;;) {
        auto selection = host.prompts().getSelection(prompt);
        if (selection.status == PromptStatus::ok)
            return selection.value;
        if (selection.status != PromptStatus::keyword || selection.keyword != kByLayer)
            return {};
        prompt.selected = std::move(selection.value);
        addFromLayers(host, prompt.filter, prompt.selected);
    }
}

} // namespace tessaran::host
