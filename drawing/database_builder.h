#pragma once

// Fills a fresh database from a drawing file: no journal, no locked layers, handles as the file
// gives them. When it is done the drawing counts as saved.

#include "drawing/database.h"

namespace tessaran::drawing {

class DatabaseBuilder {
  public:
    // The database must be as its constructor left it.
    explicit DatabaseBuilder(Database& database);
    ~DatabaseBuilder();
    DatabaseBuilder(const DatabaseBuilder&) = delete;
    DatabaseBuilder& operator=(const DatabaseBuilder&) = delete;

    void setVersion(std::string version) { database_.version_ = std::move(version); }
    void setSource(std::shared_ptr<const SourceFile> source) {
        database_.source_ = std::move(source);
    }

    // A layer of the same name (any capitals) is replaced, "0" included. Any name is taken.
    void setLayer(LayerRecord layer);
    void addLinetype(LinetypeRecord linetype); // replaces one of the same name
    void addGroup(GroupRecord group);
    void addNamedObject(NamedObject object);
    void addApplication(std::string name);
    void addBlock(Block block);
    void setCurrentLayer(const std::string& name); // ignored when there is no such layer
    bool setUcs(const Ucs& ucs);                   // false and ignored when it is none
    void setVariable(const std::string& name, host::VariableValue value);

    // Every handle in the file, of whatever object, so that new ones stay clear of them.
    void noteHandle(std::uint64_t handle);
    std::uint64_t newHandle() { return database_.nextHandle_++; }

    void reserve(std::size_t entities);
    // Appends to the drawing order. The handle is `record.entity.id`, or a new one when that is 0.
    // A layer that the file's table lacks is added to it. Refuses a handle that another entity has
    // and coordinates that are not finite; nothing else is asked of what a file holds.
    base::Result<host::EntityId> add(EntityRecord record);

  private:
    Database& database_;
};

} // namespace tessaran::drawing
