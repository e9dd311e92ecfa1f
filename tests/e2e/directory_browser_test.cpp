// Every key of the directory browser, as a user presses it.
#include <filesystem>

#include "tests/e2e/directory_browser_session.hpp"

namespace halyard {
namespace {

class DirectoryBrowser : public testing::Test {
 protected:
  explicit DirectoryBrowser(SessionOptions options = browserOptions({"alpha/inner.txt", "beta/",
                                                                     "App.xcodeproj/project.pbxproj", "note.txt"}))
      : session(std::move(options)) {}
  void SetUp() override { ASSERT_TRUE(openBrowser(session)); }
  [[nodiscard]] std::string path(std::string_view below = {}) const {
    return session.inHome("Tree") + (below.empty() ? "" : "/") + std::string(below);
  }
  void expectPathRow(const std::string& path) {
    session.expectRow(4, "│ Path: " + path + std::string(76 - path.size(), ' ') + "│");
  }

  TerminalSession session;
};

// MARK: Moving

TEST_F(DirectoryBrowser, UpAndDownMoveAndStopAtTheEnds) {
  EXPECT_EQ(selectedText(session), "[...]");
  ASSERT_TRUE(pressed(session, Key::up));
  EXPECT_EQ(selectedText(session), "[...]");
  for (const auto* expected : {"[alpha]", "[beta]", "App.xcodeproj", "note.txt", "note.txt"}) {
    ASSERT_TRUE(pressed(session, Key::down));
    EXPECT_EQ(selectedText(session), expected);
  }
  ASSERT_TRUE(pressed(session, Key::up));
  EXPECT_EQ(selectedText(session), "App.xcodeproj");
  EXPECT_TRUE(session.cell(selectedRow(session), 2).bold);
}

TEST_F(DirectoryBrowser, AAndESelectTheEndsInEitherCase) {
  for (const auto* keys : {"ea", "EA"}) {
    ASSERT_TRUE(pressed(session, std::string(1, keys[0])));
    EXPECT_EQ(selectedText(session), "note.txt");
    ASSERT_TRUE(pressed(session, std::string(1, keys[1])));
    EXPECT_EQ(selectedText(session), "[...]");
  }
}

TEST_F(DirectoryBrowser, TheKindsAreToldByTheirColours) {
  ASSERT_TRUE(pressed(session, "e"));
  EXPECT_TRUE(session.cellOf("[...]").dim);
  EXPECT_EQ(session.cellOf("[alpha]").foreground, CellColor::indexed(4));
  EXPECT_TRUE(session.cellOf("[alpha]").bold);
  EXPECT_EQ(session.cellOf("App.xcodeproj").foreground, CellColor::indexed(12));
  ASSERT_TRUE(pressed(session, "a"));
  EXPECT_EQ(session.cellOf("note.txt").foreground, CellColor{});
}

// MARK: Opening and going up

TEST_F(DirectoryBrowser, RightAndEnterEnterAFolderAndLeftSelectsItInItsParent) {
  for (const auto key : {Key::right, Key::enter}) {
    ASSERT_TRUE(selectRow(session, "[alpha]"));
    ASSERT_TRUE(pressed(session, key));
    expectPathRow("~/Tree/alpha");
    EXPECT_EQ(selectedText(session), "[...]");
    session.expectShows("inner.txt");
    ASSERT_TRUE(pressed(session, Key::left));
    expectPathRow("~/Tree");
    EXPECT_EQ(selectedText(session), "[alpha]");
  }
  ASSERT_TRUE(selectRow(session, "[...]"));
  ASSERT_TRUE(pressed(session, Key::enter));
  expectPathRow("~");
  EXPECT_EQ(selectedText(session), "[Tree]");
}

TEST_F(DirectoryBrowser, FilesAndProjectsAreOpened) {
  ASSERT_TRUE(selectRow(session, "note.txt"));
  ASSERT_TRUE(toasted(session, Key::right, "File opened"));
  ASSERT_TRUE(selectRow(session, "App.xcodeproj"));
  ASSERT_TRUE(toasted(session, Key::enter, "File opened"));
  EXPECT_EQ(session.callsOf("open"),
            (std::vector<std::string>{"open " + path("note.txt"), "open " + path("App.xcodeproj")}));
  expectPathRow("~/Tree");
}

TEST_F(DirectoryBrowser, AtTheTopOfTheDiskThereIsNoParentAndLeftDoesNothing) {
  for (int level = 0; level < 12; ++level) ASSERT_TRUE(pressed(session, Key::left));
  session.expectRow(4, "│ Path: /" + std::string(75, ' ') + "│");
  session.expectShowsNot("[...]");
  const std::string before = session.screenText();
  ASSERT_TRUE(pressed(session, Key::left));
  session.expectScreen(before);
  ASSERT_TRUE(pressed(session, "a") && pressed(session, "r"));
  expectPathRow("~/Tree");
}

TEST_F(DirectoryBrowser, RLeadsBackToTheStart) {
  for (const auto* key : {"r", "R"}) {
    ASSERT_TRUE(selectRow(session, "[alpha]") && pressed(session, Key::right));
    expectPathRow("~/Tree/alpha");
    const std::size_t mark = session.outputMark();
    ASSERT_TRUE(pressed(session, key));
    expectPathRow("~/Tree");
    EXPECT_EQ(selectedText(session), "[...]");
    EXPECT_EQ(session.rawOutput(mark).find("\x1b[1mView refreshed"), std::string::npos);
  }
}

TEST_F(DirectoryBrowser, YReadsTheFolderAgainAndKeepsTheSelection) {
  ASSERT_TRUE(selectRow(session, "note.txt"));
  session.writeHomeFile("Tree/added.txt", "");
  session.expectShowsNot("added.txt");
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(toasted(session, "y", "View refreshed"));
  EXPECT_NE(session.rawOutput(mark).find("View refreshed\x1b[0m  " + path()), std::string::npos) << "with the path";
  session.expectShows("added.txt");
  session.expectShows("[Q] Quit");
  EXPECT_EQ(selectedText(session), "note.txt");
  std::filesystem::remove(path("note.txt"));
  ASSERT_TRUE(toasted(session, "Y", "View refreshed"));
  EXPECT_EQ(selectedText(session), "[...]");
}

TEST_F(DirectoryBrowser, AFolderThatVanishesWhileShownIsLeftUnharmed) {
  ASSERT_TRUE(selectRow(session, "[alpha]") && pressed(session, Key::right));
  std::filesystem::remove_all(path("alpha"));
  ASSERT_TRUE(toasted(session, "y", "View refreshed"));
  session.expectShowsNot("inner.txt");
  EXPECT_EQ(selectedText(session), "[...]");
  ASSERT_TRUE(pressed(session, Key::left));
  expectPathRow("~/Tree");
  EXPECT_EQ(selectedText(session), "[...]");
  session.expectShows("[beta]");
}

// MARK: The desktop

TEST_F(DirectoryBrowser, ZCopiesTheSelectionAndTheHeaderKeepsIt) {
  ASSERT_TRUE(selectRow(session, "note.txt"));
  ASSERT_TRUE(toasted(session, "z", "Copied to clipboard"));
  EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path("note.txt"));
  EXPECT_NE(session.row(1).find("Clipboard: "), std::string::npos);
  EXPECT_NE(session.row(1).find("/Tree/note.txt │"), std::string::npos);
  ASSERT_TRUE(selectRow(session, "[beta]"));
  ASSERT_TRUE(toasted(session, "Z", "Copied to clipboard"));
  EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path("beta"));
}

TEST_F(DirectoryBrowser, AHeldSpaceCopiesTheCurrentFolder) {
  ASSERT_TRUE(selectRow(session, "[alpha]") && pressed(session, Key::right));
  const std::size_t mark = session.outputMark();
  session.send(std::string(12, ' '));  // a key's repeats
  ASSERT_TRUE(session.waitForOutput("\x1b[1mCopied to clipboard", mark) && session.waitUntilIdle());
  EXPECT_EQ(session.readHomeFile(".halyard-demo/pasteboard"), path("alpha"));
  EXPECT_EQ(session.callsOf("pbcopy").size(), 1U);
  session.expectShowsNot("SWITCH VIEW");
}

TEST_F(DirectoryBrowser, FOpensTheFinderAtTheSelectedFolderElseAtTheCurrentOne) {
  ASSERT_TRUE(selectRow(session, "[alpha]"));
  ASSERT_TRUE(toasted(session, "f", "Finder opened"));
  ASSERT_TRUE(selectRow(session, "note.txt"));
  ASSERT_TRUE(toasted(session, "F", "Finder opened"));
  EXPECT_EQ(session.callsOf("open"), (std::vector<std::string>{"open " + path("alpha"), "open " + path()}));
}

TEST_F(DirectoryBrowser, TOpensATerminalThere) {
  ASSERT_TRUE(selectRow(session, "[alpha]"));
  ASSERT_TRUE(toasted(session, "t", "Terminal opened"));
  ASSERT_TRUE(selectRow(session, "App.xcodeproj"));
  ASSERT_TRUE(toasted(session, "T", "Terminal opened"));
  const auto call = [](const std::string& folder) {
    return "osascript -e tell application \"Terminal\" -e do script \"cd \" & quoted form of \"" + folder +
           "\" -e activate -e end tell";
  };
  EXPECT_EQ(session.callsOf("osascript"), (std::vector<std::string>{call(path("alpha")), call(path())}));
}

TEST_F(DirectoryBrowser, WhatIsTypedDuringAToastIsLost) {
  const std::size_t mark = session.outputMark();
  session.send("y");
  ASSERT_TRUE(session.waitForOutput("\x1b[1mView refreshed", mark));
  session.send("hhhQQ");
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_FALSE(session.hasEnded());
  session.expectShowsNot("Help –");
}

// MARK: Search, filter, favorites

TEST_F(DirectoryBrowser, SAndDOpenTheirBoxes) {
  for (const auto* key : {"s", "S"}) {
    ASSERT_TRUE(pressed(session, key));
    session.expectShows("─ Search ─");
    session.expectShows("Input:");
    ASSERT_TRUE(pressed(session, Key::escape));
    session.expectShowsNot("Input:");
  }
  for (const auto* key : {"d", "D"}) {
    ASSERT_TRUE(pressed(session, key));
    session.expectShows("─ Filter ─");
    session.expectShows("Swift files");
    ASSERT_TRUE(pressed(session, Key::escape));
    session.expectShowsNot("Swift files");
  }
}

TEST_F(DirectoryBrowser, WithoutFavoritesWDoesNothing) {
  const std::string before = session.screenText();
  ASSERT_TRUE(pressed(session, "w") && pressed(session, "W"));
  session.expectScreen(before);
}

TEST_F(DirectoryBrowser, DigitsSaveAndShiftedDigitsCallUp) {
  ASSERT_TRUE(selectRow(session, "[alpha]"));
  for (int slot = 0; slot < 10; ++slot) {
    ASSERT_TRUE(toasted(session, std::to_string(slot), "Saved to slot " + std::to_string(slot)));
  }
  const std::vector<std::string> shifted = {"=", "!", "\"", "§", "$", "%", "&", "/", "(", ")"};
  for (std::size_t slot = 0; slot < shifted.size(); ++slot) {
    ASSERT_TRUE(pressed(session, shifted[slot]));
    session.expectShows("Action for slot " + std::to_string(slot));
    session.expectShows("T: Open Terminal");
    ASSERT_TRUE(pressed(session, Key::escape));
    session.expectShowsNot("Action for slot");
  }
  EXPECT_NE(session.readHomeFile(hotkeyFile).find(path("alpha")), std::string::npos);
}

TEST_F(DirectoryBrowser, AnEmptySlotSaysSo) {
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(toasted(session, "§", "Slot empty"));
  EXPECT_NE(session.rawOutput(mark).find("Slot empty\x1b[0m  [3]"), std::string::npos);
}

class Favorites : public DirectoryBrowser {
 protected:
  Favorites() : DirectoryBrowser(options()) {
    const auto slot = [&](int number, const std::string& name) {
      return R"({"slot": )" + std::to_string(number) + R"(, "path": ")" + path(name) + "\"}";
    };
    session.writeHomeFile(hotkeyFile, "[" + slot(7, "beta") + "," + slot(2, "alpha") + "," + slot(9, "note.txt") + "]");
  }
  static SessionOptions options() { return browserOptions({"alpha/inner.txt", "beta/", "note.txt"}); }
  void expectFavorites(const std::string& selected) {
    session.expectShows("├─ Favorites ─");
    session.expectShows("[2] ");
    EXPECT_NE(selectedText(session).find(selected), std::string::npos) << selectedText(session);
  }
};

TEST_F(Favorites, WTogglesAndThePathFollowsTheSelection) {
  ASSERT_TRUE(selectRow(session, "[beta]"));
  ASSERT_TRUE(pressed(session, "w"));
  expectFavorites("[2] ");
  EXPECT_NE(session.row(4).find("Favorites: ~/Tree/alpha "), std::string::npos);
  EXPECT_NE(session.row(6).find("[2] " + path("alpha")), std::string::npos) << "in the order of their slots";
  EXPECT_NE(session.row(7).find("[7] " + path("beta")), std::string::npos);
  EXPECT_NE(session.row(8).find("[9] " + path("note.txt")), std::string::npos);
  ASSERT_TRUE(pressed(session, Key::down));
  EXPECT_NE(session.row(4).find("Favorites: ~/Tree/beta "), std::string::npos);
  ASSERT_TRUE(pressed(session, "W"));
  expectPathRow("~/Tree");
  EXPECT_EQ(selectedText(session), "[beta]") << "as the browser was left";
}

TEST_F(Favorites, AFavoriteIsEnteredAndLeftToTheFavorites) {
  ASSERT_TRUE(pressed(session, "w") && pressed(session, Key::left));
  expectFavorites("[2] ");
  ASSERT_TRUE(pressed(session, Key::right));
  session.expectShows("inner.txt");
  session.expectShows("├─ Favorites ─");
  ASSERT_TRUE(pressed(session, Key::left));
  expectFavorites("[2] ");
  ASSERT_TRUE(selectRow(session, "[9] " + path("note.txt")));
  ASSERT_TRUE(pressed(session, Key::right));
  EXPECT_EQ(selectedText(session), "[...]") << "a file's folder can't be read: it shows as empty";
  ASSERT_TRUE(pressed(session, "r"));
  session.expectShows("├─ File Browser ─");
  expectPathRow("~/Tree");
}

TEST_F(Favorites, YRebuildsTheirListWithoutADetail) {
  ASSERT_TRUE(pressed(session, "w") && pressed(session, Key::down));
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(toasted(session, "y", "View refreshed"));
  EXPECT_EQ(session.rawOutput(mark).find("View refreshed\x1b[0m  /"), std::string::npos);
  expectFavorites("[7] ");
}

TEST_F(Favorites, CAsksAndYesDeletesThemAll) {
  for (const Typed& no : {Typed("n"), Typed("N"), Typed(Key::escape)}) {
    ASSERT_TRUE(pressed(session, "c"));
    session.expectShows("Delete all hotkeys?");
    session.expectShows("[Y] Yes   [N] No");
    ASSERT_TRUE(pressed(session, "x"));
    session.expectShows("Delete all hotkeys?");
    ASSERT_TRUE(pressed(session, no));
    session.expectShowsNot("Delete all hotkeys?");
  }
  ASSERT_TRUE(pressed(session, "w"));
  expectFavorites("[2] ");
  ASSERT_TRUE(pressed(session, "C") && pressed(session, "y"));
  session.expectShows("├─ File Browser ─");
  expectPathRow("~/Tree");
  EXPECT_EQ(session.readHomeFile(hotkeyFile).find("slot"), std::string::npos);
  ASSERT_TRUE(pressed(session, "w"));
  session.expectShows("├─ File Browser ─");
}

TEST_F(Favorites, EveryLetterForYesDeletes) {
  const std::string saved = session.readHomeFile(hotkeyFile);
  for (const auto* yes : {"j", "J", "y", "Y"}) {
    ASSERT_TRUE(toasted(session, "1", "Saved to slot 1"));
    EXPECT_NE(session.readHomeFile(hotkeyFile).find("slot"), std::string::npos);
    ASSERT_TRUE(pressed(session, "C") && pressed(session, yes));
    EXPECT_EQ(session.readHomeFile(hotkeyFile).find("slot"), std::string::npos) << yes;
  }
}

// MARK: Help, language, views, the end

TEST_F(DirectoryBrowser, AnyKeyClosesTheHelp) {
  for (const auto* open : {"h", "H"}) {
    for (const Typed& close : {Typed("Q"), Typed("X"), Typed(Key::space), Typed(Key::down), Typed("l")}) {
      ASSERT_TRUE(pressed(session, open));
      session.expectShows("Help – Directory Browser");
      session.expectShows("Press any key to close...");
      ASSERT_TRUE(pressed(session, close));
      session.expectShowsNot("Help – Directory Browser");
      session.expectShows("├─ File Browser ─");
    }
  }
  EXPECT_FALSE(session.hasEnded());
}

TEST_F(DirectoryBrowser, LSwitchesTheLanguageAndKeepsIt) {
  ASSERT_TRUE(selectRow(session, "[beta]"));
  ASSERT_TRUE(pressed(session, "l"));
  session.expectShows("├─ Dateibrowser ─");
  session.expectShows("[SPACE] Ansicht wechseln");
  EXPECT_EQ(selectedText(session), "[beta]");
  EXPECT_EQ(session.preferences().at("language"), "de");
  ASSERT_TRUE(toasted(session, "y", "Ansicht aktualisiert"));
}

TEST_F(DirectoryBrowser, TheListOutlivesAVisitToTheMenuAndAStartsAfresh) {
  ASSERT_TRUE(selectRow(session, "[alpha]") && pressed(session, Key::right) && pressed(session, Key::down));
  session.send("X");
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  session.send("W");
  ASSERT_TRUE(session.waitForGone("9:Update") && session.waitUntilIdle());
  expectPathRow("~/Tree/alpha");
  EXPECT_EQ(selectedText(session), "inner.txt");
  session.send({Key::space, "1"});
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  session.send("A");
  ASSERT_TRUE(session.waitForGone("9:Update") && session.waitUntilIdle());
  expectPathRow("~/Tree");
  EXPECT_EQ(selectedText(session), "[...]");
}

TEST_F(DirectoryBrowser, ASpaceOpensTheViewSwitchBoxAtOnce) {
  ASSERT_TRUE(pressed(session, Key::space));
  session.expectShows("SWITCH VIEW");
  ASSERT_TRUE(pressed(session, Key::escape));
  session.expectShowsNot("SWITCH VIEW");
  session.expectShows("├─ File Browser ─");
  EXPECT_TRUE(session.callsOf("pbcopy").empty());
}

TEST_F(DirectoryBrowser, QQuits) {
  session.send("q");
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_FALSE(session.hasEnded());
  session.send("Q");
  session.expectCleanEnd();
}

TEST_F(DirectoryBrowser, ACursorMoveRunsNoCommandAndReadsNoFolder) {
  const std::size_t calls = session.journal().size();
  session.writeHomeFile("Tree/added.txt", "");
  for (const auto key : {Key::down, Key::down, Key::up}) {
    const std::size_t mark = session.outputMark();
    ASSERT_TRUE(pressed(session, key));
    EXPECT_TRUE(session.rawOutput(mark).starts_with("\x1b[H"));
    EXPECT_EQ(session.rawOutput(mark).find("\x1b[2J"), std::string::npos) << "a move doesn't clear";
  }
  EXPECT_EQ(session.journal().size(), calls);
  session.expectShowsNot("added.txt");
}

}  // namespace
}  // namespace halyard
