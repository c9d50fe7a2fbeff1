#pragma once

// The drawing's walk painted by Qt: the window's picture and what is laid over it.

#include "desktop/hairline.h"
#include "drawing/canvas.h"
#include "drawing/colour_table.h"
#include "drawing/page_map.h"
#include "geometry/segment.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <optional>
#include <vector>

namespace tessaran::desktop {

struct PaintStyle {
    drawing::Rgb background{33, 40, 48};
    double hairline = 1.0;             // pixels
    bool smooth = false;               // with antialiasing
    std::optional<QColor> colour{};    // instead of each entity's own
    Qt::PenStyle line = Qt::SolidLine; // of hairlines
    double least = 0.0;                // no line thinner than this, pixels
    Hairline lines{}; // draws plain thin lines in the painter's image; none: the painter does
};

// Arcs are drawn by chords that stay within a tenth of a pixel; steps too short to be seen are
// taken together. What reaches far beyond the picture is cut before the painter sees it.
class PainterCanvas final : public drawing::Canvas {
  public:
    PainterCanvas(QPainter& painter, const drawing::PageMap& map, const PaintStyle& style);

    void curve(const geometry::Curve& curve, const drawing::Pen& pen) override;
    void fill(const std::vector<geometry::Curve>& loops, const drawing::Pen& pen) override;
    void text(const host::Text& text, const drawing::Pen& pen) override;
    void point(host::Point2 at, const drawing::Pen& pen) override;
    void cells(const host::CellPatch& patch) override;

    void cells(const host::CellPatch& patch, const QImage& image); // its filled cells, as an image

  private:
    QColor colourOf(int index) const;
    void usePen(const drawing::Pen& pen, double width, double curveLength);
    // The curve's chords on the page, in points_; their box.
    geometry::Box2 trace(const geometry::Curve& curve);
    void addArc(const geometry::Segment& segment);
    bool isPlain(const drawing::Pen& pen, double width) const;
    void strokeCut(bool closed);
    void cellOutlines(const host::CellPatch& patch);

    QPainter& painter_;
    drawing::PageMap map_;
    PaintStyle style_;
    std::vector<QPointF> points_;
    // The painter's pen.
    int penColour_ = -1;
    double penWidth_ = -1.0;
    const std::vector<double>* penDashes_ = nullptr;
    QFont font_;
    double capitalShare_ = 0.7; // height of a capital over the font's pixel size
};

// A pixel a cell, clear where nothing is shown; the first row is the grid's first.
QImage cellImage(const host::CellPatch& patch, drawing::Rgb background);

} // namespace tessaran::desktop
