#include "console/answers.h"
#include "console/line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace tessaran::console;
using tessaran::host::NumberPrompt;
using testing::ElementsAre;
using Kind = SelectionStep::Kind;

namespace {

constexpr Point3 kFrom{10.0, 20.0, 30.0};

Point3 point(std::string_view text) {
    const auto parsed = parsePoint(text, kFrom);
    EXPECT_TRUE(parsed) << text;
    return parsed ? *parsed : Point3{};
}

} // namespace

TEST(PointAnswers, AreAbsoluteRelativeOrPolar) {
    EXPECT_EQ(point("1,2"), (Point3{1.0, 2.0, 0.0}));
    EXPECT_EQ(point(" -1.5 , 2e3 , .25 "), (Point3{-1.5, 2000.0, 0.25}));
    EXPECT_EQ(point("@1,2"), (Point3{11.0, 22.0, 30.0}));
    EXPECT_EQ(point("@0,0,-30"), (Point3{10.0, 20.0, 0.0}));
    EXPECT_EQ(point("@"), kFrom);
    EXPECT_NEAR(point("2<90").y, 2.0, 1e-12);
    EXPECT_NEAR(point("@2<180").x, 8.0, 1e-12);
}

TEST(PointAnswers, RefuseEverythingElse) {
    for (const char* text : {"", "1", "1,", ",1", "1,2,3,4", "1;2", "1,x", "nan,1", "1,inf",
                             "@@1,2", "1 2", "1,2 3,4", "1<", "<45", "1<2<3", "1,5<3"})
        EXPECT_FALSE(parsePoint(text, kFrom)) << text;
}

TEST(NumberAnswers, KeepToTheirPrompt) {
    const NumberPrompt any{.message = ""};
    const NumberPrompt positive{.message = "", .allowZero = false, .allowNegative = false};
    const NumberPrompt nonzero{.message = "", .allowZero = false};
    EXPECT_EQ(*parseReal("-2.5e1", any), -25.0);
    EXPECT_FALSE(parseReal("1e999", any));
    EXPECT_FALSE(parseReal("1,5", any));
    EXPECT_FALSE(parseReal("0", positive));
    EXPECT_FALSE(parseReal("-1", positive));
    EXPECT_TRUE(parseReal("-1", nonzero));
    EXPECT_FALSE(parseReal("-0", nonzero));
    EXPECT_EQ(*parseInteger("2147483647", any), 2147483647);
    EXPECT_FALSE(parseInteger("2147483648", any));
    EXPECT_FALSE(parseInteger("1.0", any));
    EXPECT_EQ(*parseAngle("180"), std::numbers::pi);
    EXPECT_FALSE(parseAngle("north"));
}

TEST(HandleAnswers, AreHexadecimalBehindANumberSign) {
    EXPECT_EQ(parseHandle("#1F")->value, 0x1Fu);
    EXPECT_EQ(parseHandle("#ffffffffffffffff")->value, ~std::uint64_t{0});
    for (const char* text : {"1F", "#", "#0", "#G", "#1F ", "#-1", "#0x1F", "#10000000000000000"})
        EXPECT_FALSE(parseHandle(text)) << text;
    EXPECT_EQ(handleText({0x1F}), "#1F");
}

TEST(PickAnswers, AreAPlaceAHandleOrBoth) {
    EXPECT_EQ(*parsePick("3,4", kFrom)->at, (Point3{3.0, 4.0, 0.0}));
    EXPECT_EQ(parsePick("#A", kFrom)->entity.value, 10u);
    EXPECT_FALSE(parsePick("#A", kFrom)->at);
    EXPECT_EQ(*parsePick("#A @1,1", kFrom)->at, (Point3{11.0, 21.0, 30.0}));
    for (const char* text : {"", "12", "last", "#A #B", "1,1 2,2", "#A 1,1 2,2"})
        EXPECT_FALSE(parsePick(text, kFrom)) << text;
}

TEST(SelectionAnswers, TakeWordsOrTheirBeginnings) {
    const auto kind = [](std::string_view text) {
        const auto step = parseSelection(text, kFrom);
        EXPECT_TRUE(step) << text;
        return step ? step->kind : Kind::points;
    };
    EXPECT_EQ(kind("ALL"), Kind::all);
    EXPECT_EQ(kind("l"), Kind::last);
    EXPECT_EQ(kind("prev"), Kind::previous);
    EXPECT_EQ(kind("r"), Kind::remove);
    EXPECT_EQ(kind("a"), Kind::add);
    EXPECT_EQ(kind("cp 0,0 1,0 1,1"), Kind::crossingPolygon);
    EXPECT_EQ(kind("c 0,0 1,0"), Kind::crossing);
    EXPECT_EQ(kind("window"), Kind::window);
    EXPECT_EQ(kind("0,0  1,1"), Kind::points);
    EXPECT_EQ(kind("#1 #2"), Kind::handles);
    for (const char* text : {"", "everything", "all 1,1", "window 1,1", "window 0,0 1,1 2,2",
                             "wpolygon 0,0 1,1", "fence 0,0", "#1 2,2", "fence 0,0 1,1 x,1"})
        EXPECT_FALSE(parseSelection(text, kFrom)) << text;
}

TEST(SelectionAnswers, RelativePointsFollowEachOther) {
    const auto step = parseSelection("fence @0,0 @5,0 @0,5", kFrom);
    ASSERT_TRUE(step);
    EXPECT_THAT(step->points,
                ElementsAre(kFrom, Point3{15.0, 20.0, 30.0}, Point3{15.0, 25.0, 30.0}));
}

TEST(Lines, AreToldApart) {
    const auto kind = [](std::string text) { return parseLine(std::move(text), 1).kind; };
    EXPECT_EQ(kind(""), Line::Kind::enter);
    EXPECT_EQ(kind(" \t"), Line::Kind::enter);
    EXPECT_EQ(kind("  ; note"), Line::Kind::comment);
    EXPECT_EQ(kind("^c"), Line::Kind::escape);
    EXPECT_EQ(kind("^C^C"), Line::Kind::text);
    EXPECT_EQ(kind(":nothing"), Line::Kind::badDirective);
    EXPECT_EQ(kind(":"), Line::Kind::badDirective);
    EXPECT_EQ(kind("\\"), Line::Kind::text);
    EXPECT_EQ(parseLine("\\  ^C ", 1).text, "  ^C ") << "as it stands behind the backslash";
    EXPECT_EQ(parseLine("  a  b ", 1).text, "a  b");
    const Line set = parseLine(":SET  Title = :x ", 7);
    EXPECT_TRUE(set.is(Verb::set));
    EXPECT_EQ(set.text, "Title = :x");
    EXPECT_EQ(set.number, 7);
}
