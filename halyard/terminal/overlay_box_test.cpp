#include "halyard/terminal/overlay_box.hpp"

#include <regex>

#include <gtest/gtest.h>

#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

struct PlacedRow {
  int row;
  int column;
  std::string text;  // without colours

  bool operator==(const PlacedRow&) const = default;
};

std::vector<PlacedRow> placedRows(const std::string& drawn) {
  static const std::regex place("\x1b\\[([0-9]+);([0-9]+)H");
  std::vector<PlacedRow> rows;
  for (std::sregex_iterator match(drawn.begin(), drawn.end(), place), end; match != end; ++match) {
    const auto start = static_cast<std::size_t>(match->position() + match->length());
    const std::string rest = drawn.substr(start);
    std::smatch next;
    const std::string text = std::regex_search(rest, next, place) ? next.prefix().str() : rest;
    rows.push_back({std::stoi((*match)[1]), std::stoi((*match)[2]), stripAnsi(text)});
  }
  return rows;
}

std::vector<std::string> texts(const std::string& drawn) {
  std::vector<std::string> result;
  for (const PlacedRow& row : placedRows(drawn)) result.push_back(row.text);
  return result;
}

TEST(OverlayBox, IsAtLeastFortyColumnsWideAndCentredOverTheFrame) {
  EXPECT_EQ(placedRows(overlayBox({}, {"hello"})),
            (std::vector<PlacedRow>{{18, 22, "┌" + repeated("─", 40) + "┐"},
                                    {19, 22, "│ hello" + std::string(33, ' ') + " │"},
                                    {20, 22, "└" + repeated("─", 40) + "┘"},
                                    {34, 1, ""}}));
}

TEST(OverlayBox, ATitleSplitsTheUpperBorderWithTheSmallerHalfAtTheLeft) {
  const std::vector<PlacedRow> rows = placedRows(overlayBox("Title", {"x"}));
  // 40 columns less " Title " leaves 33 dashes: 16 and 17.
  EXPECT_EQ(rows[0].text, "┌" + repeated("─", 16) + " Title " + repeated("─", 17) + "┐");
  // Counted with its title, the box has four rows: (25 - 4) / 2 = 10 below row 6, from 0.
  EXPECT_EQ(rows[0].row, 17);
}

TEST(OverlayBox, TheTitleIsBold) { EXPECT_NE(overlayBox("Title", {}).find("\x1b[1m Title "), std::string::npos); }

TEST(OverlayBox, BordersHaveTheAccentStyle) { EXPECT_EQ(overlayBox({}, {}).find("\x1b[18;22H\x1b[1;34m┌"), 0U); }

TEST(OverlayBox, HintsStandInARowOfTheirOwnBelowARule) {
  const std::string drawn = overlayBox({}, {"x"}, "ESC: Cancel", "Enter: Search");
  EXPECT_EQ(texts(drawn),
            (std::vector<std::string>{
                "┌" + repeated("─", 40) + "┐", "│ x" + std::string(38, ' ') + "│", "├" + repeated("─", 40) + "┤",
                "│ ESC: Cancel" + std::string(14, ' ') + "Enter: Search │", "└" + repeated("─", 40) + "┘", ""}));
  // Five rows, 2 + 2 + one line: (25 - 5) / 2 = 10.
  EXPECT_EQ(placedRows(drawn).front().row, 17);
}

TEST(OverlayBox, TheWidestPartDecidesTheWidth) {
  const auto widthOf = [](const std::string& drawn) { return visibleWidth(texts(drawn).front()) - 2; };
  EXPECT_EQ(widthOf(overlayBox({}, {std::string(50, 'l')})), 54);
  EXPECT_EQ(widthOf(overlayBox(std::string(50, 't'), {})), 60);
  EXPECT_EQ(widthOf(overlayBox({}, {}, std::string(30, 'a'), std::string(20, 'b'))), 58);
  EXPECT_EQ(widthOf(overlayBox({}, {std::string(75, 'l')})), 79);
  EXPECT_EQ(widthOf(overlayBox({}, {std::string(500, 'l')})), 79);
}

TEST(OverlayBox, NoPartBreaksOutOfTheWidestBox) {
  const std::string drawn =
      overlayBox(std::string(200, 't'), {std::string(200, 'l'), "\x1b[32m" + std::string(200, 'c') + "\x1b[0m"},
                 std::string(60, 'a'), std::string(60, 'b'), true);
  for (const std::string& text : texts(drawn)) {
    EXPECT_TRUE(text.empty() || visibleWidth(text) == 81) << text;
  }
}

TEST(OverlayBox, ColoursOfALineDoNotCount) {
  const std::string drawn = overlayBox({}, {"\x1b[32mgreen\x1b[0m"});
  EXPECT_EQ(texts(drawn)[1], "│ green" + std::string(34, ' ') + "│");
  EXPECT_NE(drawn.find("\x1b[32mgreen\x1b[0m"), std::string::npos);
}

TEST(OverlayBox, TheLastLineIsCentredOnRequestAndTheSmallerHalfIsAtTheLeft) {
  const std::string drawn = overlayBox({}, {"abc", "abc"}, {}, {}, true);
  EXPECT_EQ(texts(drawn)[1], "│ abc" + std::string(36, ' ') + "│");
  EXPECT_EQ(texts(drawn)[2], "│ " + std::string(17, ' ') + "abc" + std::string(18, ' ') + " │");
}

TEST(OverlayBox, AHighBoxBeginsNoHigherThanBelowTheHeader) {
  const std::vector<std::string> lines(40, "x");
  EXPECT_EQ(placedRows(overlayBox("Title", lines)).front().row, 7);
}

}  // namespace
}  // namespace halyard
