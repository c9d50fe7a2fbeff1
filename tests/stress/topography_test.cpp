#include "base/file.h"
#include "stress/field_text.h"
#include "stress/model_run.h"
#include "stress/topo_input.h"
#include "stress/topo_model.h"
#include "stress/topo_stress_file.h"
#include "support/resource_limits.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <numbers>

namespace tessaran::stress {
namespace {

using test::ScriptRun;
using testing::HasSubstr;

class Nobody final : public RunWatch {};

CTopoModelDat modelOf(int blocks, double width, double h) {
    CTopoModelDat d;
    d.poissonsRatio = 0.25;
    d.modulus = 3e6;
    d.laminationThickness = 600.0;
    d.unitSystem = 0;
    d.gradient = 0.09;
    d.overRelaxation = 2.0 / (1.0 + std::sin(std::numbers::pi / (blocks + 1)));
    d.convergenceCriterion = 1e-12;
    d.maxIterations = 20000;
    d.depths.blocks = {0.0, 0.0, width, blocks, blocks};
    d.depths.datum = h;
    d.depths.values.assign(static_cast<std::size_t>(blocks) * static_cast<std::size_t>(blocks),
                           12000.0);
    return d;
}

double lambdaOf(const CTopoModelDat& d) {
    return laminationConstant(d.poissonsRatio, d.laminationThickness);
}

TopoRun runIn(test::TemporaryFolder& folder, const CTopoModelDat& data) {
    Nobody nobody;
    return runTopoModel(data, {0.0, 0.0, -12000.0, 0.0}, folder.path() / "topo.out", nobody);
}

// --- closed forms -------------------------------------------------------------------------------

TEST(TopographicStress, OfFlatGroundIsGradientTimesDepth) {
    test::TemporaryFolder folder;
    CTopoModelDat d = modelOf(30, 200.0, 3000.0);
    d.seam = {0.0, 0.0, 100.0, 70, 50}; // wider than the blocks: some elements lie outside
    const TopoRun run = runIn(folder, d);
    ASSERT_TRUE(run.ok()) << run.message;
    for (const double stress : run.overburden.front())
        EXPECT_EQ(stress, 0.09 * 12000.0);
    ASSERT_EQ(run.warnings.size(), 2u);
    EXPECT_THAT(run.warnings.front(), HasSubstr("500 elements of seam 1 lie outside"));
    // sqrt(4 lambda h) = 1465 in: 15 rows and columns in the south and west, and the 15 columns
    // up to the eastern side of the blocks, at column 60.
    EXPECT_THAT(run.warnings.back(), HasSubstr("2100 elements of seam 1 lie within 14.7 element"));
}

// A load of one wave over the fixed edges is an exact solution of the differences; it arrives
// weaker by exp(-lambda k^2 h), far from the edges.
TEST(TopographicStress, OfAWavySurfaceArrivesAttenuated) {
    test::TemporaryFolder folder;
    constexpr int kBlocks = 99;
    constexpr int kWaves = 4; // half waves: an even number has no mean
    CTopoModelDat d = modelOf(kBlocks, 100.0, 0.0);
    const double width = d.depths.blocks.width;
    const double h = 16.0 * width * width / lambdaOf(d);
    d.depths.datum = h;
    const double theta = std::numbers::pi * kWaves / (kBlocks + 1);
    const auto wave = [&](int i) { return std::sin(theta * (i + 1)); };
    for (int i = 0; i < kBlocks; ++i)
        for (int j = 0; j < kBlocks; ++j)
            d.depths.values[static_cast<std::size_t>(i * kBlocks + j)] =
                12000.0 + 1000.0 * wave(i) * wave(j);
    d.seam = {0.0, 0.0, width, 90, 90};
    const TopoRun run = runIn(folder, d);
    ASSERT_TRUE(run.ok()) << run.message;
    const double k2 = 2.0 * theta * theta / (width * width);
    const double arrives = 0.09 * 1000.0 * std::exp(-lambdaOf(d) * k2 * h);
    for (int i = 45; i < 55; ++i)
        for (int j = 45; j < 55; ++j)
            EXPECT_NEAR(run.overburden.front()[static_cast<std::size_t>(i * 90 + j)],
                        0.09 * 12000.0 + arrives * wave(i) * wave(j), 0.005 * arrives)
                << i << " " << j;
}

// The whole of it against the influence formula summed block by block.
TEST(TopographicStress, IsTheSumOverTheBlocks) {
    test::TemporaryFolder folder;
    CTopoModelDat d = modelOf(12, 300.0, 900.0);
    d.depths.blocks.x = -200.0;
    d.depths.blocks.y = 130.0;
    for (std::size_t k = 0; k < d.depths.values.size(); ++k)
        d.depths.values[k] += 37.0 * static_cast<double>(k * k % 29);
    d.seam = {0.0, 0.0, 100.0, 20, 30};
    const DatumLoad depth = datumLoad(d.depths.values);
    std::vector<double> load = depth.deviation;
    for (double& q : load)
        q *= d.gradient;
    RelaxationWatch watch;
    const double lambda = lambdaOf(d);
    const auto down =
        relaxDatum(d.modulus, lambda, d.depths.blocks, load, 1.6, 1e-13, 10000, watch);
    const TopoRun run = runIn(folder, d);
    ASSERT_TRUE(run.ok()) << run.message;
    const double h = d.depths.datum;
    const auto at = [&](double x, double y) {
        double sum = d.gradient * depth.mean;
        for (int i = 0; i < 12; ++i)
            for (int j = 0; j < 12; ++j) {
                const double dx = x - (-200.0 + (i + 0.5) * 300.0);
                const double dy = y - (130.0 + (j + 0.5) * 300.0);
                const double z = (dx * dx + dy * dy) / (4.0 * lambda * h);
                sum += d.modulus * 300.0 * 300.0 * down.down[static_cast<std::size_t>(i * 12 + j)] /
                       (8.0 * std::numbers::pi * lambda * h * h) * (1.0 - z) * std::exp(-z);
            }
        return sum;
    };
    for (const auto& [i, j] : {std::pair{0, 2}, {7, 9}, {19, 29}, {13, 20}})
        EXPECT_NEAR(run.overburden.front()[static_cast<std::size_t>(i * 30 + j)],
                    at((i + 0.5) * 100.0, (j + 0.5) * 100.0), 1e-6);
    // Outside the blocks the nearest block's own centre counts: row 0 lies south of them.
    EXPECT_NEAR(run.overburden.front()[30 * 7], at(-200.0 + 3.5 * 300.0, 130.0 + 150.0), 1e-6);
}

TEST(TopographicStress, StandsAsItIsWhereTheDatumIsAtTheSeam) {
    test::TemporaryFolder folder;
    CTopoModelDat d = modelOf(2, 500.0, 0.0);
    d.depths.values = {1000.0, 2000.0, 3000.0, 4000.0}; // columns outer
    d.seam = {0.0, 0.0, 100.0, 10, 10};
    const TopoRun run = runIn(folder, d);
    ASSERT_TRUE(run.ok()) << run.message;
    EXPECT_FALSE(run.relaxed);
    EXPECT_DOUBLE_EQ(run.overburden.front()[0], 90.0);
    EXPECT_DOUBLE_EQ(run.overburden.front()[5], 180.0);
    EXPECT_DOUBLE_EQ(run.overburden.front()[50], 270.0);
    EXPECT_DOUBLE_EQ(run.overburden.front()[99], 360.0);
}

TEST(TopographicStress, IsRefusedWhereItCannotBeRight) {
    EXPECT_EQ(reachOf(100.0, 100.0, 50.0), Reach::asItStands);
    EXPECT_EQ(reachOf(100.0, 100.0, -50.0), Reach::asItStands);
    EXPECT_EQ(reachOf(100.0, 100.0, -50.1), Reach::datumBelowSeam);
    EXPECT_EQ(reachOf(20.0, 100.0, 100.0), Reach::blocksTooWide); // 8,000 below 10,000
    EXPECT_EQ(reachOf(25.0, 100.0, 100.0), Reach::spread);        // 10,000
    CTopoModelDat d = modelOf(2, 500.0, 0.0);
    d.depths.values[3] = -1e20;
    EXPECT_THAT(topoModelFault(d), HasSubstr("column 2 and row 2 has no value"));
    d.depths.values[3] = std::nan("");
    EXPECT_THAT(topoModelFault(d), HasSubstr("has no value"));
}

TEST(TopographicStress, NamesTheRemedyWhenItDoesNotSettle) {
    test::TemporaryFolder folder;
    CTopoModelDat d = modelOf(40, 200.0, 3000.0);
    d.depths.values[5] = 9000.0;
    d.seam = {0.0, 0.0, 100.0, 10, 10};
    d.maxIterations = 100;
    d.overRelaxation = 1.2;
    const TopoRun run = runIn(folder, d);
    EXPECT_EQ(run.ending, RunReport::Ending::failed);
    EXPECT_THAT(run.message, HasSubstr("Maximum Number of Iterations Reached - SOR1"));
    EXPECT_THAT(run.message, HasSubstr("larger over-relaxation factor"));
    EXPECT_THAT(folder.read("topo.out"), HasSubstr("iteration number = 100, maximum displacement"));
    d.overRelaxation = 2.3;
    d.maxIterations = 20000;
    EXPECT_THAT(runIn(folder, d).message, HasSubstr("grew without bound"));
    class Impatient final : public RunWatch {
        bool cancelled() override { return true; }
    } impatient;
    EXPECT_EQ(runTopoModel(d, {}, folder.path() / "topo.out", impatient).ending,
              RunReport::Ending::cancelled);
    EXPECT_THAT(folder.read("topo.out"), HasSubstr("Operations are canceled by user\n\n"));
}

// --- inside the solver --------------------------------------------------------------------------

std::string solverModel(double z2) {
    std::string text = "Two seams\n0.25, 3000000, 600, 2, 0\n1\n1, 300000, 0, 0, 0, 0\n"
                       "120, 20, 20, 0.09\n0, 0, -12000, 72\n0, 0, " +
                       std::to_string(z2) +
                       ", 72\n1.5, 0.0000001, 5000, 1, 1, 0, 0, 1\n1, 1, 1, 1\n";
    for (int row = 0; row < 40; ++row)
        text += row % 20 == 8 ? "AAAAA111AAAAAAAAAAAA\n" : "AAAAAAAAAAAAAAAAAAAA\n";
    return text;
}

TEST(SolverTopography, OfFlatGroundGivesTheOverburdenOfTheDepths) {
    test::TemporaryFolder folder;
    folder.write("m.inp", solverModel(-15000.0));
    std::string top = "1,16, 600, 4, 4, 0, 0, -12000\n1,Overburden Stress\n1,psi\n";
    for (int k = 0; k < 16; ++k)
        top += "1080.0\n";
    folder.write("m.top", top);
    const auto prepared = prepareRun(folder.path() / "m.inp");
    ASSERT_TRUE(prepared) << prepared.error().message();
    EXPECT_TRUE(prepared->warnings.empty());
    Nobody nobody;
    const RunReport report = solve(prepared->model, prepared->base, nobody);
    ASSERT_EQ(report.code(), 0) << report.message;
    for (const double q : report.seams[0].overburden)
        EXPECT_NEAR(q, 1080.0, 1e-9);
    for (const double q : report.seams[1].overburden)
        EXPECT_NEAR(q, 1350.0, 1e-4); // the gradient is held in single precision
    const std::string log = folder.read("m.out");
    for (const char* line :
         {"  TOPOGRAPHIC GRID DETAILS\n\n", "  DISTANCE ABOVE SEAM 1 OF TOPOGRAPHIC DATUM -- 0.0",
          "Entering Topographic SOR\n\n", "Topographic SOR took 0 iterations to converge\n\n",
          "Propogating the topo. disp. to seam 2 stresses\n\n",
          "Total Time for Topographic Stress Calculations was 0 secs.\n\n"})
        EXPECT_THAT(log, HasSubstr(line));
}

TEST(SolverTopography, IsRefusedBeforeAnythingIsWritten) {
    test::TemporaryFolder folder;
    folder.write("m.inp", solverModel(-15000.0));
    const auto refusal = [&](const std::string& top) {
        folder.write("m.top", top);
        const auto prepared = prepareRun(folder.path() / "m.inp");
        EXPECT_FALSE(folder.has("m.out"));
        return prepared ? std::string("accepted") : prepared.error().message();
    };
    EXPECT_THAT(prepareRun(folder.path() / "m.inp").error().text,
                HasSubstr("Error in Opening Topographic Input File - RTI1a\n"));
    EXPECT_THAT(refusal("1,1,500\n"), HasSubstr("Topographic Header Line - RTI2a"));
    EXPECT_THAT(refusal("1,3, 500, 2, 2, 0, 0, 0\n\n\n1\n1\n1\n1\n"),
                HasSubstr("Inconsistent Data in the Topographic Header Line - RTI2b"));
    EXPECT_THAT(refusal("1,4, 500, -2, -2, 0, 0, 0\n\n\n1\n1\n1\n1\n"), HasSubstr("RTI2b"));
    EXPECT_THAT(refusal("1,4, 500, 2, 2, 0, 0, 0\n\n\n1\n1\n1\n"),
                HasSubstr("Error reading the Topographic Grid Stress - RTI3"));
    EXPECT_THAT(refusal("1,2000000000, 5, 50000, 40000, 0, 0, 0\n\n\n1\n"), HasSubstr("RTI3"));
    EXPECT_THAT(refusal("1,1, 5000, 1, 1, 0, 0, -12000\n\n\n-1e20\n"), HasSubstr("has no value"));
    EXPECT_THAT(refusal("1,1, 0, 1, 1, 0, 0, -12000\n\n\n1\n"), HasSubstr("larger than 0"));
    EXPECT_THAT(refusal("1,1, 1000, 1, 1, 0, 0, -13000\n\n\n1\n"),
                HasSubstr("Seam 1: The topographic datum lies 1000 below the seam"));
    EXPECT_THAT(refusal("1,1, 5000, 1, 1, 0, 0, -12000\n\n\n1\n"),
                HasSubstr("Seam 2: The topographic blocks are too wide"));
}

TEST(SolverTopography, WarnsOfAFileOfDepthsAndOfStressesBelow0) {
    test::TemporaryFolder folder;
    folder.write("m.inp", solverModel(-13000.0));
    folder.write("m.top", "1,1, 5000, 1, 1, 0, 0, -12500\n1,Overburden Depth\n1,Inch\n-4\n");
    const auto prepared = prepareRun(folder.path() / "m.inp");
    ASSERT_TRUE(prepared) << prepared.error().message();
    ASSERT_EQ(prepared->warnings.size(), 2u);
    EXPECT_THAT(prepared->warnings[0], HasSubstr("Overburden Depth"));
    EXPECT_THAT(prepared->warnings[1],
                HasSubstr("1 topographic blocks have a stress of 0 or less"));
}

// --- files --------------------------------------------------------------------------------------

TEST(TopoInput, ReadsBackWhatItWrote) {
    CTopoModelDat d = modelOf(2, 500.0, 250.5);
    d.seam = {0.0, 0.0, 100.0, 20, 10};
    d.depths.blocks.x = -123456.75;
    d.depths.values = {1.0 / 3.0, 12345.678901234, 0.0, 2e9};
    const std::string text = topoInputText(d);
    EXPECT_TRUE(text.starts_with("Overburden stress input file\n0.250000,3000000,600.000000,0\n"
                                 "100.000000,20,10,0.090000\n0.0,0.0\n"))
        << text;
    EXPECT_TRUE(text.ends_with("\n0.3333333333\n12345.678901\n0.000000\n2000000000")) << text;
    const TopoInputReading read = parseTopoInput(text);
    ASSERT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(read.data.seam.nX, 20);
    EXPECT_EQ(read.data.depths.blocks.x, -123456.75);
    EXPECT_EQ(read.data.depths.datum, 250.5);
    EXPECT_EQ(read.data.depths.values[0], 0.3333333333);
}

TEST(TopoInput, IsRefusedByItsMessages) {
    const std::string head = "t\n0.25,3e6,600,0\n";
    const auto code = [](const std::string& text) { return parseTopoInput(text).message; };
    EXPECT_THAT(code(""), HasSubstr("RI1a"));
    EXPECT_THAT(code("t\n0.25,3e6\n"), HasSubstr("RI2a"));
    EXPECT_THAT(code("t\n0.25,3e6,600,4\n"), HasSubstr("RI2c"));
    EXPECT_THAT(code(head + "100,10\n"), HasSubstr("RI5a"));
    EXPECT_EQ(code(head + "100,15,10,0.1\n"), "Fine mesh size must be divisible by 10 - RI5b\n");
    EXPECT_THAT(code(head + "0,10,10,0.1\n"), HasSubstr("RI5c"));
    EXPECT_THAT(code(head + "1,0,10,0.1\n"), HasSubstr("RI5d"));
    EXPECT_THAT(code(head + "1,10,0,0.1\n"), HasSubstr("RI5e"));
    EXPECT_THAT(code(head + "1,10,10,0.1\n0.0\n"), HasSubstr("RI6"));
    EXPECT_THAT(code(head + "1,10,10,0.1\n0,0\n1.3,1\n"), HasSubstr("RI7a"));
    EXPECT_THAT(code(head + "1,10,10,0.1\n0,0\n1.3,1,9\n5,1,1,0,0\n"), HasSubstr("RTI2a"));
    EXPECT_THAT(code(head + "1,10,10,0.1\n0,0\n1.3,1,9\n5,40000,50000,0,0,0\n1\n"),
                HasSubstr("RTI3"));
}

TEST(FieldText, KeepsAsManyDigitsAsItsFieldHolds) {
    EXPECT_EQ(fieldText(0.25), "0.250000");
    EXPECT_EQ(fieldText(12345.5), "12345.500000");
    EXPECT_EQ(fieldText(1.1 / 12.0), "0.0916666667");
    EXPECT_EQ(fieldText(1e-7), "1e-07");
    EXPECT_EQ(fieldText(-17041000.5), "-17041000.5");
    EXPECT_EQ(fieldText(-1.0 / 3e9), "-3.33333e-10");
}

// --- the command --------------------------------------------------------------------------------

// 4 x 3 blocks of 50 ft, 1000 ft of cover.
void writeDepths(ScriptRun& run, double depth = 1000.0) {
    std::string text = "1,12,50,4,3,5000,2000,0\n1,Overburden Depth\n1,Inch\n";
    for (int k = 0; k < 12; ++k)
        text += std::to_string(depth) + "\n";
    run.folder().write("depth.top", text);
}

const std::string kScript = "zelk_topoStressModel\n:set Topography Grid File = depth.top\n"
                            ":set Depth of Datum Above Seam = 800\n"
                            ":set Seam Grid File = seam.txt\n:set Element Width = 20\n"
                            ":set Seam Z = -1000\n:set Units = feet, psi\n"
                            ":set Vertical Stress Gradient = 1.2\n"
                            ":set Disp. Convergence Level = 0.00001\n"
                            ":set Output File = stress.top\n";

TEST(TopoCommand, SavesTheStressesAtTheSeam) {
    ScriptRun run;
    writeDepths(run);
    std::string map = "10,10,5000.000000,2000.000000\n";
    for (int row = 0; row < 10; ++row)
        map += "AAAAAAAAAA\n";
    run.folder().write("seam.txt", map);
    run(kScript + ":show\n:ok\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    for (const char* text :
         {"Disp. Convergence Level (ft) = 1e-05", "Elements: 10 x 10",
          "The Input was Successfully Read, <Enter> to continue ...",
          "Overburden Stress Calculation", "Topographic SOR took 0 iterations to converge",
          "TopoStress are save to stress.top", "TopoModel was finished successfully!"})
        EXPECT_THAT(run.transcript(), HasSubstr(text));
    const TopoReading saved = readTopoStress("stress.top");
    ASSERT_TRUE(saved.ok()) << saved.message;
    EXPECT_EQ(saved.quantity, "1,Overburden Stress");
    EXPECT_EQ(saved.grid.blocks.x, 60000.0); // inches
    EXPECT_EQ(saved.grid.blocks.y, 24000.0);
    EXPECT_EQ(saved.grid.blocks.width, 240.0);
    EXPECT_EQ(saved.grid.datum, -12000.0);
    for (const double stress : saved.grid.values)
        EXPECT_NEAR(stress, 1200.0, 1e-4);
    EXPECT_THAT(run.folder().read("stress.out"), HasSubstr("  TOPOGRAPHIC GRID DETAILS\n"));
    EXPECT_TRUE(run.folder().has("stress.tmp"));
}

TEST(TopoCommand, ChecksItsFieldsInOrder) {
    ScriptRun run;
    writeDepths(run);
    run.folder().write("seam.txt", "3,2,0,0\nAAA\nAAA\n");
    run("zelk_topoStressModel\n:set Poisson's Ratio = 0.6\n:set Elastic Modulus = 0\n:ok\n"
        ":expect Poission Ratio should be larger than 0 and smaller than 0.5!\n:show\n:ok\n"
        ":expect Elastic Modulus should be larger than 0 \n:set Elastic Modulus = 1\n"
        ":set Seam Grid File = seam.txt\n"
        ":expect Plekton requires the numbers of elements in X and Y are divisible by 10!\n"
        ":ok\n:set Seam Grid File = \n:ok\n"
        "zelk_topoStressModel\n:set Seam Grid File = none.txt\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Poisson's Ratio = 0.25"));
    EXPECT_THAT(run.transcript(), HasSubstr("Seam grid is not defined!"));
}

TEST(TopoCommand, TellsOfAFullDiskForEveryFile) {
    const auto runWith = [](auto&& spoil, const std::string& more = "") {
        ScriptRun run;
        writeDepths(run);
        std::string map = "10,10,5000,2000\n";
        for (int row = 0; row < 10; ++row)
            map += "AAAAAAAAAA\n";
        run.folder().write("seam.txt", map);
        [[maybe_unused]] const auto limit = spoil(run.folder());
        run(kScript + more + ":ok\n\n");
        EXPECT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(), HasSubstr("TopoModel was finished unsuccessfully!"));
        EXPECT_FALSE(std::filesystem::is_regular_file("stress.top"));
        return run.transcript();
    };
    const std::string input = runWith([](auto& folder) {
        EXPECT_FALSE(folder.has("stress.tmp"));
        return std::make_unique<test::FileSizeLimit>(40);
    });
    EXPECT_THAT(input, HasSubstr("File can not open for write!"));
    EXPECT_THAT(input, HasSubstr("File too large"));
    EXPECT_THAT(input, HasSubstr("File <stress.tmp> could not be opened to write!"));
    EXPECT_THAT(input, HasSubstr("Could not Write the Output File - OFO2"));
    const std::string log = runWith([](auto& folder) {
        std::filesystem::create_symlink("/dev/full", folder / "stress.out");
        return 0;
    });
    EXPECT_THAT(log, HasSubstr("Error in Opening Output File - TS1"));
    EXPECT_THAT(log, HasSubstr("No space left on device"));
    const std::string saved = runWith(
        [](auto& folder) {
            std::filesystem::create_directory(folder / "stress.top");
            return 0;
        },
        ":answer yes\n");
    EXPECT_THAT(saved, HasSubstr("File could not be written: stress.top"));
}

TEST(TopoCommand, TellsWhatIsMissing) {
    ScriptRun run;
    std::string map = "10,10,0,0\n";
    for (int row = 0; row < 10; ++row)
        map += "1111111111\n";
    run.folder().write("seam.txt", map);
    run.folder().write("depth.top", "1,1\n");
    run(kScript + ":set Topography Grid File =\n:ok\n" + kScript + ":ok\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("grid file name is missing!"));
    EXPECT_THAT(run.transcript(), HasSubstr("topo grid file wrong!"));
    EXPECT_FALSE(run.folder().has("stress.top"));
}

} // namespace
} // namespace tessaran::stress
