// The polyline utilities through the console.

#include "factors/polyline_commands.h"
#include "generator_script.h"
#include "host/curves.h"
#include "support/recording_host.h"

#include <gmock/gmock.h>

#include <limits>

namespace tessaran::factors {
namespace {

using host::Entity;
using host::EntityId;
using host::Polyline;
using test::add;
using test::addLine;
using test::addPoint;
using test::addPolyline;
using test::RecordingHost;
using test::ScriptRun;
using testing::HasSubstr;
using testing::Not;

const std::vector<host::PolylineVertex> kSquare{{{0, 0}}, {{10, 0}}, {{10, 10}}, {{0, 10}}};

EntityId addSquare(ScriptRun& run, const std::string& layer, double x = 0.0, bool closed = true) {
    auto vertices = kSquare;
    for (auto& vertex : vertices)
        vertex.at.x += x;
    return addPolyline(run, layer, vertices, 0.0, closed);
}

const Polyline& polylineAt(ScriptRun& run, EntityId id) {
    return std::get<Polyline>(run.drawing().find(id)->geometry);
}

std::size_t count(ScriptRun& run, const std::string& layer = {}) {
    host::SelectionFilter filter;
    if (!layer.empty())
        filter.layers = {layer};
    return run.drawing().select(filter).size();
}

const std::string kBanner = "Tessaran Modules' Polyline Utility";

TEST(CheckClosed, ClosesTheOpenOnesAfterAQuestion) {
    ScriptRun run;
    const EntityId open = addSquare(run, "A", 0.0, false);
    addSquare(run, "A", 50.0, true);
    const EntityId space =
        add(run, "A", host::Polyline3d{{{0, 0, 0}, {1, 0, 0}, {1, 1, 5}}, false});
    addLine(run, "A", {0, 0, 0}, {1, 1, 0});
    run("zelk_checkClosedPolylines\nall\n\n:answer no\n"
        "zelk_checkClosedPolylines\nall\n\n:answer yes\n"
        "zelk_checkClosedPolylines\nall\n\n"
        "zelk_checkClosedPolylines\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr(kBanner));
    EXPECT_THAT(
        run.transcript(),
        HasSubstr("This command checks non-closed polylines and trys to make them closed."));
    EXPECT_THAT(run.transcript(),
                HasSubstr("(question)  2 objects (in total 4) are not closed polylines!\n\r Do you "
                          "want to close these polylines? -> no"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n2 polylines are made closed"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nAll selected polylines are closed"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n No Objects selectes"));
    EXPECT_TRUE(polylineAt(run, open).closed);
    EXPECT_TRUE(std::get<host::Polyline3d>(run.drawing().find(space)->geometry).closed);
    EXPECT_TRUE(run.state().graphics.highlighted().empty());
}

TEST(CheckContours, FindsElevationsAndCrossings) {
    ScriptRun run;
    addPolyline(run, "C", {{{0, 0}}, {{10, 0}}}, 120.0);
    addPolyline(run, "C", {{{5, -5}}, {{5, 5}}}, 130.0);
    addPolyline(run, "C", {{{0, 20}}, {{10, 20}}}, 120.0);
    addPoint(run, "C", {5, 0, 120});
    run("zelk_checkContours\n120\nall\n\n"
        "zelk_checkContours\n\nall\n\n"
        "zelk_checkContours\nI\n\n"
        "zelk_checkContours\n^C\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n<Intersection>/[Input the elevation value]:<I>"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSelect objects to check value 120.000000 :"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n 2 in 3 contours have elevation of 120.000000"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSelect objects to check intersection:"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n 2 in 3 contours may intersected!"));
}

TEST(CheckContours, CountNothingAmongObjectsThatAreNone) {
    ScriptRun run;
    add(run, "C", host::Text{});
    run("zelk_checkContours\n120\nall\n\nzelk_checkContours\n\nall\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n 0 in 0 contours have elevation of 120.000000"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n 0 in 0 contours may intersected!"));
}

TEST(CheckContours, LeavesWhatItFoundHighlightedUntilTheNextCommand) {
    ScriptRun run;
    const EntityId level = addPolyline(run, "C", {{{0, 0}}, {{10, 0}}}, 120.0);
    addPolyline(run, "C", {{{0, 9}}, {{10, 9}}}, 130.0);
    run("zelk_checkContours\n120\nall\n\nZOOM\ne\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.state().graphics.highlighted(), std::set<EntityId>{level});
    ScriptRun next;
    addPolyline(next, "C", {{{0, 0}}, {{10, 0}}}, 120.0);
    next("zelk_checkContours\n120\nall\n\nzelk_clearWorkingLayer\n\n");
    EXPECT_TRUE(next.state().graphics.highlighted().empty());
}

TEST(CheckDuplicates, ThreeCopiesAreFoundTwiceAndGo) {
    for (const std::string option : {"Move", "Delete", ""}) {
        ScriptRun run;
        const EntityId first = addSquare(run, "A");
        addSquare(run, "B");
        addPolyline(run, "B", {kSquare[2], kSquare[1], kSquare[0], kSquare[3]}, 0.0, true);
        addSquare(run, "B", 30.0);
        addSquare(run, "B", 0.0, false);
        run("zelk_checkDuplicates\nall\n\n\n" + option + "\n");
        ASSERT_EQ(run.status(), 0) << run.report();
        EXPECT_THAT(run.transcript(),
                    HasSubstr("\n 4 objects (Total 5) are closed polylines and will being cross "
                              "checked!\n <Enter> to continue ..."));
        EXPECT_THAT(run.transcript(), HasSubstr("\n Processing polylines, please waiting..."));
        EXPECT_THAT(run.transcript(),
                    HasSubstr("\n2 polylines may duplicated!\n Enter an Option[Move to working "
                              "layer/Delete/<Do nothing> ]:"));
        const std::string done = option == "Move"     ? "are moved to layer."
                                 : option == "Delete" ? "are removed."
                                                      : "";
        if (!done.empty())
            EXPECT_THAT(run.transcript(), HasSubstr("\n2 duplicate polyline " + done));
        else
            EXPECT_THAT(run.transcript(), Not(HasSubstr("duplicate polyline are")));
        EXPECT_NE(run.drawing().find(first), nullptr) << "the first one stays";
        EXPECT_EQ(count(run, host::kWorkingLayer), option == "Move" ? 2u : 0u);
        EXPECT_EQ(count(run), option == "Delete" ? 3u : 5u);
        EXPECT_TRUE(run.state().graphics.graphics().empty());
    }
}

TEST(CheckDuplicates, OnesWithinOthersAreOverlapsOnly) {
    ScriptRun run;
    addSquare(run, "A");
    addPolyline(run, "A", {{{2, 2}}, {{4, 2}}, {{4, 4}}}, 0.0, true);
    addSquare(run, "A", 10.0); // shares a side
    addSquare(run, "A", 90.0);
    run("zelk_checkDuplicates\nall\n\n\nzelk_checkOverlaps\n95,0\n\n\n"
        "zelk_checkOverlaps\nall\n\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nNo polylines are duplicated!"));
    EXPECT_THAT(run.transcript(), Not(HasSubstr("Enter an Option")));
    EXPECT_THAT(run.transcript(), HasSubstr("\nNo polylines overlapped!"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n2 polylines may overlapped!"));
    EXPECT_EQ(run.state().graphics.graphics().size(), 2u) << "their outlines are shown";
}

TEST(ClearWorkingLayer, AsksCountsAndErases) {
    ScriptRun run;
    addSquare(run, host::kWorkingLayer);
    addSquare(run, "Entries");
    addSquare(run, "Other");
    run("zelk_clearWorkingLayer\n\n:answer cancel\n"
        "zelk_clearWorkingLayer\n\n:answer ok\n"
        "zelk_clearWorkingLayer\n\n"
        "zelk_clearWorkingLayer\nSelect\n:select Select Layers to Clear = Entries,Other\n:ok\n"
        ":answer ok\n"
        "zelk_clearWorkingLayer\nS\n:cancel\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\n[Select Layers to clear/<ZELK_Working_Layer>]:"));
    EXPECT_THAT(
        run.transcript(),
        HasSubstr("(question) Remove all 1 objects in layer:<ZELK_Working_Layer>! -> cancel"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\n 1 objects in layer:<ZELK_Working_Layer> are removed!"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n no objects in layer: ZELK_Working_Layer"));
    EXPECT_THAT(run.transcript(), HasSubstr("(dialog) Select Working"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n 2 objects in layer:<Entries,Other> are removed!"));
    EXPECT_EQ(count(run), 0u);
}

TEST(CreatePolyline, ChainsObjectsOfAllKinds) {
    ScriptRun run;
    const EntityId line = addLine(run, "A", {0, 0, 0}, {10, 0, 3});
    const EntityId polyline =
        addPolyline(run, "A", {{{20, 0}, -1.0}, {{10, 0}}}); // touches the line's end
    const EntityId point = addPoint(run, "A", {-5, 5, 0});
    const EntityId text = add(run, "A", host::Text{});
    const auto pick = [](EntityId id, const std::string& at) {
        return fmt::format("#{:X} {}\n", id.value, at);
    };
    run("zelk_createPolylineFromObjects\nElevation\n42.5\n" + pick(line, "1,0") +
        pick(polyline, "19,0") + pick(text, "0,0") + pick(point, "19,0") + "Undo\nFarthest\n" +
        pick(point, "19,0") + "Nearest\nReverse\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nCurrent elevation is <0.000000>\n[Elevation/Close/"
                                            "Reverse order/Undo object/to Farthest end/<Select "
                                            "object:>]"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nInput new elevation <0.000000>:"));
    EXPECT_THAT(run.transcript(), HasSubstr("Undo object/to Nearest end/<Select object:>]"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nInput <4> Points  Reversed!"));
    const Polyline& made = polylineAt(run, run.drawing().lastEntity());
    ASSERT_EQ(made.vertices.size(), 4u);
    EXPECT_EQ(made.vertices[0].at, (host::Point2{20, 0}));
    EXPECT_EQ(made.vertices[0].bulge, -1.0);
    EXPECT_EQ(made.vertices[3].at, (host::Point2{-5, 5}));
    EXPECT_EQ(made.elevation, 42.5);
    EXPECT_FALSE(made.closed);
    EXPECT_EQ(count(run), 5u) << "the picked objects stay";
    EXPECT_TRUE(run.state().graphics.graphics().empty());
}

TEST(CreatePolyline, ClosesOrMakesNothing) {
    ScriptRun run;
    const EntityId a = addLine(run, "A", {0, 0, 0}, {10, 0, 0});
    const EntityId b = addLine(run, "A", {10, 0, 0}, {0, 10, 0});
    run(fmt::format("zelk_createPolylineFromObjects\n#{:X}\n#{:X} 9,1\nClose\n", a.value, b.value) +
        fmt::format("zelk_createPolylineFromObjects\n#{:X}\n^C\n", a.value) +
        "zelk_createPolylineFromObjects\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(count(run), 3u);
    EXPECT_TRUE(polylineAt(run, run.drawing().lastEntity()).closed);
    EXPECT_EQ(polylineAt(run, run.drawing().lastEntity()).vertices.size(), 3u);
}

TEST(CreatePolyline, TellsWordsItDoesNotKnowAndGoesOn) {
    ScriptRun run;
    addLine(run, "A", {0, 0, 0}, {10, 0, 0});
    run("zelk_createPolylineFromObjects\nWiden\n5,0\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nUnknown Key Word <Widen>\n[Elevation/Close/"));
    EXPECT_EQ(count(run), 2u);
    ScriptRun refused; // neither a word nor a pick
    refused("zelk_createPolylineFromObjects\n5,x\n");
    EXPECT_EQ(refused.status(), 1);
}

TEST(Join, MakesOnePolylineOfLinesAndPolylines) {
    ScriptRun run;
    addLine(run, "A", {10, 0, 0}, {10, 10, 0});
    const EntityId first = addPolyline(run, "B", {{{0, 0}, 0.5}, {{10, 0}}});
    addPolyline(run, "A", {{{0, 10}}, {{10, 10}}});
    addPolyline(run, "A", {{{0, 10}}, {{0, 0}}});
    addPolyline(run, "A", {{{500, 10}}, {{600, 0}}}); // meets nothing
    run("zelk_joinPolylines\nall\n\n:answer yes\n:answer yes\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("(question) Convert Line to Polyline? -> yes"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n 1 Lines are converted to Polylines."));
    EXPECT_THAT(run.transcript(), HasSubstr("(question)  5 objects (in total 5) are not closed "
                                            "polylines!\n\r Do you want to join these polylines?"));
    EXPECT_THAT(run.transcript(),
                HasSubstr("\n 4 polylines have been joined\n <Enter> to continue ..."));
    EXPECT_EQ(count(run), 2u);
    const auto left = run.drawing().select(host::SelectionFilter{{}, {"LWPOLYLINE"}, {}});
    std::size_t closed = 0;
    for (const EntityId id : left)
        closed += polylineAt(run, id).closed && polylineAt(run, id).vertices.size() == 4 ? 1 : 0;
    EXPECT_EQ(closed, 1u);
    static_cast<void>(first);
}

TEST(PolylineUtilities, SayWhatTheyDoFirst) {
    for (const auto& [command, description] : std::vector<std::pair<std::string, std::string>>{
             {"zelk_checkClosedPolylines",
              "This command checks non-closed polylines and trys to make them closed."},
             {"zelk_checkContours",
              "This module checks the intersection or specified elevation of contour lines!"},
             {"zelk_checkDuplicates",
              "This command check all selected objects and find duplicated close polylines."},
             {"zelk_checkOverlaps",
              "This command check all selected objects and find overlaped close polylines."},
             {"zelk_createPolylineFromObjects",
              "This command creates a polyline from selected objects"},
             {"zelk_joinPolylines",
              "This command trys to join the polylines(lines) objects as many as possible"}}) {
        ScriptRun run;
        run(command + "\n\n\n");
        EXPECT_THAT(run.transcript(),
                    HasSubstr(command + "\n" + kBanner + "\n" + description + "\n"));
    }
}

TEST(PolylineUtilities, TellTheMeterWhatTheyDo) {
    RecordingHost host;
    for (const double x : {0.0, 50.0}) {
        const auto id =
            host.database.add({{}, "0", 256, "ByLayer", host::Polyline{{}, kSquare, true, x, 0.0}});
        ASSERT_TRUE(id);
        host.selection.push_back(*id);
    }
    host.numbers = {std::numeric_limits<double>::quiet_NaN()}; // Enter
    host.answers = {RecordingHost::kEnter, RecordingHost::kEnter};
    zelk_checkContours(host);
    zelk_checkDuplicates(host);
    host.answers = {RecordingHost::kEnter};
    zelk_checkOverlaps(host);
    EXPECT_THAT(host.meterTexts,
                testing::ElementsAre("Check through contours...", "Finding overlapped polylines",
                                     "Progressing"));
}

TEST(PolylineUtilities, SelectByLayerAndGoOn) {
    ScriptRun run;
    addSquare(run, "Pillars", 0.0, false);
    const EntityId other = addSquare(run, "Entries", 20.0, false);
    addSquare(run, "Entries", 40.0, false);
    run(fmt::format("zelk_checkClosedPolylines\nSLayer\nPillars, Nowhere\n#{:X}\n\n:answer no\n",
                    other.value) +
        fmt::format(
            "zelk_checkClosedPolylines\nsl\nEntries\n#{:X}\n\nremove\n#{:X}\n\n:answer no\n",
            other.value, other.value) +
        "zelk_checkClosedPolylines\nSLayer\n\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    EXPECT_THAT(run.transcript(), HasSubstr("\nThere is no layer <Nowhere>.\n1 found, 1 total"));
    EXPECT_THAT(run.transcript(), HasSubstr("1 found, 2 total"));
    EXPECT_THAT(run.transcript(), HasSubstr(" 2 objects (in total 2) are not closed polylines!"));
    EXPECT_THAT(run.transcript(), HasSubstr("A name that begins with E stands for Extract"));
    EXPECT_THAT(run.transcript(), HasSubstr("\nSelcted Layers: Entries"));
    EXPECT_THAT(run.transcript(), HasSubstr("1 found, 1 removed, 1 total"));
    EXPECT_THAT(run.transcript(), HasSubstr("\n No Objects selectes"));
}

TEST(PolylineUtilities, AreEachTakenBackByOneUndo) {
    const auto geometry = [](ScriptRun& run) {
        std::vector<std::string> out;
        for (const EntityId id : run.drawing().select(host::SelectionFilter{})) {
            const Entity& entity = *run.drawing().find(id);
            std::string text = host::dxfName(entity) + " " + entity.layer;
            for (const host::Point2 p : host::vertexPolygon(entity))
                text += fmt::format(" {},{}", p.x, p.y);
            if (const auto* polyline = std::get_if<Polyline>(&entity.geometry))
                text += polyline->closed ? " closed" : " open";
            out.push_back(text);
        }
        return out;
    };
    for (const std::string command :
         {"zelk_checkClosedPolylines\nall\n\n:answer yes\n",
          "zelk_checkDuplicates\nall\n\n\nMove\n", "zelk_checkDuplicates\nall\n\n\nDelete\n",
          "zelk_clearWorkingLayer\n\n:answer ok\n",
          "zelk_joinPolylines\nall\n\n:answer yes\n:answer yes\n\n",
          "zelk_createPolylineFromObjects\n0,5\nClose\n"}) {
        std::vector<std::string> before;
        std::vector<std::string> after;
        for (const bool undone : {false, true}) {
            ScriptRun run;
            addSquare(run, "A");
            addSquare(run, "A");
            addSquare(run, host::kWorkingLayer, 30.0);
            addPolyline(run, "A", {{{0, 50}}, {{5, 50}}, {{5, 60}}});
            addPolyline(run, "A", {{{5, 60}}, {{0, 50}}});
            addLine(run, "A", {40, 50, 0}, {50, 50, 0});
            before = geometry(run);
            run(command + (undone ? "UNDO\n1\n" : ""));
            ASSERT_EQ(run.status(), 0) << run.report();
            after = geometry(run);
            if (undone)
                EXPECT_EQ(after, before) << command;
            else
                EXPECT_NE(after, before) << command;
        }
    }
}

} // namespace
} // namespace tessaran::factors
