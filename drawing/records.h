#pragma once

// What the drawing keeps of each of its parts: the typed value that the host port speaks of, and
// beside it what a drawing file said of it, opaque here, so that saving changes only what changed.

#include "host/entity.h"
#include "host/host.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tessaran::drawing {

// A record of a drawing file as it was read, and the file's parts that belong to no record.
// Defined by the file layer (drawing/dxf_source.h); the database only keeps and hands them back.
struct SourceRecord;
struct SourceFile;

// Extended data of one application on one entity.
struct ApplicationData {
    std::string application;
    std::vector<host::XDataItem> items;
};

struct EntityRecord {
    host::Entity entity;
    std::vector<ApplicationData> xdata{};
    std::shared_ptr<const SourceRecord> source{}; // null: made here, not read
    bool changed = false;                         // typed content differs from `source`
    bool xdataChanged = false;
    std::uint32_t layer = 0; // index into Tables::layers, kept by the database
};

struct LayerRecord {
    host::Layer layer;
    std::uint64_t handle = 0; // given when made here; 0: the file knows
    std::shared_ptr<const SourceRecord> source{};
    bool changed = false;
};

struct LinetypeRecord {
    std::string name;
    std::vector<double> dashes{}; // drawing units: > 0 dash, < 0 gap, 0 dot; empty: continuous
};

struct GroupRecord {
    std::string name;
    std::vector<host::EntityId> members; // erased ones included: an undo brings them back
    std::uint64_t handle = 0;
    std::shared_ptr<const SourceRecord> source{};
    bool changed = false;
};

// One entry of a dictionary under the named-objects dictionary.
struct DictionaryEntry {
    std::string key;
    bool isRecord = true;             // an XRECORD; otherwise some other object
    std::vector<std::string> texts{}; // its items of group code 1
    std::uint64_t handle = 0;
    std::shared_ptr<const SourceRecord> source{};
    bool changed = false;
};

// One entry of the named-objects dictionary.
struct NamedObject {
    std::string name;
    bool isDictionary = true;
    std::vector<DictionaryEntry> entries{};
    std::uint64_t handle = 0;
    std::shared_ptr<const SourceRecord> source{};
};

// What an INSERT shows. Blocks come with the file and are not edited.
struct Block {
    std::string name;
    host::Point3 base;
    std::vector<host::Entity> entities;
};

// A right-handed coordinate system; the axes are unit vectors at right angles.
struct Ucs {
    host::Point3 origin{};
    host::Vector3 xAxis{1.0, 0.0, 0.0};
    host::Vector3 yAxis{0.0, 1.0, 0.0};

    friend bool operator==(const Ucs&, const Ucs&) = default;
};

// Everything of a drawing but its entities and blocks. Small, and copied on a command's first
// change: the records are shared between the states, so a copy costs pointers only.
struct Tables {
    template <class Record>
    using List = std::vector<std::shared_ptr<const Record>>;

    List<LayerRecord> layers; // in table order; never shrinks but by undo
    List<GroupRecord> groups;
    List<NamedObject> namedObjects;
    std::vector<std::string> applications; // registered for extended data
    std::string currentLayer = "0";
    Ucs ucs;
    // Header variables by name without "$", in capitals: "LUPREC", "LTSCALE", "INSUNITS", ...
    std::map<std::string, host::VariableValue> variables;
};

} // namespace tessaran::drawing
