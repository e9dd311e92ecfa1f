#include "halyard/shell/menu_drawing.hpp"

#include <gmock/gmock.h>

#include "core/text.hpp"
#include "halyard/shell/hotkey_mark.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class MenuDrawing : public ShellTest {
 protected:
  static std::vector<std::string> lines(const Menu& menu, const MenuCursor& cursor, bool isDark = false) {
    std::vector<std::string> result;
    const std::string frame = menuFrame(menu, cursor, isDark);
    for (const auto line : splitLines(frame)) result.emplace_back(line);
    result.pop_back();
    return result;
  }
  static std::string plain(const std::string& line) { return stripAnsi(line); }
  static Menu menuOfRows(int count) {
    LightMenuCategory category;
    category.name = "Group";
    for (int i = 0; i < count; ++i)
      category.items.push_back({.label = "Row " + std::to_string(i), .action = [] {}, .hotkey = {}});
    return {category};
  }
};

TEST_F(MenuDrawing, EveryLineIsAsWideAsTheFrame) {
  selectSimulator();
  const auto all = lines(buildMenu(), {});
  ASSERT_EQ(all.size(), 19U);
  for (const auto& line : all) EXPECT_EQ(visibleWidth(line), 85) << plain(line);
}

TEST_F(MenuDrawing, TheStripShowsDigitsThatExistAndDimsTheOthers) {
  const auto all = lines(buildMenu(), {});
  EXPECT_EQ(plain(all[16]), "├───────┬───────┬──┴────────┬───────────┬────────┬────────┬──────┬─────────┬────────┤");
  EXPECT_EQ(plain(all[17]), "│1:Clear│2:Reset│3:Build&Run│4:Clear&Run│5:Xcode▼│6:Xcode▲│7:Unit│8:CITests│9:Update│");
  EXPECT_EQ(plain(all[18]), "└───────┴───────┴───────────┴───────────┴────────┴────────┴──────┴─────────┴────────┘");
  EXPECT_THAT(all[17], HasSubstr("\x1b[1m\x1b[1;34m1\x1b[0m:Clear"));
  EXPECT_THAT(all[17], HasSubstr("\x1b[2m7:Unit\x1b[0m"));
}

TEST_F(MenuDrawing, TheSelectedRowHasTheActiveLookOnlyInTheFocusedPane) {
  const Menu menu = buildMenu();
  const auto left = lines(menu, {});
  EXPECT_THAT(left[0], HasSubstr("\x1b[48;2;0;0;0m\x1b[38;2;255;255;255m\x1b[1m "));
  EXPECT_THAT(left[0], HasSubstr("\x1b[48;2;255;223;35m\x1b[38;2;0;0;0m Show All Directories"));
  const auto right = lines(menu, {.focusOnItems = true});
  EXPECT_THAT(right[0], HasSubstr("\x1b[48;2;0;0;0m\x1b[38;2;255;255;255m\x1b[1m Show All Directories"));
  EXPECT_THAT(right[0], HasSubstr("\x1b[48;2;255;223;35m\x1b[38;2;0;0;0m "));
  const auto dark = lines(menu, {.focusOnItems = true}, true);
  EXPECT_THAT(dark[0], HasSubstr("\x1b[48;2;255;255;255m\x1b[38;2;0;0;0m\x1b[1m Show All Directories"));
}

TEST_F(MenuDrawing, TheDigitOfTheActiveRowStaysLegible) {
  const Menu menu = buildMenu();
  const auto active = lines(menu, {.selectedItemIndex = 5, .focusOnItems = true});
  EXPECT_THAT(active[5], HasSubstr("Delete Derived Data \x1b[38;2;160;160;160m[1]\x1b[0m"));
  const auto inactive = lines(menu, {.selectedItemIndex = 5});
  EXPECT_THAT(inactive[5], HasSubstr("Delete Derived Data \x1b[1;34m[1]\x1b[0m"));
}

TEST_F(MenuDrawing, ADisabledRowIsDim) {
  const auto all = lines(buildMenu(), {.selectedCategoryIndex = 1});
  EXPECT_THAT(all[6], HasSubstr("\x1b[2m Build"));
}

TEST_F(MenuDrawing, TheGroupLetterIsMarkedAtItsFirstOccurrenceWhateverItsCase) {
  EXPECT_EQ(markedHotkey("Directories", 'I', "<", ">"), "D<\x1b[4mi\x1b[22m\x1b[24m>rectories");
  EXPECT_EQ(markedHotkey("Delete", 'D', "<", ">"), "<\x1b[4mD\x1b[22m\x1b[24m>elete");
  EXPECT_EQ(markedHotkey("macOS", 'X', "<", ">"), "macOS");
  EXPECT_EQ(markedHotkey("Äußeres", 'S', "<", ">"), "Äußere<\x1b[4ms\x1b[22m\x1b[24m>");
}

TEST_F(MenuDrawing, TheMarkResumesTheStyleOfItsRow) {
  const Menu menu = buildMenu();
  EXPECT_THAT(lines(menu, {})[1], HasSubstr("\x1b[1;34m\x1b[4mB\x1b[22m\x1b[24m\x1b[39muild"));
  EXPECT_THAT(lines(menu, {})[0],
              HasSubstr("\x1b[38;2;160;160;160m\x1b[4mD\x1b[22m\x1b[24m\x1b[38;2;255;255;255melete"));
  EXPECT_THAT(lines(menu, {}, true)[0], HasSubstr("\x1b[4mD\x1b[22m\x1b[24m\x1b[38;2;0;0;0melete"));
  EXPECT_THAT(lines(menu, {.focusOnItems = true})[0],
              HasSubstr("\x1b[1;34m\x1b[4mD\x1b[22m\x1b[24m\x1b[38;2;0;0;0melete"));
}

TEST_F(MenuDrawing, SixteenRowsNeedNoMark) {
  const auto all = lines(menuOfRows(16), {.focusOnItems = true});
  EXPECT_THAT(plain(all[15]), HasSubstr("Row 15"));
}

TEST_F(MenuDrawing, MoreRowsShowHowManyAreHidden) {
  const auto all = lines(menuOfRows(20), {.focusOnItems = true});
  EXPECT_THAT(plain(all[15]), HasSubstr("│ ▾ 4 weitere "));
  EXPECT_THAT(all[15], HasSubstr("\x1b[2m ▾ 4 weitere"));
}

TEST_F(MenuDrawing, TheMarkGivesWayToTheSelectedRowOnTheLastLine) {
  const auto all = lines(menuOfRows(20), {.selectedItemIndex = 15, .focusOnItems = true});
  EXPECT_THAT(plain(all[15]), HasSubstr("Row 15"));
}

TEST_F(MenuDrawing, TheLeftPaneCountsItsHiddenGroupsToo) {
  Menu menu;
  for (int i = 0; i < 19; ++i) {
    LightMenuCategory category;
    category.name = "Group " + std::to_string(i);
    menu.push_back(category);
  }
  EXPECT_THAT(plain(lines(menu, {})[15]), StartsWith("│ ▾ 3"));
  EXPECT_THAT(plain(lines(menu, {.selectedCategoryIndex = 18, .categoryScrollOffset = 3})[15]),
              StartsWith("│ Group 18"));
}

TEST_F(MenuDrawing, SeparatorsAreGrayRules) {
  const auto all = lines(buildMenu(), {});
  EXPECT_THAT(all[1], HasSubstr("\x1b[90m " + repeated("─", 62) + " \x1b[0m"));
  EXPECT_THAT(all[4], HasSubstr("\x1b[90m " + repeated("─", 16) + " \x1b[0m"));
}

TEST_F(MenuDrawing, ALabelThatWouldTouchTheFrameIsCutAndLosesItsColours) {
  LightMenuCategory category;
  category.name = "Group";
  const auto add = [&](int width) {
    category.items.push_back({.label = "\x1b[31m" + repeated("x", width) + "\x1b[0m", .action = [] {}, .hotkey = {}});
  };
  add(62);
  add(63);
  const auto all = lines({category}, {});
  EXPECT_THAT(plain(all[0]), HasSubstr(repeated("x", 62) + " │"));
  EXPECT_THAT(plain(all[1]), HasSubstr("│ " + repeated("x", 61) + "… │"));
  EXPECT_THAT(all[1], testing::Not(HasSubstr("\x1b[31m")));
}

TEST_F(MenuDrawing, AnEmptyGroupStillHighlightsItsFirstLine) {
  LightMenuCategory category;
  category.name = "Group";
  const auto all = lines({category}, {.focusOnItems = true});
  EXPECT_THAT(all[0], HasSubstr("\x1b[1m" + std::string(64, ' ') + "\x1b[0m"));
}

TEST(SyncScroll, KeepsTheSelectedRowInSight) {
  const auto synced = [](int offset, int selected, int visible, int total) {
    syncScroll(offset, selected, visible, total);
    return offset;
  };
  EXPECT_EQ(synced(0, 0, 16, 20), 0);
  EXPECT_EQ(synced(0, 15, 16, 20), 0);
  EXPECT_EQ(synced(0, 16, 16, 20), 1);
  EXPECT_EQ(synced(0, 19, 16, 20), 4);
  EXPECT_EQ(synced(4, 2, 16, 20), 2);
  EXPECT_EQ(synced(9, 3, 5, 5), 0);
  EXPECT_EQ(synced(3, 0, 0, 0), 0);
}

}  // namespace
}  // namespace halyard
