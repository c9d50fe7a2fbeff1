// Assessing, listing, labelling and mapping polygons through the console.

#include "host/services_layers.h"
#include "rfri/assessment.h"
#include "support/other_programs.h"
#include "support/script_run.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::rfri {
namespace {

using host::EntityId;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

EntityId addSquare(ScriptRun& run, double x, double size = 60.0) {
    host::Polyline square;
    square.vertices = {{{x, 0}}, {{x + size, 0}}, {{x + size, size}}, {{x, size}}};
    square.closed = true;
    return *run.drawing().add({{}, "0", 256, "ByLayer", square});
}

void assess(ScriptRun& run, EntityId id, Assessment assessment = defaultAssessment()) {
    ASSERT_TRUE(run.drawing().setXData(id, kApplication, itemsOf(assessment)).ok());
}

Assessment worst() {
    Assessment out = defaultAssessment();
    for (std::size_t k = 0; k < kCategories; ++k)
        out.levels[k] = categories()[k].assessment.texts.back();
    return out;
}

std::vector<host::Text> texts(ScriptRun& run, const std::string& layer) {
    std::vector<host::Text> out;
    for (const EntityId id : run.drawing().select(host::SelectionFilter{{layer}, {"TEXT"}, {}}))
        out.push_back(std::get<host::Text>(run.drawing().find(id)->geometry));
    return out;
}

std::optional<Assessment> recordOn(ScriptRun& run, EntityId id) {
    const auto items = run.drawing().xdata(id, kApplication);
    return items ? assessmentOf(*items) : std::nullopt;
}

TEST(Input, AssignsToADrawnPolygonAndModifiesIt) {
    ScriptRun run;
    run("zelk_RFRI_Input\n"
        "Draw\n0,0\n20,0\n20,10\n\n"
        ":show\n:set Ground Water = (5) Steady Flow\n:set Measurement Label = N4\n:ok\n"
        "10,0\n"
        ":show\n:set Seismic Activity = (30) Clustering\n:ok\n"
        "500,500\n"  // hits nothing, asks again
        "D\n1,1\n\n" // one point is no polygon
        "\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nAssign assessment value[Draw Polygon/<Select Polygon>]:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nStart Point: 0,0\nNext Point: 20,0\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Assign RFRI Assesment Value -> ok"));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Modify RFRI Assesment Value -> ok"));
    const EntityId polygon = run.drawing().lastEntity();
    const auto& line = std::get<host::Polyline>(run.drawing().find(polygon)->geometry);
    EXPECT_TRUE(line.closed);
    EXPECT_EQ(line.vertices.size(), 3u);
    EXPECT_EQ(run.drawing().select(host::SelectionFilter{}).size(), 1u);
    Assessment expected = defaultAssessment();
    expected.levels[9] = "(5) Steady Flow";
    expected.levels[10] = "(30) Clustering";
    expected.label = "N4";
    EXPECT_EQ(recordOn(run, polygon), expected);
    EXPECT_TRUE(run.state().graphics.highlighted().empty());
}

// Drawings hold the texts whole, and other programs look for them: each has to be there.
TEST(Input, OffersEveryLevelByItsText) {
    const std::vector<std::pair<const char*, std::vector<const char*>>> lists{
        {"Angular Discontinuities",
         {"(1) None", "(2) One Strong Contact", "(3) One Weak Contact or Unknown",
          "(4) Multiple Strong Contacts", "(5) Multiple Weak Contacts"}},
        {"Joint Frequencies",
         {"(1) None", "(2) Widely Spaced (>3 ft)", "(3) Unknown", "(4) Moderately Spaced (1-3 ft)",
          "(5) Closely Spaced (<1ft)"}},
        {"Strata Strength",
         {"(1) Massive (>3 ft layers)", "(2) Med. Layers (1-3 ft), Strong Bedding Contacts",
          "(3) Med. Layers (1-3 ft), Weak Bedding Contacts, or Unknown",
          "(4) Thin Layers (<1 ft), Strong Bedding Contacts",
          "(5) Thin Layers (<1 ft), Weak Bedding Contacts"}},
        {"Shear Rupture Surfaces",
         {"(1) None", "(3) Small Shear (cutter < 3ft) or Unknown",
          "(5) Larger Shear (cutter > 3ft)"}},
        {"Joint Separations", {"(1) None", "(3) Unknown", "(5) Noticeable or Measurable"}},
        {"Strata Shift",
         {"(1) None", "(3) < 1 in of Offset, Partial Drillhole Offset,or Unknown",
          "(5) > 1 in of Offset or Complete Drillhole Offset"}},
        {"Strata Separation",
         {"(1) None", "(3) Slight (Barely Detectable),or Unknown", "(5) Significant (> 0.2 in)"}},
        {"Rock Debris",
         {"(1) None", "(2) Slight (Widely Spaced)", "(3) Unknown", "(4) Moderate",
          "(5) Significant (Continuous)"}},
        {"Roof Shape", {"(1) Smooth", "(3) Intermediate or Unknown", "(5) Rough"}},
        {"Ground Water",
         {"(1) None", "(2) Damp Roof", "(3) Unknown", "(4) Drippers", "(5) Steady Flow"}},
        {"Seismic Activity", {"(0) Unknown", "(-5) No Microseismic Clustering", "(30) Clustering"}},
        {"Roof Def. Rate",
         {"(0) Unknown", "(-5) No Roof Deflection Movement", "(15) Constant Deflection",
          "(30) Accelerating Defelection"}},
    };
    std::string script = "zelk_RFRI_Input\nDraw\n0,0\n20,0\n20,10\n\n";
    for (const auto& [list, texts] : lists)
        for (const char* text : texts)
            script += fmt::format(":set {0} = {1}\n:show\n:expect {0} = {1}\n", list, text);
    ScriptRun run;
    run(script + ":ok\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(recordOn(run, run.drawing().lastEntity())->levels, worst().levels);
}

TEST(Input, KeepsOtherApplicationsDataAndIsOneUndo) {
    ScriptRun run;
    const EntityId square = addSquare(run, 0);
    const std::vector<host::XDataItem> other{{1040, 7.5}, {1000, std::string("keep")}};
    ASSERT_TRUE(run.drawing().setXData(square, "SOMEONE", other).ok());
    assess(run, square, worst());
    run("zelk_RFRI_Input\n0,30\n:set Rock Debris = (1) None\n:ok\n\nUNDO\n1\n"
        "zelk_RFRI_Input\n0,30\n:set Rock Debris = (2) Slight (Widely Spaced)\n:cancel\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(recordOn(run, square), worst());
    EXPECT_EQ(run.drawing().xdata(square, "SOMEONE"), other);
}

TEST(Input, RefusesLongLabelsAndKeepsTextsThatAreNoLevels) {
    ScriptRun run;
    const EntityId square = addSquare(run, 0);
    Assessment foreign = defaultAssessment();
    foreign.levels[5] = "(2) between";
    foreign.levels[7] = "";
    assess(run, square, foreign);
    run("zelk_RFRI_Input\n0,30\n:show\n:set Measurement Label = " + std::string(256, 'x') +
        "\n:ok\n:set Measurement Label = " + std::string(255, 'y') +
        "\n:ok\n\nzelk_RFRI_List\nall\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("Strata Shift: \"(2) between\" is not one of the levels."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) The measurement label is longer than 255 bytes."));
    EXPECT_THAT(run.transcript(), HasSubstr("Strata Shifting: (2) between\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("Roof Rock Debris: (3) Unknown\n"));
    EXPECT_EQ(recordOn(run, square)->label, std::string(255, 'y'));
}

TEST(List, PrintsValidRecordsOnly) {
    ScriptRun run;
    assess(run, addSquare(run, 0));
    auto short_ = itemsOf(defaultAssessment());
    short_.pop_back();
    ASSERT_TRUE(run.drawing().setXData(addSquare(run, 100), kApplication, short_).ok());
    addSquare(run, 200); // no data: is not even selected
    run("zelk_RFRI_List\nall\n\nzelk_RFRI_List\nall\nremove\nall\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nRemove RFRI Entites:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSelect RFRI Entites:"));
    EXPECT_THAT(run.transcript(), HasSubstr("2 found"));
    EXPECT_THAT(
        run.transcript(),
        HasSubstr("\nMeasurment: MEASUREMENT1\nAngular Discontinuities: (3) One Weak Contact or "
                  "Unknown\nJoint Frequency: (3) Unknown\nStrata Strength: (3) Med. Layers (1-3 "
                  "ft), Weak Bedding Contacts, or Unknown\nShear Rupture: (3) Small Shear (cutter "
                  "< 3ft) or Unknown\nJoint Separation: (3) Unknown\nStrata Shifting: (3) < 1 in "
                  "of Offset, Partial Drillhole Offset,or Unknown\nStrata Separation: (3) Slight "
                  "(Barely Detectable),or Unknown\nRoof Rock Debris: (3) Unknown\nRoof Shape: (3) "
                  "Intermediate or Unknown\nMoisture/Ground Water: (3) Unknown\nMicroseismic "
                  "Adjustment: (0) Unknown\nRoof Deformation Adjustment: (0) Unknown\n"));
    EXPECT_EQ(run.transcript().find("Measurment"), run.transcript().rfind("Measurment"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nNo RFRI entity selected."));
}

TEST(Label, WritesTheLabelsAndRemembersTheSize) {
    ScriptRun run;
    Assessment named = defaultAssessment();
    named.label = "  A\xC3\xA4"
                  "1  "; // three characters, four bytes
    assess(run, addSquare(run, 0), named);
    named.label = "   ";
    assess(run, addSquare(run, 100), named);
    run("zelk_RFRI_Label\nall\n\n\n:set Layer = NAMES\n:ok\n"
        "zelk_RFRI_Label\nall\n\n2.5\n:ok\n"
        "zelk_RFRI_Label\nall\n\n^C\n"
        "zelk_RFRI_Label\nall\n\n\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nSpecify label size(0 - Auto size) <0>:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSpecify label size(0 - Auto size) <2.5>:"));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Select Layer for Labels"));
    const auto automatic = texts(run, "NAMES");
    ASSERT_EQ(automatic.size(), 1u);
    EXPECT_EQ(automatic[0].text, "A\xC3\xA4"
                                 "1");
    EXPECT_EQ(automatic[0].height, 12.0); // 60 * 0.6 / 3
    EXPECT_EQ(automatic[0].at, (host::Point3{30, 30, 0}));
    EXPECT_EQ(automatic[0].across, host::Text::Across::centre);
    EXPECT_EQ(automatic[0].up, host::Text::Up::middle);
    const auto sized = texts(run, "0");
    ASSERT_EQ(sized.size(), 1u);
    EXPECT_EQ(sized[0].height, 2.5);
}

TEST(Mapping, ColoursWritesAndDrawsTheLegend) {
    ScriptRun run;
    const EntityId quiet = addSquare(run, 0);
    const EntityId bad = addSquare(run, 100);
    assess(run, quiet);
    assess(run, bad, worst());
    run("zelk_RFRI_Mapping\nall\n\n:show\n:ok\n\n200,0\n210,50\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    // 49 and 143: 45 to 145 in five classes, the step of 20 whole.
    EXPECT_THAT(run.transcript(), HasSubstr("45 - 65"));
    EXPECT_THAT(run.transcript(), HasSubstr("125 - 145"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nDraw Legend? [No/<Yes>]:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n2 defects are processed."));
    EXPECT_EQ(run.drawing().find(quiet)->colour, 174);
    EXPECT_EQ(run.drawing().find(bad)->colour, 50);
    const auto written = texts(run, "0");
    ASSERT_EQ(written.size(), 7u); // two values, five labels
    EXPECT_EQ(written[0].text, "49");
    EXPECT_EQ(written[0].height, 18.0); // 60 * 0.6 / 2
    EXPECT_EQ(written[1].text, "143");
    EXPECT_EQ(written[1].at, (host::Point3{130, 30, 0}));
}

TEST(Mapping, GoesOnWithEqualValuesAndWithoutWidth) {
    ScriptRun run;
    assess(run, addSquare(run, 0));
    host::Polyline upright;
    upright.vertices = {{{10, 0}}, {{10, 20}}};
    assess(run, *run.drawing().add({{}, "0", 256, "ByLayer", upright}));
    run("zelk_RFRI_Mapping\nall\n\n:ok\nNo\n"
        "zelk_RFRI_Mapping\nall\n\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n2 defects are processed."));
    const auto written = texts(run, "0");
    ASSERT_EQ(written.size(), 2u);
    EXPECT_EQ(written[1].height, 1.0);
}

TEST(Mapping, NeedsAValidRecord) {
    ScriptRun run;
    ASSERT_TRUE(
        run.drawing().setXData(addSquare(run, 0), kApplication, {{1000, std::string("x")}}).ok());
    run("zelk_RFRI_Mapping\nall\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nNo RFRI Data present."));
}

// --- other programs
// -------------------------------------------------------------------------------

TEST(Records, AreReadByAnotherProgramAndReadBackFromIt) {
    ScriptRun run;
    run.saveTo("assessed.dxf");
    run("zelk_RFRI_Input\nDraw\n0,0\n20,0\n20,10\n\n:set Measurement Label = N4\n:ok\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const std::string script = TESSARAN_SOURCE_DIR "/tests/rfri/check_assessment.py";
    const auto seen = test::runScript(script, "assessed.dxf rewritten.dxf");
    EXPECT_EQ(seen.status, 0) << seen.output;
    EXPECT_THAT(seen.output, HasSubstr("registered 1\nitems 14\n0 1001 RFRI_DXR_NOISH_APPLICATION\n"
                                       "1 1000 (3) One Weak Contact or Unknown\n"));
    EXPECT_THAT(seen.output, HasSubstr("\n12 1000 (0) Unknown\n13 1000 N4\n"));

    ScriptRun back;
    back.folder().write("rewritten.dxf", run.folder().read("rewritten.dxf"));
    back.open("rewritten.dxf");
    back("zelk_RFRI_List\nall\n\n");
    ASSERT_EQ(back.status(), 0) << back.report();
    EXPECT_THAT(back.transcript(), HasSubstr("\nMeasurment: BY ANOTHER\nAngular Discontinuities: "
                                             "(5) Multiple Weak Contacts\n"));
}

} // namespace
} // namespace tessaran::rfri
