#include "app/command_table.h"
#include "app/entry_point.h"
#include "app/menu.h"
#include "base/text.h"

#include <gtest/gtest.h>

#include <set>

namespace tessaran::app {
namespace {

using host::MenuItem;

TEST(CommandTable, HasItsCommandsInOrderUnderUnderscoredNames) {
    const auto table = commandTable();
    ASSERT_EQ(table.size(), 31u);
    EXPECT_STREQ(table[0].localName, "zelk_setGrid");
    EXPECT_STREQ(table[13].localName, "zelk_indexMapping");
    EXPECT_STREQ(table[24].localName, "zelk_zelkabout");
    EXPECT_STREQ(table[26].localName, "ZELKMenu");
    EXPECT_STREQ(table[30].localName, "zelk_RFRI_Mapping");
    std::set<std::string> names;
    for (const CommandRow& row : table) {
        const host::CommandEntry entry = entryOf(row);
        EXPECT_EQ(entry.group, "ZELKTessaran");
        EXPECT_EQ(entry.globalName, "_" + entry.localName);
        EXPECT_EQ(entry.flags, 1u);
        EXPECT_NE(entry.handler, nullptr);
        names.insert(entry.globalName);
    }
    EXPECT_EQ(names.size(), table.size());
}

TEST(Menu, NestsTheDescriptionAndMakesHelpAndMacros) {
    ASSERT_EQ(menuTable().size(), 39u);
    const std::vector<MenuItem> items = menuItems(menuTable());
    ASSERT_EQ(items.size(), 31u); // 39 lines, eight of them in the submenu

    EXPECT_EQ(items[0].label, "&Define Base Grid");
    EXPECT_EQ(items[0].helpText, "defines a base grid for this session");
    EXPECT_EQ(items[0].macro, "\x03\x03_zelk_setgrid ");
    EXPECT_EQ(items[1].kind, MenuItem::Kind::separator);
    EXPECT_EQ(items[7].helpText, "Topography Stress Calculation -- zelk_topostressmodel Command.");

    const MenuItem& submenu = items[28];
    EXPECT_EQ(submenu.kind, MenuItem::Kind::submenu);
    EXPECT_EQ(submenu.label, "&Polyline Utilities");
    ASSERT_EQ(submenu.items.size(), 8u);
    EXPECT_EQ(submenu.items[2].macro, "\x03\x03zelk_checkClosedPloylines ");
    EXPECT_EQ(submenu.items[6].kind, MenuItem::Kind::separator);
    EXPECT_EQ(submenu.items[7].label, "Clear Objects in Layer");
    EXPECT_EQ(submenu.items[7].helpText,
              "Clear Objects in Layer -- zelk_clearWorkingLayer Command.");

    EXPECT_EQ(items[30].macro, "\x03\x03'_zelk_zelkabout ");
    EXPECT_EQ(items[30].helpText, "About Tessaran System for Mines");
}

TEST(Menu, TrimsLabelsAndCommandsAndKeepsMisleadingLabelsApart) {
    const std::vector<MenuLine> lines{{"", "  go \t ", "  &Go  "},
                                      {"", "", "->Sub"},
                                      {"", "a", "- not a separator"},
                                      {"", "b", "<- Last"},
                                      {"", "c", "After"}};
    const std::vector<MenuItem> items = menuItems(lines);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].label, "&Go");
    EXPECT_EQ(items[0].macro, "\x03\x03go ");
    EXPECT_EQ(items[0].helpText, "Go -- go Command.");
    ASSERT_EQ(items[1].items.size(), 2u);
    EXPECT_EQ(items[1].items[0].label, "- not a separator");
    EXPECT_EQ(items[1].items[1].label, "Last");
    EXPECT_EQ(items[2].label, "After");
}

TEST(Menu, OnlyTheMisspeltItemReachesNoCommand) {
    std::set<std::string> known;
    for (const CommandRow& row : commandTable())
        known.insert(base::lowered(row.localName));
    std::vector<std::string> lost;
    for (const MenuLine& line : menuTable()) {
        std::string name = base::lowered(line.command);
        name.erase(0, name.find_first_not_of("'_"));
        if (!name.empty() && !known.contains(name))
            lost.push_back(name);
    }
    EXPECT_EQ(lost, std::vector<std::string>{"zelk_checkclosedploylines"});
}

TEST(EntryPoint, AnswersUnknownMessagesWithOk) {
    EXPECT_EQ(acrxEntryPoint(16, nullptr), 0);
    EXPECT_EQ(acrxEntryPoint(-1, nullptr), 0);
    EXPECT_EQ(acrxEntryPoint(1000000, nullptr), 0);
    EXPECT_NE(acrxGetApiVersion(), 0u);
}

} // namespace
} // namespace tessaran::app
