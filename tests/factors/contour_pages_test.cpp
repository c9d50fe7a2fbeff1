// The dialogs that grid contour lines, through the console.

#include "generator_script.h"

#include <gmock/gmock.h>

namespace tessaran::factors {
namespace {

using grid::myGrid;
using test::add;
using test::addPolyline;
using test::kBuildOnly;
using test::opened;
using test::readSaved;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

const std::string kLayers = ":set Define Contour Layers = SURFACE\n";
const std::string kTopo = opened("zelk_topoGrid") + kLayers;
const std::string kSave = ":set Output File <.grd> = out.grd\n:set Output File <.top> = out.top\n"
                          ":press Save Grid\n:ok\n";

// z = 1000 + 10 x, every 12 across the grid, at their elevation or flat with labels.
void drawSlope(ScriptRun& run, bool flat = false) {
    for (const double x : {2.0, 14.0, 26.0, 38.0}) {
        const double z = 1000.0 + 10.0 * x;
        addPolyline(run, "SURFACE", {{{x, -5}}, {{x, 45}}}, flat ? 0.0 : z);
        if (flat)
            add(run, "SURFACE", host::Text{{x + 2.0, 50.0, 0.0}, fmt::format("{:g} ft", z), 5.0});
    }
}

TEST(ContourPage, SavesTheDepthOfTheSeamInBothFiles) {
    ScriptRun run;
    drawSlope(run);
    const auto seam = addPolyline(run, "SEAM", {{{500, 500}}, {{510, 500}}}, 900.5);
    run(kTopo + ":check Use Seam Level\n:press Pick Seam Level\n" +
        fmt::format("#{:X}\n", seam.value) + ":choose Meters\n" + kBuildOnly + kSave);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Topography Grid Generator for Plekton"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nPick a polyline object to retrieve the seam elevation:"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nTotal 4 related contour lines found in specified layers."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nGrid(4 X 4) is going to be built from these contours!"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n Analyzing contour lines ..."));
    myGrid grid;
    readSaved(run, grid);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(grid.getValue(i, 1), 99.5 + 10.0 * (10.0 * i + 5.0), 1e-6);
    EXPECT_EQ(run.folder().read("out.top"),
              "1,16,10.000000,4,4,0.000000,0.000000,900.500000\n1,Overburden Depth\n1,Meter\n"
              "149.500000\n149.500000\n149.500000\n149.500000\n"
              "249.500000\n249.500000\n249.500000\n249.500000\n"
              "349.500000\n349.500000\n349.500000\n349.500000\n"
              "449.500000\n449.500000\n449.500000\n449.500000\n");
    myGrid again;
    ASSERT_TRUE(again.readGridDefinition(run.host(), "out.top", true));
    EXPECT_EQ(again.getValue(2, 3), 349.5);
}

TEST(ContourPage, TakesTheLabelsOfFlatLines) {
    ScriptRun run;
    drawSlope(run, true);
    addPolyline(run, "BARE", {{{20, 0}}, {{20, 40}}});
    run(opened("zelk_gridFromContour") + ":set Define Contour Layers = SURFACE, BARE\n" +
        ":choose Text Label\n" + kBuildOnly + ":set Output File <.grd> = out.grd\n" +
        ":press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Create Grid from Contours"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\n1 contour lines have no number on their layer and are left out."));
    myGrid grid;
    readSaved(run, grid);
    EXPECT_NEAR(grid.getValue(2, 1), 1250.0, 1e-6);
    EXPECT_FALSE(run.folder().has("out.top"));
}

TEST(ContourPage, OtherLayersAreOffOnlyDuringTheBuild) {
    ScriptRun run;
    drawSlope(run);
    addPolyline(run, "OTHER", {{{500, 500}}, {{510, 500}}});
    host::Layer off;
    off.name = "OFF";
    off.on = false;
    ASSERT_TRUE(run.drawing().createLayer(off));
    run(kTopo + ":break 1\n" + kBuildOnly + ":set Define Contour Layers = surface\n" +
        ":press Build Grid\n^C\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n2 layers are temporarily turned off!"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nCanceled by user!"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Save it?")));
    EXPECT_TRUE(run.drawing().layer("OTHER")->on);
    EXPECT_TRUE(run.drawing().layer("0")->on);
    EXPECT_FALSE(run.drawing().layer("OFF")->on);
}

TEST(ContourPage, RefusesWhatCannotBeBuilt) {
    ScriptRun run;
    drawSlope(run);
    const std::string build = ":press Build Grid\n";
    run(opened("zelk_topoGrid") + build + ":set Define Contour Layers = NONE\n" + build +
        ":check Use Seam Level\n:set Seam Level = deep\n" + build + ":uncheck Use Seam Level\n" +
        ":page Grid Dimension\n:set Cell Width in Y Direction = 11\n" +
        ":page Topography Grid Generator for Plekton\n" + build + ":press Save Grid\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const std::string& text = run.transcript();
    EXPECT_THAT(text, HasSubstr("(message) No layer is selected!"));
    EXPECT_THAT(text, HasSubstr("\nNo related contour line in specified layers!"));
    EXPECT_THAT(text, HasSubstr("(message) Please enter a number."));
    EXPECT_THAT(text, HasSubstr("(message) Plekton grid requires square elements! You need to "
                                "redefine the cell width!!"));
    EXPECT_THAT(text, HasSubstr("(message) Grid is not defined or built!"));
}

TEST(ContourPage, NamesCellsWithTooFewLinesAndWarnsOfATurnedGrid) {
    ScriptRun run;
    drawSlope(run);
    run(opened("zelk_topoGrid", {.degrees = 90.0, .x = 40.0}) + kLayers +
        ":set Max. Search Distance = 30\n" + kBuildOnly +
        ":set Output File <.top> = out.top\n:ok\n:answer yes\n:answer ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n too few contour lines to grid point 0,0\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n8 grid points found too few contour lines."));
    EXPECT_THAT(run.transcript(), HasSubstr("(question) The Grid is not saved! Save it? -> yes"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) The grid is turned."));
    EXPECT_THAT(run.folder().read("out.top"), HasSubstr("1,Inch\n0.000000\n"));
    EXPECT_FALSE(run.folder().has("out.grd"));
}

} // namespace
} // namespace tessaran::factors
