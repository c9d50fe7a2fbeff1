#pragma once

// The walk over the drawing into a canvas, in drawing order: layers and blocks resolved, inserts
// expanded. Entities of types that the system does not work with show what their look holds.

#include "drawing/canvas.h"
#include "drawing/database.h"

#include <string>
#include <vector>

namespace tessaran::drawing {

enum class Visibility {
    shown, // layers that are on and not frozen
    all,
};

// Everything that one entity shows; `record.layer` counts, not its id, so an entity that is not in
// the drawing can be drawn too.
void drawEntity(const Database& database, const EntityRecord& record, Visibility visibility,
                Canvas& canvas);

// Whether the record's own layer is on and not frozen.
bool isShown(const Database& database, const EntityRecord& record);

// The corners of a text, counter-clockwise from the lower left in its own direction. Its width is
// an estimate: fonts differ.
std::array<host::Point2, 4> textBox(const host::Text& text);

} // namespace tessaran::drawing
