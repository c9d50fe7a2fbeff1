#include "cmrr/rating_tables.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

namespace tessaran::cmrr {
namespace {

constexpr double kOutside = std::numeric_limits<double>::quiet_NaN();

// The two entries around an index, which are one where it is whole, and the way between them.
struct Between {
    std::size_t low = 0;
    std::size_t high = 0;
    double fraction = 0.0;
};

Between between(double index) {
    const double low = std::floor(index);
    return {static_cast<std::size_t>(low) - 1, static_cast<std::size_t>(std::ceil(index)) - 1,
            index - low};
}

bool within(double index, std::size_t entries) {
    return index >= kLowestIndex && index <= static_cast<double>(entries);
}

double mix(double low, double high, double fraction) {
    return low + (high - low) * fraction;
}

double lookUp(std::span<const double> table, double index) {
    if (!within(index, table.size()))
        return kOutside;
    const Between at = between(index);
    return mix(table[at.low], table[at.high], at.fraction);
}

template <std::size_t Columns, std::size_t Rows>
double lookUp(const std::array<std::array<double, Columns>, Rows>& table, double row,
              double column) {
    if (!within(row, Rows) || !within(column, Columns))
        return kOutside;
    const Between at = between(row);
    return mix(lookUp(table[at.low], column), lookUp(table[at.high], column), at.fraction);
}

} // namespace

double DatArrays::cohesionRoughness(double roughness, double cohesion) {
    return lookUp(kCohesionRoughness, roughness, cohesion);
}

double DatArrays::spacingPersistence(double persistence, double spacing) {
    return lookUp(kSpacingPersistence, persistence, spacing);
}

double DatArrays::multipleSets(double key) {
    constexpr double kFirstKey = 30.0;
    constexpr double kKeyStep = 10.0;
    return lookUp(kMultipleSets, (key - kFirstKey) / kKeyStep + kLowestIndex);
}

double DatArrays::strengthIndex(double index) {
    return lookUp(kStrengthIndex, index);
}

double DatArrays::moistureSensitivity(double index) {
    return lookUp(kMoistureSensitivity, index);
}

double DatArrays::withoutDiscontinuities(double index) {
    constexpr double kStep = 0.5;
    if (!(index >= kLowestIndex))
        return kOutside;
    if (index >= kHighestNoDiscontinuity)
        return kWithoutDiscontinuities.back();
    const double steps = (index - kLowestIndex) / kStep;
    const auto step = static_cast<std::size_t>(steps);
    const double low = kWithoutDiscontinuities[step];
    if (steps == std::floor(steps)) // on a half step, exactly
        return low;
    const double high = kWithoutDiscontinuities[step + 1];
    return high - (high - low) * (static_cast<double>(step) + 2.0 - index);
}

} // namespace tessaran::cmrr
