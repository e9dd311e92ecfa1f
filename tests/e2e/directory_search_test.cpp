// The search of the directory browser: its box, the running walk, and every key on its hits.
#include <csignal>
#include <filesystem>

#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/e2e/directory_walk_session.hpp"

namespace halyard {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class DirectorySearchAtTheTerminal : public testing::Test {
 protected:
  explicit DirectorySearchAtTheTerminal(
      SessionOptions options = browserOptions({"Notes/foo.txt", "Notes/deep/Food.swift", "seafood/foo.md",
                                               "seafood/bar.md", "FooKit.xcodeproj/foo.pbxproj", "other.txt"}))
      : session(std::move(options)) {}
  void SetUp() override { ASSERT_TRUE(openBrowser(session)); }
  [[nodiscard]] std::string path(std::string_view below) const { return session.inHome("Tree/" + std::string(below)); }

  TerminalSession session;
};

class GermanDirectorySearch : public DirectorySearchAtTheTerminal {
 protected:
  GermanDirectorySearch() : DirectorySearchAtTheTerminal(browserOptions({"Notiz.md", "Übersicht.md"}, "de")) {}
};

// MARK: The box

TEST_F(DirectorySearchAtTheTerminal, TheBoxTakesTextInLowerCaseAndBackspace) {
  ASSERT_TRUE(pressed(session, "s"));
  session.expectShows("─ Search ─");
  session.expectShows("Wildcards (*) allowed. Without *, the input is auto-expanded.");
  session.expectShows("Input: █");
  session.expectShows("Path: ~/Tree");
  session.expectShows("[ESC] Cancel");
  session.expectShows("[RETURN] Search");
  EXPECT_FALSE(session.cursorVisible());
  ASSERT_TRUE(pressed(session, "Foo/$;"));
  session.expectShows("Input: foo█");
  ASSERT_TRUE(pressed(session, Key::backspace));
  session.expectShows("Input: fo█");
  ASSERT_TRUE(pressed(session, " .-_*?9"));
  session.expectShows("Input: fo .-_*?9█");
}

TEST_F(DirectorySearchAtTheTerminal, InTheBoxOtherKeysDoNothingAndLettersAreText) {
  ASSERT_TRUE(pressed(session, "S"));
  ASSERT_TRUE(session.sendSlowly({Key::enter, " ", Key::enter, Key::up, Key::left, Key::tab, Key::pageDown}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("[RETURN] Search");
  // The sequence of a page key leaves its last byte, which is no text.
  ASSERT_TRUE(session.sendSlowly({"Q", "W", "X", "h"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("qwxh█");
}

TEST_F(DirectorySearchAtTheTerminal, EscapeLeavesTheBoxAndTheListIsAsItWas) {
  ASSERT_TRUE(selectRow(session, "[seafood]"));
  ASSERT_TRUE(session.sendSlowly({"s", "foo", Key::escape}));
  ASSERT_TRUE(isAtList(session));
  session.expectShowsNot("Input:");
  EXPECT_EQ(selectedText(session), "[seafood]");
}

TEST_F(DirectorySearchAtTheTerminal, AnUmlautIsTypedAsOneCharacter) {
  session.writeHomeFile("Tree/Übersicht.md", "");
  ASSERT_TRUE(session.sendSlowly({"s", "ÜBER"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Input: über█");
  session.send(Key::enter);
  ASSERT_TRUE(hitsShown(session));
  EXPECT_THAT(shownNames(session), ElementsAre("Übersicht.md"));
}

// MARK: The walk

TEST_F(DirectorySearchAtTheTerminal, FindsFilesByTheirBeginningAndFoldersByAnyPart) {
  ASSERT_TRUE(searched(session, "Foo"));
  EXPECT_THAT(shownNames(session), ElementsAre("foo.md", "foo.txt", "Food.swift", "FooKit.xcodeproj", "[seafood]"));
  EXPECT_EQ(selectedRow(session), firstBrowserRow);
}

TEST_F(DirectorySearchAtTheTerminal, ARowShowsItsPathDimUnlessItIsSelected) {
  ASSERT_TRUE(searched(session, "foo"));
  session.expectShows("foo.md (" + path("seafood/foo.md") + ")");
  const CellPosition selected = session.find("(" + path("seafood/foo.md"));
  const CellPosition other = session.find("(" + path("Notes/foo.txt"));
  EXPECT_FALSE(session.cell(selected.row, selected.column + 1).dim);
  EXPECT_TRUE(session.cell(other.row, other.column + 1).dim);
}

TEST_F(DirectorySearchAtTheTerminal, APatternIsTakenAsItStandsForFilesAndFolders) {
  ASSERT_TRUE(searched(session, "*ood*"));
  EXPECT_THAT(shownNames(session), ElementsAre("Food.swift", "[seafood]"));
}

TEST_F(DirectorySearchAtTheTerminal, TheRunningBoxIsShownAndXCancels) {
  for (const char* key : {"x", "X"}) {
    const std::size_t mark = session.outputMark();
    session.send({"s", "foo", Key::enter, key});
    ASSERT_TRUE(session.waitForOutput("SEARCH RUNNING", mark));
    ASSERT_TRUE(session.waitForOutput("Searching …", mark));
    ASSERT_TRUE(session.waitForOutput("X: Cancel", mark));
    ASSERT_TRUE(isAtList(session));
    session.expectShowsNot("SEARCH RUNNING");
    EXPECT_THAT(shownNames(session), ElementsAre("[...]", "[Notes]", "[seafood]", "FooKit.xcodeproj", "other.txt"));
  }
  session.send("Q");
  session.expectCleanEnd();
}

TEST_F(DirectorySearchAtTheTerminal, OtherKeysAreDroppedWhileItRuns) {
  session.send({"s", "foo", Key::enter, "Qhr ", Key::down, Key::enter, Key::escape});
  ASSERT_TRUE(hitsShown(session));
  EXPECT_EQ(selectedRow(session), firstBrowserRow);
  session.expectShowsNot("Help – Directory Browser");
  EXPECT_THAT(session.callsOf("open"), IsEmpty());
}

TEST_F(DirectorySearchAtTheTerminal, CtrlCWhileItRunsGivesTheTerminalBack) {
  session.send({"s", "foo", Key::enter, Key::ctrlC});
  session.expectCleanEnd(ProgramEnd::signaled(SIGINT));
}

TEST_F(DirectorySearchAtTheTerminal, NamesOfAnyKindAreFoundAndReachTheScreenHarmless) {
  for (const char* name : {"zz Ü.c", "zz U\xcc\x88.c", "zz 🎉.c", "zz new\nline.c", "zz \x1b[31mred.c", "zz \xff.c",
                           "zz $(touch pwned).c", "zz `touch pwned`'\".c"}) {
    session.writeHomeFile(std::string("Tree/") + name, "");
  }
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(searched(session, "zz"));
  EXPECT_EQ(shownNames(session).size(), 8U);
  session.expectShows("zz new␊line.c");
  session.expectShows("zz ␛[31mred.c");
  session.expectShows("zz �.c");
  EXPECT_EQ(session.rawOutput(mark).find("\x1b[31mred"), std::string::npos);
  ASSERT_TRUE(selectRow(session, "zz $(touch pwned).c (" + path("zz $(touch pwned).c") + ")"));
  ASSERT_TRUE(toasted(session, Key::enter, "File opened"));
  EXPECT_THAT(session.callsOf("open"), ElementsAre("open " + path("zz $(touch pwned).c")));
  EXPECT_FALSE(fs::exists(path("pwned")));
}

TEST_F(DirectorySearchAtTheTerminal, LoopsHiddenItemsAndClosedFoldersAreNoObstacle) {
  fs::create_directory_symlink("..", path("Notes/loop"));
  session.writeHomeFile("Tree/.hidden/foo.x", "");
  session.writeHomeFile("Tree/aclosed/foo.x", "");
  fs::permissions(path("aclosed"), fs::perms::none);
  const bool readsAnything = geteuid() == 0;
  ASSERT_TRUE(searched(session, "foo*"));
  fs::permissions(path("aclosed"), fs::perms::owner_all);
  std::vector<std::string> expected = {"foo.md", "foo.txt", "foo.x", "Food.swift", "FooKit.xcodeproj"};
  if (!readsAnything) expected.erase(expected.begin() + 2);
  EXPECT_EQ(shownNames(session), expected);
}

TEST_F(DirectorySearchAtTheTerminal, AFolderThatIsGoneHasNoHits) {
  fs::remove_all(session.inHome("Tree"));
  ASSERT_TRUE(searched(session, "foo"));
  session.expectShows("(empty directory)");
  ASSERT_TRUE(session.sendSlowly({Key::down, Key::enter, "d", "0", "x"}));
  ASSERT_TRUE(isAtList(session));
}

// MARK: Keys on the hits

TEST_F(DirectorySearchAtTheTerminal, HitsAreMovedInAsInTheList) {
  ASSERT_TRUE(searched(session, "foo"));
  ASSERT_TRUE(session.sendSlowly({Key::up, Key::down, "\x1b[5~"}));
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_EQ(selectedRow(session), firstBrowserRow + 1);
  ASSERT_TRUE(pressed(session, "e"));
  EXPECT_EQ(selectedRow(session), firstBrowserRow + 4);
  ASSERT_TRUE(pressed(session, "A"));
  EXPECT_EQ(selectedRow(session), firstBrowserRow);
}

TEST_F(DirectorySearchAtTheTerminal, FilesAndProjectsAreOpenedByRightAndEnter) {
  ASSERT_TRUE(searched(session, "foo"));
  ASSERT_TRUE(toasted(session, Key::right, "File opened"));
  ASSERT_TRUE(session.sendSlowly({Key::down, Key::down, Key::down}));
  ASSERT_TRUE(toasted(session, Key::enter, "File opened"));
  EXPECT_THAT(session.callsOf("open"),
              ElementsAre("open " + path("seafood/foo.md"), "open " + path("FooKit.xcodeproj")));
  session.expectShows("End search");
}

TEST_F(DirectorySearchAtTheTerminal, AFolderIsEnteredAndLeftByTheSameText) {
  ASSERT_TRUE(searched(session, "foo"));
  ASSERT_TRUE(session.sendSlowly({"e", Key::right}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Path: ~/Tree/seafood");
  EXPECT_THAT(shownNames(session), ElementsAre("[...]", "foo.md"));
  EXPECT_EQ(selectedRow(session), firstBrowserRow);
  ASSERT_TRUE(pressed(session, Key::left));
  session.expectShows("Path: ~/Tree ");
  EXPECT_THAT(shownNames(session), ElementsAre("[...]", "[seafood]", "FooKit.xcodeproj"));
  EXPECT_EQ(selectedRow(session), firstBrowserRow + 1);
  ASSERT_TRUE(session.sendSlowly({"a", Key::enter}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Path: ~ ");
  session.expectShows("End search");
  EXPECT_EQ(selectedRow(session), firstBrowserRow) << "the tree's folder isn't a match";
}

TEST_F(DirectorySearchAtTheTerminal, EscapeAndXLeadBackToTheList) {
  ASSERT_TRUE(selectRow(session, "[seafood]"));
  for (const Typed& key : {Typed(Key::escape), Typed("x"), Typed("X")}) {
    ASSERT_TRUE(searched(session, "foo"));
    ASSERT_TRUE(session.sendSlowly({Key::down, key}));
    ASSERT_TRUE(isAtList(session));
    session.expectShowsNot("End search");
    EXPECT_EQ(selectedText(session), "[seafood]");
  }
}

TEST_F(DirectorySearchAtTheTerminal, TheHitsAreThereAgainAfterAnotherViewAndGoneInAFreshOne) {
  ASSERT_TRUE(searched(session, "foo"));
  ASSERT_TRUE(session.sendSlowly({Key::space, "1"}));
  ASSERT_TRUE(session.waitFor("9:Update"));
  ASSERT_TRUE(pressed(session, "W"));
  session.expectShows("End search");
  ASSERT_TRUE(session.sendSlowly({Key::space, "1", "A"}));
  ASSERT_TRUE(isAtList(session));
  session.expectShowsNot("End search");
}

TEST_F(DirectorySearchAtTheTerminal, DGoesToTheFolderOfTheHit) {
  for (const char* key : {"d", "D"}) {
    ASSERT_TRUE(pressed(session, "r"));
    ASSERT_TRUE(searched(session, "food"));
    ASSERT_TRUE(pressed(session, key));
    ASSERT_TRUE(isAtList(session));
    session.expectShows("Path: ~/Tree/Notes/deep");
    EXPECT_EQ(selectedText(session), "Food.swift");
  }
}

TEST_F(DirectorySearchAtTheTerminal, LettersThatWouldLeaveTheHitsAreIgnored) {
  ASSERT_TRUE(toasted(session, "1", "Saved to slot 1"));
  ASSERT_TRUE(searched(session, "foo"));
  const auto before = shownNames(session);
  for (const char key : std::string_view("rRyYzZsSwW")) {
    ASSERT_TRUE(pressed(session, std::string(1, key)));
    session.expectShows("End search");
    EXPECT_EQ(shownNames(session), before);
  }
  EXPECT_THAT(session.callsOf("pbcopy"), IsEmpty());
}

TEST_F(DirectorySearchAtTheTerminal, OtherLettersActAsInTheList) {
  ASSERT_TRUE(searched(session, "foo"));
  ASSERT_TRUE(pressed(session, "h"));
  session.expectShows("Help – Directory Browser");
  ASSERT_TRUE(pressed(session, "h"));
  session.expectShows("End search");
  ASSERT_TRUE(session.sendSlowly({"c"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Delete all hotkeys?");
  ASSERT_TRUE(pressed(session, "n"));
  session.expectShows("End search");
  ASSERT_TRUE(toasted(session, "4", "Saved to slot 4"));
  EXPECT_NE(session.readHomeFile(hotkeyFile).find(path("seafood/foo.md")), std::string::npos);
  ASSERT_TRUE(toasted(session, "f", "Finder opened"));
  ASSERT_TRUE(toasted(session, "t", "Terminal opened"));
  EXPECT_THAT(session.callsOf("open"), ElementsAre("open " + session.inHome("Tree")));
  ASSERT_TRUE(pressed(session, "$"));
  session.expectShows("Action for slot 4");
  ASSERT_TRUE(pressed(session, Key::escape));
  session.expectShows("End search");
}

TEST_F(DirectorySearchAtTheTerminal, AmongFavoritesTheseComeBack) {
  ASSERT_TRUE(selectRow(session, "[Notes]"));
  ASSERT_TRUE(toasted(session, "1", "Saved to slot 1"));
  ASSERT_TRUE(pressed(session, "w"));
  ASSERT_TRUE(searched(session, "foo"));
  EXPECT_THAT(shownNames(session), ElementsAre("foo.txt", "Food.swift"));
  ASSERT_TRUE(pressed(session, "x"));
  EXPECT_THAT(shownNames(session), ElementsAre("[1] " + path("Notes")));
  session.expectShows("─ Favorites ─");
}

// MARK: German

TEST_F(GermanDirectorySearch, SpeaksGerman) {
  ASSERT_TRUE(pressed(session, "s"));
  session.expectShows("─ Suche ─");
  session.expectShows("Platzhalter (*) erlaubt. Ohne * wird die Eingabe automatisch erweitert.");
  session.expectShows("Eingabe: █");
  session.expectShows("[ESC] Abbrechen");
  session.expectShows("[RETURN] Suchen");
  const std::size_t mark = session.outputMark();
  session.send({"ü", Key::enter});
  ASSERT_TRUE(session.waitForOutput("SUCHE LÄUFT", mark));
  ASSERT_TRUE(session.waitForOutput("Suche läuft …", mark));
  ASSERT_TRUE(session.waitForOutput("X: Abbrechen", mark));
  ASSERT_TRUE(hitsShown(session, "Suche beenden"));
  EXPECT_THAT(shownNames(session), ElementsAre("Übersicht.md"));
}

}  // namespace
}  // namespace halyard
