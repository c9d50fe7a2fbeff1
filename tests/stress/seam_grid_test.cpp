#include "geometry/polygon.h"
#include "grid/base_grid.h"
#include "host/services_layers.h"
#include "stress/seam_grid.h"
#include "stress/seam_map.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace tessaran::stress {
namespace {

using geometry::Point2;
using geometry::Polygon;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

Polygon box(double x0, double y0, double x1, double y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

// Rows from the north, as the file shows them.
std::string picture(const grid::myGrid& grid) {
    std::string out;
    for (int j = grid.nY() - 1; j >= 0; --j) {
        for (int i = 0; i < grid.nX(); ++i)
            out += grid.getValue(i, j) > 0 ? 'A' : (grid.getValue(i, j) < 0 ? 'S' : '1');
        out += '\n';
    }
    return out;
}

std::string built(const std::vector<Polygon>& pillars, const std::vector<Polygon>& gobs,
                  const SeamGridOptions& options) {
    grid::myGrid grid;
    grid.setupGrid(6, 4, 10.0, 10.0, 0.0);
    base::NoProgress nobody;
    EXPECT_FALSE(buildSeamGrid(grid, pillars, gobs, options, nobody).cancelled);
    return picture(grid);
}

constexpr SeamGridOptions kMiddle{SeamAlgorithm::middlePoint, 0};
constexpr SeamGridOptions kHalf{SeamAlgorithm::areaBased, 50};

TEST(SeamGrid, TellsPillarsEntriesAndGobsByTheirMiddles) {
    EXPECT_EQ(built({box(0, 0, 14, 16)}, {box(24, 0, 60, 24), box(10, 0, 30, 40)}, kMiddle),
              "1SS111\n"
              "1SS111\n"
              "ASSSSS\n"
              "ASSSSS\n");
}

TEST(SeamGrid, AddsUpAreasAndLetsPillarsWin) {
    // Two pillars cover 30 % of cell (1, 0) each; the gob covers half of column 3.
    const std::vector<Polygon> pillars{box(0, 0, 13, 10), box(17, 0, 30, 10)};
    EXPECT_EQ(built(pillars, {box(0, 0, 35, 20)}, kHalf), "111111\n"
                                                          "111111\n"
                                                          "SSSS11\n"
                                                          "AAAS11\n");
    EXPECT_EQ(built({box(0, 0, 14.9, 10)}, {}, kHalf), "111111\n111111\n111111\nA11111\n");
    EXPECT_EQ(built({box(0, 0, 15, 10)}, {}, kHalf), "111111\n111111\n111111\nAA1111\n");
}

TEST(SeamGrid, MakesEveryCellAPillarAtNoShareAtAll) {
    EXPECT_EQ(built({box(0, 0, 1, 1)}, {box(20, 20, 60, 40)}, {SeamAlgorithm::areaBased, 0}),
              "AAAAAA\nAAAAAA\nAAAAAA\nAAAAAA\n");
}

// Cell by cell over each outline's box, as the page's words have it.
void literal(grid::myGrid& grid, const std::vector<Polygon>& outlines, int percent, double sign) {
    const double cell = grid.cellWidthX() * grid.cellWidthY();
    const double threshold = percent * 0.01 * cell - 1e-9 * cell;
    grid::myGrid sums;
    sums.setOrigin(grid.origin().x, grid.origin().y, 0.0);
    sums.setupGrid(grid.nX(), grid.nY(), grid.cellWidthX(), grid.cellWidthY(),
                   grid.rotation() * 180.0 / M_PI);
    sums.fillValue(0.0);
    for (const Polygon& outline : outlines)
        for (int i = 0; i < grid.nX(); ++i)
            for (int j = 0; j < grid.nY(); ++j)
                if (sums.getValue(i, j) < threshold)
                    sums.setValue(i, j,
                                  sums.getValue(i, j) +
                                      geometry::intersectionArea(*grid.cellCorners(i, j), outline));
    for (int i = 0; i < grid.nX(); ++i)
        for (int j = 0; j < grid.nY(); ++j)
            if (sums.getValue(i, j) >= threshold && grid.getValue(i, j) <= 0.0)
                grid.setValue(i, j, sign);
}

TEST(SeamGrid, AgreesWithTheLiteralCountOnTurnedGrids) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> at(-20.0, 220.0);
    std::uniform_real_distribution<double> size(3.0, 60.0);
    const auto some = [&](int count) {
        std::vector<Polygon> out;
        for (int k = 0; k < count; ++k) {
            const Point2 p{2e6 + at(random), 5e5 + at(random)};
            out.push_back({p, p + Point2{size(random), 2.0}, p + Point2{size(random), size(random)},
                           p + Point2{-3.0, size(random)}});
        }
        return out;
    };
    for (const int percent : {1, 35, 100}) {
        grid::myGrid fast;
        fast.setOrigin(2e6, 5e5, 0.0);
        fast.setupGrid(23, 31, 7.0, 7.0, 17.0);
        grid::myGrid plain;
        plain.setOrigin(2e6, 5e5, 0.0);
        plain.setupGrid(23, 31, 7.0, 7.0, 17.0);
        const auto pillars = some(12);
        const auto gobs = some(6);
        base::NoProgress nobody;
        buildSeamGrid(fast, pillars, gobs, {SeamAlgorithm::areaBased, percent}, nobody);
        plain.fillValue(0.0);
        literal(plain, pillars, percent, 1.0);
        literal(plain, gobs, percent, -1.0);
        EXPECT_EQ(picture(fast), picture(plain)) << percent;
    }
}

// --- code maps ----------------------------------------------------------------------------------

TEST(SeamMap, ReadsRowsFromTheNorth) {
    const auto map = parseSeamMap("3,2,100.5,200.000000\r\nA1S\r\nAAB\r\n");
    ASSERT_TRUE(map) << map.error().message();
    EXPECT_EQ(map->x, 100.5);
    EXPECT_EQ(map->codes, (ElementCodes{'A', 'A', 'A', '1', 'B', 'S'})); // columns from the south
}

TEST(SeamMap, IsRefusedWhereItIsNotOne) {
    for (const char* text : {"", "3,2\nAAA\nAAA\n", "0,2,1,1\n", "-3,2,1,1\nAAA\n",
                             "3,2,1,1\nAAA\n", "3,2,1,1\nAAA\nAA\n", "3,2,1,1\nAAAA\nAAA\n",
                             "2000000000,2000000000,0,0\nAA\n", "3,2,nan,x\nAAA\nAAA\n"})
        EXPECT_FALSE(parseSeamMap(text)) << text;
    EXPECT_EQ(parseSeamMap("3,2,1,1\nAAA\nAA\n").error().line, 3);
}

// --- the command --------------------------------------------------------------------------------

void addBox(ScriptRun& run, const std::string& layer, double x0, double y0, double x1, double y1) {
    host::ensureLayer(run.host(), layer, 7);
    host::Polyline polyline;
    polyline.closed = true;
    for (const Point2 p : box(x0, y0, x1, y1))
        polyline.vertices.push_back({p, 0.0, 0.0, 0.0});
    ASSERT_TRUE(run.drawing().add({{}, layer, 256, "ByLayer", polyline}));
}

std::string opened(double width = 10.0, double widthY = 10.0, double degrees = 0.0) {
    return "zelk_seamGrid\n:set Number of Cells in X Direction = 4\n"
           ":set Number of Cells in Y Direction = 3\n:set Cell Width in X Direction = " +
           std::to_string(width) + "\n:set Cell Width in Y Direction = " + std::to_string(widthY) +
           "\n:set Rotation to X axis (degree) = " + std::to_string(degrees) +
           "\n:set X Coordinate of Grid Origin = 1000\n:set Y Coordinate of Grid Origin = 500\n";
}

TEST(SeamCommand, SavesTheCodeMap) {
    ScriptRun run;
    addBox(run, "PILLARS", 1000, 500, 1020, 520);
    addBox(run, "PILLARS", 5000, 500, 5020, 520); // elsewhere
    addBox(run, "GOB", 1010, 510, 1040, 530);
    run(opened() + ":set Pillar Layer = PILLARS\n:set Gob Layer = GOB\n:choose Middle Point\n"
                   ":press Build Grid\n:answer yes\n:press Save Grid\n:answer ok\n"
                   ":set Element Code/Gob = 1\n:set Element Code/Pillar =\n"
                   ":set Output File (.txt) = other\n:press Save Grid\n:answer ok\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    for (const char* text :
         {"(question) Pillar layers: PILLARS\n2 Pillar objects were selected, 1 are related to the "
          "grid!\nDo you want to continue? -> yes",
          "Check overlpped pillars ...", "Gob layers: GOB\n1 Gob polygons were selected!",
          "Building seam grid, please waiting...",
          "(question) Seam Grid value will be saved to < Untitled.txt > -> ok"})
        EXPECT_THAT(run.transcript(), HasSubstr(text));
    EXPECT_EQ(run.folder().read("Untitled.txt"), "4,3,1000.000000,500.000000\n1SSS\nAASS\nAA11\n");
    EXPECT_EQ(run.folder().read("other.txt"), "4,3,1000.000000,500.000000\n1111\nAA11\nAA11\n");
}

TEST(SeamCommand, RefusesWhatNoSeamGridCanBeMadeOf) {
    ScriptRun run;
    addBox(run, "PILLARS", 1000, 500, 1020, 520);
    run(opened() +
        ":page Seam Grid\n:press Build Grid\n:expect No pillar layer is selected!\n"
        ":set Pillar Layer = NOTHING\n:choose Middle Point\n:press Build Grid\n"
        ":expect No Pillar objects were in scope!\n:press Save Grid\n"
        ":expect Grid is not defined or built!\n:cancel\n" +
        opened(10.0, 10.0 + 1e-6) +
        ":set Pillar Layer = PILLARS\n:choose Middle Point\n"
        ":press Build Grid\n:expect Plekton grid requires square "
        "elements! You need redefine the cell width!!\n"
        ":set Cell Width in Y Direction = 10.000000001\n:press Build Grid\n"
        ":expect Plekton grid requires square elements!\n"
        ":set Cell Width in Y Direction = 10.00000000001\n:press Build Grid\n"
        ":expect 1 Pillar objects were selected, 1 are related\n:answer no\n:cancel\n");
    EXPECT_EQ(run.status(), 0) << run.report();
}

TEST(SeamCommand, AsksBeforeWorkIsLost) {
    ScriptRun run;
    addBox(run, "PILLARS", 1000, 500, 1020, 520);
    addBox(run, "PILLARS", 1010, 500, 1030, 520);
    run.folder().write("Untitled.txt", "mine");
    run(opened(10.0, 10.0, 30.0) +
        ":set Pillar Layer = PILLARS\n:choose Area Based\n:set Min. Area Inside (%) = 50\n"
        ":press Build Grid\n:expect There are Overlapped pillar objects!\n:answer yes\n"
        ":press Save Grid\n:expect File Exists, Do you want to Overwrite it?\n:answer no\n"
        ":press Build Grid\n:expect grid is not saved yet! continue to rebuild\n:answer cancel\n"
        ":set Output File (.txt) = turned.txt\n:press Save Grid\n:answer ok\n"
        ":expect The grid is turned.\n"
        ":press Build Grid\n:answer yes\n:ok\n:expect The Grid is not saved! Save it?\n"
        ":answer no\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.folder().read("Untitled.txt"), "mine");
    EXPECT_TRUE(run.folder().has("turned.txt"));
}

TEST(SeamCommand, EditsCellsByHand) {
    ScriptRun run;
    run(opened() + ":page Seam Grid\n:press Edit Cells\n1005,505\n1005,505\n1035,525\n900,900\n\n"
                   ":press Save Grid\n:answer ok\n:ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(1,1) is change to pillar!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(1,1) is change to gob!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Cell(4,3) is change to pillar!"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("Sorry,this point (900.000000,900.000000) is outside the grid!"));
    EXPECT_EQ(run.folder().read("Untitled.txt"), "4,3,1000.000000,500.000000\n111A\n1111\nS111\n");
}

} // namespace
} // namespace tessaran::stress
