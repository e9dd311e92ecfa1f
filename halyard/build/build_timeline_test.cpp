#include "halyard/build/build_timeline.hpp"

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/build/build_clock_testing.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

class BuildTimelineTest : public testing::Test {
 protected:
  ~BuildTimelineTest() override {
    reportCapture().reset();
    while (!BuildTimeline::current().phases.empty()) BuildTimeline::dropLastPhase();
    BuildTimeline::end();
  }

  static const BuildTimeline::Phase& phase(std::size_t index) { return *BuildTimeline::current().phases.at(index); }

  const ContextReset context;
  StandingBuildClock clock;
};

TEST_F(BuildTimelineTest, WithoutATimelineEverythingIsHarmless) {
  const CapturedOutput output;
  EXPECT_FALSE(BuildTimeline::current().isActive);
  const auto detached = BuildTimeline::beginPhase("Build", "🔨", "App");
  BuildTimeline::endPhase(false);
  BuildTimeline::skipPhase();
  BuildTimeline::dropLastPhase();
  BuildTimeline::addStep("App", true, 1);
  EXPECT_EQ(BuildTimeline::measureStep("x", [] { return 7; }), 7);
  EXPECT_EQ(BuildTimeline::withPhase("x", "", "", [] { return 8; }), 8);
  BuildTimeline::end();
  ASSERT_NE(detached, nullptr);
  EXPECT_EQ(detached->name, "Build");
  EXPECT_EQ(detached->icon, "🔨");
  EXPECT_EQ(detached->detail, "App");
  EXPECT_FALSE(detached->end.has_value());
  EXPECT_TRUE(detached->steps.empty());
  EXPECT_TRUE(BuildTimeline::current().phases.empty());
  EXPECT_EQ(output.text(), "");
}

TEST_F(BuildTimelineTest, APhaseIsOpenUntilItIsEnded) {
  BuildTimeline::begin("Run");
  EXPECT_EQ(BuildTimeline::current().title, "Run");
  const auto build = BuildTimeline::beginPhase("Build", "🔨", "Debug");
  EXPECT_EQ(BuildTimeline::current().currentPhase, build);
  EXPECT_FALSE(build->end.has_value());
  clock.advance(2);
  EXPECT_DOUBLE_EQ(build->duration(), 2);
  BuildTimeline::endPhase(true, false);
  clock.advance(5);
  EXPECT_DOUBLE_EQ(build->duration(), 2);
  EXPECT_TRUE(build->success);
}

TEST_F(BuildTimelineTest, AClosedPhaseStaysAsItIs) {
  BuildTimeline::begin("Run");
  const auto build = BuildTimeline::beginPhase("Build", "");
  BuildTimeline::endPhase(true);
  clock.advance(1);
  BuildTimeline::endPhase(false, true);
  BuildTimeline::skipPhase();
  EXPECT_TRUE(build->success);
  EXPECT_FALSE(build->technicalError);
  EXPECT_FALSE(build->skipped);
  EXPECT_DOUBLE_EQ(build->duration(), 0);
}

TEST_F(BuildTimelineTest, ATechnicalErrorWinsOverSuccess) {
  BuildTimeline::begin("Run");
  const auto build = BuildTimeline::beginPhase("Build", "");
  BuildTimeline::endPhase(true, true);
  EXPECT_FALSE(build->success);
  EXPECT_TRUE(build->technicalError);
}

TEST_F(BuildTimelineTest, TheNextPhaseClosesAnOpenOneAsSuccessful) {
  BuildTimeline::begin("Run");
  const auto clean = BuildTimeline::beginPhase("Clean", "🧹");
  clock.advance(3);
  BuildTimeline::beginPhase("Build", "🔨");
  clock.advance(3);
  EXPECT_TRUE(clean->end.has_value());
  EXPECT_TRUE(clean->success);
  EXPECT_DOUBLE_EQ(clean->duration(), 3);
  EXPECT_EQ(BuildTimeline::current().phases.size(), 2U);
}

TEST_F(BuildTimelineTest, AFailedPhaseStaysFailedBehindTheNext) {
  BuildTimeline::begin("Run");
  const auto clean = BuildTimeline::beginPhase("Clean", "🧹");
  BuildTimeline::endPhase(false);
  BuildTimeline::beginPhase("Build", "🔨");
  EXPECT_FALSE(clean->success);
}

TEST_F(BuildTimelineTest, ASkippedPhaseIsClosed) {
  BuildTimeline::begin("Run");
  const auto clean = BuildTimeline::beginPhase("Clean", "");
  BuildTimeline::skipPhase();
  EXPECT_TRUE(clean->skipped);
  EXPECT_TRUE(clean->end.has_value());
}

TEST_F(BuildTimelineTest, DroppingThePhaseMakesTheOneBeforeCurrent) {
  BuildTimeline::begin("Run");
  const auto clean = BuildTimeline::beginPhase("Clean", "");
  BuildTimeline::beginPhase("Build", "");
  BuildTimeline::dropLastPhase();
  EXPECT_EQ(BuildTimeline::current().currentPhase, clean);
  BuildTimeline::addStep("a", true, 1);
  EXPECT_EQ(clean->steps.size(), 1U);
  BuildTimeline::dropLastPhase();
  EXPECT_EQ(BuildTimeline::current().currentPhase, nullptr);
  BuildTimeline::dropLastPhase();
  EXPECT_TRUE(BuildTimeline::current().phases.empty());
}

TEST_F(BuildTimelineTest, StepsGoToTheCurrentPhaseAlsoWhenItIsClosed) {
  BuildTimeline::begin("Run");
  BuildTimeline::addStep("lost", true, 1);
  BuildTimeline::beginPhase("Build", "");
  BuildTimeline::endPhase(true);
  BuildTimeline::addStep("App", false, 1.5);
  ASSERT_EQ(phase(0).steps.size(), 1U);
  EXPECT_EQ(phase(0).steps[0].name, "App");
  EXPECT_FALSE(phase(0).steps[0].success);
  EXPECT_DOUBLE_EQ(phase(0).steps[0].duration, 1.5);
}

TEST_F(BuildTimelineTest, AMeasuredStepHasItsTimeAndFailsByAbortOnly) {
  BuildTimeline::begin("Run");
  BuildTimeline::beginPhase("Build", "");
  BuildTimeline::measureStep("one", [this] { clock.advance(4); });
  EXPECT_FALSE(BuildTimeline::measureStep("two", [] {
    setOperationAborted(true);
    return false;
  }));
  ASSERT_EQ(phase(0).steps.size(), 2U);
  EXPECT_DOUBLE_EQ(phase(0).steps[0].duration, 4);
  EXPECT_TRUE(phase(0).steps[0].success);
  EXPECT_FALSE(phase(0).steps[1].success);
}

TEST_F(BuildTimelineTest, APhaseAroundACallFailsByAbortOnly) {
  BuildTimeline::begin("Run");
  BuildTimeline::withPhase("Clean", "🧹", "d", [this] { clock.advance(2); });
  EXPECT_TRUE(phase(0).success);
  EXPECT_EQ(phase(0).detail, "d");
  EXPECT_DOUBLE_EQ(phase(0).duration(), 2);
  BuildTimeline::withPhase("Build", "🔨", "", [] { setOperationAborted(true); });
  EXPECT_FALSE(phase(1).success);
  EXPECT_FALSE(phase(1).technicalError);
  EXPECT_TRUE(phase(1).end.has_value());
}

TEST_F(BuildTimelineTest, TheTotalIsUpToTheLatestEnd) {
  BuildTimeline::begin("Run");
  clock.advance(1);
  EXPECT_DOUBLE_EQ(BuildTimeline::current().totalDuration(), 1);
  BuildTimeline::beginPhase("Clean", "");
  clock.advance(1);
  BuildTimeline::endPhase(true);
  clock.advance(7);
  EXPECT_DOUBLE_EQ(BuildTimeline::current().totalDuration(), 2);
}

TEST_F(BuildTimelineTest, AnEndWithoutPhasesPrintsNothing) {
  const CapturedOutput output;
  BuildTimeline::begin("Run");
  BuildTimeline::end();
  EXPECT_FALSE(BuildTimeline::current().isActive);
  EXPECT_EQ(output.text(), "");
}

TEST_F(BuildTimelineTest, ASecondBeginDropsTheFirstWithoutAReport) {
  const CapturedOutput output;
  BuildTimeline::begin("First");
  BuildTimeline::beginPhase("Build", "");
  BuildTimeline::begin("Second");
  EXPECT_TRUE(BuildTimeline::current().phases.empty());
  EXPECT_EQ(BuildTimeline::current().currentPhase, nullptr);
  EXPECT_TRUE(BuildTimeline::current().isActive);
  EXPECT_EQ(output.text(), "");
}

TEST_F(BuildTimelineTest, AnOpenPhaseAtTheEndCountsAsSuccessful) {
  const CapturedOutput output;
  BuildTimeline::begin("Run");
  const auto build = BuildTimeline::beginPhase("Build", "");
  clock.advance(2);
  BuildTimeline::end();
  EXPECT_TRUE(build->success);
  EXPECT_DOUBLE_EQ(build->duration(), 2);
  EXPECT_NE(output.text().find("✓"), std::string::npos);
  EXPECT_EQ(output.text().find("✗"), std::string::npos);
}

TEST_F(BuildTimelineTest, TheCaptureHoldsWhatWasPrintedWithoutColours) {
  reportCapture().emplace();
  std::string printed;
  {
    const CapturedOutput output;
    BuildTimeline::begin("Run");
    BuildTimeline::beginPhase("Build", "🔨");
    clock.advance(2);
    BuildTimeline::end();
    printed = output.text();
  }
  std::string captured;
  for (const std::string& line : *reportCapture()) captured += line + "\n";
  EXPECT_EQ(captured.find('\x1b'), std::string::npos);
  EXPECT_NE(printed.find('\x1b'), std::string::npos);
  EXPECT_EQ(captured, stripAnsi(printed));
  EXPECT_EQ(reportCapture()->front(), "");
}

}  // namespace
}  // namespace halyard
