#include "halyard/shell/key_dispatch.hpp"

#include "halyard/browser/directory_view.hpp"
#include "halyard/git/git_view_state.hpp"
#include "tests/support/shell_fixture.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using Kind = RawKey::Kind;

class KeyDispatch : public ShellTest {
 protected:
  KeyDispatch() {
    state.runAction = [this](const std::function<void()>& action) {
      ++actionsRun;
      wasLaunchedByHotkey = launchedByHotkey();
      if (performActions) action();
    };
    state.quit = [this] { ++quits; };
    state.menu = buildMenu();
  }

  void press(const std::string& text) { dispatchKey(state, {Kind::character, text}); }
  void press(Kind kind) { dispatchKey(state, {kind, {}}); }
  void rebuild() {
    state.menu = buildMenu();
    clampCursors(state.menu, state.cursor);
  }
  std::string selectedGroup() { return state.menu[static_cast<std::size_t>(state.cursor.selectedCategoryIndex)].name; }

  MainLoopState state;
  int actionsRun = 0;
  int quits = 0;
  bool wasLaunchedByHotkey = false;
  bool performActions = false;
};

TEST_F(KeyDispatch, UpOnTheFirstGroupLandsOnTheLast) {
  press(Kind::up);
  EXPECT_EQ(selectedGroup(), "Developer");
  EXPECT_FALSE(state.needsFullRedraw);
  press(Kind::down);
  EXPECT_EQ(selectedGroup(), "Delete");
}

TEST_F(KeyDispatch, GroupSeparatorsAreSkipped) {
  press("X");
  EXPECT_EQ(selectedGroup(), "Xcode");
  press(Kind::left);
  press(Kind::down);
  EXPECT_EQ(selectedGroup(), "Directories");
  press(Kind::up);
  EXPECT_EQ(selectedGroup(), "Xcode");
}

TEST_F(KeyDispatch, ItemsWrapRoundAndSkipSeparatorsAndDisabledRows) {
  press("B");
  EXPECT_TRUE(state.cursor.focusOnItems);
  EXPECT_EQ(state.cursor.selectedItemIndex, 0);
  press(Kind::down);
  EXPECT_EQ(state.cursor.selectedItemIndex, 2);
  press(Kind::down);
  EXPECT_EQ(state.cursor.selectedItemIndex, 4);
  press(Kind::down);
  EXPECT_EQ(state.cursor.selectedItemIndex, 0) << "the four rows that need a target are passed";
  press(Kind::up);
  EXPECT_EQ(state.cursor.selectedItemIndex, 4);
}

TEST_F(KeyDispatch, AGroupWithoutSelectableRowsKeepsItsCursorAtTheTop) {
  LightMenuCategory category;
  category.name = "Empty";
  category.items = {{.label = "off", .action = [] {}, .hotkey = {}, .enabled = false}};
  state.menu = {category};
  state.cursor = {.focusOnItems = true};
  press(Kind::down);
  EXPECT_EQ(state.cursor.selectedItemIndex, 0);
}

TEST_F(KeyDispatch, ANewGroupStartsOnItsFirstSelectableRow) {
  press(Kind::right);
  press(Kind::down);
  EXPECT_NE(state.cursor.selectedItemIndex, 0);
  press(Kind::left);
  press(Kind::down);
  EXPECT_EQ(selectedGroup(), "Build & Run");
  EXPECT_EQ(state.cursor.selectedItemIndex, 0);
}

TEST_F(KeyDispatch, EnterRunsTheRightPanesRowFromEitherPane) {
  EXPECT_FALSE(state.cursor.focusOnItems);
  press(Kind::enter);
  EXPECT_EQ(actionsRun, 1);
  EXPECT_TRUE(state.needsFullRedraw);
  EXPECT_FALSE(wasLaunchedByHotkey);
}

TEST_F(KeyDispatch, EnterOnASeparatorDoesNothing) {
  state.cursor.selectedItemIndex = 1;
  press(Kind::enter);
  state.cursor.selectedItemIndex = 99;
  press(Kind::enter);
  EXPECT_EQ(actionsRun, 0);
  EXPECT_FALSE(state.needsFullRedraw);
}

TEST_F(KeyDispatch, ADigitRunsItsRowWithoutAskingEvenWhereItIsDisabled) {
  press("3");
  EXPECT_EQ(actionsRun, 1);
  EXPECT_TRUE(wasLaunchedByHotkey);
  EXPECT_FALSE(launchedByHotkey());
  EXPECT_EQ(selectedGroup(), "Build & Run");
  EXPECT_EQ(state.cursor.selectedItemIndex, 7);
  EXPECT_TRUE(state.cursor.focusOnItems);
  EXPECT_TRUE(state.needsFullRedraw);
}

TEST_F(KeyDispatch, ADigitWithoutARowDoesNothing) {
  for (const auto* digit : {"7", "8", "9", "0"}) press(digit);
  EXPECT_EQ(actionsRun, 0);
  EXPECT_EQ(state.cursor.selectedCategoryIndex, 0);
}

TEST_F(KeyDispatch, TheLetterMIsMiscInEnglishAndApplicationsInGerman) {
  files.addFile("/Applications/Transporter.app");
  rebuild();
  press("M");
  EXPECT_EQ(selectedGroup(), "Misc");
  setCurrentLanguage("de");
  rebuild();
  press("M");
  EXPECT_EQ(selectedGroup(), "Programme");
  press("N");
  EXPECT_EQ(selectedGroup(), "Sonstiges");
}

TEST_F(KeyDispatch, YNeedsAPhysicalDevice) {
  press("Y");
  EXPECT_EQ(selectedGroup(), "Delete");
  EXPECT_FALSE(state.cursor.focusOnItems);
  selectPhysicalDevice();
  rebuild();
  press("Y");
  EXPECT_EQ(selectedGroup(), "Physical Devices");
}

TEST_F(KeyDispatch, LettersThatAreNoGroupsDoNothing) {
  for (const auto* letter : {"F", "G", "J", "U", "Z", "x", "y", "z", "\xC3\xA4", "?"}) press(letter);
  EXPECT_EQ(selectedGroup(), "Delete");
  EXPECT_EQ(actionsRun, 0);
}

TEST_F(KeyDispatch, EachInlineLetterRunsInTheLanguagesThatKnowIt) {
  const auto runs = [&](const std::string& letter) {
    const int before = actionsRun;
    press(letter);
    return actionsRun > before;
  };
  for (const auto* letter : {"a", "w", "s", "t", "d", "k", "c", "b", "l"}) EXPECT_TRUE(runs(letter)) << letter;
  EXPECT_FALSE(runs("g"));
  setCurrentLanguage("de");
  for (const auto* letter : {"a", "s", "t", "d", "g", "k", "b", "l"}) EXPECT_TRUE(runs(letter)) << letter;
  EXPECT_FALSE(runs("c"));
  EXPECT_FALSE(runs("w"));
}

TEST_F(KeyDispatch, LTogglesTheLanguage) {
  performActions = true;
  press("l");
  EXPECT_EQ(currentLanguage(), "de");
  EXPECT_TRUE(state.needsFullRedraw);
}

TEST_F(KeyDispatch, QAndAnInterruptByteQuit) {
  press("Q");
  press(Kind::ctrlC);
  EXPECT_EQ(quits, 2);
  press("q");
  EXPECT_EQ(quits, 2);
}

TEST_F(KeyDispatch, EscapeAndUnknownKeysDoNothing) {
  press(Kind::escape);
  press(Kind::unknown);
  EXPECT_FALSE(state.needsFullRedraw);
  EXPECT_EQ(quits, 0);
}

TEST_F(KeyDispatch, HelpShowsTheGroupOrTheRowByTheFocus) {
  press("h");
  EXPECT_TRUE(state.menuHelpOpen);
  EXPECT_EQ(state.menuHelpEntry.title, "Delete");
  press("x");
  EXPECT_FALSE(state.menuHelpOpen);
  press(Kind::right);
  press("H");
  EXPECT_EQ(state.menuHelpEntry.title, "Show All Directories");
}

TEST_F(KeyDispatch, TheHelpBoxTakesAllKeys) {
  press("h");
  press(Kind::down);
  press(Kind::down);
  EXPECT_EQ(state.menuHelpScroll, 2);
  for (int i = 0; i < 3; ++i) press(Kind::up);
  EXPECT_EQ(state.menuHelpScroll, 0);
  press(" ");
  EXPECT_FALSE(state.viewSwitchOverlayOpen);
  press("W");
  press("Q");
  press("3");
  press(Kind::ctrlC);
  press(Kind::escape);
  EXPECT_TRUE(state.menuHelpOpen);
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
  EXPECT_EQ(quits + actionsRun, 0);
  press(Kind::down);
  press(Kind::enter);
  EXPECT_FALSE(state.menuHelpOpen);
  EXPECT_EQ(state.menuHelpScroll, 0);
  press("h");
  press("X");
  EXPECT_FALSE(state.menuHelpOpen);
  EXPECT_EQ(selectedGroup(), "Delete") << "X closed the box and didn't jump";
}

TEST_F(KeyDispatch, SpaceOpensTheViewSwitchBoxWhichTakesAllKeys) {
  press(" ");
  EXPECT_TRUE(state.viewSwitchOverlayOpen);
  EXPECT_TRUE(state.needsFullRedraw);
  for (const auto* key : {"Q", "3", "W", " ", "h"}) {
    press(key);
    EXPECT_TRUE(state.viewSwitchOverlayOpen) << key;
    EXPECT_FALSE(state.needsFullRedraw);
  }
  EXPECT_EQ(quits + actionsRun, 0);
  for (const auto& close : {RawKey{Kind::character, "x"}, RawKey{Kind::character, "X"}, RawKey{Kind::escape, {}}}) {
    state.viewSwitchOverlayOpen = true;
    dispatchKey(state, close);
    EXPECT_FALSE(state.viewSwitchOverlayOpen);
    EXPECT_TRUE(state.needsFullRedraw);
  }
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
}

TEST_F(KeyDispatch, TheViewSwitchBoxLeadsToTheDirectoriesAndBack) {
  press(" ");
  press("2");
  EXPECT_EQ(state.activeView, AppViewMode::directory);
  EXPECT_FALSE(state.viewSwitchOverlayOpen);
  press(" ");
  press("1");
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
}

TEST_F(KeyDispatch, WAndAOpenTheDirectoryViewAndXLeavesIt) {
  press("W");
  EXPECT_EQ(state.activeView, AppViewMode::directory);
  EXPECT_TRUE(state.needsFullRedraw);
  press("W");
  EXPECT_FALSE(state.needsFullRedraw) << "it is there already";
  press("X");
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
  EXPECT_TRUE(state.needsFullRedraw);
  press("A");
  EXPECT_EQ(state.activeView, AppViewMode::directory);
  EXPECT_EQ(directoryAppMode(), DirectoryAppMode::normal);
}

TEST_F(KeyDispatch, TheDirectoryViewQuitsAndTogglesTheLanguage) {
  press("W");
  press("Q");
  press(Kind::ctrlC);
  EXPECT_EQ(quits, 2);
  press("l");
  EXPECT_EQ(currentLanguage(), "de");
  EXPECT_TRUE(state.needsFullRedraw);
}

TEST_F(KeyDispatch, AHeldSpaceCopiesTheCurrentFolderOfTheDirectoryView) {
  SpaceHold::TimePoint now{};
  state.now = [&now] { return now; };
  const TypedInput noInput("");
  installDirectoryViewHost(
      {.launchDirectory = "/", .drawFrame = {}, .drawHeader = {}, .pause = [&now](auto time) { now += time; }});
  directoryViewState().isPrepared = false;
  press("W");
  const auto space = [&](int pause) {
    now += std::chrono::milliseconds(pause);
    press(" ");
  };
  space(1000);
  EXPECT_TRUE(state.viewSwitchOverlayOpen) << "a short press switches the view at once";
  space(400);
  space(30);
  EXPECT_TRUE(state.viewSwitchOverlayOpen);
  EXPECT_TRUE(runner.commands.empty());
  space(30);
  EXPECT_FALSE(state.viewSwitchOverlayOpen);
  EXPECT_TRUE(state.needsFullRedraw);
  EXPECT_EQ(runner.commands, std::vector<std::string>{"printf '%s' '/' | pbcopy"});
  for (int i = 0; i < 20; ++i) space(30);
  EXPECT_FALSE(state.viewSwitchOverlayOpen) << "the repeats go on until the key is let go";
  EXPECT_EQ(runner.commands.size(), 1U);
  space(1000);
  EXPECT_TRUE(state.viewSwitchOverlayOpen);
  directoryViewState() = {};
}

TEST_F(KeyDispatch, AHeldSpaceIsNothingSpecialInTheMenu) {
  SpaceHold::TimePoint now{};
  state.now = [&now] { return now; };
  for (int i = 0; i < 10; ++i) press(" ");
  EXPECT_TRUE(state.viewSwitchOverlayOpen);
  EXPECT_TRUE(runner.commands.empty());
}

TEST_F(KeyDispatch, TheDirectoryViewsBoxesKeepTheGlobalKeys) {
  press("W");
  for (const auto mode :
       {DirectoryAppMode::help, DirectoryAppMode::confirmDeleteHotkeys, DirectoryAppMode::hotkeyAction,
        DirectoryAppMode::searchOverlay, DirectoryAppMode::filterOverlay}) {
    for (const auto* key : {" ", "X", "Q", "l"}) {
      directoryViewState().appMode = mode;
      press(key);
      EXPECT_FALSE(state.viewSwitchOverlayOpen) << key;
      EXPECT_EQ(state.activeView, AppViewMode::directory) << key;
      EXPECT_EQ(quits, 0) << key;
      EXPECT_EQ(currentLanguage(), "en") << key;
    }
  }
  directoryViewState() = {};
}

TEST_F(KeyDispatch, XEndsTheResultsOfASearchBeforeItLeavesTheView) {
  press("W");
  for (const auto mode : {DirectoryAppMode::searchResults, DirectoryAppMode::filterResults}) {
    directoryViewState().appMode = mode;
    press("X");
    EXPECT_EQ(state.activeView, AppViewMode::directory);
  }
  directoryViewState().appMode = DirectoryAppMode::normal;
  press("X");
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
  directoryViewState() = {};
}

TEST_F(KeyDispatch, TheGitViewHandsItsKeysOnAndQuits) {
  state.activeView = AppViewMode::git;
  press("Q");
  press(Kind::ctrlC);
  EXPECT_EQ(quits, 2);
  press("3");
  EXPECT_EQ(actionsRun, 0);
  press("X");
  EXPECT_EQ(state.activeView, AppViewMode::halyard);
}

TEST_F(KeyDispatch, UnderABoxOfTheGitViewEveryKeyIsTheViews) {
  state.activeView = AppViewMode::git;
  press("c");
  for (const auto* key : {"Q", " ", "X", "W"}) press(key);
  press(Kind::ctrlC);
  EXPECT_EQ(GitView::state().commitMessage, "Q XW");
  EXPECT_EQ(quits, 0);
  EXPECT_FALSE(state.viewSwitchOverlayOpen);
  EXPECT_EQ(state.activeView, AppViewMode::git);
  press(Kind::escape);
  press("Q");
  EXPECT_EQ(quits, 1);
}

TEST_F(KeyDispatch, CursorsComeBackIntoAMenuThatShrank) {
  selectSimulator();
  rebuild();
  state.cursor.selectedCategoryIndex = static_cast<int>(state.menu.size()) - 1;
  state.cursor.selectedItemIndex = 10;
  setSelectedDevice({});
  rebuild();
  EXPECT_EQ(selectedGroup(), "Developer");
  EXPECT_EQ(state.cursor.selectedItemIndex, 10);
  state.cursor.selectedCategoryIndex = 4;  // the rule below Xcode
  state.cursor.selectedItemIndex = 3;
  clampCursors(state.menu, state.cursor);
  EXPECT_EQ(selectedGroup(), "Delete");
  EXPECT_EQ(state.cursor.selectedItemIndex, 3);
}

TEST_F(KeyDispatch, ACursorOnASeparatorMovesToTheFirstSelectableRow) {
  state.cursor.selectedItemIndex = 1;
  clampCursors(state.menu, state.cursor);
  EXPECT_EQ(state.cursor.selectedItemIndex, 0);
  Menu empty;
  MenuCursor cursor{.selectedCategoryIndex = 5, .selectedItemIndex = 5};
  clampCursors(empty, cursor);
  EXPECT_EQ(cursor.selectedCategoryIndex, 0);
}

TEST_F(KeyDispatch, ALongGroupScrollsWithItsCursor) {
  press("I");
  for (int i = 0; i < 13; ++i) press(Kind::down);
  clampCursors(state.menu, state.cursor);
  EXPECT_GT(state.cursor.itemScrollOffset, 0);
  press(Kind::left);
  press(Kind::up);
  clampCursors(state.menu, state.cursor);
  EXPECT_EQ(state.cursor.itemScrollOffset, 0);
}

}  // namespace
}  // namespace halyard
