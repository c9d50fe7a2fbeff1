#pragma once

// The port to the open drawing: query, create and change entities by layer and type; layers,
// linetypes, groups, extended data, dictionary records. Every change belongs to the running
// command and is undone with it by the host.

#include "base/result.h"
#include "host/entity.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::host {

struct Layer {
    std::string name;
    int colour = colour::kForeground;
    std::string linetype = "Continuous";
    bool on = true;
    bool frozen = false;
    bool locked = false;
};

// Entities of model space that pass every filled condition.
struct SelectionFilter {
    std::vector<std::string> layers{}; // names in any capitals; empty: all layers
    std::vector<std::string> types{};  // DXF type names; empty: all types
    std::string xdataApplication{};    // only entities with extended data of it; empty: all
};

// A shape in world coordinates that entities are held against.
struct SelectionShape {
    enum class Kind {
        window,   // closed polygon; entities wholly inside
        crossing, // closed polygon; entities inside or touching
        fence,    // open chain; entities that it crosses
    };
    Kind kind = Kind::window;
    std::vector<Point2> points{};
};

class Drawing {
  public:
    virtual ~Drawing() = default;

    // --- entities -----------------------------------------------------------------------------
    // In drawing order (creation order). Off and frozen layers are included.
    virtual std::vector<EntityId> select(const SelectionFilter& filter) const = 0;
    virtual std::vector<EntityId> select(const SelectionShape& shape,
                                         const SelectionFilter& filter) const = 0;
    // Valid until the drawing changes; null for an erased or unknown entity.
    virtual const Entity* find(EntityId id) const = 0;
    virtual EntityId lastEntity() const = 0;
    // Plan extents with arcs followed; nothing for an entity that has none.
    virtual std::optional<Box2> extents(EntityId id) const = 0;

    // Adds to model space. Refuses not-finite coordinates and unknown layers.
    virtual base::Result<EntityId> add(Entity entity) = 0;
    // Replaces common properties and geometry of the entity named by `entity.id`; what the system
    // does not know of it (extended data, other tags) stays.
    virtual base::Result<void> modify(const Entity& entity) = 0;
    virtual bool erase(EntityId id) = 0;

    // --- layers and linetypes -----------------------------------------------------------------
    virtual std::vector<Layer> layers() const = 0;
    virtual std::optional<Layer> layer(std::string_view name) const = 0;
    virtual base::Result<void> createLayer(const Layer& layer) = 0;
    virtual base::Result<void> modifyLayer(const Layer& layer) = 0;
    virtual bool hasLinetype(std::string_view name) const = 0;
    virtual std::string currentLayer() const = 0;
    virtual base::Result<void> setCurrentLayer(std::string_view name) = 0;

    // --- groups ---------------------------------------------------------------------------------
    // Creates the group or replaces the members of an existing one.
    virtual base::Result<void> setGroup(const std::string& name,
                                        const std::vector<EntityId>& members) = 0;
    virtual std::vector<std::string> groups() const = 0;
    virtual std::vector<EntityId> group(std::string_view name) const = 0;

    // --- extended data ---------------------------------------------------------------------------
    // Replaces the application's list on the entity (an empty list removes it), registering the
    // application when the drawing does not know it.
    virtual base::Result<void> setXData(EntityId id, const std::string& application,
                                        const std::vector<XDataItem>& items) = 0;
    virtual std::optional<std::vector<XDataItem>> xdata(EntityId id,
                                                        std::string_view application) const = 0;

    // --- dictionary records ----------------------------------------------------------------------
    // Text records (group code 1) of a dictionary under the named-objects dictionary. Writing
    // creates the dictionary when missing and replaces an earlier record of the key.
    enum class RecordState { read, noDictionary, notADictionary, noEntry, notARecord };
    struct Record {
        RecordState state = RecordState::noEntry;
        std::vector<std::string> texts;
    };
    virtual Record readRecord(std::string_view dictionary, std::string_view key) const = 0;
    virtual base::Result<void> writeRecord(const std::string& dictionary, const std::string& key,
                                           const std::vector<std::string>& texts) = 0;
};

} // namespace tessaran::host
