#include "halyard/terminal/screen.hpp"

#include <regex>

#include <gtest/gtest.h>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/terminal_testing.hpp"

namespace halyard {
namespace {

class ScreenPrinting : public testing::Test {
 protected:
  ScreenPrinting() { useEnglish(); }
};

std::string printed(const std::function<void()>& work) { return printedBy(work); }

// ---- measuring

TEST(VisibleWidth, OnlyColorSequencesAreNoColumns) {
  EXPECT_EQ(visibleWidth("\x1b[1;31m\x1b[0m\x1b[m"), 0);
  EXPECT_EQ(visibleWidth("\x1b[31mab\x1b[0m"), 2);
}

TEST(VisibleWidth, AnEmojiCountsAsOne) {
  EXPECT_EQ(visibleWidth("🔙"), 1);
  EXPECT_EQ(visibleWidth("⚠️ x"), 3);
  EXPECT_EQ(visibleWidth("👩‍👩‍👧"), 1);
}

TEST(VisibleWidth, CursorSequencesCountAsCharacters) {
  EXPECT_EQ(visibleWidth("\x1b[2K"), 4);
  EXPECT_EQ(visibleWidth("a\x1b[12;3Hb"), 9);
}

TEST(VisibleWidth, ALoneOrUnfinishedEscapeCounts) {
  EXPECT_EQ(visibleWidth("\x1b"), 1);
  EXPECT_EQ(visibleWidth("\x1b["), 2);
  EXPECT_EQ(visibleWidth("\x1b[31"), 4);
  EXPECT_EQ(visibleWidth("\x1b\x1b[31mx"), 2);
}

TEST(VisibleWidth, ACharacterThatASequenceSplitsCountsOnce) { EXPECT_EQ(visibleWidth("e\x1b[31m\xCC\x81"), 1); }

TEST(StripAnsi, RemovesCursorSequencesToo) {
  EXPECT_EQ(stripAnsi("\x1b[2Ja\x1b[1;31mb\x1b[3;4Hc\x1b[0m"), "abc");
  EXPECT_EQ(stripAnsi("no escape"), "no escape");
}

TEST(StripAnsi, KeepsWhatIsNoSequence) {
  EXPECT_EQ(stripAnsi("\x1b[?25lx"), "\x1b[?25lx");
  EXPECT_EQ(stripAnsi("\x1bOA"), "\x1bOA");
  EXPECT_EQ(stripAnsi("a\x1b["), "a\x1b[");
}

// The definition of both, by which the scanners are measured.
TEST(StripAnsi, TheScannersAgreeWithTheRegularExpressions) {
  const std::regex color("\x1b\\[[0-9;]*m");
  const std::regex any("\x1b\\[[0-9;]*[a-zA-Z]");
  const std::string alphabet = "\x1b\x1b[[m1;Kx";
  unsigned seed = 7;
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    for (int i = 0; i < 12; ++i) {
      seed = seed * 1103515245U + 12345U;
      text += alphabet[(seed >> 16) % alphabet.size()];
    }
    EXPECT_EQ(stripAnsi(text), std::regex_replace(text, any, ""));
    EXPECT_EQ(static_cast<std::size_t>(visibleWidth(text)), std::regex_replace(text, color, "").size());
  }
}

TEST(PadVisible, FillsUpAndNeverCuts) {
  EXPECT_EQ(padVisible("ab", 4), "ab  ");
  EXPECT_EQ(padVisible("\x1b[31mab\x1b[0m", 4), "\x1b[31mab\x1b[0m  ");
  EXPECT_EQ(padVisible("abcdef", 4), "abcdef");
  EXPECT_EQ(padVisible("abcdef", -1), "abcdef");
  EXPECT_EQ(padVisible("", 0), "");
}

TEST(ClippedVisible, CutsColumnsAndKeepsSequences) {
  EXPECT_EQ(clippedVisible("\x1b[31mabcdef\x1b[0m", 3), "\x1b[31mabc\x1b[0m");
  EXPECT_EQ(clippedVisible("ab\x1b[1mcd\x1b[0mef", 3), "ab\x1b[1mc\x1b[0m");
  EXPECT_EQ(clippedVisible("abc", 3), "abc");
  EXPECT_EQ(clippedVisible("abc", 0), "");
  EXPECT_EQ(clippedVisible("abc", -4), "");
}

TEST(ClippedVisible, NeverCutsThroughACharacter) {
  EXPECT_EQ(clippedVisible("äöü", 2), "äö");
  EXPECT_EQ(clippedVisible("a👩‍👩‍👧b", 2), "a👩‍👩‍👧");
}

TEST(ClippedVisible, ALoneEscapeIsACharacter) { EXPECT_EQ(clippedVisible("\x1bOA", 2), "\x1bO"); }

TEST(Repeated, RepeatsACharacterOfSeveralBytes) {
  EXPECT_EQ(repeated("─", 3), "───");
  EXPECT_EQ(repeated("─", 0), "");
  EXPECT_EQ(repeated("─", -2), "");
}

TEST(CellWidth, WideCharactersTakeTwoColumnsAndMarksNone) {
  EXPECT_EQ(cellWidth("aä─"), 3);
  EXPECT_EQ(cellWidth("漢🔙"), 4);
  EXPECT_EQ(cellWidth("e\xCC\x81"), 1);
  EXPECT_EQ(cellPrefix("a漢b", 2), "a");
  EXPECT_EQ(cellPrefix("a漢b", 3), "a漢");
}

TEST(TerminalSize, IsThatOfTheTerminal) {
  ForkedTerminal small([] { return terminalRows() == 17 && terminalColumns() == 61 ? 0 : 1; }, 17, 61);
  EXPECT_EQ(small.end(), ProgramEnd::exited(0));
}

TEST(TerminalSize, IsFortyByEightyWhereUnknown) {
  ForkedTerminal unknown([] { return terminalRows() == 40 && terminalColumns() == 80 ? 0 : 1; }, 0, 0);
  EXPECT_EQ(unknown.end(), ProgramEnd::exited(0));
  ForkedTerminal none([] {
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    return terminalRows() == 40 && terminalColumns() == 80 ? 0 : 1;
  });
  EXPECT_EQ(none.end(), ProgramEnd::exited(0));
}

// ---- printing

TEST_F(ScreenPrinting, ClearingDropsTheScrollBack) {
  EXPECT_EQ(printed([] { clearScreen(); }), "\x1b[H\x1b[2J\x1b[3J");
}

TEST_F(ScreenPrinting, StatusLinesHaveTheirSymbolAndColor) {
  EXPECT_EQ(printed([] { printSuccess("done"); }), "  \x1b[32m✓\x1b[0m \x1b[32mdone\x1b[0m\n");
  EXPECT_EQ(printed([] { printError("bad"); }), "  \x1b[31m✗\x1b[0m \x1b[31mbad\x1b[0m\n");
  EXPECT_EQ(printed([] { printWarning("hm"); }), "  \x1b[33m⚠\x1b[0m hm\n");
  EXPECT_EQ(printed([] { printInfo("so"); }), "  \x1b[34mℹ\x1b[0m so\n");
  EXPECT_EQ(printed([] { printStep("go"); }), "  \x1b[34m▸\x1b[0m go\n");
  EXPECT_EQ(printed([] { printCtrlCHint(); }), "  \x1b[34mℹ\x1b[0m Ctrl+C to stop\n");
}

TEST_F(ScreenPrinting, AnErrorAloneHasNoDetails) {
  EXPECT_EQ(printed([] { printErrorDetail("bad"); }), printed([] { printError("bad"); }));
}

TEST_F(ScreenPrinting, AnErrorShowsItsContextReasonAndSolution) {
  const std::string text = printed([] { printErrorDetail("bad", "the build", "no scheme", "choose one"); });
  EXPECT_EQ(text, printed([] { printError("bad"); }) +
                      "    \x1b[2mContext\x1b[0m:  the build\n"
                      "    \x1b[2mReason\x1b[0m:  no scheme\n"
                      "    \x1b[1;34m→\x1b[0m \x1b[2mSolution\x1b[0m:  choose one\n");
}

TEST_F(ScreenPrinting, BulletsTagsAndValues) {
  EXPECT_EQ(printed([] { printBullet("one"); }), "  \x1b[2m›\x1b[0m one\n");
  EXPECT_EQ(printed([] { printTag("größe", "x"); }), "\x1b[1;34m[GRÖSSE]\x1b[0m x\n");
  EXPECT_EQ(printed([] { printKeyValue("Key", "value"); }), "\x1b[1;34mKey:\x1b[0m  \x1b[2mvalue\x1b[0m\n");
  EXPECT_EQ(printed([] { printKeyValue("Key", ""); }), "\x1b[1;34mKey:\x1b[0m  \x1b[2m—\x1b[0m\n");
}

TEST_F(ScreenPrinting, RulesAndSectionsHaveTheirWidths) {
  EXPECT_EQ(stripAnsi(printed([] { printRule(); })), repeated("─", 79) + "\n");
  EXPECT_EQ(stripAnsi(printed([] { printSection("Title"); })), "── Title " + repeated("─", 70) + "\n");
  const std::string longTitle(80, 'x');
  EXPECT_EQ(stripAnsi(printed([&] { printSection(longTitle); })), "── " + longTitle + " \n");
}

std::vector<std::string> headerLines(std::string_view title, std::string_view description) {
  const std::string text = stripAnsi(printedBy([&] { printActionHeader(title, description, false); }));
  std::vector<std::string> lines;
  for (const std::string_view line : splitLines(text)) lines.emplace_back(line);
  EXPECT_EQ(lines.back(), "");
  lines.pop_back();
  return lines;
}

TEST_F(ScreenPrinting, AnActionHeaderIsABoxOfTitleAndDescription) {
  const auto lines = headerLines("Build", "Builds the app.");
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], "  ┌" + repeated("─", 75) + "┐");
  EXPECT_EQ(lines[1], "  │" + padVisible("  ▶  Build", 75) + "│");
  EXPECT_EQ(lines[2], "  │" + repeated("─", 75) + "│");
  EXPECT_EQ(lines[3], "  │" + padVisible("     Builds the app.", 75) + "│");
  EXPECT_EQ(lines[4], "  └" + repeated("─", 75) + "┘");
}

TEST_F(ScreenPrinting, AnActionHeaderHasItsColorsAndClearsWhenAsked) {
  const std::string text = printed([] { printActionHeader("Build", "Builds."); });
  EXPECT_TRUE(text.starts_with("\x1b[H\x1b[2J\x1b[3J\x1b[34m  ┌"));
  EXPECT_NE(text.find("\x1b[1m  ▶  Build"), std::string::npos);
  EXPECT_NE(text.find("\x1b[2m     Builds."), std::string::npos);
}

TEST_F(ScreenPrinting, AnEmptyDescriptionLeavesNoRuleAndNoBody) {
  const auto lines = headerLines("Build", "");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[2], "  └" + repeated("─", 75) + "┘");
}

TEST_F(ScreenPrinting, ADescriptionBreaksAtTheLastBlank) {
  const auto lines = headerLines("T", std::string(60, 'a') + " " + std::string(20, 'b'));
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3], "  │" + padVisible("     " + std::string(60, 'a'), 75) + "│");
  EXPECT_EQ(lines[4], "  │" + padVisible("     " + std::string(20, 'b'), 75) + "│");
}

TEST_F(ScreenPrinting, APieceOfExactlySeventyCharactersStays) {
  const auto lines = headerLines("T", std::string(70, 'a') + " " + std::string(70, 'b'));
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3], "  │     " + std::string(70, 'a') + "│");
  EXPECT_EQ(lines[4], "  │     " + std::string(70, 'b') + "│");
}

TEST_F(ScreenPrinting, AWordOfMoreThanSeventyCharactersIsBrokenAtSeventy) {
  const auto lines = headerLines("T", repeated("ä", 75));
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3], "  │     " + repeated("ä", 70) + "│");
  EXPECT_EQ(lines[4], "  │" + padVisible("     " + repeated("ä", 5), 75) + "│");
}

TEST(BoxLine, IsPaddedToTheFrameAndNeverCut) {
  EXPECT_EQ(stripAnsi(boxLine("x", Color::blue)), "│" + padVisible("x", 83) + "│");
  EXPECT_EQ(stripAnsi(boxLine(std::string(90, 'x'), Color::blue)), "│" + std::string(90, 'x') + "│");
  EXPECT_TRUE(boxLine("x", Color::blue).starts_with("\x1b[34m│"));
}

TEST(BoxLabel, IsPaddedToEightColumns) {
  EXPECT_EQ(boxLabel("Xcode", "15.0"), " \x1b[1;34mXcode:  \x1b[0m15.0 ");
  EXPECT_EQ(stripAnsi(boxLabel("Configuration", "x")), " Configuration:x ");
}

TEST(Colors, BlueServesForCyan) {
  EXPECT_EQ(Color::cyan, Color::blue);
  EXPECT_EQ(Color::boldCyan, Color::boldBlue);
  EXPECT_EQ(Color::boldBlueAlt, Color::boldBlue);
}

}  // namespace
}  // namespace halyard
