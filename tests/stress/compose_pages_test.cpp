#include "stress/model_reader.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::stress {
namespace {

using test::ScriptRun;
using testing::HasSubstr;

const std::string kOpen = "zelk_plekton\n:press Plekton Input\n";

void writeMap(ScriptRun& run) {
    std::string map = "10,10,0.000000,0.000000\n";
    for (int row = 0; row < 10; ++row)
        map += row == 5 ? "AA111SSAAA\n" : "AAAAAAAAAA\n";
    run.folder().write("map.txt", map);
}

TEST(PlektonInput, ComposesAModelAndRunsIt) {
    ScriptRun run;
    writeMap(run);
    run(kOpen + ":set Title = Made in the dialog\n:set Units = meters, MegaPascals\n"
                ":set Elastic Modulus = 20000\n:set Vertical Stress Gradient = 0.025\n"
                ":set Lamination(layer) Thickness = 15\n:set Element Width = 3\n"
                ":set Output File (.inp) = made\n"
                ":page Materials\n:set Material = 1,2000\n:press Add Material\n"
                ":set Material = 6,100,0,1\n:press Add Material\n"
                ":select Materials = 2\n:set Material = 6,200,0,1\n:press Change Material\n"
                ":page Seams\n:set Seam = -300,2,map.txt\n:press Add Seam\n"
                ":set Seam = -350,2,map.txt\n:press Add Seam\n:select Seams = 2\n"
                ":press Remove Seam\n"
                ":page Codes\n:set Code = S=2\n:press Add Code\n"
                ":page Control\n:uncheck Mirrored Boundaries/East\n:show\n:ok\n"
                ":press Run\n\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("File: made.inp is saved!"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) Plekton was finished successfully!"));
    const ModelReading read = readModel("made.inp");
    ASSERT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(read.model.title, "Made in the dialog");
    ASSERT_EQ(read.model.seams.size(), 1u);
    EXPECT_EQ(read.model.materials[1].p[0], 200e6);
    EXPECT_EQ(read.model.boundaries.east, 0);
    EXPECT_EQ(read.model.boundaries.north, 1);
    EXPECT_EQ(read.model.codes[0][0][5 * 10 + 4], 'B');
    EXPECT_TRUE(run.folder().has("made_pillars.csv"));
}

TEST(PlektonInput, StaysOpenOnWhatIsWrong) {
    ScriptRun run;
    writeMap(run);
    run(kOpen + ":ok\n:expect The output file's name is missing!\n"
                ":set Output File (.inp) = made.inp\n:ok\n"
                ":expect A model needs at least one seam\n"
                ":set Seam = -300\n:press Add Seam\n:expect is not a seam\n"
                ":set Seam = -300,2,map.txt\n:press Add Seam\n:ok\n"
                ":expect stands for no material\n:press Change Material\n"
                ":expect is not a material\n:cancel\n:cancel\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_FALSE(run.folder().has("made.inp"));
}

} // namespace
} // namespace tessaran::stress
