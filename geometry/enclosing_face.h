#pragma once

// The faces that lines of a plan enclose, and which of them lies around a point.

#include "geometry/point.h"

#include <span>
#include <vector>

namespace tessaran::geometry {

class Faces {
  public:
    // Chains of straight segments, which may cross and touch anywhere. Chains with coordinates
    // that are no usable numbers are left out.
    explicit Faces(std::span<const Polygon> chains);

    // The outer outline of the face that the point lies in, without its islands; empty when
    // nothing encloses the point.
    Polygon around(Point2 point) const;

  private:
    struct Face {
        Polygon outline;
        std::vector<Polygon> holes;
        Box2 box;
    };
    std::vector<Face> faces_;
};

} // namespace tessaran::geometry
