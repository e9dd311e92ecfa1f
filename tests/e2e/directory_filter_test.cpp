// The filter of the directory browser: its box, the running walk, and every key on its hits.
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/e2e/directory_walk_session.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DirectoryFilterAtTheTerminal : public testing::Test {
 protected:
  explicit DirectoryFilterAtTheTerminal(const std::string& language = "en")
      : session(browserOptions({"Sources/a.swift", "Sources/deep/B.SWIFT", "App.xcodeproj/inner.swift", "Makefile",
                                "data.json", "Docs/guide.md"},
                               language)) {}
  void SetUp() override { ASSERT_TRUE(openBrowser(session)); }
  [[nodiscard]] std::string path(std::string_view below) const { return session.inHome("Tree/" + std::string(below)); }

  TerminalSession session;
};

class GermanDirectoryFilter : public DirectoryFilterAtTheTerminal {
 protected:
  GermanDirectoryFilter() : DirectoryFilterAtTheTerminal("de") {}
};

TEST_F(DirectoryFilterAtTheTerminal, TheBoxShowsTheGroupsAndTheCursorGoesRound) {
  ASSERT_TRUE(pressed(session, "d"));
  for (const char* text :
       {"─ Filter ─", "Select file groups (↑↓ navigate, Space to toggle):", "▶ [ ] Xcode projects & workspaces",
        "[ ] Configuration files (plist, entitlements, storekit)", "[ ] Swift files", "[ ] JSON & XML files",
        "[ ] Graphic files (png, jpg, jpeg, svg, heic...)", "[ ] Text & Markdown files (txt, md, rtf)",
        "[ ] Office documents (doc, docx, xls, ppt, pdf)", "[ ] Web files (html, js, css, ts)",
        "[ ] Other files (not defined above)", "Path: ~/Tree", "[ESC] Cancel", "[RETURN] Filter"}) {
    session.expectShows(text);
  }
  ASSERT_TRUE(pressed(session, Key::up));
  session.expectShows("▶ [ ] Other files");
  ASSERT_TRUE(pressed(session, Key::down));
  session.expectShows("▶ [ ] Xcode projects");
  ASSERT_TRUE(session.sendSlowly({Key::down, Key::space}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("▶ [✓] Configuration files");
  ASSERT_TRUE(pressed(session, Key::space));
  session.expectShows("▶ [ ] Configuration files");
}

TEST_F(DirectoryFilterAtTheTerminal, EnterWithNothingTickedAndOtherKeysDoNothing) {
  ASSERT_TRUE(session.sendSlowly({"D", Key::enter, Key::left, Key::right, "Q", "h", "W", "1"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("▶ [ ] Xcode projects");
}

TEST_F(DirectoryFilterAtTheTerminal, EscapeAndXLeaveTheBox) {
  for (const Typed& key : {Typed(Key::escape), Typed("x"), Typed("X")}) {
    ASSERT_TRUE(session.sendSlowly({"d", Key::space, key}));
    ASSERT_TRUE(isAtList(session));
    session.expectShowsNot("[RETURN] Filter");
  }
}

TEST_F(DirectoryFilterAtTheTerminal, FindsTheTickedGroupsThroughTheTreeButNotInProjects) {
  ASSERT_TRUE(filtered(session, {2, 3}));
  EXPECT_THAT(shownNames(session), ElementsAre("a.swift", "B.SWIFT", "data.json"));
  session.expectShows("a.swift (" + path("Sources/a.swift") + ")");
}

TEST_F(DirectoryFilterAtTheTerminal, ProjectsAreFoundAsAWholeAndOthersAreWhatNoGroupHas) {
  ASSERT_TRUE(filtered(session, {0, 8}));
  EXPECT_THAT(shownNames(session), ElementsAre("App.xcodeproj", "Makefile"));
  ASSERT_TRUE(pressed(session, "x"));
  ASSERT_TRUE(filtered(session, {8}));
  EXPECT_THAT(shownNames(session), ElementsAre("Makefile"));
}

TEST_F(DirectoryFilterAtTheTerminal, TheRunningBoxIsShownAndXCancels) {
  for (const char* key : {"x", "X"}) {
    const std::size_t mark = session.outputMark();
    session.send({"d", Key::space, Key::enter, key});
    ASSERT_TRUE(session.waitForOutput("FILTERING RUNNING", mark));
    ASSERT_TRUE(session.waitForOutput("Filtering …", mark));
    ASSERT_TRUE(session.waitForOutput("X: Cancel", mark));
    ASSERT_TRUE(isAtList(session));
    session.expectShowsNot("FILTERING RUNNING");
    session.expectShowsNot("End filter");
  }
}

TEST_F(DirectoryFilterAtTheTerminal, OtherKeysAreDroppedWhileItRuns) {
  session.send({"d", Key::up, Key::space, Key::enter, "Qh", Key::down, Key::enter});
  ASSERT_TRUE(hitsShown(session, "End filter"));
  EXPECT_THAT(shownNames(session), ElementsAre("Makefile"));
  EXPECT_THAT(session.callsOf("open"), IsEmpty());
}

TEST_F(DirectoryFilterAtTheTerminal, EscapeAndXLeadBackToTheList) {
  ASSERT_TRUE(selectRow(session, "[Sources]"));
  for (const Typed& key : {Typed(Key::escape), Typed("x"), Typed("X")}) {
    ASSERT_TRUE(filtered(session, {2}));
    ASSERT_TRUE(session.sendSlowly({Key::down, key}));
    ASSERT_TRUE(isAtList(session));
    session.expectShowsNot("End filter");
    EXPECT_EQ(selectedText(session), "[Sources]");
  }
}

TEST_F(DirectoryFilterAtTheTerminal, LeftFilterAndRefreshAreIgnoredOnTheHits) {
  ASSERT_TRUE(filtered(session, {2}));
  ASSERT_TRUE(session.sendSlowly({Key::left, "d", "D", "y", "Y", "\x1b[5~"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("End filter");
  session.expectShowsNot("[RETURN] Filter");
  EXPECT_THAT(shownNames(session), ElementsAre("a.swift", "B.SWIFT"));
}

TEST_F(DirectoryFilterAtTheTerminal, HitsAreMovedInOpenedCopiedAndSavedAsInTheList) {
  ASSERT_TRUE(filtered(session, {2}));
  ASSERT_TRUE(toasted(session, Key::right, "File opened"));
  ASSERT_TRUE(session.sendSlowly({Key::up, Key::down}));
  ASSERT_TRUE(toasted(session, Key::enter, "File opened"));
  EXPECT_THAT(session.callsOf("open"),
              ElementsAre("open " + path("Sources/a.swift"), "open " + path("Sources/deep/B.SWIFT")));
  ASSERT_TRUE(toasted(session, "z", "Copied to clipboard"));
  EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path("Sources/deep/B.SWIFT"));
  ASSERT_TRUE(toasted(session, "7", "Saved to slot 7"));
  ASSERT_TRUE(session.sendSlowly({"h", "h", "/"}));
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("Action for slot 7");
  ASSERT_TRUE(pressed(session, "q"));
  session.expectShows("End filter");
}

TEST_F(DirectoryFilterAtTheTerminal, ASearchAmongTheHitsLeadsBackToThem) {
  ASSERT_TRUE(filtered(session, {2}));
  ASSERT_TRUE(searched(session, "guide"));
  EXPECT_THAT(shownNames(session), ElementsAre("guide.md"));
  ASSERT_TRUE(pressed(session, "x"));
  session.expectShows("End filter");
  EXPECT_THAT(shownNames(session), ElementsAre("a.swift", "B.SWIFT"));
}

TEST_F(DirectoryFilterAtTheTerminal, AmongFavoritesItStartsAtTheSelectedOne) {
  ASSERT_TRUE(selectRow(session, "[Docs]"));
  ASSERT_TRUE(toasted(session, "1", "Saved to slot 1"));
  ASSERT_TRUE(selectRow(session, "[Sources]"));
  ASSERT_TRUE(toasted(session, "2", "Saved to slot 2"));
  ASSERT_TRUE(session.sendSlowly({"w", Key::down}));
  ASSERT_TRUE(filtered(session, {2, 5}));
  EXPECT_THAT(shownNames(session), ElementsAre("a.swift", "B.SWIFT"));
  ASSERT_TRUE(pressed(session, "x"));
  EXPECT_THAT(shownNames(session), ElementsAre("[1] " + path("Docs"), "[2] " + path("Sources")));
}

TEST_F(GermanDirectoryFilter, SpeaksGerman) {
  ASSERT_TRUE(pressed(session, "d"));
  session.expectShows("Dateigruppen auswählen (↑↓ navigieren, Leertaste zum Umschalten):");
  session.expectShows("[ ] Andere Dateien (oben nicht aufgeführt)");
  session.expectShows("[RETURN] Filtern");
  const std::size_t mark = session.outputMark();
  session.send({Key::up, Key::space, Key::enter});
  ASSERT_TRUE(session.waitForOutput("FILTER LÄUFT", mark));
  ASSERT_TRUE(session.waitForOutput("Filter läuft …", mark));
  ASSERT_TRUE(hitsShown(session, "Filter beenden"));
  EXPECT_THAT(shownNames(session), ElementsAre("Makefile"));
}

}  // namespace
}  // namespace halyard
