// Every selection shape of the grid editor, driven by scripts through the grid utilities.

#include "console/kept_graphics.h"
#include "grid/utility_script.h"

#include <gmock/gmock.h>

namespace tessaran::grid {
namespace {

using test::kLoad;
using test::kSaveAs;
using test::ScriptRun;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Rows = std::vector<std::vector<double>>;

Rows numbered() {
    return {{0, 1, 2, 3}, {10, 11, 12, 13}, {20, 21, 22, 23}, {30, 31, 32, 33}};
}

// Runs the editor on the numbered 4 x 4 grid with these lines at its prompts, then gives the
// selected cells 99 and saves.
Rows edited(ScriptRun& run, const std::string& lines) {
    test::writeGrid(run, "a.grd", numbered());
    run(kLoad + ":press Edit\n" + lines + "\n99\n\n\n" + kSaveAs);
    EXPECT_EQ(run.status(), 0) << run.report();
    return test::readCells(run, "out.grd");
}

TEST(GridEditorScripts, WindowTakesCellsWhollyInside) {
    ScriptRun run;
    Rows rows = edited(run, "Window\n31,31\n9,9\n:expect 4 cells added into selection.\n");
    EXPECT_THAT(rows, ElementsAre(ElementsAre(0, 1, 2, 3), ElementsAre(10, 99, 99, 13),
                                  ElementsAre(20, 99, 99, 23), ElementsAre(30, 31, 32, 33)));
    EXPECT_THAT(run.transcript(), HasSubstr("Pick the first corner:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Pick the oppsite corner:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Average value at the 4 cells is: 16.500000."));
    EXPECT_THAT(run.transcript(), HasSubstr("Change 4 selected cell values to <16.500000>:"));
    EXPECT_THAT(run.transcript(), HasSubstr("4 grid cells are assigned to 99.000000."));
    EXPECT_THAT(run.transcript(), HasSubstr("New selection begins ..."));
    EXPECT_THAT(run.transcript(), HasSubstr("Grid values modified, accept the changes?<YES>:"));
}

TEST(GridEditorScripts, CrossingTakesCellsTouched) {
    ScriptRun run;
    EXPECT_THAT(edited(run, "C\n5,5\n15,25\n"),
                ElementsAre(ElementsAre(99, 99, 2, 3), ElementsAre(99, 99, 12, 13),
                            ElementsAre(99, 99, 22, 23), ElementsAre(30, 31, 32, 33)));
}

TEST(GridEditorScripts, FenceWithUndo) {
    ScriptRun run;
    EXPECT_THAT(edited(run, "F\n5,5\n5,35\nundo\n35,5\n35,15\n\n:expect 5 cells added\n"),
                ElementsAre(ElementsAre(99, 99, 99, 99), ElementsAre(10, 11, 12, 99),
                            ElementsAre(20, 21, 22, 23), ElementsAre(30, 31, 32, 33)));
    EXPECT_THAT(run.transcript(), HasSubstr("Specify first fence point:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Pick next fence point or UNDO:"));
}

TEST(GridEditorScripts, FenceThatCrossesNothingAndPointsOutside) {
    ScriptRun run;
    edited(run, "15,15\nFence\n-5,-5\n-5,50\n\n:expect 0 cells added into selection.\n"
                ":expect 1 grid cells are in current selection.\n-3,5\n"
                ":expect The point is outside of the Grid<-3.000000,5.000000>!\n");
    // undone to nothing, then begun again and left early
    ScriptRun again;
    const Rows rows = edited(again, "F\n5,5\nU\n15,5\n^C\n25,25\n:expect 1 cells added\n");
    EXPECT_EQ(rows[0][1], 1.0);
    EXPECT_EQ(rows[2][2], 99.0);
}

TEST(GridEditorScripts, PolygonsInsideAndTouching) {
    const std::string triangle = "0,0\n40,0\n0,40\n\n";
    ScriptRun inside;
    EXPECT_THAT(edited(inside, "WP\n" + triangle),
                ElementsAre(ElementsAre(99, 99, 99, 3), ElementsAre(99, 99, 12, 13),
                            ElementsAre(99, 21, 22, 23), ElementsAre(30, 31, 32, 33)));
    EXPECT_THAT(inside.transcript(), HasSubstr("Specify first polygon point:"));
    EXPECT_THAT(inside.transcript(), HasSubstr("Pick next polygon point or UNDO:"));
    // The slanted side runs through corners, which it touches.
    ScriptRun touching;
    EXPECT_THAT(edited(touching, "CPolygon\n" + triangle),
                ElementsAre(ElementsAre(99, 99, 99, 99), ElementsAre(99, 99, 99, 99),
                            ElementsAre(99, 99, 99, 23), ElementsAre(99, 99, 32, 33)));
}

TEST(GridEditorScripts, RemoveLastsUntilTheValuesAreAssigned) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", numbered());
    run(kLoad +
        ":press Edit\nALL\n:expect 16 cells added into selection.\nRemove\nW\n0,0\n40,30\n"
        ":expect 12 cells removed from selection.\n"
        ":expect 4 grid cells are in current selection.\n5,35\n"
        ":expect 3 grid cells are in current selection.\n\n77\n"
        "5,5\n:expect 1 cells added into selection.\n\n\n\n\n" +
        kSaveAs);
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("Remove Grid Cells[Window/Crossing/ALL/Fence/WPolygon/CPolygon]:"));
    EXPECT_THAT(test::readCells(run, "out.grd")[3], ElementsAre(30, 77, 77, 77));
}

TEST(GridEditorScripts, DiscardingLeavesTheGridUnchanged) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", numbered());
    run(kLoad + ":press Edit\nAll\n\n1\n5,5\n\n2\n\nNo\n:expect Exit grid editor without changes.\n"
                ":press Statistics\n:file\n:expect Mean: 16.500000\n:ok\nLINE\n0,0\n1,1\n\n");
    ASSERT_EQ(run.status(), 0) << run.report(); // nothing modified: OK did not ask
    // The editor ends with the script and keeps nothing then.
    ScriptRun cut;
    test::writeGrid(cut, "a.grd", numbered());
    cut(kLoad + ":press Edit\nAll\n\n1\n");
    EXPECT_EQ(cut.status(), 0) << cut.report();
    EXPECT_THAT(cut.transcript(), HasSubstr("Exit grid editor without changes."));
    EXPECT_TRUE(static_cast<console::KeptGraphics&>(cut.host().graphics()).graphics().empty());
}

TEST(GridEditorScripts, RefusesWhatIsNoAnswer) {
    ScriptRun run;
    test::writeGrid(run, "a.grd", numbered());
    run(kLoad + ":press Edit\nLasso\n");
    EXPECT_EQ(run.status(), 1);
    ScriptRun value;
    test::writeGrid(value, "a.grd", numbered());
    value(kLoad + ":press Edit\nAll\n\nmuch\n");
    EXPECT_EQ(value.status(), 1);
}

} // namespace
} // namespace tessaran::grid
