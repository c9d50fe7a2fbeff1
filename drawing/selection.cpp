#include "drawing/selection.h"

#include "base/text.h"
#include "drawing/extents.h"
#include "geometry/polygon.h"

#include <algorithm>
#include <cmath>

namespace tessaran::drawing {
namespace {

using geometry::Box2;
using geometry::Curve;
using geometry::CurveVertex;
using geometry::Point2;
using host::SelectionShape;
using Kind = host::SelectionShape::Kind;

// Points nearer than this share of the coordinates in use to an outline lie on it.
constexpr double kOnOutline = 1e-12;

Curve chainOf(const std::vector<Point2>& points, bool closed) {
    std::vector<CurveVertex> vertices;
    for (const Point2 p : points)
        vertices.push_back({{p.x, p.y, 0.0}, 0.0});
    return {vertices, closed};
}

bool isRectangle(const std::vector<Point2>& p) {
    return p.size() == 4 &&
           ((p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y) ||
            (p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x));
}

// Holds everything that an entity shows against the shape.
class ShapeTest final : public Canvas {
  public:
    explicit ShapeTest(const SelectionShape& shape)
        : kind_(shape.kind), points_(shape.points), box_(geometry::boxOf(points_)),
          outline_(chainOf(points_, kind_ != Kind::fence)), rectangle_(isRectangle(points_)) {
        const double reach = std::max({std::abs(box_.low.x), std::abs(box_.low.y),
                                       std::abs(box_.high.x), std::abs(box_.high.y)});
        tolerance_ = kOnOutline * reach;
    }

    const Box2& box() const { return box_; }

    bool selects(const Database& database, const EntityRecord& record, Visibility visibility) {
        touches_ = false;
        leaves_ = false;
        shows_ = false;
        drawEntity(database, record, visibility, *this);
        return kind_ == Kind::window ? shows_ && !leaves_ : touches_;
    }

    void curve(const Curve& curve, const Pen& /*pen*/) override {
        if (curve.empty())
            return;
        if (curve.vertices().size() == 1)
            return point(curve.vertices().front().at.plan(), {});
        shows_ = true;
        if (kind_ == Kind::window)
            leaves_ = leaves_ || !isInside(curve);
        else
            touches_ = touches_ || isTouched(curve);
    }
    void fill(const std::vector<Curve>& loops, const Pen& pen) override {
        for (const Curve& loop : loops)
            curve(loop, pen);
    }
    void text(const host::Text& text, const Pen& pen) override {
        const auto corners = textBox(text);
        curve(chainOf({corners.begin(), corners.end()}, true), pen);
        // A text counts as the whole of its box: the shape may lie inside it.
        touches_ = touches_ || geometry::pointInPolygon(points_.front(), corners);
    }
    void point(Point2 at, const Pen& /*pen*/) override {
        shows_ = true;
        const bool in = kind_ == Kind::fence ? isOn(at) : contains(at);
        touches_ = touches_ || in;
        leaves_ = leaves_ || !in;
    }

  private:
    bool isOn(Point2 p) const {
        const auto closest = outline_.closestTo(p);
        return closest && closest->distance <= tolerance_;
    }

    bool contains(Point2 p) const {
        return rectangle_ ? box_.contains(p) : geometry::pointInPolygon(p, points_) || isOn(p);
    }

    bool isTouched(const Curve& curve) const {
        if (!curve.extents().meets(box_))
            return false;
        if (kind_ != Kind::fence && contains(curve.vertices().front().at.plan()))
            return true;
        return !geometry::crossings(curve, outline_).empty();
    }

    // A rectangle holds what its box holds. Otherwise the pieces of the curve between the points
    // where it meets the outline are in or out as a whole.
    bool isInside(const Curve& curve) const {
        if (rectangle_ || !box_.contains(curve.extents()))
            return box_.contains(curve.extents());
        std::vector<double> cuts{0.0, curve.length()};
        for (const Point2 at : geometry::crossings(curve, outline_))
            if (const auto closest = curve.closestTo(at))
                cuts.push_back(closest->along);
        std::ranges::sort(cuts);
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i)
            if (!contains(curve.pointAt(0.5 * (cuts[i] + cuts[i + 1])).plan()))
                return false;
        return true;
    }

    Kind kind_;
    const std::vector<Point2>& points_;
    Box2 box_;
    Curve outline_;
    bool rectangle_;
    double tolerance_ = 0.0;
    bool touches_ = false;
    bool leaves_ = false;
    bool shows_ = false;
};

bool isUsable(const SelectionShape& shape) {
    return shape.points.size() >= (shape.kind == Kind::fence ? 2u : 3u) &&
           geometry::isUsable(shape.points);
}

} // namespace

FilterTest::FilterTest(const Tables& tables, const host::SelectionFilter& filter)
    : filter_(filter) {
    if (filter.layers.empty())
        return;
    for (const auto& record : tables.layers)
        layers_.push_back(std::ranges::any_of(filter.layers, [&](const std::string& name) {
            return base::equalsIgnoringCase(name, record->layer.name);
        }));
}

bool FilterTest::operator()(const EntityRecord& record) const {
    if (!layers_.empty() && !layers_[record.layer])
        return false;
    if (!filter_.types.empty()) {
        const std::string type = host::dxfName(record.entity);
        if (std::ranges::none_of(filter_.types, [&](const std::string& name) {
                return base::equalsIgnoringCase(name, type);
            }))
            return false;
    }
    return filter_.xdataApplication.empty() ||
           std::ranges::any_of(record.xdata, [&](const ApplicationData& data) {
               return base::equalsIgnoringCase(data.application, filter_.xdataApplication);
           });
}

std::vector<host::EntityId> selectByShape(const Database& database, const SelectionShape& shape,
                                          const host::SelectionFilter& filter,
                                          Visibility visibility) {
    if (!isUsable(shape))
        return {};
    const FilterTest passes(database.tables(), filter);
    ShapeTest test(shape);
    std::vector<host::EntityId> selected;
    for (const EntityRecord* record : database.near(test.box()))
        if (passes(*record) && test.selects(database, *record, visibility))
            selected.push_back(record->entity.id);
    return selected;
}

} // namespace tessaran::drawing
