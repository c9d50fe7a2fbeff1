// Assessments as values and records, without a drawing.

#include "rfri/assessment.h"

#include <gtest/gtest.h>

namespace tessaran::rfri {
namespace {

Assessment withLevels(std::string ten, std::string seismic, std::string rate) {
    Assessment out = defaultAssessment();
    for (std::size_t k = 0; k < 10; ++k)
        out.levels[k] = ten;
    out.levels[10] = std::move(seismic);
    out.levels[11] = std::move(rate);
    return out;
}

TEST(Assessment, GivesTheIndexOfDefaultWorstAndQuietRoofs) {
    EXPECT_EQ(indexValue(defaultAssessment()), 49);                               // 49.95
    EXPECT_EQ(indexValue(withLevels("(5) x", "(30) Clustering", "(30) x")), 143); // 143.25
    EXPECT_EQ(indexValue(withLevels("(3) Unknown", "(-5) No Microseismic Clustering",
                                    "(-5) No Roof Deflection Movement")),
              39);                                                        // 39.95
    EXPECT_EQ(indexValue(withLevels("(1) None", "(-5) a", "(-5) b")), 6); // 6.65
    EXPECT_EQ(indexValue(withLevels("(0) None", "(-5) a", "(-3) b")), -8);
    EXPECT_EQ(indexValue(withLevels("(0) None", "(-5) a", "(0) b")), -5);
    // Truncated, not rounded down: 1.11 * -15 = -16.65.
    EXPECT_EQ(indexValue(withLevels("(-1) None", "(0) a", "(0) b")), -16);
}

// Categories 4 to 8 count twice, 11 and 12 outside the factor.
TEST(Assessment, WeighsEachCategory) {
    const int base = indexValue(withLevels("(0) x", "(0) x", "(0) x"));
    EXPECT_EQ(base, 0);
    for (std::size_t k = 0; k < kCategories; ++k) {
        Assessment one = withLevels("(0) x", "(0) x", "(0) x");
        one.levels[k] = "(100) x";
        const bool twice = k >= 3 && k <= 7;
        EXPECT_EQ(indexValue(one), k >= 10 ? 100 : (twice ? 222 : 111)) << k;
    }
}

TEST(Assessment, ReadsLevelsFromTheirTexts) {
    EXPECT_EQ(levelValue("(3) Unknown"), 3);
    EXPECT_EQ(levelValue("(-5) No Microseismic Clustering"), -5);
    EXPECT_EQ(levelValue("(30) Clustering"), 30);
    EXPECT_EQ(levelValue("unknown"), 0);
    EXPECT_EQ(levelValue(""), 0);
    // What each list holds, in its order; one default each.
    const std::vector<std::vector<int>> values{{1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}, {1, 2, 3, 4, 5},
                                               {1, 3, 5},       {1, 3, 5},       {1, 3, 5},
                                               {1, 3, 5},       {1, 2, 3, 4, 5}, {1, 3, 5},
                                               {1, 2, 3, 4, 5}, {0, -5, 30},     {0, -5, 15, 30}};
    for (std::size_t k = 0; k < kCategories; ++k) {
        const AssessmentLevels& levels = categories()[k].assessment;
        std::vector<int> found;
        for (const char* text : levels.texts)
            found.push_back(levelValue(text));
        EXPECT_EQ(found, values[k]) << categories()[k].description;
        EXPECT_EQ(levelValue(levels.texts[levels.byDefault]), k < 10 ? 3 : 0);
    }
}

TEST(Assessment, IsThirteenTextsBehindTheApplication) {
    const Assessment one = defaultAssessment();
    const auto items = itemsOf(one);
    ASSERT_EQ(items.size(), 13u);
    EXPECT_EQ(items[5].code, 1000);
    EXPECT_EQ(std::get<std::string>(items[5].value),
              "(3) < 1 in of Offset, Partial Drillhole Offset,or Unknown");
    EXPECT_EQ(std::get<std::string>(items[12].value), "MEASUREMENT1");
    EXPECT_EQ(assessmentOf(items), one);
    auto fewer = items;
    fewer.pop_back();
    EXPECT_EQ(assessmentOf(fewer), std::nullopt);
    auto more = items;
    more.push_back({1000, std::string("x")});
    EXPECT_EQ(assessmentOf(more), std::nullopt);
    auto number = items;
    number[3] = {1040, 3.0};
    EXPECT_EQ(assessmentOf(number), std::nullopt);
}

TEST(Range, IsWidenedToStepsOfFiveAtBothEnds) {
    EXPECT_EQ(widenedRange(40, 40), std::pair(40, 40));
    EXPECT_EQ(widenedRange(44, 41), std::pair(40, 45));
    EXPECT_EQ(widenedRange(45, 44), std::pair(45, 45));
    EXPECT_EQ(widenedRange(49, 45), std::pair(45, 50));
    EXPECT_EQ(widenedRange(39, 49), std::pair(35, 50));
    EXPECT_EQ(widenedRange(6, 143), std::pair(5, 145));
    EXPECT_EQ(widenedRange(-7, 0), std::pair(-10, 0));
    EXPECT_EQ(widenedRange(-5, 0), std::pair(-5, 0));
}

} // namespace
} // namespace tessaran::rfri
