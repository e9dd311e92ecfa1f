// What the keys of the menu show: boxes, help, the strip, the header, in both languages.
#include <gtest/gtest.h>

#include "tests/support/terminal_session.hpp"

namespace halyard {
namespace {

SessionOptions inLanguage(const std::string& language) {
  SessionOptions options;
  options.preferences["language"] = language;
  return options;
}

bool atMenu(TerminalSession& session) { return session.waitFor("9:Update") && session.waitUntilIdle(); }

class Screens : public testing::TestWithParam<const char*> {};

TEST_P(Screens, TheViewSwitchBoxStandsOverTheMenu) {
  TerminalSession session(inLanguage(GetParam()));
  ASSERT_TRUE(atMenu(session));
  session.send(Key::space);
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectGoldenScreen(std::string("view_switch_") + GetParam());
  session.send("2");
  ASSERT_TRUE(session.waitForGone("9:Update") && session.waitUntilIdle());
  session.expectGoldenScreen(std::string("directory_view_") + GetParam());
  session.send("X");
  ASSERT_TRUE(atMenu(session));
}

TEST_P(Screens, TheHelpBoxShowsTheGroupAndTheRow) {
  TerminalSession session(inLanguage(GetParam()));
  ASSERT_TRUE(atMenu(session));
  session.send("h");
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectGoldenScreen(std::string("help_group_") + GetParam());
  session.send({"x", Key::right, "h"});
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectGoldenScreen(std::string("help_row_") + GetParam());
  session.send(Key::enter);
  ASSERT_TRUE(session.waitUntilIdle());
  session.expectShows("9:Update");
}

TEST_P(Screens, ARowThatIsNotThereYetSaysSoAndLeadsBack) {
  TerminalSession session(inLanguage(GetParam()));
  ASSERT_TRUE(atMenu(session));
  session.send("R");
  ASSERT_TRUE(session.waitUntilIdle());
  session.send(Key::enter);
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectGoldenScreen(std::string("unavailable_") + GetParam());
  session.send("x");
  ASSERT_TRUE(atMenu(session));
  session.send("Q");
  session.expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(Languages, Screens, testing::Values("en", "de"),
                         [](const auto& each) { return std::string(each.param); });

TEST(MenuScreen, TheSelectionIsColouredByItsFocus) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  EXPECT_EQ(session.cellOf("Delete").background, CellColor::rgb(0, 0, 0));
  EXPECT_EQ(session.cellOf("Show All Directories").background, CellColor::rgb(255, 223, 35));
  session.send(Key::right);
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_EQ(session.cellOf("Delete").background, CellColor::rgb(255, 223, 35));
  EXPECT_EQ(session.cellOf("Show All Directories").background, CellColor::rgb(0, 0, 0));
}

TEST(MenuScreen, TheGroupLetterIsUnderlined) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  const CellPosition at = session.find("Directories      │ ");
  EXPECT_FALSE(session.cell(at.row, at.column).underline);
  EXPECT_TRUE(session.cell(at.row, at.column + 1).underline) << "the first i, whatever its case";
  EXPECT_FALSE(session.cell(at.row, at.column + 2).underline);
}

TEST(MenuScreen, ACursorMoveRunsNoCommandAndIsOneWriteFromHome) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  const std::size_t calls = session.journal().size();
  for (int i = 0; i < 5; ++i) {
    const std::size_t mark = session.outputMark();
    session.send(Key::down);
    ASSERT_TRUE(session.waitUntilIdle());
    EXPECT_TRUE(session.rawOutput(mark).starts_with("\x1b[H\x1b[1;34m"));
    EXPECT_EQ(session.rawOutput(mark).find("\x1b[2J"), std::string::npos) << "a cursor move doesn't clear";
  }
  EXPECT_EQ(session.journal().size(), calls);
}

TEST(MenuScreen, AnActionAsksForTheBranchAgainButNotForTheVersions) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  EXPECT_EQ(session.callsOf("xcodebuild").size(), 1U);
  EXPECT_EQ(session.callsOf("swift").size(), 1U);
  session.expectShows("16.2");
  session.expectShows("Branch:  main");
  session.writeHomeFile("Harbor/.git/HEAD", "ref: refs/heads/other\n");
  session.send(Key::enter);
  ASSERT_TRUE(session.waitFor("[x] Back") && session.waitUntilIdle());
  session.send({"x", Key::enter});
  ASSERT_TRUE(session.waitFor("Branch:  other"));
  EXPECT_EQ(session.callsOf("xcodebuild").size(), 1U);
  EXPECT_EQ(session.callsOf("swift").size(), 1U);
}

TEST(MenuScreen, TheLanguageSwitchesAtOnceAndIsSaved) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  session.send("l");
  ASSERT_TRUE(session.waitFor("Löschen") && session.waitUntilIdle());
  EXPECT_EQ(session.preferences().at("language"), "de");
  session.send("g");
  ASSERT_TRUE(session.waitFor("[01]") && session.waitUntilIdle());
  session.send({"x", Key::enter});
  ASSERT_TRUE(atMenu(session));
  session.send("l");
  ASSERT_TRUE(session.waitFor("Delete") && session.waitUntilIdle());
  EXPECT_EQ(session.preferences().at("language"), "en");
}

TEST(MenuScreen, OpenFileWithAppOpensWhatWasChosen) {
  TerminalSession session;
  ASSERT_TRUE(atMenu(session));
  ASSERT_TRUE(session.sendSlowly({"M", Key::down, Key::down, Key::enter}));
  ASSERT_TRUE(session.waitFor("Harbor") && session.waitUntilIdle());
  session.send("S");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  EXPECT_EQ(session.callsOf("open").size(), 1U);
  session.send("x");
  ASSERT_TRUE(atMenu(session));
}

}  // namespace
}  // namespace halyard
