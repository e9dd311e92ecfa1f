#include "halyard/testruns/test_run_data.hpp"

#include <gtest/gtest.h>

namespace halyard {
namespace {

TestRunData withFailure() { return {.failed = {{.suite = "Pier", .name = "testFee"}}}; }

TEST(TestRunOutcome, AFailedTestIsARealFailureWhateverElseWasSeen) {
  TestRunData data = withFailure();
  EXPECT_EQ(classify(data), TestRunOutcome::realFailures);
  data.testFailed = true;
  EXPECT_EQ(classify(data), TestRunOutcome::realFailures);
  data.buildFailed = true;
  EXPECT_EQ(classify(data), TestRunOutcome::realFailures);
  data.testSucceeded = true;
  EXPECT_EQ(classify(data), TestRunOutcome::realFailures);
}

TEST(TestRunOutcome, ARunWithoutAVerdictIsATechnicalFailure) {
  EXPECT_EQ(classify({}), TestRunOutcome::technicalFailure);
  EXPECT_EQ(classify({.passed = {{.suite = "Pier", .name = "testFee"}}}), TestRunOutcome::technicalFailure);
}

TEST(TestRunOutcome, AFailedBuildIsATechnicalFailureEvenBesideASuccess) {
  EXPECT_EQ(classify({.buildFailed = true}), TestRunOutcome::technicalFailure);
  EXPECT_EQ(classify({.buildFailed = true, .testSucceeded = true}), TestRunOutcome::technicalFailure);
}

TEST(TestRunOutcome, AFailureThatNamesNoTestIsTechnical) {
  EXPECT_EQ(classify({.testFailed = true}), TestRunOutcome::technicalFailure);
  EXPECT_EQ(classify({.testFailed = true, .testSucceeded = true}), TestRunOutcome::technicalFailure);
}

TEST(TestRunOutcome, ASuccessNeedsNoTests) { EXPECT_EQ(classify({.testSucceeded = true}), TestRunOutcome::success); }

TEST(TestRunOutcome, TheOrderIsFixed) {
  EXPECT_LT(TestRunOutcome::success, TestRunOutcome::technicalFailure);
  EXPECT_LT(TestRunOutcome::technicalFailure, TestRunOutcome::realFailures);
}

}  // namespace
}  // namespace halyard
