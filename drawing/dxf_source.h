#pragma once

// What a drawing file held: its bytes, and where each of its records lies in them. Everything that
// the drawing does not change is written back from here, byte for byte.
//
// A record is a span from one tag of group code 0 to the next. Entities that are followed by parts
// of their own (POLYLINE by VERTEX and SEQEND, INSERT by ATTRIB and SEQEND) are one record with
// them.

#include "base/result.h"
#include "drawing/dxf_tags.h"
#include "drawing/dxf_text.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::drawing {

// Where in the file a record stands.
enum class SourcePlace : std::uint8_t {
    sectionStart, // with all of its content where the section has no records (HEADER)
    sectionEnd,
    classes,
    tableStart,
    tableRecord,
    tableEnd,
    block,
    entity,      // of model space
    paperEntity, // of a paper layout
    object,
    other, // unknown sections, and whatever stands outside of sections
    fileEnd,
};

struct SourceRecord {
    std::uint64_t begin = 0; // bytes in the file
    std::uint64_t end = 0;
    std::uint64_t handle = 0; // as the file gives it; 0: none
    std::uint32_t tag = 0;    // number of the record's first tag; its line is 2 * tag + 1
    SourcePlace place = SourcePlace::other;
    bool marked = false;  // it has a class marker (group code 100)
    bool foreign = false; // an entity's part that the drawing holds under another entity's handle
    // The entity's handle in the drawing: as the file's, or another one where the file gives the
    // same handle twice.
    std::uint64_t id = 0;
};

struct SourceFile {
    std::string name; // for messages
    std::string bytes;
    dxf::Format format;
    std::string version;  // "AC1015"; "AC1009" where the file does not say
    std::string codePage; // as the header names it
    dxf::TextCodec texts;
    std::vector<SourceRecord> records; // in the file's order, without gaps
    std::uint64_t largestHandle = 0;
    std::uint64_t handleSeed = 0;
    // What was done to make a drawing of today's form out of an older or poorer file; empty: the
    // bytes are the file's own.
    std::string upgraded;

    std::string_view span(const SourceRecord& record) const {
        return std::string_view(bytes).substr(record.begin, record.end - record.begin);
    }
    // Name behind the record's first tag: "LINE", "TABLE", "SECTION".
    std::string_view type(const SourceRecord& record) const;
    void readTags(const SourceRecord& record, std::vector<dxf::Tag>& tags) const {
        dxf::readTags(bytes, format, record.begin, record.end, tags);
    }
    dxf::TagValues values() const { return dxf::TagValues(format); }
    long lineOf(const SourceRecord& record) const {
        return format.text() ? 2L * record.tag + 1 : static_cast<long>(record.tag);
    }
    bool binary() const { return !format.text(); }
};

namespace dxf {

// Splits a file's bytes into records. Refuses what is not DXF, malformed tags and a file that is
// cut off, with the line. `name` is for messages.
base::Result<std::shared_ptr<SourceFile>> scan(std::string bytes, std::string name);

// One variable of the header: "$NAME" and the tags of its value.
struct HeaderVariable {
    std::string_view name;
    std::vector<Tag> values;
    std::size_t begin = 0; // bytes in the file
    std::size_t end = 0;
};
std::vector<HeaderVariable> headerVariables(const SourceFile& file);

} // namespace dxf
} // namespace tessaran::drawing
