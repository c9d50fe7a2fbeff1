#include "grid/grid_file.h"
#include "index/factor_transformation.h"
#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaran::index {
namespace {

using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

FactorTransformation of(FactorFunction function, Tendency tendency, double lower, double upper) {
    return {function, tendency, lower, upper};
}

TEST(FactorTransformation, LinearRunsBetweenItsBoundsAndIsHeldOutside) {
    const auto normal = of(FactorFunction::linear, Tendency::normal, 10.0, 20.0);
    EXPECT_EQ(indexOf(normal, 5.0), 0.0);
    EXPECT_EQ(indexOf(normal, 10.0), 0.0);
    EXPECT_EQ(indexOf(normal, 12.5), 25.0);
    EXPECT_EQ(indexOf(normal, 20.0), 100.0);
    EXPECT_EQ(indexOf(normal, 25.0), 100.0);
    // Falling inside, yet held outside as if it rose.
    const auto inverse = of(FactorFunction::linear, Tendency::inverse, 10.0, 20.0);
    EXPECT_EQ(indexOf(inverse, 5.0), 0.0);
    EXPECT_EQ(indexOf(inverse, 10.0), 100.0);
    EXPECT_EQ(indexOf(inverse, 15.0), 50.0);
    EXPECT_EQ(indexOf(inverse, 20.0), 0.0);
    EXPECT_EQ(indexOf(inverse, 25.0), 100.0);
}

TEST(FactorTransformation, ExponentialSquaresTheRatio) {
    const auto normal = of(FactorFunction::exponential, Tendency::normal, 0.0, 50.0);
    EXPECT_EQ(indexOf(normal, 25.0), 25.0);
    EXPECT_EQ(indexOf(normal, 50.0), 100.0);
    EXPECT_EQ(indexOf(normal, 75.0), 100.0);
    const auto inverse = of(FactorFunction::exponential, Tendency::inverse, 0.0, 40.0);
    EXPECT_EQ(indexOf(inverse, 10.0), 56.25); // 0.75 squared
    // Equal bounds: the bound itself divides nothing by nothing.
    const auto equal = of(FactorFunction::exponential, Tendency::normal, 5.0, 5.0);
    EXPECT_TRUE(std::isnan(indexOf(equal, 5.0)));
    EXPECT_EQ(indexOf(equal, 4.0), 0.0);
    EXPECT_EQ(indexOf(equal, 6.0), 100.0);
}

TEST(FactorTransformation, StepAndSwappedBoundsDecideByTheFirstTest) {
    EXPECT_EQ(indexOf(of(FactorFunction::step, Tendency::normal, 3.0, 3.0), 3.0), 0.0);
    EXPECT_EQ(indexOf(of(FactorFunction::step, Tendency::normal, 3.0, 3.0), 3.1), 100.0);
    EXPECT_EQ(indexOf(of(FactorFunction::step, Tendency::inverse, 3.0, 3.0), 3.0), 100.0);
    EXPECT_EQ(indexOf(of(FactorFunction::step, Tendency::inverse, 3.0, 3.0), 3.1), 0.0);
    // An exponential's lower bound may be put above its fixed upper one.
    EXPECT_EQ(indexOf(of(FactorFunction::exponential, Tendency::normal, 80.0, 50.0), 60.0), 100.0);
    EXPECT_EQ(indexOf(of(FactorFunction::exponential, Tendency::inverse, 80.0, 50.0), 60.0), 0.0);
}

TEST(FactorTransformation, LeavesCellsWithoutValueAndEverythingWhenNothingIsChosen) {
    grid::myGrid grid;
    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    const double values[3][3] = {{1.0, -1e20, 0.5}, {std::nan(""), 4.0, 0.5}, {0.5, 0.5, 0.5}};
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i)
            grid.setValue(i, j, values[j][i]);
    transform(grid, of(FactorFunction::none, Tendency::normal, 0.0, 1.0));
    EXPECT_EQ(grid.getValue(1, 1), 4.0);
    transform(grid, of(FactorFunction::linear, Tendency::none, 0.0, 1.0));
    EXPECT_EQ(grid.getValue(1, 1), 4.0);
    transform(grid, of(FactorFunction::linear, Tendency::normal, 0.0, 4.0));
    EXPECT_EQ(grid.getValue(0, 0), 25.0);
    EXPECT_EQ(grid.getValue(1, 0), -1e20);
    EXPECT_TRUE(std::isnan(grid.getValue(0, 1)));
    EXPECT_EQ(grid.getValue(1, 1), 100.0);
    EXPECT_EQ(grid.getValue(2, 0), 0.5); // beyond the cells
}

TEST(FactorTransformation, ProposesTheBoundsOfItsFunction) {
    const FactorBounds present{7.0, 8.0};
    EXPECT_EQ(proposedBounds(FactorFunction::linear, 2.0, 6.0, present).upper, 6.0);
    EXPECT_EQ(proposedBounds(FactorFunction::step, 2.0, 6.0, present).lower, 4.0);
    EXPECT_EQ(proposedBounds(FactorFunction::exponential, 2.0, 6.0, present).upper, 4.0);
    EXPECT_EQ(proposedBounds(FactorFunction::none, 2.0, 6.0, present).lower, 7.0);
}

// --- the command --------------------------------------------------------------------------------

// 3 x 2 cells of 10 by 10 at (100, 200).
std::string roofGrid(const std::string& title = "Roof") {
    return "200\n100\n220\n130\n3\n2\n"
           "0\n25\n50\n0\n"
           "75\n100\nN\n0\n"
           "0\n0\n0\n0\n" +
           title + "\nZELK Stability Application";
}

grid::myGrid& read(ScriptRun& run, const std::string& file, grid::myGrid& grid) {
    base::NoProgress nobody;
    const auto result = grid::readGridText(run.folder().read(file), true, grid, nobody);
    EXPECT_TRUE(result.ok());
    return grid;
}

TEST(GenFactor, WritesTheIndexBesideItsInput) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid());
    run("zelk_genFactor\n"
        ":set Input File = roof.grd\n"
        ":show\n"
        ":ok\n"
        ":set Function = Linear\n"
        ":choose Inverse\n"
        ":set Upper = 50\n"
        ":uncheck Preview Final Grid\n"
        ":show\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Individual Factor Generation/Normalization"));
    EXPECT_THAT(run.transcript(), HasSubstr("Input Grid: 3 X 2 ;"));
    EXPECT_THAT(run.transcript(), HasSubstr("Grid Value Min: 0.000000, Max: 100.000000"));
    EXPECT_THAT(run.transcript(), HasSubstr("Roof Index"));
    EXPECT_THAT(run.transcript(), HasSubstr("Next>>"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nLoad from file roof.grd"));
    EXPECT_THAT(run.transcript(), HasSubstr("1 cells have no value"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(message) \nIndex has been saved to grid file< roof_index.grd >"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\nIndividual Factor Normalization/Formulization finished!"));

    grid::myGrid index;
    read(run, "roof_index.grd", index);
    EXPECT_EQ(index.title(), "Roof Index");
    EXPECT_EQ(index.getValue(0, 0), 100.0);
    EXPECT_EQ(index.getValue(1, 0), 50.0);
    EXPECT_EQ(index.getValue(2, 0), 0.0);
    EXPECT_EQ(index.getValue(0, 1), 100.0); // above the upper bound
    EXPECT_FALSE(base::hasValue(index.getValue(2, 1)));
    EXPECT_EQ(index.origin().x, 100.0);
}

TEST(GenFactor, RefusesToLeaveAPageThatIsNotFilled) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid());
    run.folder().write("flat.grd",
                       "0\n0\n2\n2\n2\n2\n5\n5\n5\n5\n5\n5\n5\n5\n5\n\nZELK Stability Application");
    run("zelk_genFactor\n"
        ":press Grid Preview\n"
        ":ok\n"
        ":set Input File = missing.grd\n"
        ":show\n"
        ":expect Invalid Grid input file!\n"
        ":set Input File = flat.grd\n"
        ":show\n"
        ":expect Value interval is very small!\n"
        ":set Output File =\n"
        ":ok\n"
        ":expect Output file name is missing!\n"
        ":set Output File = out\n"
        ":ok\n"
        ":set Function = Linear\n"
        ":ok\n"
        ":expect Limit bound error: Upper limit has to greater than lower limit!\n"
        ":set Upper = 15\n"
        ":uncheck Preview Final Grid\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("Please specify the Grid file first!"));
    EXPECT_THAT(run.transcript(), HasSubstr("Input Grid file is not ready !"));
    grid::myGrid index;
    EXPECT_EQ(read(run, "out.grd", index).getValue(1, 1), 0.0);
}

TEST(GenFactor, AsksBeforeTheInputIsOverwrittenAndKeepsItWithoutAnAnswer) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid(""));
    run("zelk_genFactor\n"
        ":set Input File = roof.grd\n"
        ":set Output File = ROOF.GRD\n"
        ":show\n"
        ":set Description = Mine\n"
        ":ok\n"
        ":set Function = Step\n"
        ":set Lower = 25\n"
        ":uncheck Preview Final Grid\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(),
                HasSubstr("Output file is the same as the input file, Overwrite?"));
    EXPECT_EQ(run.folder().read("roof.grd"), roofGrid(""));
    grid::myGrid index;
    read(run, "roof_index.grd", index);
    EXPECT_EQ(index.title(), "Mine");
    EXPECT_EQ(index.getValue(1, 0), 0.0); // exactly the threshold
    EXPECT_EQ(index.getValue(2, 0), 100.0);
}

TEST(GenFactor, ExponentialRampEndsAtTheMiddleWhateverItsLowerBound) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid());
    run("zelk_genFactor\n"
        ":set Input File = roof.grd\n"
        ":page Function\n"
        ":set Function = Exponential\n"
        ":set Lower = 0\n"
        ":uncheck Preview Final Grid\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    grid::myGrid index;
    read(run, "roof_index.grd", index);
    EXPECT_EQ(index.getValue(1, 0), 25.0);
    EXPECT_EQ(index.getValue(2, 0), 100.0);
    EXPECT_EQ(index.getValue(0, 1), 100.0);
}

TEST(GenFactor, SetsNoDisabledBoundAndWritesNothingWhenCancelled) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid());
    run("zelk_genFactor\n"
        ":set Input File = roof.grd\n"
        ":page Function\n"
        ":set Function = Step\n"
        ":set Upper = 3\n");
    EXPECT_EQ(run.status(), 1);
    EXPECT_THAT(run.error(), HasSubstr(":5: "));
    EXPECT_FALSE(run.folder().has("roof_index.grd"));
}

TEST(GenFactor, WithoutAFunctionCopiesTheValuesUnderTheNewTitle) {
    ScriptRun run;
    run.folder().write("roof.grd", roofGrid());
    run("zelk_genFactor\n"
        ":set Input File = roof.grd\n"
        ":ok\n"
        ":uncheck Preview Final Grid\n"
        ":ok\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    grid::myGrid index;
    EXPECT_EQ(read(run, "roof_index.grd", index).getValue(1, 1), 100.0);
    EXPECT_EQ(index.getValue(0, 1), 75.0);
    EXPECT_EQ(index.title(), "Roof Index");
}

} // namespace
} // namespace tessaran::index
