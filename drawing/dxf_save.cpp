#include "drawing/dxf_save.h"

#include "base/file.h"
#include "base/text.h"
#include "drawing/coordinates.h"
#include "drawing/dxf_encode.h"
#include "drawing/dxf_file_edit.h"
#include "drawing/dxf_object_edit.h"
#include "drawing/dxf_template.h"
#include "drawing/dxf_variables.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <unordered_set>

namespace tessaran::drawing {
namespace {

using dxf::FileEdit;
using dxf::HandleSource;
using dxf::Tag;
using dxf::TagWriter;

bool sameName(std::string_view a, std::string_view b) {
    return base::equalsIgnoringCase(a, b);
}

// --- tables -------------------------------------------------------------------------------------

class TableEditor {
  public:
    TableEditor(FileEdit& edit, HandleSource& handles) : edit_(edit), handles_(handles) {
        findRecords();
    }

    base::Result<void> editLayers(const Database& database);
    base::Result<void> registerApplications(const std::vector<std::string>& names);

  private:
    void findRecords();
    void rewriteLayer(const SourceRecord& record, const host::Layer& layer);
    std::string newLayer(const LayerRecord& record, const FileEdit::Table& table);
    std::string encoded(std::string_view text) const { return edit_.file().texts.encoded(text); }

    FileEdit& edit_;
    HandleSource& handles_;
    std::map<std::string, const SourceRecord*> layers_; // by lowered name
    std::set<std::string> applications_;                // lowered names
};

void TableEditor::findRecords() {
    const SourceFile& file = edit_.file();
    for (const SourceRecord& record : file.records) {
        if (record.place != SourcePlace::tableRecord)
            continue;
        const std::string_view type = file.type(record);
        if (type != "LAYER" && type != "APPID")
            continue;
        const std::string name =
            base::lowered(base::trimmed(dxf::firstText(file, edit_.tagsOf(record), 2)));
        if (type == "LAYER")
            layers_.emplace(name, &record);
        else
            applications_.insert(name);
    }
}

constexpr std::int64_t kFrozen = 1;
constexpr std::int64_t kLocked = 4;

void TableEditor::rewriteLayer(const SourceRecord& record, const host::Layer& layer) {
    const SourceFile& file = edit_.file();
    const dxf::TagValues values = file.values();
    const std::vector<Tag> tags = edit_.tagsOf(record);
    const host::Layer before = dxf::decodeLayer(file, tags);
    TagWriter writer = edit_.writer();
    for (const Tag& tag : tags) {
        const bool recoloured = layer.colour != before.colour || layer.on != before.on;
        if (tag.code == 70 && (layer.frozen != before.frozen || layer.locked != before.locked)) {
            const std::int64_t kept = values.integer(tag).value_or(0) & ~(kFrozen | kLocked);
            writer.integer(70, kept | (layer.frozen ? kFrozen : 0) | (layer.locked ? kLocked : 0));
        } else if (tag.code == 62 && recoloured) {
            writer.integer(62, layer.on ? layer.colour : -layer.colour);
        } else if ((tag.code == 420 || tag.code == 430) && layer.colour != before.colour) {
            continue; // a true colour would hide the new one
        } else if (tag.code == 6 && !sameName(layer.linetype, before.linetype)) {
            writer.text(6, encoded(layer.linetype));
        } else {
            writer.raw(edit_.raw(tag));
        }
    }
    edit_.replace(edit_.indexOf(record), writer.take());
}

// Plot style, material and visual style are those of layer "0": programs refuse a layer without.
std::string TableEditor::newLayer(const LayerRecord& record, const FileEdit::Table& table) {
    const host::Layer& layer = record.layer;
    TagWriter writer = edit_.writer();
    writer.text(0, "LAYER");
    writer.handle(5, record.handle != 0 ? record.handle : handles_.take());
    writer.handle(330, table.handle);
    writer.text(100, "AcDbSymbolTableRecord");
    writer.text(100, "AcDbLayerTableRecord");
    writer.text(2, encoded(layer.name));
    writer.integer(70, (layer.frozen ? kFrozen : 0) | (layer.locked ? kLocked : 0));
    writer.integer(62, layer.on ? layer.colour : -layer.colour);
    writer.text(6, encoded(layer.linetype));
    if (const auto zero = layers_.find("0"); zero != layers_.end())
        for (const Tag& tag : edit_.tagsOf(*zero->second))
            if (tag.code == 370 || tag.code == 390 || tag.code == 347 || tag.code == 348)
                writer.raw(edit_.raw(tag));
    return writer.take();
}

base::Result<void> TableEditor::editLayers(const Database& database) {
    const FileEdit::Table* const table = edit_.table("LAYER");
    for (const auto& record : database.tables().layers) {
        const auto known = layers_.find(base::lowered(record->layer.name));
        if (known != layers_.end()) {
            if (record->changed || !record->source)
                rewriteLayer(*known->second, record->layer);
        } else if (table == nullptr) {
            return base::stateError("the drawing file has no layer table to add to");
        } else {
            edit_.appendToTable(*table, newLayer(*record, *table));
        }
    }
    return {};
}

base::Result<void> TableEditor::registerApplications(const std::vector<std::string>& names) {
    const FileEdit::Table* const table = edit_.table("APPID");
    for (const std::string& name : names) {
        if (!applications_.insert(base::lowered(name)).second)
            continue;
        if (table == nullptr)
            return base::stateError("the drawing file has no table of applications to add to");
        TagWriter writer = edit_.writer();
        writer.text(0, "APPID");
        writer.handle(5, handles_.take());
        writer.handle(330, table->handle);
        writer.text(100, "AcDbSymbolTableRecord");
        writer.text(100, "AcDbRegAppTableRecord");
        writer.text(2, encoded(name));
        writer.integer(70, 0);
        edit_.appendToTable(*table, writer.take());
    }
    return {};
}

// --- the header ---------------------------------------------------------------------------------

class HeaderEditor {
  public:
    HeaderEditor(FileEdit& edit, const Database& database) : edit_(edit), database_(database) {}

    // `handleSeed`: 0 leaves the file's; `extents`: empty leaves the file's.
    void run(std::uint64_t handleSeed, const host::Box2& extents);

  private:
    std::optional<std::string> rewritten(const dxf::HeaderVariable& variable);
    std::optional<host::VariableValue> wanted(const std::string& name,
                                              const host::VariableValue& before) const;

    FileEdit& edit_;
    const Database& database_;
    std::uint64_t handleSeed_ = 0;
    host::Box2 extents_;
    bool seedWritten_ = false;
    bool ucsChanged_ = false;
};

// What the drawing says of a variable; nothing when it says what the file says.
std::optional<host::VariableValue> HeaderEditor::wanted(const std::string& name,
                                                        const host::VariableValue& before) const {
    const Tables& tables = database_.tables();
    const auto* text = std::get_if<std::string>(&before);
    const auto* point = std::get_if<host::Point3>(&before);
    if (name == "CLAYER" && text != nullptr && !sameName(*text, tables.currentLayer))
        return tables.currentLayer;
    if (ucsChanged_ && name == "UCSORG")
        return tables.ucs.origin;
    if (ucsChanged_ && name == "UCSXDIR")
        return tables.ucs.xAxis;
    if (ucsChanged_ && name == "UCSYDIR")
        return tables.ucs.yAxis;
    if (!extents_.empty() && point != nullptr && (name == "EXTMIN" || name == "EXTMAX")) {
        const host::Point2 corner = name == "EXTMIN" ? extents_.low : extents_.high;
        const double z = std::abs(point->z) < dxf::kLargestCoordinate ? point->z : 0.0;
        return host::Point3{corner.x, corner.y, z};
    }
    const auto free = tables.variables.find(name);
    if (dxf::isFreeVariable(name) && free != tables.variables.end() && free->second != before)
        return free->second;
    return std::nullopt;
}

std::optional<std::string> HeaderEditor::rewritten(const dxf::HeaderVariable& variable) {
    const std::string name = dxf::variableName(variable);
    TagWriter writer = edit_.writer();
    if (name == "HANDSEED") {
        seedWritten_ = true;
        if (handleSeed_ == 0 || handleSeed_ <= edit_.file().handleSeed)
            return std::nullopt;
        writer.text(9, variable.name);
        writer.handle(5, handleSeed_);
        return writer.take();
    }
    const std::optional<host::VariableValue> before = dxf::decodeVariable(edit_.file(), variable);
    if (!before)
        return std::nullopt;
    const std::optional<host::VariableValue> now = wanted(name, *before);
    if (!now)
        return std::nullopt;
    dxf::writeVariable(writer, edit_.file(), variable, *now);
    return writer.take();
}

void HeaderEditor::run(std::uint64_t handleSeed, const host::Box2& extents) {
    if (!edit_.headerRecord())
        return;
    handleSeed_ = handleSeed;
    extents_ = extents;
    // The axes are straightened on reading, so they are compared in that form.
    const Ucs before = dxf::decodeUcs(edit_.file());
    ucsChanged_ = !(orthonormal(before).value_or(Ucs{}) == database_.tables().ucs);
    const SourceRecord& record = edit_.file().records[*edit_.headerRecord()];
    const std::string_view bytes = edit_.file().bytes;
    TagWriter writer = edit_.writer();
    std::size_t copied = record.begin;
    bool changed = false;
    for (const dxf::HeaderVariable& variable : dxf::headerVariables(edit_.file()))
        if (const std::optional<std::string> now = rewritten(variable)) {
            writer.raw(bytes.substr(copied, variable.begin - copied));
            writer.raw(*now);
            copied = variable.end;
            changed = true;
        }
    writer.raw(bytes.substr(copied, record.end - copied));
    if (!seedWritten_ && handleSeed_ != 0) {
        writer.text(9, "$HANDSEED");
        writer.handle(5, handleSeed_);
        changed = true;
    }
    if (changed)
        edit_.replace(*edit_.headerRecord(), writer.take());
}

// --- the whole drawing --------------------------------------------------------------------------

class Saver {
  public:
    Saver(const Database& database, const SourceFile& file)
        : database_(database), file_(file), edit_(file), handles_{database.nextHandle()},
          objects_(edit_, handles_, database), tables_(edit_, handles_),
          encoder_(file, handles_, modelSpaceOf(edit_)), writer_(file.format) {}

    base::Result<SaveReport> run(const FileEdit::Sink& sink);

  private:
    static std::uint64_t modelSpaceOf(const FileEdit& edit);
    void findErased();
    void findChanged();
    std::uint64_t handlesNeeded(const EntityRecord& record) const;
    std::vector<std::string> applications() const;
    void writeNewEntities(const FileEdit::Sink& sink);
    std::optional<std::string_view> entityBytes(const SourceRecord& record);
    bool isChanged(const EntityRecord& record) const;
    const dxf::ReactorEdit& reactorsOf(const EntityRecord& record) const;

    const Database& database_;
    const SourceFile& file_;
    FileEdit edit_;
    HandleSource handles_;
    dxf::ObjectEditor objects_;
    TableEditor tables_;
    dxf::EntityEncoder encoder_;
    std::unordered_set<std::uint64_t> erased_; // handles in the file
    std::vector<const SourceRecord*> erasedRecords_;
    std::uint64_t handlesForEntities_ = 0; // that writing entities may take
    bool entitiesChanged_ = false;
    bool regionsAsLoops_ = false;
    std::vector<Tag> tags_;
    TagWriter writer_; // of the entity being written
    SaveReport report_;
};

std::uint64_t Saver::modelSpaceOf(const FileEdit& edit) {
    const SourceFile& file = edit.file();
    for (const SourceRecord& record : file.records) {
        if (record.place == SourcePlace::tableRecord && file.type(record) == "BLOCK_RECORD" &&
            sameName(base::trimmed(dxf::firstText(file, edit.tagsOf(record), 2)), "*Model_Space"))
            return record.handle;
        // R13 keeps the owner with the block itself only.
        if (record.place == SourcePlace::block)
            break;
    }
    return 0;
}

bool Saver::isChanged(const EntityRecord& record) const {
    return record.changed || record.xdataChanged || !record.source || !reactorsOf(record).empty();
}

const dxf::ReactorEdit& Saver::reactorsOf(const EntityRecord& record) const {
    return objects_.reactorsOf(record.entity.id.value);
}

// An upper bound of the handles that writing the entity takes beyond its own.
std::uint64_t Saver::handlesNeeded(const EntityRecord& record) const {
    const host::EntityGeometry& geometry = record.entity.geometry;
    if (const auto* plane = std::get_if<host::Polyline>(&geometry))
        return plane->form == host::Polyline::Form::old ? plane->vertices.size() + 1 : 0;
    if (const auto* spatial = std::get_if<host::Polyline3d>(&geometry))
        return spatial->vertices.size() + 1;
    if (const auto* region = std::get_if<host::Region>(&geometry))
        return dxf::keepsRegionsAsText(file_.version) ? 0 : region->loops.size();
    return 0;
}

void Saver::findErased() {
    for (const SourceRecord& record : file_.records)
        if (record.place == SourcePlace::entity &&
            database_.record(host::EntityId{record.id}) == nullptr) {
            erased_.insert(record.handle);
            erasedRecords_.push_back(&record);
        }
}

void Saver::findChanged() {
    entitiesChanged_ = !erased_.empty();
    const bool regionText = dxf::keepsRegionsAsText(file_.version);
    database_.forEachEntity([&](const EntityRecord& record) {
        if (std::holds_alternative<host::Region>(record.entity.geometry) && !regionText)
            regionsAsLoops_ = true;
        if (!isChanged(record))
            return;
        entitiesChanged_ = true;
        handlesForEntities_ += handlesNeeded(record);
    });
}

std::vector<std::string> Saver::applications() const {
    std::vector<std::string> names = database_.tables().applications;
    if (regionsAsLoops_)
        names.emplace_back(dxf::kRegionApplication);
    return names;
}

base::Result<SaveReport> Saver::run(const FileEdit::Sink& sink) {
    findErased();
    objects_.run(erased_, erasedRecords_);
    findChanged();
    if (base::Result<void> layers = tables_.editLayers(database_); !layers)
        return layers.error();
    if (base::Result<void> registered = tables_.registerApplications(applications()); !registered)
        return registered.error();
    const bool changed = entitiesChanged_ || !edit_.unchanged();
    const std::uint64_t seed =
        std::max(handles_.next, file_.largestHandle + 1) + handlesForEntities_;
    HeaderEditor(edit_, database_)
        .run(changed ? seed : 0, entitiesChanged_ ? database_.extents() : host::Box2{});
    if (!edit_.sectionEnd("ENTITIES"))
        return base::stateError("the drawing file has no section for entities");
    const FileEdit::Sink counting = [&](std::string_view bytes) {
        report_.bytes += bytes.size();
        sink(bytes);
    };
    edit_.write(
        counting, [&](const SourceRecord& record) { return entityBytes(record); },
        [&](const FileEdit::Sink& out) { writeNewEntities(out); });
    report_.version = file_.version;
    report_.upgraded = file_.upgraded;
    return report_;
}

void Saver::writeNewEntities(const FileEdit::Sink& sink) {
    database_.forEachEntity([&](const EntityRecord& record) {
        if (record.source)
            return;
        writer_.clear();
        encoder_.write(writer_, record, reactorsOf(record));
        sink(writer_.bytes());
        ++report_.rewritten;
    });
}

std::optional<std::string_view> Saver::entityBytes(const SourceRecord& record) {
    const EntityRecord* const entity = database_.record(host::EntityId{record.id});
    if (entity == nullptr)
        return std::string_view{};
    if (!isChanged(*entity))
        return std::nullopt;
    if (record.foreign) // written anew with the region's first loop
        return std::string_view{};
    file_.readTags(record, tags_);
    writer_.clear();
    encoder_.rewrite(writer_, tags_, *entity, reactorsOf(*entity));
    ++report_.rewritten;
    return writer_.bytes();
}

} // namespace

base::Result<SaveReport> writeDxf(const Database& database,
                                  const std::function<void(std::string_view)>& sink) {
    if (database.source())
        return Saver(database, *database.source()).run(sink);
    base::Result<std::shared_ptr<SourceFile>> fresh =
        dxf::scan(dxf::templateDrawing(database.nextHandle()), "new drawing");
    if (!fresh)
        return fresh.error();
    return Saver(database, *fresh.value()).run(sink);
}

base::Result<SaveReport> saveDxf(const Database& database, const std::filesystem::path& path,
                                 const SaveOptions& options) {
    using Backup = base::FileWriter::Backup;
    base::Result<base::FileWriter> writer =
        base::FileWriter::create(path, options.keepBackup ? Backup::keepAsBak : Backup::none);
    if (!writer)
        return writer.error();
    base::Result<SaveReport> report =
        writeDxf(database, [&](std::string_view bytes) { writer->write(bytes); });
    if (!report)
        return report.error();
    if (base::Result<void> committed = writer->commit(); !committed)
        return committed.error();
    return report;
}

} // namespace tessaran::drawing
