#pragma once

// From the records of a drawing file to typed values.

#include "drawing/dxf_entity_parts.h"
#include "drawing/dxf_source.h"
#include "drawing/records.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessaran::drawing::dxf {

struct DecodedEntity {
    host::Entity entity;
    std::vector<ApplicationData> xdata;
    std::string warning; // why an entity of a known type is kept as Other; empty: no reason
};

class EntityDecoder {
  public:
    explicit EntityDecoder(const SourceFile& file);

    // Every record gives an entity: what is not understood, or not to be trusted, is an Other.
    DecodedEntity decode(std::span<const Tag> tags) const;

    host::EntityGeometry geometry(std::string_view type, const EntityParts& parts,
                                  std::string& warning) const;
    std::vector<ApplicationData> xdata(std::span<const Tag> tags) const;

  private:
    class Body; // the class part of one entity being read

    void readCommon(std::span<const Tag> common, host::Entity& entity) const;
    host::Attribute attribute(std::span<const Tag> tags) const;
    std::vector<host::Attribute> attributes(std::span<const Tag> children) const;

    const SourceFile& file_;
    TagValues values_;
};

// The layer that a LAYER record describes; its handle is the record's.
host::Layer decodeLayer(const SourceFile& file, std::span<const Tag> tags);

// A record's first value of a group code, as text.
std::string firstText(const SourceFile& file, std::span<const Tag> tags, int code);
std::int64_t firstInteger(const TagValues& values, std::span<const Tag> tags, int code,
                          std::int64_t otherwise);

// Name and handle of each entry of a DICTIONARY.
struct DictionaryItem {
    std::string key;
    std::uint64_t handle = 0;
};
std::vector<DictionaryItem> decodeDictionary(const SourceFile& file, std::span<const Tag> tags);

} // namespace tessaran::drawing::dxf
