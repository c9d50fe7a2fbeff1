#pragma once

// The places of objects that the cursor is drawn to: ends, middles, intersections, nearest.

#include "drawing/database.h"

#include <optional>

namespace tessaran::desktop {

// Numbered as the host's variable OSMODE has them.
enum class SnapKind { end = 1, middle = 2, intersection = 32, nearest = 512 };

struct SnapModes {
    int bits = 0;

    bool has(SnapKind kind) const { return (bits & static_cast<int>(kind)) != 0; }
    void set(SnapKind kind, bool on) {
        bits = on ? bits | static_cast<int>(kind) : bits & ~static_cast<int>(kind);
    }
};

struct Snap {
    SnapKind kind = SnapKind::end;
    host::Point3 at; // world
};

// The closest end, middle or intersection within the aperture of the place, else the nearest place
// on an object; nothing when no mode is on or no object is that close.
std::optional<Snap> findSnap(const drawing::Database& database, host::Point2 at, double aperture,
                             SnapModes modes);

} // namespace tessaran::desktop
