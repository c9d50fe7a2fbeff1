#pragma once

// A drawing file being written again: its records in order, some of them replaced, left out, or
// with new ones in front.

#include "drawing/dxf_source.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessaran::drawing::dxf {

class FileEdit {
  public:
    explicit FileEdit(const SourceFile& file);

    const SourceFile& file() const { return file_; }
    std::string_view raw(const Tag& tag) const {
        return std::string_view(file_.bytes).substr(tag.begin, tag.end - tag.begin);
    }
    TagWriter writer() const { return TagWriter(file_.format); }

    // Record of a table, block or object with that handle; entities are not found.
    std::optional<std::size_t> find(std::uint64_t handle) const;
    std::size_t indexOf(const SourceRecord& record) const;
    std::vector<Tag> tags(std::size_t record) const;
    std::vector<Tag> tagsOf(const SourceRecord& record) const { return tags(indexOf(record)); }

    void replace(std::size_t record, std::string bytes) { replaced_[record] = std::move(bytes); }
    void drop(std::size_t record) { replaced_[record].clear(); }
    bool touched(std::size_t record) const { return replaced_.contains(record); }
    bool unchanged() const { return replaced_.empty() && inserted_.empty(); }

    // The head and end of a table, the end of a section.
    struct Table {
        std::size_t head = 0;
        std::size_t end = 0;
        std::uint64_t handle = 0;
    };
    const Table* table(std::string_view name) const;
    std::optional<std::size_t> sectionEnd(std::string_view name) const;
    std::optional<std::size_t> headerRecord() const { return header_; }

    // Puts a record at the end of a table and raises the count in its head.
    void appendToTable(const Table& table, const std::string& bytes);
    void insertBefore(std::size_t record, const std::string& bytes) { inserted_[record] += bytes; }

    // Calls the sink with the whole file, piece by piece: a drawing may be too large to be put
    // together in memory. Records of entities are asked for (nothing leaves them as they are), and
    // so are the new ones at the end of their section.
    using Sink = std::function<void(std::string_view)>;
    using EntityBytes = std::function<std::optional<std::string_view>(const SourceRecord&)>;
    using NewEntities = std::function<void(const Sink&)>;
    void write(const Sink& sink, const EntityBytes& entityBytes,
               const NewEntities& newEntities) const;

  private:
    const SourceFile& file_;
    std::unordered_map<std::uint64_t, std::size_t> byHandle_;
    std::map<std::string, Table, std::less<>> tables_;
    std::map<std::string, std::size_t, std::less<>> sectionEnds_;
    std::optional<std::size_t> header_;
    std::unordered_map<std::size_t, std::string> replaced_; // empty: left out
    std::unordered_map<std::size_t, std::string> inserted_;
    std::map<std::size_t, std::size_t> added_; // by table head: records appended
};

} // namespace tessaran::drawing::dxf
