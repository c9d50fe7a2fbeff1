#pragma once

// Non-uniform rational B-splines as points along them (de Boor's algorithm: de Boor, C. (1972), On
// calculating with B-splines, J. Approx. Theory 6, 50-62).

#include "geometry/point.h"

#include <vector>

namespace tessaran::geometry {

struct Spline {
    int degree = 3;
    std::vector<double> knots; // controls + degree + 1, none below the one before
    std::vector<Point3> controls;
    std::vector<double> weights; // above 0, one a control; empty: all 1
};

// Points from the start to the end, `pointsOfSpan` to each span between two different knots; empty
// when the numbers make no spline.
std::vector<Point3> pointsAlong(const Spline& spline, int pointsOfSpan);

} // namespace tessaran::geometry
