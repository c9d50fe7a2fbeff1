// Small files from tests/data/dxf: bad, poor, old and odd ones. Each is read right or refused with
// the line; what is read can be written, and other programs accept it.

#include "base/file.h"
#include "base/progress.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"
#include "support/other_programs.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numbers>
#include <set>
#include <string>
#include <vector>

namespace tessaran::drawing {
namespace {

const std::filesystem::path kFolder = std::filesystem::path(TESSARAN_SOURCE_DIR) / "tests/data/dxf";

base::Result<LoadReport> load(Database& database, const std::string& name) {
    base::NoProgress nobody;
    return loadDxf(database, kFolder / (name + ".dxf"), nobody);
}

std::set<std::string> filesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder / folder))
        names.insert(folder + "/" + entry.path().stem().string());
    return names;
}

std::vector<host::Entity> entitiesOf(const Database& database) {
    std::vector<host::Entity> out;
    database.forEachEntity([&](const EntityRecord& record) { out.push_back(record.entity); });
    return out;
}

struct Refused {
    const char* name;
    long line;
    const char* reason; // part of the message
};

const std::vector<Refused> kRefused{
    {"refused/binary_cut_in_section", 8, "cut off inside section ENTITIES"},
    {"refused/binary_cut_in_value", 8, "cut off inside a value"},
    {"refused/binary_signature_only", 1, "no section"},
    {"refused/binary_wild_code", 9, "no group code 30000"},
    {"refused/code_out_of_range", 15, "no group code 99999"},
    {"refused/cut_behind_code", 31, "cut off"},
    {"refused/cut_in_entities", 29, "cut off inside section ENTITIES"},
    {"refused/empty", 0, "empty"},
    {"refused/handles_used_up", 0, "no room"},
    {"refused/letters_for_code", 15, "a group code is expected, not \"abc\""},
    {"refused/no_section", 1, "not a DXF file"},
    {"refused/picture", 1, "a group code is expected"},
    {"refused/plain_text", 1, "a group code is expected, not \"hello\""},
    {"refused/shifted_by_a_line", 17, "a group code is expected, not \"stray\""},
};

TEST(Refused, FileIsNamedWithItsLine) {
    std::set<std::string> left = filesIn("refused");
    for (const Refused& file : kRefused) {
        EXPECT_EQ(left.erase(file.name), 1U) << file.name;
        Database database;
        const base::Result<LoadReport> report = load(database, file.name);
        ASSERT_FALSE(report) << file.name;
        EXPECT_NE(report.error().message().find(file.reason), std::string::npos)
            << file.name << ": " << report.error().message();
        EXPECT_EQ(report.error().line, file.line) << file.name;
        EXPECT_NE(report.error().file.find(file.name), std::string::npos) << file.name;
    }
    EXPECT_TRUE(left.empty()) << "a file that no row speaks of: " << *left.begin();
}

TEST(Refused, AFolderAndAMissingFile) {
    Database database;
    base::NoProgress nobody;
    EXPECT_EQ(loadDxf(database, kFolder, nobody).error().cause, base::IoCause::accessDenied);
    EXPECT_EQ(loadDxf(database, kFolder / "none.dxf", nobody).error().cause,
              base::IoCause::notFound);
}

struct Accepted {
    const char* name;
    std::size_t entities;
    std::size_t kept; // of them only kept
    std::size_t warnings;
    bool sound = true; // other programs accept what is written; damage that is kept they may not
};

const std::vector<Accepted> kAccepted{
    {"accepted/bad_coordinates", 6, 5, 5, false},
    {"accepted/binary", 1, 0, 0},
    {"accepted/blocks_without_ends", 2, 0, 0},
    {"accepted/byte_order_mark", 1, 0, 0},
    {"accepted/code_page_1251", 1, 0, 0},
    {"accepted/code_page_932", 1, 0, 0},
    {"accepted/code_page_unknown", 1, 0, 0},
    {"accepted/comments_and_unknown_parts", 2, 1, 0},
    {"accepted/coordinate_system_broken", 1, 0, 0},
    {"accepted/degenerate_polylines", 8, 3, 2},
    {"accepted/duplicate_handles", 3, 0, 2},
    {"accepted/elevation_of_old_releases", 1, 0, 0},
    {"accepted/end_mark_missing", 1, 0, 0},
    {"accepted/extended_data_oddities", 1, 0, 0, false},
    {"accepted/line_ends_cr", 1, 0, 0},
    {"accepted/line_ends_mixed", 1, 0, 0},
    {"accepted/lying_counts", 5, 3, 3},
    {"accepted/objects_in_circles", 1, 0, 0, false},
    {"accepted/poor_without_tables", 2, 0, 0},
    {"accepted/r12_entities_only", 2, 0, 0},
    {"accepted/region_loops", 5, 0, 5},
    {"accepted/regions", 5, 4, 4, false},
    {"accepted/parts_astray", 3, 0, 0, false},
};

TEST(Accepted, IsReadWrittenAndReadAgain) {
    const test::TemporaryFolder folder;
    std::set<std::string> left = filesIn("accepted");
    for (const Accepted& file : kAccepted) {
        SCOPED_TRACE(file.name);
        EXPECT_EQ(left.erase(file.name), 1U);
        Database database;
        const base::Result<LoadReport> report = load(database, file.name);
        ASSERT_TRUE(report) << report.error().message();
        EXPECT_EQ(report->entities, file.entities);
        EXPECT_EQ(report->kept, file.kept);
        EXPECT_EQ(report->warningCount, file.warnings)
            << (report->warnings.empty() ? "" : report->warnings.front());
        EXPECT_FALSE(report->upgraded.empty()); // none of them is a whole drawing
        const base::Result<SaveReport> saved = saveDxf(database, folder / "out.dxf");
        ASSERT_TRUE(saved) << saved.error().message();
        EXPECT_EQ(saved->upgraded, report->upgraded);
        Database again;
        base::NoProgress nobody;
        const base::Result<LoadReport> second = loadDxf(again, folder / "out.dxf", nobody);
        ASSERT_TRUE(second) << second.error().message();
        EXPECT_EQ(second->entities, file.entities);
        EXPECT_EQ(second->upgraded, "");
        if (file.sound) {
            const test::ProgramResult seen = test::runScript(
                std::string(TESSARAN_SOURCE_DIR) + "/tests/drawing/check_drawing.py",
                "'" + (folder / "out.dxf").string() + "'");
            EXPECT_EQ(seen.status, 0) << seen.output;
        }
    }
    EXPECT_TRUE(left.empty()) << "a file that no row speaks of: " << *left.begin();
}

TEST(Accepted, TextsComeAsUtf8FromEveryCodePage) {
    const struct {
        const char* name;
        const char* layer;
        const char* text;
    } cases[] = {
        {"accepted/code_page_932", "表面", "能力"},       // second bytes are '\' and others
        {"accepted/code_page_1251", "Шахта", "Целик サ"}, // and one character of another page
        {"accepted/code_page_unknown", "\u0081\u00fe", "\u0090\u00a4"},
        {"accepted/byte_order_mark", "Größe", "Ω Ä \n"},
    };
    for (const auto& expected : cases) {
        Database database;
        ASSERT_TRUE(load(database, expected.name)) << expected.name;
        const host::Entity entity = entitiesOf(database).at(0);
        EXPECT_EQ(entity.layer, expected.layer);
        EXPECT_EQ(std::get<host::Text>(entity.geometry).text, expected.text);
    }
}

TEST(Accepted, WarningsNameTheLineOfTheEntity) {
    Database database;
    const base::Result<LoadReport> report = load(database, "accepted/bad_coordinates");
    ASSERT_TRUE(report);
    ASSERT_EQ(report->warnings.size(), 5U);
    EXPECT_NE(report->warnings[0].find("bad_coordinates.dxf:15: LWPOLYLINE: \"nan\""),
              std::string::npos)
        << report->warnings[0];
    EXPECT_NE(report->warnings[2].find("\"12,5\""), std::string::npos) << report->warnings[2];
}

TEST(Accepted, OldElevationsLiftTheEntity) {
    Database database;
    ASSERT_TRUE(load(database, "accepted/elevation_of_old_releases"));
    const auto line = std::get<host::Line>(entitiesOf(database).at(0).geometry);
    EXPECT_EQ(line.start, (host::Point3{0, 0, 7.5}));
    EXPECT_EQ(line.end, (host::Point3{1, 1, 7.5}));
}

// A circle about (2, 4) with radius 5 whose one vertex is at (7, 4).
TEST(Accepted, RegionsAreReadFromTheModellersText) {
    Database database;
    ASSERT_TRUE(load(database, "accepted/regions"));
    const auto region = std::get<host::Region>(entitiesOf(database).at(0).geometry);
    EXPECT_EQ(region.elevation, 3.0);
    ASSERT_EQ(region.loops.size(), 1U);
    ASSERT_EQ(region.loops[0].vertices.size(), 2U);
    EXPECT_EQ(region.loops[0].vertices[0].at, (host::Point2{7, 4}));
    EXPECT_EQ(region.loops[0].vertices[0].bulge, 1.0);
    EXPECT_NEAR(region.loops[0].vertices[1].at.x, -3.0, 1e-12);
}

// Loops that belong together are one region; those of an incomplete set, or with one handle, are
// polylines, and stay that.
TEST(Accepted, RegionsAreReadFromMarkedPolylines) {
    Database database;
    ASSERT_TRUE(load(database, "accepted/region_loops"));
    const std::vector<host::Entity> all = entitiesOf(database);
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[0].id.value, 0x50U);
    EXPECT_EQ(std::get<host::Region>(all[0].geometry).loops.size(), 2U);
    for (std::size_t k = 1; k < all.size(); ++k)
        EXPECT_TRUE(std::holds_alternative<host::Polyline>(all[k].geometry)) << k;
    ASSERT_TRUE(database.erase(all[0].id));
    std::string out;
    ASSERT_TRUE(writeDxf(database, [&](std::string_view bytes) { out += bytes; }));
    Database again;
    base::NoProgress nobody;
    ASSERT_TRUE(loadDxf(again, out, "again", nobody));
    EXPECT_EQ(again.entityCount(), 4U); // both loops are gone
}

// A vertex behind a line is no vertex of the polyline in front, not even when the line is gone.
TEST(Accepted, PartsAstrayGoWithTheEntityInFront) {
    Database database;
    ASSERT_TRUE(load(database, "accepted/parts_astray"));
    ASSERT_TRUE(database.erase(entitiesOf(database).at(1).id));
    std::string out;
    ASSERT_TRUE(writeDxf(database, [&](std::string_view bytes) { out += bytes; }));
    Database again;
    base::NoProgress nobody;
    ASSERT_TRUE(loadDxf(again, out, "again", nobody));
    EXPECT_EQ(again.entityCount(), 2U);
    const auto polyline = std::get<host::Polyline3d>(entitiesOf(again).at(0).geometry);
    EXPECT_EQ(polyline.vertices, (std::vector<host::Point3>{{1, 2, 3}}));
}

TEST(Accepted, EveryCutOfAWholeFileIsRefusedOrRead) {
    Database database;
    ASSERT_TRUE(startDrawing(database));
    ASSERT_TRUE(database.add({{}, "0", 1, "ByLayer", host::Line{{0, 0, 0}, {1, 1, 1}}}));
    std::string whole;
    ASSERT_TRUE(writeDxf(database, [&](std::string_view bytes) { whole += bytes; }));
    base::NoProgress nobody;
    const std::size_t entitiesEnd = whole.find("ENDSEC", whole.find("ENTITIES")) + 6;
    for (std::size_t size = 0; size < whole.size(); size += 13) {
        Database cut;
        const bool read = static_cast<bool>(loadDxf(cut, whole.substr(0, size), "cut", nobody));
        EXPECT_FALSE(read && size < entitiesEnd) << size;
        if (read) {
            EXPECT_EQ(cut.entityCount(), 1U);
        }
    }
}

} // namespace
} // namespace tessaran::drawing
