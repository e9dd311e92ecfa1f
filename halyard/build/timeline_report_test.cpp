#include "halyard/build/timeline_report.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "halyard/build/build_clock_testing.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using Lines = std::vector<std::string>;

class TimelineReportTest : public testing::Test {
 protected:
  TimelineReportTest() : timeline("Run") {}

  BuildTimeline::Phase& add(const std::string& name, const std::string& icon, double seconds) {
    auto phase = std::make_shared<BuildTimeline::Phase>();
    phase->name = name;
    phase->icon = icon;
    phase->start = buildTimeNow();
    clock.advance(seconds);
    phase->end = buildTimeNow();
    timeline.phases.push_back(phase);
    return *phase;
  }

  [[nodiscard]] Lines plain() const {
    Lines lines = timelineReport(timeline);
    for (std::string& line : lines) line = stripAnsi(line);
    return lines;
  }

  /// The line that holds this text, with its colours.
  [[nodiscard]] std::string lineWith(const std::string& part) const {
    for (std::string& line : timelineReport(timeline)) {
      if (line.find(part) != std::string::npos) return line;
    }
    return {};
  }

  const ContextReset context;
  StandingBuildClock clock;
  BuildTimeline timeline;
};

TEST(DisplayWidth, EmojiCountTwoAndJoinersNone) {
  EXPECT_EQ(displayWidth("abc"), 3);
  EXPECT_EQ(displayWidth("🔨"), 2);
  EXPECT_EQ(displayWidth("⏱️"), 2);
  EXPECT_EQ(displayWidth("⏰⏳⏴"), 5);
  EXPECT_EQ(displayWidth("\u23EF"), 1);
  EXPECT_EQ(displayWidth("\u2699\uFE0E\u200D"), 1);
  EXPECT_EQ(displayWidth("\U0001EFFF\U0001F000"), 3);
  EXPECT_EQ(displayWidth("é"), 1);
  EXPECT_EQ(displayWidth("中"), 1);
  EXPECT_EQ(displayWidth(""), 0);
}

TEST(DisplayWidth, ColoursCountNothing) {
  EXPECT_EQ(displayWidth("\x1b[1;32mab\x1b[0m"), 2);
  EXPECT_EQ(displayWidth("\x1b[2K"), 4);
}

TEST(TruncateDisplay, ATextThatFitsStays) {
  EXPECT_EQ(truncateDisplay("abcde", 5), "abcde");
  EXPECT_EQ(truncateDisplay("", 0), "");
}

TEST(TruncateDisplay, ALongerTextEndsInAnEllipsisAtTheWidth) {
  EXPECT_EQ(truncateDisplay("abcdef", 5), "abcd…");
  EXPECT_EQ(truncateDisplay("ab🔨def", 4), "ab…");
  EXPECT_EQ(truncateDisplay("ab🔨def", 5), "ab🔨…");
  EXPECT_EQ(truncateDisplay("e\u0301e\u0301e\u0301", 3), "e\u0301…");
  EXPECT_EQ(truncateDisplay("abc", 1), "…");
  EXPECT_EQ(truncateDisplay("\x1b[31mabcdef\x1b[0m", 3), "ab…");
}

TEST(CenterDisplay, TheOddBlankIsToTheRight) {
  EXPECT_EQ(centerDisplay("ab", 5), " ab  ");
  EXPECT_EQ(centerDisplay("🔨", 6), "  🔨  ");
  EXPECT_EQ(centerDisplay("abcdef", 3), "abcdef");
}

TEST_F(TimelineReportTest, OnePhaseIsABox) {
  add("Build", "🔨", 12.4);
  const std::string rule = "\x1b[2m" + repeated("═", 79) + "\x1b[0m";
  const std::string green = "\x1b[1;32m";
  const std::string reset = "\x1b[0m";
  const std::string edge = repeated("─", 14);
  const std::string bar = green + "│" + reset;
  EXPECT_EQ(timelineReport(timeline),
            (Lines{"", rule,
                   "  \x1b[1;34m▸\x1b[0m  \x1b[1mBuild Timeline — Run\x1b[0m   Total: \x1b[1m12s\x1b[0m   "
                   "\x1b[1;32m✓\x1b[0m",
                   rule, "", "  " + green + "┌" + edge + "┐" + reset, "  " + bar + "   🔨 Build   " + bar,
                   "  " + bar + "     12s      " + bar, "  " + bar + "      ✓       " + bar,
                   "  " + green + "└" + edge + "┘" + reset, "  \x1b[2m      100%      \x1b[0m", "",
                   "  \x1b[2m↓\x1b[0m Longest phase: \x1b[1m🔨 Build\x1b[0m \x1b[2m(12s · 100%)\x1b[0m", rule, ""}));
}

TEST_F(TimelineReportTest, AnArrowLeadsFromBoxToBox) {
  add("Clean", "", 1);
  add("Build", "", 3);
  const Lines lines = plain();
  EXPECT_EQ(lines[5], "  ┌──────────────┐   ┌──────────────┐");
  EXPECT_EQ(lines[6], "  │    Clean     │   │    Build     │");
  EXPECT_EQ(lines[7], "  │      1s      │ → │      3s      │");
  EXPECT_EQ(lines[8], "  │      ✓       │   │      ✓       │");
  EXPECT_EQ(lines[9], "  └──────────────┘   └──────────────┘");
  EXPECT_EQ(lines[10], "        25%                75%       ");
  EXPECT_NE(lineWith("→").find(" \x1b[2m→\x1b[0m "), std::string::npos);
}

TEST_F(TimelineReportTest, SixPhasesAreTwoRowsOfBoxes) {
  for (int i = 0; i < 6; ++i) add("P", "", 1);
  const Lines lines = plain();
  EXPECT_EQ(visibleWidth(lines[5]), 2 + 4 * 16 + 3 * 3);
  EXPECT_EQ(lines[11], "");
  EXPECT_EQ(visibleWidth(lines[12]), 2 + 2 * 16 + 3);
  EXPECT_EQ(lines[18], "");
}

TEST_F(TimelineReportTest, SevenPhasesAreBars) {
  for (int i = 0; i < 7; ++i) add("P", "🔨", 60);
  const Lines lines = plain();
  EXPECT_EQ(lines[5], "     0:00      1:10      2:20      3:30      4:40      5:50      7:00 ");
  EXPECT_EQ(lines[6], "     ├─────────┼─────────┼─────────┼─────────┼─────────┼─────────┤");
  EXPECT_EQ(lines[7], "🔨  " + repeated("█", 9) + std::string(51, ' ') + "  1m 00s  ✓");
  EXPECT_EQ(lines[8], "🔨  " + std::string(9, ' ') + repeated("█", 9) + std::string(42, ' ') + "  1m 00s  ✓");
  EXPECT_EQ(lines[14], "");
}

TEST_F(TimelineReportTest, ABarHasItsColourAndItsRemark) {
  for (int i = 0; i < 6; ++i) add("P", "", 1);
  BuildTimeline::Phase& last = add("Last", "", 6);
  last.success = false;
  last.detail = "iPhone 16 Pro Max (18.1)";
  EXPECT_EQ(lineWith("iPhone"), "    " + std::string(30, ' ') + "\x1b[1;31m" + repeated("█", 30) +
                                    "\x1b[0m  \x1b[1m6s     \x1b[0m \x1b[1;31m✗\x1b[0m  "
                                    "\x1b[2miPhone 16 Pro Max…\x1b[0m");
}

TEST_F(TimelineReportTest, ASkippedPhaseIsALightBar) {
  for (int i = 0; i < 6; ++i) add("P", "", 10);
  add("Skipped", "", 1).skipped = true;
  EXPECT_EQ(lineWith("░"), "    " + std::string(59, ' ') + "\x1b[2m░\x1b[0m  \x1b[1m1s     \x1b[0m \x1b[2m⊘\x1b[0m");
}

TEST_F(TimelineReportTest, AShortPhaseStillHasAColumn) {
  add("Short", "", 0.001);
  for (int i = 0; i < 6; ++i) add("P", "", 100);
  EXPECT_EQ(plain()[7], "    █" + std::string(59, ' ') + "  0s      ✓");
}

TEST_F(TimelineReportTest, APhaseAtTheVeryEndHasTheLastColumn) {
  for (int i = 0; i < 6; ++i) add("P", "", 100);
  add("Late", "", 0);
  EXPECT_EQ(plain()[13], "    " + std::string(59, ' ') + "█  0s      ✓");
}

TEST_F(TimelineReportTest, ARunOfASecondOrLessIsScaledToOneSecond) {
  for (int i = 0; i < 7; ++i) add("P", "", 0.05);
  EXPECT_EQ(plain()[7], "    ███" + std::string(57, ' ') + "  0s      ✓");
}

TEST_F(TimelineReportTest, ALongNameIsCutToFitItsBox) {
  add("ANameOfTwentyLetters", "🔨", 1);
  EXPECT_EQ(plain()[6], "  │🔨 ANameOfTwe…│");
  timeline.phases[0]->icon.clear();
  EXPECT_EQ(plain()[6], "  │ANameOfTwenty…│");
}

TEST_F(TimelineReportTest, BordersStayAlignedWhateverTheIcon) {
  for (const char* const icon : {"🔨", "🧪", "⏳", "•", "🏗️", "", "👩‍💻"}) {
    timeline.phases.clear();
    add("ANameOfTwentyLetters", icon, 1);
    EXPECT_EQ(displayWidth(timelineReport(timeline)[6]), 18) << icon;
  }
}

TEST_F(TimelineReportTest, EachStatusHasItsColourAndMark) {
  BuildTimeline::Phase& phase = add("P", "", 1);
  phase.success = false;
  EXPECT_NE(lineWith("┌").find("\x1b[1;31m┌"), std::string::npos);
  EXPECT_EQ(plain()[8], "  │      ✗       │");
  phase.technicalError = true;
  EXPECT_NE(lineWith("┌").find("\x1b[1;33m┌"), std::string::npos);
  EXPECT_EQ(plain()[8], "  │      ⚠       │");
  phase.skipped = true;
  EXPECT_NE(lineWith("┌").find("\x1b[2m┌"), std::string::npos);
  EXPECT_EQ(plain()[8], "  │      ⊘       │");
}

TEST_F(TimelineReportTest, TheOverallMarkIsThatOfTheWorst) {
  BuildTimeline::Phase& first = add("A", "", 1);
  BuildTimeline::Phase& second = add("B", "", 1);
  const auto mark = [this] { return lineWith("Total"); };
  EXPECT_TRUE(mark().ends_with("\x1b[1;32m✓\x1b[0m"));
  first.success = false;
  EXPECT_TRUE(mark().ends_with("\x1b[1;31m✗\x1b[0m"));
  first.skipped = true;
  EXPECT_TRUE(mark().ends_with("\x1b[1;32m✓\x1b[0m"));
  second.success = false;
  second.technicalError = true;
  EXPECT_TRUE(mark().ends_with("\x1b[1;33m⚠\x1b[0m"));
  first.skipped = false;
  EXPECT_TRUE(mark().ends_with("\x1b[1;31m✗\x1b[0m"));
}

TEST_F(TimelineReportTest, StepsStandBelowTheirPhases) {
  add("Clean", "", 1);
  BuildTimeline::Phase& build = add("Build", "🔨", 9);
  build.steps = {{"App", 61, true}, {"Kit", 0.25, false}};
  const Lines lines = timelineReport(timeline);
  const auto at = std::ranges::find(lines, "  \x1b[1;34mSub-steps:\x1b[0m");
  ASSERT_NE(at, lines.end());
  EXPECT_EQ(Lines(at + 1, at + 5),
            (Lines{"    \x1b[1m🔨 Build\x1b[0m  \x1b[2m(9s)\x1b[0m", "      \x1b[2m•\x1b[0m App  \x1b[2m1m 01s\x1b[0m",
                   "      \x1b[1;31m✗\x1b[0m Kit  \x1b[2m0.25s\x1b[0m", ""}));
}

TEST_F(TimelineReportTest, TheBarReportHasNoSteps) {
  for (int i = 0; i < 7; ++i) add("P", "", 1).steps = {{"App", 1, true}};
  EXPECT_EQ(lineWith("Sub-steps"), "");
}

TEST_F(TimelineReportTest, TheFirstOfEqualPhasesIsTheLongest) {
  add("A", "", 2);
  add("B", "", 2);
  EXPECT_EQ(stripAnsi(lineWith("Longest")), "  ↓ Longest phase: A (2s · 50%)");
}

TEST_F(TimelineReportTest, SetupGoesByExactNamesAndTestsByAnyCase) {
  for (const char* const name : {"Clean", "Caches", "Resolve", "PM-Sync", "Dependencies", "clean", "Unit tests"}) {
    add(name, "", 1);
  }
  add("LATEST", "", 3);
  EXPECT_EQ(lineWith("Setup"), "  \x1b[2m↓\x1b[0m Setup overhead: \x1b[1m5s\x1b[0m \x1b[2m(50%)\x1b[0m");
  EXPECT_EQ(lineWith("share"), "  \x1b[2m↓\x1b[0m Test share: \x1b[1m4s\x1b[0m \x1b[2m(40%)\x1b[0m");
}

TEST_F(TimelineReportTest, WithoutSuchPhasesThereAreNoSuchInsights) {
  add("Build", "", 1);
  EXPECT_EQ(lineWith("Setup"), "");
  EXPECT_EQ(lineWith("share"), "");
}

TEST_F(TimelineReportTest, ATotalOfNothingHasNoInsights) {
  add("Test", "", 0);
  EXPECT_EQ(plain()[10], "         0%       ");
  EXPECT_EQ(lineWith("↓"), "");
}

TEST_F(TimelineReportTest, TextsFromOutsideCannotDriveTheTerminal) {
  timeline.title = "a\x1b[2Jb";
  BuildTimeline::Phase& phase = add("n\x1b[31m\r", "", 1);
  phase.steps = {{"s\x1b]0;x\x07", 1, true}};
  for (int i = 0; i < 2; ++i) {
    for (const std::string& line : plain()) {
      EXPECT_EQ(line.find_first_of("\x1b\r\x07"), std::string::npos) << line;
    }
    phase.detail = "\x1b[2J";
    while (timeline.phases.size() < 7) add("P", "", 1);
  }
}

TEST_F(TimelineReportTest, SpeaksGermanToo) {
  add("Build", "", 1);
  setCurrentLanguage("de");
  EXPECT_NE(lineWith("Gesamt").find("Build-Zeitachse – Run"), std::string::npos);
}

}  // namespace
}  // namespace halyard
