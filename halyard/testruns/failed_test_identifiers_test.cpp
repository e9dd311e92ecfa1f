#include "halyard/testruns/failed_test_identifiers.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/build/project_location.hpp"
#include "halyard/testruns/result_bundle.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

BundleTest failedInBundle(const char* identifier, const char* name, const char* suite) {
  return {
      .identifier = identifier, .name = name, .suite = suite, .target = "HarborTests", .result = BundleResult::failed};
}

TEST(FailedTestIdentifiers, AreWholeWhereTheOutputToldTheTarget) {
  const ContextReset reset;  // with a runner that expects no command
  TestRunData data{.failed = {{.suite = "Pier", .name = "testA"}, {.suite = "Pier", .name = "testA"}},
                   .testTargetMap = {{"Pier", "HarborTests"}}};
  EXPECT_THAT(failedTestIdentifiers(data), ElementsAre("HarborTests/Pier/testA"));
  EXPECT_THAT(failedTestIdentifiers(TestRunData()), IsEmpty());
}

TEST(FailedTestIdentifiers, ComeFromTheBundleWhereItIsNeeded) {
  ContextReset reset;
  reset.runner.expect(
      "find '" + privateDerivedDataPath() + "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1",
      "/b.xcresult\n");
  reset.runner.expect("xcrun xcresulttool get test-results tests --path '/b.xcresult' 2>/dev/null",
                      R"({"testNodes": [{"nodeType": "Unit test bundle", "name": "HarborTests", "children": [
                        {"nodeType": "Test Suite", "name": "Dock tests", "children": [
                          {"nodeType": "Test Case", "name": "A fee", "nodeIdentifier": "Dock/fee()",
                           "result": "Failed"
}]
}]
}]
})");
  const TestRunData data{.failed = {{.suite = "Pier", .name = "testA"}, {.suite = "Dock tests", .name = "A fee"}},
                         .testTargetMap = {{"Pier", "HarborTests"}}};
EXPECT_THAT(failedTestIdentifiers(data), ElementsAre("HarborTests/Pier/testA", "HarborTests/Dock/fee()"));
}

TEST(FailedTestIdentifiers, AMissingBundleLeavesTheUnknownOnesOut) {
  ContextReset reset;
  reset.runner.expect("find '" + privateDerivedDataPath() +
                      "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1");
  const TestRunData data{.failed = {{.suite = "Pier", .name = "testA"}, {.suite = "Dock", .name = "fee()"}},
                         .testTargetMap = {{"Pier", "HarborTests"}}};
  EXPECT_THAT(failedTestIdentifiers(data), ElementsAre("HarborTests/Pier/testA"));
}

TEST(FailedTestIdentifiers, PreferWhatFailedAndThenTheSameSuite) {
  BundleTest passed = failedInBundle("Dock/fee()", "fee()", "Dock");
  passed.result = BundleResult::passed;
  const std::vector<BundleTest> tests = {passed, failedInBundle("Quay/fee()", "fee()", "Quay"),
                                         failedInBundle("Keel/fee()", "fee()", "Keel")};
  // Live lines of tests that run side by side may name another suite than the test's own.
  EXPECT_THAT(failedTestIdentifiers({.failed = {{.suite = "Dock", .name = "fee()"}}}, tests),
              ElementsAre("HarborTests/Quay/fee()"));
  EXPECT_THAT(failedTestIdentifiers({.failed = {{.suite = "Keel", .name = "fee"}}}, tests),
              ElementsAre("HarborTests/Keel/fee()"));
}

TEST(FailedTestIdentifiers, ParallelNamesFindTheirBrackets) {
  EXPECT_THAT(failedTestIdentifiers({.failed = {{.suite = "Pier", .name = "testA"}}},
                                    {failedInBundle("Pier/testA()", "testA()", "Pier")}),
              ElementsAre("HarborTests/Pier/testA()"));
}

}  // namespace
}  // namespace halyard
