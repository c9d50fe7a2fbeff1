#include "cmrr/combination.h"

#include "base/check.h"
#include "base/tolerance.h"
#include "cmrr/unit.h"
#include "cmrr/unit_rating.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tessaran::cmrr {
namespace {

constexpr std::array<double, 6> kContacts{0.0, -2.0, -2.0, -4.0, -4.0, -5.0}; // 0 to 5 and more
constexpr std::array<double, 5> kGroundWater{0.0, -2.0, -4.0, -7.0, -10.0};   // index 1 to 5
constexpr double kDamp = 2.0;
constexpr double kFullSurcharge = -5.0; // at index 2

// Strong bed: where it begins to count, how thick it counts at most, and how its height above the
// roof line takes from it.
constexpr double kStrongBedAbove = 5.0; // points above the average
constexpr double kStrongBedThinnest = 1.0;
constexpr double kStrongBedThickest = 4.0;
constexpr double kStrongBedLowest = 1.7;
constexpr double kStrongBedHighest = 8.5;
constexpr double kStrongBedPerFoot = 0.1;
constexpr double kStrongBedGain = 0.22;
constexpr double kStrongBedOffset = 2.5;

bool hasRating(double rating) {
    return base::hasValue(rating) && rating != kNotRated;
}

// The units present upward to the one in which the bolts end.
struct Interval {
    std::array<Layer, kMostUnits> units{};
    std::size_t count = 0;
    double below = 0.0; // thickness below the last of them
    double total = 0.0; // with it

    std::span<const Layer> span() const { return {units.data(), count}; }
};

std::optional<Interval> boltedInterval(std::span<const Layer> upward, double boltLength) {
    TESSARAN_CHECK(upward.size() <= kMostUnits);
    Interval interval;
    for (const Layer& layer : upward) {
        if (layer.thickness == 0.0)
            continue;
        if (!base::hasValue(layer.thickness) || layer.thickness < 0.0 || !hasRating(layer.rating))
            return std::nullopt;
        interval.units[interval.count++] = layer;
        interval.below = interval.total;
        interval.total += layer.thickness;
        if (interval.total >= boltLength)
            break;
    }
    return interval.count > 0 ? std::optional(interval) : std::nullopt;
}

double averageOf(const Interval& interval, double boltLength) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < interval.count; ++i)
        sum += interval.units[i].rating * interval.units[i].thickness;
    const double reached = std::min(boltLength, interval.total);
    sum += interval.units[interval.count - 1].rating * (reached - interval.below);
    return sum / reached;
}

int weakContactsIn(const Interval& interval) {
    int weak = 0;
    for (std::size_t i = 0; i + 1 < interval.count; ++i)
        weak += interval.units[i].weakTop ? 1 : 0;
    return weak;
}

} // namespace

double contactAdjustment(int weakContacts) {
    const int last = static_cast<int>(kContacts.size()) - 1;
    return kContacts[static_cast<std::size_t>(std::clamp(weakContacts, 0, last))];
}

double groundWaterAdjustment(double index) {
    if (!base::hasValue(index))
        return std::numeric_limits<double>::quiet_NaN();
    const double lastIndex = static_cast<double>(kGroundWater.size());
    const double from1 = (index >= 1.0 && index <= lastIndex ? index : kDamp) - 1.0;
    const auto low = static_cast<std::size_t>(from1);
    const std::size_t high = std::min(low + 1, kGroundWater.size() - 1);
    return kGroundWater[low] +
           (kGroundWater[high] - kGroundWater[low]) * (from1 - static_cast<double>(low));
}

double surchargeAdjustment(double index) {
    return kFullSurcharge * (index - 1.0);
}

double strongBedAdjustment(std::span<const Layer> participating, double average) {
    std::size_t strongest = 0;
    double below = 0.0;
    double base = 0.0; // height of the strongest unit's base above the roof line
    for (std::size_t i = 0; i < participating.size(); ++i) {
        if (participating[i].rating >= participating[strongest].rating) {
            strongest = i;
            base = below;
        }
        below += participating[i].thickness;
    }
    const Layer& bed = participating[strongest];
    const double above = bed.rating - average;
    if (above <= kStrongBedAbove || bed.thickness < kStrongBedThinnest)
        return 0.0;
    const double thickness = std::min(bed.thickness, kStrongBedThickest);
    const double depth = std::clamp(base, kStrongBedLowest, kStrongBedHighest);
    return (1.0 - (depth - kStrongBedLowest) * kStrongBedPerFoot) *
           (above * kStrongBedGain * thickness - kStrongBedOffset);
}

std::optional<Breakdown> combine(std::span<const Layer> upward, const Conditions& conditions) {
    const auto interval = boltedInterval(upward, conditions.boltLength);
    if (!interval || !std::isfinite(conditions.groundWater) || !std::isfinite(conditions.surcharge))
        return std::nullopt;
    Breakdown result;
    result.participating = static_cast<int>(interval->count);
    result.groundWater = conditions.groundWater;
    result.surcharge = conditions.surcharge;
    const bool withinFirst = conditions.boltLength <= interval->units[0].thickness;
    if (withinFirst) {
        result.average = interval->units[0].rating;
    } else {
        result.average = averageOf(*interval, conditions.boltLength);
        result.strongBed = strongBedAdjustment(interval->span(), result.average);
        result.contacts = contactAdjustment(weakContactsIn(*interval));
    }
    result.cmrr =
        result.average + result.strongBed + result.contacts + result.groundWater + result.surcharge;
    return result;
}

} // namespace tessaran::cmrr
