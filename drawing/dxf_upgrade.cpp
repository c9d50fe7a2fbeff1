#include "drawing/dxf_upgrade.h"

#include "base/text.h"
#include "drawing/dxf_decode.h"
#include "drawing/dxf_file_edit.h"
#include "drawing/dxf_old_entities.h"
#include "drawing/dxf_template.h"
#include "drawing/dxf_variables.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessaran::drawing::dxf {
namespace {

constexpr std::string_view kFirstWithObjects = "AC1012";
constexpr std::string_view kWritten = "AC1015"; // what old releases become
constexpr std::string_view kModelSpace = "*model_space";
constexpr std::string_view kPaperSpace = "*paper_space";

struct TableKind {
    std::string_view name;
    std::string_view marker; // class of its records
};
constexpr std::array kTables{
    TableKind{"VPORT", "AcDbViewportTableRecord"},
    TableKind{"LTYPE", "AcDbLinetypeTableRecord"},
    TableKind{"LAYER", "AcDbLayerTableRecord"},
    TableKind{"STYLE", "AcDbTextStyleTableRecord"},
    TableKind{"VIEW", "AcDbViewTableRecord"},
    TableKind{"UCS", "AcDbUCSTableRecord"},
    TableKind{"APPID", "AcDbRegAppTableRecord"},
    TableKind{"DIMSTYLE", "AcDbDimStyleTableRecord"},
    TableKind{"BLOCK_RECORD", "AcDbBlockTableRecord"},
};

bool isHandleCode(int code) {
    return code == 5 || code == 105 || (code >= 320 && code <= 369) ||
           (code >= 390 && code <= 399) || code == 480 || code == 481;
}

// A file's records by what they are.
struct Contents {
    struct Table {
        std::uint64_t handle = 0;
        std::vector<const SourceRecord*> records;
        std::vector<std::string> names; // lowered
    };
    std::map<std::string, Table, std::less<>> tables;
    std::vector<const SourceRecord*> classes;
    std::vector<const SourceRecord*> blocks;
    std::vector<const SourceRecord*> entities;
    std::vector<const SourceRecord*> objects;
    std::vector<const SourceRecord*> others; // whole sections that are not known
    std::set<std::string> blockNames;        // lowered
    bool header = false;
    bool entitySection = false;
    bool ended = false;
    bool handlesMissing = false;
    bool markersMissing = false;
    bool root = false; // a dictionary of named objects

    explicit Contents(const SourceFile& file);

    const Table* table(std::string_view name) const {
        const auto found = tables.find(name);
        return found == tables.end() ? nullptr : &found->second;
    }
    bool hasRecord(std::string_view tableName, std::string_view name) const {
        const Table* const t = table(tableName);
        return t != nullptr && std::ranges::find(t->names, name) != t->names.end();
    }

  private:
    std::string nameOf(const SourceFile& file, const SourceRecord& record) {
        file.readTags(record, tags_);
        return base::lowered(base::trimmed(firstText(file, tags_, 2)));
    }
    std::vector<Tag> tags_;
};

Contents::Contents(const SourceFile& file) {
    static constexpr std::array<std::string_view, 6> kKnown{"header", "classes",  "tables",
                                                            "blocks", "entities", "objects"};
    std::string section;
    std::string tableName;
    for (const SourceRecord& record : file.records) {
        switch (record.place) {
        case SourcePlace::sectionStart:
            section = nameOf(file, record);
            header = header || section == "header";
            entitySection = entitySection || section == "entities";
            break;
        case SourcePlace::fileEnd:
            ended = true;
            continue;
        case SourcePlace::tableStart: {
            file.readTags(record, tags_);
            tableName = std::string(base::trimmed(firstText(file, tags_, 2)));
            Table& t = tables[tableName];
            if (t.handle == 0)
                t.handle = record.handle;
            break;
        }
        case SourcePlace::tableRecord: {
            Table& t = tables[tableName];
            t.records.push_back(&record);
            t.names.push_back(nameOf(file, record));
            break;
        }
        case SourcePlace::block:
            blocks.push_back(&record);
            if (file.type(record) == "BLOCK")
                blockNames.insert(nameOf(file, record));
            break;
        case SourcePlace::entity:
        case SourcePlace::paperEntity:
            entities.push_back(&record);
            handlesMissing = handlesMissing || record.handle == 0;
            markersMissing = markersMissing || !record.marked;
            break;
        case SourcePlace::classes:
            classes.push_back(&record);
            break;
        case SourcePlace::object:
            objects.push_back(&record);
            root = root || (file.type(record) == "DICTIONARY" && record.handle != 0);
            break;
        default:
            break;
        }
        if (!section.empty() && std::ranges::find(kKnown, section) == kKnown.end())
            others.push_back(&record);
        if (record.place == SourcePlace::sectionEnd)
            section.clear();
    }
}

class Upgrader {
  public:
    Upgrader(const SourceFile& file, const SourceFile& fresh)
        : file_(file), fresh_(fresh), old_(file), new_(fresh), format_(formatOf(file)),
          body_(format_), copier_(file, body_, format_),
          freshCopier_(fresh, body_, format_), handles_{fresh.handleSeed},
          entityUpgrader_(copier_, body_, handles_) {}

    std::string run();

  private:
    static Format formatOf(const SourceFile& file) {
        Format format = file.format;
        if (!format.text())
            format.layout = Format::Layout::binary16;
        return format;
    }
    std::string_view version() const { return std::max<std::string_view>(file_.version, kWritten); }

    void assignHandles();
    std::uint64_t assignedHandle(const SourceRecord& record);
    std::uint64_t aliased(std::uint64_t handle) const {
        const auto found = alias_.find(handle);
        return found == alias_.end() ? handle : found->second;
    }
    std::string header();
    void beginSection(std::string_view name);
    void endSection() { body_.text(0, "ENDSEC"); }
    void writeFresh(const SourceRecord& record);
    void writeClasses();
    void writeTables();
    void writeTable(const TableKind& kind);
    void writeTableRecord(const TableKind& kind, const SourceRecord& record, std::uint64_t table);
    void beginTableRecord(const TableKind& kind, std::uint64_t handle, std::uint64_t table);
    void writeBlockRecords(const TableKind& kind, std::uint64_t table);
    void writeReferenced(const TableKind& kind, std::uint64_t table);
    void writeBlocks();
    void writeEntities();
    void writeObjects();
    void collectReferences();

    const SourceFile& file_;
    const SourceFile& fresh_; // a new drawing
    Contents old_;
    Contents new_;
    Format format_;
    TagWriter body_;
    TagCopier copier_;
    TagCopier freshCopier_;
    HandleSource handles_;
    EntityUpgrader entityUpgrader_;
    std::unordered_map<std::uint64_t, std::uint64_t> alias_; // new drawing's handles to the file's
    std::unordered_map<const SourceRecord*, std::uint64_t> assigned_;
    std::map<std::string, std::uint64_t> blockRecords_; // by lowered block name
    std::map<std::string, std::string> linetypes_;      // referenced: lowered name to name
    std::map<std::string, std::string> styles_;
    std::vector<Tag> tags_;
};

std::uint64_t Upgrader::assignedHandle(const SourceRecord& record) {
    std::uint64_t& handle = assigned_[&record];
    if (handle == 0)
        handle = record.handle != 0 ? record.handle : handles_.take();
    return handle;
}

// Where the file has a table or a record that a new drawing has too, the file's stands for it.
void Upgrader::assignHandles() {
    for (const TableKind& kind : kTables) {
        const Contents::Table* const old = old_.table(kind.name);
        const Contents::Table* const fresh = new_.table(kind.name);
        if (old != nullptr && old->handle != 0)
            alias_[fresh->handle] = old->handle;
        for (std::size_t i = 0; old != nullptr && i < old->records.size(); ++i) {
            const std::uint64_t handle = assignedHandle(*old->records[i]);
            const auto same = std::ranges::find(fresh->names, old->names[i]);
            if (same != fresh->names.end())
                alias_[fresh->records[static_cast<std::size_t>(same - fresh->names.begin())]
                           ->handle] = handle;
            if (kind.name == "BLOCK_RECORD")
                blockRecords_.emplace(old->names[i], handle);
        }
    }
    const Contents::Table* const fresh = new_.table("BLOCK_RECORD");
    for (std::size_t i = 0; i < fresh->records.size(); ++i)
        blockRecords_.emplace(fresh->names[i], aliased(fresh->records[i]->handle));
    for (const std::string& name : old_.blockNames)
        if (!name.starts_with('$') && !blockRecords_.contains(name))
            blockRecords_.emplace(name, handles_.take());
}

void Upgrader::collectReferences() {
    const auto note = [&](const SourceRecord& record) {
        const std::string_view type = file_.type(record);
        const bool text = type == "TEXT" || type == "ATTRIB" || type == "ATTDEF";
        file_.readTags(record, tags_);
        for (const Tag& tag : tags_)
            if (tag.code == 6 || (tag.code == 7 && text)) {
                const std::string name(copier_.values().name(tag));
                (tag.code == 6 ? linetypes_ : styles_).emplace(base::lowered(name), name);
            }
    };
    for (const SourceRecord* record : old_.entities)
        note(*record);
    for (const SourceRecord* record : old_.blocks)
        note(*record);
    if (const Contents::Table* const layers = old_.table("LAYER"))
        for (const SourceRecord* record : layers->records)
            note(*record);
}

std::string Upgrader::run() {
    assignHandles();
    collectReferences();
    writeClasses();
    writeTables();
    writeBlocks();
    writeEntities();
    writeObjects();
    if (file_.format.layout == format_.layout)
        for (const SourceRecord* record : old_.others)
            body_.raw(file_.span(*record));
    body_.text(0, "EOF");
    std::string out = format_.text() ? std::string{} : std::string(kBinarySignature);
    out += header();
    out += body_.bytes();
    return out;
}

// The variables of a new drawing with the file's values, and for later releases all of the file's.
std::string Upgrader::header() {
    TagWriter writer(format_);
    TagCopier copier(file_, writer, format_);
    TagCopier freshCopier(fresh_, writer, format_);
    std::map<std::string, HeaderVariable> known;
    const std::vector<HeaderVariable> oldVariables =
        old_.header ? headerVariables(file_) : std::vector<HeaderVariable>{};
    for (const HeaderVariable& variable : oldVariables)
        known.emplace(variableName(variable), variable);
    writer.text(0, "SECTION");
    writer.text(2, "HEADER");
    const auto writeOwn = [&](const std::string& name) {
        if (name != "ACADVER" && name != "HANDSEED")
            return false;
        writer.text(9, "$" + name);
        if (name == "ACADVER")
            writer.text(1, version());
        else
            writer.handle(5, std::max(handles_.next, file_.largestHandle + 1));
        return true;
    };
    std::set<std::string> done;
    for (const HeaderVariable& variable : headerVariables(fresh_)) {
        const std::string name = variableName(variable);
        done.insert(name);
        if (writeOwn(name))
            continue;
        const auto old = known.find(name);
        const bool usable =
            old != known.end() && name != "ACADMAINTVER" && name != "DIMSTYLE" &&
            std::ranges::equal(old->second.values, variable.values, {}, &Tag::code, &Tag::code);
        writer.text(9, variable.name);
        if (usable)
            copier.copy(old->second.values);
        else
            freshCopier.copy(variable.values);
    }
    if (file_.version >= kWritten)
        for (const HeaderVariable& variable : oldVariables)
            if (done.insert(variableName(variable)).second) {
                writer.text(9, variable.name);
                copier.copy(variable.values);
            }
    writer.text(0, "ENDSEC");
    return writer.take();
}

void Upgrader::beginSection(std::string_view name) {
    body_.text(0, "SECTION");
    body_.text(2, name);
}

// A record of the new drawing, pointing to the file's objects where those stand for its own.
void Upgrader::writeFresh(const SourceRecord& record) {
    std::vector<Tag> tags;
    fresh_.readTags(record, tags);
    for (const Tag& tag : tags) {
        const std::uint64_t handle =
            isHandleCode(tag.code) ? fresh_.values().handle(tag).value_or(0) : 0;
        if (handle != 0)
            body_.handle(tag.code, aliased(handle));
        else
            freshCopier_.copy(tag);
    }
}

void Upgrader::writeClasses() {
    beginSection("CLASSES");
    for (const SourceRecord* record : old_.classes) {
        file_.readTags(*record, tags_);
        copier_.copy(tags_);
    }
    if (old_.classes.empty())
        for (const SourceRecord* record : new_.classes)
            writeFresh(*record);
    endSection();
}

// --- tables -------------------------------------------------------------------------------------

void Upgrader::writeTables() {
    beginSection("TABLES");
    for (const TableKind& kind : kTables)
        writeTable(kind);
    endSection();
}

void Upgrader::writeTable(const TableKind& kind) {
    const Contents::Table* const old = old_.table(kind.name);
    const Contents::Table& fresh = *new_.table(kind.name);
    const std::uint64_t handle = aliased(fresh.handle);
    const std::size_t count = (old != nullptr ? old->records.size() : 0) + fresh.records.size();
    body_.text(0, "TABLE");
    body_.text(2, kind.name);
    body_.handle(5, handle);
    body_.text(330, "0");
    body_.text(100, "AcDbSymbolTable");
    body_.integer(70, static_cast<std::int64_t>(std::min<std::size_t>(count, 32767)));
    if (kind.name == "DIMSTYLE")
        body_.text(100, "AcDbDimStyleTable");
    for (std::size_t i = 0; old != nullptr && i < old->records.size(); ++i) {
        const bool repeated =
            std::find(old->names.begin(), old->names.begin() + static_cast<std::ptrdiff_t>(i),
                      old->names[i]) != old->names.begin() + static_cast<std::ptrdiff_t>(i);
        if (old->names[i].empty() || (repeated && kind.name != "VPORT"))
            continue; // programs refuse nameless and repeated records
        writeTableRecord(kind, *old->records[i], handle);
    }
    for (std::size_t i = 0; i < fresh.records.size(); ++i)
        if (!old_.hasRecord(kind.name, fresh.names[i]))
            writeFresh(*fresh.records[i]);
    if (kind.name == "BLOCK_RECORD")
        writeBlockRecords(kind, handle);
    else
        writeReferenced(kind, handle);
    body_.text(0, "ENDTAB");
}

void Upgrader::beginTableRecord(const TableKind& kind, std::uint64_t handle, std::uint64_t table) {
    body_.text(0, kind.name);
    body_.handle(kind.name == "DIMSTYLE" ? 105 : 5, handle);
    body_.handle(330, table);
    body_.text(100, "AcDbSymbolTableRecord");
    body_.text(100, kind.marker);
}

void Upgrader::writeTableRecord(const TableKind& kind, const SourceRecord& record,
                                std::uint64_t table) {
    file_.readTags(record, tags_);
    const bool marked = std::ranges::any_of(tags_, [](const Tag& t) { return t.code == 100; });
    if (marked && record.handle != 0) {
        copier_.copy(tags_);
        return;
    }
    const bool dimension = kind.name == "DIMSTYLE";
    beginTableRecord(kind, assignedHandle(record), table);
    bool plotStyle = false;
    for (const Tag& tag : std::span(tags_).subspan(1)) {
        if (tag.code == 100 || tag.code == 330 || tag.code == 105 || tag.code == 999)
            continue;
        plotStyle = plotStyle || tag.code == 390;
        if (dimension && tag.code >= 5 && tag.code <= 7) {
            // Arrows were named, and are pointed to now.
            const auto block = blockRecords_.find(base::lowered(copier_.values().name(tag)));
            if (block != blockRecords_.end() && !block->first.empty())
                body_.handle(tag.code + 337, block->second);
            continue;
        }
        if (tag.code == 5)
            continue;
        copier_.copy(tag);
        if (kind.name == "LTYPE" && tag.code == 49 && file_.version < kFirstWithObjects)
            body_.integer(74, 0); // a plain dash
    }
    if (kind.name != "LAYER" || plotStyle)
        return;
    // Plot style and line weight as the new drawing's layer "0" has them.
    std::vector<Tag> zero;
    fresh_.readTags(*new_.table("LAYER")->records.front(), zero);
    for (const Tag& tag : zero)
        if (tag.code == 370)
            freshCopier_.copy(tag);
        else if (tag.code == 390)
            body_.handle(390, aliased(fresh_.values().handle(tag).value_or(0)));
}

void Upgrader::writeBlockRecords(const TableKind& kind, std::uint64_t table) {
    std::vector<Tag> tags;
    std::set<std::string> done;
    for (const SourceRecord* record : old_.blocks) {
        if (file_.type(*record) != "BLOCK")
            continue;
        file_.readTags(*record, tags);
        const std::string text(base::trimmed(firstText(file_, tags, 2)));
        const std::string name = base::lowered(text);
        if (old_.hasRecord(kind.name, name) || new_.hasRecord(kind.name, name) ||
            !blockRecords_.contains(name) || !done.insert(name).second)
            continue;
        beginTableRecord(kind, blockRecords_[name], table);
        body_.text(2, file_.texts.encoded(text));
        body_.text(340, "0");
    }
}

// Linetypes and text styles that entities name and no record describes.
void Upgrader::writeReferenced(const TableKind& kind, std::uint64_t table) {
    const bool line = kind.name == "LTYPE";
    if (!line && kind.name != "STYLE")
        return;
    for (const auto& [lowered, name] : line ? linetypes_ : styles_) {
        if (name.empty() || old_.hasRecord(kind.name, lowered) ||
            new_.hasRecord(kind.name, lowered))
            continue;
        beginTableRecord(kind, handles_.take(), table);
        body_.text(2, name);
        body_.integer(70, 0);
        if (line) {
            body_.text(3, "");
            body_.integer(72, 65);
            body_.integer(73, 0);
            body_.real(40, 0.0);
        } else {
            for (const auto& [code, value] : {std::pair{40, 0.0}, {41, 1.0}, {50, 0.0}})
                body_.real(code, value);
            body_.integer(71, 0);
            body_.real(42, 2.5);
            body_.text(3, "txt");
            body_.text(4, "");
        }
    }
}

// --- blocks, entities, objects ------------------------------------------------------------------

void Upgrader::writeBlocks() {
    beginSection("BLOCKS");
    std::vector<Tag> tags;
    std::string open; // name of the new drawing's block being copied; empty: left out
    for (const SourceRecord* record : new_.blocks) {
        fresh_.readTags(*record, tags);
        if (fresh_.type(*record) == "BLOCK") {
            const std::string name = base::lowered(firstText(fresh_, tags, 2));
            open = old_.blockNames.contains(name) ? std::string{} : name;
        }
        if (!open.empty())
            writeFresh(*record);
    }
    std::uint64_t owner = 0; // of the file's block being copied; 0: left out
    const auto close = [&] {
        if (owner == 0)
            return;
        body_.text(0, "ENDBLK");
        body_.handle(5, handles_.take());
        body_.handle(330, owner);
        body_.text(100, "AcDbEntity");
        body_.text(8, "0");
        body_.text(100, "AcDbBlockEnd");
        owner = 0;
    };
    std::set<std::string> done;
    for (const SourceRecord* record : old_.blocks) {
        file_.readTags(*record, tags);
        const std::string_view type = file_.type(*record);
        if (type == "BLOCK") {
            close(); // one without an end
            const std::string name = base::lowered(base::trimmed(firstText(file_, tags, 2)));
            const auto known = blockRecords_.find(name);
            if (known != blockRecords_.end() && !name.empty() && done.insert(name).second)
                owner = known->second;
        }
        if (owner == 0)
            continue;
        entityUpgrader_.write(tags, owner);
        if (type == "ENDBLK")
            owner = 0;
    }
    close();
    endSection();
}

void Upgrader::writeEntities() {
    beginSection("ENTITIES");
    const std::uint64_t model = blockRecords_[std::string(kModelSpace)];
    const std::uint64_t paper = blockRecords_[std::string(kPaperSpace)];
    for (const SourceRecord* record : old_.entities) {
        file_.readTags(*record, tags_);
        entityUpgrader_.write(tags_, record->place == SourcePlace::paperEntity ? paper : model);
    }
    endSection();
}

void Upgrader::writeObjects() {
    beginSection("OBJECTS");
    for (const SourceRecord* record : old_.root ? old_.objects : new_.objects) {
        if (!old_.root) {
            writeFresh(*record);
            continue;
        }
        file_.readTags(*record, tags_);
        copier_.copy(tags_);
    }
    endSection();
}

} // namespace

std::string whatIsMissing(const SourceFile& file) {
    if (file.version < kFirstWithObjects)
        return "drawings of release 12 and earlier are written as release 2000";
    const Contents contents(file);
    std::vector<std::string> missing;
    const auto want = [&](bool there, const char* what) {
        if (!there)
            missing.emplace_back(what);
    };
    want(contents.header, "the header");
    want(contents.hasRecord("LAYER", "0"), "layer \"0\"");
    want(contents.hasRecord("LTYPE", "continuous"), "linetype \"Continuous\"");
    want(contents.hasRecord("APPID", "acad"), "application \"ACAD\"");
    want(contents.hasRecord("BLOCK_RECORD", kModelSpace) &&
             contents.blockNames.contains(std::string(kModelSpace)),
         "the block of model space");
    want(contents.entitySection, "the section of entities");
    want(contents.root, "the dictionary of named objects");
    want(!contents.handlesMissing, "handles of entities");
    want(!contents.markersMissing, "class markers of entities");
    want(contents.ended, "the end mark");
    if (missing.empty())
        return {};
    return "what the file lacks is completed: " + base::joined(missing, ", ");
}

base::Result<std::string> upgraded(const SourceFile& file) {
    const std::uint64_t largest = std::max(file.largestHandle, file.handleSeed);
    const base::Result<std::shared_ptr<SourceFile>> fresh = scan(templateDrawing(largest), "");
    if (!fresh)
        return fresh.error();
    return Upgrader(file, *fresh.value()).run();
}

} // namespace tessaran::drawing::dxf
