#include "geometry/cell_outline.h"
#include "geometry/polygon.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string_view>

namespace tessaran::geometry {
namespace {

struct Cells {
    int nX = 0;
    int nY = 0;
    std::vector<std::int16_t> labels;

    CellLabels view() const { return {nX, nY, labels}; }
};

// Rows as they look on the plan, the highest first; '.' is no label.
Cells cellsOf(const std::vector<std::string_view>& rows) {
    Cells cells{static_cast<int>(rows[0].size()), static_cast<int>(rows.size()), {}};
    for (std::size_t j = rows.size(); j-- > 0;)
        for (std::size_t i = 0; i < rows[0].size(); ++i)
            cells.labels.push_back(
                static_cast<std::int16_t>(rows[j][i] == '.' ? 0 : rows[j][i] - '0'));
    return cells;
}

Polygon polygonOf(const CellOutlines& outlines, const CellLoop& loop) {
    Polygon polygon;
    for (const LatticeNode n : outlines.nodesOf(loop))
        polygon.push_back({static_cast<double>(n.i), static_cast<double>(n.j)});
    return polygon;
}

// Filling the loops of each label by the even-odd rule gives the cells back.
void expectFillsBack(const Cells& cells, const CellOutlines& outlines) {
    for (int i = 0; i < cells.nX; ++i)
        for (int j = 0; j < cells.nY; ++j) {
            std::set<std::int16_t> found;
            for (const CellLoop& loop : outlines.loops)
                if (pointInPolygon({i + 0.5, j + 0.5}, polygonOf(outlines, loop)) &&
                    !found.insert(loop.label).second)
                    found.erase(loop.label);
            const std::int16_t label = cells.view().at(i, j);
            EXPECT_EQ(found, label ? std::set{label} : std::set<std::int16_t>{}) << i << "," << j;
        }
}

TEST(CellOutline, KeepsOnlyCorners) {
    const CellOutlines outlines = traceOutlines(cellsOf({"11.", "111"}).view());
    ASSERT_EQ(outlines.loops.size(), 1U);
    const auto nodes = outlines.nodesOf(outlines.loops[0]);
    EXPECT_EQ(std::vector(nodes.begin(), nodes.end()),
              (std::vector<LatticeNode>{{0, 0}, {3, 0}, {3, 1}, {2, 1}, {2, 2}, {0, 2}}));
}

TEST(CellOutline, TurnsOuterLoopsLeftAndHolesRight) {
    const Cells cells = cellsOf({"11111", "1.2.1", "11111"});
    const CellOutlines outlines = traceOutlines(cells.view());
    ASSERT_EQ(outlines.loopsOf(1).size(), 2U); // the hole of three cells is one loop
    ASSERT_EQ(outlines.loopsOf(2).size(), 1U);
    EXPECT_TRUE(outlines.loopsOf(3).empty());
    for (const CellLoop& loop : outlines.loops)
        EXPECT_EQ(signedArea(polygonOf(outlines, loop)) < 0.0, loop.hole);
    expectFillsBack(cells, outlines);
}

TEST(CellOutline, PartsLoopsWhereCellsTouchByCorners) {
    const std::vector<std::vector<std::string_view>> plans{
        {"1.", ".1"},                    // two loops
        {".1", "1."},                    //
        {"111", "1.1", "11."},           // a ring closed by a corner: outer loop and hole
        {".111", "11.1", "1.11", "111."} // two holes that touch
    };
    const std::vector<std::size_t> loops{2, 2, 2, 3};
    for (std::size_t k = 0; k < plans.size(); ++k) {
        const Cells cells = cellsOf(plans[k]);
        const CellOutlines outlines = traceOutlines(cells.view());
        EXPECT_EQ(outlines.loops.size(), loops[k]) << k;
        expectFillsBack(cells, outlines);
    }
}

TEST(CellOutline, FillsBackToTheCells) {
    std::mt19937 random(3);
    for (int colours = 1; colours < 5; ++colours) {
        std::uniform_int_distribution<int> label(0, colours);
        Cells cells{19, 13, {}};
        for (int k = 0; k < 19 * 13; ++k)
            cells.labels.push_back(static_cast<std::int16_t>(label(random)));
        const CellOutlines outlines = traceOutlines(cells.view());
        expectFillsBack(cells, outlines);
        double sum = 0.0;
        for (const CellLoop& loop : outlines.loops) {
            const Polygon polygon = polygonOf(outlines, loop);
            sum += signedArea(polygon);
            std::set<std::pair<double, double>> once;
            for (const Point2 p : polygon)
                EXPECT_TRUE(once.emplace(p.x, p.y).second) << "a node twice in one loop";
        }
        const auto labelled =
            cells.labels.size() -
            static_cast<std::size_t>(std::count(cells.labels.begin(), cells.labels.end(), 0));
        EXPECT_DOUBLE_EQ(sum, static_cast<double>(labelled));
    }
}

TEST(CellOutline, TakesEmptyLattices) {
    EXPECT_TRUE(traceOutlines({}).loops.empty());
    EXPECT_TRUE(traceOutlines(cellsOf({"...", "..."}).view()).loops.empty());
}

} // namespace
} // namespace tessaran::geometry
