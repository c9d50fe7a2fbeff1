#include "base/file.h"
#include "stress/model_plan.h"
#include "stress/model_reader.h"
#include "stress/plan_text.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::stress {
namespace {

using test::TemporaryFolder;
using testing::HasSubstr;

// 10 x 10 codes at 2000, 3000 ft; `row` is the sixth from the north.
std::string mapText(const std::string& row, const char* origin = "2000.000000,3000.000000") {
    std::string out = std::string("10,10,") + origin + "\n";
    for (int k = 0; k < 10; ++k)
        out += k == 5 ? row + "\n" : "AAAAAAAAAA\n";
    return out;
}

ModelPlan twoSeams() {
    ModelPlan plan;
    plan.title = "Two seams";
    plan.unitSystem = 1;
    plan.modulus = 3e6;
    plan.laminationThickness = 50.0;
    plan.elementWidth = 10.0;
    plan.gradient = 1.1;
    plan.convergenceCriterion = 0.0001;
    plan.materials = {*materialOf("2,4000,0.012,900,0.05,0.33"), *materialOf("4,100,0.1,9000,1.5"),
                      *materialOf("1,300000")};
    plan.seams = {{-500.0, 6.0, {"a1.txt", "a2.txt"}}, {-600.0, 5.0, {"b.txt"}}};
    plan.codes['S'] = 2;
    return plan;
}

void writeMaps(TemporaryFolder& folder) {
    folder.write("a1.txt", mapText("AAAA11AAAA"));
    folder.write("a2.txt", mapText("AAAASSAAAA"));
    folder.write("b.txt", mapText("1AAAAAAAA1"));
}

TEST(Composer, GivesWhatTheReaderReads) {
    TemporaryFolder folder;
    writeMaps(folder);
    ModelPlan plan = twoSeams();
    plan.offSeam = *offSeamOf("20,3,2,2000,3000,-550");
    const auto composed = composeModel(plan);
    ASSERT_TRUE(composed) << composed.error().message();
    ASSERT_TRUE(writeComposed(plan, *composed, "m.inp"));
    const ModelReading read = readModel("m.inp");
    ASSERT_TRUE(read.ok()) << read.message;
    const CModelDat& m = read.model;
    EXPECT_EQ(m.steps, 2);
    EXPECT_EQ(m.elementWidth, 120.0);
    EXPECT_EQ(m.seams[0].x, 24000.0);
    EXPECT_EQ(m.seams[1].z, -7200.0);
    EXPECT_FLOAT_EQ(static_cast<float>(m.gradient), 1.1F / 12.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(m.convergenceCriterion), 0.0012F);
    EXPECT_EQ(m.materials[0].p[0], 4000.0);
    EXPECT_FLOAT_EQ(static_cast<float>(m.materials[0].p[1]), 0.012F);
    EXPECT_EQ(m.offSeam.blocks, 6);
    EXPECT_EQ(m.offSeam.z, -6600.0);
    const auto at = [&](int step, int seam, int column) {
        return m.codes[static_cast<std::size_t>(step)][static_cast<std::size_t>(seam)]
                      [static_cast<std::size_t>(column * 10 + 4)];
    };
    EXPECT_EQ(at(0, 0, 4), '1');
    EXPECT_EQ(at(1, 0, 4), 'B'); // the gob's S is material 2
    EXPECT_EQ(at(0, 1, 0), '1');
    EXPECT_EQ(at(1, 1, 0), '1') << "the last map holds on";
}

TEST(Composer, ConvertsWhatIsAStress) {
    const Units& mpa = kUnits[3];
    const auto values = [&](const char* text) {
        return inConsistentUnits(*materialOf(text), mpa).p;
    };
    EXPECT_EQ(values("1,2,3"), (std::array<double, 5>{2e6, 3e6, 0, 0, 0}));
    EXPECT_EQ(values("2,2,3,4,5,6"), (std::array<double, 5>{2e6, 3, 4e6, 5, 6}));
    EXPECT_EQ(values("3,2,3,4,5"), (std::array<double, 5>{2e6, 3, 4e6, 5, 0}));
    EXPECT_EQ(values("4,2,3,4,5,6"), (std::array<double, 5>{2e6, 3, 4e6, 5, 6}));
    EXPECT_EQ(values("5,2,3,4,5,6"), (std::array<double, 5>{2e6, 3e6, 4e6, 5, 6}));
    EXPECT_EQ(values("6,2,3,4"), (std::array<double, 5>{2e6, 3e6, 4, 0, 0}));
}

TEST(Composer, LettersCoalByItsDistanceFromTheOpenings) {
    TemporaryFolder folder;
    folder.write("a.txt", mapText("AAAA1AAAAA"));
    ModelPlan plan = twoSeams();
    plan.seams = {{-500.0, 6.0, {"a.txt"}}};
    plan.rings = {*ringsOf("A=3,2")};
    const auto composed = composeModel(plan);
    ASSERT_TRUE(composed) << composed.error().message();
    EXPECT_THAT(composed->text, HasSubstr("AAAAAAAAAA\n"
                                          "AABBBBBAAA\n"
                                          "AABCCCBAAA\n"
                                          "AABC1CBAAA\n"
                                          "AABCCCBAAA\n"
                                          "AABBBBBAAA\n"
                                          "AAAAAAAAAA\n"));
    EXPECT_EQ(ringsAround(std::vector<bool>(4, false), 2, 2), std::vector<int>(4, 0));
}

TEST(Composer, RefusesBeforeAnythingIsWritten) {
    TemporaryFolder folder;
    writeMaps(folder);
    folder.write("small.txt", "10,5,2000,3000\nAAAAAAAAAA\nAAAAAAAAAA\nAAAAAAAAAA\nAAAAAAAAAA\n"
                              "AAAAAAAAAA\n");
    folder.write("aside.txt", mapText("AAAAAAAAAA", "2000,3010"));
    const auto refusal = [](auto change) {
        ModelPlan plan = twoSeams();
        change(plan);
        const auto composed = composeModel(plan);
        return composed ? std::string("accepted") : composed.error().message();
    };
    EXPECT_EQ(refusal([](ModelPlan&) {}), "accepted");
    EXPECT_THAT(refusal([](ModelPlan& p) { p.codes.clear(); }),
                HasSubstr("a2.txt: The code \"S\" stands for no material"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.codes['S'] = 9; }), HasSubstr("material 9"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.rings = {{'A', {7}}}; }), HasSubstr("material 7"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.seams[1].maps = {"small.txt"}; }),
                HasSubstr("small.txt: The code maps differ in their numbers"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.seams[0].maps[1] = "aside.txt"; }),
                HasSubstr("seam 1 differ in their origins"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.seams[0].maps = {"none.txt"}; }),
                HasSubstr("none.txt"));
    EXPECT_THAT(refusal([](ModelPlan& p) {
                    p.seams = {{-5.0, 6.0, {"small.txt"}}};
                }),
                HasSubstr("divisible by 10 - RI5b"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.seams[1].z = -500.0; }), HasSubstr("one depth"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.materials[0].p[1] = 0.0; }), HasSubstr("Material 1"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.steps = 21; }), HasSubstr("RI7b"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.topography = "none.top"; }), HasSubstr("RTI1a"));
    EXPECT_THAT(refusal([](ModelPlan& p) { p.seams.assign(5, p.seams[1]); }), HasSubstr("RI2b"));
}

TEST(Composer, TakesTheTopographyUnderTheModelsName) {
    TemporaryFolder folder;
    writeMaps(folder);
    folder.write("hills.top", "1,1, 2400, 1, 1, 24000, 36000, -6000\n1,Overburden Stress\n1,psi\n"
                              "550\n");
    ModelPlan plan = twoSeams();
    plan.topography = "hills.top";
    const auto composed = composeModel(plan);
    ASSERT_TRUE(composed) << composed.error().message();
    ASSERT_TRUE(writeComposed(plan, *composed, "m.inp"));
    EXPECT_EQ(folder.read("m.top"), folder.read("hills.top"));
    EXPECT_TRUE(readModel("m.inp").model.topographicStress);
}

TEST(Composer, WarnsOfOriginsThatResultFilesRound) {
    TemporaryFolder folder;
    folder.write("far.txt", mapText("AAAAAAAAAA", "1420080,312080"));
    ModelPlan plan = twoSeams();
    plan.seams = {{-500.0, 6.0, {"far.txt"}}};
    const auto composed = composeModel(plan);
    ASSERT_TRUE(composed);
    ASSERT_EQ(composed->warnings.size(), 1u); // 312080 has five digits
    EXPECT_THAT(composed->warnings[0], HasSubstr("1420080 as  1.4201e+06"));
}

TEST(PlanTexts, AreReadBackAsWritten) {
    EXPECT_EQ(textOf(*materialOf("5, 1000,2000 ,3000,1.2")), "5,1000,2000,3000,1.2,0");
    EXPECT_EQ(textOf(*seamOf("-500.5,6,a.txt, b.txt")), "-500.5,6,a.txt,b.txt");
    EXPECT_EQ(textOf(*ringsOf("A=3,4")), "A=3,4");
    EXPECT_EQ(textOf(*boundariesOf("1,0,1,0")), "1,0,1,0");
    EXPECT_EQ(textOf(*offSeamOf("20,3,2,1,2,-550")), "20,3,2,1,2,-550");
    EXPECT_EQ(codeOf("0=open")->second, kOpenCode);
    for (const char* text : {"", "7,1", "1,2,3,4,5,6,7", "1,x", "x"})
        EXPECT_FALSE(materialOf(text)) << text;
    for (const char* text : {"", "-500,6", "a,6,m.txt"})
        EXPECT_FALSE(seamOf(text)) << text;
    for (const char* text : {"", "S", "S=", "S=27", "S=0", "SS=2"})
        EXPECT_FALSE(codeOf(text)) << text;
    for (const char* text : {"A", "A=", "A=1,x"})
        EXPECT_FALSE(ringsOf(text)) << text;
    for (const char* text : {"1,1,1", "1,1,1,2", "1,1,1,1,1"})
        EXPECT_FALSE(boundariesOf(text)) << text;
    for (const char* text : {"20,3,2,1,2", "20,0,2,1,2,3", "20,3,2,1,2,nan"})
        EXPECT_FALSE(offSeamOf(text)) << text;
}

} // namespace
} // namespace tessaran::stress
