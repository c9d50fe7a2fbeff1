#include "base/file.h"
#include "grid/grid_file.h"
#include "support/comma_locale.h"
#include "support/literal_grid_file.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>
#include <sstream>

namespace tessaran::grid {
namespace {

namespace fs = std::filesystem;
using base::Result;
using test::LiteralGrid;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string written(const myGrid& grid) {
    std::string out;
    base::NoProgress nobody;
    EXPECT_TRUE(writeGridText(
        grid, [&](std::string_view part) { out += part; }, nobody));
    return out;
}

Result<void> read(std::string_view text, myGrid& grid, bool loadValues = true) {
    base::NoProgress nobody;
    return readGridText(text, loadValues, grid, nobody);
}

std::string errorOf(const Result<void>& result) {
    return result ? std::string() : result.error().text;
}

void fillWithEverything(myGrid& grid) {
    std::mt19937_64 random(3);
    for (double& value : grid.values())
        switch (random() % 8) {
        case 0:
            value = std::bit_cast<double>(random());
            break;
        case 1:
            value = -1e20;
            break;
        default:
            value = std::ldexp(static_cast<double>(random()), -50);
        }
}

TEST(GridFile, WritesLineByLine) {
    myGrid grid;
    grid.setupGrid(2, 2, 10.0, 20.0, 0.0);
    grid.setOrigin(5.0, -7.5, 0.0);
    for (int k = 0; k < 9; ++k)
        grid.values()[static_cast<std::size_t>(k)] = k;
    grid.setValue(1, 0, -1e20);
    grid.setTitle("Ponds");
    EXPECT_EQ(written(grid), "-7.500000\r\n5.000000\r\n32.500000\r\n25.000000\r\n2\r\n2\r\n"
                             "0.000000\r\nN\r\n2.000000\r\n3.000000\r\n4.000000\r\n5.000000\r\n"
                             "6.000000\r\n7.000000\r\n8.000000\r\nPonds\r\n"
                             "ZELK Stability Application");
}

TEST(GridFile, RefusesToWriteAnUndefinedGrid) {
    myGrid grid;
    grid.setupGrid(1, 5, 1.0, 1.0, 0.0);
    base::NoProgress nobody;
    EXPECT_EQ(errorOf(writeGridText(
                  grid, [](std::string_view) { FAIL(); }, nobody)),
              "Grid is not defined!");
}

TEST(GridFile, EqualsTheLiteralWriterByteForByte) {
    // More values than one batch of pieces holds.
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(1023, 777, 12.5, 3.25, 0.0));
    grid.setOrigin(1234567.25, -0.0, 0.0);
    grid.setTitle("G\xC3\xA4nge \xFF");
    fillWithEverything(grid);
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* file = open_memstream(&text, &size);
    test::literalWrite(file, 1023, 777, grid.origin().x, grid.origin().y, 12.5, 3.25, grid.title(),
                       grid.values().data());
    std::fclose(file);
    EXPECT_TRUE(written(grid) == std::string_view(text, size));
    std::free(text);
}

TEST(GridFile, RoundTripKeepsEverything) {
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(301, 97, 0.5, 3.25, 30.0));
    grid.setOrigin(1000.125, -2000.5, 0.0);
    grid.setTitle("G\xC3\xA4nge \xFF"); // UTF-8 and a byte that is none
    for (std::size_t k = 0; k < grid.values().size(); ++k)
        grid.values()[k] = 0.000001 * static_cast<double>(k * k);
    grid.setValue(4, 4, kNaN);
    grid.setValue(5, 5, HUGE_VAL);
    grid.setValue(6, 6, -HUGE_VAL); // below -1e20: no value
    const std::string text = written(grid);
    myGrid again;
    ASSERT_EQ(errorOf(read(text, again)), "");
    EXPECT_EQ(again.nX(), 301);
    EXPECT_EQ(again.nY(), 97);
    EXPECT_EQ(again.cellWidthX(), 0.5);
    EXPECT_EQ(again.rotation(), 0.0); // a file describes an unrotated grid
    EXPECT_EQ(again.title(), grid.title());
    EXPECT_TRUE(std::isnan(again.getValue(4, 4)));
    EXPECT_EQ(again.getValue(5, 5), HUGE_VAL);
    EXPECT_EQ(again.getValue(6, 6), -1e20);
    EXPECT_EQ(written(again), text);
}

TEST(GridFile, TitleWithALineBreakStaysOneLine) {
    myGrid grid;
    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    grid.setValue(0, 0, 8.0);
    grid.setTitle("first\nsecond");
    myGrid again;
    ASSERT_TRUE(read(written(grid), again));
    EXPECT_EQ(again.title(), "first second");
    EXPECT_EQ(again.getValue(0, 0), 8.0); // not taken for node values
}

constexpr std::string_view kHeader = "0\n0\n2\n2\n2\n2\n";
constexpr std::string_view kNodes = "0\n4\n8\n0\n4\n8\n0\n4\n8\n";

TEST(GridFile, AveragesNodeValuesOfForeignFiles) {
    for (const std::string_view tail : {"", "title", "title\nSurvey", "\n\n"}) {
        myGrid grid;
        ASSERT_TRUE(read(std::string(kHeader).append(kNodes).append(tail), grid));
        EXPECT_EQ(grid.getValue(0, 0), 2.0);
        EXPECT_EQ(grid.getValue(1, 1), 6.0);
        EXPECT_EQ(grid.getValue(2, 2), 8.0); // the extra nodes stay
    }
    for (const std::string_view tail :
         {"title\nzelk stability application", "ZELK Stability Application",
          "\r\nZELK Stability Application\r\nmore"}) {
        myGrid grid;
        ASSERT_TRUE(read(std::string(kHeader).append(kNodes).append(tail), grid));
        EXPECT_EQ(grid.getValue(1, 1), 4.0) << tail;
    }
}

TEST(GridFile, ACellOfNodesWithoutValueHasNone) {
    myGrid grid;
    ASSERT_TRUE(read(std::string(kHeader) + "0\n4\n8\n0\n4\nn\n0\n4\n8\n", grid));
    EXPECT_EQ(grid.getValue(0, 0), 2.0);
    EXPECT_EQ(grid.getValue(1, 0), -1e20);
    EXPECT_EQ(grid.getValue(1, 1), -1e20);
}

TEST(GridFile, ReadsNumbersAsTheCLibraryDoes) {
    myGrid grid;
    ASSERT_TRUE(read(std::string(kHeader) + "N\nn\n 3.5 ft\n1e2\nabc\n\n-.5\n+7\n"
                                            "123456789012345678901234567890\n\n"
                                            "ZELK Stability Application",
                     grid));
    const std::array expected{
        -1e20, -1e20, 3.5, 100.0, 0.0, 0.0, -0.5, 7.0, 123456789012345678901234567890.0};
    for (std::size_t k = 0; k < expected.size(); ++k)
        EXPECT_EQ(grid.values()[k], expected[k]) << k;
}

TEST(GridFile, SaysWhichHeaderLineIsMissing) {
    const std::array ordinals{"first", "second", "third", "fourth", "fifth", "sixth"};
    std::string text;
    for (const char* ordinal : ordinals) {
        myGrid grid;
        EXPECT_EQ(errorOf(read(text, grid)), std::string("Error in reading ") + ordinal + " line!");
        text += "1\n";
    }
}

TEST(GridFile, RefusesBadHeaders) {
    myGrid grid;
    grid.setupGrid(3, 3, 1.0, 1.0, 0.0);
    EXPECT_EQ(errorOf(read("0\n0\n2\n2\n0\n2\n", grid)), "Error in calculating number of cells!");
    EXPECT_EQ(errorOf(read("0\n0\n2\n2\n2\n-4\n", grid)), "Error in calculating number of cells!");
    EXPECT_EQ(errorOf(read("0\n0\n0.0001\n2\n2\n2\n", grid)), "Error in setting up grid!");
    // Counts beyond all memory, and counts that a file of this size cannot hold.
    EXPECT_EQ(errorOf(read("0\n0\n2\n2\n2000000000\n2000000000\n", grid)),
              "Error in setting up grid!");
    EXPECT_EQ(errorOf(read("0\n0\n2\n2\n10000\n10000\n", grid, false)),
              "Error in setting up grid!");
    EXPECT_EQ(errorOf(read("nan\n0\n2\n2\n2\n2\n", grid)), "Error in setting up grid!");
    EXPECT_EQ(grid.nX(), 3); // untouched
    // A zero X width is not checked here.
    EXPECT_TRUE(read("0\n0\n2\n0\n2\n2\n", grid, false));
    EXPECT_FALSE(grid.isDefined());
}

TEST(GridFile, HeaderOnlyLeavesBlankValues) {
    myGrid grid;
    grid.setBlankValue(3.0);
    ASSERT_TRUE(read(std::string(kHeader).append(kNodes), grid, false));
    EXPECT_EQ(grid.getValue(1, 1), 3.0);
    EXPECT_EQ(grid.getDefinition()->cellWidthX, 1.0);
}

TEST(GridFile, KeepsWhatACutOffFileHeld) {
    myGrid grid;
    const Result<void> result = read(std::string(kHeader) + "1\n2\n3\n4", grid);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().text, "the file ends after 4 of 9 values");
    EXPECT_EQ(result.error().line, 10);
    EXPECT_EQ(grid.getValue(0, 1), 4.0);
    EXPECT_EQ(grid.getValue(1, 1), 0.0);
}

class Stopper final : public base::Progress {
  public:
    void begin(std::string_view text, long lower, long upper) override {
        EXPECT_EQ(text, "Loading grid ...");
        EXPECT_EQ(lower, 0);
        upper_ = upper;
    }
    void setPosition(long position) override {
        EXPECT_GE(position, last_);
        EXPECT_LE(position, upper_ + 1);
        last_ = position;
    }
    void end() override { ended = true; }
    bool cancelled() override { return stopAt >= 0 && last_ >= stopAt; }

    long stopAt = -1;
    bool ended = false;

  private:
    long upper_ = 0;
    long last_ = 0;
};

TEST(GridFile, TellsProgressAndStops) {
    myGrid grid;
    grid.setupGrid(1000, 1200, 1.0, 1.0, 0.0);
    const std::string text = written(grid);
    Stopper watcher;
    EXPECT_TRUE(readGridText(text, true, grid, watcher));
    EXPECT_TRUE(watcher.ended);
    Stopper stopper;
    stopper.stopAt = 1;
    const Result<void> result = readGridText(text, true, grid, stopper);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, base::ErrorKind::cancelled);
    EXPECT_TRUE(stopper.ended);
}

// Every small file of the folder, whole, cut off after each byte, and with its line ends changed:
// read by this reader and by the literal one.
void expectAsLiteral(const std::string& text) {
    LiteralGrid expected;
    std::istringstream in(text);
    const std::string literal = test::literalRead(in, expected);
    myGrid grid;
    const Result<void> result = read(text, grid);
    if (literal.starts_with("Error")) {
        EXPECT_EQ(errorOf(result), literal);
        return;
    }
    EXPECT_EQ(result.ok(), literal.empty()) << errorOf(result);
    ASSERT_EQ(grid.values().size(), expected.values.size());
    for (std::size_t k = 0; k < expected.values.size(); ++k)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(grid.values()[k]),
                  std::bit_cast<std::uint64_t>(expected.values[k]));
    EXPECT_EQ(grid.title(), expected.title);
    EXPECT_EQ(grid.cellWidthX(), expected.cellWidthX);
    EXPECT_EQ(grid.origin().y, expected.originY);
}

TEST(GridFile, ReadsEveryDataFileAsTheLiteralReaderDoes) {
    int files = 0;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::path(TESSARAN_SOURCE_DIR) / "tests/data/grd")) {
        ++files;
        SCOPED_TRACE(entry.path().filename());
        const std::string text = base::readFile(entry.path()).value();
        for (std::size_t length = 0; length <= text.size(); ++length) {
            SCOPED_TRACE(length);
            expectAsLiteral(text.substr(0, length));
        }
        std::string plain = text;
        std::erase(plain, '\r');
        expectAsLiteral(plain);
    }
    EXPECT_GE(files, 5);
}

TEST(GridFile, ReadsAndWritesUnderACommaLocale) {
    const test::CommaLocale comma;
    ASSERT_TRUE(comma.inForce());
    myGrid grid;
    const bool ok = read(std::string(kHeader) + "0.5\n4\n8\n0\n4\n8\n0\n4\n8\n\n"
                                                "ZELK Stability Application",
                         grid)
                        .ok();
    const std::string text = written(grid);
    ASSERT_TRUE(ok);
    EXPECT_EQ(grid.getValue(0, 0), 0.5);
    EXPECT_NE(text.find("\r\n0.500000\r\n"), std::string::npos);
}

TEST(GridFile, AFailedWriteLeavesTheEarlierFile) {
    const fs::path folder = fs::path(testing::TempDir()) / "tessaran_grid_file";
    fs::create_directories(folder);
    const std::string name = (folder / "ponds.grd").string();
    myGrid grid;
    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    base::NoProgress nobody;
    ASSERT_TRUE(writeGridFile(grid, name, nobody));
    const std::string before = base::readFile(name).value();
    Stopper stopper;
    stopper.stopAt = 0;
    EXPECT_FALSE(writeGridFile(grid, name, stopper));
    EXPECT_EQ(base::readFile(name).value(), before);
    const Result<void> intoFolder = writeGridFile(grid, folder.string(), nobody);
    ASSERT_FALSE(intoFolder);
    EXPECT_EQ(intoFolder.error().cause, base::IoCause::accessDenied);
    myGrid again;
    EXPECT_EQ(readGridFile((folder / "none.grd").string(), true, again, nobody).error().cause,
              base::IoCause::notFound);
    EXPECT_TRUE(readGridFile(name, true, again, nobody));
    fs::remove_all(folder);
}

TEST(GridFileKindOfName, LooksForTheEndingAnywhereAfterTheFirstCharacter) {
    EXPECT_EQ(gridFileKind("a.grd"), GridFileKind::grid);
    EXPECT_EQ(gridFileKind("A.GRD.bak"), GridFileKind::grid);
    EXPECT_EQ(gridFileKind("x.TOP"), GridFileKind::definition);
    EXPECT_EQ(gridFileKind("x.for"), GridFileKind::definition);
    EXPECT_EQ(gridFileKind(".grd"), GridFileKind::unknown);
    EXPECT_EQ(gridFileKind("grid.txt"), GridFileKind::unknown);
    EXPECT_EQ(gridFileKind(""), GridFileKind::unknown);
}

} // namespace
} // namespace tessaran::grid
