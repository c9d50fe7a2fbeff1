// The dialog "Mapping Stability Index on Entries" through the console.

#include "drawing/database_builder.h"
#include "geometry/polygon.h"
#include "host/curves.h"
#include "host/host.h"
#include "host/services_layers.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

namespace tessaran::index {
namespace {

using geometry::Point2;
using host::Entity;
using host::EntityId;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

constexpr double kRound = 0.0013; // what chords leave of a circle's area, at most

// A grid file of 4 x 4 cells of 10 with these values, the lowest row first.
std::string gridFile(const std::vector<std::string>& cells, const std::string& title = "Roof") {
    std::string text = "0\n0\n40\n40\n4\n4\n";
    for (int j = 0; j <= 4; ++j)
        for (int i = 0; i <= 4; ++i)
            text += (i < 4 && j < 4 ? cells[static_cast<std::size_t>(4 * j + i)] : "0") + "\n";
    return text + title + "\nZELK Stability Application\n";
}

// 10 in the columns 0 and 1, 90 in the columns 2 and 3: the colours 174 and 50.
const std::vector<std::string> kHalves{"10", "10", "90", "90", "10", "10", "90", "90",
                                       "10", "10", "90", "90", "10", "10", "90", "90"};

void addPillar(ScriptRun& run, const std::vector<host::PolylineVertex>& vertices,
               bool closed = true, const std::string& layer = "PILLARS") {
    host::ensureLayer(run.host(), layer, 7);
    host::Polyline polyline;
    polyline.vertices = vertices;
    polyline.closed = closed;
    ASSERT_TRUE(run.drawing().add({{}, layer, 256, "ByLayer", polyline}).ok());
}

void addBox(ScriptRun& run, double x0, double y0, double x1, double y1, bool closed = true) {
    addPillar(run, {{{x0, y0}}, {{x1, y0}}, {{x1, y1}}, {{x0, y1}}}, closed);
}

void prepare(ScriptRun& run, const std::vector<std::string>& cells = kHalves) {
    run.folder().write("index.grd", gridFile(cells));
    host::ensureLayer(run.host(), "PILLARS", 7);
}

const std::string kOpen = "zelk_indexMapping\n:set Index Grid File = index.grd\n"
                          ":set Pillar Layers = PILLARS\n:set Mapping Layer = MAP\n";
const std::string kAnalyze = ":press Analyze\n\n"; // Enter at the wait
const std::string kHatch = ":press Hatch\n\nYes\n";
const std::string kExit = ":cancel\n";

double areaOf(const std::vector<host::Loop>& loops) {
    double area = 0.0; // outer loops counter-clockwise, holes clockwise
    for (const host::Loop& loop : loops) {
        geometry::Polygon polygon;
        for (const auto& vertex : loop.vertices)
            polygon.push_back(vertex.at);
        area += geometry::signedArea(polygon);
    }
    return area;
}

template <class Shape>
std::map<int, double> areas(ScriptRun& run, const std::string& type) {
    std::map<int, double> sums;
    for (const EntityId id : run.drawing().select(host::SelectionFilter{{"MAP"}, {type}, {}})) {
        const Entity& entity = *run.drawing().find(id);
        sums[entity.colour] += areaOf(std::get<Shape>(entity.geometry).loops);
    }
    return sums;
}
std::map<int, double> hatchAreas(ScriptRun& run) {
    return areas<host::Hatch>(run, "HATCH");
}
std::size_t count(ScriptRun& run, const std::string& type) {
    return run.drawing().select(host::SelectionFilter{{"MAP"}, {type}, {}}).size();
}

// --- the whole way ------------------------------------------------------------------------------

// A square pillar across both colours and a round one of two half circles in the right half.
TEST(MappingDialog, HatchesCoverTheOpeningsInTheColourOfTheIndex) {
    for (const bool combine : {true, false}) {
        ScriptRun run;
        prepare(run);
        addBox(run, 15.0, 5.0, 25.0, 15.0);
        addPillar(run, {{{24.0, 30.0}, 1.0}, {{36.0, 30.0}, 1.0}});
        run(kOpen + kAnalyze + (combine ? "Yes\n" : "No\n") + kHatch + kExit);
        ASSERT_EQ(run.status(), 0) << run.report();
        const auto areas = hatchAreas(run);
        ASSERT_EQ(areas.size(), 2U);
        EXPECT_NEAR(areas.at(174), 800.0 - 50.0, 1e-6);
        const double circle = 36.0 * std::numbers::pi;
        EXPECT_NEAR(areas.at(50), 800.0 - 50.0 - circle, circle * kRound);
        EXPECT_EQ(count(run, "HATCH"), combine ? 2U : 16U);
        EXPECT_THAT(run.transcript(), HasSubstr("2 Pillar objects from: PILLARS"));
        EXPECT_THAT(run.transcript(), HasSubstr("Checking grid cells around the pillars..."));
        EXPECT_THAT(run.transcript(),
                    HasSubstr(" Processing individual grid cell, please wait ...."));
        EXPECT_THAT(run.transcript(), HasSubstr("16 regions are constructed!"));
        EXPECT_EQ(run.transcript().find("The number of regions reduced to 2") != std::string::npos,
                  combine);
        EXPECT_THAT(run.transcript(),
                    HasSubstr(combine ? "Solid Pattern will be used in mapping total 2 hatch"
                                      : "Solid Pattern will be used in mapping total 16 hatch"));
        EXPECT_THAT(run.transcript(), HasSubstr("hatchs are created, save it?"));
        EXPECT_TRUE(run.state().graphics.graphics().empty());
    }
}

TEST(MappingDialog, TellsTheGridAndProposesItsMeanAsThreshold) {
    ScriptRun run;
    prepare(run, {"1", "2", "3", "4", "1", "2", "3", "4", "1", "2", "3", "4", "1", "2", "3", "5"});
    run("zelk_indexMapping\n:show\n:set Index Grid File = index.grd\n:choose Larger than\n:show\n" +
        kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("<Analyze> to create new region with grid file;  "
                                            "<Pick Region> to get existing regions."));
    EXPECT_THAT(run.transcript(), HasSubstr("Hatch ] (disabled)"));
    EXPECT_THAT(run.transcript(), HasSubstr("Threshold = 2.56"));
    EXPECT_THAT(run.transcript(), HasSubstr("Roof"));
}

TEST(MappingDialog, ThresholdsKeepOneSide) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 5.0, 10.0);
    run(kOpen + ":choose Larger than\n:set Threshold = 10\n" + kAnalyze + "Yes\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("Filtering out grid cells with value not larger than 10.000000"));
    EXPECT_NEAR(hatchAreas(run)[50], 800.0, 1e-9);
    EXPECT_EQ(hatchAreas(run).size(), 1U);

    ScriptRun small;
    prepare(small);
    addBox(small, 0.0, 0.0, 5.0, 10.0);
    small(kOpen + ":choose Small than\n:set Threshold = 90\n" + kAnalyze + "Yes\n" + kHatch +
          kExit);
    ASSERT_EQ(small.status(), 0) << small.report();
    EXPECT_THAT(small.transcript(),
                HasSubstr("Filtering out grid cells with vlaue not smaller than 90.000000"));
    EXPECT_NEAR(hatchAreas(small)[174], 750.0, 1e-9);
    EXPECT_EQ(hatchAreas(small).size(), 1U);
}

TEST(MappingDialog, BlackAndWhiteMapsInGreys) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 5.0, 10.0);
    run(kOpen + ":check Black/White\n" + kAnalyze + "Yes\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    for (const auto& [colour, area] : hatchAreas(run))
        EXPECT_TRUE(colour >= 250 && colour <= 255) << colour;
    EXPECT_EQ(hatchAreas(run).size(), 2U);
}

TEST(MappingDialog, CellsWithoutAValueAreLeftOutAndTold) {
    ScriptRun run;
    auto cells = kHalves;
    cells[0] = "N";
    prepare(run, cells);
    addBox(run, 30.0, 30.0, 35.0, 40.0);
    run(kOpen + kAnalyze + "Yes\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("1 cells without value are left out."));
    EXPECT_NEAR(hatchAreas(run)[174], 700.0, 1e-9);
    EXPECT_NEAR(hatchAreas(run)[50], 750.0, 1e-9);
}

// --- pillars ------------------------------------------------------------------------------------

TEST(MappingPillars, OneAnswerHoldsForAllOpenOnes) {
    for (const std::string answer : {"Yes", "No", "^C"}) {
        ScriptRun run;
        prepare(run);
        addBox(run, 0.0, 0.0, 5.0, 10.0, false);
        addBox(run, 0.0, 20.0, 5.0, 30.0, false);
        addBox(run, 30.0, 0.0, 40.0, 5.0, true);
        run(kOpen + kAnalyze + answer + "\n" + (answer == "^C" ? ":show\n" : "Yes\n" + kHatch) +
            kExit);
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(),
                    HasSubstr("There are open pillar lines, treat as closed pillar? [No/<Yes>]:"));
        if (answer == "^C") {
            EXPECT_TRUE(hatchAreas(run).empty());
            EXPECT_THAT(run.transcript(), Not(HasSubstr("hatch regions are ready!")));
            continue;
        }
        EXPECT_NEAR(hatchAreas(run)[174], answer == "Yes" ? 700.0 : 800.0, 1e-9);
        EXPECT_NEAR(hatchAreas(run)[50], 750.0, 1e-9);
    }
}

TEST(MappingPillars, OfFrozenAndOffLayersCountAndBlocksAreTold) {
    ScriptRun run;
    drawing::DatabaseBuilder(run.drawing()).addBlock({"BLOCK", {}, {}});
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    host::Layer layer = *run.drawing().layer("PILLARS");
    layer.frozen = true;
    layer.on = false;
    ASSERT_TRUE(run.drawing().modifyLayer(layer).ok());
    host::Insert block;
    block.block = "BLOCK";
    ASSERT_TRUE(run.drawing().add({{}, "PILLARS", 256, "ByLayer", block}).ok());
    run(kOpen + kAnalyze + "Yes\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_NEAR(hatchAreas(run)[174], 700.0, 1e-9);
    EXPECT_THAT(run.transcript(), HasSubstr("1 block references in these layers are not"));
}

TEST(MappingPillars, HostileOnesLeaveTheRestRight) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    addBox(run, 0.0, 0.0, 10.0, 10.0);                              // duplicate
    addPillar(run, {{{5, 25}}});                                    // a single point
    addPillar(run, {{{5, 25}}, {{5, 25}}, {{5, 25}}});              // no length
    addPillar(run, {{{0, 30}}, {{20, 40}}, {{20, 30}}, {{0, 40}}}); // a bow
    addPillar(run, {{{-1e300, 0}}, {{1e300, 1}}, {{1e300, 2}}});    // absurd
    ASSERT_TRUE(drawing::DatabaseBuilder(run.drawing())
                    .add({{{}, "PILLARS", 256, "ByLayer", host::Other{"POLYLINE"}}}));
    run(kOpen + kAnalyze + "Yes\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("is left out: it has no usable vertices"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("treat as closed pillar")));
    EXPECT_NEAR(hatchAreas(run)[174], 800.0 - 100.0 - 100.0, 1e-6);
    EXPECT_NEAR(hatchAreas(run)[50], 800.0, 1e-9);
}

// --- refusals -----------------------------------------------------------------------------------

TEST(MappingRefusals, InTheirOrder) {
    ScriptRun run;
    prepare(run);
    run.folder().write("bad.grd", "no grid\n");
    run("zelk_indexMapping\n:press Analyze\n:set Index Grid File = bad.grd\n"
        ":set Index Grid File = index.grd\n:press Analyze\n:set Pillar Layers = PILLARS\n"
        ":set Mapping Layer = pillars\n:press Analyze\n:set Mapping Layer = MAP\n:press Analyze\n" +
        kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Grid is not ready yet!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Read grid file error!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) No Pillar layer selected!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) Error: pillar layer and drawing layer identical!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) No related pillar lines in given layers:PILLARS!"));
    ASSERT_TRUE(run.drawing().layer("MAP").has_value());
    EXPECT_EQ(run.drawing().layer("MAP")->colour, 210);
}

TEST(MappingRefusals, EscapeAtTheWaitAndAUserBreakLeaveNothing) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    run(kOpen + ":press Analyze\n^C\n:break 1\n" + kAnalyze + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(count(run, "REGION") + count(run, "HATCH"), 0U);
    EXPECT_THAT(run.transcript(), Not(HasSubstr("regions are constructed!")));
}

// --- collections --------------------------------------------------------------------------------

TEST(MappingRegions, StayUntilErasedOrHatched) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    run(kOpen + kAnalyze + "Yes\n:press Analyze\n:answer cancel\n" +
        ":press Analyze\n:answer yes\n\nNo\n:show\n:cancel\n:answer no\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(count(run, "REGION"), 15U);
    EXPECT_THAT(run.transcript(), HasSubstr("There have been 2 regions in new region collection!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Total 15 hatch regions are ready!"));
}

TEST(MappingRegions, ExitAsksAboutUnhatchedOnes) {
    for (const std::string answer : {"yes", "no"}) {
        ScriptRun run;
        prepare(run);
        addBox(run, 0.0, 0.0, 10.0, 10.0);
        run(kOpen + kAnalyze + "Yes\n:cancel\n:answer cancel\n:cancel\n:answer " + answer + "\n");
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(), HasSubstr("Some new regions do not hatched! Do you want to "
                                                "erase these regions? -> cancel"));
        EXPECT_EQ(count(run, "REGION"), answer == "yes" ? 0U : 2U);
    }
}

TEST(MappingRegions, NoErasesTheHatchesAndKeepsTheCollection) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    run(kOpen + kAnalyze + "Yes\n:press Hatch\n\nNo\n:show\n" + kHatch + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Total 2 hatch regions are ready!"));
    EXPECT_EQ(count(run, "HATCH"), 2U);
}

TEST(MappingRegions, PickedRegionsAndClosedCurvesAreHatchedToo) {
    for (const std::string picked : {"all\n\n", "SLayer\nMAP\n\n"}) {
        ScriptRun run;
        prepare(run);
        host::ensureLayer(run.host(), "MAP", 7);
        const auto add = [&](host::EntityGeometry geometry) {
            ASSERT_TRUE(run.drawing().add({{}, "MAP", 5, "ByLayer", std::move(geometry)}).ok());
        };
        add(host::Region{{{{{{0, 0}}, {{10, 0}}, {{10, 10}}, {{0, 10}}}}}, 0.0});
        add(host::Circle{{50, 50, 0}, 5.0});
        add(host::Line{{0, 60, 0}, {10, 60, 0}});
        run("zelk_indexMapping\n:press Pick Region\n" + picked + "\n:show\n" + kHatch + kExit);
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(), HasSubstr("Select hatch regions to add:"));
        EXPECT_THAT(run.transcript(),
                    HasSubstr("Total 2 hatch regions are appended from 3 selected objects."));
        EXPECT_EQ(count(run, "HATCH"), 2U);
        for (const auto& [colour, area] : hatchAreas(run))
            EXPECT_EQ(colour, 5);
    }
}

TEST(MappingRegions, VeryManyAreOnlyAddedWhenWanted) {
    ScriptRun run;
    constexpr int kCells = 501; // 251,001 cells
    std::string text = "0\n0\n501\n501\n501\n501\n";
    for (int k = 0; k < (kCells + 1) * (kCells + 1); ++k)
        text += k % 2 == 0 ? "1\n" : "2\n";
    run.folder().write("index.grd", text + "Big\nZELK Stability Application\n");
    addBox(run, 600.0, 0.0, 610.0, 10.0);
    run(kOpen + kAnalyze + "No\n:answer no\n" + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("251001 regions will be added to the drawing. Do you want to continue? "
                          "-> no"));
    EXPECT_EQ(count(run, "REGION"), 0U);
}

// --- layers and legend --------------------------------------------------------------------------

TEST(MappingLayers, PresetCreatedAndPicked) {
    ScriptRun run;
    prepare(run);
    addBox(run, 0.0, 0.0, 10.0, 10.0);
    host::ensureWorkingLayer(run.host());
    ASSERT_TRUE(run.drawing().setCurrentLayer(host::kWorkingLayer).ok());
    run("zelk_indexMapping\n:press New\nPILLARS\nFRESH\n:press Pick a layer\n5,0\n\n:show\n" +
        kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.drawing().currentLayer(), "0");
    EXPECT_THAT(run.transcript(), HasSubstr("Layer < PILLARS > has existed!"));
    EXPECT_THAT(run.transcript(), HasSubstr("New layer < FRESH > has been created!"));
    EXPECT_THAT(run.transcript(), HasSubstr("selected layer: PILLARS"));
    EXPECT_THAT(run.transcript(), HasSubstr("Mapping Layer = FRESH"));
    EXPECT_EQ(run.drawing().layer("FRESH")->colour, 7);
}

TEST(MappingLegend, ShowsTheRampInUse) {
    ScriptRun run;
    prepare(run);
    run(kOpen + ":press Legend\n100,0\n110,80\n" + kExit);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.drawing().group("ZELK Lengend").size(), 20U) << "ten boxes and labels";
    EXPECT_EQ(run.drawing().select(host::SelectionFilter{{}, {"HATCH"}, {}}).size(), 10U);
}

} // namespace
} // namespace tessaran::index
