#include "drawing/affine.h"

#include "base/tolerance.h"

#include <cmath>

namespace tessaran::drawing {

using geometry::Curve;
using geometry::CurveVertex;
using host::Point2;

Affine Affine::after(const Affine& inner) const {
    return {a * inner.a + c * inner.b,     b * inner.a + d * inner.b,
            a * inner.c + c * inner.d,     b * inner.c + d * inner.d,
            a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
}

bool Affine::isIdentity() const {
    return a == 1.0 && b == 0.0 && c == 0.0 && d == 1.0 && e == 0.0 && f == 0.0;
}

bool Affine::keepsCircles() const {
    const double size = std::hypot(a, b);
    const double unequal = std::abs(size - std::hypot(c, d));
    const double skew = std::abs(a * c + b * d);
    return unequal <= base::kTolerance * size && skew <= base::kTolerance * size * size;
}

double Affine::scale() const {
    return std::sqrt(std::abs(a * d - b * c));
}

Affine affineOf(const host::Insert& insert, host::Point3 base) {
    const double cosine = std::cos(insert.rotation);
    const double sine = std::sin(insert.rotation);
    const Affine placed{cosine * insert.scale.x, sine * insert.scale.x, -sine * insert.scale.y,
                        cosine * insert.scale.y, insert.at.x,           insert.at.y};
    return placed.after({1.0, 0.0, 0.0, 1.0, -base.x, -base.y});
}

Curve mapped(const Curve& curve, const Affine& affine) {
    if (affine.isIdentity())
        return curve;
    std::vector<CurveVertex> vertices;
    if (affine.keepsCircles()) {
        vertices = curve.vertices();
    } else {
        const geometry::Box2 box = curve.extents();
        const double sag = base::kArcSag * std::max(box.width(), box.height());
        for (const host::Point3& p : curve.flattened(sag > 0.0 ? sag : base::kArcSag))
            vertices.push_back({p, 0.0});
    }
    const double turn = affine.mirrors() ? -1.0 : 1.0;
    for (CurveVertex& vertex : vertices) {
        const Point2 at = affine(vertex.at.plan());
        vertex = {{at.x, at.y, vertex.at.z}, turn * vertex.bulge};
    }
    return {vertices, curve.closed()};
}

host::Text mapped(const host::Text& text, const Affine& affine) {
    if (affine.isIdentity())
        return text;
    host::Text result = text;
    const Point2 at = affine(text.at.plan());
    result.at = {at.x, at.y, text.at.z};
    const Point2 ahead =
        affine(text.at.plan() + Point2{std::cos(text.rotation), std::sin(text.rotation)}) - at;
    result.rotation = std::atan2(ahead.y, ahead.x);
    result.height = text.height * affine.scale();
    return result;
}

} // namespace tessaran::drawing
