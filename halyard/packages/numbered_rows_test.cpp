#include "halyard/packages/numbered_rows.hpp"

#include <gtest/gtest.h>

#include "halyard/terminal/screen.hpp"

namespace halyard {
namespace {

TEST(NumberedRows, AreMarkedWithTwoDigitsOrTheLetterThatLeaves) {
  EXPECT_EQ(stripAnsi(numberedRow(7, "Label")), "  [07] Label");
  EXPECT_EQ(stripAnsi(numberedRow(12, "Label", "1.2G")), "  [12] Label   1.2G");
  EXPECT_EQ(stripAnsi(numberedRow(0, "Back")), "  [x] Back");
}

TEST(NumberedRows, AreChosenByTheirNumberWithAndWithoutAZero) {
  EXPECT_EQ(rowChosen("3", 3), 3U);
  EXPECT_EQ(rowChosen("03", 3), 3U);
  for (const char* answer : {"", "0", "4", "-1", "1a", "x", "99999999999999999999", "__redraw"}) {
    EXPECT_EQ(rowChosen(answer, 3), 0U) << answer;
  }
}

TEST(NumberedRows, AreLeftByThreeAnswers) {
  for (const char* answer : {"x", "q", "0"}) EXPECT_TRUE(leavesMenu(answer)) << answer;
  for (const char* answer : {"", "1", "__redraw", "__redraw__", "xx"}) EXPECT_FALSE(leavesMenu(answer)) << answer;
}

}  // namespace
}  // namespace halyard
