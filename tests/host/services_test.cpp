#include "geometry/polygon.h"
#include "host/services.h"
#include "support/recording_host.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaran::host {
namespace {

using test::RecordingHost;

EntityId addTo(RecordingHost& host, const std::string& layer, EntityGeometry geometry) {
    ensureLayer(host, layer, 7);
    Entity entity;
    entity.layer = layer;
    entity.geometry = std::move(geometry);
    const auto id = host.database.add(entity);
    EXPECT_TRUE(id.ok());
    return *id;
}

EntityGeometry line(Point2 a, Point2 b) {
    return Line{{a.x, a.y, 0.0}, {b.x, b.y, 0.0}};
}

TEST(Layers, AreMadeWithTheLinetypeThatIsThere) {
    RecordingHost host;
    EXPECT_TRUE(ensureLayer(host, "MineGrid_Gob", 2, "countinous"));
    EXPECT_EQ(host.database.layer("minegrid_gob")->linetype, "Continuous");
    EXPECT_EQ(host.database.layer("MineGrid_Gob")->colour, 2);
    EXPECT_TRUE(ensureLayer(host, "MineGrid_Gob", 5)); // stays as it is
    EXPECT_EQ(host.database.layer("MineGrid_Gob")->colour, 2);
    EXPECT_TRUE(ensureWorkingLayer(host));
    EXPECT_EQ(host.database.layer("ZELK_Working_Layer")->colour, 7);
    EXPECT_FALSE(ensureLayer(host, "bad<name>|", 7));
}

TEST(Layers, AreAskedForByNameOrTakenFromObjects) {
    RecordingHost host;
    host.answers = {" Roads, Pillars ", "Extract", RecordingHost::kEnter};
    EXPECT_EQ(askForLayers(host), "Roads, Pillars");
    EXPECT_EQ(host.asked.back(), "\n[<Input Layer Name>/Extract from object]:");

    host.selection = {addTo(host, "P", line({0, 0}, {1, 0})),
                      addTo(host, "Q", line({0, 0}, {1, 1})),
                      addTo(host, "P", line({0, 0}, {2, 0}))};
    EXPECT_EQ(askForLayers(host), "P,Q");
    EXPECT_EQ(host.printed, "\nSelcted Layers: P,Q");
    EXPECT_EQ(askForLayers(host), std::nullopt); // Enter
    host.printed.clear();
    host.answers = {"Entries"}; // no such name can be typed at this prompt
    EXPECT_EQ(askForLayers(host), "P,Q");
    EXPECT_EQ(host.printed, "\nA name that begins with E stands for Extract: select objects of the "
                            "layer.\nSelcted Layers: P,Q");
    EXPECT_EQ(askForLayers(host), std::nullopt); // Escape
}

TEST(Layers, ArePickedUntilTheUserEnds) {
    RecordingHost host;
    const EntityId p = addTo(host, "P", line({0, 0}, {1, 0}));
    const EntityId q = addTo(host, "Q", line({0, 0}, {1, 1}));
    host.picks = {q, EntityId{}, p, q};
    EXPECT_EQ(pickLayers(host, {"q"}), (std::vector<std::string>{"q", "P"}));
    EXPECT_EQ(host.asked.front(), "\nSelect any object in the layer");
    EXPECT_EQ(host.printed, "\nselected layer: Q\nselected layer: P\nselected layer: Q");
}

TEST(Layers, GiveAndLoseTheirObjects) {
    RecordingHost host;
    Polyline outline;
    outline.vertices = {{{0, 0}}, {{4, 0}}, {{4, 4}}};
    addTo(host, "A", line({0, 0}, {1, 0}));
    addTo(host, "A", outline);
    addTo(host, "B", outline);
    EXPECT_EQ(entitiesOnLayers(host, {"a", "b"}, kPolylineTypes).size(), 2u);
    EXPECT_EQ(entitiesOnLayers(host, {}).size(), 0u); // not "all layers"
    EXPECT_EQ(eraseLayerObjects(host, "A"), 2u);
    EXPECT_EQ(entitiesOnLayers(host, {"A"}).size(), 0u);
    EXPECT_EQ(entitiesOnLayers(host, {"B"}).size(), 1u);
}

TEST(StoredRecords, AreWrittenReplacedAndReadBack) {
    RecordingHost host;
    EXPECT_EQ(readStoredRecord(host, "K"), std::nullopt);
    EXPECT_EQ(host.printed, "\nCannot open the object for read.");
    EXPECT_TRUE(writeStoredRecord(host, "K", {"1", "", "three"}));
    EXPECT_TRUE(writeStoredRecord(host, "K", {"x", "y"}));
    EXPECT_EQ(readStoredRecord(host, "K"), (std::vector<std::string>{"x", "y"}));
    host.printed.clear();
    EXPECT_EQ(readStoredRecord(host, "Other"), std::nullopt);
    EXPECT_EQ(host.printed, "\nEntry cannot be opened for read.");
}

TEST(Questions, YesOrNoTakesTheDefaultOnEnter) {
    RecordingHost host;
    host.answers = {RecordingHost::kEnter, RecordingHost::kEnter, "n", "YES"};
    EXPECT_EQ(askYesNo(host, "Combine", YesNo::yes), YesNo::yes);
    EXPECT_EQ(host.asked.back(), "\nCombine [No/<Yes>]:");
    EXPECT_EQ(askYesNo(host, "Combine", YesNo::no), YesNo::no);
    EXPECT_EQ(host.asked.back(), "\nCombine [Yes/<No>]:");
    EXPECT_EQ(static_cast<int>(askYesNo(host, "Combine", YesNo::yes)), 7);
    EXPECT_EQ(static_cast<int>(askYesNo(host, "Combine", YesNo::no)), 6);
    EXPECT_EQ(static_cast<int>(askYesNo(host, "Combine", YesNo::no)), 2); // Escape
}

TEST(Questions, WaitingEndsByEnterAndIsLeftByEscape) {
    RecordingHost host;
    host.answers = {RecordingHost::kEnter};
    EXPECT_TRUE(waitForEnter(host));
    EXPECT_EQ(host.asked.back(), "\n <Enter> key to continue ...");
    EXPECT_FALSE(waitForEnter(host));
}

TEST(FileDialog, RemembersItsFolderAndBeginsInTheDrawings) {
    RecordingHost host;
    host.values["DWGPREFIX"] = std::string("/mine/plans/");
    host.files = {"/tmp/grids/a.grd", ""};
    EXPECT_EQ(chooseFile(host, FileRequest::Mode::open, "grd"), "/tmp/grids/a.grd");
    const FileRequest& first = host.fileRequests.front();
    EXPECT_EQ(first.title, "File Name");
    EXPECT_EQ(first.filter, "Select Files (*.grd)|*.grd|All files(*.*)|*.*||");
    EXPECT_EQ(first.folder, "/mine/plans/");
    EXPECT_EQ(chooseFile(host, FileRequest::Mode::save, "prj", "p.prj"), std::nullopt);
    EXPECT_EQ(host.fileRequests.back().folder, "/tmp/grids");
    EXPECT_EQ(host.fileRequests.back().proposed, "p.prj");
    RecordingHost another; // each host remembers its own
    chooseFile(another, FileRequest::Mode::open, "grd");
    EXPECT_NE(another.fileRequests.front().folder, "/tmp/grids");
}

TEST(View, RectangleFollowsFromCentreHeightAndPixels) {
    RecordingHost host;
    host.values["VIEWCTR"] = Point3{1000.0, 500.0, 0.0};
    host.values["SCREENSIZE"] = Point2{1600.0, 1000.0};
    EXPECT_FALSE(viewRectangle(host));
    host.values["VIEWSIZE"] = 100.0;
    const auto view = viewRectangle(host);
    ASSERT_TRUE(view);
    EXPECT_EQ(view->low, (Point2{920.0, 450.0}));
    EXPECT_EQ(view->high, (Point2{1080.0, 550.0}));
    host.ucsOrigin = {4000.0, -200.0, 0.0}; // the centre comes in user coordinates
    EXPECT_EQ(viewRectangle(host)->low, (Point2{4920.0, 250.0}));
}

TEST(View, CommandEchoIsZeroOrOneAndComesBack) {
    RecordingHost host;
    setCommandEcho(host, 7);
    EXPECT_EQ(std::get<int>(host.values["CMDECHO"]), 1);
    {
        const CommandEchoOff off(host);
        EXPECT_EQ(std::get<int>(host.values["CMDECHO"]), 0);
    }
    EXPECT_EQ(std::get<int>(host.values["CMDECHO"]), 1);
}

TEST(Entities, FourPointPolylineIsClosedAndTheLastEntity) {
    RecordingHost host;
    const auto id = addClosedPolyline(host, {{{0, 0}, {2, 0}, {2, 1}, {0, 1}}});
    ASSERT_TRUE(id);
    EXPECT_EQ(host.database.lastEntity(), *id);
    const auto& polyline = std::get<Polyline>(host.database.find(*id)->geometry);
    EXPECT_TRUE(polyline.closed);
    EXPECT_EQ(polyline.vertices.size(), 4u);

    listVertices(host, *id);
    EXPECT_NE(host.printed.find("X = 2.000000, Y = 1.000000"), std::string::npos);
    EXPECT_FALSE(addClosedPolyline(host, {{{0, 0}, {std::nan(""), 0}, {2, 1}, {0, 1}}}));
}

TEST(Entities, HatchBoundariesAreClosedObjectsOrChains) {
    RecordingHost host;
    Polyline outline;
    outline.closed = true;
    outline.vertices = {{{0, 0}}, {{10, 0}}, {{10, 10}}};
    const EntityId closed = addTo(host, "0", outline);
    const EntityId circle = addTo(host, "0", Circle{{5, 3, 0}, 1});
    const EntityId a = addTo(host, "0", line({20, 0}, {30, 0}));
    const EntityId b = addTo(host, "0", line({20, 0}, {25, 8}));
    const EntityId c = addTo(host, "0", line({30, 0}, {25, 8}));

    const auto loops = boundaryLoops(host.database, {closed, a, circle, b, c});
    ASSERT_TRUE(loops);
    ASSERT_EQ(loops->size(), 3u);
    EXPECT_EQ((*loops)[2].vertices.size(), 3u);
    EXPECT_FALSE(boundaryLoops(host.database, {a, b})); // stays open
    EXPECT_FALSE(boundaryLoops(host.database, {}));

    host.values["CMDECHO"] = 1;
    const auto hatch = hatchByCommand(host, {closed, circle});
    ASSERT_TRUE(hatch);
    EXPECT_EQ(host.database.lastEntity(), *hatch);
    EXPECT_EQ(std::get<Hatch>(host.database.find(*hatch)->geometry).loops.size(), 2u);
    EXPECT_EQ(std::get<int>(host.values["CMDECHO"]), 1);
}

TEST(Entities, BoundaryIsFoundAroundAPoint) {
    RecordingHost host;
    // Four lines that cross each other enclose the square from (0,0) to (10,10).
    const std::vector<EntityId> lines{
        addTo(host, "0", line({-5, 0}, {15, 0})), addTo(host, "0", line({-5, 10}, {15, 10})),
        addTo(host, "0", line({0, -5}, {0, 15})), addTo(host, "0", line({10, -5}, {10, 15}))};
    host.ucsOrigin = {100.0, 0.0, 0.0};
    const auto made = boundaryFromPoints(host, lines, {{-95.0, 5.0, 0.0}});
    ASSERT_TRUE(made);
    const auto& polyline = std::get<Polyline>(host.database.find(*made)->geometry);
    geometry::Polygon outline;
    for (const PolylineVertex& vertex : polyline.vertices)
        outline.push_back(vertex.at);
    EXPECT_NEAR(geometry::area(outline), 100.0, 1e-9);
    EXPECT_FALSE(boundaryFromPoints(host, lines, {{0.0, 5.0, 0.0}}));
}

TEST(Entities, LuminanceIsRounded) {
    EXPECT_EQ(luminance(0, 0, 0), 0);
    EXPECT_EQ(luminance(255, 255, 255), 255);
    EXPECT_EQ(luminance(255, 0, 0), 77); // 76.5 + 0.5
    EXPECT_EQ(luminance(0, 255, 0), 150);
}

} // namespace
} // namespace tessaran::host
