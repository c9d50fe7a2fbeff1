#pragma once

// The rating tables of the Coal Mine Roof Rating. The method: Molinda & Mark (1994), "Coal Mine
// Roof Rating (CMRR): a practical rock mass classification for coal mines"; from drill core: Mark &
// Molinda (2005), "The Coal Mine Roof Rating: a decade of experience". The values are this system's
// own. Ratings are points; indices are dimensionless and run from 1.

#include <array>

namespace tessaran::cmrr {

inline constexpr double kLowestIndex = 1.0;
inline constexpr double kHighestStrengthIndex = 5.0;
inline constexpr double kHighestMoistureIndex = 4.0;
inline constexpr double kHighestCohesion = 4.0;
inline constexpr double kHighestRoughness = 3.0;
inline constexpr double kHighestSpacing = 3.0;     // as entered; the table goes on to 5
inline constexpr double kHighestPersistence = 3.0; // as entered; the table goes on to 4
inline constexpr double kHighestNoDiscontinuity = 3.0;

// Fixed contents, only read. Whole indices give the entry, others interpolate linearly, in two
// dimensions bilinearly. An index outside its table gives not-a-number.
class DatArrays {
  public:
    static double cohesionRoughness(double roughness, double cohesion);
    static double spacingPersistence(double persistence, double spacing);
    // Keys 30 to 50.
    static double multipleSets(double key);
    static double strengthIndex(double index);
    static double moistureSensitivity(double index);
    // Index 1 to 3 in half steps. Between the half steps the value is not the interpolated one: the
    // fraction is taken as (whole steps + 1) - index, and so lies between 1/2 and 1 below 1.5, and
    // up to 2.5 below 3. From 3 on it is the last entry.
    static double withoutDiscontinuities(double index);

  private:
    // Row: roughness 1..3; column: cohesion 1..4.
    static constexpr std::array<std::array<double, 4>, 3> kCohesionRoughness{{
        {35, 29, 24, 10},
        {35, 27, 20, 10},
        {35, 25, 16, 10},
    }};
    // Row: persistence 1..4; column: spacing 1..5.
    static constexpr std::array<std::array<double, 5>, 4> kSpacingPersistence{{
        {35, 30, 24, 17, 9},
        {32, 27, 21, 15, 9},
        {30, 25, 20, 13, 9},
        {30, 25, 20, 13, 9},
    }};
    static constexpr std::array<double, 3> kMultipleSets{-5, -4, -2}; // keys 30, 40, 50
    static constexpr std::array<double, 5> kStrengthIndex{30, 22, 15, 10, 5};
    static constexpr std::array<double, 4> kMoistureSensitivity{0, -3, -7, -15};
    // Index 1, 1.5, 2, 2.5, 3.
    static constexpr std::array<double, 5> kWithoutDiscontinuities{70, 51, 40, 32, 25};
};

} // namespace tessaran::cmrr
