#include "cells.h"
#include "cmrr/roof_rating.h"
#include "cmrr/unit_rating.h"
#include "support/temporary_folder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::cmrr {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr double kNone = base::kNoValue;

class Advice final : public GridAdvice {
  public:
    std::vector<std::string> warnings;
    std::vector<std::string> questions;
    bool answer = true;

    void warn(const std::string& text) override { warnings.push_back(text); }
    bool goOn(const std::string& question) override {
        questions.push_back(question);
        return answer;
    }
};

class RoofRating : public testing::Test {
  protected:
    static CUnit typed(double rating, double thickness) {
        CUnit unit;
        unit.ratingSource = RatingSource::typed;
        unit.rating = rating;
        unit.thickness.constant = thickness;
        return unit;
    }
    static Input file(const std::string& name) { return {{}, name, true}; }
    // Core whose discontinuities rate 36 and whose strength comes from a UCS grid.
    static CUnit core(const std::string& ucs, double thickness) {
        CUnit unit;
        unit.type = DataType::core;
        unit.ratingSource = RatingSource::computed;
        unit.core.diametralTest = DiametralTest::notAvailable;
        unit.core.estimate = DiametralEstimate::moderate;
        unit.core.fractures = Fractures::none;
        unit.core.axialTest = AxialTest::ucs;
        unit.core.ucs = file(ucs);
        unit.thickness.constant = thickness;
        return unit;
    }
    base::Result<RoofResult> rate() {
        base::NoProgress nobody;
        const GridNeed need = needAll(gridsInUse(data), grids, advice, nobody);
        return need.ok() ? rateRoof(data, grids) : base::stateError(need.text);
    }
    static std::vector<double> cells(const grid::myGrid& grid) {
        std::vector<double> values;
        for (int j = 0; j < grid.nY(); ++j)
            for (int i = 0; i < grid.nX(); ++i)
                values.push_back(grid.getValue(i, j));
        return values;
    }

    TemporaryFolder folder;
    RoofData data;
    InputGrids grids;
    Advice advice;
};

TEST_F(RoofRating, ConstantsEverywhereGiveOneNumber) {
    data.units = 2;
    data.unit[0] = typed(40, 4);
    data.unit[0].observation.contact = Contact::weak;
    data.unit[1] = typed(70, 4);
    data.final = {{3.0, {}, false}, 2.0, 5.0, false};
    const auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->grid, nullptr);
    const double strongBed = 0.77 * (24 * 0.22 * 4 - 2.5);
    EXPECT_NEAR(result->cmrr.mean, 46 + strongBed - 2 - 4 - 5, 1e-12);
    EXPECT_NEAR(result->how.strongBed, strongBed, 1e-12);
}

TEST_F(RoofRating, AGridAnywhereSpreadsAllOverIt) {
    folder.write("water.grd", gridText({"1", "2", "3.5", "0.5", "N", "5"}));
    data.unit[0] = typed(50, 4);
    data.final.groundWater = file("water.grd");
    data.final.boltLength = 4.0;
    const auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_THAT(cells(*result->grid), ElementsAre(50, 48, 44.5, 48, kNone, 40));
    EXPECT_EQ(result->grid->getValue(3, 0), kNone); // beyond the cells
    EXPECT_EQ(result->grid->getValue(0, 2), kNone);
    EXPECT_EQ(result->grid->origin().x, 100);
    EXPECT_EQ(result->grid->cellWidthY(), 5);
    EXPECT_NEAR(result->cmrr.mean, 230.5 / 5, 1e-12);
    EXPECT_EQ(result->cmrr.lowest, 40);
    EXPECT_EQ(result->cmrr.withoutValue, 1u);
    EXPECT_NEAR(result->how.groundWater, (230.5 - 250) / 5, 1e-12);
    EXPECT_EQ(advice.warnings.size(), 2u); // 0.5 and the blank
}

TEST_F(RoofRating, CoreGridsRateCellByCell) {
    folder.write("ucs.grd", gridText({"5000", "10000", "30000", "0", "N", "-3"}));
    data.unit[0] = core("ucs.grd", 4);
    data.final.boltLength = 4.0;
    auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_THAT(cells(*result->unitGrids[0]), ElementsAre(48.5, 53.8, 66, kNone, kNone, kNone));
    EXPECT_THAT(cells(*result->grid), ElementsAre(48.5, 53.8, 66, kNone, kNone, kNone));
    EXPECT_EQ(unitGrid(*result, 1), result->unitGrids[0].get());
}

TEST_F(RoofRating, DiscontinuitiesTakeTheSmallerOfCohesionAndIntensity) {
    folder.write("d.grd", gridText({"10", "100", "200", "400", "400", "400"}));
    folder.write("rqd.grd", gridText({"100", "100", "100", "100", "10", "N"}));
    CUnit& unit = data.unit[0] = core("", 4);
    unit.core.diametralTest = DiametralTest::is50;
    unit.core.diametralIs50 = file("d.grd");
    unit.core.fractures = Fractures::rqd;
    unit.core.rqd = file("rqd.grd");
    unit.core.axialTest = AxialTest::is50;
    unit.core.axialIs50 = {200.0, {}, false}; // UCS 4200: 11.3
    data.final.boltLength = 4.0;
    const auto result = rate();
    ASSERT_TRUE(result);
    const std::vector<double> found = cells(*result->grid);
    EXPECT_NEAR(found[0], 11.3 + 25, 1e-9);
    EXPECT_NEAR(found[1], 11.3 + 34.4, 1e-9);
    EXPECT_NEAR(found[2], 11.3 + 36.754287, 1e-6); // 48.3 of cohesion
    EXPECT_NEAR(found[4], 11.3 + rqdRating(10), 1e-9);
    EXPECT_EQ(found[5], kNone);
    EXPECT_EQ(found[3], found[2]);
}

TEST_F(RoofRating, StrengthIndexGridRatesTheObservation) {
    folder.write("s.grd", gridText({"1", "2.5", "5", "0.9", "5.1", "N"}));
    CUnit& unit = data.unit[0];
    unit.ratingSource = RatingSource::computed;
    unit.observation.strengthIndex = file("s.grd");
    unit.observation.noDiscontinuityIndex = 1.0; // 70
    unit.observation.moisture = 4.0;             // -15
    unit.thickness.constant = 4.0;
    data.final.boltLength = 3.0;
    const auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_THAT(cells(*result->grid), ElementsAre(85, 73.5, 60, kNone, kNone, kNone));
}

TEST_F(RoofRating, ThicknessGridsSayWhereUnitsAre) {
    folder.write("t1.grd", gridText({"2", "0", "0", "-1", "N", "6"}));
    folder.write("t2.grd", gridText({"2", "6", "0", "2", "2", "N"}));
    data.units = 2;
    data.unit[0] = typed(40, 0);
    data.unit[0].thickness = file("t1.grd");
    data.unit[1] = typed(44, 0);
    data.unit[1].thickness = file("t2.grd");
    data.final.boltLength = 4.0;
    const auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_THAT(cells(*result->grid), ElementsAre(42, 44, kNone, kNone, kNone, 40));
}

TEST_F(RoofRating, ReadyRatingsAreTaken) {
    folder.write("r.grd", gridText({"40", "50", "60", "-999", "N", "0"}));
    data.unit[0].ratingSource = RatingSource::file;
    data.unit[0].ratingFile = "r.grd";
    data.unit[0].thickness.constant = 4.0;
    data.final.boltLength = 4.0;
    EXPECT_THAT(cells(*rate()->grid), ElementsAre(40, 50, 60, kNone, kNone, kNone));
}

TEST_F(RoofRating, ReadsEveryFileOnce) {
    folder.write("same.grd", evenGrid("5000"));
    data.units = 3;
    for (std::size_t u = 0; u < 3; ++u)
        data.unit[u] = core(u == 1 ? "./same.grd" : "same.grd", 2);
    data.final.boltLength = 6.0;
    ASSERT_TRUE(rate());
    ASSERT_TRUE(rate());
    EXPECT_EQ(grids.filesRead(), 1u);
}

TEST_F(RoofRating, UnitsOfANumberAreSpreadWhereTheyAreKept) {
    folder.write("ucs.grd", evenGrid("5000"));
    data.units = 2;
    data.unit[0] = core("ucs.grd", 2);
    data.unit[1] = typed(61.5, 2);
    data.final.boltLength = 4.0;
    auto result = rate();
    ASSERT_TRUE(result);
    EXPECT_THAT(cells(*unitGrid(*result, 2)), testing::Each(61.5));
    EXPECT_EQ(unitGrid(*result, 2)->getValue(3, 2), kNone);
}

// --- what is said of grids ----------------------------------------------------------------------

TEST_F(RoofRating, GridsThatLieElsewhereAreRefusedByWhatDiffersFirst) {
    const auto why = [&](const Frame& frame) {
        folder.write("a.grd", evenGrid("5000"));
        folder.write("b.grd", evenGrid("5000", frame));
        data.units = 2;
        data.unit[0] = core("a.grd", 2);
        data.unit[1] = core("b.grd", 2);
        data.final.boltLength = 4.0;
        grids = InputGrids();
        const auto result = rate();
        return result ? std::string("rated") : result.error().text;
    };
    const std::string place =
        "The grid which you have specified does not have the same location as your previous grids";
    const std::string size =
        "The grid which you have specified is not the same size as your previous grids";
    EXPECT_EQ(why({}), "rated");
    EXPECT_EQ(why({100, 201, 30, 9, 3, 2}), place + " - H-R-1");
    EXPECT_EQ(why({101, 200, 29, 10, 3, 2}), place + " - H-R-2");
    EXPECT_EQ(why({100, 200, 30, 11, 3, 2}), place + " - H-R-3");
    EXPECT_EQ(why({100, 200, 31, 10, 3, 2}), place + " - H-R-4");
    EXPECT_EQ(why({100, 200, 30, 10, 4, 2}), size + " - H-R-5");
    EXPECT_EQ(why({100, 200, 30, 10, 3, 4}), size + " - H-R-6");
    // More cells of the same size: the corners differ as well.
    EXPECT_EQ(why({100, 200, 40, 10, 4, 2}), size + " - H-R-5");
    EXPECT_EQ(why({100, 200, 30, 15, 3, 3}), size + " - H-R-6");
}

TEST_F(RoofRating, BadPointsWarnThenAsk) {
    folder.write("ucs.grd", gridText({"0", "-1", "5000", "0", "0", "-2"}));
    data.unit[0] = core("ucs.grd", 2);
    data.final.boltLength = 4.0;
    ASSERT_TRUE(rate());
    ASSERT_EQ(advice.warnings.size(), 3u);
    EXPECT_EQ(advice.warnings[2],
              "The UCS grid that was entered contains a point with a value less than or equal to "
              "zero\nat row 2 column 1.  The program will continue but will not use this point in "
              "the calculations");
    EXPECT_THAT(advice.questions,
                ElementsAre("The UCS grid that was entered contains at least 4 or more points that "
                            "are\nout of range. Would you like to continue reading in this grid "
                            "file?"));
    advice.answer = false;
    grids = InputGrids();
    base::NoProgress nobody;
    EXPECT_EQ(needAll(gridsInUse(data), grids, advice, nobody).outcome, GridNeed::Outcome::dropped);
}

// Every kind with its name, and what it takes for out of range.
TEST_F(RoofRating, EachKindOfGridIsSpokenOfByItsName) {
    const auto inspected = [&](GridKind kind, std::array<const char*, 6> values) {
        folder.write("values.grd", gridText(values));
        base::NoProgress nobody;
        const auto grid = InputGrids().need("values.grd", kind, {}, advice, nobody);
        EXPECT_EQ(grid.ok(), true);
        const Advice heard = advice;
        advice = Advice();
        return heard;
    };
    for (const auto& [kind, name] : {std::pair(GridKind::strength, "strength"),
                                     {GridKind::diametral, "diametral strength"},
                                     {GridKind::rqd, "RQD"},
                                     {GridKind::spacing, "discontinuity"},
                                     {GridKind::axialIs50, "axial strength"},
                                     {GridKind::ucs, "UCS"}}) {
        const Advice heard = inspected(kind, {"1", "2", "0", "N", "-1", "0.001"});
        EXPECT_THAT(heard.warnings,
                    ElementsAre(fmt::format("The {} grid that was entered contains a point with a "
                                            "value less than or equal to zero\nat row 1 column 3.  "
                                            "The program will continue but will not use this point "
                                            "in the calculations",
                                            name),
                                HasSubstr("at row 2 column 2."),
                                fmt::format("The {} grid that was entered contains some blank data "
                                            "points\nThe program will continue but the output will "
                                            "also contain blank data points",
                                            name)));
        EXPECT_TRUE(heard.questions.empty());
        EXPECT_THAT(inspected(kind, {"0", "0", "0", "0", "1", "1"}).questions,
                    ElementsAre(fmt::format("The {} grid that was entered contains at least 4 or "
                                            "more points that are\nout of range. Would you like to "
                                            "continue reading in this grid file?",
                                            name)));
    }
    const Advice water = inspected(GridKind::groundWater, {"1", "5", "0.99", "5.01", "3", "3"});
    ASSERT_EQ(water.warnings.size(), 2u);
    EXPECT_EQ(water.warnings[1],
              "The ground water grid that was entered contains a point value less than 1 or "
              "greater than 5\nat row 2 column 1. The program will continue but will consider this "
              "point to be damp.");
    EXPECT_THAT(inspected(GridKind::groundWater, {"0", "0", "9", "9", "3", "3"}).questions,
                ElementsAre(HasSubstr("at least 4 or more")));
    const Advice thickness = inspected(GridKind::thickness, {"-1", "0", "3", "3", "3", "0.5"});
    EXPECT_THAT(thickness.warnings,
                ElementsAre("The thickness grid that was entered contains a point with a value "
                            "less than zero\nat row 1 column 1. The program will continue but "
                            "will be unable to use this point GR-1."));
    EXPECT_THAT(inspected(GridKind::thickness, {"-1", "0.49", "3", "3", "3", "3"}).questions,
                ElementsAre(HasSubstr("at least 2 or more")));
}

TEST_F(RoofRating, ThicknessAsksAtTheSecondPoint) {
    folder.write("t.grd", gridText({"0.2", "0", "2", "-1", "0.5", "N"}));
    data.unit[0] = typed(40, 0);
    data.unit[0].thickness = file("t.grd");
    data.final.boltLength = 4.0;
    ASSERT_TRUE(rate());
    EXPECT_EQ(advice.questions.size(), 1u);
    ASSERT_EQ(advice.warnings.size(), 2u);
    EXPECT_THAT(advice.warnings[0], HasSubstr("row 1 column 1"));
    EXPECT_THAT(advice.warnings[1],
                HasSubstr("thickness grid that was entered contains some blank"));
}

TEST_F(RoofRating, MissingFilesAreToldByKindAndUnit) {
    data.units = 2;
    data.unit[0] = typed(40, 2);
    data.unit[1] = core("none.grd", 2);
    data.final.boltLength = 4.0;
    EXPECT_EQ(rate().error().text,
              "There was an error reading the axial grid for unit 2 - DDRGOO-");
    folder.write("none.grd", "not a grid");
    EXPECT_THAT(rate().error().text, HasSubstr("DDRGOO-"));
    EXPECT_EQ(readErrorText({GridKind::rqd, 3, {}, nullptr}),
              "There was an error reading the discontinuity grid for unit 3 - DDRGOO-");
    data.unit[1] = typed(40, 2);
    data.final.groundWater = file("none.grd");
    EXPECT_EQ(rate().error().text,
              "There was an error reading the thickness grid file - F-OOGWGR-1");
}

} // namespace
} // namespace tessaran::cmrr
