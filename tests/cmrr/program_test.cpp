// `tessaran cmrr FILE.cmr [--report]` as people call it.

#include "cells.h"
#include "cmrr/unit_file.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sys/wait.h>

namespace tessaran::cmrr {
namespace {

using test::TemporaryFolder;
using testing::HasSubstr;

class CmrrProgram : public testing::Test {
  protected:
    CmrrProgram() {
        data.units = 2;
        for (std::size_t u = 0; u < 2; ++u) {
            data.unit[u].ratingSource = RatingSource::typed;
            data.unit[u].thickness.constant = 4.0;
        }
        data.unit[0].rating = 40.0;
        data.unit[0].observation.contact = Contact::weak;
        data.unit[1].rating = 70.0;
        data.final = {{3.0, {}, false}, 2.0, 5.0, false};
    }
    int run(const std::string& arguments) {
        const std::string command =
            std::string(TESSARAN_PROGRAM) + " cmrr " + arguments + " >out.log 2>err.log";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string out() const { return folder.read("out.log"); }
    std::string err() const { return folder.read("err.log"); }

    TemporaryFolder folder;
    RoofData data;
};

TEST_F(CmrrProgram, PrintsOneNumberAndHowItCameAbout) {
    ASSERT_TRUE(writeUnitFile("roof.cmr", data));
    // 46 + 0.77 x (24 x 0.22 x 4 - 2.5) - 2 - 4 - 5
    EXPECT_EQ(run("roof.cmr"), 0) << err();
    EXPECT_EQ(out(), "CMRR 49.3374\n");
    EXPECT_EQ(run("roof.cmr --report"), 0);
    for (const char* line :
         {"Unit 1 rating               40, typed\n", "  contact at its top        weak\n",
          "Average over the bolts      46\n", "Strong bed adjustment       14.3374\n",
          "Weak contacts adjustment    -2\n", "Ground water adjustment     -4\n",
          "Surcharge adjustment        -5\n", "CMRR                        49.3374\n"})
        EXPECT_THAT(out(), HasSubstr(line));
    EXPECT_FALSE(folder.has("CMRR.grd"));
}

TEST_F(CmrrProgram, WritesGridsBesideTheFileAndReplacesNone) {
    std::filesystem::create_directories("roof");
    folder.write("roof/water.grd", gridText({"1", "2", "3", "4", "5", "N"}));
    data.final.groundWater = {{}, "roof/water.grd", true};
    data.final.keepUnitGrids = true;
    ASSERT_TRUE(writeUnitFile("roof/roof.cmr", data));
    EXPECT_EQ(run("roof/roof.cmr --report"), 0) << err();
    EXPECT_THAT(out(), HasSubstr("Cells without a rating      1 of 6\n"));
    EXPECT_THAT(out(),
                HasSubstr("CMRR                        mean 48.7374 (43.3374 to 53.3374)\n"));
    EXPECT_THAT(folder.read("roof/CMRR.grd"), HasSubstr("\r\n53.337400\r\n51.337400\r\n"));
    EXPECT_THAT(folder.read("roof/CMRR.grd"), HasSubstr("\r\nCMRR\r\n"));
    EXPECT_THAT(folder.read("roof/CMRR_Unit2.grd"), HasSubstr("\r\n70.000000\r\n70.000000\r\n"));
    folder.write("roof/CMRR.grd", "precious");
    EXPECT_EQ(run("roof/roof.cmr"), 1);
    EXPECT_EQ(folder.read("roof/CMRR.grd"), "precious");
    EXPECT_EQ(run("roof/roof.cmr --overwrite"), 0) << err();
    EXPECT_NE(folder.read("roof/CMRR.grd"), "precious");
}

TEST_F(CmrrProgram, SaysWhyItCannot) {
    EXPECT_EQ(run("none.cmr"), 2);
    folder.write("bad.cmr", "1,9\n");
    EXPECT_EQ(run("bad.cmr"), 2);
    EXPECT_EQ(err(), "bad.cmr:1: The file's version 9 is not known.\n");
    data.final.boltLength.reset();
    ASSERT_TRUE(writeUnitFile("roof.cmr", data));
    EXPECT_EQ(run("roof.cmr"), 1);
    EXPECT_EQ(err(), "The input for the bolt must be a real number - F-CB-1\n");
    data.unit[1].thickness = {{}, "none.grd", true};
    data.final.boltLength = 4.0;
    ASSERT_TRUE(writeUnitFile("roof.cmr", data));
    EXPECT_EQ(run("roof.cmr"), 1);
    EXPECT_THAT(err(), HasSubstr("There was an error reading the thickness grid for unit 2 - "
                                 "DDRGOO-\n"));
    data.unit[1].ratingSource = RatingSource::none;
    ASSERT_TRUE(writeUnitFile("roof.cmr", data));
    EXPECT_EQ(run("roof.cmr"), 1);
    EXPECT_EQ(err(), "The CMRR could not be calculated. Unit rating 2 was not availible - "
                     "DDGCC-2\n");
}

} // namespace
} // namespace tessaran::cmrr
