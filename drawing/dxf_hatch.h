#pragma once

// The boundary of a HATCH: an ordered sequence of tags in which the same group codes mean other
// things at other places, so it is read and written in order.

#include "base/result.h"
#include "drawing/dxf_tags.h"
#include "host/entity.h"

#include <span>

namespace tessaran::drawing::dxf {

// The loops of a hatch's class part, in its own plane. Ellipses and splines come as chords.
base::Result<host::Hatch> readHatch(std::span<const Tag> body, const TagValues& values,
                                    bool splinesHaveFitData);

// Writes the class part of a new hatch, marker and normal included. `patternName` is in the file's
// encoding.
void writeHatch(TagWriter& writer, const host::Hatch& hatch, std::string_view patternName,
                bool facesDown);

// Writes the class part again with other loops: the fill (pattern, gradient, seeds, style) stays as
// it was.
void rewriteHatch(TagWriter& writer, std::span<const Tag> body, std::string_view bytes,
                  const host::Hatch& hatch);

} // namespace tessaran::drawing::dxf
