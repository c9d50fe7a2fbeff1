#include "grid/colour_ramp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace tessaran::grid {
namespace {

using testing::ElementsAre;

TEST(ColourRamp, SpreadsFewBandsOverThePalette) {
    const ColourRamp ramp = ColourRamp::between(100.0, 0.0, 5);
    EXPECT_EQ(ramp.step(), 20.0);
    EXPECT_THAT(ramp.breaks(), ElementsAre(0, 20, 40, 60, 80, 100));
    EXPECT_THAT(ramp.colours(), ElementsAre(174, 190, 210, 10, 50));
    EXPECT_THAT(ramp.labels(), ElementsAre("80 - 100", "60 - 80", "40 - 60", "20 - 40", "0 - 20"));
}

TEST(ColourRamp, RepeatsThePaletteForManyBands) {
    const ColourRamp ramp = ColourRamp::between(0.0, 12.0, 12);
    ASSERT_EQ(ramp.bands(), 12);
    EXPECT_EQ(ramp.colours()[9], 50);
    EXPECT_EQ(ramp.colours()[10], 174);
    EXPECT_EQ(ramp.table()[12], (ColourBreak{12.0, 174})); // band 12 mod 12
}

TEST(ColourRamp, TurnsAnEmptyRangeIntoZeroToTen) {
    for (const double other : {0.0, 1e-11, std::nan(""), HUGE_VAL}) {
        const ColourRamp ramp = ColourRamp::between(0.0, other, 10);
        EXPECT_EQ(ramp.lowest(), 0.0);
        EXPECT_EQ(ramp.highest(), 10.0);
        EXPECT_EQ(ramp.bands(), 10);
    }
}

TEST(ColourRamp, RoundsLargeStepsDown) {
    // 105 / 10 = 10.5 becomes 10, and 10.5 steps are ten whole ones.
    const ColourRamp ramp = ColourRamp::between(0.0, 105.0, 10);
    EXPECT_EQ(ramp.step(), 10.0);
    EXPECT_EQ(ramp.breaks().back(), 100.0);
    EXPECT_EQ(ColourRamp::between(0.0, 4.0, 0).bands(), 2);
    EXPECT_EQ(ColourRamp::between(-1e300, 1e300, 7).bands(), 7);
}

TEST(ColourRamp, KeepsTheLastBandWhateverTheRounding) {
    for (int bands = 1; bands <= 300; ++bands)
        for (const double high : {0.1, 0.3, 0.7, 1.0, 9.9})
            ASSERT_EQ(ColourRamp::between(0.0, high, bands).bands(), bands) << high;
}

TEST(ColourRamp, OneBandTakesTheFirstColour) {
    const ColourRamp ramp = ColourRamp::between(0.0, 5.0, 1);
    EXPECT_THAT(ramp.colours(), ElementsAre(174));
    EXPECT_EQ(colourOfValue(ramp.table(), 3.0), 174);
    EXPECT_EQ(bandOfValue(ramp.table(), 99.0), 0);
}

TEST(ColourRamp, RemovingABreakColoursAnew) {
    ColourRamp ramp = ColourRamp::between(0.0, 100.0, 5);
    EXPECT_TRUE(ramp.removeBreak(1));
    EXPECT_THAT(ramp.breaks(), ElementsAre(0, 40, 60, 80, 100));
    EXPECT_THAT(ramp.colours(), ElementsAre(174, 200, 10, 50)); // trunc(i * 9 / 3)
    EXPECT_THAT(ramp.labels(), ElementsAre("80 - 100", "60 - 80", "40 - 60", "0 - 40"));
    EXPECT_FALSE(ramp.removeBreak(5));
    while (ramp.bands() > 1)
        EXPECT_TRUE(ramp.removeBreak(0));
    EXPECT_FALSE(ramp.removeBreak(0));
    EXPECT_THAT(ramp.breaks(), ElementsAre(80, 100));
}

TEST(ColourRamp, GreysRiseFromDarkToLight) {
    EXPECT_THAT(bandColours(6, Palette::greys), ElementsAre(250, 251, 252, 253, 254, 255));
    EXPECT_THAT(bandColours(3, Palette::greys), ElementsAre(250, 253, 255));
    EXPECT_THAT(bandColours(1, Palette::greys), ElementsAre(250));
    const std::vector<int> many = bandColours(40, Palette::greys);
    EXPECT_TRUE(std::is_sorted(many.begin(), many.end()));
    EXPECT_EQ(many.front(), 250);
    EXPECT_EQ(many.back(), 255);
}

// The lookup as it is stated, entry by entry.
int statedBand(const std::vector<ColourBreak>& table, double value) {
    const auto n = static_cast<int>(table.size());
    if (n - 1 < 2)
        return n - 2;
    for (int k = 1; k <= n - 2; ++k)
        if (table[static_cast<std::size_t>(k)].value > value)
            return k - 1;
    return n - 2;
}

TEST(ColourTable, FindsTheStatedBand) {
    EXPECT_EQ(bandOfValue({}, 1.0), -1);
    for (int bands = 1; bands < 8; ++bands) {
        const std::vector<ColourBreak> table = ColourRamp::between(0.0, bands, bands).table();
        for (double value = -1.0; value < bands + 2.0; value += 0.25) {
            EXPECT_EQ(bandOfValue(table, value), statedBand(table, value));
            EXPECT_EQ(colourOfValue(table, value),
                      table[static_cast<std::size_t>(statedBand(table, value))].colour);
        }
    }
}

} // namespace
} // namespace tessaran::grid
