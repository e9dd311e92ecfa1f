#include "halyard/browser/directory_search.hpp"

#include <atomic>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/browser/directory_walk_testing.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"

namespace halyard {
namespace {

using Kind = RawKey::Kind;
using Mode = DirectoryAppMode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DirectorySearch : public WalkTest {
 protected:
  static const std::string& input() { return view().searchState->inputText; }

  /// A tree with what the rules tell apart.
  void makeTree() const {
    folder.write("Notes/foo.txt", "");
    folder.write("Notes/deep/Food.swift", "");
    folder.write("Notes/seafood/menu.txt", "");
    folder.write("foo", "");
    folder.write("FooKit.xcodeproj/foo.pbxproj", "");
    folder.write("foo file.md", "");
    folder.write("other.txt", "");
  }

  static std::string drawn(void (*draw)()) {
    CapturedOutput output;
    draw();
    return stripAnsi(output.text());
  }
};

TEST_F(DirectorySearch, TheOverlayOpensEmptyAndRemembersTheList) {
  makeTree();
  openAt();
  press(Kind::down);
  press("s");
  EXPECT_EQ(view().appMode, Mode::searchOverlay);
  EXPECT_EQ(input(), "");
  EXPECT_EQ(view().searchState->savedListState.selectedIndex, 1);
  EXPECT_EQ(view().searchState->savedListState.entries, list().entries);
}

TEST_F(DirectorySearch, WhatIsTypedIsKeptInLowerCase) {
  openAt();
  press("s");
  press("Foo");
  EXPECT_EQ(input(), "foo");
  press(" 1.-_*?");
  EXPECT_EQ(input(), "foo 1.-_*?");
}

TEST_F(DirectorySearch, OtherCharactersAreDropped) {
  openAt();
  press("s");
  press("a/\\$(){}[]'\"`;&|<>~!@#%^+=,:\t\x01\x1c");
  EXPECT_EQ(input(), "a");
}

TEST_F(DirectorySearch, BackspaceRemovesTheLastCharacterInEitherSpelling) {
  openAt();
  press("s");
  press("abc\x7f");
  EXPECT_EQ(input(), "ab");
  press("\x08");
  EXPECT_EQ(input(), "a");
  press("\x7f\x7f\x7f");
  EXPECT_EQ(input(), "");
}

TEST_F(DirectorySearch, AnUmlautArrivesInTwoPiecesAndIsOneCharacter) {
  openAt();
  press("s");
  typeBytes("Über");
  EXPECT_EQ(input(), "über");
  typeBytes("\x7f\x7f\x7f\x7f");
  EXPECT_EQ(input(), "");
  typeBytes("日本é");
  EXPECT_EQ(input(), "日本é");
  typeBytes("\x7f\x7f");
  EXPECT_EQ(input(), "日");
}

TEST_F(DirectorySearch, CharactersBeyondAsciiThatAreNoLettersAreDropped) {
  openAt();
  press("s");
  typeBytes("a§🎉€b");
  EXPECT_EQ(input(), "ab");
}

TEST_F(DirectorySearch, ALetterThatComesAsOneScalarIsTaken) {
  openAt();
  press("s");
  handleDirectoryKey({Kind::character, "Ä"});
  press("x");
  EXPECT_EQ(input(), "äx");
}

TEST_F(DirectorySearch, BytesThatAreNoCharacterDoNoHarm) {
  openAt();
  press("s");
  typeBytes("a\x80\xbf\xff\xfe\xf0\xc3");
  press("b");
  typeBytes("\xe2\x82");
  press(Kind::up);
  press("c\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f");
  EXPECT_EQ(input(), "");
}

TEST_F(DirectorySearch, LettersThatWorkElsewhereAreTextInTheOverlay) {
  openAt();
  press("s");
  press("QXWLhds019");
  EXPECT_EQ(input(), "qxwlhds019");
  EXPECT_EQ(view().appMode, Mode::searchOverlay);
}

TEST_F(DirectorySearch, ArrowsCtrlCAndUnknownKeysDoNothingInTheOverlay) {
  makeTree();
  openAt();
  press("s");
  press("foo");
  for (const Kind kind : {Kind::up, Kind::down, Kind::left, Kind::right, Kind::ctrlC, Kind::unknown}) press(kind);
  EXPECT_EQ(view().appMode, Mode::searchOverlay);
  EXPECT_EQ(input(), "foo");
  EXPECT_EQ(list().selectedIndex, 0);
}

TEST_F(DirectorySearch, EnterWithNothingOrBlanksDoesNothing) {
  openAt();
  press("s");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::searchOverlay);
  press("  ");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::searchOverlay);
}

TEST_F(DirectorySearch, EscapeLeavesTheOverlay) {
  makeTree();
  openAt();
  const auto before = names();
  press("s");
  press("foo");
  press(Kind::escape);
  EXPECT_EQ(view().appMode, Mode::normal);
  EXPECT_FALSE(view().searchState);
  EXPECT_EQ(names(), before);
}

TEST_F(DirectorySearch, FindsFilesByTheirBeginningAndFoldersByAnyPart) {
  makeTree();
  openAt();
  search("Foo");
  EXPECT_THAT(names(), ElementsAre("foo file.md", "foo.txt", "Food.swift", "FooKit.xcodeproj", "seafood"));
  EXPECT_EQ(view().searchState->expandedPattern, "foo*.*");
  EXPECT_EQ(list().selectedIndex, 0);
  EXPECT_EQ(list().scrollOffset, 0);
  EXPECT_EQ(list().currentPath, folder.at());
}

TEST_F(DirectorySearch, APatternIsUsedForFilesAndFoldersAsItStands) {
  makeTree();
  openAt();
  search("*foo*");
  EXPECT_THAT(names(), ElementsAre("foo", "foo file.md", "foo.txt", "Food.swift", "FooKit.xcodeproj", "seafood"));
  press("x");
  folder.makeFolder("abc");
  folder.write("Another", "");
  search("a*");
  EXPECT_THAT(names(), ElementsAre("abc", "Another"));
}

TEST_F(DirectorySearch, BlanksRoundTheTextDoNotCount) {
  makeTree();
  openAt();
  search("  seafood ");
  EXPECT_THAT(names(), ElementsAre("seafood"));
  EXPECT_EQ(view().searchState->expandedPattern, "seafood*.*");
}

TEST_F(DirectorySearch, AProjectIsAProjectAndItsContentsAreNotLookedAt) {
  makeTree();
  folder.write("Work.XCWORKSPACE/foo.txt", "");
  folder.write("fake.xcodeproj", "a file");
  openAt();
  search("*.xc*");
  EXPECT_THAT(names(), ElementsAre("fake.xcodeproj", "FooKit.xcodeproj", "Work.XCWORKSPACE"));
  for (const DirectoryEntry& entry : list().entries) EXPECT_EQ(entry.kind, DirectoryEntry::Kind::xcodeProject);
  press("x");
  search("*.pbxproj");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(DirectorySearch, FindsNamesOfAnyKind) {
  folder.write("a/Übersicht.md", "");
  folder.write(
      "b/U\xcc\x88"
      "bersicht.md",
      "");
  folder.write("c/🎉 party.md", "");
  folder.write("d/new\nline.md", "");
  folder.write("e/\x1b]0;title\a.md", "");
  folder.write("f/\xff\xfe.md", "");
  openAt();
  search("*.md");
  EXPECT_EQ(names().size(), 6U);
  press("x");
  press("s");
  typeBytes("ÜBER");
  press(Kind::enter);
  pollToTheEnd();
  EXPECT_THAT(names(), ElementsAre("Übersicht.md"));
}

TEST_F(DirectorySearch, NothingFoundIsAnEmptyListThatLeadsBack) {
  makeTree();
  openAt();
  const auto before = names();
  search("nowhere");
  EXPECT_THAT(names(), IsEmpty());
  for (const Kind kind : {Kind::up, Kind::down, Kind::right, Kind::enter}) press(kind);
  press("dae0");
  EXPECT_EQ(view().appMode, Mode::searchResults);
  press(Kind::escape);
  EXPECT_EQ(names(), before);
}

TEST_F(DirectorySearch, XCancelsARunningWalk) {
  makeTree();
  openAt();
  press(Kind::down);
  press("s");
  press("foo");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::searching);
  // One that would never end by itself takes its place.
  std::atomic<bool> wasCancelled = false;
  directoryWalkWorker().start([&](const std::atomic<bool>& isCancelled) {
    while (!isCancelled) std::this_thread::yield();
    wasCancelled = true;
    return std::vector<DirectoryEntry>{};
  });
  {
    const TypedInput input("qwd \n\x1b[A");
    pollSearch();
    EXPECT_EQ(view().appMode, Mode::searching) << "other keys are dropped";
  }
  const TypedInput input("X");
  pollSearch();
  EXPECT_EQ(view().appMode, Mode::normal);
  EXPECT_FALSE(view().searchState);
  EXPECT_EQ(list().selectedIndex, 1);
  while (directoryWalkWorker().isRunning()) std::this_thread::yield();
  EXPECT_TRUE(wasCancelled);
}

TEST_F(DirectorySearch, TheSpinnerHasTenPictures) {
  openAt();
  press("s");
  press("foo");
  startSearch();
  directoryWalkWorker().start([](const std::atomic<bool>& isCancelled) {
    while (!isCancelled) std::this_thread::yield();
    return std::vector<DirectoryEntry>{};
  });
  for (int step = 1; step <= 11; ++step) {
    pollSearch();
    EXPECT_EQ(view().searchState->spinnerFrame, step % 10);
  }
}

TEST_F(DirectorySearch, RightEntersAFolderAndShowsWhatTheTextLetsThrough) {
  makeTree();
  folder.write("seafood/foo.md", "");
  folder.write("seafood/none.md", "");
  folder.write("seafood/a foo folder/x", "");
  openAt();
  search("foo");
  select("seafood");
  const std::string inner = selectedDirectoryEntry()->url;
  press(Kind::right);
  EXPECT_EQ(view().appMode, Mode::searchResults);
  EXPECT_EQ(list().currentPath, inner);
  if (inner == folder.at("seafood")) {
    EXPECT_THAT(names(), ElementsAre("..", "a foo folder", "foo.md"));
  } else {
    EXPECT_THAT(names(), ElementsAre(".."));
  }
  EXPECT_EQ(list().selectedIndex, 0);
}

TEST_F(DirectorySearch, LeftGoesToTheParentByTheSameText) {
  makeTree();
  openAt();
  search("foo");
  select("seafood");
  press(Kind::enter);
  EXPECT_EQ(list().currentPath, folder.at("Notes/seafood"));
  press(Kind::left);
  EXPECT_EQ(list().currentPath, folder.at("Notes"));
  EXPECT_THAT(names(), ElementsAre("..", "seafood", "foo.txt"));
  EXPECT_EQ(selectedName(), "seafood");
  press(Kind::left);
  EXPECT_EQ(list().currentPath, folder.at());
  EXPECT_THAT(names(), ElementsAre("..", "foo file.md", "FooKit.xcodeproj"));
  EXPECT_EQ(selectedName(), "..") << "the folder that was left isn't among the matches";
  press(Kind::right);
  EXPECT_EQ(list().currentPath, folder.path().parent_path().string()) << "the parent's entry is as left";
}

TEST_F(DirectorySearch, LeftAtTheRootDoesNothing) {
  openAt();
  search("nothing at all");
  list().currentPath = "/";
  list().entries = {{"a", "/a", DirectoryEntry::Kind::file}};
  press(Kind::left);
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(DirectorySearch, FilesAndProjectsAreOpened) {
  makeTree();
  openAt();
  search("foo");
  select("foo.txt");
  context.runner.expect("/usr/bin/open '" + folder.at("Notes/foo.txt") + "'");
  press(Kind::right);
  EXPECT_EQ(lastToast(), "File opened|" + folder.at("Notes/foo.txt"));
  select("FooKit.xcodeproj");
  context.runner.expect("/usr/bin/open '" + folder.at("FooKit.xcodeproj") + "'");
  press(Kind::enter);
  EXPECT_EQ(view().appMode, Mode::searchResults);
}

TEST_F(DirectorySearch, EscapeAndXEndIt) {
  makeTree();
  openAt();
  press(Kind::down);
  const auto before = names();
  for (const char* way : {"x", "X", ""}) {
    search("foo");
    press(Kind::down);
    *way == '\0' ? press(Kind::escape) : press(way);
    EXPECT_EQ(view().appMode, Mode::normal);
    EXPECT_FALSE(view().searchState);
    EXPECT_EQ(names(), before);
    EXPECT_EQ(list().selectedIndex, 1);
    EXPECT_EQ(list().currentPath, folder.at());
  }
}

TEST_F(DirectorySearch, DGoesToTheFolderOfTheHit) {
  makeTree();
  openAt();
  for (const char* letter : {"d", "D"}) {
    goToDirectoryRoot();
    search("food");
    select("Food.swift");
    press(letter);
    EXPECT_EQ(view().appMode, Mode::normal);
    EXPECT_FALSE(view().searchState);
    EXPECT_EQ(list().currentPath, folder.at("Notes/deep"));
    EXPECT_THAT(names(), ElementsAre("..", "Food.swift"));
    EXPECT_EQ(selectedName(), "Food.swift");
  }
}

TEST_F(DirectorySearch, LettersOfTheBrowserThatWouldLeaveTheHitsAreIgnored) {
  makeTree();
  openAt();
  view().hotkeys[1] = {1, "/"};
  search("foo");
  const auto before = names();
  press("rRyYzZsSwW");
  EXPECT_EQ(view().appMode, Mode::searchResults);
  EXPECT_EQ(names(), before);
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::browser);
  EXPECT_THAT(toasts, IsEmpty());
}

TEST_F(DirectorySearch, MovingAndOtherCharactersActAsInTheBrowser) {
  makeTree();
  openAt();
  search("foo");
  press(Kind::down);
  EXPECT_EQ(list().selectedIndex, 1);
  press(Kind::up);
  press(Kind::up);
  EXPECT_EQ(list().selectedIndex, 0);
  press("e");
  EXPECT_EQ(list().selectedIndex, 4);
  press("a");
  EXPECT_EQ(list().selectedIndex, 0);
  press(Kind::ctrlC);
  press(Kind::unknown);
  press("h");
  EXPECT_EQ(view().appMode, Mode::help);
  press("x");
  EXPECT_EQ(view().appMode, Mode::searchResults);
  press("c");
  EXPECT_EQ(view().appMode, Mode::confirmDeleteHotkeys);
  press("n");
  EXPECT_EQ(view().appMode, Mode::searchResults);
  context.runner.expect("/usr/bin/open '" + folder.at() + "'");
  press("f");
  EXPECT_EQ(lastToast(), "Finder opened|" + folder.at());
}

TEST_F(DirectorySearch, AmongFavoritesTheyComeBack) {
  makeTree();
  openAt();
  view().hotkeys[1] = {1, folder.at("Notes")};
  press("w");
  search("foo");
  EXPECT_THAT(names(), ElementsAre("foo.txt", "Food.swift", "seafood"));
  view().hotkeys[4] = {4, "/elsewhere"};
  press("x");
  EXPECT_THAT(names(), ElementsAre("[1] " + folder.at("Notes"), "[4] /elsewhere"));
  EXPECT_EQ(view().contentViewMode, DirectoryContentViewMode::favorites);
}

TEST_F(DirectorySearch, AFavoriteThatIsAFileHasNoHits) {
  makeTree();
  openAt();
  view().hotkeys[1] = {1, folder.at("foo")};
  press("w");
  search("foo");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(DirectorySearch, AmongTheHitsOfAFilterTheseComeBack) {
  makeTree();
  openAt();
  filter({2});
  EXPECT_THAT(names(), ElementsAre("Food.swift"));
  press("s");
  press(Kind::escape);
  EXPECT_EQ(view().appMode, Mode::filterResults);
  search("menu");
  EXPECT_THAT(names(), ElementsAre("menu.txt"));
  press("x");
  EXPECT_EQ(view().appMode, Mode::filterResults);
  EXPECT_THAT(names(), ElementsAre("Food.swift"));
  press("x");
  EXPECT_EQ(view().appMode, Mode::normal);
}

TEST(MatchEntries, TheParentAlwaysStays) {
  using EntryKind = DirectoryEntry::Kind;
  const std::vector<DirectoryEntry> entries = {{"..", "/", EntryKind::parent},
                                               {"a foo", "/x/a foo", EntryKind::directory},
                                               {"bar", "/x/bar", EntryKind::directory},
                                               {"a foo.txt", "/x/a foo.txt", EntryKind::file},
                                               {"foo.txt", "/x/foo.txt", EntryKind::file},
                                               {"My Foo.xcodeproj", "/x/My Foo.xcodeproj", EntryKind::xcodeProject},
                                               {"Bar.xcodeproj", "/x/Bar.xcodeproj", EntryKind::xcodeProject}};
  const auto matching = [&](std::string_view text) {
    std::vector<std::string> names;
    for (const DirectoryEntry& entry : matchEntries(entries, text)) names.push_back(entry.name);
    return names;
  };
  EXPECT_THAT(matching("foo"), ElementsAre("..", "a foo", "foo.txt", "My Foo.xcodeproj"));
  EXPECT_THAT(matching("*.x*"), ElementsAre("..", "My Foo.xcodeproj", "Bar.xcodeproj"));
  EXPECT_THAT(matching("zzz"), ElementsAre(".."));
  EXPECT_EQ(matching("").size(), entries.size());
}

TEST_F(DirectorySearch, TheBoxShowsTextCursorAndPath) {
  openAt();
  press("s");
  press("foo");
  const std::string box = drawn(drawSearchOverlay);
  EXPECT_THAT(box, HasSubstr(" Search "));
  EXPECT_THAT(box, HasSubstr("Wildcards (*) allowed. Without *, the input is auto-expanded."));
  EXPECT_THAT(box, HasSubstr("Input: foo█"));
  EXPECT_THAT(box, HasSubstr("Path: " + folder.at()));
  EXPECT_THAT(box, HasSubstr("[ESC] Cancel"));
  EXPECT_THAT(box, HasSubstr("[RETURN] Search"));
}

TEST_F(DirectorySearch, TheBoxKeepsTheEndOfWhatIsTooLong) {
  openAt();
  list().currentPath = "/" + std::string(100, 'p') + "\x1b[31m/end";
  press("s");
  press(std::string(100, 'a') + "zz");
  const std::string box = drawn(drawSearchOverlay);
  EXPECT_THAT(box, HasSubstr("azz█ "));
  EXPECT_THAT(box, HasSubstr("/end "));
  EXPECT_THAT(box, HasSubstr("Path: …p"));
  EXPECT_THAT(box, Not(HasSubstr("\x1b[31m")));
}

TEST_F(DirectorySearch, TheHomeFolderIsATilde) {
  openAt();
  list().currentPath = AppDependencies::current().fileSystemClient->homeDirectoryPath() + "/Work";
  press("s");
  EXPECT_THAT(drawn(drawSearchOverlay), HasSubstr("Path: ~/Work "));
}

TEST_F(DirectorySearch, TheBoxesSpeakGerman) {
  setCurrentLanguage("de");
  openAt();
  press("s");
  EXPECT_THAT(drawn(drawSearchOverlay), HasSubstr("Eingabe: █"));
  EXPECT_THAT(drawn(drawSearchOverlay), HasSubstr("[ESC] Abbrechen"));
  EXPECT_THAT(drawn(drawSearchRunning), HasSubstr("SUCHE LÄUFT"));
}

TEST_F(DirectorySearch, TheRunningBoxTellsHowToLeave) {
  openAt();
  press("s");
  const std::string box = drawn(drawSearchRunning);
  EXPECT_THAT(box, HasSubstr("SEARCH RUNNING"));
  EXPECT_THAT(box, HasSubstr("⠋  Searching …"));
  EXPECT_THAT(box, HasSubstr("X: Cancel"));
}

}  // namespace
}  // namespace halyard
