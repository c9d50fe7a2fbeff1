#include "drawing/database_builder.h"

#include "base/text.h"
#include "drawing/coordinates.h"
#include "drawing/database_checks.h"

#include <algorithm>
#include <limits>

namespace tessaran::drawing {

DatabaseBuilder::DatabaseBuilder(Database& database) : database_(database) {}

DatabaseBuilder::~DatabaseBuilder() {
    database_.markSaved();
}

void DatabaseBuilder::setLayer(LayerRecord layer) {
    const auto index = database_.layerIndex(layer.layer.name);
    auto& layers = database_.tables_.layers;
    if (!index)
        database_.layerOfName_.emplace(base::lowered(layer.layer.name),
                                       static_cast<std::uint32_t>(layers.size()));
    auto record = std::make_shared<const LayerRecord>(std::move(layer));
    if (index)
        layers[*index] = std::move(record);
    else
        layers.push_back(std::move(record));
}

void DatabaseBuilder::addLinetype(LinetypeRecord linetype) {
    auto& all = database_.linetypes_;
    const auto found = std::ranges::find_if(all, [&](const LinetypeRecord& known) {
        return base::equalsIgnoringCase(known.name, linetype.name);
    });
    if (found == all.end())
        all.push_back(std::move(linetype));
    else
        *found = std::move(linetype);
}

void DatabaseBuilder::addGroup(GroupRecord group) {
    database_.tables_.groups.push_back(std::make_shared<const GroupRecord>(std::move(group)));
}

void DatabaseBuilder::addNamedObject(NamedObject object) {
    database_.tables_.namedObjects.push_back(
        std::make_shared<const NamedObject>(std::move(object)));
}

void DatabaseBuilder::addApplication(std::string name) {
    auto& all = database_.tables_.applications;
    const bool known = std::ranges::any_of(
        all, [&](const std::string& other) { return base::equalsIgnoringCase(other, name); });
    if (!known)
        all.push_back(std::move(name));
}

void DatabaseBuilder::addBlock(Block block) {
    std::string key = base::lowered(block.name);
    database_.blocks_.insert_or_assign(std::move(key), std::move(block));
}

void DatabaseBuilder::setCurrentLayer(const std::string& name) {
    if (const auto index = database_.layerIndex(name))
        database_.tables_.currentLayer = database_.tables_.layers[*index]->layer.name;
}

bool DatabaseBuilder::setUcs(const Ucs& ucs) {
    const auto straightened = orthonormal(ucs);
    if (straightened)
        database_.tables_.ucs = *straightened;
    return straightened.has_value();
}

void DatabaseBuilder::setVariable(const std::string& name, host::VariableValue value) {
    database_.tables_.variables.insert_or_assign(name, std::move(value));
}

void DatabaseBuilder::noteHandle(std::uint64_t handle) {
    constexpr std::uint64_t last = std::numeric_limits<std::uint64_t>::max();
    if (handle >= database_.nextHandle_)
        database_.nextHandle_ = handle == last ? last : handle + 1;
}

void DatabaseBuilder::reserve(std::size_t entities) {
    database_.slots_.reserve(entities);
    database_.slotOfHandle_.reserve(entities);
}

base::Result<host::EntityId> DatabaseBuilder::add(EntityRecord record) {
    if (!isFinite(record.entity.geometry))
        return base::rangeError("coordinates that are not finite numbers");
    host::EntityId& id = record.entity.id;
    if (id)
        noteHandle(id.value);
    else
        id.value = newHandle();
    const host::EntityId given = id;
    const std::size_t slot = database_.slots_.size();
    if (!database_.slotOfHandle_.emplace(given.value, slot).second)
        return base::formatError("a handle that stands twice");
    if (!database_.layerIndex(record.entity.layer)) {
        LayerRecord layer;
        layer.layer.name = record.entity.layer;
        layer.handle = newHandle();
        layer.changed = true;
        setLayer(std::move(layer));
    }
    database_.assignLayer(record);
    database_.slots_.emplace_back();
    database_.replace(slot, std::make_unique<EntityRecord>(std::move(record)));
    return given;
}

} // namespace tessaran::drawing
