#pragma once

// The objects of a drawing file that change with the drawing: groups, text records of dictionaries,
// and what spoke of entities that are erased.

#include "drawing/database.h"
#include "drawing/dxf_encode.h"
#include "drawing/dxf_file_edit.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessaran::drawing::dxf {

class ObjectEditor {
  public:
    ObjectEditor(FileEdit& edit, HandleSource& handles, const Database& database);

    // `erased`: handles of the file's entities that the drawing no longer has.
    void run(const std::unordered_set<std::uint64_t>& erased,
             std::span<const SourceRecord* const> erasedRecords);

    // What an entity's record is to be told of its groups.
    const ReactorEdit& reactorsOf(std::uint64_t entity) const;
    bool touchesEntities() const { return !reactors_.empty(); }

  private:
    struct DictionaryEdit {
        std::vector<DictionaryItem> added;
        std::vector<std::uint64_t> removed;
    };

    void dropExtensions(const SourceRecord& entity);
    void dropObject(std::uint64_t handle, std::uint64_t owner);
    void cleanSortTables(const std::unordered_set<std::uint64_t>& erased);
    void editGroup(const GroupRecord& group, const std::unordered_set<std::uint64_t>& erased);
    void rewriteGroup(std::size_t record, std::span<const Tag> tags,
                      const std::vector<std::uint64_t>& members);
    void addGroup(const GroupRecord& group);
    void noteReactors(std::uint64_t group, const std::vector<std::uint64_t>& before,
                      const std::vector<std::uint64_t>& after);
    void editNamedObject(const NamedObject& object);
    void editEntry(const DictionaryEntry& entry, std::uint64_t dictionary, bool known);
    void rewriteRecord(std::size_t record, const std::vector<std::string>& texts);
    void writeTexts(TagWriter& writer, const std::vector<std::string>& texts) const;
    std::uint64_t groupDictionary();
    std::uint64_t addDictionary(const std::string& name, std::uint64_t handle);
    void beginObject(TagWriter& writer, std::string_view type, std::uint64_t handle,
                     std::uint64_t owner) const;
    void append(TagWriter& writer) { newObjects_ += writer.take(); }
    void writeDictionaries();
    std::string encoded(std::string_view text) const { return edit_.file().texts.encoded(text); }

    FileEdit& edit_;
    HandleSource& handles_;
    const Database& database_;
    TagValues values_;
    std::uint64_t root_ = 0;
    std::uint64_t groups_ = 0; // handle of the dictionary of groups; 0: there is none yet
    std::unordered_set<std::uint64_t> modelEntities_; // handles in the file
    std::map<std::uint64_t, DictionaryEdit> dictionaries_;
    std::unordered_map<std::uint64_t, ReactorEdit> reactors_;
    std::string newObjects_;
};

} // namespace tessaran::drawing::dxf
