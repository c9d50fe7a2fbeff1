#include "console/completion.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tessaran::console;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Completion, OffersCommandsAtTheCommandPrompt) {
    const CompletionContext context{.commands = {"zelk_setGrid", "zelk_seamGrid", "LINE"}};
    EXPECT_THAT(complete("ZELK_SE", context).candidates,
                ElementsAre("zelk_seamGrid", "zelk_setGrid"));
    const Completion global = complete("'_li", context);
    EXPECT_THAT(global.candidates, ElementsAre("LINE"));
    EXPECT_EQ(global.from, 2u) << "what stands in front of the name stays";
    EXPECT_EQ(commonBeginning({"zelk_seamGrid", "zelk_setGrid"}), "zelk_se");
}

TEST(Completion, OffersKeywordsOfThePrompt) {
    EXPECT_THAT(keywordsOf("\nKeep it [No/<Yes>]:"), ElementsAre("No", "Yes"));
    EXPECT_THAT(keywordsOf("\nPoint:"), IsEmpty());
    EXPECT_THAT(keywordsOf("] odd ["), IsEmpty());
    const CompletionContext context{.keywords = {"Close", "Undo"}};
    EXPECT_THAT(complete("c", context).candidates, ElementsAre("Close"));
}

TEST(Completion, OffersDirectivesLabelsAndFiles) {
    tessaran::test::TemporaryFolder folder;
    folder.write("roof.grd", "");
    folder.write("rock grid.grd", "");
    folder.write("maps/roof.png", "");
    folder.write(".hidden", "");
    const CompletionContext context{.labels = {"Input File", "Index Grid File", "Title"}};
    EXPECT_THAT(complete(":se", context).candidates, ElementsAre(":select ", ":set "));
    const Completion label = complete(":set in", context);
    EXPECT_THAT(label.candidates, ElementsAre("Index Grid File", "Input File"));
    EXPECT_EQ(label.from, 5u);
    EXPECT_THAT(complete(":set Input File = ro", context).candidates,
                ElementsAre("rock grid.grd", "roof.grd"));
    EXPECT_THAT(complete(":file maps/r", context).candidates, ElementsAre("maps/roof.png"));
    EXPECT_THAT(complete(":file ", context).candidates,
                ElementsAre("maps/", "rock grid.grd", "roof.grd"));
    EXPECT_THAT(complete(":file nowhere/r", context).candidates, IsEmpty());
    EXPECT_THAT(complete("OPEN roo", {.commands = {"OPEN"}}).candidates, ElementsAre("roof.grd"));
}
