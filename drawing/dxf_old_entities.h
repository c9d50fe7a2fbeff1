#pragma once

// Entities of release 12 and earlier in the form of later ones: with a handle, an owner and the
// markers of their classes.

#include "drawing/dxf_encode.h"
#include "drawing/dxf_source.h"

#include <cstdint>
#include <span>

namespace tessaran::drawing::dxf {

// Copies tags between files of different layouts.
class TagCopier {
  public:
    TagCopier(const SourceFile& from, TagWriter& to, const Format& toFormat)
        : from_(from), values_(from.values()), to_(to),
          same_(from.format.layout == toFormat.layout && from.format.newline == toFormat.newline) {}

    void copy(const Tag& tag);
    void copy(std::span<const Tag> tags) {
        for (const Tag& tag : tags)
            copy(tag);
    }
    const TagValues& values() const { return values_; }

  private:
    const SourceFile& from_;
    TagValues values_;
    TagWriter& to_;
    bool same_;
};

class EntityUpgrader {
  public:
    EntityUpgrader(TagCopier& copier, TagWriter& writer, HandleSource& handles)
        : copier_(copier), values_(copier.values()), writer_(writer), handles_(handles) {}

    // The record with its parts. What it has of handle, owner and markers stays.
    void write(std::span<const Tag> tags, std::uint64_t owner);

  private:
    std::uint64_t writeOne(std::span<const Tag> tags, std::uint64_t owner,
                           std::int64_t parentFlags);
    void writeClasses(std::string_view type, std::span<const Tag> tags, std::int64_t parentFlags);

    TagCopier& copier_;
    TagValues values_;
    TagWriter& writer_;
    HandleSource& handles_;
};

} // namespace tessaran::drawing::dxf
