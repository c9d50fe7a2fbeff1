// The example mine's roof, assessed, drawn and gridded by the script that newcomers read.

#include "base/tolerance.h"
#include "grid/my_grid.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace tessaran::rfri {
namespace {

using testing::HasSubstr;

std::string contentOf(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

TEST(RoofFallRiskExample, RunsFromAssessmentsToTheFinalGrid) {
    const std::string examples = TESSARAN_SOURCE_DIR "/examples/";
    test::ScriptRun run;
    run.folder().write("mine.dxf", contentOf(examples + "mine.dxf"));
    run.open("mine.dxf");
    run(contentOf(examples + "roof_fall_risk.scr"));
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nMeasurment: WM-12\n"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n12 defects are processed."));

    grid::myGrid final;
    ASSERT_TRUE(final.readGrid(run.host(), "RFRI_FinalValue.grd", true));
    EXPECT_EQ(final.nX(), 480);
    const auto range = final.getMinMax();
    ASSERT_TRUE(range);
    // Six categories were looked at, of which five are at the background of 1 where nothing was
    // seen, as is the seismic one; the other five of the index are unknown and the rate is 0.
    EXPECT_NEAR(range->min, 1.11 * (1 + 3 + 3 + 2 * (1 + 1 + 3 + 3 + 1) + 3 + 1) + 1, 1e-5);
    EXPECT_GT(range->max, 60.0);
    EXPECT_LT(range->max, 143.25);
}

} // namespace
} // namespace tessaran::rfri
