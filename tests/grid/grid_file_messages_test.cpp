// What the user sees of grid files that cannot be read or written.

#include "grid/grid_file.h"
#include "support/recording_host.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace tessaran::grid {
namespace {

using test::RecordingHost;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kSmallGrid = "0\n0\n2\n2\n2\n2\n1\n2\n3\n4\n5\n6\n7\n8\n9\nTitle\n"
                                        "ZELK Stability Application";

TEST(GridFileMessages, OpenMessagesLoseAsManyCharactersAsTheCauseSays) {
    const TemporaryFolder folder;
    RecordingHost host;
    myGrid grid;
    EXPECT_FALSE(grid.readGrid(host, "none.grd", true));    // 2: not found
    EXPECT_FALSE(grid.readGridDefinition(host, ".", true)); // 5: a folder
    folder.write("file", "");
    EXPECT_FALSE(grid.readGrid(host, "file/below.grd", true)); // 3: bad path
    ASSERT_TRUE(grid.setupGrid(2, 2, 1.0, 1.0, 0.0));
    EXPECT_FALSE(grid.writeGrid(host, "no_folder/out.grd"));    // 3
    EXPECT_FALSE(grid.writeGrid(host, folder.path().string())); // 5
    EXPECT_THAT(host.messages,
                ElementsAre("le could not be opened: ", "could not be opened: ",
                            "e could not be opened: ", "e could not be opened to write",
                            "could not be opened to write"));
}

TEST(GridFileMessages, ReadsWithTheMeterAndWritesBack) {
    const TemporaryFolder folder;
    folder.write("a.grd", kSmallGrid);
    RecordingHost host;
    myGrid grid;
    EXPECT_TRUE(readAnyGridFile(host, "a.grd", true, grid));
    EXPECT_THAT(host.meterTexts, ElementsAre("Loading grid ..."));
    EXPECT_EQ(grid.getValue(1, 1), 5.0);
    EXPECT_TRUE(grid.writeGrid(host, "b.grd"));
    EXPECT_TRUE(grid.readGrid(host, "b.grd", false));
    EXPECT_EQ(grid.getValue(1, 1), 0.0); // the header only
    EXPECT_TRUE(grid.readGrid(host, "b.grd", true));
    EXPECT_EQ(grid.getValue(1, 1), 5.0);
    EXPECT_TRUE(grid.writeGridDefinition(host, "c.top"));
    EXPECT_TRUE(readAnyGridFile(host, "c.top", true, grid));
    EXPECT_EQ(grid.getValue(0, 1), 4.0);
    EXPECT_THAT(host.messages, IsEmpty());
}

TEST(GridFileMessages, TellsWhatIsWrongWithTheContent) {
    const TemporaryFolder folder;
    folder.write("short.grd", "1\n2\n");
    folder.write("cells.grd", "0\n0\n2\n2\n0\n2\n");
    folder.write("flat.grd", "0\n0\n0\n2\n2\n2\n");
    folder.write("absurd.grd", "0\n0\n2\n2\n2000000000\n2000000000\n");
    folder.write("cut.grd", kSmallGrid.substr(0, 20));
    folder.write("bad.top", "x");
    folder.write("wide.top", "9999,1,2001,2,0,0,0\n");
    RecordingHost host;
    myGrid grid;
    for (const char* name : {"short.grd", "cells.grd", "flat.grd", "absurd.grd", "cut.grd",
                             "bad.top", "wide.top", "grid.txt"})
        EXPECT_FALSE(readAnyGridFile(host, name, true, grid)) << name;
    // A file that ends among its values has no message.
    EXPECT_THAT(host.messages,
                ElementsAre("Error in reading third line!", "Error in calculating number of cells!",
                            "Error in setting up grid!", "Error in setting up grid!",
                            " bad grid definition -- 2!", "bad grid definition -- 3!",
                            "Unknown grid file !"));
    EXPECT_EQ(grid.getValue(0, 1), 4.0); // of the cut file
}

TEST(GridFileMessages, WritingATurnedGridSaysThatTheRotationIsLost) {
    const TemporaryFolder folder;
    RecordingHost host;
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 1.0, 1.0, 0.0));
    EXPECT_TRUE(grid.writeGrid(host, "a.grd"));
    EXPECT_EQ(host.printed, "");
    ASSERT_TRUE(grid.setupGrid(2, 2, 1.0, 1.0, 30.0));
    EXPECT_FALSE(grid.writeGrid(host, "none/a.grd"));
    EXPECT_EQ(host.printed, "");
    const std::string lost = "\nAttention: Grid files do not hold the rotation of a grid!";
    EXPECT_TRUE(grid.writeGrid(host, "a.grd"));
    EXPECT_EQ(host.printed, lost);
    EXPECT_TRUE(grid.writeGridDefinition(host, "a.top"));
    EXPECT_EQ(host.printed, lost + lost);
}

TEST(GridFileMessages, RefusesToWriteAnUndefinedGrid) {
    const TemporaryFolder folder;
    folder.write("a.grd", "earlier");
    RecordingHost host;
    const myGrid grid;
    EXPECT_FALSE(grid.writeGrid(host, "a.grd"));
    EXPECT_THAT(host.messages, ElementsAre("Grid is not defined!"));
    EXPECT_EQ(folder.read("a.grd"), "earlier");
}

} // namespace
} // namespace tessaran::grid
