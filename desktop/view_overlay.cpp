#include "desktop/view_overlay.h"

#include "drawing/coordinates.h"
#include "drawing/overloaded.h"
#include "drawing/scene.h"

#include <QPainterPath>
#include <cmath>

namespace tessaran::desktop {
namespace {

using drawing::PageMap;
using host::Point2;
using host::Point3;

constexpr double kHighlightWidth = 2.5; // pixels
constexpr double kPickBox = 4.0;        // half its side
constexpr double kCrossArm = 26.0;
constexpr double kAxisArm = 34.0;

QPointF onPage(const PageMap& map, Point2 world) {
    const Point2 p = map(world);
    return {p.x, p.y};
}

QPen thin(const QColor& colour, Qt::PenStyle line = Qt::SolidLine) {
    return {colour, 1.0, line};
}

geometry::Curve outlineOf(const console::KeptGraphics::Outline& outline) {
    std::vector<geometry::CurveVertex> vertices;
    vertices.reserve(outline.points.size());
    for (const Point2 p : outline.points)
        vertices.push_back({{p.x, p.y, 0.0}, 0.0});
    return {vertices, outline.closed};
}

// An entity that is not in the drawing, as it would look on the current layer.
void paintLoose(const drawing::Database& database, const host::Entity& entity,
                PainterCanvas& canvas) {
    drawing::EntityRecord record;
    record.entity = entity;
    drawing::drawEntity(database, record, drawing::Visibility::all, canvas);
}

} // namespace

const QImage& PatchImages::of(std::uint64_t graphic, const host::CellPatch& patch,
                              drawing::Rgb background) {
    if (!(background == background_))
        images_.clear();
    background_ = background;
    QImage& image = images_[graphic];
    if (image.isNull())
        image = cellImage(patch, background);
    return image;
}

void PatchImages::keepOnly(
    const std::map<std::uint64_t, console::KeptGraphics::Graphic>& graphics) {
    std::erase_if(images_, [&](const auto& entry) { return !graphics.contains(entry.first); });
}

void paintGraphics(QPainter& painter, const PageMap& map, const ViewStyle& style,
                   const drawing::Database& database, const console::KeptGraphics& graphics,
                   PatchImages& images) {
    images.keepOnly(graphics.graphics());
    PainterCanvas canvas(painter, map, {.background = style.background, .smooth = false});
    for (const auto& [id, graphic] : graphics.graphics())
        std::visit(drawing::Overloaded{
                       [&](const console::KeptGraphics::Outline& outline) {
                           canvas.curve(outlineOf(outline), {.colour = outline.colour});
                       },
                       [&, number = id](const host::CellPatch& patch) {
                           if (patch.filled)
                               canvas.cells(patch, images.of(number, patch, style.background));
                           else
                               canvas.cells(patch);
                       },
                       [&](const host::Entity& entity) { paintLoose(database, entity, canvas); },
                   },
                   graphic);
}

void paintHighlights(QPainter& painter, const PageMap& map, const ViewStyle& style,
                     const drawing::Database& database,
                     const std::vector<host::EntityId>& entities) {
    PainterCanvas canvas(painter, map,
                         {.background = style.background,
                          .smooth = entities.size() < 2000,
                          .colour = style.highlight,
                          .least = kHighlightWidth});
    for (const host::EntityId id : entities)
        if (const drawing::EntityRecord* record = database.record(id))
            drawing::drawEntity(database, *record, drawing::Visibility::shown, canvas);
}

void paintPrompt(QPainter& painter, const PageMap& map, const ViewStyle& style,
                 const drawing::Database& database, const PromptState& prompt, Point3 at) {
    const auto world = [&](const Point3& user) { return drawing::toWorld(database.ucs(), user); };
    const QPointF cursor = onPage(map, at.plan());
    painter.setPen(thin(style.rubber, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    QPolygonF trail;
    for (const Point3& p : prompt.trail)
        trail.push_back(onPage(map, world(p).plan()));
    painter.drawPolyline(trail);
    if (!prompt.dragged.empty()) {
        painter.setPen(thin(style.rubber));
        QPolygonF outline;
        for (const Point2 p : prompt.dragged)
            outline.push_back(onPage(map, at.plan() + p));
        painter.drawPolygon(outline);
    }
    if (!prompt.base || prompt.rubberBand == host::RubberBand::none)
        return;
    const Point3 base = world(*prompt.base);
    if (prompt.rubberBand == host::RubberBand::line)
        return painter.drawLine(onPage(map, base.plan()), cursor);
    // A box along the user's axes.
    const Point3 corner = drawing::toUser(database.ucs(), at);
    QPolygonF box;
    for (const Point3& p : {*prompt.base, Point3{corner.x, prompt.base->y, corner.z}, corner,
                            Point3{prompt.base->x, corner.y, corner.z}})
        box.push_back(onPage(map, world(p).plan()));
    painter.drawPolygon(box);
}

void paintSnap(QPainter& painter, const ViewStyle& style, const PageMap& map, const Snap& snap) {
    const QPointF at = onPage(map, snap.at.plan());
    const double r = 6.0;
    painter.setPen(QPen(style.snap, 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, true);
    switch (snap.kind) {
    case SnapKind::end:
        painter.drawRect(QRectF(at.x() - r, at.y() - r, 2 * r, 2 * r));
        break;
    case SnapKind::middle:
        painter.drawPolygon(
            QPolygonF({at + QPointF(-r, r), at + QPointF(r, r), at + QPointF(0, -r)}));
        break;
    case SnapKind::intersection:
        painter.drawLine(at + QPointF(-r, -r), at + QPointF(r, r));
        painter.drawLine(at + QPointF(-r, r), at + QPointF(r, -r));
        break;
    case SnapKind::nearest:
        painter.drawPolygon(QPolygonF(
            {at + QPointF(-r, -r), at + QPointF(r, -r), at + QPointF(-r, r), at + QPointF(r, r)}));
        break;
    }
}

void paintSelectionBox(QPainter& painter, const ViewStyle& style, QPointF from, QPointF to) {
    const bool window = to.x() > from.x();
    QColor inside = window ? style.window : style.crossing;
    painter.setPen(thin(inside, window ? Qt::SolidLine : Qt::DashLine));
    inside.setAlpha(50);
    painter.setBrush(inside);
    painter.drawRect(QRectF(from, to).normalized());
}

void paintCursor(QPainter& painter, const ViewStyle& style, QPointF at, bool pickBox, bool cross) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(thin(style.cursor));
    painter.setBrush(Qt::NoBrush);
    const double gap = pickBox ? kPickBox : 0.0;
    if (pickBox)
        painter.drawRect(QRectF(at.x() - kPickBox, at.y() - kPickBox, 2 * kPickBox, 2 * kPickBox));
    if (!cross)
        return;
    painter.drawLine(at - QPointF(kCrossArm, 0), at - QPointF(gap, 0));
    painter.drawLine(at + QPointF(gap, 0), at + QPointF(kCrossArm, 0));
    painter.drawLine(at - QPointF(0, kCrossArm), at - QPointF(0, gap));
    painter.drawLine(at + QPointF(0, gap), at + QPointF(0, kCrossArm));
}

void paintAxes(QPainter& painter, const ViewStyle& style, const drawing::Ucs& ucs, int height) {
    const QPointF origin(22, height - 22);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(style.cursor, 1.4));
    const auto arm = [&](const Point3& axis, const char* name) {
        const double size = std::hypot(axis.x, axis.y);
        if (size < 1e-9)
            return;
        const QPointF tip = origin + kAxisArm / size * QPointF(axis.x, -axis.y);
        painter.drawLine(origin, tip);
        painter.drawText(tip + QPointF(3, 4), name);
    };
    arm(ucs.xAxis, "X");
    arm(ucs.yAxis, "Y");
    painter.drawRect(QRectF(origin - QPointF(3, 3), QSizeF(6, 6)));
}

} // namespace tessaran::desktop
