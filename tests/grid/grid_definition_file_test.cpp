#include "base/file.h"
#include "grid/grid_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>

namespace tessaran::grid {
namespace {

namespace fs = std::filesystem;
using base::Result;

std::string errorOf(const Result<void>& result) {
    return result ? std::string() : result.error().text;
}

TEST(GridDefinitionFile, ReadsTheOldAndTheNewForm) {
    for (const std::string_view head :
         {"6,2.5,2,3,100.25,-7.5,0\n",
          "1,6,2.5,2,3,100.25,-7.5,3.5\r\n1,NO TITLE\r\n1,Inches\r\n"}) {
        myGrid grid;
        ASSERT_EQ(errorOf(readDefinitionText(std::string(head) + "1\n2\n3\n4\n5\n6", true, grid)),
                  "");
        EXPECT_EQ(grid.nX(), 2);
        EXPECT_EQ(grid.nY(), 3);
        EXPECT_EQ(grid.cellWidthY(), 2.5);
        EXPECT_EQ(grid.origin(), (Point3{100.25, -7.5, 0.0}));
        EXPECT_EQ(grid.getValue(0, 2), 3.0); // columns outer
        EXPECT_EQ(grid.getValue(1, 0), 4.0);
        EXPECT_EQ(grid.getValue(2, 0), 0.0);
    }
}

TEST(GridDefinitionFile, KeepsSinglePrecision) {
    myGrid grid;
    ASSERT_TRUE(readDefinitionText("4,0.1,2,2,1234567.891,0.3,0\n", false, grid));
    EXPECT_EQ(grid.cellWidthX(), static_cast<double>(0.1F));
    EXPECT_EQ(grid.origin().x, static_cast<double>(1234567.891F));
    EXPECT_EQ(grid.origin().y, static_cast<double>(0.3F));
}

TEST(GridDefinitionFile, RefusesBadHeaders) {
    const std::string second = " bad grid definition -- 2!";
    const std::string third = "bad grid definition -- 3!";
    myGrid grid;
    EXPECT_EQ(errorOf(readDefinitionText("", true, grid)), "Could not read from input file.");
    for (const std::string_view head :
         {"\n", "hello", "4,1,0,2,0,0,0", "4,1,2,0,0,0,0", "4,0.00001,2,2,0,0,0", "1,1,5,3,3,0,0,0",
          "4;1;2;2", "4 ,1,2,2,0,0,0", "nan,nan", "99999999999999999999,1,2,2,0,0,0"})
        EXPECT_EQ(errorOf(readDefinitionText(head, true, grid)), second) << head;
    EXPECT_EQ(errorOf(readDefinitionText("9999,1,2001,2,0,0,0", true, grid)), third);
    EXPECT_EQ(errorOf(readDefinitionText("9999,1,2,2000000000,0,0,0", true, grid)), third);
    EXPECT_FALSE(readDefinitionText("9999,1,-2,2,0,0,0", true, grid));
    EXPECT_EQ(grid.nX(), 0);
}

TEST(GridDefinitionFile, StopsAtTheEndOfTheFile) {
    myGrid grid;
    EXPECT_FALSE(readDefinitionText("4,1,2,2,0,0,0\n1\n2\n3\n", true, grid));
    EXPECT_EQ(grid.getValue(1, 0), 3.0);
}

TEST(GridDefinitionFile, RoundTrip) {
    myGrid grid;
    grid.setupGrid(2, 2, 5.0, 5.0, 0.0);
    grid.setOrigin(1.0, 2.0, 0.0);
    for (int k = 0; k < 4; ++k)
        grid.setValue(k / 2, k % 2, k + 1.0);
    grid.setTitle("Seam");
    std::string text;
    ASSERT_TRUE(writeDefinitionText(grid, [&](std::string_view part) { text += part; }));
    EXPECT_EQ(text, "1,4,5.000000,2,2,1.000000,2.000000,2.500000\r\n1,Seam\r\n1,Inches\r\n"
                    "1.000000\r\n2.000000\r\n3.000000\r\n4.000000");
    myGrid again;
    ASSERT_TRUE(readDefinitionText(text, true, again));
    EXPECT_EQ(again.getValue(0, 1), 2.0);
    std::string second;
    again.setTitle("Seam");
    ASSERT_TRUE(writeDefinitionText(again, [&](std::string_view part) { second += part; }));
    EXPECT_EQ(second, text);
    grid.setTitle("");
    text.clear();
    ASSERT_TRUE(writeDefinitionText(grid, [&](std::string_view part) { text += part; }));
    EXPECT_NE(text.find("\r\n1,NO TITLE\r\n"), std::string::npos);
}

// The header as scanf reads it: a second opinion for every small file of the folder, whole and cut
// off after each byte.
void expectAsScanf(const std::string& text) {
    int count = 0;
    int nX = 0;
    int nY = 0;
    float size = 0;
    float x = 0;
    float y = 0;
    float mean = 0;
    int one = 0;
    const std::string line = text.substr(0, text.find('\n'));
    if (std::strncmp(line.c_str(), "1,", 2) == 0)
        std::sscanf(line.c_str(), "%d,%d,%f,%d,%d,%f,%f,%f", &one, &count, &size, &nX, &nY, &x, &y,
                    &mean);
    else
        std::sscanf(line.c_str(), "%d,%f,%d,%d,%f,%f,%f", &count, &size, &nX, &nY, &x, &y, &mean);
    std::string expected;
    if (text.empty())
        expected = "Could not read from input file.";
    else if (nX == 0 || nY == 0 || size < 0.0001 || count < nX)
        expected = " bad grid definition -- 2!";
    else if (nX > 2000 || nY > 2000)
        expected = "bad grid definition -- 3!";
    myGrid grid;
    const Result<DefinitionHeader> header = readDefinitionHeader(text);
    EXPECT_EQ(header ? std::string() : header.error().text, expected) << line;
    if (header) {
        EXPECT_EQ(header->originX, x);
        EXPECT_EQ(header->originY, y);
        EXPECT_EQ(header->cellSize, size);
    }
    static_cast<void>(readDefinitionText(text, true, grid).ok());
}

TEST(GridDefinitionFile, ReadsEveryDataFileAsScanfDoes) {
    int files = 0;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(TESSARAN_SOURCE_DIR) / "tests/data/top")) {
        ++files;
        SCOPED_TRACE(entry.path().filename());
        const std::string text = base::readFile(entry.path()).value();
        for (std::size_t length = 0; length <= text.size(); ++length)
            expectAsScanf(text.substr(0, length));
    }
    EXPECT_GE(files, 3);
}

} // namespace
} // namespace tessaran::grid
