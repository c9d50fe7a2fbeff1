#include "drawing/dxf_object_edit.h"

#include "base/text.h"

#include <algorithm>
#include <optional>

namespace tessaran::drawing::dxf {
namespace {

constexpr std::string_view kGroupDictionary = "ACAD_GROUP";
constexpr std::string_view kExtension = "{ACAD_XDICTIONARY";

// The owner of an object: its 330 outside of braces, before its class part.
std::uint64_t ownerOf(std::span<const Tag> tags, const TagValues& values) {
    bool braces = false;
    for (const Tag& tag : tags) {
        if (tag.code == 100)
            break;
        if (tag.code == 102)
            braces = values.name(tag).starts_with('{');
        else if (tag.code == 330 && !braces)
            return values.handle(tag).value_or(0);
    }
    return 0;
}

bool holds(const std::vector<std::uint64_t>& list, std::uint64_t handle) {
    return std::ranges::find(list, handle) != list.end();
}

} // namespace

ObjectEditor::ObjectEditor(FileEdit& edit, HandleSource& handles, const Database& database)
    : edit_(edit), handles_(handles), database_(database), values_(edit.file().values()) {
    for (const SourceRecord& record : edit.file().records) {
        if (record.place != SourcePlace::object || edit.file().type(record) != "DICTIONARY")
            continue;
        root_ = record.handle;
        for (const DictionaryItem& item : decodeDictionary(edit.file(), edit.tagsOf(record)))
            if (base::equalsIgnoringCase(item.key, kGroupDictionary) && edit.find(item.handle))
                groups_ = item.handle;
        break;
    }
}

const ReactorEdit& ObjectEditor::reactorsOf(std::uint64_t entity) const {
    static const ReactorEdit kNone;
    const auto found = reactors_.find(entity);
    return found == reactors_.end() ? kNone : found->second;
}

void ObjectEditor::run(const std::unordered_set<std::uint64_t>& erased,
                       std::span<const SourceRecord* const> erasedRecords) {
    if (root_ == 0)
        return;
    for (const SourceRecord* entity : erasedRecords)
        dropExtensions(*entity);
    if (!erased.empty())
        cleanSortTables(erased);
    const auto& groups = database_.tables().groups;
    if (!groups.empty())
        for (const SourceRecord& record : edit_.file().records)
            if (record.place == SourcePlace::entity)
                modelEntities_.insert(record.handle);
    for (const auto& group : groups)
        editGroup(*group, erased);
    for (const auto& object : database_.tables().namedObjects)
        editNamedObject(*object);
    writeDictionaries();
    const std::optional<std::size_t> end = edit_.sectionEnd("OBJECTS");
    if (end && !newObjects_.empty())
        edit_.insertBefore(*end, newObjects_);
}

// --- erased entities ----------------------------------------------------------------------------

void ObjectEditor::dropExtensions(const SourceRecord& entity) {
    bool inside = false;
    for (const Tag& tag : edit_.tagsOf(entity)) {
        if (tag.code == 100)
            break;
        if (tag.code == 102)
            inside = values_.name(tag) == kExtension;
        else if (inside && tag.code == 360)
            dropObject(values_.handle(tag).value_or(0), entity.handle);
    }
}

// An object goes with its owner, and takes what it owns along.
void ObjectEditor::dropObject(std::uint64_t handle, std::uint64_t owner) {
    const std::optional<std::size_t> record = edit_.find(handle);
    if (!record || edit_.touched(*record) ||
        edit_.file().records[*record].place != SourcePlace::object)
        return;
    const std::vector<Tag> tags = edit_.tags(*record);
    if (ownerOf(tags, values_) != owner)
        return;
    edit_.drop(*record);
    if (values_.name(tags.front()) == "DICTIONARY")
        for (const DictionaryItem& item : decodeDictionary(edit_.file(), tags))
            dropObject(item.handle, handle);
}

// Drawing orders name each entity and then, under group code 5, its place.
void ObjectEditor::cleanSortTables(const std::unordered_set<std::uint64_t>& erased) {
    for (std::size_t i = 0; i < edit_.file().records.size(); ++i) {
        const SourceRecord& record = edit_.file().records[i];
        if (record.place != SourcePlace::object || edit_.touched(i) ||
            edit_.file().type(record) != "SORTENTSTABLE")
            continue;
        TagWriter writer = edit_.writer();
        bool changed = false;
        bool dropPlace = false;
        for (const Tag& tag : edit_.tags(i)) {
            const bool entity = tag.code == 331;
            if (entity)
                dropPlace = erased.contains(values_.handle(tag).value_or(0));
            if (dropPlace && (entity || tag.code == 5)) {
                changed = true;
                dropPlace = entity; // the place that follows ends the pair
                continue;
            }
            writer.raw(edit_.raw(tag));
        }
        if (changed)
            edit_.replace(i, writer.take());
    }
}

// --- groups -------------------------------------------------------------------------------------

void ObjectEditor::noteReactors(std::uint64_t group, const std::vector<std::uint64_t>& before,
                                const std::vector<std::uint64_t>& after) {
    for (const std::uint64_t member : after)
        if (!holds(before, member) && database_.record(host::EntityId{member}) != nullptr)
            reactors_[member].added.push_back(group);
    for (const std::uint64_t member : before)
        if (!holds(after, member) && database_.record(host::EntityId{member}) != nullptr)
            reactors_[member].removed.push_back(group);
}

void ObjectEditor::editGroup(const GroupRecord& group,
                             const std::unordered_set<std::uint64_t>& erased) {
    const std::optional<std::size_t> record =
        group.source ? edit_.find(group.source->handle) : std::nullopt;
    if (!record) {
        addGroup(group);
        return;
    }
    const std::vector<Tag> tags = edit_.tags(*record);
    std::vector<std::uint64_t> before;
    for (const Tag& tag : tags)
        if (tag.code == 340)
            before.push_back(values_.handle(tag).value_or(0));
    std::vector<std::uint64_t> after;
    if (group.changed) {
        for (const host::EntityId member : group.members)
            if (database_.record(member) != nullptr)
                after.push_back(member.value);
        for (const std::uint64_t member : before) // of paper layouts: not the drawing's to judge
            if (!modelEntities_.contains(member) && !holds(after, member))
                after.push_back(member);
    } else {
        std::ranges::copy_if(before, std::back_inserter(after),
                             [&](std::uint64_t member) { return !erased.contains(member); });
    }
    if (after == before)
        return;
    const std::uint64_t handle = group.source->handle;
    noteReactors(handle, before, after);
    if (!after.empty()) {
        rewriteGroup(*record, tags, after);
        return;
    }
    edit_.drop(*record);
    dictionaries_[groups_].removed.push_back(handle);
}

void ObjectEditor::rewriteGroup(std::size_t record, std::span<const Tag> tags,
                                const std::vector<std::uint64_t>& members) {
    TagWriter writer = edit_.writer();
    for (const Tag& tag : tags)
        if (tag.code < 1000 && tag.code != 340)
            writer.raw(edit_.raw(tag));
    for (const std::uint64_t member : members)
        writer.handle(340, member);
    for (const Tag& tag : tags)
        if (tag.code >= 1000)
            writer.raw(edit_.raw(tag));
    edit_.replace(record, writer.take());
}

void ObjectEditor::addGroup(const GroupRecord& group) {
    std::vector<std::uint64_t> members;
    for (const host::EntityId member : group.members)
        if (database_.record(member) != nullptr)
            members.push_back(member.value);
    if (members.empty()) // programs take a group without members for damage
        return;
    const std::uint64_t handle = group.handle != 0 ? group.handle : handles_.take();
    const std::uint64_t dictionary = groupDictionary();
    TagWriter writer = edit_.writer();
    beginObject(writer, "GROUP", handle, dictionary);
    writer.text(100, "AcDbGroup");
    writer.text(300, "");
    writer.integer(70, 0);
    writer.integer(71, 1);
    for (const std::uint64_t member : members)
        writer.handle(340, member);
    append(writer);
    dictionaries_[dictionary].added.push_back({group.name, handle});
    noteReactors(handle, {}, members);
}

std::uint64_t ObjectEditor::groupDictionary() {
    if (groups_ == 0)
        groups_ = addDictionary(std::string(kGroupDictionary), handles_.take());
    return groups_;
}

// --- dictionaries -------------------------------------------------------------------------------

void ObjectEditor::beginObject(TagWriter& writer, std::string_view type, std::uint64_t handle,
                               std::uint64_t owner) const {
    writer.text(0, type);
    writer.handle(5, handle);
    writer.text(102, "{ACAD_REACTORS");
    writer.handle(330, owner);
    writer.text(102, "}");
    writer.handle(330, owner);
}

// Its entries are written with it, by writeDictionaries().
std::uint64_t ObjectEditor::addDictionary(const std::string& name, std::uint64_t handle) {
    dictionaries_[root_].added.push_back({name, handle});
    dictionaries_[handle];
    return handle;
}

void ObjectEditor::editNamedObject(const NamedObject& object) {
    if (!object.isDictionary)
        return;
    const bool known = object.source != nullptr;
    const std::uint64_t handle = known                ? object.source->handle
                                 : object.handle != 0 ? object.handle
                                                      : handles_.take();
    if (!known)
        addDictionary(object.name, handle);
    for (const DictionaryEntry& entry : object.entries)
        editEntry(entry, handle, known);
}

void ObjectEditor::editEntry(const DictionaryEntry& entry, std::uint64_t dictionary, bool known) {
    if (!entry.isRecord)
        return;
    if (known && entry.source) {
        const std::optional<std::size_t> record = edit_.find(entry.source->handle);
        if (entry.changed && record)
            rewriteRecord(*record, entry.texts);
        return;
    }
    const std::uint64_t handle = entry.handle != 0 ? entry.handle : handles_.take();
    TagWriter writer = edit_.writer();
    beginObject(writer, "XRECORD", handle, dictionary);
    writer.text(100, "AcDbXrecord");
    writer.integer(280, 1);
    writeTexts(writer, entry.texts);
    append(writer);
    dictionaries_[dictionary].added.push_back({entry.key, handle});
}

void ObjectEditor::writeTexts(TagWriter& writer, const std::vector<std::string>& texts) const {
    for (const std::string& text : texts)
        writer.text(1, encoded(text));
}

void ObjectEditor::rewriteRecord(std::size_t record, const std::vector<std::string>& texts) {
    TagWriter writer = edit_.writer();
    bool head = true;
    for (const Tag& tag : edit_.tags(record)) {
        constexpr int kCloning = 280; // how it is cloned
        if (!head && tag.code != kCloning)
            break;
        writer.raw(edit_.raw(tag));
        head = head && tag.code != 100;
    }
    writeTexts(writer, texts);
    edit_.replace(record, writer.take());
}

void ObjectEditor::writeDictionaries() {
    for (const auto& [handle, changes] : dictionaries_) {
        const std::optional<std::size_t> record = edit_.find(handle);
        TagWriter writer = edit_.writer();
        if (!record) {
            beginObject(writer, "DICTIONARY", handle, root_);
            writer.text(100, "AcDbDictionary");
            writer.integer(281, 1);
        }
        // Entries go behind the others of the dictionary's own class part.
        const std::vector<Tag> tags = record ? edit_.tags(*record) : std::vector<Tag>{};
        std::size_t end = tags.size();
        bool inside = false;
        for (std::size_t i = 0; i < tags.size() && end == tags.size(); ++i) {
            if (inside && (tags[i].code == 100 || tags[i].code >= 1000))
                end = i;
            inside = inside || (tags[i].code == 100 && values_.name(tags[i]) == "AcDbDictionary");
        }
        for (std::size_t i = 0; i < end; ++i) {
            const bool entry = tags[i].code == 3 && i + 1 < end;
            if (entry && holds(changes.removed, values_.handle(tags[i + 1]).value_or(0)))
                ++i;
            else
                writer.raw(edit_.raw(tags[i]));
        }
        for (const DictionaryItem& item : changes.added) {
            writer.text(3, encoded(item.key));
            writer.handle(350, item.handle);
        }
        for (std::size_t i = end; i < tags.size(); ++i)
            writer.raw(edit_.raw(tags[i]));
        if (record)
            edit_.replace(*record, writer.take());
        else
            append(writer);
    }
}

} // namespace tessaran::drawing::dxf
