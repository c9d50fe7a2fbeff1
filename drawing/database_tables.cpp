// Layers, linetypes, groups, dictionary records, coordinate system and variables of the drawing.
// The records are shared between the states of the journal: a change puts a new record in place.

#include "base/text.h"
#include "drawing/coordinates.h"
#include "drawing/database.h"
#include "drawing/database_checks.h"
#include "drawing/edit_scope.h"

#include <algorithm>

namespace tessaran::drawing {
namespace {

using host::EntityId;
using host::Layer;

// The entry of that name (any capitals), or the end. Records hold their name in `member`.
template <class List, class Name>
auto findNamed(List& list, std::string_view name, const Name& nameOf) {
    return std::ranges::find_if(
        list, [&](const auto& record) { return base::equalsIgnoringCase(nameOf(*record), name); });
}
const std::string& groupName(const GroupRecord& group) {
    return group.name;
}
const std::string& objectName(const NamedObject& object) {
    return object.name;
}

auto findEntry(auto& entries, std::string_view key) {
    return std::ranges::find_if(entries, [&](const DictionaryEntry& entry) {
        return base::equalsIgnoringCase(entry.key, key);
    });
}

} // namespace

// --- layers and linetypes -----------------------------------------------------------------------

std::optional<std::uint32_t> Database::layerIndex(std::string_view name) const {
    const auto found = layerOfName_.find(base::lowered(name));
    return found == layerOfName_.end() ? std::nullopt : std::optional(found->second);
}

void Database::rebuildLayerIndex() {
    layerOfName_.clear();
    for (std::uint32_t i = 0; i < tables_.layers.size(); ++i)
        layerOfName_.emplace(base::lowered(tables_.layers[i]->layer.name), i);
}

std::vector<Layer> Database::layers() const {
    std::vector<Layer> all;
    for (const auto& record : tables_.layers)
        all.push_back(record->layer);
    return all;
}

const LayerRecord* Database::layerRecord(std::string_view name) const {
    const auto index = layerIndex(name);
    return index ? tables_.layers[*index].get() : nullptr;
}

std::optional<Layer> Database::layer(std::string_view name) const {
    const LayerRecord* record = layerRecord(name);
    return record ? std::optional(record->layer) : std::nullopt;
}

base::Result<void> Database::checkLayer(const Layer& layer) const {
    if (layer.colour < 1 || layer.colour > 255)
        return base::rangeError("A layer's colour index lies between 1 and 255.");
    const bool relative = base::equalsIgnoringCase(layer.linetype, "ByLayer") ||
                          base::equalsIgnoringCase(layer.linetype, "ByBlock");
    if (relative || !hasLinetype(layer.linetype))
        return base::stateError("There is no linetype \"" + layer.linetype + "\".");
    return {};
}

base::Result<void> Database::createLayer(const Layer& layer) {
    if (!isValidSymbolName(layer.name))
        return base::rangeError("\"" + layer.name + "\" cannot name a layer.");
    if (layerIndex(layer.name))
        return base::stateError("The layer \"" + layer.name + "\" exists already.");
    if (auto fault = checkLayer(layer); !fault)
        return fault;
    const EditScope scope(*this, "LAYER");
    Tables& tables = changeTables();
    layerOfName_.emplace(base::lowered(layer.name),
                         static_cast<std::uint32_t>(tables.layers.size()));
    tables.layers.push_back(
        std::make_shared<const LayerRecord>(LayerRecord{layer, nextHandle_++, nullptr, true}));
    return {};
}

base::Result<void> Database::modifyLayer(const Layer& layer) {
    const auto index = layerIndex(layer.name);
    if (!index)
        return base::stateError("There is no layer \"" + layer.name + "\".");
    LayerRecord record = *tables_.layers[*index];
    if (layer.linetype != record.layer.linetype || layer.colour != record.layer.colour)
        if (auto fault = checkLayer(layer); !fault)
            return fault;
    const bool current = base::equalsIgnoringCase(layer.name, tables_.currentLayer);
    if (layer.frozen && !record.layer.frozen && current)
        return base::stateError("The current layer cannot be frozen.");
    std::string name = std::move(record.layer.name);
    record.layer = layer;
    record.layer.name = std::move(name);
    record.changed = true;
    const EditScope scope(*this, "LAYER");
    changeTables().layers[*index] = std::make_shared<const LayerRecord>(std::move(record));
    return {};
}

bool Database::hasLinetype(std::string_view name) const {
    return std::ranges::any_of(linetypes_, [&](const LinetypeRecord& linetype) {
        return base::equalsIgnoringCase(linetype.name, name);
    });
}

std::string Database::currentLayer() const {
    return tables_.currentLayer;
}

base::Result<void> Database::setCurrentLayer(std::string_view name) {
    const auto index = layerIndex(name);
    if (!index)
        return base::stateError("There is no layer \"" + std::string(name) + "\".");
    const Layer& layer = tables_.layers[*index]->layer;
    if (layer.frozen)
        return base::stateError("A frozen layer cannot be made current.");
    if (layer.name == tables_.currentLayer)
        return {};
    const EditScope scope(*this, "CLAYER");
    changeTables().currentLayer = layer.name;
    return {};
}

// --- groups -------------------------------------------------------------------------------------

base::Result<void> Database::setGroup(const std::string& name,
                                      const std::vector<EntityId>& members) {
    if (!isValidSymbolName(name))
        return base::rangeError("\"" + name + "\" cannot name a group.");
    if (!std::ranges::all_of(members, [this](EntityId id) { return find(id) != nullptr; }))
        return base::stateError("A group can only hold objects of the drawing.");
    const EditScope scope(*this, "GROUP");
    auto& groups = changeTables().groups;
    const auto found = findNamed(groups, name, groupName);
    GroupRecord group =
        found == groups.end() ? GroupRecord{name, {}, nextHandle_++, nullptr, true} : **found;
    group.members = members;
    group.changed = true;
    auto record = std::make_shared<const GroupRecord>(std::move(group));
    if (found == groups.end())
        groups.push_back(std::move(record));
    else
        *found = std::move(record);
    return {};
}

std::vector<std::string> Database::groups() const {
    std::vector<std::string> names;
    for (const auto& group : tables_.groups)
        names.push_back(group->name);
    return names;
}

std::vector<EntityId> Database::group(std::string_view name) const {
    const auto found = findNamed(tables_.groups, name, groupName);
    if (found == tables_.groups.end())
        return {};
    std::vector<EntityId> members;
    std::ranges::copy_if((*found)->members, std::back_inserter(members),
                         [this](EntityId id) { return find(id) != nullptr; });
    return members;
}

// --- applications and dictionary records --------------------------------------------------------

void Database::registerApplication(const std::string& application) {
    const bool known = std::ranges::any_of(tables_.applications, [&](const std::string& name) {
        return base::equalsIgnoringCase(name, application);
    });
    if (!known)
        changeTables().applications.push_back(application);
}

host::Drawing::Record Database::readRecord(std::string_view dictionary,
                                           std::string_view key) const {
    const auto object = findNamed(tables_.namedObjects, dictionary, objectName);
    if (object == tables_.namedObjects.end())
        return {RecordState::noDictionary, {}};
    if (!(*object)->isDictionary)
        return {RecordState::notADictionary, {}};
    const auto entry = findEntry((*object)->entries, key);
    if (entry == (*object)->entries.end())
        return {RecordState::noEntry, {}};
    if (!entry->isRecord)
        return {RecordState::notARecord, {}};
    return {RecordState::read, entry->texts};
}

base::Result<void> Database::writeRecord(const std::string& dictionary, const std::string& key,
                                         const std::vector<std::string>& texts) {
    if (!isValidSymbolName(dictionary) || !isValidSymbolName(key))
        return base::rangeError("\"" + dictionary + "/" + key + "\" cannot name a record.");
    const auto existing = findNamed(tables_.namedObjects, dictionary, objectName);
    const bool found = existing != tables_.namedObjects.end();
    if (found && !(*existing)->isDictionary)
        return base::stateError("\"" + dictionary + "\" is not a dictionary.");

    NamedObject object = found ? **existing : NamedObject{dictionary, true, {}, nextHandle_++, {}};
    // The old entry goes, whatever it was; the new one is an object of its own.
    if (const auto old = findEntry(object.entries, key); old != object.entries.end())
        object.entries.erase(old);
    object.entries.push_back({key, true, texts, nextHandle_++, nullptr, true});
    const auto place = existing - tables_.namedObjects.begin();
    auto record = std::make_shared<const NamedObject>(std::move(object));

    const EditScope scope(*this, "RECORD");
    auto& objects = changeTables().namedObjects;
    if (found)
        objects[static_cast<std::size_t>(place)] = std::move(record);
    else
        objects.push_back(std::move(record));
    return {};
}

// --- coordinate system and variables ------------------------------------------------------------

base::Result<void> Database::setUcs(const Ucs& ucs) {
    const auto straightened = orthonormal(ucs);
    if (!straightened)
        return base::rangeError("The axes of a coordinate system must not be parallel.");
    if (*straightened == tables_.ucs)
        return {};
    const EditScope scope(*this, "UCS");
    changeTables().ucs = *straightened;
    return {};
}

base::Result<void> Database::setVariable(const std::string& name,
                                         const host::VariableValue& value) {
    if (!isValidSymbolName(name))
        return base::rangeError("\"" + name + "\" cannot name a variable.");
    const auto found = tables_.variables.find(name);
    if (found != tables_.variables.end() && found->second == value)
        return {};
    const EditScope scope(*this, "SETVAR");
    changeTables().variables[name] = value;
    return {};
}

} // namespace tessaran::drawing
