#pragma once

// What each number of the roof data may be, and what is said where it is not. The texts, their
// irregular codes included, are the system's own.

#include "base/result.h"
#include "cmrr/unit.h"

#include <limits>
#include <string>
#include <string_view>

namespace tessaran::cmrr {

struct FieldCheck {
    std::string notNumber{};
    std::string outOfRange{};
    double lowest = 0.0;
    double highest = std::numeric_limits<double>::max();
    bool aboveLowest = false; // the lowest itself is out of range
};

// Units and sets are counted from 1.
FieldCheck unitRatingCheck(int unit);
FieldCheck thicknessCheck(int unit);
FieldCheck cohesionCheck(int set);
FieldCheck roughnessCheck(int set);
FieldCheck spacingCheck(int set);
FieldCheck persistenceCheck(int set);

extern const FieldCheck kUnitsCheck; // whole numbers
extern const FieldCheck kDiscontinuitiesCheck;
extern const FieldCheck kStrengthIndexCheck;
extern const FieldCheck kNoDiscontinuityCheck;
extern const FieldCheck kMoistureCheck;
extern const FieldCheck kDiametralIs50Check;
extern const FieldCheck kRqdCheck;
extern const FieldCheck kDiscontinuitySpacingCheck;
extern const FieldCheck kAxialIs50Check;
extern const FieldCheck kUcsCheck;
extern const FieldCheck kGroundWaterCheck;
extern const FieldCheck kSurchargeCheck;
extern const FieldCheck kBoltLengthCheck;

base::Result<void> check(const FieldCheck& field, const Number& number);
base::Result<double> readNumber(const FieldCheck& field, std::string_view text);
base::Result<int> readWhole(const FieldCheck& field, std::string_view text);

// The numbers in use, in the order of their dialogs; the first that fails.
base::Result<void> checkSets(const Observation& data);
base::Result<void> checkObservation(const Observation& data);
base::Result<void> checkCore(const CoreData& data);
base::Result<void> checkThickness(const CUnit& unit, int number);
// Thickness, and the rating or the data that it is computed from.
base::Result<void> checkUnit(const CUnit& unit, int number);
base::Result<void> checkFinal(const FinalData& data);

// A unit thinner than this is asked about.
inline constexpr double kThinUnit = 0.5; // ft
bool isThin(double thickness);
std::string thinUnitQuestion(int unit);

std::string missingRatingText(int unit);
inline constexpr const char* kRatingError =
    "There was an error calculating the unit rating - DDCUR-1";

} // namespace tessaran::cmrr
