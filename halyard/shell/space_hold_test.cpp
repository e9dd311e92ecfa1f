#include "halyard/shell/space_hold.hpp"

#include <gtest/gtest.h>

namespace halyard {
namespace {

using Press = SpaceHold::Press;
using std::chrono::milliseconds;

class SpaceHolding : public testing::Test {
 protected:
  Press after(int pause) {
    now += milliseconds(pause);
    return hold.press(now);
  }

  SpaceHold hold;
  SpaceHold::TimePoint now{};
};

TEST_F(SpaceHolding, PressesOfAPersonAreSingle) {
  EXPECT_EQ(after(0), Press::single);
  for (const int pause : {2000, 500, 200, 150, 130}) EXPECT_EQ(after(pause), Press::single) << pause;
}

TEST_F(SpaceHolding, ADoublePressAsFastAsARepeatIsNotAHeldKey) {
  EXPECT_EQ(after(0), Press::single);
  EXPECT_EQ(after(100), Press::single);
  EXPECT_EQ(after(300), Press::single);
  EXPECT_EQ(after(100), Press::single);
}

TEST_F(SpaceHolding, RepeatsAfterTheFirstPauseMakeAHeldKeyOnce) {
  for (const int rate : {15, 30, 90, 120}) {
    hold.release();
    EXPECT_EQ(after(1000), Press::single);
    EXPECT_EQ(after(400), Press::single) << "the pause before a key repeats";
    EXPECT_EQ(after(rate), Press::single);
    EXPECT_EQ(after(rate), Press::held) << rate;
    for (int i = 0; i < 50; ++i) EXPECT_EQ(after(rate), Press::stillHeld);
  }
}

TEST_F(SpaceHolding, LettingGoMakesTheNextPressANewOne) {
  for (const int pause : {0, 400, 30, 30}) after(pause);
  EXPECT_EQ(after(30), Press::stillHeld);
  EXPECT_EQ(after(301), Press::single);
  EXPECT_EQ(after(400), Press::single);
  EXPECT_EQ(after(30), Press::single);
  EXPECT_EQ(after(30), Press::held);
}

TEST_F(SpaceHolding, TheTimeThatItsActionTookIsNotAPause) {
  for (const int pause : {0, 400, 30}) after(pause);
  EXPECT_EQ(after(30), Press::held);
  now += milliseconds(800);
  hold.resume(now);
  EXPECT_EQ(after(90), Press::stillHeld);
}

TEST_F(SpaceHolding, AnotherKeyBetweenThemEndsTheRow) {
  after(0);
  after(30);
  hold.release();
  EXPECT_EQ(after(30), Press::single);
}

}  // namespace
}  // namespace halyard
