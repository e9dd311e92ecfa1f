#include "halyard/testruns/retry_items.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/exec/command_runner.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::vector<BundleTest> notAsked() {
  ADD_FAILURE() << "the bundle isn't needed";
  return {};
}

struct Address {
  std::string target, suite, name, identifier;
};

std::string selection(const TestRunData& data, const std::vector<Address>& addresses) {
  std::vector<BundleTest> tests;
  for (const auto& [target, suite, name, identifier] : addresses) {
    tests.push_back({identifier, name, suite, target, BundleResult::failed});
  }
  return retrySelection(data, [&] { return tests; });
}

TEST(RetryItems, NameTargetSuiteAndTestEachOnce) {
  const TestRunData data{.failed = {{"BerthTests", "testFee"},
                                    {"BerthTests", "testTitle"},
                                    {"BerthTests", "testFee"},
                                    {"Launch", "testIt"}},
                         .testTargetMap = {{"BerthTests", "HarborTests"}, {"Launch", "HarborUITests"}}};
  EXPECT_EQ(retrySelection(data, notAsked),
            "-only-testing:'HarborTests/BerthTests/testFee' -only-testing:'HarborTests/BerthTests/testTitle' "
            "-only-testing:'HarborUITests/Launch/testIt'");
}

TEST(RetryItems, ADisplayNameIsLookedUpInTheBundle) {
  const TestRunData data{.failed = {{"Fees", "A week costs six nights"}}, .testTargetMap = {{"Fees", "HarborTests"}}};
  EXPECT_EQ(selection(data, {{"HarborTests", "Fees", "A week costs six nights", "FeeTests/weekCostsSixNights()"}}),
            "-only-testing:'HarborTests/FeeTests/weekCostsSixNights()'");
}

TEST(RetryItems, AFunctionsNameTellsNothingOfItsSuitesType) {
  const TestRunData data{.failed = {{"Fees", "none()"}, {"FeeTests", "some(nights:)"}},
                         .testTargetMap = {{"Fees", "HarborTests"}}};
  EXPECT_EQ(selection(data, {{"HarborTests", "Fees", "none()", "Outer/FeeTests/none()"},
                             {"HarborTests", "Other", "some(nights:)", "FeeTests/some(nights:)"},
                             {"HarborTests", "Others", "some(nights:)", "OtherTests/some(nights:)"}}),
            "-only-testing:'HarborTests/Outer/FeeTests/none()' -only-testing:'HarborTests/FeeTests/some(nights:)'");
}

TEST(RetryItems, OnlyTestsThatFailedAreLookedUp) {
  const TestRunData data{.failed = {{"S", "same()"}}};
  const std::vector<BundleTest> tests = {{"A/same()", "same()", "A", "T", BundleResult::passed},
                                         {"B/same()", "same()", "B", "T", BundleResult::failed},
                                         {"C/same()", "same()", "C", "", BundleResult::failed}};
  EXPECT_EQ(retrySelection(data, [&] { return tests; }), "-only-testing:'T/B/same()'");
}

TEST(RetryItems, AFreeFunctionHasNoSuite) {
  const TestRunData data{.failed = {{"", "alone()"}}};
  EXPECT_EQ(selection(data, {{"HarborTests", "", "alone()", "alone()"}}), "-only-testing:'HarborTests/alone()'");
}

TEST(RetryItems, ASuiteWhoseTargetNeverShowedIsLookedUp) {
  const TestRunData data{.failed = {{"BerthTests", "testFee"}}};
  EXPECT_EQ(selection(data, {{"HarborTests", "BerthTests", "testFee()", "BerthTests/testFee()"}}),
            "-only-testing:'HarborTests/BerthTests/testFee()'");
}

TEST(RetryItems, WithoutABundleTheRunsOwnWordsStand) {
  const TestRunData data{.failed = {{"Fees", "none()"}, {"Unknown", "testX"}},
                         .testTargetMap = {{"Fees", "HarborTests"}}};
  EXPECT_EQ(selection(data, {}), "-only-testing:'HarborTests/Fees/none()'");
}

TEST(RetryItems, TwoTestsOfOneNameAreNotTakenForEachOther) {
  const TestRunData data{.failed = {{"C", "same()"}}};
  EXPECT_EQ(selection(data, {{"T", "A", "same()", "A/same()"}, {"T", "B", "same()", "B/same()"}}), "");
}

TEST(RetryItems, EscapedQuotesOfTheOutputAreThoseOfTheCode) {
  const TestRunData data{.failed = {{R"(Pier \"east\")", R"(is \"dry\")"}}};
  EXPECT_EQ(selection(data, {{"T", "Pier \"east\"", "is \"dry\"", "PierTests/isDry()"}}),
            "-only-testing:'T/PierTests/isDry()'");
}

TEST(RetryItems, ASlashInABracketBelongsToTheFunction) {
  const TestRunData data{.failed = {{"S", "odd"}}};
  EXPECT_EQ(selection(data, {{"T", "S", "odd", "S/odd(a/b:)"}}), "-only-testing:'T/S/odd(a/b:)'");
}

TEST(RetryItems, HostileNamesReachTheShellAsOneWord) {
  const std::string name = "it's $(touch x) `y` \"z\" passed after \n\x1b[0m 🌊";
  const TestRunData data{.failed = {{name, name}}, .testTargetMap = {{name, "T"}}};
  const std::string printed = DefaultCommandRunner().run("printf '<%s>' " + selection(data, {}));
  EXPECT_EQ(printed, "<-only-testing:T/" + name + "/" + name + ">");
}

TEST(RetryItems, AVeryLongSelectionNamesSuitesThenTargets) {
  TestRunData data{.testTargetMap = {{"S", "T"}, {"U", "T"}}};
  for (int i = 0; i < 100; ++i) data.failed.push_back({i < 90 ? "S" : "U", "test" + std::to_string(i)});
  EXPECT_THAT(retrySelection(data, notAsked), HasSubstr("-only-testing:'T/S/test89' -only-testing:'T/U/test90'"));
  EXPECT_EQ(retrySelection(data, notAsked, 1000), "-only-testing:'T/S' -only-testing:'T/U'");
  EXPECT_EQ(retrySelection(data, notAsked, 30), "-only-testing:'T'");
}

}  // namespace
}  // namespace halyard
