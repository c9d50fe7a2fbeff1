#include "grid/grid_file.h"
#include "index/composite_index.h"
#include "index/project_file.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace tessaran::index {
namespace {

using grid::myGrid;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

void lay(myGrid& grid, int nX, int nY, double width, double x, double y, double degrees,
         double value) {
    grid.setupGrid(nX, nY, width, width, degrees);
    grid.setOrigin(x, y, 0.0);
    grid.fillValue(value);
}

TEST(CompositeSum, AddsWhatLiesAroundTheCellCentres) {
    myGrid sum;
    myGrid other;
    lay(sum, 4, 2, 10.0, 0.0, 0.0, 0.0, 20.0);
    lay(other, 2, 3, 10.0, 20.0, -10.0, 0.0, 60.0); // covers the right half
    EXPECT_EQ(addSampled(sum, other, 3.0), 0u);
    EXPECT_EQ(sum.getValue(0, 0), 20.0);
    EXPECT_EQ(sum.getValue(1, 1), 20.0);
    EXPECT_EQ(sum.getValue(2, 0), 200.0);
    EXPECT_EQ(sum.getValue(3, 1), 200.0);
}

TEST(CompositeSum, CellsWithoutValueAddNothingAndGetNone) {
    myGrid sum;
    myGrid other;
    lay(sum, 3, 2, 1.0, 0.0, 0.0, 0.0, 5.0);
    lay(other, 3, 2, 1.0, 0.0, 0.0, 0.0, 1.0);
    sum.setValue(0, 0, -1e20);
    other.setValue(1, 0, -1e20);
    other.setValue(2, 1, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(addSampled(sum, other, 2.0), 2u);
    EXPECT_EQ(sum.getValue(0, 0), -1e20);
    EXPECT_EQ(sum.getValue(1, 0), 5.0);
    EXPECT_EQ(sum.getValue(2, 1), 5.0);
    EXPECT_EQ(sum.getValue(2, 0), 7.0);
}

TEST(CompositeSum, IsTheLiteralSumForAnyTwoGeometries) {
    std::mt19937 random(7);
    const auto number = [&](double a, double b) {
        return std::uniform_real_distribution<double>(a, b)(random);
    };
    for (int round = 0; round < 60; ++round) {
        const bool turned = round % 3 == 0;
        myGrid sum;
        myGrid other;
        // Whole widths and origins put many centres exactly on the other grid's cell sides.
        lay(sum, 30, 20, 2.0, 1000000.0, 0.0, turned ? number(0, 360) : 0.0, 1.0);
        lay(other, 17, 23, round % 2 == 0 ? 3.0 : number(1, 5), 1000000.0 + number(-30, 30),
            round % 2 == 0 ? -9.0 : number(-30, 30), turned ? number(0, 360) : 0.0, 0.0);
        for (double& value : other.values())
            value = number(0, 100);
        std::vector<double> expected;
        for (int j = 0; j < sum.nY(); ++j)
            for (int i = 0; i < sum.nX(); ++i) {
                const auto cell = other.pointToCell(sum.cellCenter(i, j)->plan());
                expected.push_back(sum.getValue(i, j) +
                                   other.getValue(cell.column, cell.row) * 0.7);
            }
        addSampled(sum, other, 0.7);
        std::size_t at = 0;
        for (int j = 0; j < sum.nY(); ++j)
            for (int i = 0; i < sum.nX(); ++i)
                ASSERT_EQ(sum.getValue(i, j), expected[at++]) << round << ": " << i << "," << j;
    }
}

TEST(CompositeSum, IsDividedAndStretched) {
    myGrid sum;
    lay(sum, 2, 2, 1.0, 0.0, 0.0, 0.0, 200.0);
    EXPECT_EQ(finishComposite(sum, 4.0).max, 50.0);
    EXPECT_EQ(sum.getValue(0, 0), 50.0); // all the same: not stretched
    sum.setValue(0, 0, 10.0);
    sum.setValue(1, 1, 30.0);
    const grid::MinMax range = finishComposite(sum, 1.0);
    EXPECT_EQ(range.min, 10.0);
    EXPECT_EQ(range.max, 50.0);
    EXPECT_EQ(sum.getValue(0, 0), 0.0);
    EXPECT_EQ(sum.getValue(1, 1), 50.0);
    EXPECT_EQ(sum.getValue(1, 0), 100.0);
    EXPECT_FALSE(hasWeight(0.0));
    EXPECT_FALSE(hasWeight(-1e-11));
    EXPECT_FALSE(hasWeight(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(hasWeight(-2.0));
}

// --- the dialog ---------------------------------------------------------------------------------

// 2 x 2 cells of 10 by 10 at (x, 0).
std::string gridText(int x, const std::string& title, const char* a, const char* b, const char* c,
                     const char* d) {
    const auto n = [](int v) { return std::to_string(v) + "\n"; };
    const auto row = [](const char* l, const char* r) {
        return std::string(l) + "\n" + r + "\n0\n";
    };
    return n(0) + n(x) + n(20) + n(x + 20) + n(2) + n(2) + row(a, b) + row(c, d) + row("0", "0") +
           title + "\nZELK Stability Application";
}

myGrid& read(ScriptRun& run, const std::string& file, myGrid& grid) {
    base::NoProgress nobody;
    EXPECT_TRUE(grid::readGridText(run.folder().read(file), true, grid, nobody).ok());
    return grid;
}

TEST(StabilityIndex, IsMadeFromAProjectAndSaved) {
    ScriptRun run;
    run.folder().write("roof.grd", gridText(0, "Roof", "0", "20", "40", "N"));
    run.folder().write("water.grd", gridText(10, "Water", "100", "0", "60", "0"));
    run("zelk_StabilityIndex\n"
        ":press Select Index Grid\n"
        ":file roof.grd\n"
        ":set Weighting Factor = 1\n"
        ":press Add\n"
        ":press Select Index Grid\n"
        ":file water.grd\n"
        ":set Weighting Factor = 3.0\n"
        ":press Add\n"
        ":show\n"
        ":press Create Index\n"
        ":answer yes\n"
        ":file total.grd\n"
        ":ok\n"
        ":file mine\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Stability Index Generation"));
    EXPECT_THAT(run.transcript(), HasSubstr("Roof (grid: 2 * 2)"));
    EXPECT_THAT(run.transcript(), HasSubstr("Current Project: Project1.prj"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question) Final index for project: Project1.prj produced! Do you want "
                          "to save? -> yes"));
    EXPECT_THAT(run.transcript(), HasSubstr("Final Index saved to grid file: "));
    EXPECT_THAT(run.transcript(), HasSubstr("Water: weighting 3"));
    // The right column takes water's left one: (20 + 300) / 4; the left one lies outside it.
    EXPECT_THAT(run.transcript(), HasSubstr("minimum 0.000000, maximum 80.000000"));

    myGrid index;
    read(run, "total.grd", index);
    EXPECT_EQ(index.title(), "Composite Stability Index for Project: Project1.prj");
    EXPECT_EQ(index.getValue(0, 0), 0.0);
    EXPECT_EQ(index.getValue(1, 0), 100.0);
    EXPECT_EQ(index.getValue(0, 1), 12.5); // 40 / 4 of 80
    EXPECT_FALSE(base::hasValue(index.getValue(1, 1)));

    const auto entries = parseProject(run.folder().read("mine.prj"));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1].name, "Water");
    EXPECT_EQ(entries[1].weighting, "3.0");
}

TEST(StabilityIndex, ChecksWhatIsAddedUpdatedAndRemoved) {
    ScriptRun run;
    run.folder().write("roof.grd", gridText(0, "Roof", "0", "20", "40", "0"));
    run.folder().write("bad.grd", "no grid");
    run("zelk_StabilityIndex\n"
        ":press Add\n"
        ":expect Not all data is specified!\n"
        ":press Select Index Grid\n"
        ":file roof.grd\n"
        ":set Weighting Factor = 0.5\n"
        ":press Add\n"
        ":expect Weighting Factor must larger than zero!\n"
        ":set Weighting Factor = 1.5\n"
        ":press Update\n"
        ":expect This entry not in the list!\n"
        ":press Add\n"
        ":press Add\n"
        ":expect The entry with same name is already in the list!\n"
        ":set Name = ROOF\n"
        ":press Add\n"
        ":set Weighting Factor = 7\n"
        ":press Update\n"
        ":press Remove\n"
        ":expect No items were selected!\n"
        ":select Entries = Roof\n"
        ":press Remove\n"
        ":open Entries = ROOF\n"
        ":set Name = Second\n"
        ":press Add\n"
        ":press Select Index Grid\n"
        ":file bad.grd\n"
        ":expect invalid grid file: reading failed\n"
        ":press Add\n"
        ":press Create Index\n"
        ":answer no\n"
        ":press Save and Exit\n"
        ":file project.prj\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const auto entries = parseProject(run.folder().read("project.prj"));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "ROOF");
    EXPECT_EQ(entries[0].weighting, "7");
    EXPECT_EQ(entries[1].name, "Second");
    EXPECT_EQ(entries[1].description, "Roof (grid: 2 * 2)");
}

TEST(StabilityIndex, ReadsProjectsFromTheirFolderAndTellsWhatIsMissing) {
    ScriptRun run;
    run.folder().write("deep/roof.grd", gridText(0, "Roof", "0", "20", "40", "0"));
    run.folder().write("deep/p.prj", "3\nRoof\nroof.grd\n\n2\nGone\ngone.grd\nd\n1");
    run.folder().write("deep/zero.prj", "1\nRoof\nroof.grd\n\nnone");
    run("zelk_StabilityIndex\n"
        ":press Create Index\n"
        ":press Select Project\n"
        ":file deep/p.prj\n"
        ":show\n"
        ":press Create Index\n"
        ":expect Grid File Read fail: gone.grd\n"
        ":select Entries = Gone\n"
        ":press Remove\n"
        ":press Create Index\n"
        ":answer yes\n"
        ":file\n"
        ":press Create Index\n"
        ":answer yes\n"
        ":press Select Project\n"
        ":file deep/zero.prj\n"
        ":press Create Index\n"
        ":expect Strange! Total Weight could not be zero!\n"
        ":cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_TRUE(run.folder().has("deep/p.grd")); // the proposal: .prj gives way to .grd
    EXPECT_EQ(parseProject(run.folder().read("deep/p.prj")).size(), 2u); // "Exit" writes nothing
}

} // namespace
} // namespace tessaran::index
