#include "drawing/coordinates.h"
#include "drawing/database.h"
#include "drawing/database_builder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <set>
#include <sstream>

using namespace tessaran;
using namespace tessaran::drawing;
using host::EntityId;
using host::Layer;
using RecordState = host::Drawing::RecordState;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

host::Entity lineOn(const std::string& layer, host::Point3 from, host::Point3 to) {
    host::Entity entity;
    entity.layer = layer;
    entity.geometry = host::Line{from, to};
    return entity;
}

host::Entity polylineOn(const std::string& layer, std::vector<host::PolylineVertex> vertices,
                        bool closed = true) {
    host::Entity entity;
    entity.layer = layer;
    entity.geometry = host::Polyline{host::Polyline::Form::light, std::move(vertices), closed};
    return entity;
}

EntityId added(Database& database, host::Entity entity) {
    const auto id = database.add(std::move(entity));
    EXPECT_TRUE(id) << (id ? "" : id.error().text);
    return id ? *id : EntityId{};
}

host::SelectionFilter onLayers(std::vector<std::string> layers) {
    host::SelectionFilter filter;
    filter.layers = std::move(layers);
    return filter;
}

// Everything that can be seen of a drawing through the port, as text.
std::string contentOf(const Database& database) {
    std::ostringstream out;
    database.forEachEntity([&](const EntityRecord& record) {
        const host::Entity& e = record.entity;
        out << e.id.value << ' ' << e.layer << ' ' << e.colour << ' ' << host::dxfName(e);
        if (const auto* line = std::get_if<host::Line>(&e.geometry))
            out << ' ' << line->start.x << ' ' << line->end.y;
        for (const auto& data : record.xdata)
            for (const auto& item : data.items)
                out << ' ' << data.application << '=' << std::get<std::int32_t>(item.value);
        out << '\n';
    });
    for (const Layer& layer : database.layers())
        out << layer.name << ' ' << layer.colour << layer.on << layer.frozen << layer.locked
            << '\n';
    for (const std::string& name : database.groups()) {
        out << name;
        for (const EntityId id : database.group(name))
            out << ' ' << id.value;
        out << '\n';
    }
    for (const char* key : {"A", "B"})
        for (const std::string& text : database.readRecord("SETTINGS", key).texts)
            out << key << text << '\n';
    out << database.currentLayer() << ' ' << database.ucs().origin.x << ' '
        << database.select({}).size() << ' ' << database.entityCount() << ' '
        << database.tables().variables.size() << '\n';
    return out.str();
}

// One random change of any kind; refusals (locked layers) are part of the game.
void changeAtRandom(Database& database, std::mt19937& random) {
    const auto pick = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
    const auto all = database.select({});
    const EntityId some = all.empty()
                              ? EntityId{}
                              : all[static_cast<std::size_t>(pick(static_cast<int>(all.size())))];
    const std::string name(1, static_cast<char>('A' + pick(5)));
    switch (pick(10)) {
    case 0:
    case 1:
    case 2:
        (void)database.add(lineOn(database.currentLayer(), {double(pick(9)), 0, 0}, {1, 1, 0}));
        return;
    case 3:
        database.erase(some);
        return;
    case 4:
        if (const host::Entity* found = database.find(some)) {
            host::Entity changed = *found;
            changed.colour = pick(257);
            (void)database.modify(changed);
        }
        return;
    case 5:
        (void)database.setXData(some, name, {{1071, std::int32_t{pick(100)}}});
        return;
    case 6:
        (void)database.setGroup(name, all);
        return;
    case 7:
        if (!database.createLayer({name, 1 + pick(255)})) {
            Layer layer = *database.layer(name);
            layer.locked = pick(3) == 0;
            layer.on = pick(2) == 0;
            (void)database.modifyLayer(layer);
        }
        return;
    case 8:
        (void)database.writeRecord("SETTINGS", name, {std::to_string(pick(10))});
        (void)database.setVariable(name, pick(5));
        return;
    default:
        (void)database.setCurrentLayer(name);
        (void)database.setUcs({{double(pick(3)), 0, 0}, {1, 0, 0}, {0, 1, 0}});
        return;
    }
}

} // namespace

TEST(Database, HandlesAreNeverUsedAgain) {
    Database database;
    std::set<EntityId> seen;
    for (int i = 0; i < 5; ++i) {
        const EntityId id = added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
        EXPECT_TRUE(seen.insert(id).second);
        if (i % 2 == 0) {
            database.undo();
            EXPECT_EQ(database.find(id), nullptr);
        }
    }
    EXPECT_EQ(database.entityCount(), 2u);
    const EntityId last = database.lastEntity();
    EXPECT_TRUE(database.erase(last));
    EXPECT_FALSE(database.erase(last));
    EXPECT_LT(database.lastEntity(), last);
    database.undo();
    EXPECT_EQ(database.lastEntity(), last);
}

TEST(Database, SelectsInDrawingOrderByLayerTypeAndExtendedData) {
    Database database;
    ASSERT_TRUE(database.createLayer({"Pillars", 3}));
    ASSERT_TRUE(database.createLayer({"Gob", 1}));
    const EntityId a = added(database, polylineOn("PILLARS", {{{0, 0}}, {{1, 0}}, {{1, 1}}}));
    const EntityId b = added(database, lineOn("Gob", {0, 0, 0}, {1, 0, 0}));
    const EntityId c = added(database, lineOn("pillars", {0, 0, 0}, {1, 0, 0}));
    EXPECT_EQ(database.find(a)->layer, "Pillars"); // as the table spells it
    EXPECT_EQ(database.select(onLayers({"pillarS"})), (std::vector{a, c}));
    EXPECT_EQ(database.select(onLayers({"nowhere"})), std::vector<EntityId>{});

    host::SelectionFilter lines;
    lines.types = {"line"};
    EXPECT_EQ(database.select(lines), (std::vector{b, c}));
    lines.layers = {"Pillars"};
    EXPECT_EQ(database.select(lines), std::vector{c});

    host::SelectionFilter marked;
    marked.xdataApplication = "app";
    ASSERT_TRUE(database.setXData(b, "APP", {{1000, "x"}}));
    EXPECT_EQ(database.select(marked), std::vector{b});

    // An erased entity comes back to its place, not to the end; a changed one keeps it.
    ASSERT_TRUE(database.erase(a));
    database.undo();
    host::Entity changed = *database.find(b);
    changed.layer = "Pillars";
    ASSERT_TRUE(database.modify(changed));
    EXPECT_EQ(database.select(onLayers({"Pillars"})), (std::vector{a, b, c}));
}

TEST(Database, RefusesWhatWouldSpoilTheFile) {
    Database database;
    const EntityId id = added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    const std::uint64_t before = database.state();
    EXPECT_FALSE(database.add(lineOn("0", {kNan, 0, 0}, {1, 0, 0})));
    EXPECT_FALSE(database.add(lineOn("0", {0, 0, 0}, {1, 0, kInfinity})));
    EXPECT_FALSE(database.add(lineOn("unknown", {0, 0, 0}, {1, 0, 0})));
    EXPECT_FALSE(database.add(polylineOn("0", {})));
    EXPECT_FALSE(database.add(polylineOn("0", {{{0, 0}, kNan}, {{1, 0}}})));
    host::Entity entity;
    entity.geometry = host::Circle{{0, 0, 0}, 0.0};
    EXPECT_FALSE(database.add(entity));
    entity.geometry = host::Insert{"NOBLOCK", {0, 0, 0}};
    EXPECT_FALSE(database.add(entity));
    entity.geometry = host::Hatch{};
    EXPECT_FALSE(database.add(entity));

    host::Entity changed = *database.find(id);
    changed.colour = 257;
    EXPECT_FALSE(database.modify(changed));
    changed = *database.find(id);
    changed.linetype = "DASHED";
    EXPECT_FALSE(database.modify(changed));
    changed = *database.find(id);
    changed.geometry = host::PointMark{};
    EXPECT_FALSE(database.modify(changed)); // another type
    changed.id = EntityId{999999};
    EXPECT_FALSE(database.modify(changed));

    for (const char* name :
         {"", " A", "A ", "a<b", "a/b", "a:b", "a*", "a,b", "a`", "a\nb", "\xFF"})
        EXPECT_FALSE(database.createLayer({name})) << name;
    EXPECT_FALSE(database.createLayer({std::string(256, 'a')}));
    EXPECT_FALSE(database.createLayer({"A", 0}));
    EXPECT_FALSE(database.createLayer({"A", 1, "DASHED"}));
    EXPECT_FALSE(database.setCurrentLayer("A"));
    EXPECT_FALSE(database.setGroup("G", {EntityId{999999}}));
    EXPECT_FALSE(database.setGroup("G*", {id}));

    // None of it left a trace.
    EXPECT_EQ(database.state(), before);
    EXPECT_EQ(database.entityCount(), 1u);
    EXPECT_EQ(database.undoNames().size(), 1u);

    EXPECT_TRUE(database.createLayer({"Gr\xC3\xBC"
                                      "fte \xE2\x82\xAC$#"}));
    EXPECT_FALSE(database.createLayer({"gr\xC3\xBC"
                                       "FTE \xE2\x82\xAC$#"})); // there already
}

TEST(Database, LockedLayersKeepTheirEntities) {
    Database database;
    ASSERT_TRUE(database.createLayer({"Survey"}));
    const EntityId id = added(database, lineOn("Survey", {0, 0, 0}, {1, 0, 0}));
    Layer layer = *database.layer("survey");
    layer.locked = true;
    ASSERT_TRUE(database.modifyLayer(layer));
    EXPECT_FALSE(database.erase(id));
    EXPECT_FALSE(database.modify(*database.find(id)));
    EXPECT_FALSE(database.setXData(id, "APP", {{1000, "x"}}));
    EXPECT_NE(database.find(id), nullptr);
    EXPECT_TRUE(database.add(lineOn("Survey", {0, 0, 0}, {1, 0, 0})));
    layer.locked = false;
    ASSERT_TRUE(database.modifyLayer(layer));
    EXPECT_TRUE(database.erase(id));
}

TEST(Database, TheCurrentLayerIsNeverFrozen) {
    Database database;
    ASSERT_TRUE(database.createLayer({"Work"}));
    ASSERT_TRUE(database.setCurrentLayer("WORK"));
    EXPECT_EQ(database.currentLayer(), "Work");
    Layer layer = *database.layer("Work");
    layer.frozen = true;
    EXPECT_FALSE(database.modifyLayer(layer));
    ASSERT_TRUE(database.setCurrentLayer("0"));
    EXPECT_TRUE(database.modifyLayer(layer));
    EXPECT_FALSE(database.setCurrentLayer("Work"));
}

TEST(Database, ExtendedDataIsHeldToTheLimitsOfDrawingFiles) {
    Database database;
    const EntityId id = added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    const std::vector<host::XDataItem> items{{1000, "Area 7"},
                                             {1002, "{"},
                                             {1040, 2.5},
                                             {1070, std::int32_t{-32768}},
                                             {1071, std::int32_t{70000}},
                                             {1010, host::Point3{1, 2, 3}},
                                             {1002, "}"}};
    ASSERT_TRUE(database.setXData(id, "APP", items));
    EXPECT_EQ(database.xdata(id, "app"), items);
    EXPECT_FALSE(database.xdata(id, "OTHER"));

    using Items = std::vector<host::XDataItem>;
    for (const Items& bad :
         {Items{{1000, std::string(256, 'x')}}, Items{{1001, "APP"}}, Items{{1, "x"}},
          Items{{1070, std::int32_t{40000}}}, Items{{1040, kNan}}, Items{{1040, "x"}},
          Items{{1002, "{"}}, Items{{1002, "}"}, {1002, "{"}}, Items{{1004, "XY"}},
          Items{{1010, host::Point3{kInfinity, 0, 0}}}})
        EXPECT_FALSE(database.setXData(id, "APP", bad));
    EXPECT_FALSE(database.setXData(id, "A|B", items));
    EXPECT_EQ(database.xdata(id, "APP"), items);

    // 6 bytes for the name, 258 for each text of 255: 63 fit into 16383, 64 do not; the limit is
    // for all applications together.
    const host::XDataItem longest{1000, std::string(255, 'x')};
    EXPECT_FALSE(database.setXData(id, "APP", Items(64, longest)));
    EXPECT_TRUE(database.setXData(id, "APP", Items(63, longest)));
    EXPECT_FALSE(database.setXData(id, "TWO", Items(1, longest)));

    EXPECT_TRUE(database.setXData(id, "APP", {}));
    EXPECT_FALSE(database.xdata(id, "APP"));
}

TEST(Database, GroupsLoseErasedMembersAndGetThemBack) {
    Database database;
    const EntityId a = added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    const EntityId b = added(database, lineOn("0", {0, 0, 0}, {2, 0, 0}));
    ASSERT_TRUE(database.setGroup("Grid", {b, a}));
    database.erase(b);
    EXPECT_EQ(database.group("GRID"), std::vector{a});
    database.undo();
    EXPECT_EQ(database.group("grid"), (std::vector{b, a}));
    ASSERT_TRUE(database.setGroup("grid", {a}));
    EXPECT_EQ(database.groups(), std::vector<std::string>{"Grid"});
    EXPECT_EQ(database.group("Grid"), std::vector{a});
}

TEST(Database, DictionaryRecordsTellWhatIsMissing) {
    Database database;
    {
        DatabaseBuilder builder(database);
        builder.addNamedObject({"PLOT", false, {}});
        builder.addNamedObject({"MIXED", true, {{"STYLE", false}}});
    }
    EXPECT_EQ(database.readRecord("ZONE", "Key").state, RecordState::noDictionary);
    EXPECT_EQ(database.readRecord("PLOT", "Key").state, RecordState::notADictionary);
    EXPECT_EQ(database.readRecord("MIXED", "Key").state, RecordState::noEntry);
    EXPECT_EQ(database.readRecord("mixed", "style").state, RecordState::notARecord);
    EXPECT_FALSE(database.writeRecord("PLOT", "Key", {"1"}));
    ASSERT_TRUE(database.writeRecord("ZONE", "Key", {"100", "", "\xC3\xA4"}));
    ASSERT_TRUE(database.writeRecord("ZONE", "Other", {"1"}));
    EXPECT_EQ(database.readRecord("zone", "KEY").texts,
              (std::vector<std::string>{"100", "", "\xC3\xA4"}));
    ASSERT_TRUE(database.writeRecord("ZONE", "Key", {"2"}));
    EXPECT_EQ(database.readRecord("ZONE", "Key").texts, std::vector<std::string>{"2"});
    database.undo();
    EXPECT_EQ(database.readRecord("ZONE", "Key").texts.size(), 3u);
}

TEST(Undo, TakesAWholeCommandAndOnlyIt) {
    Database database;
    const std::string empty = contentOf(database);
    database.beginCommand("FIRST");
    const EntityId a = added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    database.beginCommand("NESTED");
    added(database, lineOn("0", {0, 0, 0}, {2, 0, 0}));
    EXPECT_TRUE(database.endCommand());
    EXPECT_TRUE(database.endCommand());
    const std::string first = contentOf(database);

    database.beginCommand("NOTHING");
    const EntityId gone = added(database, lineOn("0", {0, 0, 0}, {3, 0, 0}));
    database.erase(gone);
    EXPECT_FALSE(database.endCommand()); // added and erased: no trace
    {
        const Transaction transaction(database, "LEFT EARLY");
        database.erase(a);
        EXPECT_TRUE(database.createLayer({"New"}));
    }
    EXPECT_EQ(contentOf(database), first);
    EXPECT_EQ(database.undoNames(), std::vector<std::string>{"FIRST"});

    EXPECT_EQ(database.undo(), "FIRST");
    EXPECT_EQ(contentOf(database), empty);
    EXPECT_EQ(database.undo(), std::nullopt);
    EXPECT_EQ(database.redo(), "FIRST");
    EXPECT_EQ(contentOf(database), first);
    EXPECT_EQ(database.redo(), std::nullopt);

    database.undo();
    Transaction transaction(database, "SECOND");
    EXPECT_TRUE(database.createLayer({"New"}));
    EXPECT_TRUE(transaction.commit());
    EXPECT_TRUE(database.redoNames().empty()); // a new change ends what could be redone
}

TEST(Undo, BringsBackEveryStateOfALongSession) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        Database database;
        std::vector<std::string> contents{contentOf(database)};
        std::vector<std::uint64_t> states{database.state()};
        for (int command = 0; command < 60; ++command) {
            database.beginCommand(std::to_string(command));
            const int changes = std::uniform_int_distribution<int>(0, 8)(random);
            for (int i = 0; i < changes; ++i)
                changeAtRandom(database, random);
            if (command % 7 == 3) {
                database.rollBack();
                ASSERT_EQ(contentOf(database), contents.back());
            } else if (database.endCommand()) {
                contents.push_back(contentOf(database));
                states.push_back(database.state());
            }
        }
        for (std::size_t i = contents.size(); i-- > 1;) {
            ASSERT_EQ(contentOf(database), contents[i]) << "seed " << seed;
            ASSERT_EQ(database.state(), states[i]);
            ASSERT_TRUE(database.undo());
        }
        ASSERT_EQ(contentOf(database), contents.front());
        ASSERT_FALSE(database.modified());
        for (std::size_t i = 1; i < contents.size(); ++i) {
            ASSERT_TRUE(database.redo());
            ASSERT_EQ(contentOf(database), contents[i]) << "seed " << seed;
        }
    }
}

TEST(Undo, KnowsWhetherTheSavedStateIsThere) {
    Database database;
    EXPECT_FALSE(database.modified());
    added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(database.modified());
    database.markSaved();
    database.undo();
    EXPECT_TRUE(database.modified());
    database.redo();
    EXPECT_FALSE(database.modified());
    database.undo();
    added(database, lineOn("0", {0, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(database.modified()); // as many changes as saved, but others
}

TEST(Coordinates, FollowTheUsersSystem) {
    Database database;
    const DrawingCoordinates coordinates(database);
    EXPECT_EQ(coordinates.toWorld({1, 2, 3}), (host::Point3{1, 2, 3}));

    // X to the north, Y (given askew) to the west, at 1000, 500, 10.
    ASSERT_TRUE(database.setUcs({{1000, 500, 10}, {0, 2, 0}, {-3, 1, 0}}));
    EXPECT_EQ(coordinates.toWorld({30, 4, 1}), (host::Point3{996, 530, 11}));
    EXPECT_EQ(coordinates.toUser({996, 530, 11}), (host::Point3{30, 4, 1}));

    EXPECT_FALSE(database.setUcs({{0, 0, 0}, {1, 0, 0}, {-2, 0, 0}}));
    EXPECT_FALSE(database.setUcs({{0, 0, 0}, {0, 0, 0}, {0, 1, 0}}));
    EXPECT_FALSE(database.setUcs({{kNan, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
    database.undo();
    EXPECT_EQ(coordinates.toUser({7, 8, 9}), (host::Point3{7, 8, 9}));
}

TEST(Extents, FollowArcsAndBlocks) {
    Database database;
    host::Entity part = lineOn("0", {0, 0, 0}, {2, 1, 0});
    {
        DatabaseBuilder builder(database);
        builder.addBlock({"MARK", {1, 0, 0}, {part}});
        host::Entity inner;
        inner.geometry = host::Insert{"LOOP", {0, 0, 0}};
        builder.addBlock({"LOOP", {0, 0, 0}, {inner, inner}}); // holds itself
    }
    // A half circle below the chord from 0,0 to 10,0.
    const EntityId bow = added(database, polylineOn("0", {{{0, 0}, 1.0}, {{10, 0}}}, false));
    host::Box2 box = database.extents(bow).value();
    EXPECT_NEAR(box.low.y, -5.0, 1e-12);
    EXPECT_NEAR(box.high.x, 10.0, 1e-12);
    EXPECT_NEAR(box.high.y, 0.0, 1e-12);

    // Base 1,0; scaled by 2 and 3; a quarter turn; placed at 100,100: (0,0) goes to (100, 98),
    // (2,1) to (97, 102).
    host::Entity insert;
    insert.geometry = host::Insert{"mark", {100, 100, 0}, {2, 3, 1}, std::numbers::pi / 2};
    box = database.extents(added(database, insert)).value();
    EXPECT_NEAR(box.low.x, 97.0, 1e-9);
    EXPECT_NEAR(box.low.y, 98.0, 1e-9);
    EXPECT_NEAR(box.high.x, 100.0, 1e-9);
    EXPECT_NEAR(box.high.y, 102.0, 1e-9);

    insert.geometry = host::Insert{"LOOP", {0, 0, 0}};
    EXPECT_FALSE(database.extents(added(database, insert)));
    EXPECT_FALSE(database.extents(EntityId{12345678}));
}

TEST(View, LiesOnWhatIsShown) {
    Database database;
    View view = database.view();
    EXPECT_EQ(view.box().low, (host::Point2{0, 0}));
    EXPECT_EQ(view.box().high, (host::Point2{100, 62.5}));

    added(database, lineOn("0", {0, 0, 0}, {320, 100, 0})); // 1600 x 1000 pixels: 200 high
    view = database.view();
    EXPECT_EQ(view.centre, (host::Point2{160, 50}));
    EXPECT_EQ(view.height, 200.0);

    added(database, lineOn("0", {0, 0, 0}, {1e300, -1e300, 0})); // junk moves nothing
    ASSERT_TRUE(database.createLayer({"Off"}));
    added(database, lineOn("Off", {0, 0, 0}, {9000, 9000, 0}));
    Layer off = *database.layer("Off");
    off.on = false;
    ASSERT_TRUE(database.modifyLayer(off));
    EXPECT_EQ(database.view().centre, (host::Point2{160, 50}));
    EXPECT_EQ(database.view().height, 200.0);
}

TEST(Builder, KeepsTheFilesHandlesAndRefusesTwins) {
    Database database;
    {
        DatabaseBuilder builder(database);
        EntityRecord record;
        record.entity = lineOn("Unlisted", {0, 0, 0}, {1, 0, 0});
        record.entity.id = EntityId{0x2F0};
        EXPECT_TRUE(builder.add(record));
        EXPECT_FALSE(builder.add(record));
        record.entity.id = EntityId{0x110};
        EXPECT_TRUE(builder.add(record));
        builder.noteHandle(0x500);
        builder.setCurrentLayer("UNLISTED");
        builder.setCurrentLayer("missing");
    }
    EXPECT_FALSE(database.modified());
    EXPECT_TRUE(database.undoNames().empty());
    EXPECT_EQ(database.currentLayer(), "Unlisted");
    EXPECT_EQ(database.select({}), (std::vector{EntityId{0x2F0}, EntityId{0x110}}));
    EXPECT_GT(added(database, lineOn("0", {0, 0, 0}, {1, 0, 0})).value, 0x500u);

    Database full;
    DatabaseBuilder(full).noteHandle(std::numeric_limits<std::uint64_t>::max());
    EXPECT_FALSE(full.add(lineOn("0", {0, 0, 0}, {1, 0, 0})));
}
