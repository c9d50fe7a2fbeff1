#include "index/project_file.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tessaran::index {
namespace {

namespace fs = std::filesystem;

const std::vector<ProjectEntry> kTwo{{"Roof", "grids/roof.grd", "Roof (grid: 2 * 3)", "50"},
                                     {"ROOF", "c:\\mine\\\xc3\xbc.grd", "", "1.5"}};

TEST(ProjectFile, WritesACountAndFourLinesAnEntry) {
    EXPECT_EQ(*projectText({}), "0");
    EXPECT_EQ(*projectText(kTwo), "2\nRoof\ngrids/roof.grd\nRoof (grid: 2 * 3)\n50\nROOF\n"
                                  "c:\\mine\\\xc3\xbc.grd\n\n1.5");
    EXPECT_EQ(parseProject(*projectText(kTwo)), kTwo);
    EXPECT_FALSE(projectText({{"a\nb", "f", "d", "1"}}));
}

TEST(ProjectFile, ReadsWhatIsThereWhateverTheCountSays) {
    EXPECT_EQ(parseProject("3\r\na\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\n4\r\n").size(), 2u);
    EXPECT_EQ(parseProject("3\na\nb\nc\nd\ne\nf\ng").size(), 1u); // half an entry is none
    EXPECT_EQ(parseProject("1\na\nb\nc\nd\ne\nf\ng\nh").size(), 1u);
    EXPECT_EQ(parseProject("2000000000\na\nb\nc\nd").size(), 1u);
    EXPECT_EQ(parseProject("99999999999999999999\na\nb\nc\nd").size(), 1u);
    EXPECT_TRUE(parseProject("-1\na\nb\nc\nd").empty());
    EXPECT_TRUE(parseProject("x\na\nb\nc\nd").empty());
    EXPECT_TRUE(parseProject("").empty());
    EXPECT_TRUE(parseProject("5").empty());
}

// Every file of the folder with what is written for it beside it (NAME.prj, NAME.expected).
TEST(ProjectFile, ReadsTheSamplesAndWritesThemInItsOwnForm) {
    const fs::path folder = fs::path(TESSARAN_SOURCE_DIR) / "tests/data/prj";
    const auto text = [](const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    int samples = 0;
    for (const auto& file : fs::directory_iterator(folder)) {
        if (file.path().extension() != ".prj")
            continue;
        ++samples;
        const auto entries = readProject(file.path());
        ASSERT_TRUE(entries) << file.path();
        const fs::path expected = fs::path(file.path()).replace_extension(".expected");
        EXPECT_EQ(*projectText(*entries) + "\n", text(expected)) << file.path();
    }
    EXPECT_GE(samples, 4);
}

TEST(ProjectFile, FailsToReadOrWriteWithAReasonAndKeepsTheEarlierFile) {
    test::TemporaryFolder folder;
    EXPECT_FALSE(readProject("missing.prj"));
    folder.write("sub/roof.grd", "x");
    EXPECT_FALSE(readProject("sub"));
    EXPECT_FALSE(writeProject("sub", kTwo));
    ASSERT_TRUE(writeProject("p.prj", kTwo));
    EXPECT_FALSE(writeProject("p.prj", {{"a", "b\r", "c", "d"}}));
    EXPECT_EQ(*readProject("p.prj"), kTwo);

    EXPECT_EQ(gridPath("sub/roof.grd", "elsewhere/p.prj"), "sub/roof.grd");
    EXPECT_EQ(gridPath("roof.grd", "sub/p.prj"), "sub/roof.grd");
    EXPECT_EQ(gridPath("gone.grd", "sub/p.prj"), "gone.grd");
}

} // namespace
} // namespace tessaran::index
