#include "halyard/terminal/markdown.hpp"

#include <chrono>

#include <gtest/gtest.h>

#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

const std::string blue = "\x1b[34m";
const std::string boldBlue = "\x1b[1;34m";
const std::string bold = "\x1b[1m";
const std::string dim = "\x1b[2m";
const std::string orange = "\x1b[38;5;208m";
const std::string reset = "\x1b[0m";

std::string rule() { return blue + repeated("─", 60) + reset + "\n"; }
std::string render(std::string_view text) { return MarkdownTerminalRenderer::render(text); }
std::string plain(std::string_view text) { return stripAnsi(render(text)); }

TEST(Markdown, ACodeBlockStandsBetweenRulesInOrange) {
  EXPECT_EQ(render("```swift\nlet a = **1**\n```\nafter\n"),
            rule() + "  " + orange + "let a = **1**" + reset + "\n" + rule() + "after\n");
}

TEST(Markdown, AnUnterminatedCodeBlockLeavesTheRestInCodeStyle) {
  EXPECT_EQ(render("```\n# a\n\n| b |"), rule() + "  " + orange + "# a" + reset + "\n" + "  " + orange + reset + "\n" +
                                             "  " + orange + "| b |" + reset + "\n");
}

TEST(Markdown, ThreeDashesAreARule) {
  EXPECT_EQ(render("---"), rule());
  EXPECT_EQ(render("--- \r\n"), rule());
  EXPECT_EQ(render("----"), "----\n");
}

TEST(Markdown, HeadingsOfTheSecondAndThirdLevelAreBoldBlue) {
  EXPECT_EQ(render("## Two"), boldBlue + "Two" + reset + "\n");
  EXPECT_EQ(render("### Three"), boldBlue + "Three" + reset + "\n");
}

TEST(Markdown, AHeadingOfTheFirstLevelIsIndentedAndUnderlinedByARule) {
  EXPECT_EQ(render("# One"), "  " + boldBlue + "One" + reset + "\n" + rule());
}

TEST(Markdown, MarkupInsideAHeadingGivesTheHeadingsColourBack) {
  EXPECT_EQ(render("## a `b` c"), boldBlue + "a " + orange + "b" + reset + boldBlue + " c" + reset + "\n");
}

TEST(Markdown, AMarkWithoutItsBlankIsPlainText) {
  EXPECT_EQ(render("#hashtag"), "#hashtag\n");
  EXPECT_EQ(render("-1 degree"), "-1 degree\n");
  EXPECT_EQ(render("1.5 is more"), "1.5 is more\n");
}

TEST(Markdown, AQuoteHasABarAndIsDim) {
  EXPECT_EQ(render("> said"), "  │  " + dim + "said" + reset + "\n");
  EXPECT_EQ(render(">"), "  │  " + dim + reset + "\n");
}

TEST(Markdown, ListItemsKeepTheirIndentAndGetABullet) {
  EXPECT_EQ(render("- a\n* b"), blue + "•" + reset + " a\n" + blue + "•" + reset + " b\n");
  EXPECT_EQ(render("  - one level"), "  " + blue + "•" + reset + " one level\n");
}

TEST(Markdown, ADeeperListItemHasAHollowBullet) {
  EXPECT_EQ(render("    - deep"), "    " + blue + "◦" + reset + " deep\n");
  EXPECT_EQ(render("\t* tab"), "    " + blue + "◦" + reset + " tab\n");
}

TEST(Markdown, NumberedItemsStayNumbered) {
  EXPECT_EQ(render("12. twelve **b**"), "12. twelve " + bold + "b" + reset + "\n");
  EXPECT_EQ(render("   1. indented"), "   1. indented\n");
}

TEST(Markdown, EmptyLinesStay) {
  EXPECT_EQ(render("a\n\n  \nb"), "a\n\n\nb\n");
  EXPECT_EQ(render("\n"), "\n");
  EXPECT_EQ(render(""), "");
}

TEST(Markdown, BoldAndCodeSpansAreMarked) {
  EXPECT_EQ(render("a **b** `c` d"), "a " + bold + "b" + reset + " " + orange + "c" + reset + " d\n");
}

TEST(Markdown, AMarkerWithoutItsPartnerStays) {
  EXPECT_EQ(render("2 ** 3 and `x"), "2 ** 3 and `x\n");
  EXPECT_EQ(render("a ** b **c** d"), "a " + bold + " b " + reset + "c** d\n");
  EXPECT_EQ(render("****"), "****\n");
  EXPECT_EQ(render("``"), "``\n");
}

TEST(Markdown, AsterisksInsideCodeAreCode) {
  EXPECT_EQ(render("`a ** b` **c**"), orange + "a ** b" + reset + " " + bold + "c" + reset + "\n");
}

TEST(Markdown, CodeInsideBoldGivesBoldBack) {
  EXPECT_EQ(render("**a `b` c**"), bold + "a " + orange + "b" + reset + bold + " c" + reset + "\n");
}

TEST(Markdown, ATableIsBoxedWithColumnsAsWideAsTheirWidestCell) {
  EXPECT_EQ(plain("| Name | N |\n|------|:-:|\n| longer name | 12 |\nafter"),
            "┌─────────────┬────┐\n"
            "│ Name        │ N  │\n"
            "├─────────────┼────┤\n"
            "│ longer name │ 12 │\n"
            "└─────────────┴────┘\n"
            "after\n");
}

TEST(Markdown, TheLinesOfATableAreBlue) {
  EXPECT_EQ(render("| a |"), blue + "┌───┐" + reset + "\n" + blue + "│" + reset + " a " + blue + "│" + reset + "\n" +
                                 blue + "└───┘" + reset + "\n");
}

TEST(Markdown, ATableWithoutADashRowHasNoDividingLine) {
  EXPECT_EQ(plain("| a | b |\n| c | d |"), "┌───┬───┐\n│ a │ b │\n│ c │ d │\n└───┴───┘\n");
}

TEST(Markdown, ADashAsAValueFurtherDownIsKept) {
  EXPECT_EQ(plain("|a|\n|-|\n|-|"), "┌───┐\n│ a │\n├───┤\n│ - │\n└───┘\n");
}

TEST(Markdown, RowsWithFewerCellsAreFilledUp) {
  EXPECT_EQ(plain("| a | b |\n| c |\n| d"), "┌───┬───┐\n│ a │ b │\n│ c │   │\n│ d │   │\n└───┴───┘\n");
}

TEST(Markdown, MarkupInACellDoesNotCountForItsWidth) {
  EXPECT_EQ(plain("| **bold** |\n| x |"), "┌──────┐\n│ bold │\n│ x    │\n└──────┘\n");
}

TEST(Markdown, ATableAtTheEndOfTheTextIsPrinted) {
  EXPECT_EQ(plain("text\n| a |\n"), "text\n┌───┐\n│ a │\n└───┘\n");
  EXPECT_EQ(plain("|"), "┌──┐\n│  │\n└──┘\n");
  EXPECT_EQ(plain("|---|"), "");
}

TEST(Markdown, NoControlCharacterOfTheTextGetsThrough) {
  const std::string evil = "\x1b[2J\x07\x9b\xc2\x9b\r\x7f";
  for (const std::string frame : {"", "# ", "> ", "- ", "1. ", "```\n", "| ", "**", "`"}) {
    const std::string rendered = render(frame + evil + " **" + evil + "** `" + evil + "`");
    EXPECT_EQ(rendered.find("\x1b[2J"), std::string::npos) << frame;
    const std::string rest = stripAnsi(rendered);
    for (const char byte : rest) {
      EXPECT_FALSE((static_cast<unsigned char>(byte) < 0x20 && byte != '\n') || byte == '\x7f') << frame;
    }
    EXPECT_EQ(rest.find("\xc2\x9b"), std::string::npos) << frame;
    EXPECT_TRUE(isValidUtf8(rest)) << frame;
  }
}

TEST(Markdown, AMegabyteOfMarkersIsQuick) {
  std::string text;
  for (int index = 0; index < 300'000; ++index) text += index % 3 == 0 ? "**" : index % 3 == 1 ? "`" : "|*";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(render(text).empty());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace
}  // namespace halyard
