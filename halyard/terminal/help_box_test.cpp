#include "halyard/terminal/help_box.hpp"

#include <algorithm>
#include <regex>

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

std::vector<std::string> rowsOf(const std::string& drawn) {
  static const std::regex place("\x1b\\[[0-9]+;[0-9]+H");
  const std::string marked = std::regex_replace(drawn, place, "\n");
  std::vector<std::string> rows;
  for (const std::string_view row : splitLines(marked)) rows.push_back(stripAnsi(row));
  rows.erase(rows.begin());
  EXPECT_EQ(rows.back(), "");  // the cursor's way out
  rows.pop_back();
  return rows;
}

std::string numberedLines(int count) {
  std::string text;
  for (int line = 0; line < count; ++line) text += (line > 0 ? "\n" : "") + std::string("line ") + std::to_string(line);
  return text;
}

int rowsWith(const std::vector<std::string>& rows, const std::string& what) {
  return static_cast<int>(
      std::ranges::count_if(rows, [&](const std::string& row) { return row.find(what) != std::string::npos; }));
}

TEST(WrappedLines, BreaksAtTheLastBlankThatFits) {
  EXPECT_EQ(wrappedLines("one two three", 7), (std::vector<std::string>{"one two", "three"}));
  EXPECT_EQ(wrappedLines("one two three", 8), (std::vector<std::string>{"one two", "three"}));
  EXPECT_EQ(wrappedLines("one two three", 6), (std::vector<std::string>{"one", "two", "three"}));
}

TEST(WrappedLines, KeepsLineEndsAndEmptyLines) {
  EXPECT_EQ(wrappedLines("a\n\nb\r\nc", 10), (std::vector<std::string>{"a", "", "b", "c"}));
}

TEST(WrappedLines, AWordThatIsTooLongIsBroken) {
  EXPECT_EQ(wrappedLines("abcdefgh ij", 3), (std::vector<std::string>{"abc", "def", "gh", "ij"}));
  EXPECT_EQ(wrappedLines("  abcdefgh", 4), (std::vector<std::string>{"  ab", "cdef", "gh"}));
}

TEST(WrappedLines, CountsCharactersNotBytes) {
  EXPECT_EQ(wrappedLines("ääää öö", 4), (std::vector<std::string>{"ääää", "öö"}));
}

TEST(WrappedLines, NoControlCharacterGetsThrough) {
  for (const std::string& line : wrappedLines("a\x1b[2Jb\x07", 20)) EXPECT_EQ(line.find('\x1b'), std::string::npos);
}

TEST(ScrollThumb, ATextThatFitsHasNone) {
  EXPECT_EQ(scrollThumb(16, 16, 0), ScrollThumb{});
  EXPECT_EQ(scrollThumb(0, 16, 0), ScrollThumb{});
}

TEST(ScrollThumb, SizeAndPlaceAreInProportion) {
  EXPECT_EQ(scrollThumb(32, 16, 0), (ScrollThumb{.start = 0, .length = 8}));
  EXPECT_EQ(scrollThumb(32, 16, 8), (ScrollThumb{.start = 4, .length = 8}));
  EXPECT_EQ(scrollThumb(32, 16, 16), (ScrollThumb{.start = 8, .length = 8}));
}

TEST(ScrollThumb, OfAVeryLongTextIsStillOneRow) {
  EXPECT_EQ(scrollThumb(100'000, 16, 0), (ScrollThumb{.start = 0, .length = 1}));
  EXPECT_EQ(scrollThumb(100'000, 16, 100'000), (ScrollThumb{.start = 15, .length = 1}));
}

TEST(HelpBox, EachLineIsPlacedFromTheTopRowOn) {
  int scroll = 0;
  const std::string drawn = helpBox({"Title", "text"}, 15, 16, scroll);
  for (int row = 15; row <= 32; ++row) {
    EXPECT_NE(drawn.find("\x1b[" + std::to_string(row) + ";"), std::string::npos) << row;
  }
  EXPECT_EQ(drawn.find('\n'), std::string::npos);
  EXPECT_EQ(rowsOf(drawn).size(), 18U);
}

TEST(HelpBox, TheCursorEndsBelowTheFrame) {
  int scroll = 0;
  EXPECT_TRUE(helpBox({"Title", "text"}, 15, 16, scroll).ends_with("\x1b[34;1H"));
}

TEST(HelpBox, AllItsRowsAreOfOneWidth) {
  int scroll = 0;
  const std::vector<std::string> rows = rowsOf(helpBox({"Title", numberedLines(30)}, 15, 16, scroll));
  for (const std::string& row : rows) EXPECT_EQ(visibleWidth(row), visibleWidth(rows.front())) << row;
}

TEST(HelpBox, TheTitleStandsInTheUpperBorderAndTheHintInTheLower) {
  loadStringCatalog({});
  int scroll = 0;
  const std::vector<std::string> rows = rowsOf(helpBox({"Cleaning", "text"}, 15, 16, scroll));
  EXPECT_EQ(rows.front().find("┌─ Cleaning ─"), 0U);
  EXPECT_NE(rows.back().find(std::string(localized("help_scroll_hint"))), std::string::npos);
  EXPECT_TRUE(rows.back().starts_with("└"));
}

TEST(HelpBox, ATitleThatDoesNotFitEndsInAnEllipsis) {
  int scroll = 0;
  const std::vector<std::string> rows = rowsOf(helpBox({std::string(300, 'T'), "text"}, 15, 16, scroll));
  EXPECT_NE(rows.front().find("T… ─┐"), std::string::npos) << rows.front();
  EXPECT_EQ(visibleWidth(rows.front()), visibleWidth(rows[1]));
}

TEST(HelpBox, AShortTextShowsNoThumb) {
  int scroll = 5;
  const std::vector<std::string> rows = rowsOf(helpBox({"Title", numberedLines(16)}, 15, 16, scroll));
  EXPECT_EQ(scroll, 0);
  EXPECT_EQ(rowsWith(rows, "█"), 0);
  EXPECT_EQ(rowsWith(rows, "░"), 16);
}

TEST(HelpBox, TheThumbStandsWhereTheVisiblePartIs) {
  int scroll = 16;
  const std::vector<std::string> rows = rowsOf(helpBox({"Title", numberedLines(32)}, 15, 16, scroll));
  EXPECT_EQ(rowsWith(rows, "█"), 8);
  EXPECT_NE(rows[8].find("░│"), std::string::npos);
  EXPECT_NE(rows[9].find("█│"), std::string::npos);
  EXPECT_NE(rows[16].find("█│"), std::string::npos);
}

TEST(HelpBox, TheScrollOffsetIsLimitedToTheLastFullPageAndWrittenBack) {
  int scroll = 1000;
  const std::vector<std::string> rows = rowsOf(helpBox({"Title", numberedLines(20)}, 15, 16, scroll));
  EXPECT_EQ(scroll, 4);
  EXPECT_NE(rows[1].find("line 4 "), std::string::npos);
  EXPECT_NE(rows[16].find("line 19 "), std::string::npos);
  scroll = -3;
  helpBox({"Title", numberedLines(20)}, 15, 16, scroll);
  EXPECT_EQ(scroll, 0);
}

TEST(HelpBox, AnEmptyTextIsAnEmptyBox) {
  int scroll = 0;
  EXPECT_EQ(rowsOf(helpBox({"Title", ""}, 15, 16, scroll)).size(), 18U);
}

}  // namespace
}  // namespace halyard
