#include "halyard/browser/directory_hotkeys.hpp"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "core/text_file.hpp"
#include "halyard/browser/browser_testing.hpp"
#include "halyard/browser/directory_hotkey_file.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

namespace fs = std::filesystem;
using Kind = RawKey::Kind;
using Mode = DirectoryAppMode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class DirectoryHotkeys : public BrowserTest {
 protected:
  DirectoryHotkeys() { forget(); }
  ~DirectoryHotkeys() override { forget(); }

  static void forget() {
    const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
    std::vector<fs::path> left;
    for (const auto& item : fs::directory_iterator(home)) {
      if (item.path().filename().string().starts_with(".capstanlight_directory_hotkeys")) left.push_back(item.path());
    }
    for (const fs::path& path : left) fs::remove_all(path);
  }

  static void writeFile(const std::string& text) { ASSERT_TRUE(replaceTextFile(hotkeyFilePath(), text)); }
  static std::string fileText() { return readTextFile(hotkeyFilePath()).value_or("none"); }
  static std::map<int, HotkeySlot> saved() { return readHotkeyFile(fileText()).slots; }

  /// Calls up slot 1 with this path and answers.
  static void answer(const std::string& path, const char* letter) {
    view().hotkeys[1] = {1, path};
    press("!");
    ASSERT_EQ(view().appMode, Mode::hotkeyAction);
    press(letter);
  }
};

TEST_F(DirectoryHotkeys, ADigitSavesTheSelectedEntry) {
  folder.write("a.txt", "");
  openAt();
  select("a.txt");
  for (int slot = 0; slot <= 9; ++slot) {
    press(std::to_string(slot));
    EXPECT_EQ(lastToast(), "Saved to slot " + std::to_string(slot) + "|" + folder.at("a.txt"));
  }
  EXPECT_EQ(saved().size(), 10U);
  EXPECT_EQ(saved(), view().hotkeys);
}

TEST_F(DirectoryHotkeys, ASecondSavingReplacesTheFirst) {
  folder.write("a.txt", "");
  openAt();
  press("3");
  select("a.txt");
  press("3");
  EXPECT_THAT(saved(), ElementsAre(Pair(3, HotkeySlot{3, folder.at("a.txt")})));
}

TEST_F(DirectoryHotkeys, WithoutAnEntryNothingIsSaved) {
  openAt();
  list().entries.clear();
  press("3");
  EXPECT_THAT(toasts, IsEmpty());
  EXPECT_EQ(fileText(), "none");
}

TEST_F(DirectoryHotkeys, TheFileIsReadOnTheFirstDisplay) {
  writeFile(R"([{"slot": 7, "path": "/x"}, {"slot": 12, "path": "/twelve"}, {"slot": -1, "path": "/minus"}])");
  openAt();
  press("w");
  EXPECT_THAT(names(), ElementsAre("[-1] /minus", "[7] /x", "[12] /twelve"));
  press("w");
  press("3");
  EXPECT_THAT(saved(), ElementsAre(Pair(-1, HotkeySlot{-1, "/minus"}), Pair(3, testing::_),
                                   Pair(7, HotkeySlot{7, "/x"}), Pair(12, HotkeySlot{12, "/twelve"})));
}

TEST_F(DirectoryHotkeys, AMissingEmptyOrBrokenFileGivesNoneAndSaysNothing) {
  for (const char* text : {"", "{broken", "[]"}) {
    writeFile(text);
    loadHotkeys();
    EXPECT_THAT(view().hotkeys, IsEmpty()) << text;
  }
  fs::remove(hotkeyFilePath());
  loadHotkeys();
  EXPECT_THAT(view().hotkeys, IsEmpty());
  fs::create_directory(hotkeyFilePath());
  loadHotkeys();
  EXPECT_THAT(view().hotkeys, IsEmpty());
  EXPECT_THAT(toasts, IsEmpty());
}

TEST_F(DirectoryHotkeys, WhatADamagedFileHeldIsKeptBesideTheNewOne) {
  const std::string damaged = R"([{"slot":1,"path":"/precious"},{"slot":"two","path":"/x"}])";
  writeFile(damaged);
  openAt();
  press("3");
  EXPECT_EQ(saved().size(), 2U);
  EXPECT_EQ(readTextFile(hotkeyFilePath() + ".damaged-1"), damaged);
  press("4");
  EXPECT_FALSE(fs::exists(hotkeyFilePath() + ".damaged-2")) << "the new file isn't damaged";
  writeFile("{");
  press("5");
  EXPECT_EQ(readTextFile(hotkeyFilePath() + ".damaged-2"), "{");
}

TEST_F(DirectoryHotkeys, AReadOnlyFileStaysAsItIsAndSavingFailsSilently) {
  for (const std::string text : {R"([{"slot":1,"path":"/a"}])", "{damaged"}) {
    writeFile(text);
    fs::permissions(hotkeyFilePath(), fs::perms::owner_read);
    loadHotkeys();
    openAt();
    press("3");
    EXPECT_TRUE(lastToast().starts_with("Saved to slot 3|"));
    EXPECT_EQ(fileText(), text);
    EXPECT_FALSE(fs::exists(hotkeyFilePath() + ".damaged-1"));
    fs::remove(hotkeyFilePath());
  }
}

TEST_F(DirectoryHotkeys, AFileBehindALinkStaysBehindIt) {
  const std::string target = folder.write("dotfiles/hotkeys.json", "[]");
  fs::create_symlink(target, hotkeyFilePath());
  openAt();
  press("3");
  EXPECT_TRUE(fs::is_symlink(hotkeyFilePath()));
  EXPECT_EQ(readHotkeyFile(*readTextFile(target)).slots.size(), 1U);
}

TEST_F(DirectoryHotkeys, ShiftedDigitsOfAGermanKeyboardCallUpTheirSlots) {
  openAt();
  for (int slot = 0; slot <= 9; ++slot) view().hotkeys[slot] = {slot, "/p"};
  const std::vector<std::string> keys = {"=", "!", "\"", "§", "$", "%", "&", "/", "(", ")"};
  for (int slot = 0; slot <= 9; ++slot) {
    handleDirectoryKey({Kind::character, keys[static_cast<std::size_t>(slot)]});
    EXPECT_EQ(view().appMode, Mode::hotkeyAction);
    EXPECT_EQ(view().pendingHotkeySlot, slot);
    press(Kind::escape);
    EXPECT_EQ(view().appMode, Mode::normal);
  }
}

TEST_F(DirectoryHotkeys, TheParagraphSignAsATerminalSendsItCallsUpItsSlot) {
  openAt();
  view().hotkeys[3] = {3, "/p"};
  handleDirectoryKey({Kind::character, "\xc3\x82"});  // the byte C2 as the scalar of its value
  handleDirectoryKey({Kind::character, "\xc2\xa7"});
  EXPECT_EQ(view().pendingHotkeySlot, 3);
}

TEST_F(DirectoryHotkeys, AnEmptySlotSaysSo) {
  openAt();
  press("%");
  EXPECT_EQ(lastToast(), "Slot empty|[5]");
  EXPECT_EQ(view().appMode, Mode::normal);
}

TEST_F(DirectoryHotkeys, ASlotThatBecameEmptySaysSoToo) {
  openAt();
  for (const char* letter : {"t", "f", "d", "c"}) {
    view().hotkeys[1] = {1, "/p"};
    press("!");
    view().hotkeys.clear();
    press(letter);
    EXPECT_EQ(lastToast(), "Slot empty|[1]");
  }
  EXPECT_EQ(toasts.size(), 4U);
}

TEST_F(DirectoryHotkeys, AnythingElseLeavesTheQuestion) {
  openAt();
  view().hotkeys[1] = {1, "/p"};
  for (const char* letter : {"x", "1", " ", "y", "Q"}) {
    press("!");
    press(letter);
    EXPECT_EQ(view().appMode, Mode::normal);
    EXPECT_EQ(view().pendingHotkeySlot, std::nullopt);
  }
  for (const Kind kind : {Kind::up, Kind::enter, Kind::escape, Kind::left, Kind::unknown}) {
    press("!");
    press(kind);
    EXPECT_EQ(view().appMode, Mode::normal);
  }
  EXPECT_THAT(toasts, IsEmpty());
}

TEST_F(DirectoryHotkeys, TerminalOpensAtAFolderAndAFileIsOpened) {
  folder.makeFolder("sub");
  folder.write("a.txt", "");
  openAt();
  for (const char* letter : {"t", "T"}) {
    context.runner.expectContaining("do script \"cd \" & quoted form of \"" + folder.at("sub") + "\"");
    answer(folder.at("sub"), letter);
    EXPECT_EQ(lastToast(), "Terminal opened|" + folder.at("sub"));
    context.runner.expect("/usr/bin/open '" + folder.at("a.txt") + "'");
    answer(folder.at("a.txt"), letter);
    EXPECT_EQ(lastToast(), "File opened|" + folder.at("a.txt"));
  }
}

TEST_F(DirectoryHotkeys, FinderOpensAFolderAndAFileIsOpened) {
  folder.makeFolder("sub");
  folder.write("a.txt", "");
  openAt();
  for (const char* letter : {"f", "F"}) {
    context.runner.expect("/usr/bin/open '" + folder.at("sub") + "'");
    answer(folder.at("sub"), letter);
    EXPECT_EQ(lastToast(), "Finder opened|" + folder.at("sub"));
    context.runner.expect("/usr/bin/open '" + folder.at("a.txt") + "'");
    answer(folder.at("a.txt"), letter);
    EXPECT_EQ(lastToast(), "File opened|" + folder.at("a.txt"));
  }
}

TEST_F(DirectoryHotkeys, ALinkToAFolderIsAFolder) {
  folder.makeFolder("sub");
  fs::create_directory_symlink("sub", folder.at("link"));
  openAt();
  context.runner.expect("/usr/bin/open '" + folder.at("link") + "'");
  answer(folder.at("link"), "f");
  EXPECT_EQ(lastToast(), "Finder opened|" + folder.at("link"));
}

TEST_F(DirectoryHotkeys, NavigatingToAFolderShowsIt) {
  folder.write("sub/b.txt", "");
  openAt();
  for (const char* letter : {"d", "D"}) {
    answer(folder.at("sub"), letter);
    EXPECT_EQ(list().currentPath, folder.at("sub"));
    EXPECT_THAT(names(), ElementsAre("..", "b.txt"));
    EXPECT_EQ(list().selectedIndex, 0);
    EXPECT_EQ(lastToast(), "Navigated to path|" + folder.at("sub"));
  }
}

TEST_F(DirectoryHotkeys, NavigatingToAFileSelectsItInItsFolder) {
  folder.write("sub/a.txt", "");
  folder.write("sub/b.txt", "");
  openAt();
  answer(folder.at("sub/b.txt"), "d");
  EXPECT_EQ(list().currentPath, folder.at("sub"));
  EXPECT_EQ(selectedName(), "b.txt");
}

TEST_F(DirectoryHotkeys, NavigatingFromTheFavoritesLeavesThem) {
  folder.write("sub/b.txt", "");
  openAt();
  view().hotkeys[1] = {1, folder.at("sub")};
  press("w");
  press("!");
  press("d");
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
  EXPECT_FALSE(view().isFavoritesListShown);
  EXPECT_EQ(list().currentPath, folder.at("sub"));
}

TEST_F(DirectoryHotkeys, NavigatingToWhatIsGoneShowsItsFolder) {
  folder.write("a.txt", "");
  openAt();
  answer(folder.at("gone"), "d");
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_EQ(list().selectedIndex, 0);
  answer("/no/such/place/at all", "d");
  EXPECT_EQ(list().currentPath, "/no/such/place");
  EXPECT_THAT(names(), ElementsAre(".."));
}

TEST_F(DirectoryHotkeys, CopyingTakesThePathToTheClipboard) {
  openAt();
  for (const char* letter : {"c", "C"}) {
    context.runner.expect("printf '%s' '/it'\\''s' | pbcopy");
    answer("/it's", letter);
    EXPECT_EQ(lastToast(), "Copied to clipboard|/it's");
    EXPECT_EQ(view().lastCopiedPath, "/it's");
  }
}

TEST_F(DirectoryHotkeys, APathOfTheFileIsNeverAnOptionOrAnAddress) {
  openAt();
  context.runner.expect("/usr/bin/open './-aCalculator'");
  answer("-aCalculator", "f");
  context.runner.expect("/usr/bin/open './https://example.invalid'");
  answer("https://example.invalid", "t");
  context.runner.expect("/usr/bin/open './'");
  answer("", "f");
}

TEST_F(DirectoryHotkeys, TheFavoritesAreListedBySlotAndToggled) {
  folder.write("sub/b.txt", "");
  openAt();
  press(Kind::down);
  const auto before = names();
  view().hotkeys = {{12, {12, "/twelve"}}, {0, {0, "/zero"}}, {3, {3, folder.at("sub")}}};
  for (const char* letter : {"w", "W"}) {
    press(letter);
    EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::favorites);
    EXPECT_TRUE(view().isFavoritesListShown);
    EXPECT_THAT(names(), ElementsAre("[0] /zero", "[3] " + folder.at("sub"), "[12] /twelve"));
    for (const DirectoryEntry& entry : list().entries) EXPECT_EQ(entry.kind, DirectoryEntry::Kind::directory);
    EXPECT_EQ(list().selectedIndex, 0);
    EXPECT_EQ(list().currentPath, "/zero");
    press(letter);
    EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
    EXPECT_FALSE(view().isFavoritesListShown);
    EXPECT_EQ(names(), before);
    EXPECT_EQ(list().selectedIndex, 1);
    EXPECT_EQ(list().currentPath, folder.at());
  }
}

TEST_F(DirectoryHotkeys, WithoutHotkeysThereAreNoFavorites) {
  openAt();
  press("w");
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
}

TEST_F(DirectoryHotkeys, FromAFolderBelowAFavoriteTheToggleLeadsBackToTheBrowser) {
  folder.write("sub/b.txt", "");
  openAt();
  const auto before = names();
  view().hotkeys[1] = {1, folder.at("sub")};
  press("w");
  press(Kind::right);
  EXPECT_THAT(names(), ElementsAre("..", "b.txt"));
  EXPECT_FALSE(view().isFavoritesListShown);
  press("w");
  EXPECT_EQ(names(), before);
}

TEST_F(DirectoryHotkeys, WithoutASavedListTheCurrentFolderIsReadAnew) {
  folder.write("a.txt", "");
  openAt();
  view().hotkeys[1] = {1, folder.at()};
  press("w");
  view().savedBrowserState.reset();
  press("w");
  EXPECT_THAT(names(), ElementsAre("..", "a.txt"));
}

TEST_F(DirectoryHotkeys, DeletingAllEmptiesTheFileAndLeavesTheFavorites) {
  folder.write("a.txt", "");
  openAt();
  press("3");
  const auto before = names();
  press("w");
  press("c");
  press("y");
  EXPECT_THAT(view().hotkeys, IsEmpty());
  EXPECT_EQ(fileText(), "[]\n");
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
  EXPECT_EQ(view().appMode, Mode::normal);
  EXPECT_EQ(names(), before);
}

TEST_F(DirectoryHotkeys, TheBoxShowsSlotPathAndActions) {
  openAt();
  view().hotkeys[4] = {4, "/some/\x1b[31mplace"};
  press("$");
  CapturedOutput output;
  drawHotkeyActionOverlay();
  const std::string english = stripAnsi(output.text());
  EXPECT_THAT(english, HasSubstr("Action for slot 4"));
  EXPECT_THAT(english, HasSubstr("Path: /some/␛[31mplace"));
  EXPECT_THAT(english, HasSubstr("T: Open Terminal"));
  EXPECT_THAT(english, HasSubstr("F: Open Finder"));
  EXPECT_THAT(english, HasSubstr("D: Navigate to path"));
  EXPECT_THAT(english, HasSubstr("C: Copy path to clipboard"));
  setCurrentLanguage("de");
  drawHotkeyActionOverlay();
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("Aktion für Slot 4"));
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("D: Zum Pfad wechseln"));
}

}  // namespace
}  // namespace halyard
