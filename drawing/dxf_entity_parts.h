#pragma once

// The parts of an entity's record that reading and rewriting both go by.

#include "drawing/dxf_source.h"
#include "host/entity.h"

#include <span>
#include <string_view>
#include <vector>

namespace tessaran::drawing::dxf {

struct EntityParts {
    std::span<const Tag> common;   // type, handle, reactors, owner, layer, colour, linetype
    std::span<const Tag> body;     // what its class holds, from the class's marker on
    std::span<const Tag> embedded; // an object inside the entity (from group code 101 on)
    std::span<const Tag> xdata;    // extended data, from the first 1001 on
    std::span<const Tag> children; // VERTEX, ATTRIB, SEQEND, from the first one's group code 0 on
};

// Old files have no class markers: common and body are then the whole record both.
EntityParts splitEntity(std::span<const Tag> tags, const TagValues& values);
inline bool hasClassPart(const EntityParts& parts) {
    return parts.body.data() != parts.common.data();
}

// The records among an entity's parts, each from its group code 0 on.
std::vector<std::span<const Tag>> childRecords(std::span<const Tag> children);

// Coordinates beyond this are no place in a mine, and their squares would leave the numbers.
inline constexpr double kLargestCoordinate = 1e20;

// Which way an entity's own plane faces.
enum class Facing {
    up,     // normal 0, 0, 1: its coordinates are the world's
    down,   // normal 0, 0, -1: its X and Z run against the world's
    tilted, // any other
};
Facing facingOf(std::span<const Tag> body, const TagValues& values);

// Between the coordinates of a plane that faces down and the world's; its own inverse. Kinds that
// are stored in world coordinates are left as they are.
void turnOver(host::EntityGeometry& geometry);

// How a region of several loops is kept as polylines in releases that hold no readable regions.
inline constexpr std::string_view kRegionApplication = "TESSARAN_REGION";

} // namespace tessaran::drawing::dxf
