#include "base/tolerance.h"
#include "cmrr/combination.h"
#include "cmrr/unit_rating.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tessaran::cmrr {
namespace {

using Layers = std::vector<Layer>;

constexpr double kNone = base::kNoValue;

Breakdown rated(const Layers& layers, double bolt, double water = 0.0, double surcharge = 0.0) {
    const auto result = combine(layers, {bolt, water, surcharge});
    EXPECT_TRUE(result.has_value());
    return result.value_or(Breakdown{});
}

TEST(Combination, BoltLengthAtBelowAndAboveUnitBorders) {
    const Layers layers{{40, 2, false}, {44, 3, false}, {42, 5, false}};
    EXPECT_EQ(rated(layers, 1).average, 40); // within unit 1: alone
    EXPECT_EQ(rated(layers, 2).average, 40);
    EXPECT_EQ(rated(layers, 2).participating, 1);
    EXPECT_DOUBLE_EQ(rated(layers, 4).average, (40 * 2 + 44 * 2) / 4.0);
    EXPECT_DOUBLE_EQ(rated(layers, 5).average, (40 * 2 + 44 * 3) / 5.0);
    EXPECT_EQ(rated(layers, 5).participating, 2);
    EXPECT_DOUBLE_EQ(rated(layers, 5.5).average, (40 * 2 + 44 * 3 + 42 * 0.5) / 5.5);
    EXPECT_EQ(rated(layers, 5.5).participating, 3);
    const double whole = (40 * 2 + 44 * 3 + 42 * 5) / 10.0;
    EXPECT_DOUBLE_EQ(rated(layers, 10).average, whole);
    EXPECT_DOUBLE_EQ(rated(layers, 25).average, whole); // not more than there is
}

TEST(Combination, SingleUnitTakesWaterAndSurchargeAlone) {
    const Layers layers{{40, 6, true}, {90, 6, true}};
    const Breakdown result = rated(layers, 6, -4, -5);
    EXPECT_EQ(result.cmrr, 31);
    EXPECT_EQ(result.contacts, 0);
    EXPECT_EQ(result.strongBed, 0);
}

TEST(Combination, WeakContactsCountBelowTheLastUnit) {
    Layers layers{{40, 2, true}, {42, 2, false}, {41, 2, true}, {43, 2, true}, {40, 2, true}};
    EXPECT_EQ(rated(layers, 10).contacts, -4); // three of them; the top of unit 5 does not count
    EXPECT_EQ(rated(layers, 6).contacts, -2);  // unit 3 is the last
    EXPECT_EQ(rated(layers, 4).contacts, -2);
    layers[0].weakTop = false;
    EXPECT_EQ(rated(layers, 4).contacts, 0);
    EXPECT_EQ(contactAdjustment(0), 0);
    EXPECT_EQ(contactAdjustment(1), -2);
    EXPECT_EQ(contactAdjustment(2), -2);
    EXPECT_EQ(contactAdjustment(3), -4);
    EXPECT_EQ(contactAdjustment(4), -4);
    EXPECT_EQ(contactAdjustment(9), -5);
}

TEST(Combination, WaterAndSurchargeAreLinearBetween) {
    EXPECT_EQ(groundWaterAdjustment(1), 0);
    EXPECT_EQ(groundWaterAdjustment(2), -2);
    EXPECT_EQ(groundWaterAdjustment(3), -4);
    EXPECT_EQ(groundWaterAdjustment(4), -7);
    EXPECT_EQ(groundWaterAdjustment(5), -10);
    EXPECT_DOUBLE_EQ(groundWaterAdjustment(3.5), -5.5);
    EXPECT_EQ(groundWaterAdjustment(0.99), -2); // damp
    EXPECT_EQ(groundWaterAdjustment(5.01), -2);
    EXPECT_TRUE(std::isnan(groundWaterAdjustment(kNone)));
    EXPECT_EQ(surchargeAdjustment(1), 0);
    EXPECT_EQ(surchargeAdjustment(1.5), -2.5);
    EXPECT_EQ(surchargeAdjustment(2), -5);
}

TEST(StrongBed, CountsAboveTheAverageByThicknessAndHeight) {
    // Unit 2 begins at 2 ft: 0.97 of (20 x 0.22 x 3 - 2.5).
    EXPECT_NEAR(strongBedAdjustment(Layers{{40, 2}, {70, 3}}, 50), 0.97 * (20 * 0.22 * 3 - 2.5),
                1e-12);
    // Unit 1: no height to take off. More than 4 ft count as 4.
    EXPECT_NEAR(strongBedAdjustment(Layers{{70, 9}, {40, 2}}, 50), 20 * 0.22 * 4 - 2.5, 1e-12);
    // Low: held at 1.7 ft. High, unit 5: held at 8.5 ft.
    EXPECT_NEAR(strongBedAdjustment(Layers{{40, 1}, {70, 2}}, 50), 20 * 0.22 * 2 - 2.5, 1e-12);
    EXPECT_NEAR(strongBedAdjustment(Layers{{40, 3}, {41, 3}, {40, 3}, {42, 3}, {70, 2}}, 50),
                0.32 * (20 * 0.22 * 2 - 2.5), 1e-12);
}

TEST(StrongBed, AtAndAboveItsThresholds) {
    EXPECT_EQ(strongBedAdjustment(Layers{{40, 2}, {55, 2}}, 50), 0); // 5 above is not enough
    EXPECT_NEAR(strongBedAdjustment(Layers{{40, 1}, {56, 2}}, 50), 6 * 0.44 - 2.5, 1e-12);
    EXPECT_EQ(strongBedAdjustment(Layers{{40, 2}, {80, 0.999}}, 50), 0);
    EXPECT_NEAR(strongBedAdjustment(Layers{{40, 1}, {80, 1}}, 50), 30 * 0.22 - 2.5, 1e-12);
}

TEST(StrongBed, OfEqualRatingsTheUpperUnitIsTheStrongest) {
    // The upper one is thin, so nothing; the other way round it is 2 ft.
    EXPECT_EQ(strongBedAdjustment(Layers{{70, 2}, {40, 2}, {70, 0.5}}, 50), 0);
    EXPECT_NEAR(strongBedAdjustment(Layers{{70, 0.5}, {40, 1.2}, {70, 2}}, 50), 20 * 0.22 * 2 - 2.5,
                1e-12);
}

TEST(StrongBed, CountsWholeWhereTheBoltsEndInIt) {
    const Layers layers{{40, 4, true}, {70, 4, false}};
    const Breakdown result = rated(layers, 5);
    EXPECT_DOUBLE_EQ(result.average, 46); // 160 + 70 over 5
    EXPECT_NEAR(result.strongBed, 0.77 * (24 * 0.22 * 4 - 2.5), 1e-12);
    EXPECT_EQ(result.contacts, -2);
    EXPECT_NEAR(result.cmrr, 46 + result.strongBed - 2, 1e-12);
}

TEST(Combination, AbsentUnitsAreLeftOut) {
    const Layers layers{{kNone, 0, true}, {50, 2, false}, {45, 0, true}, {40, 4, false}};
    EXPECT_EQ(rated(layers, 1.5).cmrr, 50); // the lowest present one alone
    const Breakdown both = rated(layers, 4);
    EXPECT_DOUBLE_EQ(both.average, 45);
    EXPECT_EQ(both.participating, 2);
    EXPECT_EQ(both.contacts, 0); // the weak contacts are those of absent units
    EXPECT_FALSE(combine(Layers{{50, 0}, {40, 0}}, {5, 0, 0}));
}

TEST(Combination, MissingInTheIntervalGivesNothing) {
    for (const double missing : {kNotRated, kNone, std::nan("")}) {
        EXPECT_FALSE(combine(Layers{{50, 2}, {missing, 2}}, {3, 0, 0}));
        EXPECT_TRUE(combine(Layers{{50, 2}, {missing, 2}}, {2, 0, 0})); // beyond the bolts
    }
    for (const double missing : {-0.1, kNone, std::nan("")})
        EXPECT_FALSE(combine(Layers{{50, missing}, {40, 2}}, {3, 0, 0}));
    EXPECT_FALSE(combine(Layers{{50, 2}}, {3, std::nan(""), 0}));
}

TEST(Combination, IsHeldToNoRange) {
    EXPECT_EQ(rated({{5, 6}}, 4, -10, -5).cmrr, -10);
}

} // namespace
} // namespace tessaran::cmrr
