#pragma once

// From typed values to the records of a drawing file. What an entity's record holds beyond the
// typed value is written back as it was.

#include "drawing/dxf_decode.h"
#include "drawing/dxf_source.h"
#include "drawing/records.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace tessaran::drawing::dxf {

// Gives handles that no object has.
struct HandleSource {
    std::uint64_t next = 1;
    std::uint64_t take() { return next++; }
};

// Objects that are told of an entity's changes (its groups): added to and taken from its record.
struct ReactorEdit {
    std::vector<std::uint64_t> added;
    std::vector<std::uint64_t> removed;

    bool empty() const { return added.empty() && removed.empty(); }
};

// Whether a release keeps regions as readable text. Others get closed polylines whose extended
// data tells that they are one.
bool keepsRegionsAsText(std::string_view version);

class EntityEncoder {
  public:
    // `owner`: handle of the block record of model space.
    EntityEncoder(const SourceFile& file, HandleSource& handles, std::uint64_t owner);

    // An entity that has no record in the file.
    void write(TagWriter& writer, const EntityRecord& record, const ReactorEdit& reactors);
    // The entity's record again, with what changed.
    void rewrite(TagWriter& writer, std::span<const Tag> tags, const EntityRecord& record,
                 const ReactorEdit& reactors);

  private:
    class Kept; // tags of an old record's class part that the typed value does not speak of

    void writeCommon(TagWriter& writer, std::string_view type, const EntityRecord& record,
                     std::uint64_t handle, const ReactorEdit& reactors);
    void rewriteCommon(TagWriter& writer, std::span<const Tag> common, const EntityRecord& record,
                       const host::Entity& before, const ReactorEdit& reactors);
    void writeClass(TagWriter& writer, const host::EntityGeometry& geometry, const Kept& kept);
    void writeVertices(TagWriter& writer, const EntityRecord& record,
                       const host::EntityGeometry& geometry, std::span<const Tag> oldChildren);
    void writeVertex(TagWriter& writer, const EntityRecord& record, std::uint64_t handle,
                     const host::PolylineVertex& vertex, const host::Polyline& polyline);
    void writeVertex(TagWriter& writer, const EntityRecord& record, std::uint64_t handle,
                     const host::Point3& at);
    void writeAttributes(TagWriter& writer, std::span<const Tag> children,
                         const host::Insert& before, const host::Insert& now);
    void writeShifted(TagWriter& writer, std::span<const Tag> text, host::Vector3 by);
    void writePartHead(TagWriter& writer, std::string_view type, const EntityRecord& record,
                       std::uint64_t handle);
    void writeRegionLoops(TagWriter& writer, const EntityRecord& record,
                          const ReactorEdit& reactors);
    void writeXData(TagWriter& writer, const std::vector<ApplicationData>& data);
    void rewriteXData(TagWriter& writer, std::span<const Tag> tags, const EntityRecord& record);
    void writeRaw(TagWriter& writer, std::span<const Tag> tags) const;
    std::string encoded(std::string_view text) const { return file_.texts.encoded(text); }

    const SourceFile& file_;
    TagValues values_;
    EntityDecoder decoder_;
    HandleSource& handles_;
    std::uint64_t owner_;
};

} // namespace tessaran::drawing::dxf
