#include "cmrr/unit_rating.h"

#include "cmrr/rating_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tessaran::cmrr {
namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

double orMissing(const Number& number) {
    return number.value_or(kMissing);
}

std::optional<double> ifNumber(double value) {
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

// --- underground observation --------------------------------------------------------------------

double setRating(const DiscontinuitySet& set) {
    return DatArrays::cohesionRoughness(orMissing(set.roughness), orMissing(set.cohesion)) +
           DatArrays::spacingPersistence(orMissing(set.persistence), orMissing(set.spacing));
}

// The weaker the two sets, the smaller the deduction: the lowest rating says most of it already.
double multipleSetAdjustment(double lowest, double second) {
    struct Step {
        double below;
        double key;
    };
    static constexpr std::array kSteps{Step{30.0, 50.0}, Step{40.0, 40.0}, Step{50.0, 30.0}};
    for (const Step& step : kSteps)
        if (lowest < step.below && second < step.below)
            return DatArrays::multipleSets(step.key);
    return 0.0;
}

std::optional<double> observedBesideStrength(const Observation& data, bool immediateRoof) {
    const double moisture = DatArrays::moistureSensitivity(orMissing(data.moisture));
    const auto count = static_cast<std::size_t>(std::clamp(data.discontinuities, 0, kMostSets));
    if (count == 0)
        return ifNumber(DatArrays::withoutDiscontinuities(orMissing(data.noDiscontinuityIndex)) +
                        moisture);
    std::array<double, kMostSets> ratings{};
    for (std::size_t s = 0; s < count; ++s) {
        ratings[s] = setRating(data.sets[s]);
        if (!std::isfinite(ratings[s]))
            return std::nullopt;
    }
    std::sort(ratings.begin(), ratings.begin() + static_cast<std::ptrdiff_t>(count));
    const double adjustment = count >= 2 ? multipleSetAdjustment(ratings[0], ratings[1]) : 0.0;
    return ifNumber(ratings[0] + adjustment + (immediateRoof ? moisture : 0.0));
}

std::optional<double> withStrengthIndex(double besideStrength, double strengthIndex) {
    const double rating = besideStrength + DatArrays::strengthIndex(strengthIndex);
    const bool rated = rating >= kLowestObserved && rating <= kHighestObserved;
    return rated ? std::optional(rating) : std::nullopt;
}

// --- drill core ---------------------------------------------------------------------------------

double ucsFromIs50(double is50) {
    constexpr double kUcsToIs50 = 21.0; // coal measure rocks
    return kUcsToIs50 * is50;
}

double strengthRating(double ucs) {
    constexpr double kPerThousand = 1000.0; // the slopes are points per 1000 psi
    if (ucs <= 5000.0)
        return ucs / kPerThousand * 1.5 + 5.0;
    if (ucs <= 21300.0)
        return ucs / kPerThousand * 1.08 + 7.0;
    return 30.0;
}

double rqdRating(double percent) {
    return 10.5 * std::log(percent) - 11.6;
}

double spacingRating(double inches) {
    return 5.64 * std::log(inches) + 24.0;
}

double diametralRating(double is50) {
    if (is50 < 34.7)
        return 25.0;
    if (is50 < 187.0)
        return 0.144 * is50 + 20.0;
    if (is50 < 312.5)
        return 0.104 * is50 + 27.5;
    return 60.0;
}

double diametralEstimateRating(DiametralEstimate estimate) {
    switch (estimate) {
    case DiametralEstimate::weak:
        return 25.0;
    case DiametralEstimate::moderate:
        return 36.0;
    case DiametralEstimate::strong:
        break;
    }
    return 48.0;
}

} // namespace tessaran::cmrr
