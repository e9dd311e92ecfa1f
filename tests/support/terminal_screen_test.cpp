#include "tests/support/terminal_screen.hpp"

#include <gtest/gtest.h>

namespace halyard {
namespace {

TEST(TerminalScreen, ACharacterMayBeSplitAnywhere) {
  const std::string text = "ä─…🙌\x1b[1mx";
  TerminalScreen screen(3, 20);
  for (const char byte : text) screen.feed(std::string_view(&byte, 1));
  EXPECT_EQ(screen.row(0), "ä─…🙌x");
}

TEST(TerminalScreen, ABrokenCharacterDoesntHoldBackWhatFollows) {
  TerminalScreen screen(3, 20);
  screen.feed("\xE2\x94");
  screen.feed("abc");
  EXPECT_TRUE(screen.contains("abc"));
}

}  // namespace
}  // namespace halyard
