#include "cmrr/field_checks.h"

#include "base/numbers.h"
#include "cmrr/rating_tables.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace tessaran::cmrr {
namespace {

using base::Result;

constexpr double kHighestRating = 100.0;
constexpr double kHighestGroundWater = 5.0;
constexpr double kHighestSurcharge = 2.0;

FieldCheck aboveZero(std::string notNumber, std::string outOfRange) {
    return {std::move(notNumber), std::move(outOfRange), 0.0, std::numeric_limits<double>::max(),
            true};
}

FieldCheck index(std::string notNumber, std::string outOfRange, double highest) {
    return {std::move(notNumber), std::move(outOfRange), kLowestIndex, highest, false};
}

// A set's number: "cohesion" with its letter "C", its last index, and the ends of its two texts.
struct SetField {
    const char* name;
    char letter;
    int highest;
    std::array<const char*, 2> thirdSet; // ends of set 3's texts
};

FieldCheck setCheck(const SetField& field, int set) {
    const std::string subject = fmt::format("The input for set {} {} must be ", set, field.name);
    const auto ending = [&](int which) {
        return set == 3 ? std::string(field.thirdSet[static_cast<std::size_t>(which)])
                        : fmt::format(" - S-CS{}{}-{}", set, field.letter, which + 1);
    };
    return index(subject + "a real number" + ending(0),
                 subject + fmt::format("between 1 and {}", field.highest) + ending(1),
                 field.highest);
}

bool inRange(const FieldCheck& field, double value) {
    return value <= field.highest &&
           (field.aboveLowest ? value > field.lowest : value >= field.lowest);
}

Result<void> checkInput(const FieldCheck& field, const Input& input) {
    return input.fromFile ? Result<void>{} : check(field, input.constant);
}

// The first failure of several checks, each made only while the earlier ones held.
class FirstFailure {
  public:
    FirstFailure& operator()(const Result<void>& result) {
        if (first_ && !result)
            first_ = result;
        return *this;
    }
    const Result<void>& result() const { return first_; }

  private:
    Result<void> first_;
};

} // namespace

const FieldCheck kUnitsCheck =
    index("The input for the number of units must be an integer "
          "UD-OKENU-1",
          "The number of sets must be between 1 and 5 UD-OKENU-2", kMostUnits);
const FieldCheck kDiscontinuitiesCheck{"The input for the number of sets must be an integer - "
                                       "D-OKED-1",
                                       "The number of sets must be between 0 and 3 - D-OKED-1", 0.0,
                                       kMostSets, false};
const FieldCheck kStrengthIndexCheck = index(
    "The input for the strength index must be a real number - D-CSI-1",
    "The input for the strength index must be between 1 and 5 - D-CSI-2", kHighestStrengthIndex);
const FieldCheck kNoDiscontinuityCheck =
    index("The input for the no-discontinuity index must be a real number - D-CND-1",
          "The input for the no-discontinuity index must be between 1 and 3 - D-CND-2",
          kHighestNoDiscontinuity);
const FieldCheck kMoistureCheck =
    index("The input for the moisture must be a real number - CL-CM-1",
          "The input for the moisture must be between 1 and 4 - CL-CM-2", kHighestMoistureIndex);
const FieldCheck kDiametralIs50Check =
    aboveZero("The input for Is must be a real number - CL-CI-1",
              "The input for Is must be greater than zero - CL-CI-2");
const FieldCheck kRqdCheck = aboveZero("The input for the RQD must be a real number - CL-CR-1",
                                       "The input for the RQD must be greater than zero - CL-CR-2");
const FieldCheck kDiscontinuitySpacingCheck =
    aboveZero("The input for the Discontinuity Spacing must be a real number - CL-CD-1",
              "The input for the Discontinuity Spacing must be greater than zero - CL-CD-2");
const FieldCheck kAxialIs50Check =
    aboveZero("The input for Is50 must be a real number - CL-CI5-1",
              "The input for Is50 must be greater than zero - CL-CI5-2");
const FieldCheck kUcsCheck = aboveZero("The input for Is must be a real number - CL-CU-1",
                                       "The input for Is must be greater than zero - CL-CU-2");
const FieldCheck kGroundWaterCheck =
    index("The input for the ground water must be a real number - F-CGW-1",
          "The input for the ground water must be between 1 and 5 - F-CGW-2", kHighestGroundWater);
const FieldCheck kSurchargeCheck =
    index("The input for the surcharge must be a real number - F-CS-1",
          "The input for the surcharge must be between 1 and 2 - F-CS-2", kHighestSurcharge);
const FieldCheck kBoltLengthCheck =
    aboveZero("The input for the bolt must be a real number - F-CB-1",
              "The input for the bolt length must be greater than zero - F-CB-2");

FieldCheck unitRatingCheck(int unit) {
    return index(
        fmt::format("The input for the unit rating {0} must be a real number UD-CR{0}-1", unit),
        fmt::format("The input for the unit rating {0} must be between 1 and 100 "
                    "UD-CR{0}-2",
                    unit),
        kHighestRating);
}

FieldCheck thicknessCheck(int unit) {
    // Two of the texts have no dash before the code.
    const char* numberDash = unit == 4 ? " " : " - ";
    const char* rangeDash = unit == 3 ? " " : " - ";
    return aboveZero(
        fmt::format("The input for the thickness {0} must be a real number{1}UD-CT{0}-1", unit,
                    numberDash),
        fmt::format("The input for the thickness {0} must be greater than zero{1}UD-CT{0}-2", unit,
                    rangeDash));
}

FieldCheck cohesionCheck(int set) {
    return setCheck({"cohesion", 'C', 4, {" - S-CS2C-1", " S-CS2C-2"}}, set);
}

FieldCheck roughnessCheck(int set) {
    return setCheck({"roughness", 'R', 3, {" - S-CS2R-1", " - S-CS2R-2"}}, set);
}

FieldCheck spacingCheck(int set) {
    return setCheck({"spacing", 'S', 3, {"", " - S-CS3S-1"}}, set);
}

FieldCheck persistenceCheck(int set) {
    return setCheck({"persistance", 'P', 3, {" - S-CS3P-1", " - S-CS3P-2"}}, set);
}

Result<void> check(const FieldCheck& field, const Number& number) {
    if (!number || !std::isfinite(*number))
        return base::formatError(field.notNumber);
    return inRange(field, *number) ? Result<void>{} : base::rangeError(field.outOfRange);
}

Result<double> readNumber(const FieldCheck& field, std::string_view text) {
    const Number number = base::wholeDouble(text);
    const Result<void> checked = check(field, number);
    return checked ? Result<double>(*number) : checked.error();
}

Result<int> readWhole(const FieldCheck& field, std::string_view text) {
    const std::optional<long long> number = base::wholeInt(text);
    if (!number)
        return base::formatError(field.notNumber);
    if (!inRange(field, static_cast<double>(*number)))
        return base::rangeError(field.outOfRange);
    return static_cast<int>(*number);
}

Result<void> checkSets(const Observation& data) {
    FirstFailure first;
    for (int s = 1; s <= data.discontinuities; ++s) {
        const DiscontinuitySet& set = data.sets[static_cast<std::size_t>(s) - 1];
        first(check(cohesionCheck(s), set.cohesion));
        first(check(roughnessCheck(s), set.roughness));
        first(check(spacingCheck(s), set.spacing));
        first(check(persistenceCheck(s), set.persistence));
    }
    return first.result();
}

Result<void> checkObservation(const Observation& data) {
    FirstFailure first;
    first(checkInput(kStrengthIndexCheck, data.strengthIndex));
    first(check(kDiscontinuitiesCheck, static_cast<double>(data.discontinuities)));
    if (data.discontinuities == 0)
        first(check(kNoDiscontinuityCheck, data.noDiscontinuityIndex));
    first(check(kMoistureCheck, data.moisture));
    if (first.result())
        first(checkSets(data));
    return first.result();
}

Result<void> checkCore(const CoreData& data) {
    FirstFailure first;
    if (data.diametralTest == DiametralTest::is50)
        first(checkInput(kDiametralIs50Check, data.diametralIs50));
    if (data.fractures == Fractures::rqd)
        first(checkInput(kRqdCheck, data.rqd));
    if (data.fractures == Fractures::spacing)
        first(checkInput(kDiscontinuitySpacingCheck, data.spacing));
    const bool ucs = data.axialTest == AxialTest::ucs;
    first(checkInput(ucs ? kUcsCheck : kAxialIs50Check, ucs ? data.ucs : data.axialIs50));
    first(check(kMoistureCheck, data.moisture));
    return first.result();
}

Result<void> checkThickness(const CUnit& unit, int number) {
    return checkInput(thicknessCheck(number), unit.thickness);
}

Result<void> checkUnit(const CUnit& unit, int number) {
    FirstFailure first;
    first(checkThickness(unit, number));
    if (unit.ratingSource == RatingSource::typed || unit.rating)
        first(check(unitRatingCheck(number), unit.rating));
    if (unit.ratingSource == RatingSource::computed)
        first(unit.type == DataType::core ? checkCore(unit.core)
                                          : checkObservation(unit.observation));
    if (unit.ratingSource == RatingSource::none)
        first(base::stateError(missingRatingText(number)));
    return first.result();
}

Result<void> checkFinal(const FinalData& data) {
    FirstFailure first;
    first(checkInput(kGroundWaterCheck, data.groundWater));
    first(check(kSurchargeCheck, data.surcharge));
    first(check(kBoltLengthCheck, data.boltLength));
    return first.result();
}

bool isThin(double thickness) {
    return thickness > 0.0 && thickness < kThinUnit;
}

std::string thinUnitQuestion(int unit) {
    return fmt::format("The thickness that has been entered for unit {} is less than the "
                       "recommended 1/2\nfoot. Unless this unit is very strong it should not be "
                       "considered an individual unit.\nWould you like to continue with this unit?",
                       unit);
}

std::string missingRatingText(int unit) {
    return fmt::format("The CMRR could not be calculated. Unit rating {} was not availible - "
                       "DDGCC-2",
                       unit);
}

} // namespace tessaran::cmrr
