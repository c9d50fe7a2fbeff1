#include "drawing/database.h"

#include "base/text.h"
#include "drawing/database_checks.h"
#include "drawing/edit_scope.h"
#include "drawing/extents.h"
#include "drawing/selection.h"
#include "drawing/spatial_index.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tessaran::drawing {
namespace {

using host::Entity;
using host::EntityId;

// Handles below are left to the fixed objects of a new drawing's file.
constexpr std::uint64_t kFirstHandle = 0x100;
constexpr std::size_t kNoSlot = std::numeric_limits<std::size_t>::max();

bool sameKind(const Entity& a, const Entity& b) {
    return a.geometry.index() == b.geometry.index() && host::dxfName(a) == host::dxfName(b);
}

const ApplicationData* dataOf(const EntityRecord& record, std::string_view application) {
    const auto found = std::ranges::find_if(record.xdata, [&](const ApplicationData& data) {
        return base::equalsIgnoringCase(data.application, application);
    });
    return found == record.xdata.end() ? nullptr : &*found;
}

} // namespace

host::Box2 View::box() const {
    const host::Point2 half{0.5 * height * widthPixels / heightPixels, 0.5 * height};
    return {centre - half, centre + half};
}

Database::Database() : nextHandle_(kFirstHandle) {
    linetypes_ = {{"ByBlock", {}}, {"ByLayer", {}}, {"Continuous", {}}};
    LayerRecord zero;
    zero.layer.name = "0";
    tables_.layers.push_back(std::make_shared<const LayerRecord>(std::move(zero)));
    tables_.applications = {"ACAD"};
    rebuildLayerIndex();
}

Database::~Database() = default;

// --- looking up ---------------------------------------------------------------------------------

std::size_t Database::slotOf(EntityId id) const {
    const auto found = slotOfHandle_.find(id.value);
    if (found == slotOfHandle_.end() || !slots_[found->second].record)
        return kNoSlot;
    return found->second;
}

const EntityRecord* Database::record(EntityId id) const {
    const std::size_t slot = slotOf(id);
    return slot == kNoSlot ? nullptr : slots_[slot].record.get();
}

const Entity* Database::find(EntityId id) const {
    const EntityRecord* found = record(id);
    return found ? &found->entity : nullptr;
}

EntityId Database::lastEntity() const {
    const auto last = std::find_if(slots_.rbegin(), slots_.rend(),
                                   [](const Slot& slot) { return slot.record != nullptr; });
    return last == slots_.rend() ? EntityId{} : last->record->entity.id;
}

std::optional<host::Box2> Database::extents(EntityId id) const {
    const EntityRecord* found = record(id);
    if (!found)
        return std::nullopt;
    const host::Box2 box = recordExtents(*this, *found, Visibility::all, Reach::centreLines);
    return box.empty() ? std::nullopt : std::optional(box);
}

host::Box2 Database::extents() const {
    return drawingExtents(*this);
}

View Database::view() const {
    return view_ ? *view_ : viewOn(extents());
}

const Block* Database::block(std::string_view name) const {
    const auto found = blocks_.find(base::lowered(name));
    return found == blocks_.end() ? nullptr : &found->second;
}

// --- selecting ----------------------------------------------------------------------------------

std::vector<EntityId> Database::select(const host::SelectionFilter& filter) const {
    const FilterTest passes(tables_, filter);
    std::vector<EntityId> selected;
    for (const Slot& slot : slots_)
        if (slot.record && passes(*slot.record))
            selected.push_back(slot.record->entity.id);
    return selected;
}

std::vector<EntityId> Database::select(const host::SelectionShape& shape,
                                       const host::SelectionFilter& filter) const {
    return selectByShape(*this, shape, filter, Visibility::all);
}

const SpatialIndex& Database::index() const {
    if (!index_)
        index_ = std::make_unique<SpatialIndex>();
    index_->update(slots_.size(), [this](std::size_t slot) {
        const EntityRecord* record = slots_[slot].record.get();
        return record ? recordExtents(*this, *record, Visibility::all, Reach::widths)
                      : host::Box2{};
    });
    return *index_;
}

void Database::forEachBox(
    const std::function<void(const EntityRecord&, const host::Box2&)>& visit) const {
    const SpatialIndex& boxes = index();
    for (std::size_t slot = 0; slot < slots_.size(); ++slot)
        if (slots_[slot].record)
            visit(*slots_[slot].record, boxes.box(slot));
}

std::vector<const EntityRecord*> Database::near(const host::Box2& box) const {
    std::vector<const EntityRecord*> records;
    for (const std::size_t slot : index().query(box))
        records.push_back(slots_[slot].record.get());
    return records;
}

// --- changing entities --------------------------------------------------------------------------

std::unique_ptr<EntityRecord> Database::replace(std::size_t slot,
                                                std::unique_ptr<EntityRecord> record) {
    std::unique_ptr<EntityRecord> before = std::exchange(slots_[slot].record, std::move(record));
    live_ += slots_[slot].record ? 1u : 0u;
    live_ -= before ? 1u : 0u;
    if (index_)
        index_->touch(slot);
    return before;
}

base::Result<void> Database::checkCommon(const Entity& entity, const Entity* before) const {
    if (!layerIndex(entity.layer))
        return base::stateError("There is no layer \"" + entity.layer + "\".");
    if (entity.colour < host::colour::kByBlock || entity.colour > host::colour::kByLayer)
        return base::rangeError("A colour index lies between 0 and 256.");
    const bool keepsLinetype = before && before->linetype == entity.linetype;
    if (!keepsLinetype && !hasLinetype(entity.linetype))
        return base::stateError("There is no linetype \"" + entity.linetype + "\".");
    const auto* insert = std::get_if<host::Insert>(&entity.geometry);
    if (insert && !before && !block(insert->block))
        return base::stateError("There is no block \"" + insert->block + "\".");
    return {};
}

base::Result<void> Database::checkEditable(EntityId id) const {
    const EntityRecord* found = record(id);
    if (!found)
        return base::stateError("There is no such object in the drawing.");
    const host::Layer& on = tables_.layers[found->layer]->layer;
    if (on.locked)
        return base::stateError("The object is on the locked layer \"" + on.name + "\".");
    return {};
}

void Database::assignLayer(EntityRecord& record) const {
    record.layer = *layerIndex(record.entity.layer);
    record.entity.layer = tables_.layers[record.layer]->layer.name;
}

base::Result<EntityId> Database::add(Entity entity) {
    if (auto fault = checkGeometry(entity.geometry); !fault)
        return fault.error();
    if (auto fault = checkCommon(entity, nullptr); !fault)
        return fault.error();
    if (nextHandle_ == std::numeric_limits<std::uint64_t>::max())
        return base::stateError("The drawing has no handles left.");
    const EditScope scope(*this, "ADD");
    auto record = std::make_unique<EntityRecord>();
    record->entity = std::move(entity);
    record->entity.id = EntityId{nextHandle_++};
    record->changed = true;
    assignLayer(*record);
    const EntityId id = record->entity.id;
    const std::size_t slot = slots_.size();
    slots_.emplace_back();
    slotOfHandle_.emplace(id.value, slot);
    journalSlot(slot, replace(slot, std::move(record)));
    return id;
}

base::Result<void> Database::modify(const Entity& entity) {
    if (auto fault = checkEditable(entity.id); !fault)
        return fault;
    const std::size_t slot = slotOf(entity.id);
    const EntityRecord& before = *slots_[slot].record;
    if (!sameKind(before.entity, entity))
        return base::stateError("An object's type cannot be changed.");
    if (!isFinite(entity.geometry))
        return base::rangeError("The object has coordinates that are not finite numbers.");
    if (auto fault = checkCommon(entity, &before.entity); !fault)
        return fault;
    const EditScope scope(*this, "MODIFY");
    auto record = std::make_unique<EntityRecord>(
        EntityRecord{entity, before.xdata, before.source, true, before.xdataChanged, 0});
    assignLayer(*record);
    journalSlot(slot, replace(slot, std::move(record)));
    return {};
}

bool Database::erase(EntityId id) {
    if (!checkEditable(id))
        return false;
    const EditScope scope(*this, "ERASE");
    const std::size_t slot = slotOf(id);
    journalSlot(slot, replace(slot, nullptr));
    return true;
}

// --- extended data ------------------------------------------------------------------------------

base::Result<void> Database::setXData(EntityId id, const std::string& application,
                                      const std::vector<host::XDataItem>& items) {
    if (auto fault = checkEditable(id); !fault)
        return fault;
    if (!isValidSymbolName(application))
        return base::rangeError("\"" + application + "\" cannot name an application.");
    if (auto fault = checkXData(items); !fault)
        return fault;
    const std::size_t slot = slotOf(id);
    const EntityRecord& before = *slots_[slot].record;
    if (items.empty() && !dataOf(before, application))
        return {};
    auto record = std::make_unique<EntityRecord>(before);
    const ApplicationData* old = dataOf(*record, application);
    const auto place =
        record->xdata.begin() + (old ? old - record->xdata.data() : std::ssize(record->xdata));
    if (items.empty())
        record->xdata.erase(place);
    else if (old)
        place->items = items;
    else
        record->xdata.push_back({application, items});
    if (xdataSize(record->xdata) > kXDataLimit)
        return base::rangeError("An object holds at most 16 kB of extended data.");
    record->xdataChanged = true;
    const EditScope scope(*this, "XDATA");
    registerApplication(application);
    journalSlot(slot, replace(slot, std::move(record)));
    return {};
}

std::optional<std::vector<host::XDataItem>> Database::xdata(EntityId id,
                                                            std::string_view application) const {
    const EntityRecord* found = record(id);
    const ApplicationData* data = found ? dataOf(*found, application) : nullptr;
    return data ? std::optional(data->items) : std::nullopt;
}

} // namespace tessaran::drawing
