#include "halyard/testruns/test_run.hpp"

#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/build/build_clock_testing.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/testruns/test_flow_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RunTests : public TestFlow {
 protected:
  static TestRunData quietly(const std::string& command) {
    const CapturedOutput output;
    return runTests(command);
  }
};

constexpr std::string_view oneTest = R"({"testNodes": [{"nodeType": "Test Suite", "name": "S", "children": [
    {"nodeType": "Test Case", "name": "a", "result": "Failed"}]}]})";

TEST_F(RunTests, AddsTheErrorsStreamAndHasNoLimit) {
  runner.expect("xcodebuild test 2>&1", std::string(passingRun));
  const TestRunData data = quietly("xcodebuild test");
  EXPECT_EQ(data.passed.size(), 1U);
  EXPECT_EQ(classify(data), TestRunOutcome::success);
  EXPECT_THAT(runner.limits(), ElementsAre(0));
}

TEST_F(RunTests, SaysThatItStartsAndHowToStop) {
  runner.expect("x 2>&1", std::string(passingRun));
  const CapturedOutput output;
  runTests("x");
  const std::string text = stripAnsi(output.text());
  EXPECT_THAT(
      text, HasSubstr(std::string(localized("starting_build")) + "  (" + std::string(localized("live_output")) + ")"));
  EXPECT_THAT(text, HasSubstr("Ctrl+C to stop"));
  EXPECT_LT(text.find("Ctrl+C"), text.find("—— 🧪 PierTests"));
}

TEST_F(RunTests, ALastLineWithoutItsEndCounts) {
  runner.expect("x 2>&1", "Test case 'P.a()' failed on 'My Mac - A (1)' (0.5 seconds)\n\n** TEST EXECUTE FAILED **");
  const TestRunData data = quietly("x");
  EXPECT_TRUE(data.buildFailed);
  EXPECT_EQ(data.failed.size(), 1U);
}

TEST_F(RunTests, ALastLineWithItsEndCountsOnce) {
  runner.expect("x 2>&1", "** TEST SUCCEEDED **\nTest case 'P.a()' passed on 'My Mac - A (1)' (0.5 seconds)\n\n  \n");
  EXPECT_EQ(quietly("x").passed.size(), 1U);
}

TEST_F(RunTests, WithoutTestsReadsTheNewestBundle) {
  runner.expect("x 2>&1", "** TEST FAILED **\n");
  bundle("/b/R.xcresult", std::string(oneTest));
  EXPECT_THAT(quietly("x").failed, ElementsAre(FailedTest{"S", "a", 0, {}}));
}

TEST_F(RunTests, ASuccessWithoutTestsAndWithAnEmptyBundleIsOne) {
  runner.expect("x 2>&1", "** TEST SUCCEEDED **\n");
  bundle("/b/R.xcresult");
  const TestRunData data = quietly("x");
  EXPECT_EQ(classify(data), TestRunOutcome::success);
  EXPECT_THAT(data.passed, IsEmpty());
}

TEST_F(RunTests, WithoutABundleNothingMoreIsAsked) {
  runner.expect("x 2>&1", "xcodebuild: error: no such scheme\n", 65);
  bundle("");
  const TestRunData data = quietly("x");
  EXPECT_EQ(classify(data), TestRunOutcome::technicalFailure);
  EXPECT_EQ(data.errorCount, 1);
}

TEST_F(RunTests, ABundleOfAnEarlierRunIsNotThisOnes) {
  files.addFolder("/b/Old.xcresult");
  files.setModificationDate("/b/Old.xcresult", std::chrono::system_clock::now() - std::chrono::minutes(5));
  runner.expect("x 2>&1", "xcodebuild: error: no such scheme\n", 65);
  runner.expect("find '" + folder + "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1", "/b/Old.xcresult\n");
  EXPECT_THAT(quietly("x").failed, IsEmpty());
}

TEST_F(RunTests, ABundleOfThisRunIs) {
  files.addFolder("/b/R.xcresult");
  runner.expect("x 2>&1", "** TEST FAILED **\n").whenCalled([this] {
    files.setModificationDate("/b/R.xcresult", std::chrono::system_clock::now());
  });
  bundle("/b/R.xcresult", std::string(oneTest));
  EXPECT_EQ(quietly("x").failed.size(), 1U);
}

TEST_F(RunTests, AnAbortedRunKeepsWhatItHasAndReadsNoBundle) {
  runner.expect("x 2>&1", "Test case 'P.a()' passed on 'My Mac - A (1)' (0.5 seconds)\n");
  aborted();
  const TestRunData partial = quietly("x");
  EXPECT_EQ(partial.passed.size(), 1U);
  EXPECT_EQ(classify(partial), TestRunOutcome::technicalFailure);
  setOperationAborted(false);
  runner.expect("x 2>&1");
  aborted();
  EXPECT_THAT(quietly("x").passed, IsEmpty());
}

/// Hands on chunk by chunk what a tool writes, as the real runner does, until it is to stop.
class ChunkedRunner final : public CommandRunning {
 public:
  explicit ChunkedRunner(std::vector<std::string> chunks) : chunks_(std::move(chunks)) {}

  std::string run(const std::string&) override { return {}; }
  std::int32_t runLive(const std::string&) override { return 0; }
  PipeRunResult runLivePipe(const std::string&, const StopTest& shouldStop, const LineHandler& onLine,
                            double) override {
    PipeRunResult result;
    for (const std::string& chunk : chunks_) {
      ++taken;
      clock.advance(secondsPerChunk);
      result.output += chunk;
      for (const std::string_view line : splitLines(chunk)) onLine(line);
      if (shouldStop && shouldStop()) break;
    }
    return result;
  }

  std::size_t taken = 0;
  double secondsPerChunk = 0.01;
  StandingBuildClock clock;

 private:
  std::vector<std::string> chunks_;
};

TestRunData runChunks(ChunkedRunner& runner, const ContextReset& reset) {
  const DependenciesGuard guard({&runner, &const_cast<ContextReset&>(reset).files, &AppContext::shared()});
  const CapturedOutput output;
  return runTests("x");
}

TEST_F(RunTests, StopsInTheChunkOfItsVerdict) {
  for (const std::string verdict : {"** TEST SUCCEEDED **", "** TEST EXECUTE SUCCEEDED **", "** BUILD FAILED **",
                                    "** TEST EXECUTE FAILED **", "** TEST FAILED **"}) {
    ChunkedRunner chunks({"Test case 'P.a()' passed on 'M' (0.5 seconds)\n",
                          verdict + "\nTest case 'P.b()' passed on 'M'\n", "Test case 'P.c()' passed on 'M'\n"});
    EXPECT_EQ(runChunks(chunks, reset).passed.size(), 2U) << verdict;
    EXPECT_EQ(chunks.taken, 2U) << verdict;
  }
}

TEST_F(RunTests, WaitsForTheVerdictThatFollowsTheSessionsEnd) {
  ChunkedRunner chunks(
      {"Test session results, code coverage, and logs:\n", "\t/R.xcresult\n", "\n", "** TEST SUCCEEDED **\n", "x\n"});
  EXPECT_TRUE(runChunks(chunks, reset).testSucceeded);
  EXPECT_EQ(chunks.taken, 4U);
}

TEST_F(RunTests, WaitsForThatVerdictNoLongerThanTwoSeconds) {
  ChunkedRunner chunks({"Test session results, code coverage, and logs at: /R.xcresult\n", "a\n", "b\n", "c\n", "d\n"});
  chunks.secondsPerChunk = 1.0;
  EXPECT_FALSE(runChunks(chunks, reset).testSucceeded);
  EXPECT_EQ(chunks.taken, 3U);
}

TEST_F(RunTests, APhaseTellsTheTimelineHowItWent) {
  setSelectedTestPlan({});
  BuildTimeline::begin("Tests");
  runner.expect(command({}), std::string(passingRun));
  {
    const CapturedOutput output;
    EXPECT_EQ(classify(runTestPhase({}, {.detail = "all"})), TestRunOutcome::success);
  }
  const auto phase = BuildTimeline::current().currentPhase;
  ASSERT_NE(phase, nullptr);
  EXPECT_EQ(phase->name, "Test");
  EXPECT_EQ(phase->icon, "🧪");
  EXPECT_EQ(phase->detail, "all");
}

TEST_F(RunTests, TheBuildOfTestsShowsItsSummary) {
  runner.expect(command({.action = "build-for-testing"}), "** TEST BUILD SUCCEEDED **\n");
  const CapturedOutput output;
  EXPECT_TRUE(runTestBuildPhase({.action = "test"}));
  EXPECT_THAT(stripAnsi(output.text()), HasSubstr("BUILD SUCCEEDED"));
  runner.expect(command({.action = "build-for-testing"}), "** TEST BUILD FAILED **\n", 65);
  EXPECT_FALSE(runTestBuildPhase({}));
}

TEST_F(RunTests, AnAbortedBuildShowsNoSummary) {
  runner.expect(command({.action = "build-for-testing"}), "** TEST BUILD SUCCEEDED **\n");
  aborted();
  const CapturedOutput output;
  EXPECT_FALSE(runTestBuildPhase({}));
  EXPECT_EQ(output.text().find("BUILD SUCCEEDED"), std::string::npos);
}

}  // namespace
}  // namespace halyard
