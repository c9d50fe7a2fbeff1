#include "drawing/dxf_file_edit.h"

namespace tessaran::drawing::dxf {

FileEdit::FileEdit(const SourceFile& file) : file_(file) {
    std::string section;
    std::string table;
    const TagValues values = file.values();
    const auto nameOf = [&](const SourceRecord& record) {
        TagReader reader(std::string_view(file.bytes).substr(0, record.end), file.format,
                         record.begin);
        Tag tag;
        while (reader.next(tag))
            if (tag.code == 2)
                return std::string(values.name(tag));
        return std::string{};
    };
    for (std::size_t i = 0; i < file.records.size(); ++i) {
        const SourceRecord& record = file.records[i];
        switch (record.place) {
        case SourcePlace::entity:
        case SourcePlace::paperEntity:
            continue;
        case SourcePlace::sectionStart:
            section = nameOf(record);
            if (section == "HEADER")
                header_ = i;
            continue;
        case SourcePlace::sectionEnd:
            sectionEnds_.emplace(section, i);
            continue;
        case SourcePlace::tableStart:
            table = nameOf(record);
            tables_.emplace(table, Table{i, i, record.handle});
            break;
        case SourcePlace::tableEnd:
            if (const auto known = tables_.find(table);
                known != tables_.end() && known->second.end == known->second.head)
                known->second.end = i;
            break;
        default:
            break;
        }
        if (record.handle != 0)
            byHandle_.emplace(record.handle, i);
    }
    // A table without its end cannot be added to.
    std::erase_if(tables_, [](const auto& entry) { return entry.second.end == entry.second.head; });
}

std::optional<std::size_t> FileEdit::find(std::uint64_t handle) const {
    const auto found = byHandle_.find(handle);
    return found == byHandle_.end() ? std::nullopt : std::optional(found->second);
}

std::size_t FileEdit::indexOf(const SourceRecord& record) const {
    return static_cast<std::size_t>(&record - file_.records.data());
}

std::vector<Tag> FileEdit::tags(std::size_t record) const {
    std::vector<Tag> out;
    file_.readTags(file_.records[record], out);
    return out;
}

const FileEdit::Table* FileEdit::table(std::string_view name) const {
    const auto found = tables_.find(name);
    return found == tables_.end() ? nullptr : &found->second;
}

std::optional<std::size_t> FileEdit::sectionEnd(std::string_view name) const {
    const auto found = sectionEnds_.find(name);
    return found == sectionEnds_.end() ? std::nullopt : std::optional(found->second);
}

void FileEdit::appendToTable(const Table& table, const std::string& bytes) {
    inserted_[table.end] += bytes;
    const std::size_t added = ++added_[table.head];
    TagWriter head = writer();
    const TagValues values = file_.values();
    for (const Tag& tag : tags(table.head)) {
        if (tag.code == 70)
            head.integer(70, values.integer(tag).value_or(0) + static_cast<std::int64_t>(added));
        else
            head.raw(raw(tag));
    }
    replace(table.head, head.take());
}

void FileEdit::write(const Sink& sink, const EntityBytes& entityBytes,
                     const NewEntities& newEntities) const {
    const std::optional<std::size_t> entitiesEnd = sectionEnd("ENTITIES");
    std::size_t from = 0; // bytes from here on are to be copied
    std::size_t to = 0;
    const auto flush = [&] {
        if (to > from)
            sink(std::string_view(file_.bytes).substr(from, to - from));
    };
    const auto put = [&](std::string_view bytes, std::size_t continueAt) {
        flush();
        sink(bytes);
        from = to = continueAt;
    };
    for (std::size_t i = 0; i < file_.records.size(); ++i) {
        const SourceRecord& record = file_.records[i];
        if (const auto added = inserted_.find(i); added != inserted_.end())
            put(added->second, record.begin);
        if (i == entitiesEnd) {
            put({}, record.begin);
            newEntities(sink);
        }
        std::optional<std::string_view> bytes;
        if (const auto known = replaced_.find(i); known != replaced_.end())
            bytes = known->second;
        else if (record.place == SourcePlace::entity)
            bytes = entityBytes(record);
        if (bytes)
            put(*bytes, record.end);
        else
            to = record.end;
    }
    flush();
}

} // namespace tessaran::drawing::dxf
