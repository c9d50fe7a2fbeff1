// What is said of numbers that cannot be meant. People look the codes up, so every text counts.

#include "cmrr/field_checks.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tessaran::cmrr {
namespace {

std::string both(const FieldCheck& field) {
    return field.notNumber + "|" + field.outOfRange;
}

TEST(FieldChecks, SayWhatIsWrongWithTheirCodes) {
    const std::vector<std::pair<const FieldCheck*, const char*>> texts{
        {&kUnitsCheck, "The input for the number of units must be an integer UD-OKENU-1|"
                       "The number of sets must be between 1 and 5 UD-OKENU-2"},
        {&kDiscontinuitiesCheck, "The input for the number of sets must be an integer - D-OKED-1|"
                                 "The number of sets must be between 0 and 3 - D-OKED-1"},
        {&kStrengthIndexCheck, "The input for the strength index must be a real number - D-CSI-1|"
                               "The input for the strength index must be between 1 and 5 - "
                               "D-CSI-2"},
        {&kNoDiscontinuityCheck,
         "The input for the no-discontinuity index must be a real number - D-CND-1|"
         "The input for the no-discontinuity index must be between 1 and 3 - D-CND-2"},
        {&kMoistureCheck, "The input for the moisture must be a real number - CL-CM-1|"
                          "The input for the moisture must be between 1 and 4 - CL-CM-2"},
        {&kDiametralIs50Check, "The input for Is must be a real number - CL-CI-1|"
                               "The input for Is must be greater than zero - CL-CI-2"},
        {&kRqdCheck, "The input for the RQD must be a real number - CL-CR-1|"
                     "The input for the RQD must be greater than zero - CL-CR-2"},
        {&kDiscontinuitySpacingCheck,
         "The input for the Discontinuity Spacing must be a real number - CL-CD-1|"
         "The input for the Discontinuity Spacing must be greater than zero - CL-CD-2"},
        {&kAxialIs50Check, "The input for Is50 must be a real number - CL-CI5-1|"
                           "The input for Is50 must be greater than zero - CL-CI5-2"},
        {&kUcsCheck, "The input for Is must be a real number - CL-CU-1|"
                     "The input for Is must be greater than zero - CL-CU-2"},
        {&kGroundWaterCheck, "The input for the ground water must be a real number - F-CGW-1|"
                             "The input for the ground water must be between 1 and 5 - F-CGW-2"},
        {&kSurchargeCheck, "The input for the surcharge must be a real number - F-CS-1|"
                           "The input for the surcharge must be between 1 and 2 - F-CS-2"},
        {&kBoltLengthCheck, "The input for the bolt must be a real number - F-CB-1|"
                            "The input for the bolt length must be greater than zero - F-CB-2"},
    };
    for (const auto& [field, text] : texts)
        EXPECT_EQ(both(*field), text);
}

TEST(FieldChecks, SayItForEachUnit) {
    for (const int n : {1, 2, 3, 4, 5}) {
        EXPECT_EQ(both(unitRatingCheck(n)),
                  fmt::format("The input for the unit rating {0} must be a real number UD-CR{0}-1|"
                              "The input for the unit rating {0} must be between 1 and 100 "
                              "UD-CR{0}-2",
                              n));
        if (n == 3 || n == 4)
            continue;
        EXPECT_EQ(both(thicknessCheck(n)),
                  fmt::format("The input for the thickness {0} must be a real number - UD-CT{0}-1|"
                              "The input for the thickness {0} must be greater than zero - "
                              "UD-CT{0}-2",
                              n));
    }
    EXPECT_EQ(both(thicknessCheck(3)),
              "The input for the thickness 3 must be a real number - UD-CT3-1|"
              "The input for the thickness 3 must be greater than zero UD-CT3-2");
    EXPECT_EQ(both(thicknessCheck(4)),
              "The input for the thickness 4 must be a real number UD-CT4-1|"
              "The input for the thickness 4 must be greater than zero - UD-CT4-2");
}

TEST(FieldChecks, SayItForEachSetAndIrregularlyForTheThird) {
    const auto regular = [](int set, const char* name, char letter, int highest) {
        return fmt::format("The input for set {0} {1} must be a real number - S-CS{0}{2}-1|"
                           "The input for set {0} {1} must be between 1 and {3} - S-CS{0}{2}-2",
                           set, name, letter, highest);
    };
    for (const int s : {1, 2}) {
        EXPECT_EQ(both(cohesionCheck(s)), regular(s, "cohesion", 'C', 4));
        EXPECT_EQ(both(roughnessCheck(s)), regular(s, "roughness", 'R', 3));
        EXPECT_EQ(both(spacingCheck(s)), regular(s, "spacing", 'S', 3));
        EXPECT_EQ(both(persistenceCheck(s)), regular(s, "persistance", 'P', 3));
    }
    EXPECT_EQ(both(cohesionCheck(3)),
              "The input for set 3 cohesion must be a real number - S-CS2C-1|"
              "The input for set 3 cohesion must be between 1 and 4 S-CS2C-2");
    EXPECT_EQ(both(roughnessCheck(3)),
              "The input for set 3 roughness must be a real number - S-CS2R-1|"
              "The input for set 3 roughness must be between 1 and 3 - S-CS2R-2");
    EXPECT_EQ(both(spacingCheck(3)),
              "The input for set 3 spacing must be a real number|"
              "The input for set 3 spacing must be between 1 and 3 - S-CS3S-1");
    EXPECT_EQ(both(persistenceCheck(3)), regular(3, "persistance", 'P', 3));
}

TEST(FieldChecks, HoldTheEndsOfTheirRanges) {
    struct Ends {
        FieldCheck field;
        const char* lowest;
        const char* below;
        const char* highest;
        const char* above;
    };
    for (const Ends& ends : {Ends{kMoistureCheck, "1", "0.99", "4", "4.01"},
                             Ends{kStrengthIndexCheck, "1", "0.99", "5", "5.01"},
                             Ends{kNoDiscontinuityCheck, "1", "0.99", "3", "3.01"},
                             Ends{cohesionCheck(2), "1", "0.99", "4", "4.01"},
                             Ends{roughnessCheck(2), "1", "0.99", "3", "3.01"},
                             Ends{spacingCheck(2), "1", "0.99", "3", "3.01"},
                             Ends{persistenceCheck(2), "1", "0.99", "3", "3.01"},
                             Ends{kGroundWaterCheck, "1", "0.99", "5", "5.01"},
                             Ends{kSurchargeCheck, "1", "0.99", "2", "2.01"},
                             Ends{unitRatingCheck(2), "1", "0.99", "100", "100.01"},
                             Ends{kRqdCheck, "1e-9", "0", "1e9", "-1"},
                             Ends{kBoltLengthCheck, "1e-9", "0", "1e9", "-1"}}) {
        SCOPED_TRACE(ends.field.outOfRange);
        EXPECT_TRUE(readNumber(ends.field, ends.lowest));
        EXPECT_TRUE(readNumber(ends.field, ends.highest));
        EXPECT_EQ(readNumber(ends.field, ends.below).error().text, ends.field.outOfRange);
        EXPECT_EQ(readNumber(ends.field, ends.above).error().text, ends.field.outOfRange);
    }
    EXPECT_TRUE(readNumber(kMoistureCheck, " 4 "));
    for (const char* text : {"", "x", "1 2", "nan", "inf", "1e400"})
        EXPECT_EQ(readNumber(kRqdCheck, text).error().text, kRqdCheck.notNumber) << text;
    EXPECT_EQ(readWhole(kUnitsCheck, "2.5").error().text, kUnitsCheck.notNumber);
    EXPECT_EQ(readWhole(kUnitsCheck, "6").error().text, kUnitsCheck.outOfRange);
    EXPECT_EQ(readWhole(kUnitsCheck, "0").error().text, kUnitsCheck.outOfRange);
    EXPECT_EQ(readWhole(kDiscontinuitiesCheck, "4").error().text, kDiscontinuitiesCheck.outOfRange);
    EXPECT_EQ(*readWhole(kDiscontinuitiesCheck, "0"), 0);
}

} // namespace
} // namespace tessaran::cmrr
