#pragma once

// Every tolerance of the system.

namespace tessaran::base {

// Zero, equality and too-small-range tests throughout: areas, distances, bounds, weights, divisors.
inline constexpr double kTolerance = 1e-10;

// A grid is defined only with cell widths above this, drawing units.
inline constexpr double kSmallestCellWidth = 0.0001;

// A cell value of this or less means that the cell has no value.
inline constexpr double kNoValue = -1e20;

// Chords stand in for arcs no farther from them than this share of the radius or range in use.
inline constexpr double kArcSag = 1e-3;

// Whether a stored cell value is one: not "no value" and not not-a-number.
inline bool hasValue(double value) {
    return value > kNoValue;
}

} // namespace tessaran::base
