#include "cmrr/rating_tables.h"
#include "cmrr/unit_rating.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tessaran::cmrr {
namespace {

// Each entry, since every rating comes from them.
TEST(RatingTables, HoldTheirEntries) {
    using Row = std::vector<double>;
    const auto row = [](int entries, const auto& entry) {
        Row values;
        for (int k = 1; k <= entries; ++k)
            values.push_back(entry(k));
        return values;
    };
    const std::vector<Row> cohesion{{35, 29, 24, 10}, {35, 27, 20, 10}, {35, 25, 16, 10}};
    for (int r = 1; r <= 3; ++r)
        EXPECT_EQ(row(4, [r](int c) { return DatArrays::cohesionRoughness(r, c); }),
                  cohesion[static_cast<std::size_t>(r) - 1]);
    const std::vector<Row> spacing{
        {35, 30, 24, 17, 9}, {32, 27, 21, 15, 9}, {30, 25, 20, 13, 9}, {30, 25, 20, 13, 9}};
    for (int r = 1; r <= 4; ++r)
        EXPECT_EQ(row(5, [r](int c) { return DatArrays::spacingPersistence(r, c); }),
                  spacing[static_cast<std::size_t>(r) - 1]);
    EXPECT_EQ(row(5, DatArrays::strengthIndex), (Row{30, 22, 15, 10, 5}));
    EXPECT_EQ(row(4, DatArrays::moistureSensitivity), (Row{0, -3, -7, -15}));
    EXPECT_EQ(row(3, [](int k) { return DatArrays::multipleSets(20.0 + 10.0 * k); }),
              (Row{-5, -4, -2}));
}

TEST(RatingTables, GiveEntriesAtWholeIndicesAndInterpolateBetween) {
    EXPECT_EQ(DatArrays::strengthIndex(1), 30);
    EXPECT_EQ(DatArrays::strengthIndex(5), 5);
    EXPECT_DOUBLE_EQ(DatArrays::strengthIndex(2.5), 18.5); // between 22 and 15
    EXPECT_EQ(DatArrays::moistureSensitivity(4), -15);
    EXPECT_DOUBLE_EQ(DatArrays::moistureSensitivity(3.25), -9.0);
    EXPECT_EQ(DatArrays::cohesionRoughness(2, 3), 20);
    EXPECT_EQ(DatArrays::cohesionRoughness(3, 4), 10);
    EXPECT_DOUBLE_EQ(DatArrays::cohesionRoughness(1.5, 3), 22.0); // 24, 20
    EXPECT_DOUBLE_EQ(DatArrays::cohesionRoughness(2, 2.25), 25.25);
    // Corners 29, 24 and 27, 20: 27.75 and 25.25 at a quarter, and half way between.
    EXPECT_DOUBLE_EQ(DatArrays::cohesionRoughness(1.5, 2.25), 26.5);
    EXPECT_EQ(DatArrays::spacingPersistence(1, 5), 9);
    EXPECT_EQ(DatArrays::spacingPersistence(2, 3), 21);
    EXPECT_DOUBLE_EQ(DatArrays::spacingPersistence(2.5, 1.5), 28.5); // 29.5, 27.5
    EXPECT_DOUBLE_EQ(DatArrays::multipleSets(30), -5);
    EXPECT_DOUBLE_EQ(DatArrays::multipleSets(35), -4.5);
    EXPECT_DOUBLE_EQ(DatArrays::multipleSets(45), -3);
    EXPECT_DOUBLE_EQ(DatArrays::multipleSets(50), -2);
}

TEST(RatingTables, GiveNothingOutside) {
    for (const double index : {0.99, 5.01, -1e300, 1e300, std::nan("")}) {
        EXPECT_TRUE(std::isnan(DatArrays::strengthIndex(index))) << index;
        EXPECT_TRUE(std::isnan(DatArrays::cohesionRoughness(2, index))) << index;
        EXPECT_TRUE(std::isnan(DatArrays::cohesionRoughness(index, 2))) << index;
    }
    EXPECT_TRUE(std::isnan(DatArrays::multipleSets(29)));
    EXPECT_TRUE(std::isnan(DatArrays::withoutDiscontinuities(0.9)));
}

TEST(RatingTables, WithoutDiscontinuitiesFollowTheirOwnWay) {
    EXPECT_EQ(DatArrays::withoutDiscontinuities(1), 70);
    EXPECT_EQ(DatArrays::withoutDiscontinuities(1.5), 51);
    EXPECT_EQ(DatArrays::withoutDiscontinuities(2), 40);
    EXPECT_EQ(DatArrays::withoutDiscontinuities(2.5), 32);
    EXPECT_EQ(DatArrays::withoutDiscontinuities(3), 25);
    EXPECT_EQ(DatArrays::withoutDiscontinuities(3.7), 25);
    EXPECT_DOUBLE_EQ(DatArrays::withoutDiscontinuities(1.25), 51 + 19 * 0.75);
    EXPECT_DOUBLE_EQ(DatArrays::withoutDiscontinuities(1.75), 40 + 11 * 1.25);
    EXPECT_DOUBLE_EQ(DatArrays::withoutDiscontinuities(2.25), 32 + 8 * 1.75);
    EXPECT_DOUBLE_EQ(DatArrays::withoutDiscontinuities(2.75), 25 + 7 * 2.25);
}

// --- observation --------------------------------------------------------------------------------

Observation withSets(std::initializer_list<DiscontinuitySet> sets) {
    Observation data;
    data.discontinuities = static_cast<int>(sets.size());
    std::copy(sets.begin(), sets.end(), data.sets.begin());
    data.moisture = 2.0; // -3
    return data;
}

constexpr DiscontinuitySet kWeakest{4.0, 2.0, 3.0, 3.0};  // 10 + 20 = 30
constexpr DiscontinuitySet kWeak{3.0, 3.0, 3.0, 3.0};     // 16 + 20 = 36
constexpr DiscontinuitySet kMiddle{2.0, 3.0, 3.0, 3.0};   // 25 + 20 = 45
constexpr DiscontinuitySet kMiddling{2.0, 2.0, 3.0, 2.0}; // 27 + 21 = 48
constexpr DiscontinuitySet kStrong{1.0, 1.0, 1.0, 1.0};   // 35 + 35 = 70

TEST(ObservedRating, OneSetCountsByItself) {
    EXPECT_EQ(setRating(kWeakest), 30);
    EXPECT_EQ(setRating(kMiddling), 48);
    EXPECT_EQ(observedBesideStrength(withSets({kStrong}), true), 67); // moisture: unit 1
    EXPECT_EQ(observedBesideStrength(withSets({kStrong}), false), 70);
}

TEST(ObservedRating, SetsAreSortedAndAdjusted) {
    // The lowest two, wherever they stand.
    EXPECT_EQ(observedBesideStrength(withSets({kStrong, kMiddling, kMiddle}), false), 40); // 45 - 5
    EXPECT_EQ(observedBesideStrength(withSets({kWeak, kStrong, kWeakest}), false), 26);    // 30 - 4
    EXPECT_EQ(observedBesideStrength(withSets({kStrong, kMiddle}), false), 45); // 70: no deduction
}

TEST(ObservedRating, AdjustmentStepsAreOpenAbove) {
    EXPECT_EQ(multipleSetAdjustment(25, 28), -2);
    EXPECT_EQ(multipleSetAdjustment(25, 30), -4);
    EXPECT_EQ(multipleSetAdjustment(35, 38), -4);
    EXPECT_EQ(multipleSetAdjustment(39.9, 40), -5);
    EXPECT_EQ(multipleSetAdjustment(45, 48), -5);
    EXPECT_EQ(multipleSetAdjustment(49.9, 50), 0);
}

TEST(ObservedRating, MoistureCountsInEveryUnitWithoutDiscontinuities) {
    Observation data = withSets({});
    data.noDiscontinuityIndex = 2.0;
    EXPECT_EQ(observedBesideStrength(data, true), 37);
    EXPECT_EQ(observedBesideStrength(data, false), 37);
}

TEST(ObservedRating, IsNothingWithoutItsNumbersOrOutOf100) {
    EXPECT_FALSE(observedBesideStrength(withSets({}), true));
    EXPECT_FALSE(observedBesideStrength(withSets({kStrong, {}}), true));
    EXPECT_EQ(withStrengthIndex(70, 1), 100);
    EXPECT_FALSE(withStrengthIndex(70.1, 1));
    EXPECT_EQ(withStrengthIndex(-5, 5), 0);
    EXPECT_FALSE(withStrengthIndex(-5.1, 5));
    EXPECT_FALSE(withStrengthIndex(50, 5.5));
}

// --- core ---------------------------------------------------------------------------------------

TEST(CoreRating, StrengthAtBelowAndAboveItsBreaks) {
    EXPECT_DOUBLE_EQ(strengthRating(1000), 6.5);
    EXPECT_DOUBLE_EQ(strengthRating(5000), 12.5);
    EXPECT_NEAR(strengthRating(5000.001), 12.4, 1e-5); // a step down
    EXPECT_DOUBLE_EQ(strengthRating(10000), 17.8);
    EXPECT_NEAR(strengthRating(21300), 30.004, 1e-9);
    EXPECT_EQ(strengthRating(21300.1), 30);
    EXPECT_EQ(strengthRating(50000), 30);
    EXPECT_DOUBLE_EQ(ucsFromIs50(300), 6300);
}

TEST(CoreRating, IntensityOfFractures) {
    EXPECT_NEAR(rqdRating(100), 36.754287, 1e-6);
    EXPECT_NEAR(rqdRating(1), -11.6, 1e-12);
    EXPECT_EQ(spacingRating(1), 24);
    EXPECT_NEAR(spacingRating(12), 38.0148735, 1e-6);
}

TEST(CoreRating, CohesionAtBelowAndAboveItsBreaks) {
    EXPECT_EQ(diametralRating(34.69), 25);
    EXPECT_NEAR(diametralRating(34.7), 24.9968, 1e-12);
    EXPECT_NEAR(diametralRating(186.999), 46.927856, 1e-9);
    EXPECT_NEAR(diametralRating(187), 46.948, 1e-12);
    EXPECT_NEAR(diametralRating(312.4), 59.9896, 1e-12);
    EXPECT_EQ(diametralRating(312.5), 60);
    EXPECT_EQ(diametralEstimateRating(DiametralEstimate::weak), 25);
    EXPECT_EQ(diametralEstimateRating(DiametralEstimate::moderate), 36);
    EXPECT_EQ(diametralEstimateRating(DiametralEstimate::strong), 48);
}

} // namespace
} // namespace tessaran::cmrr
