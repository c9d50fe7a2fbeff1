#pragma once

// What is laid over the drawing's picture: temporary graphics, highlights, and what moves with the
// cursor. Nothing of it is part of the drawing.

#include "console/kept_graphics.h"
#include "desktop/object_snap.h"
#include "desktop/painter_canvas.h"
#include "desktop/prompt_board.h"
#include "desktop/view_style.h"
#include "drawing/database.h"

#include <QImage>
#include <QPainter>
#include <map>
#include <vector>

namespace tessaran::desktop {

// Images of the cell patches that are shown, made once each.
class PatchImages {
  public:
    const QImage& of(std::uint64_t graphic, const host::CellPatch& patch, drawing::Rgb background);
    void keepOnly(const std::map<std::uint64_t, console::KeptGraphics::Graphic>& graphics);

  private:
    std::map<std::uint64_t, QImage> images_;
    drawing::Rgb background_{};
};

void paintGraphics(QPainter& painter, const drawing::PageMap& map, const ViewStyle& style,
                   const drawing::Database& database, const console::KeptGraphics& graphics,
                   PatchImages& images);

// The entities again, thicker and in the highlight's colour.
void paintHighlights(QPainter& painter, const drawing::PageMap& map, const ViewStyle& style,
                     const drawing::Database& database,
                     const std::vector<host::EntityId>& entities);

// The rubber band, dragged outline or trail of what is asked. `at`: the cursor, world.
void paintPrompt(QPainter& painter, const drawing::PageMap& map, const ViewStyle& style,
                 const drawing::Database& database, const PromptState& prompt, host::Point3 at);

// A mark of the snap's kind.
void paintSnap(QPainter& painter, const ViewStyle& style, const drawing::PageMap& map,
               const Snap& snap);
void paintSelectionBox(QPainter& painter, const ViewStyle& style, QPointF from, QPointF to);
void paintCursor(QPainter& painter, const ViewStyle& style, QPointF at, bool pickBox, bool cross);
// The axes of the user's coordinate system in the corner.
void paintAxes(QPainter& painter, const ViewStyle& style, const drawing::Ucs& ucs, int height);

} // namespace tessaran::desktop
