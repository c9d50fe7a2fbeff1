#include "host/services_layers.h"

#include "base/text.h"
#include "host/host.h"
#include "host/services_dialogs.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::host {
namespace {

constexpr const char* kExtract = "Extract";

void addOnce(std::vector<std::string>& names, const std::string& name) {
    const bool known = std::any_of(names.begin(), names.end(), [&](const std::string& other) {
        return base::equalsIgnoringCase(other, name);
    });
    if (!known)
        names.push_back(name);
}

std::optional<std::string> layersOfSelection(Host& host) {
    const auto selection = host.prompts().getSelection({});
    if (!selection.ok())
        return std::nullopt;
    std::vector<std::string> names;
    for (const EntityId id : selection.value)
        if (const Entity* entity = host.drawing().find(id))
            addOnce(names, entity->layer);
    if (names.empty())
        return std::nullopt;
    std::string list = base::joined(names, ",");
    host.print("\nSelcted Layers: " + list);
    return list;
}

} // namespace

std::string linetypeOrContinuous(const Drawing& drawing, const std::string& name) {
    return drawing.hasLinetype(name) ? name : "Continuous";
}

bool ensureLayer(Host& host, const std::string& name, int colour, const std::string& linetype) {
    Drawing& drawing = host.drawing();
    if (drawing.layer(name))
        return true;
    Layer layer;
    layer.name = name;
    layer.colour = colour;
    layer.linetype = linetypeOrContinuous(drawing, linetype);
    return drawing.createLayer(layer).ok();
}

bool ensureWorkingLayer(Host& host) {
    if (ensureLayer(host, kWorkingLayer, colour::kForeground))
        return true;
    host.print("\nERROR: Couldn't create working layer record.");
    return false;
}

std::optional<std::string> askForNewLayer(Host& host) {
    for (;;) {
        const auto answer = host.prompts().getString("\nInput new layer name:", true);
        std::string name(base::trimmed(answer.value));
        if (!answer.ok() || name.empty())
            return std::nullopt;
        if (host.drawing().layer(name)) {
            host.print(fmt::format("\nLayer < {} > has existed!", name));
            continue;
        }
        if (ensureLayer(host, name, colour::kForeground))
            return name;
        host.print(fmt::format("\nLayer < {} > can not been created!", name));
        return std::nullopt;
    }
}

std::optional<std::string> askForLayers(Host& host) {
    const auto answer =
        host.prompts().getString("\n[<Input Layer Name>/Extract from object]:", true);
    const std::string names(base::trimmed(answer.value));
    if (!answer.ok() || names.empty())
        return std::nullopt;
    if (names.front() != 'E' && names.front() != 'e')
        return names;
    if (!base::lowered(kExtract).starts_with(base::lowered(names)))
        host.print("\nA name that begins with E stands for Extract: select objects of the layer.");
    return layersOfSelection(host);
}

std::vector<std::string> pickLayers(Host& host, std::vector<std::string> chosen,
                                    const std::string& message) {
    for (;;) {
        const auto pick = host.prompts().pickEntity({message, {}});
        if (pick.status == PromptStatus::missed)
            continue;
        if (!pick.ok())
            return chosen;
        const Entity* entity = host.drawing().find(pick.value.entity);
        if (entity == nullptr)
            continue;
        host.print("\nselected layer: " + entity->layer);
        addOnce(chosen, entity->layer);
    }
}

std::vector<EntityId> entitiesOnLayers(Host& host, const std::vector<std::string>& layers,
                                       const std::vector<std::string>& types) {
    if (layers.empty())
        return {};
    return host.drawing().select(SelectionFilter{layers, types, {}});
}

std::size_t eraseLayerObjects(Host& host, const std::string& layer) {
    std::size_t erased = 0;
    for (const EntityId id : entitiesOnLayers(host, {layer}))
        if (host.drawing().erase(id))
            ++erased;
    return erased;
}

std::vector<std::string> layerNames(const Drawing& drawing) {
    std::vector<std::string> names;
    for (const Layer& layer : drawing.layers())
        names.push_back(layer.name);
    return names;
}

} // namespace tessaran::host
