#pragma once

// The rating of one rock unit, from what is seen underground or from drill core. Points; sources in
// cmrr/rating_tables.h.

#include "cmrr/unit.h"

#include <optional>
#include <span>

namespace tessaran::cmrr {

// A cell that has inputs and no rating: an input out of what can be rated.
inline constexpr double kNotRated = -999.0;

inline constexpr double kLowestObserved = 0.0; // of a rating from observation
inline constexpr double kHighestObserved = 100.0;

// --- underground observation

// Cohesion with roughness, and spacing with persistence. Not-a-number for an incomplete set.
double setRating(const DiscontinuitySet& set);

// For the two lowest set ratings.
double multipleSetAdjustment(double lowest, double second);

// The rating without the strength index's part: nothing when a number that it needs is missing or
// outside its table. The moisture sensitivity counts in the set-based rating of the immediate roof
// only, but in every rating without discontinuities.
std::optional<double> observedBesideStrength(const Observation& data, bool immediateRoof);

// With it; nothing also when it is not within 0 to 100.
std::optional<double> withStrengthIndex(double besideStrength, double strengthIndex);

// --- drill core

double ucsFromIs50(double is50); // psi

double strengthRating(double ucs);                 // psi
double rqdRating(double percent);                  // above zero
double spacingRating(double inches);               // above zero
double diametralRating(double is50);               // psi
double diametralEstimateRating(DiametralEstimate); // where there is no test

} // namespace tessaran::cmrr
