// The example mine from drawing to map, by the scripts that newcomers read.

#include "support/other_programs.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::SizeIs;

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

// All steps in the order of their numbers.
std::string exampleScripts(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".scr")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::string all;
    for (const fs::path& file : files)
        all += contentOf(file);
    return all;
}

// The records of a text drawing's entities, each as it stands in the file.
std::set<std::string> entityRecords(const std::string& file) {
    const std::string begin = "  0\nSECTION\n  2\nENTITIES\n";
    const std::string next = "\n  0\n";
    std::set<std::string> records;
    std::size_t from = file.find(begin);
    const std::size_t end = file.find(next + "ENDSEC", from);
    for (from = file.find(next, from); from < end && from != std::string::npos;) {
        const std::size_t to = file.find(next, from + next.size());
        records.insert(file.substr(from, to - from));
        from = to;
    }
    return records;
}

} // namespace

TEST(Example, MapsTheIndexOntoAllOpeningsAndNothingElse) {
    const fs::path examples = fs::path(TESSARAN_SOURCE_DIR) / "examples";
    tessaran::test::ScriptRun run;
    const std::string plan = contentOf(examples / "mine.dxf");
    run.folder().write("mine.dxf", plan);
    run.open("mine.dxf");
    run.saveTo("map.dxf");
    run(exampleScripts(examples / "scripts"));
    ASSERT_EQ(run.status(), 0) << run.report();

    EXPECT_THAT(run.transcript(), HasSubstr("2369 Pillar objects from: "
                                            "PILLARS,BARRIERS,SOLID_COAL,GOB"));
    EXPECT_THAT(run.drawing().group("ZELK Lengend"), SizeIs(20)) << "ten bands, ten labels";
    for (const char* grid : {"valley", "ponds", "streams", "gob_near", "gob_far", "faults", "shale",
                             "surface", "fault_influence", "stress", "total_stress"})
        EXPECT_TRUE(run.folder().has(std::string(grid) + "_index.grd")) << grid;
    EXPECT_THAT(run.drawing().group("ZELK Group Percentage"), SizeIs(40)) << "ten bands";
    EXPECT_THAT(run.transcript(), HasSubstr("360 grid cells are assigned to 90.000000."));
    EXPECT_TRUE(run.folder().has("stability_edited.grd"));

    // The two-seam model from the same drawing: nothing of its load is lost.
    EXPECT_THAT(run.transcript(), HasSubstr("Plekton was finished successfully!"));
    EXPECT_THAT(run.transcript(), testing::ContainsRegex("seam 1: .*carry (99.9|100.0)"));
    EXPECT_THAT(run.transcript(), HasSubstr("(message) File: total_stress.grd is saved!"));
    EXPECT_TRUE(run.folder().has("two_seams_pillars.csv"));

    const std::set<std::string> drawn = entityRecords(plan);
    const std::set<std::string> kept = entityRecords(run.folder().read("map.dxf"));
    EXPECT_EQ(drawn.size(), 3199u) << "3193 entities, and six parts of an old-style polyline";
    EXPECT_TRUE(std::includes(kept.begin(), kept.end(), drawn.begin(), drawn.end()))
        << "the plan's own entities are as they were";

    const auto seen = tessaran::test::runScript(
        std::string(TESSARAN_SOURCE_DIR) + "/tests/cli/check_map.py",
        "map.dxf stability.grd STABILITY_MAP PILLARS BARRIERS SOLID_COAL GOB");
    EXPECT_EQ(seen.status, 0) << seen.output;
}

TEST(OtherPlans, AreMappedFromDrawingsOfOtherPrograms) {
    const std::string scripts = std::string(TESSARAN_SOURCE_DIR) + "/tests/cli/";
    tessaran::test::ScriptRun run;
    const auto made = tessaran::test::runScript(scripts + "make_plan.py", "plan.dxf");
    ASSERT_EQ(made.status, 0) << made.output;
    run.open("plan.dxf");
    run.saveTo("map.dxf");
    run("zelk_setGrid\n"
        ":set Number of Cells in X Direction = 60\n:set Number of Cells in Y Direction = 45\n"
        ":set Cell Width in X Direction = 4\n:set Cell Width in Y Direction = 4\n"
        ":set X Coordinate of Grid Origin = 0\n:set Y Coordinate of Grid Origin = 0\n:ok\n"
        "zelk_sFactorInArea\n:page Area Factor\n:set Inside Boundary = 90\n"
        ":set Outside Boundary = 10\n:choose Area Based\n:set Min. Area Inside (%) = 50\n"
        ":press Build Grid\n:answer yes\n:set Output File (.grd) = west.grd\n"
        ":press Save Grid\n:answer ok\n:ok\n"
        "zelk_genFactor\n:set Input File = west.grd\n:ok\n:set Function = Linear\n"
        ":uncheck Preview Final Grid\n:ok\n"
        "zelk_StabilityIndex\n:press Select Index Grid\n:file west_index.grd\n:set Name = West\n"
        ":press Add\n:press Create Index\n:answer yes\n:file stability.grd\n:cancel\n"
        "zelk_indexMapping\n:set Index Grid File = stability.grd\n:set Pillar Layers = COAL\n"
        ":set Mapping Layer = MAP\n:press Analyze\n\nYes\n:press Hatch\n\nYes\n:press Exit\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("48 Pillar objects from: COAL"));
    EXPECT_THAT(run.transcript(), HasSubstr("2 hatchs are created"));
    const auto seen =
        tessaran::test::runScript(scripts + "check_map.py", "map.dxf stability.grd MAP COAL");
    EXPECT_EQ(seen.status, 0) << seen.output;
}
