#pragma once

// What entities look like that the system does not work with: ellipses, splines, solids, paragraph
// texts, dimensions, leaders. They are seen and picked, and kept as they are in the file.

#include "drawing/dxf_entity_parts.h"

#include <memory>

namespace tessaran::drawing::dxf {

// Null for other types, and where the record's numbers show nothing.
std::shared_ptr<const host::Look> lookOf(const SourceFile& file, std::string_view type,
                                         const EntityParts& parts);

} // namespace tessaran::drawing::dxf
