#pragma once

// The in-seam laws as the sweep reads them: every material is at most three straight pieces over
// the strain e, joined at two breaks,
//   e < break1              slope0 e
//   break1 <= e < break2    base1 + slope1 (e - break1)
//   break2 <= e             base2
// in which open entries fit too (slope0 = 0, break1 just above a strain of 1). What does not fit, a
// contact stress and the exponential, has a base1 that is not a number: the sum shows it.

#include "stress/material.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tessaran::stress {

enum LawValue { kBreak1, kBreak2, kSlope0, kSlope1, kBase1, kBase2, kLawValues };

// Of an exponential base2 (exp(slope0 e) - 1), marked by a slope1 of 1.
using LawValues = std::array<double, kLawValues>;

inline constexpr std::uint8_t kNoLaw = 0;      // outside the seam: carries nothing
inline constexpr std::uint8_t kOpenLaw = 1;    // an open entry that remembers no contact
inline constexpr std::uint8_t kContactLaw = 2; // one that does
inline constexpr std::uint8_t kFirstMaterial = 3;

struct LawTable {
    static constexpr int kMost = 32;
    static constexpr int kRowLength = 8;
    // The same values twice: one value of all laws for lookups in registers, one law's values for
    // loads by element.
    alignas(64) std::array<std::array<double, kMost>, kLawValues> byValue{};
    alignas(64) std::array<std::array<double, kRowLength>, kMost> byLaw{};
    int count = 0;

    void add(const LawValues& values);
    // Few enough for a lookup in two registers of 8.
    bool isShort() const { return count <= 16; }
};

LawValues lawValues(const Material& material);

// The laws that every seam has: none, open, contact.
LawTable basicLaws();

} // namespace tessaran::stress
