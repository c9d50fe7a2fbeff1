#pragma once

// Unit ratings combined over the bolted interval. Ratings and adjustments in points, lengths in ft;
// sources in cmrr/rating_tables.h.

#include <optional>
#include <span>

namespace tessaran::cmrr {

// One unit at one place.
struct Layer {
    double rating = 0.0;    // no value and kNotRated: it has none here
    double thickness = 0.0; // 0: the unit is absent here; below 0 or no value: unknown
    bool weakTop = false;   // a weak contact at its top
};

struct Conditions {
    double boltLength = 0.0;
    double groundWater = 0.0; // points
    double surcharge = 0.0;   // points
};

// How a rating came about: cmrr is the sum of the others.
struct Breakdown {
    int participating = 0; // units that take part
    double average = 0.0;  // over the bolted interval, by thickness
    double strongBed = 0.0;
    double contacts = 0.0; // for weak contacts between the participating units
    double groundWater = 0.0;
    double surcharge = 0.0;
    double cmrr = 0.0;
};

// By the number of weak contacts at the tops of all participating units but the last.
double contactAdjustment(int weakContacts);
// Index 1 dry, 2 damp, 3 light drip, 4 heavy drip, 5 flowing; linear between. Outside it counts as
// damp; no value gives not-a-number.
double groundWaterAdjustment(double index);
// 1: none; 2: overlying weak ground loads the roof; linear between.
double surchargeAdjustment(double index);

// The strongest of the participating units (at most five), upward from the immediate roof, carries
// the weaker ones. Its whole thickness counts, also where the bolts end in it; of equal ratings the
// upper unit is the strongest.
double strongBedAdjustment(std::span<const Layer> participating, double average);

// Nothing where a participating unit has no rating, a thickness that matters is not known, no unit
// is present, or a condition is not a number. Bolts that end within the first unit present: its
// rating with ground water and surcharge alone.
std::optional<Breakdown> combine(std::span<const Layer> upward, const Conditions& conditions);

} // namespace tessaran::cmrr
