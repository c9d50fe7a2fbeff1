// The module as the program runs it: loaded through its entry point, used by scripts.

#include "app/entry_point.h"
#include "app/messages.h"
#include "grid/base_grid.h"
#include "support/recording_host.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::app {
namespace {

using test::RecordingHost;
using test::ScriptRun;
using testing::HasSubstr;

int send(Message message, host::Host* host) {
    return acrxEntryPoint(static_cast<int>(message), host);
}

TEST(Module, BringsCommandsMenuAndDataAndTakesThemAway) {
    RecordingHost host;
    EXPECT_EQ(send(Message::initialise, &host), 0);
    ASSERT_EQ(host.commandEntries.size(), 31u);
    EXPECT_EQ(host.commandEntries.front().globalName, "_zelk_setGrid");
    EXPECT_EQ(host.menus["Tessaran"].size(), 31u);
    EXPECT_NE(host.documentSlot().data(), nullptr);
    EXPECT_EQ(send(Message::loadDrawing, &host), 0);
    EXPECT_EQ(send(Message::unloadDrawing, &host), 0);

    // A handler runs on the host that loaded the module.
    for (const host::CommandEntry& entry : host.commandEntries)
        if (entry.localName == "zelk_RFRI_List")
            entry.handler();
    EXPECT_EQ(host.printed, "\nNo RFRI entity selected.");

    EXPECT_EQ(send(Message::unload, &host), 0);
    EXPECT_TRUE(host.commandEntries.empty());
    EXPECT_TRUE(host.menus.empty());
    EXPECT_EQ(host.documentSlot().data(), nullptr);
    EXPECT_NE(send(Message::initialise, nullptr), 0); // no host, no module
}

TEST(Module, KnowsCommandsInAnyCapitalsAndNoMisspeltOnes) {
    ScriptRun run;
    run("ZELK_SETGRID\n:cancel\n"
        "_Zelk_SetGrid\n:cancel\n"
        "'_zelk_zelkabout\n:show\n:ok\n"
        "ZELKMenu\n"
        "zelk_gridUtility\n:cancel\n"
        "zelk_checkClosedPloylines\n");
    EXPECT_EQ(run.status(), 1);
    EXPECT_THAT(run.error(), HasSubstr(":11: "));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) About Tessaran System"));
    EXPECT_THAT(run.transcript(), HasSubstr("Intergrated Tessaran System"));
    EXPECT_THAT(run.transcript(), HasSubstr("Contacts:"));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Grid Utilities -> cancel"));
}

TEST(Module, KeepsABaseGridForEachOpenDrawing) {
    ScriptRun run;
    run("zelk_setGrid\n"
        ":set Number of Cells in X Direction = 31\n"
        ":press Preview Grid\n"
        ":ok\n"
        ":expect Document Base Grid for this session is defined!\n"
        "NEW\n"
        "zelk_setGrid\n"
        ":show\n"
        ":set Number of Cells in X Direction = 47\n"
        ":cancel\n"
        "tabTest\n"
        ":set Number of Cells in X Direction = 48\n"
        ":ok\n"
        "zelk_setGrid\n"
        ":show\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Define a Grid -> ok"));
    EXPECT_EQ(grid::baseGrid(run.host()).cellsX, "10");
    EXPECT_EQ(run.drawing().readRecord("ZELK_STABILITY_DICTIONARY", "ZelkBaseGrid").texts.at(0),
              "10");
}

TEST(Module, BaseGridCountsOutsideTheirRangeKeepTheDialogOpen) {
    ScriptRun run;
    run("zelk_setGrid\n"
        ":set Number of Cells in X Direction = 0\n"
        ":ok\n"
        ":expect Error: Size of cells should be larger than zero!\n"
        ":set Number of Cells in X Direction = 2500\n"
        ":ok\n"
        ":expect Please enter an integer between 1 and 2000.\n"
        ":set Number of Cells in X Direction = 25\n"
        ":set Cell Width in X Direction = 2\n"
        ":press Geometry\n"
        "100,50\n"
        "4\n"
        "\n"
        ":show\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    // 100 by 50 from the origin in cells of 4 by the default of 10.
    EXPECT_EQ(grid::baseGrid(run.host()).cellsX, "25");
    EXPECT_EQ(grid::baseGrid(run.host()).cellsY, "5");
}

} // namespace
} // namespace tessaran::app
