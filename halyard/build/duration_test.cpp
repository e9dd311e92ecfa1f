#include "halyard/build/duration.hpp"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "halyard/build/build_clock_testing.hpp"

namespace halyard {
namespace {

TEST(Duration, BelowAMinuteHasTenths) {
  EXPECT_EQ(formatDuration(0), "0.0s");
  EXPECT_EQ(formatDuration(12.34), "12.3s");
  EXPECT_EQ(formatDuration(59.96), "60.0s");
}

TEST(Duration, FromAMinuteOnHasMinutesAndWholeSeconds) {
  EXPECT_EQ(formatDuration(60), "1m 00s");
  EXPECT_EQ(formatDuration(125.9), "2m 05s");
  EXPECT_EQ(formatDuration(3725), "62m 05s");
}

TEST(Duration, SecondsAreRounded) {
  EXPECT_EQ(formatSeconds(0.4), "0s");
  EXPECT_EQ(formatSeconds(0.5), "1s");
  EXPECT_EQ(formatSeconds(59.4), "59s");
  EXPECT_EQ(formatSeconds(59.5), "1m 00s");
  EXPECT_EQ(formatSeconds(605), "10m 05s");
}

TEST(Duration, AShortStepHasHundredths) {
  EXPECT_EQ(formatStepSeconds(0.123), "0.12s");
  EXPECT_EQ(formatStepSeconds(0.999), "1.00s");
  EXPECT_EQ(formatStepSeconds(1), "1s");
  EXPECT_EQ(formatStepSeconds(61), "1m 01s");
}

TEST(Duration, NoNumberIsTooOddToBeShown) {
  for (const double odd : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(), -1e300}) {
    EXPECT_FALSE(formatDuration(odd).empty());
    EXPECT_TRUE(formatSeconds(odd).ends_with('s'));
    EXPECT_TRUE(formatStepSeconds(odd).ends_with('s'));
  }
}

TEST(Duration, TheClockIsTheGuardsUntilItsEnd) {
  {
    StandingBuildClock clock;
    const BuildTime before = buildTimeNow();
    clock.advance(1.5);
    EXPECT_DOUBLE_EQ(secondsBetween(before, buildTimeNow()), 1.5);
  }
  EXPECT_GE(buildTimeNow(), BuildTime() + std::chrono::seconds(2));
}

}  // namespace
}  // namespace halyard
