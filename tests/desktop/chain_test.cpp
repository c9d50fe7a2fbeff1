// The way from a plan to a map through the window alone: menus, fields, picks in the drawing,
// answers, all by key and mouse. A script that was written by hand and the one that the window
// recorded make the same files.

#include "console/drawing_files.h"
#include "desktop/dialog_window.h"
#include "desktop/robot.h"
#include "support/script_run.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace tessaran::test {
namespace {

using desktop::DialogWindow;
using host::Point2;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Pair;

void addOutline(drawing::Database& drawing, const char* layer, Point2 low, Point2 high) {
    host::Polyline outline;
    outline.closed = true;
    for (const Point2 at : {low, {high.x, low.y}, high, {low.x, high.y}})
        outline.vertices.push_back({.at = at});
    host::Entity entity;
    entity.layer = layer;
    entity.geometry = outline;
    ASSERT_TRUE(drawing.add(entity).ok());
}

// A property of 200 by 100 with two ponds, three pillars, and a frame for the legend beside it.
void writePlan(const std::filesystem::path& path) {
    drawing::Database plan;
    for (const char* layer : {"PROPERTY", "PONDS", "PILLARS", "FRAME"})
        ASSERT_TRUE(plan.createLayer({.name = layer}));
    addOutline(plan, "PROPERTY", {0, 0}, {200, 100});
    addOutline(plan, "PONDS", {32, 24}, {88, 67});
    addOutline(plan, "PONDS", {120, 35}, {175, 81});
    for (const double x : {20.0, 95.0, 150.0})
        addOutline(plan, "PILLARS", {x, 10}, {x + 25, 90});
    addOutline(plan, "FRAME", {215, 5}, {245, 95});
    ASSERT_TRUE(console::saveCopy(plan, path).ok());
}

// --- by hand in a script ------------------------------------------------------------------------

std::string factorScript(const std::string& picked, const std::string& file,
                         const std::string& first) {
    return "zelk_sFactorInArea\n" + first +
           ":page Building Tools\n"
           ":press Create from Area Boundary\n" +
           picked +
           "\n"
           ":page Area Factor\n"
           ":set Inside Boundary = 80\n"
           ":set Outside Boundary = 20\n"
           ":choose Area Based\n"
           ":set Min. Area Inside (%) = 50\n"
           ":check Remove Boundaries\n"
           ":press Build Grid\n"
           ":answer yes\n"
           ":set Output File (.grd) = " +
           file + "\n:set Grid Description = Pond of " + file +
           "\n"
           ":press Save Grid\n"
           ":answer ok\n"
           ":ok\n";
}

std::string indexScript(const std::string& input) {
    return "zelk_genFactor\n:set Input File = " + input +
           "\n:ok\n:set Function = Linear\n:choose Normal\n:uncheck Preview Final Grid\n:ok\n";
}

std::string entryScript(const std::string& file, const std::string& weight) {
    return ":press Select Index Grid\n:file " + file + "\n:set Weighting Factor = " + weight +
           "\n:press Add\n";
}

std::string chainScript() {
    return factorScript("60,24", "west.grd",
                        ":set Number of Cells in X Direction = 20\n"
                        ":set Number of Cells in Y Direction = 10\n"
                        ":set Cell Width in X Direction = 10\n"
                        ":set Cell Width in Y Direction = 10\n"
                        ":press Pick a Point\n"
                        "0,0\n") +
           factorScript("150,35", "east.grd", "") + indexScript("west.grd") +
           indexScript("east.grd") + "zelk_StabilityIndex\n" + entryScript("west_index.grd", "30") +
           entryScript("east_index.grd", "70") +
           ":press Create Index\n:answer yes\n:file stability.grd\n"
           ":press Save and Exit\n:file mine.prj\n"
           "zelk_indexMapping\n"
           ":set Index Grid File = stability.grd\n"
           ":set Pillar Layers = PILLARS\n"
           ":set Mapping Layer = STABILITY_MAP\n"
           ":press Analyze\n\nYes\n"
           ":press Hatch\n\nYes\n"
           ":press Legend\n215,5\n245,95\n"
           ":cancel\n"
           "SAVEAS\nmap.dxf\n";
}

// --- by key and mouse ---------------------------------------------------------------------------

void defineGrid(DialogWindow& window) {
    type(window, "Number of Cells in X Direction", "20");
    type(window, "Number of Cells in Y Direction", "10");
    type(window, "Cell Width in X Direction", "10");
    type(window, "Cell Width in Y Direction", "10");
    click(window, "Pick a Point");
}

void buildFactor(DialogWindow& window, const std::string& file) {
    turnTo(window, 1);
    click(window, "Create from Area Boundary");
    turnTo(window, 2);
    type(window, "Inside Boundary", "80");
    type(window, "Outside Boundary", "20");
    click(window, "Area Based");
    type(window, "Min. Area Inside (%)", "50");
    click(window, "Remove Boundaries");
    click(window, "Build Grid");
    type(window, "Output File (.grd)", file);
    type(window, "Grid Description", "Pond of " + file);
    click(window, "Save Grid");
    clickOk(window);
}

// `first`: the base grid is defined too, its origin picked at the property's corner.
void areaFactor(User& user, Point2 pond, const std::string& file, bool first) {
    user.menu("Factor from Area Boundaries");
    user.dialog("Create Grid for Area Based Factor", [=](DialogWindow& window) {
        if (first)
            defineGrid(window);
        buildFactor(window, file);
    });
    if (first)
        user.clickAt({0.3, 0.3});                          // the snap takes the corner
    user.clickAt(pond).answer("Yes").keys(Qt::Key_Return); // looks at the grid that is shown
    user.answer("OK");
}

void index(User& user, const std::string& input) {
    user.menu("Transformation of Individual Factors");
    user.dialog("Individual Factor Generation/Normalization", [input](DialogWindow& window) {
        type(window, "Input File", input);
        clickOk(window); // "Next>>"
        choose(window, "Function", "Linear");
        click(window, "Normal");
        click(window, "Preview Final Grid");
        clickOk(window);
    });
    user.answer("OK"); // saved
}

void composite(User& user) {
    user.menu("Final Stability Index");
    user.dialog("Stability Index Generation", [](DialogWindow& window) {
        for (const char* weight : {"30", "70"}) {
            click(window, "Select Index Grid");
            type(window, "Weighting Factor", weight);
            click(window, "Add");
        }
        click(window, "Create Index");
        clickOk(window); // "Save and Exit"
    });
    user.file("west_index.grd").file("east_index.grd");
    user.answer("Yes").file("stability.grd").answer("OK").file("mine.prj");
}

void map(User& user) {
    user.menu("Index Mapping");
    user.dialog("Mapping Stability Index on Entries", [](DialogWindow& window) {
        type(window, "Index Grid File", "stability.grd");
        type(window, "Pillar Layers", "PILLARS");
        type(window, "Mapping Layer", "STABILITY_MAP");
        click(window, "Analyze ...");
        click(window, "Hatch");
        click(window, "Legend");
        clickCancel(window);
    });
    user.keys(Qt::Key_Return).keyword("Yes");
    user.keys(Qt::Key_Return).keyword("Yes");
    user.clickAt({215.3, 5.3}).clickAt({244.7, 94.7}); // corners of the frame
}

// --- what came of it ----------------------------------------------------------------------------

const char* const kFiles[] = {"west.grd",      "east.grd", "west_index.grd", "east_index.grd",
                              "stability.grd", "mine.prj", "map.dxf"};

std::string without(std::string text, const std::string& part) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
    return text;
}

// The files, with the folder's own path left out of them.
std::map<std::string, std::string> filesIn(const TemporaryFolder& folder) {
    std::map<std::string, std::string> files;
    for (const char* name : kFiles)
        files[name] = without(folder.read(name), folder.path().string() + "/");
    return files;
}

std::map<std::string, std::string> made(const std::string& script) {
    ScriptRun run;
    writePlan(run.folder() / "plan.dxf");
    run.open("plan.dxf");
    run(script);
    EXPECT_EQ(run.status(), 0) << run.report() << script;
    return filesIn(run.folder());
}

TEST(MainChain, ByKeyAndMouseMakesTheFilesOfTheScript) {
    User user;
    writePlan(user.folder() / "plan.dxf");
    areaFactor(user, {60, 24}, "west.grd", true);
    areaFactor(user, {150, 35}, "east.grd", false);
    index(user, "west.grd");
    index(user, "east.grd");
    composite(user);
    map(user);
    std::string recorded;
    user.look([&] {
        const auto path = user.folder() / "session.scr";
        user.window().saveSessionScript(QString::fromStdString(path.string()));
        recorded = user.folder().read("session.scr");
    });
    user.type("SAVEAS").type("map.dxf");
    user.work((user.folder() / "plan.dxf").string());
    SCOPED_TRACE(user.history());
    const auto byMouse = filesIn(user.folder());
    ASSERT_THAT(byMouse, Each(Pair(::testing::_, ::testing::Not(::testing::IsEmpty()))))
        << user.history();
    EXPECT_THAT(byMouse.at("map.dxf"), HasSubstr("HATCH"));

    EXPECT_EQ(byMouse, made(chainScript()));
    EXPECT_EQ(byMouse,
              made(without(recorded, user.folder().path().string() + "/") + "SAVEAS\nmap.dxf\n"));
}

} // namespace
} // namespace tessaran::test
