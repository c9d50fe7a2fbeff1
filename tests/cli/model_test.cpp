// Models from code maps to results, as people call the program.

#include "program.h"
#include "support/resource_limits.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

using tessaran::test::MemoryLimit;
using tessaran::test::Program;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kRock = " --modulus 3000000 --lamination 50 --gradient 1.08 --width 10"
                              " --criterion 1e-8 --relaxation 1.5 --iterations 20000";

// 10 columns and 20 rows; what stands in the fifth and sixth row from the north.
std::string map(const std::string& fifth, const std::string& sixth) {
    std::string text = "10,20,2000.000000,3000.000000\n";
    for (int row = 1; row <= 20; ++row)
        text += (row == 5 ? fifth : row == 6 ? sixth : "AAAAAAAAAA") + "\n";
    return text;
}

std::string line(const std::string& text, int number) {
    std::size_t from = 0;
    for (int k = 1; k < number; ++k)
        from = text.find('\n', from) + 1;
    return text.substr(from, text.find('\n', from) - from);
}

} // namespace

TEST_F(Program, ComposesAModelFromMapsAndSolvesIt) {
    folder_.write("solid.txt", map("AAAAAAAAAA", "AAAAAAAAAA"));
    folder_.write("mined.txt", map("AAA1SS1AAA", "AAA1111AAA"));
    ASSERT_EQ(run(std::string("inp two.inp --title Test --material 1,300000 --material 6,5000,0,1"
                              " --seam=-1000,6,solid.txt,mined.txt --code S=2") +
                  kRock),
              0)
        << err();
    EXPECT_THAT(out(), HasSubstr("Written: two.inp"));
    EXPECT_THAT(out(), HasSubstr("Model: 10 x 20 elements, 1 seams, 2 steps\n"));
    // Inches: 10 ft are 120, 1.08 psi/ft are 0.09 psi/in, 1000 ft are 12000.
    const std::string model = folder_.read("two.inp");
    EXPECT_THAT(model, StartsWith("Test\n"));
    EXPECT_THAT(model, HasSubstr("AAA1BB1AAA\nAAA1111AAA\n")) << "S is material 2";

    EXPECT_EQ(run(std::string("inp two.inp --material 1,300000 --seam=-1000,6,solid.txt") + kRock),
              1);
    EXPECT_THAT(err(), HasSubstr("two.inp exists"));
    EXPECT_EQ(folder_.read("two.inp"), model);

    ASSERT_EQ(run("solve two.inp"), 0) << err();
    EXPECT_THAT(out(), HasSubstr("2 of 2 steps solved\n"));
    // Step 1: solid coal closes by q h / Es = 1080 psi x 6 ft / 300000 psi.
    const std::string results = folder_.read("two.f1");
    EXPECT_EQ(line(results, 1), "  2,     200,           10,  10,  20,         2000,         3000");
    EXPECT_EQ(line(results, 4),
              "      0.0216,         1080,            0,            0,         1080");
    EXPECT_EQ(std::count(results.begin(), results.end(), '\n'), 3 + 2 * 200);
    // Mirrored edges all around: the seam carries what is put on it.
    EXPECT_THAT(out(), HasSubstr("Step 1, seam 1: convergence 0.0216 to 0.0216 ft, stress 1080 to "
                                 "1080 psi, elements carry 100.000 % of the load put on them\n"));
    EXPECT_THAT(out(), HasSubstr("Step 2, seam 1: "));
    EXPECT_THAT(line(out(), 1), StartsWith("Model: "));
    const std::string pillars = folder_.read("two_pillars.csv");
    EXPECT_THAT(pillars, HasSubstr("\n1,1,1,2050,3100,200,20000,1080,1080,1080,yes\n"));
    // Step 2: 192 elements of coal carry 200 x 1080 psi less what the gob and, closed, the entries
    // carry.
    EXPECT_THAT(pillars, HasSubstr("\n2,1,1,"));
    EXPECT_THAT(pillars, HasSubstr(",192,19200,"));
    EXPECT_THAT(folder_.read("two.out"), HasSubstr("     FINE MESH, STEP = 2, SEAM = 1\n\n"));
}

TEST_F(Program, ComposesNothingFromWhatTheReaderWouldRefuse) {
    folder_.write(
        "odd.txt", "15,10,0,0\n" + [] {
            std::string rows;
            for (int row = 0; row < 10; ++row)
                rows += "AAAAAAAAAAAAAAA\n";
            return rows;
        }());
    EXPECT_EQ(run(std::string("inp odd.inp --material 1,300000 --seam=-1000,6,odd.txt") + kRock),
              1);
    EXPECT_THAT(err(), HasSubstr("divisible by 10"));
    EXPECT_FALSE(folder_.has("odd.inp"));
    EXPECT_EQ(run(std::string("inp odd.inp --material 9,1 --seam=-1000,6,odd.txt") + kRock), 2);
    EXPECT_EQ(run("inp odd.inp"), 2);
    EXPECT_EQ(run("solve missing.inp"), 1);
    EXPECT_THAT(err(), HasSubstr("RI1a"));
}

// A seam of 10 x 10 elements and a plane of 400 million blocks.
constexpr const char* kTooLarge = "Too large\n0.25, 3000000, 600, 1, 0\n1\n1, 300000, 0, 0, 0, 0\n"
                                  "120, 10, 10, 0.09\n0, 0, -12000, 72\n"
                                  "1.5, 0.001, 5000, 1, 1, 0, 1, 0\n1, 1, 1, 1\n"
                                  "400000000, 1, 20000, 20000, 0, 0, -6000\n";
constexpr const char* kLimited = "ulimit -v 3000000; "; // kilobytes

TEST_F(Program, EndsWithItsMessageWhereMemoryIsShort) {
    if (!MemoryLimit::possible())
        GTEST_SKIP() << "memory is not limited under a sanitizer";
    folder_.write("large.inp", kTooLarge + std::string(100, 'A') + "\n");
    EXPECT_EQ(run("solve large.inp", kLimited), 1);
    EXPECT_THAT(err(), testing::EndsWith("allocation failure 2 in dmatrix()\n...now exiting to the "
                                         "system...\n"));
    EXPECT_TRUE(folder_.has("large.f1")) << "what was written stays";
}

TEST_F(Program, KeepsCopiesOfDrawingsWhenItHasToEnd) {
    if (!MemoryLimit::possible())
        GTEST_SKIP() << "memory is not limited under a sanitizer";
    folder_.write("large.inp", kTooLarge + std::string(100, 'A') + "\n");
    folder_.write("plan.scr", "POINT 7,8\n");
    ASSERT_EQ(run("run plan.scr --save plan.dxf"), 0) << err();
    const std::string saved = folder_.read("plan.dxf");
    const std::string plekton = "zelk_plekton\n:set Input File Name: (.inp) = large.inp\n"
                                ":press Run\n\n:cancel\nPOINT 9,9\n";
    folder_.write("end.scr", "POINT 1,1\n" + plekton);
    EXPECT_EQ(run("run end.scr --drawing plan.dxf --save plan.dxf", kLimited), 1);
    EXPECT_THAT(out(), HasSubstr("(message) allocation failure 2 in dmatrix()"));
    EXPECT_THAT(err(), HasSubstr("A copy of plan.dxf is kept: "));
    EXPECT_EQ(folder_.read("plan.dxf"), saved);
    folder_.write("look.scr", "LIST all\n\n:expect X = 1\n");
    EXPECT_EQ(run("run look.scr --drawing plan.autosave.dxf"), 0) << err() << out();

    // At the console, and with a drawing that has no file.
    folder_.write("typed", "POINT 1,1\n" + plekton + "QUIT\nyes\n");
    EXPECT_EQ(run("console <typed", kLimited), 1);
    EXPECT_THAT(err(), HasSubstr("A copy of Drawing1 is kept: "));
    EXPECT_THAT(out(), Not(HasSubstr("9,9")));
    int copies = 0;
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(folder_ / "config/tessaran/recovery"))
        copies += file.path().filename() == "Drawing1.autosave.dxf" ? 1 : 0;
    EXPECT_EQ(copies, 1);
}
