#include "base/text.h"
#include "stress/material.h"
#include "stress/model_echo.h"
#include "stress/model_reader.h"
#include "stress/model_run.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

using namespace tessaran;
using namespace tessaran::stress;

namespace {

// A complete small model as lines, so that a test can spoil one of them.
struct ModelText {
    std::string title = "Two entries in a solid block";
    std::string host = "0.25, 3000000, 600, 1, 0";
    std::string materialCount = "2";
    std::vector<std::string> materials{"2, 4000, 0.01, 800, 0.04, 0.33",
                                       "6, 300000, 1000, 2, 0, 0"};
    std::string grid = "60, 10, 10, 0.09";
    std::vector<std::string> seams{"0, 0, -6000, 72"};
    std::string control = "1.35, 0.0001, 5000, 1, 1, 0, 0, 0";
    std::string boundaries = "1, 1, 1, 1";
    std::string offSeam;
    std::string codes;

    ModelText() {
        for (int row = 0; row < 10; ++row)
            codes += row == 0 ? "AAAAAAAA1B\n" : "AAAAAAAAAA\n";
    }
    std::string text() const {
        std::string out = title + "\n" + host + "\n" + materialCount + "\n";
        for (const std::string& m : materials)
            out += m + "\n";
        out += grid + "\n";
        for (const std::string& s : seams)
            out += s + "\n";
        return out + control + "\n" + boundaries + "\n" + offSeam + codes;
    }
};

ModelReading reading(const ModelText& text) {
    return parseModel(text.text());
}

} // namespace

TEST(ModelReader, ReadsEveryGroup) {
    ModelText text;
    text.control = "1.35, 0.0001, 5000, 1, 1, 1, 1, 0";
    text.offSeam = "6, 120, 3, 2, 10, 20, -3000\n";
    const ModelReading read = reading(text);
    ASSERT_TRUE(read.ok()) << read.message;
    const CModelDat& m = read.model;
    EXPECT_EQ(m.title, "Two entries in a solid block");
    EXPECT_EQ(m.poissonsRatio, 0.25);
    EXPECT_EQ(m.modulus, 3e6);
    EXPECT_EQ(m.laminationThickness, 600.0);
    ASSERT_EQ(m.materials.size(), 2u);
    EXPECT_EQ(m.materials[0].type, MaterialType::strainSofteningCoal);
    EXPECT_EQ(m.materials[0].p[1], static_cast<double>(0.01F)); // single precision, as always read
    EXPECT_EQ(m.materials[1].p[2], 2.0);
    EXPECT_EQ(m.gradient, static_cast<double>(0.09F));
    EXPECT_EQ(m.seams[0].z, -6000.0);
    EXPECT_EQ(m.maxIterations, 5000);
    EXPECT_TRUE(m.surfaceEffects);
    EXPECT_EQ(m.offSeam.blocks, 6);
    EXPECT_EQ(m.offSeam.z, -3000.0);
    // The first row of the file is the northern one: element (9, 10) is the open entry.
    EXPECT_EQ(m.codes[0][0][8 * 10 + 9], '1');
    EXPECT_EQ(m.codes[0][0][9 * 10 + 9], 'B');
    EXPECT_EQ(m.codes[0][0][9 * 10 + 8], 'A');
    EXPECT_EQ(modelFault(m).text, "");
}

TEST(ModelReader, TakesCodesWithAndWithoutBlanksAndEitherLineEnd) {
    const ModelReading plain = reading(ModelText());
    ModelText spaced;
    std::string wide;
    for (const char c : spaced.codes) {
        wide += c;
        if (c != '\n')
            wide += ' ';
    }
    spaced.codes = wide;
    EXPECT_EQ(reading(spaced).model.codes, plain.model.codes);
    ModelText oneLine;
    std::erase(oneLine.codes, '\n');
    EXPECT_EQ(reading(oneLine).model.codes, plain.model.codes);
    std::string crlf;
    for (const char c : ModelText().text())
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const ModelReading fromCrlf = parseModel(crlf);
    EXPECT_EQ(fromCrlf.model.codes, plain.model.codes);
    EXPECT_EQ(fromCrlf.model.title, plain.model.title);
}

TEST(ModelReader, ReadsCountsWiderThanThreeDigitsAndCutsLongTitles) {
    ModelText text;
    text.title = std::string(200, 't');
    text.grid = "60.000000000000000, 1000, 10, 0.09";
    text.codes = std::string(10000, 'A');
    const ModelReading read = reading(text);
    ASSERT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(read.model.nX, 1000);
    EXPECT_EQ(read.model.title, std::string(79, 't'));
}

TEST(ModelReader, NamesEveryFailureByItsMessageAndCode) {
    struct Case {
        const char* name;
        void (*spoil)(ModelText&);
        int code;
        const char* message;
    };
    const std::vector<Case> cases{
        {"host", [](ModelText& t) { t.host = "0.25, 3000000, 600, 1"; }, 2,
         "Error reading the host properties - RI2a\n"},
        {"five seams", [](ModelText& t) { t.host = "0.25, 3000000, 600, 5, 0"; }, 2,
         "Can Only Specify up to 4 Different Seams - RI2b\n"},
        {"units 4", [](ModelText& t) { t.host = "0.25, 3000000, 600, 1, 4"; }, 2,
         "Can Only Specify a Unit Number up to 4 - RI2c\n"},
        {"no count", [](ModelText& t) { t.materialCount = "x"; }, 3,
         "Error reading the number of in seam materials - RI3a\n"},
        {"27 materials", [](ModelText& t) { t.materialCount = "27"; }, 3,
         "The Number of In Seam Materials Must Be Between 1 and 26 - RI3b\n"},
        {"short material", [](ModelText& t) { t.materials[1] = "6, 300000, 1000"; }, 4,
         "Error reading the in seam material properties - RI4a\n"},
        {"type 7", [](ModelText& t) { t.materials[0] = "7, 1, 1, 1, 1, 1"; }, 4,
         "The Material Type Number Must Be Between 1 and 6 - RI4b\n"},
        {"grid", [](ModelText& t) { t.grid = "60, 10, 10"; }, 5,
         "Error reading the general grid information - RI5a\n"},
        {"15 columns", [](ModelText& t) { t.grid = "60, 15, 10, 0.09"; }, 5,
         "Fine mesh size must be divisible by 10 - RI5b\n"},
        {"width 0", [](ModelText& t) { t.grid = "0, 10, 10, 0.09"; }, 5,
         "Element width must be non-zero - RI5c\n"},
        {"no columns", [](ModelText& t) { t.grid = "60, 0, 10, 0.09"; }, 5,
         "The number of X elements must be non-zero - RI5d\n"},
        {"no rows", [](ModelText& t) { t.grid = "60, 10, 0, 0.09"; }, 5,
         "The number of Y elements must be non-zero - RI5e\n"},
        {"seam", [](ModelText& t) { t.seams[0] = "0, 0, deep, 72"; }, 6,
         "Error reading the seam coordinate information - RI6\n"},
        {"control", [](ModelText& t) { t.control = "1.35, 0.0001, 5000, 1, 1, 0, 0"; }, 7,
         "Error reading the program control parameters - RI7a\n"},
        {"21 steps", [](ModelText& t) { t.control = "1.35, 0.0001, 5000, 1, 21, 0, 0, 0"; }, 7,
         "The Number of Steps Must be Less Than 20 - RI7b\n"},
        {"boundary", [](ModelText& t) { t.boundaries = "1, 1, 1"; }, 8,
         "Error reading the boundary condition parameters - RI8a\n"},
        {"boundary 2", [](ModelText& t) { t.boundaries = "1, 1, 2, 1"; }, 8,
         "The Boundary Conditions must be either a '0' or a '1' - RI8b\n"},
        {"off-seam",
         [](ModelText& t) {
             t.control = "1.35, 0.0001, 5000, 1, 1, 0, 1, 0";
             t.offSeam = "6, 120, 3, 2, 10\n";
         },
         9, "Error reading the off-seam grid details - RI9a\n"},
        {"off-seam count",
         [](ModelText& t) {
             t.control = "1.35, 0.0001, 5000, 1, 1, 0, 1, 0";
             t.offSeam = "7, 120, 3, 2, 10, 20, -3000\n";
         },
         9, "Inconsistent Data in the Offseam Input Line - RI9b\n"},
        {"codes cut off", [](ModelText& t) { t.codes.resize(60); }, 10,
         "Error reading the fine mesh codes - RI10b\n"},
        {"absurd counts", [](ModelText& t) { t.grid = "60, 2000000000, 2000000000, 0.09"; }, 10,
         "Error reading the fine mesh codes - RI10b\n"},
    };
    const test::TemporaryFolder folder;
    for (const Case& c : cases) {
        ModelText text;
        c.spoil(text);
        folder.write("m.inp", text.text());
        const ModelReading read = readModel("m.inp");
        EXPECT_EQ(read.code, c.code) << c.name;
        EXPECT_EQ(read.message, c.message) << c.name;
    }
    folder.write("m.inp", "");
    EXPECT_EQ(readModel("m.inp").message, "Error in Reading Title - RI1a\n");
    EXPECT_EQ(readModel("m.inp").code, 1);
    EXPECT_EQ(readModel("no/such/file.inp").message, "Error in Opening Input File - RI1a\n");
    EXPECT_EQ(readModel("no/such/file.inp").code, 1);
}

TEST(ModelReader, TheLimitsAreAsLopsidedAsTheirMessages) {
    ModelText twentySteps;
    twentySteps.control = "1.35, 0.0001, 5000, 1, 20, 0, 0, 0";
    const std::string one = twentySteps.codes;
    for (int k = 1; k < 20; ++k)
        twentySteps.codes += one;
    EXPECT_TRUE(reading(twentySteps).ok());

    ModelText noSeams; // passes the reader, and is refused before a run
    noSeams.host = "0.25, 3000000, 600, 0, 0";
    noSeams.seams.clear();
    noSeams.codes.clear();
    const ModelReading read = reading(noSeams);
    EXPECT_TRUE(read.ok()) << read.message;
    EXPECT_EQ(modelFault(read.model).text, "A model needs at least one seam");
}

TEST(ModelFaults, AreRefusedWithTheirLineBeforeARun) {
    struct Case {
        void (*spoil)(ModelText&);
        long line;
        const char* reason;
    };
    const std::vector<Case> cases{
        {[](ModelText& t) {
             t.host = "0.25, 3000000, 600, -1, 0";
             t.seams.clear();
         },
         2, "A model needs at least one seam"},
        {[](ModelText& t) { t.host = "0.25, 3000000, 600, 1, -1"; }, 2,
         "Unit Code Out of Range in Input File - PU1\n"},
        {[](ModelText& t) { t.materials[0] = "2, 4000, 0, 800, 0.04, 0.33"; }, 4,
         "Material 1 has a peak strain of 0"},
        {[](ModelText& t) { t.materials[1] = "4, 50, 0.1, 20000, 0, 0"; }, 5,
         "Material 2 has a gob height factor of 0"},
        {[](ModelText& t) { t.grid = "-60, 10, 10, 0.09"; }, 6,
         "The element width must be larger than 0"},
        {[](ModelText& t) { t.grid = "60, -10, 10, 0.09"; }, 6,
         "The numbers of elements must be 10 or more"},
        {[](ModelText& t) { t.seams[0] = "0, 0, -6000, 0"; }, 7,
         "The thickness of seam 1 must be larger than 0"},
        {[](ModelText& t) { t.control = "1.35, 0.0001, 5000, 1, 0, 0, 0, 0"; }, 8,
         "A model needs at least one step"},
        {[](ModelText& t) {
             t.control = "1.35, 0.0001, 5000, 1, 1, 1, 0, 0";
             t.seams[0] = "0, 0, 0, 72";
         },
         7, "Seam 1 lies in the surface: no surface effects at depth 0"},
        {[](ModelText& t) {
             t.control = "1.35, 0.0001, 5000, 1, 1, 0, 1, 0";
             t.offSeam = "6, 120, 3, 2, 10, 20, -6000\n";
         },
         10, "The off-seam grid lies on a seam"},
        {[](ModelText& t) {
             t.control = "1.35, 0.0001, 5000, 1, 1, 0, 1, 0";
             t.offSeam = "6, -10, 3, 2, 10, 20, -600\n";
         },
         10, "The width of the off-seam blocks must be larger than 0"},
        {[](ModelText& t) { t.control = "0, 0.0001, 5000, 1, 1, 0, 0, 0"; }, 8,
         "The over-relaxation factor must be larger than 0"},
        {[](ModelText& t) { t.host = "1, 3000000, 600, 1, 0"; }, 2,
         "Poisson's ratio must lie between -1 and 1"},
        {[](ModelText& t) { t.host = "0.25, 3000000, 0, 1, 0"; }, 2,
         "The modulus and the lamination thickness of the rock must be larger than 0"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        const test::TemporaryFolder folder;
        ModelText text;
        c.spoil(text);
        folder.write("m.inp", text.text());
        const auto prepared = prepareRun("m.inp");
        ASSERT_FALSE(prepared);
        EXPECT_EQ(prepared.error().text, c.reason);
        EXPECT_EQ(prepared.error().line, c.line);
        EXPECT_FALSE(folder.has("m.out"));
    }
}

TEST(ModelFaults, AreNamed) {
    const auto faultOf = [](void (*spoil)(CModelDat&)) {
        CModelDat model = reading(ModelText()).model;
        spoil(model);
        return modelFault(model).text;
    };
    EXPECT_EQ(faultOf([](CModelDat& m) { m.materials[0].p[1] = 0.0; }),
              "Material 1 has a peak strain of 0");
    EXPECT_EQ(faultOf([](CModelDat& m) { m.materials[1].p[2] = 0.0; }),
              "Material 2 has a gob height factor of 0");
    EXPECT_EQ(faultOf([](CModelDat& m) { m.seams.push_back(m.seams[0]); }),
              "Seams 1 and 2 lie at one depth");
    EXPECT_EQ(faultOf([](CModelDat& m) {
                  m.seams.push_back(m.seams[0]);
                  m.seams[1].z = 10.0;
              }),
              "The depths of seams 1 and 2 differ in sign");
    EXPECT_NE(faultOf([](CModelDat& m) { m.seams[0].thickness = -1.0; }), "");
    EXPECT_NE(faultOf([](CModelDat& m) { m.elementWidth = -1.0; }), "");
    EXPECT_NE(faultOf([](CModelDat& m) {
                  m.surfaceEffects = true;
                  m.seams[0].z = 0.0;
              }),
              "");
}

TEST(Codes, OnlyLettersOfGivenMaterialsAndOpenEntriesAreTaken) {
    EXPECT_EQ(meaningOf('A', 2).material, 0);
    EXPECT_EQ(meaningOf('B', 2).material, 1);
    EXPECT_EQ(meaningOf('C', 2).errorNumber, 5);
    EXPECT_EQ(meaningOf('1', 2).kind, CodeMeaning::Kind::open);
    EXPECT_EQ(meaningOf('0', 26).errorNumber, 1);
    EXPECT_EQ(meaningOf('[', 26).errorNumber, 1);
    EXPECT_EQ(meaningOf('2', 26).errorNumber, 2);
    EXPECT_EQ(meaningOf('a', 26).errorNumber, 2);
    EXPECT_EQ(meaningOf('*', 26).errorNumber, 2);
    EXPECT_EQ(codeRefusal(meaningOf('0', 26), 3, 4),
              "Material Code Out of Range in Element Stress Routine - ES1\n"
              "i = 3, j = 4, integer code = 26\n");
}

TEST(ModelEcho, PrintsEveryBlockInOrder) {
    ModelText text;
    text.control = "1.35, 0.0001, 5000, 1, 1, 0, 1, 0";
    text.offSeam = "6, 120, 3, 2, 10, 20, -3000\n";
    text.host = "0.25, 3000000, 600, 1, 3";
    const std::string echo = modelEcho(reading(text).model);
    std::size_t at = 0;
    for (const char* part :
         {"Two entries in a solid block\n  IN THE FOLLOWING X,Y,Z REFER",
          "  POISSONS RATIO        - 0.250000\n", "  - meters and MegaPascals,\n  but are listed",
          "  - meters and Pascals. \n\n", "  Material Number     - 1\n  Strain Softening Coal\n",
          "  Peak Stress         -         4000\n  Peak Strain         -         0.01\n",
          "  Linear Elastic Gob\n  Elastic Modulus     -       300000\n",
          "  NO. OF ELEMENTS ALONG X AXIS    -- 10\n",
          "       1        0.00        0.00    -6000.00       72.00\n",
          "  OVER RELAXATION FACTOR          -- 1.350000\n",
          "  THE WEST BOUNDARY CONDITION  -- 1\n", "  TOTAL NO. OF OFF_SEAM BLOCKS         -- 6\n",
          "     FINE MESH, STEP = 1, SEAM = 1\n\nAAAAAAAA1B\nAAAAAAAAAA\n"}) {
        const std::size_t found = echo.find(part, at);
        ASSERT_NE(found, std::string::npos) << part;
        at = found;
    }
}
