#include "halyard/build/live_build.hpp"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "halyard/build/build_clock_testing.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

class LiveBuildTest : public testing::Test {
 protected:
  ~LiveBuildTest() override {
    while (!BuildTimeline::current().phases.empty()) BuildTimeline::dropLastPhase();
    BuildTimeline::end();
  }

  BuildResult built(double timeout = 0) {
    const CapturedOutput output;
    BuildResult result = runBuildLive("xcodebuild build", timeout);
    shown = output.text();
    return result;
  }

  ContextReset context;
  StandingBuildClock clock;
  std::string shown;
};

TEST_F(LiveBuildTest, ABuildIsAnnouncedAndShownAsItComes) {
  context.runner.expect("xcodebuild build 2>&1", "CompileC a b\n** BUILD SUCCEEDED **\n");
  const BuildResult result = built(1800);
  EXPECT_TRUE(result.success);
  EXPECT_EQ(shown,
            "  \x1b[34mℹ\x1b[0m Starting build …  \x1b[2m(Live output)\x1b[0m\n\n"
            "  \x1b[34m🔨\x1b[0m Compiling\n"
            "     \x1b[2m1 files compiled\x1b[0m\n");
  EXPECT_EQ(context.runner.limits(), std::vector<double>{1800});
}

TEST_F(LiveBuildTest, TheResultHoldsAllDiagnosticsAndTheTime) {
  context.runner.expect("xcodebuild build 2>&1", "a.c:1: error: e\na.c:1: error: e\nb.c:2: warning: w\n", 65)
      .whenCalled([this] { clock.advance(61.2); });
  const BuildResult result = built();
  EXPECT_FALSE(result.success);
  EXPECT_EQ(result.errors, 2);
  EXPECT_EQ(result.warnings, 1);
  EXPECT_EQ(result.duration, "1m 01s");
  EXPECT_EQ(result.errorLines, (std::vector<std::string>{"a.c:1: error: e", "a.c:1: error: e"}));
  EXPECT_EQ(result.warningLines, std::vector<std::string>{"b.c:2: warning: w"});
}

TEST_F(LiveBuildTest, AnAbortedBuildIsNoSuccess) {
  context.runner.expect("xcodebuild build 2>&1", "** BUILD SUCCEEDED **\n").whenCalled([] {
    setOperationAborted(true);
  });
  EXPECT_FALSE(built().success);
}

TEST_F(LiveBuildTest, WithoutAMarkThereIsNoSuccess) {
  context.runner.expect("xcodebuild build 2>&1", "Ld A\n");
  EXPECT_FALSE(built().success);
}

class TimedLiveBuildTest : public LiveBuildTest {
 protected:
  /// Targets A, B and C take 1, 0.05 and 2 seconds.
  std::vector<BuildTimeline::Step> stepsOf(const std::string& verdict, std::int32_t status, bool abort) {
    BuildTimeline::begin("Run");
    const auto phase = BuildTimeline::beginPhase("Build", "🔨");
    TimedRunner runner(clock, verdict, status, abort);
    const DependenciesGuard guard({&runner, &context.files, &AppContext::shared()});
    built();
    return phase->steps;
  }

  /// Lets time pass between its lines.
  class TimedRunner final : public CommandRunning {
   public:
    TimedRunner(StandingBuildClock& clock, std::string verdict, std::int32_t status, bool abort)
        : clock_(clock), verdict_(std::move(verdict)), status_(status), abort_(abort) {}
    std::string run(const std::string& /*command*/) override { return {}; }
    std::int32_t runLive(const std::string& /*command*/) override { return 0; }
    PipeRunResult runLivePipe(const std::string& /*command*/, const StopTest& shouldStop, const LineHandler& onLine,
                              double /*timeout*/) override {
      EXPECT_FALSE(shouldStop);
      onLine("SwiftDriver A");
      clock_.advance(1);
      onLine("SwiftDriver B");
      clock_.advance(0.05);
      onLine("SwiftDriver C");
      clock_.advance(2);
      setOperationAborted(abort_);
      return {verdict_, status_};
    }

   private:
    StandingBuildClock& clock_;
    std::string verdict_;
    std::int32_t status_;
    bool abort_;
  };
};

TEST_F(TimedLiveBuildTest, TargetsBecomeStepsTheLongestFirstAndTheShortestNone) {
  const auto steps = stepsOf("** BUILD SUCCEEDED **", 0, false);
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_EQ(steps[0].name, "C");
  EXPECT_DOUBLE_EQ(steps[0].duration, 2);
  EXPECT_EQ(steps[1].name, "A");
  EXPECT_DOUBLE_EQ(steps[1].duration, 1);
  EXPECT_TRUE(steps[0].success && steps[1].success);
}

TEST_F(TimedLiveBuildTest, AFailedBuildsStepsAreNoFailures) {
  const auto steps = stepsOf("** BUILD FAILED **", 65, false);
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_TRUE(steps[0].success);
}

TEST_F(TimedLiveBuildTest, AnAbortedBuildsStepsAre) {
  const auto steps = stepsOf("", 2, true);
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_FALSE(steps[0].success);
}

TEST_F(LiveBuildTest, AFormattedRunIsLeftAsItIs) {
  context.runner.expect("xcodebuild clean 2>&1", "Check dependencies\nx\n", 3);
  const CapturedOutput output;
  const PipeRunResult result = runFormatted("xcodebuild clean 2>&1", 90);
  EXPECT_EQ(result.output, "Check dependencies\nx");
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(stripAnsi(output.text()), "  ▸ Initialization\n");
  EXPECT_EQ(context.runner.limits(), std::vector<double>{90});
}

TEST_F(LiveBuildTest, AFormattedRunsSpinnerEndsWithIt) {
  context.runner.expect("xcodebuild -resolvePackageDependencies", "Resolve Package Graph\nFetching x/Pack.git\n");
  const CapturedOutput output;
  runFormatted("xcodebuild -resolvePackageDependencies", 0);
  EXPECT_TRUE(output.text().ends_with("\x1b[?25h"));
}

}  // namespace
}  // namespace halyard
