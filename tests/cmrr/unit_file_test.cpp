#include "cmrr/unit_file.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::cmrr {
namespace {

using test::TemporaryFolder;
using testing::HasSubstr;

CUnit observedUnit() {
    CUnit unit;
    unit.thickness.constant = 3.1;
    unit.observation.strengthIndex.constant = 2.0;
    unit.observation.discontinuities = 1;
    unit.observation.sets[0] = {2.0, 2.0, 1.0, 1.0}; // 27 + 35
    unit.observation.contact = Contact::weak;
    unit.ratingSource = RatingSource::computed;
    unit.rating = 84.0; // with 22 for the strength
    return unit;
}

RoofData someRoof() {
    RoofData data;
    data.units = 3;
    data.unit[0] = observedUnit();
    CUnit& core = data.unit[1];
    core.type = DataType::core;
    core.ratingSource = RatingSource::computed;
    core.thickness = {{}, "thick, of unit 2.grd", true};
    core.core.diametralTest = DiametralTest::notAvailable;
    core.core.estimate = DiametralEstimate::moderate;
    core.core.fractures = Fractures::spacing;
    core.core.spacing = {{}, "sub/spacing.grd", true};
    core.core.axialTest = AxialTest::ucs;
    core.core.ucs = {7000.25, "", false};
    core.core.moisture = 3.0;
    CUnit& typed = data.unit[2];
    typed.ratingSource = RatingSource::typed;
    typed.rating = 0.1 + 0.2; // sixteen digits
    typed.thickness.constant = 2.0;
    data.final = {{{}, "../water.grd", true}, 1.25, 6.0, true};
    return data;
}

TEST(UnitFile, ReadsBackWhatWasWritten) {
    const TemporaryFolder folder;
    ASSERT_TRUE(writeUnitFile("roof.cmr", someRoof()));
    const auto read = readUnitFile("roof.cmr");
    ASSERT_TRUE(read) << read.error().message();
    EXPECT_TRUE(*read == someRoof());
    // Nothing entered yet is a state of its own.
    ASSERT_TRUE(writeUnitFile("empty.cmr", RoofData{}));
    EXPECT_TRUE(*readUnitFile("empty.cmr") == RoofData{});
}

TEST(UnitFile, KeepsGridPathsRelativeToItself) {
    const TemporaryFolder folder;
    std::filesystem::create_directories("files");
    RoofData data = someRoof();
    data.unit[1].core.spacing.file = (folder / "files/spacing.grd").string();
    ASSERT_TRUE(writeUnitFile("files/roof.cmr", data));
    EXPECT_THAT(folder.read("files/roof.cmr"), HasSubstr("\n1,,spacing.grd\n"));
    EXPECT_THAT(folder.read("files/roof.cmr"), HasSubstr("\n1,,../thick, of unit 2.grd\n"));
    // The same grids, wherever the file is opened from.
    EXPECT_EQ(readUnitFile("files/roof.cmr")->unit[1].thickness.file, "thick, of unit 2.grd");
    const auto whole = readUnitFile(folder / "files/roof.cmr");
    EXPECT_EQ(whole->unit[1].core.spacing.file, (folder / "files/spacing.grd").string());
}

TEST(UnitFile, RefusesAPathThatItCannotHold) {
    RoofData data = someRoof();
    for (const char* name :
         {"two\nlines.grd", " blank before.grd", "blank behind.grd ", "./\v.grd"}) {
        data.unit[1].thickness.file = name;
        EXPECT_FALSE(unitText(data, {})) << name;
    }
    data.unit[1].thickness.file = "folder/ blank inside.grd";
    EXPECT_TRUE(unitText(data, {}));
}

std::string whyNot(const std::string& text) {
    const auto read = parseUnitText(text, {});
    return read ? "read" : read.error().message();
}

TEST(UnitFile, RefusesWhatCannotBeMeantWithItsLine) {
    const std::string good = *unitText(someRoof(), {});
    ASSERT_EQ(whyNot(good), "read");
    EXPECT_THAT(whyNot(""), HasSubstr("1: The file ends"));
    EXPECT_THAT(whyNot("6,1\n"), HasSubstr("1: A whole number from 1 to 5"));
    EXPECT_THAT(whyNot("2000000000,1\n"), HasSubstr("from 1 to 5"));
    EXPECT_THAT(whyNot("2,2\n"), HasSubstr("1: The file's version 2 is not known."));
    EXPECT_THAT(whyNot("1,1,1\n"), HasSubstr("1: The line holds more values"));
    EXPECT_THAT(whyNot("1\n"), HasSubstr("1: The line holds fewer values"));
    EXPECT_THAT(whyNot(good + "0\n"), HasSubstr("goes on after its last line"));
    EXPECT_THAT(whyNot(good.substr(0, good.size() / 2)), testing::Ne("read"));
    for (const char* bad :
         {"2,0,,\n", "0,9,,\n", "0,2,nan,\n", "0,2,1e999,\n", "0,2,forty,\n", "0,3,,\n", "0,2\n"})
        EXPECT_THAT(whyNot("1,1\n" + std::string(bad) + "0,,\n"), HasSubstr("2: ")) << bad;
    EXPECT_THAT(whyNot("1,1\n0,0,,\n1,,\n"), HasSubstr("3: A grid file's path is expected."));
}

TEST(UnitFile, StopsAtAnEmptyLine) {
    EXPECT_THAT(whyNot("1,1\n\n0,0,,\n"),
                HasSubstr("2: Read an empty line in the input file - DDOFO-1"));
    EXPECT_THAT(whyNot("\r\n1,1\r\n"), HasSubstr(kEmptyLine));
}

TEST(UnitFile, ReadsEitherLineEnd) {
    std::string text = *unitText(someRoof(), {});
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.insert(at, "\r");
    EXPECT_EQ(whyNot(text), "read");
}

TEST(UnitFile, ComputesRatingsAgain) {
    RoofData data = someRoof();
    data.unit[0].rating = 12.0; // does not fit the data
    EXPECT_EQ(parseUnitText(*unitText(data, {}), {})->unit[0].rating, 84.0);
    data.unit[0].observation.sets[0].cohesion.reset();
    const auto incomplete = parseUnitText(*unitText(data, {}), {});
    EXPECT_EQ(incomplete->unit[0].ratingSource, RatingSource::none);
}

} // namespace
} // namespace tessaran::cmrr
