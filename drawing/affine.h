#pragma once

// Plane maps of block references: scale, rotate, move, nested.

#include "geometry/curve.h"
#include "host/entity.h"

namespace tessaran::drawing {

// (x, y) goes to (a x + c y + e, b x + d y + f).
struct Affine {
    double a = 1.0;
    double b = 0.0;
    double c = 0.0;
    double d = 1.0;
    double e = 0.0;
    double f = 0.0;

    host::Point2 operator()(host::Point2 p) const {
        return {a * p.x + c * p.y + e, b * p.x + d * p.y + f};
    }
    // First `inner`, then this.
    Affine after(const Affine& inner) const;

    bool isIdentity() const;
    bool mirrors() const { return a * d - b * c < 0.0; }
    // Whether circles stay circles (up to rounding).
    bool keepsCircles() const;
    // Lengths are multiplied by this (the square root of the area's factor).
    double scale() const;
};

Affine affineOf(const host::Insert& insert, host::Point3 base);

// The mapped curve; arcs become chords where circles do not stay circles.
geometry::Curve mapped(const geometry::Curve& curve, const Affine& affine);

// The mapped text: place, height and direction (a mirrored text reads on, as hosts show it).
host::Text mapped(const host::Text& text, const Affine& affine);

} // namespace tessaran::drawing
