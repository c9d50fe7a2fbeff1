#include "drawing/dxf_load.h"

#include "base/file.h"
#include "base/text.h"
#include "drawing/database_builder.h"
#include "drawing/dxf_decode.h"
#include "drawing/dxf_source.h"
#include "drawing/dxf_template.h"
#include "drawing/dxf_upgrade.h"
#include "drawing/dxf_variables.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <utility>

namespace tessaran::drawing {
namespace {

using dxf::Tag;

constexpr std::size_t kEntitiesPerStep = 4096; // between two looks at the progress meter

// One loop of a region that the file keeps as polylines.
struct RegionLoop {
    std::uint64_t first = 0; // handle of the region's first polyline
    std::int32_t index = 0;
    std::int32_t count = 0;
    SourceRecord* record = nullptr;
    host::Polyline polyline;
};

class Loader {
  public:
    Loader(Database& database, std::shared_ptr<SourceFile> file, LoadReport& report,
           base::Progress& progress)
        : file_(std::move(file)), values_(file_->values()), decoder_(*file_), builder_(database),
          report_(report), progress_(progress) {}

    base::Result<void> load();

  private:
    void warn(const SourceRecord& record, const std::string& reason);
    std::shared_ptr<const SourceRecord> share(const SourceRecord& record) const {
        return {file_, &record};
    }
    std::string encodedName(std::span<const Tag> tags) const {
        return std::string(base::trimmed(dxf::firstText(*file_, tags, 2)));
    }

    void noteHandles();
    void renumberDuplicates();
    void loadHeader();
    void loadTables();
    void loadLinetype();
    void loadBlocks();
    void findRegions();
    base::Result<void> loadEntities();
    void loadEntity(SourceRecord& record);
    void add(EntityRecord entity, const SourceRecord& record);
    bool loadRegion(SourceRecord& record);
    void loadObjects();
    void loadGroups(std::span<const dxf::DictionaryItem> items);
    void loadNamedObject(const dxf::DictionaryItem& item);
    const SourceRecord* object(std::uint64_t handle) const;

    std::shared_ptr<SourceFile> file_;
    dxf::TagValues values_;
    dxf::EntityDecoder decoder_;
    DatabaseBuilder builder_;
    LoadReport& report_;
    base::Progress& progress_;
    std::vector<Tag> tags_; // of the record being read
    std::string currentLayer_ = "0";
    bool regionsAsLoops_ = false; // the file knows the application that marks them
    std::map<std::uint64_t, std::vector<RegionLoop>> regions_;
    std::unordered_map<std::uint64_t, const SourceRecord*> objects_;
};

void Loader::warn(const SourceRecord& record, const std::string& reason) {
    ++report_.warningCount;
    if (report_.warnings.size() < LoadReport::kMostWarnings)
        report_.warnings.push_back(
            base::formatError(std::string(file_->type(record)) + ": " + reason, file_->name,
                              file_->lineOf(record))
                .message());
}

base::Result<void> Loader::load() {
    builder_.setVersion(file_->version);
    builder_.setSource(file_);
    noteHandles();
    renumberDuplicates();
    loadHeader();
    loadTables();
    builder_.setCurrentLayer(currentLayer_);
    loadBlocks();
    if (regionsAsLoops_)
        findRegions();
    base::Result<void> entities = loadEntities();
    if (entities)
        loadObjects();
    return entities;
}

void Loader::noteHandles() {
    builder_.noteHandle(file_->largestHandle);
    if (file_->handleSeed > 0)
        builder_.noteHandle(file_->handleSeed - 1);
}

// Where two records have one handle, the later one gets a new one if it is an entity that the
// drawing works with.
void Loader::renumberDuplicates() {
    std::vector<std::pair<std::uint64_t, std::size_t>> handles;
    handles.reserve(file_->records.size());
    for (std::size_t i = 0; i < file_->records.size(); ++i)
        if (file_->records[i].handle != 0)
            handles.emplace_back(file_->records[i].handle, i);
    std::ranges::sort(handles);
    for (std::size_t i = 1; i < handles.size(); ++i) {
        if (handles[i].first != handles[i - 1].first)
            continue;
        SourceRecord& earlier = file_->records[handles[i - 1].second];
        SourceRecord& later = file_->records[handles[i].second];
        SourceRecord& record = later.place == SourcePlace::entity ? later : earlier;
        const bool movable = record.place == SourcePlace::entity && record.id == record.handle;
        if (movable)
            record.id = builder_.newHandle();
        warn(record, "handle " + dxf::handleText(record.handle) + " stands twice in the file" +
                         (movable ? "; the entity is given another one" : ""));
    }
}

void Loader::loadHeader() {
    for (const dxf::HeaderVariable& variable : dxf::headerVariables(*file_)) {
        const std::optional<host::VariableValue> value = dxf::decodeVariable(*file_, variable);
        if (!value)
            continue;
        const std::string name = dxf::variableName(variable);
        if (name == "CLAYER" && std::holds_alternative<std::string>(*value))
            currentLayer_ = std::get<std::string>(*value);
        else if (dxf::isFreeVariable(name))
            builder_.setVariable(name, *value);
    }
    builder_.setUcs(dxf::decodeUcs(*file_));
}

void Loader::loadLinetype() {
    LinetypeRecord linetype;
    linetype.name = encodedName(tags_);
    for (const Tag& tag : tags_)
        if (tag.code == 49)
            linetype.dashes.push_back(values_.real(tag).value_or(0.0));
    builder_.addLinetype(std::move(linetype));
}

void Loader::loadTables() {
    for (const SourceRecord& record : file_->records) {
        if (record.place != SourcePlace::tableRecord)
            continue;
        const std::string_view type = file_->type(record);
        if (type != "LAYER" && type != "LTYPE" && type != "APPID")
            continue;
        file_->readTags(record, tags_);
        if (type == "LTYPE") {
            loadLinetype();
        } else if (type == "APPID") {
            const std::string name = encodedName(tags_);
            regionsAsLoops_ = regionsAsLoops_ || name == dxf::kRegionApplication;
            if (name != dxf::kRegionApplication)
                builder_.addApplication(name);
        } else {
            LayerRecord layer;
            layer.layer = dxf::decodeLayer(*file_, tags_);
            layer.source = share(record);
            layer.handle = record.handle;
            builder_.setLayer(std::move(layer));
        }
    }
}

void Loader::loadBlocks() {
    Block block;
    bool open = false;
    for (const SourceRecord& record : file_->records) {
        if (record.place != SourcePlace::block)
            continue;
        file_->readTags(record, tags_);
        const std::string_view type = values_.name(tags_.front());
        if (type == "BLOCK") {
            block = Block{encodedName(tags_), {}, {}};
            open = true;
            for (const Tag& tag : tags_) {
                double* const part = tag.code == 10   ? &block.base.x
                                     : tag.code == 20 ? &block.base.y
                                     : tag.code == 30 ? &block.base.z
                                                      : nullptr;
                if (part != nullptr)
                    *part = values_.real(tag).value_or(0.0);
            }
        } else if (type == "ENDBLK") {
            const std::string name = base::lowered(block.name);
            if (open && !name.starts_with("*model_space") && !name.starts_with("*paper_space") &&
                !name.starts_with("$model_space") && !name.starts_with("$paper_space"))
                builder_.addBlock(std::exchange(block, {}));
            open = false;
        } else if (open) {
            block.entities.push_back(decoder_.decode(tags_).entity);
        }
    }
}

// --- entities -----------------------------------------------------------------------------------

namespace {

// What an entity's extended data says of the region that it is a loop of.
std::optional<RegionLoop> regionLoop(const dxf::DecodedEntity& decoded) {
    const auto* polyline = std::get_if<host::Polyline>(&decoded.entity.geometry);
    for (const ApplicationData& data : decoded.xdata) {
        if (data.application != dxf::kRegionApplication || polyline == nullptr ||
            data.items.size() != 3)
            continue;
        const auto* first = std::get_if<std::string>(&data.items[0].value);
        const auto* index = std::get_if<std::int32_t>(&data.items[1].value);
        const auto* count = std::get_if<std::int32_t>(&data.items[2].value);
        if (first != nullptr && index != nullptr && count != nullptr)
            return RegionLoop{dxf::parseHandle(*first).value_or(0), *index, *count, nullptr,
                              *polyline};
    }
    return std::nullopt;
}

// Loops that share a handle with another entity are no region: their marks do not tell which of
// the two they mean.
bool complete(const std::vector<RegionLoop>& loops) {
    if (loops.empty() || loops.front().record->handle != loops.front().first)
        return false;
    for (std::size_t i = 0; i < loops.size(); ++i)
        if (loops[i].index != static_cast<std::int32_t>(i) ||
            loops[i].count != static_cast<std::int32_t>(loops.size()) ||
            loops[i].polyline.elevation != loops[0].polyline.elevation ||
            loops[i].record->handle == 0 || loops[i].record->id != loops[i].record->handle)
            return false;
    return true;
}

// True when there were any.
bool dropRegionMarks(std::vector<ApplicationData>& xdata) {
    return std::erase_if(xdata, [](const ApplicationData& data) {
               return data.application == dxf::kRegionApplication;
           }) > 0;
}

} // namespace

void Loader::findRegions() {
    for (SourceRecord& record : file_->records) {
        if (record.place != SourcePlace::entity || file_->type(record) != "LWPOLYLINE")
            continue;
        file_->readTags(record, tags_);
        if (std::optional<RegionLoop> loop = regionLoop(decoder_.decode(tags_))) {
            loop->record = &record;
            const std::uint64_t first = loop->first;
            regions_[first].push_back(std::move(*loop));
        }
    }
    for (auto it = regions_.begin(); it != regions_.end();) {
        std::ranges::stable_sort(it->second, {}, &RegionLoop::index);
        it = complete(it->second) ? std::next(it) : regions_.erase(it);
    }
    for (auto& [first, loops] : regions_)
        for (RegionLoop& loop : loops)
            if (loop.record->handle != first) {
                loop.record->foreign = true;
                loop.record->id = first;
            }
}

base::Result<void> Loader::loadEntities() {
    const auto isEntity = [](const SourceRecord& record) {
        return record.place == SourcePlace::entity;
    };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(file_->records, isEntity));
    builder_.reserve(count);
    progress_.begin("Reading " + file_->name, 0, static_cast<long>(count));
    std::size_t done = 0;
    for (SourceRecord& record : file_->records) {
        if (record.place == SourcePlace::paperEntity)
            ++report_.inPaper;
        if (!isEntity(record))
            continue;
        loadEntity(record);
        if (++done % kEntitiesPerStep == 0) {
            progress_.setPosition(static_cast<long>(done));
            if (progress_.cancelled()) {
                progress_.end();
                return base::cancelledError();
            }
        }
    }
    progress_.end();
    return {};
}

bool Loader::loadRegion(SourceRecord& record) {
    const auto found = regions_.find(record.handle);
    // Another entity may have the first loop's handle too.
    if (found == regions_.end() || found->second.front().record != &record)
        return false;
    dxf::DecodedEntity decoded = decoder_.decode(tags_);
    host::Region region;
    region.elevation = found->second.front().polyline.elevation;
    for (const RegionLoop& source : found->second) {
        host::Loop loop;
        for (const host::PolylineVertex& vertex : source.polyline.vertices)
            loop.vertices.push_back({vertex.at, vertex.bulge});
        region.loops.push_back(std::move(loop));
    }
    EntityRecord entity;
    entity.entity = std::move(decoded.entity);
    entity.entity.geometry = std::move(region);
    entity.xdata = std::move(decoded.xdata);
    dropRegionMarks(entity.xdata);
    add(std::move(entity), record);
    return true;
}

void Loader::loadEntity(SourceRecord& record) {
    if (record.foreign)
        return;
    file_->readTags(record, tags_);
    if (!regions_.empty() && loadRegion(record))
        return;
    dxf::DecodedEntity decoded = decoder_.decode(tags_);
    if (!decoded.warning.empty())
        warn(record, decoded.warning + "; the entity is kept as it is");
    EntityRecord entity;
    entity.entity = std::move(decoded.entity);
    entity.xdata = std::move(decoded.xdata);
    // Marks that were left would make a region of other polylines once they are edited.
    const bool polyline = std::holds_alternative<host::Polyline>(entity.entity.geometry);
    if (regionsAsLoops_ && polyline && dropRegionMarks(entity.xdata)) {
        entity.xdataChanged = true;
        warn(record, "the region that it is a loop of is not whole; it is kept as a polyline");
    }
    add(std::move(entity), record);
}

void Loader::add(EntityRecord entity, const SourceRecord& record) {
    entity.entity.id.value = record.id;
    entity.changed = record.id != record.handle;
    entity.source = share(record);
    ++report_.entities;
    if (std::holds_alternative<host::Other>(entity.entity.geometry))
        ++report_.kept;
    const base::Result<host::EntityId> added = builder_.add(std::move(entity));
    if (!added)
        warn(record, added.error().text);
}

// --- objects ------------------------------------------------------------------------------------

const SourceRecord* Loader::object(std::uint64_t handle) const {
    const auto found = objects_.find(handle);
    return found == objects_.end() ? nullptr : found->second;
}

void Loader::loadObjects() {
    const SourceRecord* root = nullptr;
    for (const SourceRecord& record : file_->records) {
        if (record.place != SourcePlace::object)
            continue;
        objects_.emplace(record.handle, &record);
        if (root == nullptr && file_->type(record) == "DICTIONARY")
            root = &record;
    }
    if (root == nullptr)
        return;
    file_->readTags(*root, tags_);
    for (const dxf::DictionaryItem& item : dxf::decodeDictionary(*file_, tags_))
        loadNamedObject(item);
}

void Loader::loadNamedObject(const dxf::DictionaryItem& item) {
    const SourceRecord* const record = object(item.handle);
    if (record == nullptr)
        return;
    NamedObject named;
    named.name = item.key;
    named.handle = record->handle;
    named.source = share(*record);
    const std::string_view type = file_->type(*record);
    named.isDictionary = type == "DICTIONARY" || type == "ACDBDICTIONARYWDFLT";
    std::vector<dxf::DictionaryItem> items;
    if (named.isDictionary) {
        file_->readTags(*record, tags_);
        items = dxf::decodeDictionary(*file_, tags_);
    }
    for (const dxf::DictionaryItem& entryItem : items) {
        const SourceRecord* const target = object(entryItem.handle);
        if (target == nullptr)
            continue;
        DictionaryEntry entry;
        entry.key = entryItem.key;
        entry.handle = target->handle;
        entry.source = share(*target);
        entry.isRecord = file_->type(*target) == "XRECORD";
        if (entry.isRecord) {
            file_->readTags(*target, tags_);
            for (const Tag& tag : tags_)
                if (tag.code == 1)
                    entry.texts.push_back(file_->texts.decoded(tag.value));
        }
        named.entries.push_back(std::move(entry));
    }
    if (base::equalsIgnoringCase(item.key, "ACAD_GROUP"))
        loadGroups(items);
    builder_.addNamedObject(std::move(named));
}

void Loader::loadGroups(std::span<const dxf::DictionaryItem> items) {
    for (const dxf::DictionaryItem& item : items) {
        const SourceRecord* const record = object(item.handle);
        if (record == nullptr || file_->type(*record) != "GROUP")
            continue;
        file_->readTags(*record, tags_);
        GroupRecord group;
        group.name = item.key;
        group.handle = record->handle;
        group.source = share(*record);
        for (const Tag& tag : tags_)
            if (tag.code == 340)
                group.members.push_back({values_.handle(tag).value_or(0)});
        builder_.addGroup(std::move(group));
    }
}

// Numbers of the first tags of a file's entities: messages about an upgraded drawing are to name
// the lines of the file that the user has. The upgrade keeps the entities' number and order.
std::vector<std::uint32_t> entityTags(const SourceFile& file) {
    std::vector<std::uint32_t> tags;
    for (const SourceRecord& record : file.records)
        if (record.place == SourcePlace::entity || record.place == SourcePlace::paperEntity)
            tags.push_back(record.tag);
    return tags;
}

void setEntityTags(SourceFile& file, const std::vector<std::uint32_t>& tags) {
    std::size_t next = 0;
    for (SourceRecord& record : file.records)
        if ((record.place == SourcePlace::entity || record.place == SourcePlace::paperEntity) &&
            next < tags.size())
            record.tag = tags[next++];
}

} // namespace

base::Result<LoadReport> loadDxf(Database& database, std::string bytes, const std::string& name,
                                 base::Progress& progress) {
    base::Result<std::shared_ptr<SourceFile>> file = dxf::scan(std::move(bytes), name);
    if (!file)
        return file.error();
    LoadReport report;
    report.version = file.value()->version;
    report.codePage = file.value()->codePage;
    if (const std::string missing = dxf::whatIsMissing(*file.value()); !missing.empty()) {
        const std::vector<std::uint32_t> places = entityTags(*file.value());
        base::Result<std::string> whole = dxf::upgraded(*file.value());
        if (!whole)
            return whole.error();
        file = dxf::scan(std::move(whole).value(), name);
        if (!file)
            return file.error();
        setEntityTags(*file.value(), places);
        file.value()->upgraded = missing;
        report.upgraded = missing;
    }
    const base::Result<void> loaded =
        Loader(database, std::move(file).value(), report, progress).load();
    if (!loaded)
        return loaded.error();
    return report;
}

base::Result<LoadReport> loadDxf(Database& database, const std::filesystem::path& path,
                                 base::Progress& progress) {
    base::Result<std::string> bytes = base::readFile(path);
    if (!bytes)
        return bytes.error();
    return loadDxf(database, std::move(bytes).value(), path.string(), progress);
}

base::Result<void> startDrawing(Database& database) {
    base::NoProgress nobody;
    const base::Result<LoadReport> loaded =
        loadDxf(database, dxf::templateDrawing(0), "new drawing", nobody);
    if (!loaded)
        return loaded.error();
    return {};
}

} // namespace tessaran::drawing
