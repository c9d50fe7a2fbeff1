#pragma once

// What a drawing is drawn on: a picture, a window, a test of what lies under the cursor. One walk
// over the drawing (scene.h) feeds them all, so what is seen and what is picked never disagree.
// World coordinates in drawing units, in plan.

#include "drawing/records.h"
#include "geometry/curve.h"

#include <vector>

namespace tessaran::drawing {

struct Pen {
    int colour = host::colour::kForeground; // 1 to 255: by-layer and by-block are resolved
    double width = 0.0;                     // drawing units; 0: as thin as can be seen
    const std::vector<double>* dashes =
        nullptr; // linetype pattern, drawing units; null: continuous
    double dashScale = 1.0;
};

class Canvas {
  public:
    virtual ~Canvas() = default;

    // Around everything that one entity of model space shows.
    virtual void beginEntity(const EntityRecord& /*record*/) {}
    virtual void endEntity() {}

    virtual void curve(const geometry::Curve& curve, const Pen& pen) = 0;
    // Filled by the even-odd rule over all loops, without outline.
    virtual void fill(const std::vector<geometry::Curve>& loops, const Pen& pen) = 0;
    virtual void text(const host::Text& text, const Pen& pen) = 0;
    virtual void point(host::Point2 at, const Pen& pen) = 0;
    // A whole grid's cells as one graphic; never part of a drawing, shown over it.
    virtual void cells(const host::CellPatch& /*patch*/) {}
};

} // namespace tessaran::drawing
