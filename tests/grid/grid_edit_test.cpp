// Which cells the shapes of the grid editor take, and what is done with them.

#include "geometry/polygon.h"
#include "grid/cell_frame.h"
#include "grid/grid_edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <utility>

namespace tessaran::grid {
namespace {

using geometry::Polygon;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Cells = std::set<std::pair<int, int>>; // column, row

Cells cellsOf(const CellRuns& runs) {
    Cells cells;
    for (const auto& run : runs)
        for (int i = run.columnBegin; i < run.columnEnd; ++i)
            EXPECT_TRUE(cells.emplace(i, run.row).second) << "twice: " << i << "," << run.row;
    return cells;
}

// 4 columns, 3 rows, cells of 10 x 10 from (100, 200).
void setUpSmall(myGrid& grid, double rotation = 0.0) {
    ASSERT_TRUE(grid.setupGrid(4, 3, 10.0, 10.0, rotation));
    grid.setOrigin(100.0, 200.0, 0.0);
}

Polygon box(double x0, double y0, double x1, double y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

TEST(GridEditShapes, TakeCellsByTheirSides) {
    myGrid grid;
    setUpSmall(grid);
    const Polygon onSides = box(110, 210, 130, 230);
    EXPECT_THAT(
        cellsOf(cellsInside(grid, onSides)),
        UnorderedElementsAre(std::pair(1, 1), std::pair(2, 1), std::pair(1, 2), std::pair(2, 2)));
    // The cells around the corners are columns 1 to 3 and rows 1 to 2 (held).
    EXPECT_EQ(cellsOf(cellsTouched(grid, onSides)),
              (Cells{{1, 1}, {2, 1}, {3, 1}, {1, 2}, {2, 2}, {3, 2}}));

    const Polygon between = box(104, 204, 126, 216);
    EXPECT_THAT(cellsInside(grid, between), IsEmpty());
    EXPECT_EQ(cellsOf(cellsTouched(grid, between)),
              (Cells{{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}}));
    const Polygon beyond = box(-1e6, -1e6, 1e6, 1e6);
    EXPECT_EQ(cellsOf(cellsInside(grid, beyond)), cellsOf(allCells(grid)));
    EXPECT_EQ(cellsOf(cellsTouched(grid, beyond)).size(), 12u);

    // A box without width and one beside the grid.
    EXPECT_EQ(cellsOf(cellsTouched(grid, box(105, 195, 105, 215))), (Cells{{0, 0}, {0, 1}}));
    EXPECT_THAT(cellsInside(grid, box(105, 195, 105, 215)), IsEmpty());
    EXPECT_THAT(cellsTouched(grid, box(0, 200, 99, 240)), IsEmpty());
    EXPECT_THAT(cellsTouched(grid, box(100, 231, 140, 240)), IsEmpty());
}

TEST(GridEditShapes, FenceTakesWhatItRunsThrough) {
    myGrid grid;
    setUpSmall(grid);
    const Polygon level{{95, 205}, {135, 205}};
    EXPECT_EQ(cellsOf(cellsCrossed(grid, level)), (Cells{{0, 0}, {1, 0}, {2, 0}, {3, 0}}));
    const Polygon corners{{100, 200}, {130, 230}}; // through the nodes
    EXPECT_EQ(cellsOf(cellsCrossed(grid, corners)), (Cells{{0, 0}, {1, 1}, {2, 2}}));
    const Polygon falling{{100, 230}, {130, 200}};
    EXPECT_EQ(cellsOf(cellsCrossed(grid, falling)), (Cells{{0, 2}, {1, 1}, {2, 0}}));
    const Polygon hook{{112, 205}, {118, 205}, {118, 225}};
    EXPECT_EQ(cellsOf(cellsCrossed(grid, hook)), (Cells{{1, 0}, {1, 1}, {1, 2}}));
    EXPECT_THAT(cellsCrossed(grid, Polygon{{110, 200}, {110, 230}}), IsEmpty()); // along sides
    EXPECT_THAT(cellsCrossed(grid, Polygon{{90, 240}, {150, 240}}), IsEmpty());  // outside
    EXPECT_THAT(cellsCrossed(grid, Polygon{{112, 205}}), IsEmpty());             // no segment
}

TEST(GridEditShapes, ConcavePolygonLeavesItsBayOut) {
    myGrid grid;
    setUpSmall(grid);
    // A U around column 1, open to the north.
    const Polygon u{{100, 200}, {130, 200}, {130, 230}, {120, 230},
                    {120, 210}, {110, 210}, {110, 230}, {100, 230}};
    EXPECT_EQ(cellsOf(cellsInside(grid, u)),
              (Cells{{0, 0}, {1, 0}, {2, 0}, {0, 1}, {2, 1}, {0, 2}, {2, 2}}));
    EXPECT_EQ(cellsOf(cellsTouched(grid, u)).size(), 12u); // the bay is touched at its sides
}

// Shapes fixed to the grid take the same cells wherever the grid lies and however it is turned.
TEST(GridEditShapes, TurnWithTheGrid) {
    const Polygon inCells{{0.5, 0.25}, {3.75, 0.5}, {2.5, 2.75}, {2.0, 1.0}, {0.25, 2.5}};
    myGrid plain;
    setUpSmall(plain);
    const Polygon world = CellFrame(plain).toWorld(inCells);
    for (const double rotation : {30.0, 45.0, 90.0, 200.0}) {
        myGrid turned;
        ASSERT_TRUE(turned.setupGrid(4, 3, 25.0, 4.0, rotation));
        turned.setOrigin(5e6, 4e6, 0.0);
        const Polygon moved = CellFrame(turned).toWorld(inCells);
        EXPECT_EQ(cellsOf(cellsInside(turned, moved)), cellsOf(cellsInside(plain, world)));
        EXPECT_EQ(cellsOf(cellsTouched(turned, moved)), cellsOf(cellsTouched(plain, world)));
        EXPECT_EQ(cellsOf(cellsCrossed(turned, moved)), cellsOf(cellsCrossed(plain, world)));
    }
    // A window around the whole of a turned grid takes all of it.
    myGrid turned;
    setUpSmall(turned, 45.0);
    geometry::Box2 around;
    const auto outline = turned.gridOutline().value();
    for (const Point2 corner : outline)
        around.add(corner);
    const auto corners = around.enlarged(0.001).corners();
    EXPECT_EQ(cellsOf(cellsInside(turned, corners)).size(), 12u);
}

// A star-shaped polygon around a point.
Polygon star(std::mt19937& random, Point2 centre, double radius, int vertices) {
    std::uniform_real_distribution<double> share(0.2, 1.0);
    Polygon polygon;
    for (int k = 0; k < vertices; ++k) {
        const double angle = 2.0 * M_PI * k / vertices + 0.1;
        const double r = radius * share(random);
        polygon.push_back({centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)});
    }
    return polygon;
}

// By the corners' barycentre and the sides' crossings, cell by cell.
bool literallyCrossed(const std::array<Point2, 4>& cell, Point2 a, Point2 b) {
    const auto side = [](Point2 p, Point2 q, Point2 r) { return geometry::cross(q - p, r - p); };
    bool crossed = geometry::pointInPolygon(a, cell) || geometry::pointInPolygon(b, cell);
    for (std::size_t k = 0; k < 4; ++k) {
        const Point2 c = cell[k];
        const Point2 d = cell[(k + 1) % 4];
        crossed |= side(a, b, c) * side(a, b, d) < 0.0 && side(c, d, a) * side(c, d, b) < 0.0;
    }
    return crossed;
}

TEST(GridEditShapes, AgreeWithOverlaysCellByCell) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(0.0, 1.0);
    for (int round = 0; round < 40; ++round) {
        myGrid grid;
        ASSERT_TRUE(grid.setupGrid(17, 13, 3.0, 5.0, 360.0 * any(random)));
        grid.setOrigin(1000.0 * any(random), -500.0 * any(random), 0.0);
        const CellFrame frame(grid);
        const Point2 centre = frame.toWorld({20.0 * any(random) - 1.0, 15.0 * any(random) - 1.0});
        const Polygon shape = star(random, centre, 10.0 + 30.0 * any(random), 5 + round % 9);
        Cells inside;
        Cells touched;
        Cells crossed;
        for (int j = 0; j < 13; ++j)
            for (int i = 0; i < 17; ++i) {
                const auto cell = *grid.cellCorners(i, j);
                const double overlap = geometry::overlapArea(cell, shape);
                if (overlap > 15.0 * (1.0 - 1e-9))
                    inside.emplace(i, j);
                if (overlap > 15.0 * 1e-12)
                    touched.emplace(i, j);
                for (std::size_t k = 1; k < shape.size(); ++k)
                    if (literallyCrossed(cell, shape[k - 1], shape[k]))
                        crossed.emplace(i, j);
            }
        EXPECT_EQ(cellsOf(cellsInside(grid, shape)), inside) << round;
        EXPECT_EQ(cellsOf(cellsTouched(grid, shape)), touched) << round;
        EXPECT_EQ(cellsOf(cellsCrossed(grid, shape)), crossed) << round;
    }
}

TEST(GridEditShapes, BadShapesTakeNothing) {
    myGrid grid;
    setUpSmall(grid);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Polygon& bad :
         {Polygon{}, Polygon{{nan, 0}, {200, 0}, {200, 300}}, Polygon{{1e200, 0}, {0, 1e200}}}) {
        EXPECT_THAT(cellsInside(grid, bad), IsEmpty());
        EXPECT_THAT(cellsTouched(grid, bad), IsEmpty());
        EXPECT_THAT(cellsCrossed(grid, bad), IsEmpty());
    }
    // Far away corners are held, not turned into numbers that no integer holds.
    EXPECT_EQ(cellsOf(cellsCrossed(grid, Polygon{{-1e30, 205}, {1e30, 205}})).size(), 4u);
    myGrid none;
    EXPECT_THAT(allCells(none), IsEmpty());
    EXPECT_THAT(cellsTouched(none, box(0, 0, 1, 1)), IsEmpty());
}

TEST(GridEditSelection, CountsWhatChanges) {
    CellSelection selection(4, 3);
    EXPECT_EQ(selection.add(CellRuns{{0, 0, 4}, {1, 1, 3}}), 6u);
    EXPECT_EQ(selection.add(CellRuns{{1, 0, 4}}), 2u);
    EXPECT_EQ(selection.size(), 8u);
    EXPECT_EQ(selection.remove(CellRuns{{1, 0, 2}, {2, 0, 4}}), 2u);
    EXPECT_EQ(selection.size(), 6u);
    EXPECT_TRUE(selection.has({2, 1}));
    EXPECT_FALSE(selection.has({1, 1}));
    EXPECT_FALSE(selection.has({4, 0}));
    EXPECT_FALSE(selection.has({kBefore, kBeyond}));
    selection.clear();
    EXPECT_TRUE(selection.empty());
}

TEST(GridEditSelection, AveragesAndAssigns) {
    myGrid grid;
    setUpSmall(grid);
    grid.setValue(0, 0, 2.0);
    grid.setValue(1, 0, 5.0);
    grid.setValue(2, 0, base::kNoValue);
    grid.setValue(4, 0, 77.0); // the extra column
    CellSelection selection(4, 3);
    selection.add(CellRuns{{0, 0, 3}});
    const SelectedMean average = meanOfSelected(grid, selection);
    EXPECT_EQ(average.mean, 3.5);
    EXPECT_EQ(average.withValue, 2u);
    selection.add(allCells(grid));
    assignSelected(grid, selection, 9.0);
    EXPECT_EQ(grid.getValue(2, 0), 9.0);
    EXPECT_EQ(grid.getValue(3, 2), 9.0);
    EXPECT_EQ(grid.getValue(4, 0), 77.0);
    grid.fillValue(base::kNoValue);
    EXPECT_EQ(meanOfSelected(grid, selection).mean, 0.0);
}

} // namespace
} // namespace tessaran::grid
