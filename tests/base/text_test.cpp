#include "base/numbers.h"
#include "base/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tessaran::base;

TEST(LeadingNumbers, StopAtTheFirstCharacterThatDoesNotFit) {
    EXPECT_EQ(leadingDouble("  1.5abc"), 1.5);
    EXPECT_EQ(leadingDouble("+2e3,"), 2000.0);
    EXPECT_EQ(leadingDouble("-.5"), -0.5);
    EXPECT_EQ(leadingDouble("1e"), 1.0);
    EXPECT_EQ(leadingDouble("abc"), 0.0);
    EXPECT_EQ(leadingDouble(""), 0.0);
    EXPECT_EQ(leadingDouble("+-3"), 0.0);
    EXPECT_EQ(leadingInt("12.9"), 12);
    EXPECT_EQ(leadingInt(" -7x"), -7);
    EXPECT_EQ(leadingInt("+8"), 8);
    EXPECT_EQ(leadingInt("x8"), 0);
    EXPECT_EQ(leadingInt("99999999999"), std::numeric_limits<int>::max());
    EXPECT_EQ(leadingInt("-99999999999"), std::numeric_limits<int>::min());
}

TEST(LeadingNumbers, OverflowAndUnderflowAsTheCLibraryDoes) {
    EXPECT_EQ(leadingDouble("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(leadingDouble("-1e999"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(leadingDouble("1e-999"), 0.0);
    EXPECT_TRUE(std::isnan(leadingDouble("nan")));
}

TEST(WholeNumbers, RefuseAnythingBeside) {
    EXPECT_EQ(wholeDouble(" 2.5 "), 2.5);
    EXPECT_FALSE(wholeDouble("2.5 m"));
    EXPECT_FALSE(wholeDouble(""));
    EXPECT_FALSE(wholeDouble("  "));
    EXPECT_EQ(wholeInt("-3"), -3);
    EXPECT_FALSE(wholeInt("3.0"));
    EXPECT_FALSE(wholeInt("99999999999999999999"));
}

TEST(NumberTexts, AreThoseOfPrintf) {
    EXPECT_EQ(fixed6(0.5), "0.500000");
    EXPECT_EQ(fixed6(-1234567.1234565),
              "-1234567.123457"); // the nearest double lies beyond the half
    EXPECT_EQ(fixed6(1e22), "10000000000000000000000.000000");
    EXPECT_EQ(general(1e-5), "1e-05");
    EXPECT_EQ(general(100000.0), "100000");
    EXPECT_EQ(general(1234567.0), "1.23457e+06");
    EXPECT_EQ(shortest(0.1), "0.1");
    EXPECT_EQ(shortest(3e6), "3000000");
    EXPECT_EQ(shortest(-123456.75), "-123456.75");
    EXPECT_EQ(shortest(1e15), "1e+15");
    EXPECT_EQ(shortest(1e-5), "1e-05");
    EXPECT_EQ(shortest(0.0), "0");
    std::string text = "x";
    appendFixed6(text, 2.0);
    EXPECT_EQ(text, "x2.000000");
}

TEST(Names, ListsAndEndings) {
    EXPECT_EQ(nameList(" A ,, B b,"), (std::vector<std::string>{"A", "B b"}));
    EXPECT_TRUE(nameList("").empty());
    EXPECT_EQ(withLastReplaced("dir.grd/a.GRD", ".grd", "_index.grd"), "dir.grd/a_index.grd");
    EXPECT_EQ(withLastReplaced("plain", ".grd", "_index.grd"), "plain_index.grd");
    EXPECT_EQ(withEnding("a.GrD", ".grd"), "a.GrD");
    EXPECT_EQ(withEnding("a.grd2", ".grd"), "a.grd2.grd");
    EXPECT_EQ(split("a,,b", ',').size(), 3u);
}

TEST(Utf8, RefusesWhatDecodersMustRefuse) {
    EXPECT_TRUE(isValidUtf8("Grube \xC3\x9C \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_FALSE(isValidUtf8("\xC0\xAF"));         // overlong
    EXPECT_FALSE(isValidUtf8("\xE0\x80\x80"));     // overlong
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));     // surrogate
    EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80")); // beyond the last character
    EXPECT_FALSE(isValidUtf8("\xC3"));             // cut off
    EXPECT_FALSE(isValidUtf8("\xFC"));
}
