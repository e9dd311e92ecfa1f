#include "halyard/terminal/cursor.hpp"

#include <gtest/gtest.h>

namespace halyard {
namespace {

TEST(Cursor, APlaceIsCountedFromOne) {
  EXPECT_EQ(cursorTo(1, 1), "\x1b[1;1H");
  EXPECT_EQ(cursorTo(12, 103), "\x1b[12;103H");
}

TEST(Cursor, ErasingTheScreenAlsoDropsTheScrollBack) { EXPECT_EQ(Cursor::eraseScreen, "\x1b[H\x1b[2J\x1b[3J"); }

}  // namespace
}  // namespace halyard
