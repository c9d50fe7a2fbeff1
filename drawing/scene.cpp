#include "drawing/scene.h"

#include "base/text.h"
#include "drawing/affine.h"
#include "drawing/overloaded.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace tessaran::drawing {
namespace {

using geometry::Curve;
using geometry::CurveVertex;
using host::Point2;
using host::Point3;

// Blocks in blocks, and block entities shown for one INSERT: beyond these a file is a trap.
constexpr int kDeepestNesting = 16;
constexpr long kMostBlockEntities = 2'000'000;

// Width of a character over the height of capitals, about right for the faces in use.
constexpr double kCharacterWidth = 0.8;

Curve curveOf(const host::Polyline& polyline) {
    std::vector<CurveVertex> vertices;
    vertices.reserve(polyline.vertices.size());
    for (const host::PolylineVertex& v : polyline.vertices)
        vertices.push_back({{v.at.x, v.at.y, polyline.elevation}, v.bulge});
    return {vertices, polyline.closed};
}

Curve curveOf(std::span<const Point3> points, bool closed) {
    std::vector<CurveVertex> vertices;
    vertices.reserve(points.size());
    for (const Point3& p : points)
        vertices.push_back({p, 0.0});
    return {vertices, closed};
}

Curve curveOf(const host::Loop& loop, double elevation) {
    std::vector<CurveVertex> vertices;
    vertices.reserve(loop.vertices.size());
    for (const host::Loop::Vertex& v : loop.vertices)
        vertices.push_back({{v.at.x, v.at.y, elevation}, v.bulge});
    return {vertices, true};
}

bool hasSegmentWidths(const host::Polyline& polyline) {
    return std::ranges::any_of(polyline.vertices, [](const host::PolylineVertex& v) {
        return v.startWidth != 0.0 || v.endWidth != 0.0;
    });
}

// The area of a segment whose width goes from one value to the other; arcs by short chords.
Curve taperedSegment(const host::PolylineVertex& from, Point2 to) {
    const Curve centre({{{from.at.x, from.at.y, 0.0}, from.bulge}, {{to.x, to.y, 0.0}, 0.0}},
                       false);
    const double total = centre.length();
    const int pieces = from.bulge == 0.0 ? 1 : 32;
    std::vector<CurveVertex> left;
    std::vector<CurveVertex> right;
    for (int i = 0; i <= pieces; ++i) {
        const double share = static_cast<double>(i) / pieces;
        const double step = 0.01 / pieces;
        const Point2 at = centre.pointAt(share * total).plan();
        const Point2 along = centre.pointAt(std::min(share + step, 1.0) * total).plan() -
                             centre.pointAt(std::max(share - step, 0.0) * total).plan();
        const double size = geometry::length(along);
        if (size == 0.0)
            continue;
        const double half = 0.5 * std::lerp(from.startWidth, from.endWidth, share) / size;
        const Point2 aside{-half * along.y, half * along.x};
        left.push_back({{at.x + aside.x, at.y + aside.y, 0.0}, 0.0});
        right.push_back({{at.x - aside.x, at.y - aside.y, 0.0}, 0.0});
    }
    left.insert(left.end(), right.rbegin(), right.rend());
    return {left, true};
}

// Walks one entity of model space, and the blocks in it.
class Walker {
  public:
    Walker(const Database& database, Visibility visibility, Canvas& canvas)
        : database_(database), visibility_(visibility), canvas_(canvas),
          dashScale_(linetypeScale(database)) {}

    // What an entity inherits from the inserts around it.
    struct Around {
        Affine place;
        const host::Layer* layer = nullptr; // for entities on layer "0"
        int colour = host::colour::kForeground;
        const std::string* linetype = nullptr;
        int depth = 0;
    };

    void walk(const host::Entity& entity, const host::Layer& layer, const Around& around) {
        const Pen pen = penOf(entity, layer, around);
        std::visit(
            Overloaded{
                [&](const host::Line& l) { curve(Curve::line(l.start, l.end), pen, around); },
                [&](const host::Polyline& p) { polyline(p, pen, around); },
                [&](const host::Polyline3d& p) {
                    curve(curveOf(p.vertices, p.closed), pen, around);
                },
                [&](const host::PointMark& p) { canvas_.point(around.place(p.at.plan()), pen); },
                [&](const host::Circle& c) {
                    curve(Curve::circle(c.centre, c.radius), pen, around);
                },
                [&](const host::Arc& a) {
                    curve(Curve::arc(a.centre, a.radius, a.startAngle, a.endAngle), pen, around);
                },
                [&](const host::Text& t) { canvas_.text(mapped(t, around.place), pen); },
                [&](const host::Hatch& h) { hatch(h, pen, around); },
                [&](const host::Region& r) {
                    for (const host::Loop& loop : r.loops)
                        curve(curveOf(loop, r.elevation), pen, around);
                },
                [&](const host::Face3d& f) { curve(curveOf(f.corners, true), pen, around); },
                [&](const host::Insert& i) { insert(i, entity, layer, pen, around); },
                [&](const host::Other& o) {
                    if (o.look)
                        look(*o.look, entity, layer, pen, around);
                },
            },
            entity.geometry);
    }

  private:
    static double linetypeScale(const Database& database) {
        const auto& variables = database.tables().variables;
        const auto found = variables.find("LTSCALE");
        const double* scale =
            found == variables.end() ? nullptr : std::get_if<double>(&found->second);
        return scale && *scale > 0.0 ? *scale : 1.0;
    }

    const std::vector<double>* dashesOf(const std::string& name) const {
        for (const LinetypeRecord& linetype : database_.linetypes())
            if (base::equalsIgnoringCase(linetype.name, name))
                return linetype.dashes.empty() ? nullptr : &linetype.dashes;
        return nullptr;
    }

    Pen penOf(const host::Entity& entity, const host::Layer& layer, const Around& around) const {
        Pen pen;
        pen.colour = entity.colour == host::colour::kByLayer   ? layer.colour
                     : entity.colour == host::colour::kByBlock ? around.colour
                                                               : entity.colour;
        const std::string& linetype = linetypeOf(entity, layer, around);
        pen.dashes = linetype == "Continuous" ? nullptr : dashesOf(linetype);
        pen.dashScale = dashScale_ * around.place.scale();
        return pen;
    }

    static const std::string& linetypeOf(const host::Entity& entity, const host::Layer& layer,
                                         const Around& around) {
        if (base::equalsIgnoringCase(entity.linetype, "ByLayer"))
            return layer.linetype;
        if (around.linetype && base::equalsIgnoringCase(entity.linetype, "ByBlock"))
            return *around.linetype;
        return entity.linetype;
    }

    void curve(const Curve& curve, const Pen& pen, const Around& around) {
        canvas_.curve(mapped(curve, around.place), pen);
    }

    void polyline(const host::Polyline& p, Pen pen, const Around& around) {
        pen.width = std::abs(p.constantWidth) * around.place.scale();
        curve(curveOf(p), pen, around);
        if (p.constantWidth == 0.0 && hasSegmentWidths(p))
            tapers(p, pen, around);
    }

    void tapers(const host::Polyline& p, const Pen& pen, const Around& around) {
        const std::size_t count = p.vertices.size();
        for (std::size_t i = 0; i + (p.closed ? 0u : 1u) < count; ++i) {
            const host::PolylineVertex& from = p.vertices[i];
            if (from.startWidth == 0.0 && from.endWidth == 0.0)
                continue;
            const Curve area = taperedSegment(from, p.vertices[(i + 1) % count].at);
            canvas_.fill({mapped(area, around.place)}, pen);
        }
    }

    void hatch(const host::Hatch& h, const Pen& pen, const Around& around) {
        std::vector<Curve> loops;
        loops.reserve(h.loops.size());
        for (const host::Loop& loop : h.loops)
            loops.push_back(mapped(curveOf(loop, h.elevation), around.place));
        canvas_.fill(loops, pen);
    }

    void look(const host::Look& look, const host::Entity& entity, const host::Layer& layer,
              const Pen& pen, const Around& around) {
        for (const Curve& line : look.curves)
            curve(line, pen, around);
        for (const Curve& area : look.areas)
            canvas_.fill({mapped(area, around.place)}, pen);
        for (const host::Text& text : look.texts)
            canvas_.text(mapped(text, around.place), pen);
        if (!look.block.empty())
            insert({look.block, {}}, entity, layer, pen, around);
    }

    void insert(const host::Insert& i, const host::Entity& entity, const host::Layer& layer,
                const Pen& pen, const Around& around) {
        const Around beside{around.place, &layer, pen.colour, &linetypeOf(entity, layer, around),
                            around.depth};
        for (const host::Attribute& attribute : i.attributes)
            if (attribute.shown)
                part({{}, attribute.layer, attribute.colour, "ByLayer", attribute.text}, beside);
        const Block* block = database_.block(i.block);
        if (!block || around.depth >= kDeepestNesting)
            return;
        Around inside = beside;
        inside.place = around.place.after(affineOf(i, block->base));
        ++inside.depth;
        for (const host::Entity& entityInside : block->entities) {
            if (++blockEntities_ > kMostBlockEntities)
                return;
            part(entityInside, inside);
        }
    }

    void part(const host::Entity& entity, const Around& around) {
        if (const host::Layer* own = layerOf(entity, around))
            walk(entity, *own, around);
    }

    // The layer that a block's entity counts on; null when that hides it.
    const host::Layer* layerOf(const host::Entity& part, const Around& inside) const {
        if (part.layer == "0")
            return inside.layer;
        const LayerRecord* record = database_.layerRecord(part.layer);
        if (!record)
            return inside.layer;
        const bool hidden = !record->layer.on || record->layer.frozen;
        return hidden && visibility_ == Visibility::shown ? nullptr : &record->layer;
    }

    const Database& database_;
    Visibility visibility_;
    Canvas& canvas_;
    double dashScale_;
    long blockEntities_ = 0;
};

} // namespace

bool isShown(const Database& database, const EntityRecord& record) {
    const host::Layer& layer = database.tables().layers[record.layer]->layer;
    return layer.on && !layer.frozen;
}

void drawEntity(const Database& database, const EntityRecord& record, Visibility visibility,
                Canvas& canvas) {
    if (visibility == Visibility::shown && !isShown(database, record))
        return;
    canvas.beginEntity(record);
    Walker(database, visibility, canvas)
        .walk(record.entity, database.tables().layers[record.layer]->layer, {});
    canvas.endEntity();
}

std::array<Point2, 4> textBox(const host::Text& text) {
    const auto characters = std::ranges::count_if(
        text.text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    const double width = kCharacterWidth * text.height * static_cast<double>(characters);
    const double left = text.across == host::Text::Across::left     ? 0.0
                        : text.across == host::Text::Across::centre ? -0.5 * width
                                                                    : -width;
    const double bottom = text.up == host::Text::Up::top      ? -text.height
                          : text.up == host::Text::Up::middle ? -0.5 * text.height
                                                              : 0.0;
    const Point2 at = text.at.plan();
    const auto corner = [&](double x, double y) {
        return geometry::rotated(at + Point2{x, y}, at, text.rotation);
    };
    return {corner(left, bottom), corner(left + width, bottom),
            corner(left + width, bottom + text.height), corner(left, bottom + text.height)};
}

} // namespace tessaran::drawing
