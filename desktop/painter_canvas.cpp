#include "desktop/painter_canvas.h"

#include "desktop/qt_text.h"
#include "drawing/scene.h"
#include "geometry/polygon.h"
#include "geometry/segment.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tessaran::desktop {
namespace {

using drawing::Pen;
using geometry::Box2;
using geometry::Curve;
using geometry::Point2;

constexpr double kSag = 0.1;             // of an arc's chords, pixels
constexpr double kDetail = 0.25;         // shorter steps are taken together, pixels
constexpr double kSafe = 20000.0;        // pixels that the rasteriser holds
constexpr double kLargestText = 20000.0; // pixels high
constexpr double kSmallestText = 2.5;    // below, a text is only a line
constexpr double kSmallestPattern = 4.0; // dash patterns shorter than this are drawn solid
constexpr double kMostPatterns = 5000.0;
constexpr double kPointRadius = 1.8; // hairlines
constexpr double kSeam = 0.6;        // width of the line that closes seams between smooth fills

Box2 safeBox() {
    return {{-kSafe, -kSafe}, {kSafe, kSafe}};
}

QPointF onPage(Point2 p) {
    return {p.x, p.y};
}

Point2 plain(QPointF p) {
    return {p.x(), p.y()};
}

QRgb rgbOf(drawing::Rgb colour) {
    return qRgb(colour.red, colour.green, colour.blue);
}

} // namespace

PainterCanvas::PainterCanvas(QPainter& painter, const drawing::PageMap& map,
                             const PaintStyle& style)
    : painter_(painter), map_(map), style_(style), font_("DejaVu Sans") {
    painter_.setRenderHint(QPainter::Antialiasing, style_.smooth);
    painter_.setRenderHint(QPainter::TextAntialiasing, true);
    font_.setPixelSize(100);
    if (const double capital = QFontMetricsF(font_).capHeight(); capital > 0.0)
        capitalShare_ = capital / 100.0;
}

QColor PainterCanvas::colourOf(int index) const {
    return style_.colour ? *style_.colour
                         : QColor::fromRgb(rgbOf(drawing::shownColour(index, style_.background)));
}

void PainterCanvas::usePen(const Pen& pen, double width, double curveLength) {
    const bool wide = width > style_.hairline;
    const double shown = std::max(wide ? width : style_.hairline, style_.least);
    std::vector<double> lengths;
    if (pen.dashes != nullptr)
        lengths = drawing::onOff(*pen.dashes, pen.dashScale * map_.scale, style_.hairline);
    double pattern = 0.0;
    for (const double length : lengths)
        pattern += length;
    const bool dashed = pattern >= kSmallestPattern && std::isfinite(pattern) &&
                        lengths.size() % 2 == 0 &&
                        curveLength * map_.scale < kMostPatterns * pattern;
    const std::vector<double>* dashes = dashed ? pen.dashes : nullptr;
    if (pen.colour == penColour_ && shown == penWidth_ && dashes == penDashes_ && !dashed)
        return;
    QPen qtPen(colourOf(pen.colour), shown, style_.line, wide ? Qt::FlatCap : Qt::SquareCap,
               wide ? Qt::MiterJoin : Qt::BevelJoin);
    // A cosmetic pen is the fast one, but it counts the device's pixels.
    qtPen.setCosmetic(!wide && painter_.device()->devicePixelRatioF() == 1.0);
    if (dashed) {
        QList<qreal> list;
        for (const double length : lengths)
            list.push_back(length / shown); // in units of the width
        qtPen.setDashPattern(list);
        qtPen.setCapStyle(Qt::FlatCap);
    }
    painter_.setPen(qtPen);
    painter_.setBrush(Qt::NoBrush);
    penColour_ = pen.colour;
    penWidth_ = shown;
    penDashes_ = dashes;
}

void PainterCanvas::addArc(const geometry::Segment& segment) {
    const int chords = std::clamp(segment.chordCount(kSag / map_.scale), 1, 20000);
    for (int k = 1; k <= chords; ++k)
        points_.push_back(onPage(map_(segment.pointAt(static_cast<double>(k) / chords))));
}

Box2 PainterCanvas::trace(const Curve& curve) {
    points_.clear();
    points_.push_back(onPage(map_(curve.vertices().front().at.plan())));
    const std::size_t count = curve.segmentCount();
    for (std::size_t i = 0; i < count; ++i) {
        const geometry::CurveVertex& from = curve.segmentStart(i);
        const Point2 to = curve.segmentEnd(i).at.plan();
        const QPointF end = onPage(map_(to));
        if (from.bulge != 0.0) {
            addArc(geometry::Segment(from.at.plan(), to, from.bulge));
            continue;
        }
        const QPointF step = end - points_.back();
        // The last one never goes missing.
        if (i + 1 < count && std::abs(step.x()) < kDetail && std::abs(step.y()) < kDetail)
            continue;
        points_.push_back(end);
    }
    Box2 box;
    for (const QPointF& p : points_)
        box.add(plain(p));
    return box;
}

// Whether it is nothing but a thin line in the entity's colour.
bool PainterCanvas::isPlain(const Pen& pen, double width) const {
    return style_.lines && !style_.smooth && !style_.colour && pen.dashes == nullptr &&
           width <= style_.hairline && style_.hairline <= style_.lines.width() &&
           style_.least <= style_.hairline;
}

void PainterCanvas::strokeCut(bool closed) {
    if (closed)
        points_.push_back(points_.front());
    for (std::size_t i = 0; i + 1 < points_.size(); ++i)
        if (const auto part =
                geometry::clippedTo(safeBox(), plain(points_[i]), plain(points_[i + 1])))
            painter_.drawLine(onPage(part->first), onPage(part->second));
}

void PainterCanvas::curve(const Curve& curve, const Pen& pen) {
    if (curve.empty())
        return;
    if (curve.vertices().size() == 1)
        return point(curve.vertices().front().at.plan(), pen);
    const Box2 box = trace(curve);
    const double width = std::min(pen.width * map_.scale, kSafe);
    if (isPlain(pen, width)) {
        if (curve.closed())
            points_.push_back(points_.front());
        return style_.lines.polyline(points_,
                                     rgbOf(drawing::shownColour(pen.colour, style_.background)));
    }
    usePen(pen, width, pen.dashes == nullptr ? 0.0 : curve.length());
    const bool wide = width > style_.hairline;
    if (!wide && box.width() < 1.0 && box.height() < 1.0)
        return painter_.drawPoint(points_.front());
    if (!safeBox().contains(box))
        return strokeCut(curve.closed());
    const auto count = static_cast<int>(points_.size());
    if (curve.closed() && wide)
        painter_.drawPolygon(points_.data(), count);
    else {
        if (curve.closed())
            points_.push_back(points_.front());
        painter_.drawPolyline(points_.data(), static_cast<int>(points_.size()));
    }
}

void PainterCanvas::fill(const std::vector<Curve>& loops, const Pen& pen) {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const Curve& loop : loops) {
        if (loop.vertices().size() < 2)
            continue;
        const Box2 box = trace(loop);
        QPolygonF polygon(QList<QPointF>(points_.begin(), points_.end()));
        if (!safeBox().contains(box)) {
            geometry::Polygon outline;
            for (const QPointF& p : points_)
                outline.push_back(plain(p));
            polygon.clear();
            const auto corners = safeBox().corners();
            for (const Point2 p : geometry::clipToConvex(corners, outline))
                polygon.push_back(onPage(p));
        }
        path.addPolygon(polygon);
        path.closeSubpath();
    }
    const QColor colour = colourOf(pen.colour);
    painter_.setPen(style_.smooth ? QPen(colour, kSeam) : QPen(Qt::NoPen));
    painter_.setBrush(colour);
    penColour_ = -1;
    painter_.drawPath(path);
}

void PainterCanvas::text(const host::Text& text, const Pen& pen) {
    const double height = text.height * map_.scale;
    const Point2 at = map_(text.at.plan());
    if (!safeBox().contains(at) || height > kLargestText || !(height > 0.0))
        return;
    if (height < kSmallestText) {
        const auto corners = drawing::textBox(text);
        return curve(
            Curve::line({corners[0].x, corners[0].y, 0.0}, {corners[1].x, corners[1].y, 0.0}), pen);
    }
    const QString shown = qt(drawing::readableText(text.text));
    // Fonts come in whole pixels; the rest is scaled. A text's height is that of its capitals.
    const double wanted = height / capitalShare_;
    const int size = std::clamp(static_cast<int>(std::lround(wanted)), 1, 400);
    if (font_.pixelSize() != size)
        font_.setPixelSize(size);
    const double scale = wanted / size;
    const double width = QFontMetricsF(font_).horizontalAdvance(shown);
    const Point2 start = drawing::startOf(text, width, height / scale);
    painter_.save();
    painter_.setFont(font_);
    painter_.setPen(colourOf(pen.colour));
    painter_.translate(at.x, at.y);
    painter_.rotate(-text.rotation * 180.0 / std::numbers::pi);
    painter_.scale(scale, scale);
    painter_.drawText(QPointF(start.x, start.y), shown);
    painter_.restore();
}

void PainterCanvas::point(Point2 at, const Pen& pen) {
    const Point2 p = map_(at);
    if (!safeBox().contains(p))
        return;
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(colourOf(pen.colour));
    penColour_ = -1;
    const double radius = std::max(kPointRadius * style_.hairline, style_.least);
    painter_.drawEllipse(onPage(p), radius, radius);
}

void PainterCanvas::cells(const host::CellPatch& patch) {
    const auto count = static_cast<std::size_t>(patch.nX) * static_cast<std::size_t>(patch.nY);
    if (patch.nX < 1 || patch.nY < 1 || patch.colours.size() < count)
        return;
    if (patch.filled)
        cells(patch, cellImage(patch, style_.background));
    else
        cellOutlines(patch);
}

void PainterCanvas::cells(const host::CellPatch& patch, const QImage& image) {
    painter_.save();
    const Point2 origin = map_(patch.origin);
    const double s = map_.scale;
    painter_.setTransform(QTransform(s * patch.xStep.x, -s * patch.xStep.y, s * patch.yStep.x,
                                     -s * patch.yStep.y, origin.x, origin.y),
                          true);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter_.drawImage(QPointF(0, 0), image);
    painter_.restore();
}

// Cells too small to be told apart are shown as the image of their colours.
void PainterCanvas::cellOutlines(const host::CellPatch& patch) {
    if (std::min(geometry::length(patch.xStep), geometry::length(patch.yStep)) * map_.scale < 3.0)
        return cells(patch, cellImage(patch, style_.background));
    std::size_t cell = 0;
    for (int j = 0; j < patch.nY; ++j)
        for (int i = 0; i < patch.nX; ++i, ++cell) {
            if (patch.colours[cell] == 0)
                continue;
            const Point2 p = patch.origin + double(i) * patch.xStep + double(j) * patch.yStep;
            usePen({.colour = patch.colours[cell]}, 0.0, 0.0);
            const std::array<QPointF, 4> corners{onPage(map_(p)), onPage(map_(p + patch.xStep)),
                                                 onPage(map_(p + patch.xStep + patch.yStep)),
                                                 onPage(map_(p + patch.yStep))};
            if (safeBox().contains(plain(corners[0])))
                painter_.drawPolygon(corners.data(), 4);
        }
}

QImage cellImage(const host::CellPatch& patch, drawing::Rgb background) {
    std::array<QRgb, 256> table{};
    for (int colour = 1; colour < 256; ++colour)
        table[static_cast<std::size_t>(colour)] = rgbOf(drawing::shownColour(colour, background));
    table[0] = qRgba(0, 0, 0, 0);
    QImage image(patch.nX, patch.nY, QImage::Format_ARGB32_Premultiplied);
    const std::uint8_t* from = patch.colours.data();
    for (int j = 0; j < patch.nY && !image.isNull(); ++j) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(j));
        for (int i = 0; i < patch.nX; ++i)
            row[i] = table[*from++];
    }
    return image;
}

} // namespace tessaran::desktop
