// What entities show that are kept as the file gives them: ellipses, splines, solids, paragraph
// texts, leaders, dimensions.

#include "base/progress.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/extents.h"
#include "drawing/paragraph_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>

namespace tessaran::drawing {
namespace {

using ::testing::ElementsAre;

// A drawing of one entity; `tags`: its group codes and values, blank between all of them.
class Shown {
  public:
    explicit Shown(const std::string& tags, const std::string& blocks = "") {
        const std::string text = lines("0 SECTION 2 BLOCKS " + blocks +
                                       "0 ENDSEC 0 SECTION 2 ENTITIES " + tags + " 0 ENDSEC 0 EOF");
        base::NoProgress nobody;
        const auto loaded = loadDxf(database_, text, "test", nobody);
        EXPECT_TRUE(loaded) << loaded.error().text;
        database_.forEachEntity([&](const EntityRecord& record) { record_ = &record; });
    }

    const host::Look* look() const {
        const auto* other = record_ ? std::get_if<host::Other>(&record_->entity.geometry) : nullptr;
        return other ? other->look.get() : nullptr;
    }
    host::Box2 extents() const {
        return recordExtents(database_, *record_, Visibility::all, Reach::centreLines);
    }
    // Blanks become line ends, "_" a blank.
    static std::string lines(std::string tags) {
        for (char& c : tags)
            c = c == ' ' ? '\n' : c == '_' ? ' ' : c;
        return tags + "\n";
    }

  private:
    Database database_;
    const EntityRecord* record_ = nullptr;
};

void expectBox(const host::Box2& box, double lowX, double lowY, double highX, double highY,
               double within) {
    EXPECT_NEAR(box.low.x, lowX, within);
    EXPECT_NEAR(box.low.y, lowY, within);
    EXPECT_NEAR(box.high.x, highX, within);
    EXPECT_NEAR(box.high.y, highY, within);
}

TEST(Look, OfEllipses) {
    const std::string whole = "0 ELLIPSE 8 0 10 100 20 50 30 7 11 30 21 40 31 0 40 0.5";
    const Shown shown(whole);
    ASSERT_TRUE(shown.look());
    ASSERT_EQ(shown.look()->curves.size(), 1U);
    const geometry::Curve& curve = shown.look()->curves[0];
    EXPECT_TRUE(curve.closed());
    for (const geometry::CurveVertex& v : curve.vertices()) { // along and across the major axis
        const double along = (0.6 * (v.at.x - 100.0) + 0.8 * (v.at.y - 50.0)) / 50.0;
        const double across = (-0.8 * (v.at.x - 100.0) + 0.6 * (v.at.y - 50.0)) / 25.0;
        EXPECT_NEAR(along * along + across * across, 1.0, 1e-12);
        EXPECT_EQ(v.at.z, 7.0);
    }
    const double half = std::hypot(30.0, 20.0); // of the box: sqrt(a^2 cos^2 + b^2 sin^2)
    expectBox(shown.extents(), 100.0 - half, 50.0 - std::hypot(40.0, 15.0), 100.0 + half,
              50.0 + std::hypot(40.0, 15.0), 0.02);

    // A quarter from the major axis on, seen from above and from below.
    const std::string quarter =
        "0 ELLIPSE 8 0 10 0 20 0 11 10 21 0 40 0.5 41 0 42 1.5707963267948966";
    expectBox(Shown(quarter).extents(), 0.0, 0.0, 10.0, 5.0, 1e-9);
    expectBox(Shown(quarter + " 210 0 220 0 230 -1").extents(), 0.0, -5.0, 10.0, 0.0, 1e-9);
    EXPECT_FALSE(Shown("0 ELLIPSE 8 0 10 1 20 1 11 10 40 1 41 0 42 1e15").look());
}

TEST(Look, OfSplinesAndLeaders) {
    const std::string controls = " 10 0 20 0 30 0 10 0 20 8 30 0 10 8 20 8 30 0 10 8 20 0 30 0";
    const Shown cubic("0 SPLINE 8 0 70 8 71 3 40 0 40 0 40 0 40 0 40 1 40 1 40 1 40 1" + controls);
    ASSERT_TRUE(cubic.look());
    expectBox(cubic.extents(), 0.0, 0.0, 8.0, 6.0, 1e-12);
    // Without usable knots the fit points or, lacking those, the control points are joined.
    expectBox(Shown("0 SPLINE 8 0 71 3 40 0" + controls).extents(), 0.0, 0.0, 8.0, 8.0, 0.0);
    expectBox(Shown("0 SPLINE 8 0 71 3 11 1 21 2 11 3 21 5").extents(), 1.0, 2.0, 3.0, 5.0, 0.0);
    expectBox(Shown("0 LEADER 8 0 10 1 20 2 30 0 10 4 20 6 30 0").extents(), 1.0, 2.0, 4.0, 6.0,
              0.0);
    EXPECT_FALSE(Shown("0 SPLINE 8 0 71 3").look());
    EXPECT_FALSE(Shown("0 LEADER 8 0 10 1 20 2").look());
}

TEST(Look, OfSolidsWhoseLastCornersStandCrosswise) {
    const std::string square = "0 SOLID 8 0 10 0 20 0 11 4 21 0 12 0 22 3 13 4 23 3";
    const Shown shown(square);
    ASSERT_TRUE(shown.look());
    ASSERT_EQ(shown.look()->areas.size(), 1U);
    EXPECT_NEAR(shown.look()->areas[0].length(), 14.0, 1e-12); // no bow tie
    expectBox(Shown(square + " 210 0 220 0 230 -1").extents(), -4.0, 0.0, 0.0, 3.0, 0.0);
    EXPECT_NEAR(Shown("0 TRACE 8 0 10 0 20 0 11 4 21 0 12 4 22 3").look()->areas[0].length(), 12.0,
                1e-12);
    EXPECT_FALSE(Shown(square + " 210 1 220 0 230 0").look());
}

TEST(Look, OfParagraphsPlacesTheirLines) {
    const Shown shown("0 MTEXT 8 0 10 100 20 50 40 6 71 5 3 {\\fArial|b0;Upper}\\P 1 lower");
    ASSERT_TRUE(shown.look());
    const std::vector<host::Text>& texts = shown.look()->texts;
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0].text, "Upper");
    EXPECT_EQ(texts[1].text, "lower");
    // Capitals of 6 and a step of 10: the block is 16 high and has its middle at the point.
    EXPECT_NEAR(texts[0].at.y, 58.0, 1e-12);
    EXPECT_NEAR(texts[1].at.y, 48.0, 1e-12);
    EXPECT_EQ(texts[0].across, host::Text::Across::centre);
    EXPECT_EQ(texts[0].up, host::Text::Up::top);

    // Turned by its direction, attached at the lower right.
    const Shown turned("0 MTEXT 8 0 10 0 20 0 40 3 71 9 11 0 21 1 44 2 1 a\\Pb");
    ASSERT_TRUE(turned.look());
    EXPECT_NEAR(turned.look()->texts[0].at.x, -13.0, 1e-12);
    EXPECT_NEAR(turned.look()->texts[1].at.x, -3.0, 1e-12);
    EXPECT_NEAR(turned.look()->texts[1].rotation, 0.5 * std::numbers::pi, 1e-12);
    EXPECT_EQ(turned.look()->texts[1].across, host::Text::Across::right);
    EXPECT_FALSE(Shown("0 MTEXT 8 0 10 0 20 0 40 0 1 a").look());
}

TEST(Look, OfDimensionsIsTheirBlock) {
    const std::string block = "0 BLOCK 8 0 2 *D1 70 1 10 0 20 0 0 LINE 8 0 10 5 20 6 11 7 21 9 "
                              "0 ENDBLK 8 0 ";
    const Shown shown("0 DIMENSION 8 0 2 *D1 10 70 20 70", block);
    ASSERT_TRUE(shown.look());
    expectBox(shown.extents(), 5.0, 6.0, 7.0, 9.0, 0.0);
    EXPECT_TRUE(Shown("0 DIMENSION 8 0 2 *D9 10 70 20 70", block).extents().empty());
    EXPECT_FALSE(Shown("0 WIPEOUT 8 0 10 70 20 70").look());
}

TEST(ParagraphText, LosesItsFormatsAndBreaks) {
    EXPECT_THAT(linesOfParagraph("one\\Ptwo\\~three\\X", 0), ElementsAre("one", "two three", ""));
    EXPECT_THAT(linesOfParagraph("{\\C1;\\H2.5x;red} \\Lunder\\l \\\\ \\{ \\}", 0),
                ElementsAre("red under \\ { }"));
    EXPECT_THAT(linesOfParagraph("\\A1;\\S1/2; \\S3#4; \\S+1^-2;", 0),
                ElementsAre("1/2 3/4 +1 -2"));
    EXPECT_THAT(linesOfParagraph("a\\", 0), ElementsAre("a"));
    EXPECT_THAT(linesOfParagraph("a\\fArial", 0), ElementsAre("a"));
    EXPECT_THAT(linesOfParagraph("", 5), ElementsAre(""));
    EXPECT_THAT(linesOfParagraph("aa bb ccc d eeeeeeee f", 5),
                ElementsAre("aa bb", "ccc d", "eeeeeeee", "f"));
    EXPECT_THAT(linesOfParagraph("\u00E4\u00E4 \u00F6\u00F6 \u00FC", 5),
                ElementsAre("\u00E4\u00E4 \u00F6\u00F6", "\u00FC"));
    EXPECT_EQ(linesOfParagraph(std::string(1'000'000, ' '), 10).size(), 90910U);
}

} // namespace
} // namespace tessaran::drawing
