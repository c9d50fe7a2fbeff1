// Drawings made by another program, read and written: nothing changes but what was changed, and
// what is written is what other programs accept.

#include "base/file.h"
#include "base/progress.h"
#include "drawing/database.h"
#include "drawing/dxf_load.h"
#include "drawing/dxf_save.h"
#include "support/other_programs.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numbers>
#include <set>
#include <string>
#include <vector>

namespace tessaran::drawing {
namespace {

using test::ProgramResult;
using test::runScript;
using test::TemporaryFolder;

std::string script(const std::string& name) {
    return std::string(TESSARAN_SOURCE_DIR) + "/tests/drawing/" + name;
}

std::string bytesOf(const std::filesystem::path& path) {
    base::Result<std::string> bytes = base::readFile(path);
    EXPECT_TRUE(bytes) << path;
    return bytes ? *bytes : std::string{};
}

LoadReport load(Database& database, const std::filesystem::path& path) {
    base::NoProgress nobody;
    base::Result<LoadReport> report = loadDxf(database, path, nobody);
    EXPECT_TRUE(report) << report.error().message();
    return report ? *report : LoadReport{};
}

std::string written(const Database& database) {
    std::string out;
    const base::Result<SaveReport> report =
        writeDxf(database, [&](std::string_view bytes) { out += bytes; });
    EXPECT_TRUE(report) << report.error().message();
    return out;
}

ProgramResult check(const std::filesystem::path& path, const std::string& options = {}) {
    ProgramResult result =
        runScript(script("check_drawing.py"), "'" + path.string() + "' " + options);
    EXPECT_EQ(result.status, 0) << result.output;
    return result;
}

// The records (from one group code 0 to the next) of a text file.
std::vector<std::string> recordsOf(const std::string& bytes) {
    std::vector<std::string> records;
    std::size_t line = 0;
    bool code = true;
    while (line < bytes.size()) {
        const std::size_t end = std::min(bytes.find('\n', line), bytes.size() - 1);
        const std::string text = bytes.substr(line, end - line);
        if (code && text.find_first_not_of(" \r") != std::string::npos &&
            text.find_first_not_of(" \r0") == std::string::npos)
            records.emplace_back();
        if (!records.empty())
            records.back() += bytes.substr(line, end + 1 - line);
        code = !code;
        line = end + 1;
    }
    return records;
}

struct Difference {
    std::vector<std::string> gone;
    std::vector<std::string> added;
};

Difference difference(const std::string& before, const std::string& after) {
    std::map<std::string, int> count;
    for (const std::string& record : recordsOf(before))
        ++count[record];
    for (const std::string& record : recordsOf(after))
        --count[record];
    Difference out;
    for (const auto& [record, n] : count) {
        for (int i = 0; i < n; ++i)
            out.gone.push_back(record);
        for (int i = 0; i < -n; ++i)
            out.added.push_back(record);
    }
    return out;
}

template <class Kind>
std::vector<host::Entity> entitiesOf(const Database& database) {
    std::vector<host::Entity> out;
    database.forEachEntity([&](const EntityRecord& record) {
        if (std::holds_alternative<Kind>(record.entity.geometry))
            out.push_back(record.entity);
    });
    return out;
}

template <class Kind>
const Kind& shape(const host::Entity& entity) {
    return std::get<Kind>(entity.geometry);
}

struct Source {
    std::string name;
    std::string release;
    std::string options;

    bool oldRelease() const { return release == "R12"; }
};

void PrintTo(const Source& source, std::ostream* out) {
    *out << source.name;
}

class RoundTrip : public testing::TestWithParam<Source> {
  protected:
    void SetUp() override {
        const ProgramResult made =
            runScript(script("make_drawing.py"),
                      GetParam().release + " '" + file().string() + "' " + GetParam().options);
        ASSERT_EQ(made.status, 0) << made.output;
    }
    std::filesystem::path file() const { return folder_ / "in.dxf"; }
    TemporaryFolder folder_;
};

TEST_P(RoundTrip, UntouchedFileComesBackByteForByte) {
    Database database;
    const LoadReport report = load(database, file());
    EXPECT_EQ(report.warningCount, 0U) << (report.warnings.empty() ? "" : report.warnings.front());
    if (GetParam().oldRelease()) {
        EXPECT_FALSE(report.upgraded.empty());
        return;
    }
    EXPECT_TRUE(report.upgraded.empty()) << report.upgraded;
    EXPECT_TRUE(written(database) == bytesOf(file()));
}

TEST_P(RoundTrip, EntitiesHaveTheValuesThatTheOtherProgramGaveThem) {
    Database database;
    load(database, file());
    const auto lines = entitiesOf<host::Line>(database);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(shape<host::Line>(lines[0]).end, (host::Point3{10, 5, 2}));
    EXPECT_EQ(lines[0].layer, "PILLARS");
    EXPECT_EQ(lines[0].colour, 1);
    const auto note = database.xdata(lines[0].id, "OTHERAPP");
    ASSERT_TRUE(note);
    const std::vector<host::XDataItem> expected{{1000, std::string("note")},
                                                {1010, host::Point3{1.5, 2.5, 3.5}},
                                                {1040, 4.25},
                                                {1070, std::int32_t{7}}};
    EXPECT_EQ(*note, expected);
    // The one that faces down lies mirrored; the one on a vertical plane is only kept.
    const auto circles = entitiesOf<host::Circle>(database);
    ASSERT_EQ(circles.size(), 2U);
    EXPECT_EQ(shape<host::Circle>(circles[0]).centre, (host::Point3{20, 20, 3}));
    EXPECT_EQ(shape<host::Circle>(circles[1]).centre, (host::Point3{-20, 20, -3}));
    const auto arcs = entitiesOf<host::Arc>(database);
    ASSERT_EQ(arcs.size(), 1U);
    EXPECT_NEAR(shape<host::Arc>(arcs[0]).startAngle, std::numbers::pi / 6.0, 1e-15);
    const auto texts = entitiesOf<host::Text>(database);
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(shape<host::Text>(texts[0]).text, GetParam().oldRelease() ? "Pillar" : "Pillar Ä");
    const auto inserts = entitiesOf<host::Insert>(database);
    ASSERT_EQ(inserts.size(), 1U);
    EXPECT_EQ(shape<host::Insert>(inserts[0]).scale, (host::Vector3{2, 2, 1}));
    ASSERT_EQ(shape<host::Insert>(inserts[0]).attributes.size(), 1U);
    EXPECT_EQ(shape<host::Insert>(inserts[0]).attributes[0].tag, "NO");
    EXPECT_EQ(shape<host::Insert>(inserts[0]).attributes[0].text.text, "17");
    const Block* block = database.block("BOLT");
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->entities.size(), 2U);
    const auto spatial = entitiesOf<host::Polyline3d>(database);
    ASSERT_EQ(spatial.size(), 1U);
    EXPECT_EQ(shape<host::Polyline3d>(spatial[0]).vertices[1], (host::Point3{5, 5, 5}));
    const auto planes = entitiesOf<host::Polyline>(database);
    ASSERT_EQ(planes.size(), GetParam().oldRelease() ? 1U : 2U);
    EXPECT_EQ(shape<host::Polyline>(planes[0]).form, host::Polyline::Form::old);
    EXPECT_EQ(shape<host::Polyline>(planes[0]).elevation, 4.0);
    EXPECT_TRUE(shape<host::Polyline>(planes[0]).closed);
    if (GetParam().oldRelease())
        return;
    EXPECT_EQ(shape<host::Polyline>(planes[1]).vertices[2].bulge, -0.25);
    const auto hatches = entitiesOf<host::Hatch>(database);
    ASSERT_EQ(hatches.size(), 2U);
    ASSERT_EQ(shape<host::Hatch>(hatches[0]).loops.size(), 2U);
    EXPECT_EQ(shape<host::Hatch>(hatches[0]).loops[1].vertices[1].bulge, 1.0);
    const auto& edges = shape<host::Hatch>(hatches[1]).loops.at(0).vertices;
    ASSERT_EQ(edges.size(), 4U);
    EXPECT_NEAR(edges[1].bulge, 1.0, 1e-12); // the half circle on the right
    EXPECT_EQ(database.group("PANEL"), std::vector<host::EntityId>{lines[0].id});
    EXPECT_TRUE(database.layer("Größe"));
}

TEST_P(RoundTrip, OnlyTheRecordThatWasChangedDiffers) {
    Database database;
    load(database, file());
    const std::string before = written(database);
    host::Entity circle = entitiesOf<host::Circle>(database)[1];
    std::get<host::Circle>(circle.geometry).radius = 4.5;
    ASSERT_TRUE(database.modify(circle));
    const std::string after = written(database);
    if (before.starts_with("AutoCAD")) {
        EXPECT_NE(before, after);
    } else {
        const Difference changed = difference(before, after);
        // The circle, and the header for the extents.
        ASSERT_EQ(changed.added.size(), 2U);
        for (const std::string& record : changed.added)
            EXPECT_TRUE(record.find("SECTION") != std::string::npos ||
                        record.find("CIRCLE") != std::string::npos)
                << record;
    }
    ASSERT_TRUE(database.undo());
    EXPECT_TRUE(written(database) == before);
}

TEST_P(RoundTrip, EveryKindOfChangeIsAcceptedByOtherPrograms) {
    Database database;
    load(database, file());
    std::vector<host::Entity> all;
    database.forEachEntity([&](const EntityRecord& record) { all.push_back(record.entity); });
    for (host::Entity entity : all) {
        entity.colour = 6;
        ASSERT_TRUE(database.modify(entity));
    }
    host::Entity old = entitiesOf<host::Polyline>(database)[0];
    std::get<host::Polyline>(old.geometry).vertices.push_back({{3, 12}, 0.5, 0.0, 0.0});
    ASSERT_TRUE(database.modify(old));
    host::Entity block = entitiesOf<host::Insert>(database)[0];
    std::get<host::Insert>(block.geometry).attributes.at(0).text.at = {41.5, 51, 2};
    ASSERT_TRUE(database.modify(block));
    ASSERT_TRUE(database.erase(entitiesOf<host::Line>(database)[0].id));
    ASSERT_TRUE(database.createLayer({"Neue Größe", 4, "Continuous", false, false, false}));
    const host::Loop ring{{{{0, 0}, 0.0}, {{20, 0}, 0.0}, {{20, 10}, 0.5}, {{0, 10}, 0.0}}};
    const host::Loop hole{{{{4, 2}, 1.0}, {{8, 2}, 1.0}}};
    std::vector<host::EntityId> added;
    const auto add = [&](host::EntityGeometry geometry) {
        const auto id = database.add({{}, "Neue Größe", 3, "ByLayer", std::move(geometry)});
        ASSERT_TRUE(id) << id.error().message();
        added.push_back(*id);
    };
    add(host::Line{{0, 0, 0}, {1, 2, 3}});
    add(host::Polyline{
        host::Polyline::Form::light, {{{0, 0}, 0.5, 0, 0}, {{5, 0}, 0, 1, 2}}, true, 2.5, 0.0});
    add(host::Polyline{
        host::Polyline::Form::old, {{{0, 0}, 0.5, 0, 0}, {{5, 0}, 0, 0, 0}}, false, 2.5, 0.0});
    add(host::Polyline3d{{{0, 0, 0}, {1, 1, 1}}, false});
    add(host::PointMark{{1, 2, 3}});
    add(host::Circle{{1, 2, 3}, 4});
    add(host::Arc{{1, 2, 3}, 4, 0.25, 1.5});
    add(host::Text{
        {1, 2, 3}, "n = 5^2 Ω", 2.0, 0.5, host::Text::Across::centre, host::Text::Up::middle});
    add(host::Hatch{{ring, hole}, "SOLID", 1.0});
    add(host::Hatch{{ring}, "ANSI31", 0.0});
    add(host::Region{{ring, hole}, 5.0});
    add(host::Face3d{{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}});
    add(host::Insert{"BOLT", {1, 2, 3}, {2, 2, 2}, 0.5});
    ASSERT_TRUE(database.setXData(added[0], "NEWAPP",
                                  {{1000, std::string("text")}, {1071, std::int32_t{70000}}}));
    ASSERT_TRUE(database.setGroup("NEWGROUP", {added[1], added[2]}));
    ASSERT_TRUE(database.writeRecord("Settings", "Grid", {"alpha", "beta Ω"}));
    ASSERT_TRUE(database.setCurrentLayer("Neue Größe"));

    const std::filesystem::path out = folder_ / "out.dxf";
    const base::Result<SaveReport> saved = saveDxf(database, out);
    ASSERT_TRUE(saved) << saved.error().message();
    const ProgramResult seen = check(out);
    EXPECT_NE(seen.output.find("group NEWGROUP 2\n"), std::string::npos) << seen.output;
    EXPECT_NE(seen.output.find("record Settings Grid alpha|beta Ω\n"), std::string::npos)
        << seen.output;
    EXPECT_NE(seen.output.find("layer Neue Größe -4 Continuous 0\n"), std::string::npos)
        << seen.output;
    EXPECT_EQ(seen.output.find("group PANEL"), std::string::npos) << seen.output; // its only member

    // What was written is read back as the same values.
    Database again;
    EXPECT_EQ(load(again, out).warningCount, 0U);
    EXPECT_EQ(again.entityCount(), database.entityCount());
    const auto region = entitiesOf<host::Region>(again);
    ASSERT_EQ(region.size(), 1U);
    EXPECT_EQ(shape<host::Region>(region[0]).loops.size(), 2U);
    EXPECT_EQ(shape<host::Region>(region[0]).elevation, 5.0);
    EXPECT_NEAR(shape<host::Region>(region[0]).loops[0].vertices[2].bulge, 0.5, 1e-12);
    const auto inserts = entitiesOf<host::Insert>(again);
    const host::Attribute& number = shape<host::Insert>(inserts[0]).attributes.at(0);
    EXPECT_EQ(number.text.at, (host::Point3{41.5, 51, 2}));
    EXPECT_EQ(number.text.text, "17");
    const auto texts = entitiesOf<host::Text>(again);
    EXPECT_EQ(shape<host::Text>(texts.back()).text, "n = 5^2 Ω");
    EXPECT_EQ(shape<host::Text>(texts.back()).up, host::Text::Up::middle);
    EXPECT_EQ(again.group("NEWGROUP").size(), 2U);
    EXPECT_EQ(again.readRecord("Settings", "Grid").texts,
              (std::vector<std::string>{"alpha", "beta Ω"}));
    EXPECT_EQ(again.currentLayer(), "Neue Größe");
    EXPECT_EQ(*again.xdata(added[0], "NEWAPP"), *database.xdata(added[0], "NEWAPP"));
    EXPECT_TRUE(written(again) == bytesOf(out)); // a fixed point

    // Everything of it changed once more, regions in whichever form they took.
    host::Entity moved = region[0];
    std::get<host::Region>(moved.geometry).loops.pop_back();
    ASSERT_TRUE(again.modify(moved));
    ASSERT_TRUE(saveDxf(again, out));
    check(out);
    Database third;
    load(third, out);
    EXPECT_EQ(third.entityCount(), database.entityCount());
    EXPECT_EQ(shape<host::Region>(entitiesOf<host::Region>(third).at(0)).loops.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Releases, RoundTrip,
    testing::Values(Source{"R12", "R12", ""}, Source{"R12binary", "R12", "--binary"},
                    Source{"R2000", "R2000", ""}, Source{"R2000crlf", "R2000", "--crlf"},
                    Source{"R2000binary", "R2000", "--binary"}, Source{"R2004", "R2004", ""},
                    Source{"R2007", "R2007", ""}, Source{"R2010", "R2010", ""},
                    Source{"R2010binary", "R2010", "--binary"}, Source{"R2013", "R2013", ""},
                    Source{"R2018", "R2018", ""}),
    [](const auto& source) { return source.param.name; });

TEST(NewDrawing, IsAcceptedByOtherProgramsAsItIsAndFilled) {
    const TemporaryFolder folder;
    for (const bool started : {true, false}) {
        Database database;
        if (started) {
            ASSERT_TRUE(startDrawing(database));
        }
        ASSERT_TRUE(saveDxf(database, folder / "empty.dxf"));
        check(folder / "empty.dxf");
        ASSERT_TRUE(database.createLayer({"PILLARS", 2, "Continuous"}));
        host::Polyline square;
        for (const host::Point2 at : {host::Point2{0, 0}, {10, 0}, {10, 10}, {0, 10}})
            square.vertices.push_back({at, 0.0, 0.0, 0.0});
        square.closed = true;
        ASSERT_TRUE(database.add({{}, "PILLARS", 256, "ByLayer", square}));
        const host::Loop outer{{{{0, 0}}, {{10, 0}}, {{10, 10}}, {{0, 10}}}};
        const host::Loop inner{{{{2, 2}}, {{4, 2}}, {{4, 4}}, {{2, 4}}}};
        const host::Loop apart{{{{20, 0}}, {{30, 0}}, {{30, 10}}}};
        ASSERT_TRUE(database.add(
            {{}, "PILLARS", 256, "ByLayer", host::Region{{outer, inner, apart}, 2.0}}));
        ASSERT_TRUE(saveDxf(database, folder / "full.dxf"));
        const ProgramResult seen = check(folder / "full.dxf", "--gdal");
        EXPECT_NE(seen.output.find("gdal PILLARS LINESTRING 0,0 10,0 10,10 0,10 0,0\n"),
                  std::string::npos)
            << seen.output;
        // The hole runs the other way round; the triangle is a face of its own.
        EXPECT_NE(seen.output.find("face 0,0,2 10,0,2 10,10,2 0,10,2 / 2,4,2 4,4,2 4,2,2 2,2,2\n"
                                   "face 20,0,2 30,0,2 30,10,2\n"),
                  std::string::npos)
            << seen.output;
    }
}

TEST(Saving, KeepsTheEarlierFileAsBackupAndLeavesItWhenItFails) {
    const TemporaryFolder folder;
    Database database;
    ASSERT_TRUE(startDrawing(database));
    ASSERT_TRUE(saveDxf(database, folder / "a.dxf"));
    const std::string first = bytesOf(folder / "a.dxf");
    ASSERT_TRUE(database.add({{}, "0", 1, "ByLayer", host::PointMark{{1, 2, 3}}}));
    ASSERT_TRUE(saveDxf(database, folder / "a.dxf"));
    EXPECT_EQ(bytesOf(folder / "a.dxf.bak"), first);
    EXPECT_NE(bytesOf(folder / "a.dxf"), first);
    EXPECT_FALSE(saveDxf(database, folder / "missing/a.dxf"));
}

} // namespace
} // namespace tessaran::drawing
