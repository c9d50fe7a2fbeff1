#pragma once

// The drawing's coordinate system as the host port asks for it.

#include "drawing/database.h"

namespace tessaran::drawing {

// The system with unit axes at right angles, its Y axis turned in their plane; nothing when an axis
// is zero or not finite, or when they are parallel.
std::optional<Ucs> orthonormal(const Ucs& ucs);

host::Point3 toWorld(const Ucs& ucs, const host::Point3& user);
host::Point3 toUser(const Ucs& ucs, const host::Point3& world);

class DrawingCoordinates final : public host::Coordinates {
  public:
    explicit DrawingCoordinates(const Database& database) : database_(database) {}
    host::Point3 toWorld(const host::Point3& user) const override;
    host::Point3 toUser(const host::Point3& world) const override;

  private:
    const Database& database_;
};

} // namespace tessaran::drawing
