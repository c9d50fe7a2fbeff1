#pragma once

// Draws on a cairo context: pictures without a screen.

#include "drawing/canvas.h"
#include "drawing/colour_table.h"
#include "drawing/page_map.h"
#include "geometry/segment.h"

#include <cairo.h>

namespace tessaran::drawing {

struct PageInk {
    Rgb background{255, 255, 255};
    double hairline = 1.0; // width of thin lines, page units
    double detail = 0.05;  // shorter steps of a curve are not drawn one by one, page units
};

// Arcs are drawn as arcs as long as the page's numbers hold them. What reaches far beyond the page
// is cut before cairo sees it, whose rasteriser overflows beyond 32767 units.
class CairoCanvas final : public Canvas {
  public:
    CairoCanvas(cairo_t* context, const PageMap& map, const PageInk& ink);

    void curve(const geometry::Curve& curve, const Pen& pen) override;
    void fill(const std::vector<geometry::Curve>& loops, const Pen& pen) override;
    void text(const host::Text& text, const Pen& pen) override;
    void point(host::Point2 at, const Pen& pen) override;
    void cells(const host::CellPatch& patch) override;

  private:
    void setColour(int colour);
    void setDashes(const Pen& pen, double curveLength);
    bool isSafe(const geometry::Box2& world) const;
    void tracePath(const geometry::Curve& curve);
    void traceArc(const geometry::Segment& segment);
    void traceSegments(const geometry::Curve& curve);
    void traceCut(const geometry::Curve& curve);
    void traceCutArea(const geometry::Curve& loop);
    geometry::Polygon chordsOnPage(const geometry::Curve& curve) const;
    void cellImage(const host::CellPatch& patch);
    void cellOutlines(const host::CellPatch& patch);

    cairo_t* context_;
    PageMap map_;
    Rgb background_;
    double hairline_;
    double detail_;
};

} // namespace tessaran::drawing
