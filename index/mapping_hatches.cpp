#include "index/mapping_hatches.h"

#include "host/curves.h"
#include "host/host.h"
#include "host/services_entities.h"

namespace tessaran::index {

bool isHatchable(const host::Entity& entity) {
    if (std::holds_alternative<host::Region>(entity.geometry))
        return true;
    const auto curve = host::curveOf(entity);
    return curve && curve->closed();
}

std::vector<host::EntityId> hatchRegions(host::Host& host,
                                         std::span<const host::EntityId> regions) {
    std::vector<host::EntityId> hatches;
    base::Progress& meter = host.meter();
    meter.begin("Hatching is progressing : ", 0, static_cast<long>(regions.size()));
    for (std::size_t k = 0; k < regions.size() && !meter.cancelled(); ++k) {
        meter.setPosition(static_cast<long>(k));
        auto hatch = host::solidHatch(host, {regions[k]});
        const host::Entity* region = host.drawing().find(regions[k]);
        if (!hatch || region == nullptr)
            continue;
        hatch->layer = region->layer;
        hatch->colour = region->colour;
        if (const auto id = host::appendEntity(host, std::move(*hatch)))
            hatches.push_back(*id);
    }
    meter.end();
    return hatches;
}

} // namespace tessaran::index
