// The program as people call it: arguments in; exit status, output, errors and files out.

#include "program.h"

#include <gmock/gmock.h>

using tessaran::test::Program;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* kDrawSquare = "PLINE\n0,0\n10,0\n10,10\n0,10\nClose\n";

} // namespace

TEST_F(Program, RunsAScriptAndSavesAfterItsLastLine) {
    folder_.write("square.scr", kDrawSquare);
    EXPECT_EQ(run("run square.scr --save out.dxf --transcript talk.txt"), 0) << err();
    EXPECT_EQ(err(), "");
    EXPECT_EQ(folder_.read("talk.txt"), out());
    EXPECT_THAT(out(), StartsWith("Command: PLINE\nSpecify start point: 0,0\n"));
    folder_.write("look.scr", "LIST all\n\n:expect LWPOLYLINE\n:expect at X = 0, Y = 10\n");
    EXPECT_EQ(run("run look.scr --drawing out.dxf"), 0) << err() << out();
}

TEST_F(Program, SavesNothingAfterALineInError) {
    folder_.write("bad.scr", std::string(kDrawSquare) + "; next\nNOSUCH\nPOINT 1,1\n");
    EXPECT_EQ(run("run bad.scr --save out.dxf"), 1);
    EXPECT_EQ(err(), "bad.scr:8: Unknown command \"NOSUCH\".\n");
    EXPECT_FALSE(folder_.has("out.dxf"));
    EXPECT_THAT(out(), Not(HasSubstr("POINT"))) << "lines after the one in error are not used";
}

TEST_F(Program, KeepsTheEarlierFileAsBackup) {
    folder_.write("square.scr", kDrawSquare);
    ASSERT_EQ(run("run square.scr --save plan.dxf"), 0);
    const std::string before = folder_.read("plan.dxf");
    folder_.write("more.scr", "POINT 5,5\nSAVE\n");
    EXPECT_EQ(run("run more.scr --drawing plan.dxf"), 0) << err();
    EXPECT_EQ(folder_.read("plan.dxf.bak"), before);
    EXPECT_NE(folder_.read("plan.dxf"), before);
}

TEST_F(Program, ReadsAScriptFromStandardInput) {
    folder_.write("square.scr", "\xEF\xBB\xBFLIST\r\nall\r\n\r\nnosuch");
    EXPECT_EQ(run("run - <square.scr"), 1);
    EXPECT_EQ(err(), "-:4: Unknown command \"nosuch\".\n");
}

TEST_F(Program, RefusesWhatItCannotRead) {
    folder_.write("empty.scr", "");
    folder_.write("noise.dxf", "this is no drawing\n");
    EXPECT_EQ(run("run empty.scr"), 0);
    EXPECT_EQ(run("run missing.scr"), 2);
    EXPECT_THAT(err(), HasSubstr("missing.scr"));
    EXPECT_EQ(run("run empty.scr --drawing missing.dxf"), 2);
    EXPECT_THAT(err(), HasSubstr("missing.dxf"));
    EXPECT_EQ(run("run empty.scr --drawing noise.dxf"), 2);
    EXPECT_THAT(err(), HasSubstr("noise.dxf:1:"));
    EXPECT_EQ(run("run empty.scr --save nowhere/out.dxf"), 1);
    EXPECT_EQ(run("run empty.scr --transcript nowhere/out.txt"), 2);
    EXPECT_EQ(run("plot missing.dxf out.png"), 2);
    EXPECT_EQ(run("grid missing.grd"), 2);
}

TEST_F(Program, ExplainsItselfAndRefusesWrongUsage) {
    EXPECT_EQ(run("--help"), 0);
    for (const char* command : {"run", "console", "solve", "plot", "grid", "inp", "cmrr"})
        EXPECT_THAT(out(), HasSubstr(command));
    EXPECT_EQ(run("run --help"), 0);
    EXPECT_THAT(out(), AllOf(HasSubstr("--drawing"), HasSubstr("--save")));
    EXPECT_EQ(run("--version"), 0);
    EXPECT_THAT(out(), StartsWith("tessaran "));
    EXPECT_EQ(run("run"), 2);
    EXPECT_EQ(run("run a.scr --frobnicate"), 2);
    EXPECT_EQ(run("plot a.dxf"), 2);
    EXPECT_EQ(run("plot a.dxf b.png --extent 1,2,3"), 2);
}

TEST_F(Program, DrawsAPicture) {
    folder_.write("square.scr", kDrawSquare);
    ASSERT_EQ(run("run square.scr --save plan.dxf"), 0);
    EXPECT_EQ(run("plot plan.dxf plan.png --width 300 --title Plan --extent -5,-5,15,15"), 0)
        << err();
    EXPECT_THAT(folder_.read("plan.png"), StartsWith("\x89PNG"));
    EXPECT_EQ(run("plot plan.dxf plan.svg --layers 0"), 0) << err();
    EXPECT_THAT(folder_.read("plan.svg"), HasSubstr("<svg"));
    EXPECT_EQ(run("plot plan.dxf plan.bmp"), 1);
    EXPECT_EQ(run("plot plan.dxf plan.png --layers NONE"), 1);
    EXPECT_FALSE(folder_.has("plan.bmp"));
}

TEST_F(Program, TellsAGridsGeometryAndStatistics) {
    // 2 x 2 cells of 10 by 5, values 1 2 / 3 N; the extra column and row stand beside them.
    folder_.write("g.grd", "100\r\n50\r\n110\r\n70\r\n2\r\n2\r\n"
                           "1\r\n2\r\n0\r\n3\r\nN\r\n0\r\n0\r\n0\r\n0\r\n"
                           "Roof\r\nZELK Stability Application\r\n");
    EXPECT_EQ(run("grid g.grd --png g.png"), 0) << err();
    EXPECT_EQ(out(), "Title        Roof\n"
                     "Cells        2 x 2\n"
                     "Cell width   10 x 5\n"
                     "Rotation     0 degrees\n"
                     "Lower left   50, 100\n"
                     "Upper right  70, 110\n"
                     "Minimum      1\n"
                     "Maximum      3\n"
                     "Mean         2\n"
                     "No value     1 cells\n");
    EXPECT_THAT(folder_.read("g.png"), StartsWith("\x89PNG"));
}

TEST_F(Program, TalksAtTheConsoleAndAsksAgain) {
    folder_.write("typed", "POINT\n1;1\n1,1\nNOSUCH\nLIST all\n\nQUIT\nno\nQUIT\nyes\nPOINT 2,2\n");
    EXPECT_EQ(run("console <typed"), 0);
    EXPECT_THAT(out(), AllOf(HasSubstr("is not a point"), HasSubstr("Unknown command"),
                             HasSubstr("1 found"), HasSubstr("POINT #")));
    EXPECT_THAT(out(), HasSubstr("-> no"));
    EXPECT_THAT(out(), testing::EndsWith("-> yes\n")) << "nothing is read after QUIT";
}

TEST_F(Program, KeepsTheProfileFromRunToRun) {
    folder_.write("profile.ini", "[Settings]\nX=10\n");
    folder_.write("empty.scr", "");
    EXPECT_EQ(run("run empty.scr"), 0);
    EXPECT_EQ(folder_.read("profile.ini"), "[Settings]\nX=10\n") << "untouched without a change";
}
