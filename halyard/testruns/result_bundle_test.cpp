#include "halyard/testruns/result_bundle.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <test_places.hpp>

#include "halyard/build/project_location.hpp"
#include "tests/support/context_reset.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr std::string_view smallBundle = R"json({"devices": [], "testPlanConfigurations": [], "testNodes": [
  {"nodeType": "Test Plan", "name": "Harbor", "result": "Failed", "children": [
    {"nodeType": "Unit test bundle", "name": "HarborTests", "result": "Failed", "children": [
      {"nodeType": "Test Suite", "name": "PierTests", "result": "Failed", "children": [
        {"nodeType": "Test Case", "name": "testFee()", "nodeIdentifier": "PierTests/testFee()",
         "durationInSeconds": 0.25, "duration": "9s", "result": "Passed"},
        {"nodeType": "Test Case", "name": "testToll()", "nodeIdentifier": "PierTests/testToll()", "duration": "1m 2s",
         "result": "Failed", "children": [
           {"nodeType": "Failure Message", "name": "PierTests.swift:7: XCTAssertEqual failed"},
           {"nodeType": "Device", "name": "iPhone", "children": [{"nodeType": "Failure Message", "name": "again"}]}]},
        {"nodeType": "Test Case", "name": "testLater()", "nodeIdentifier": "PierTests/testLater()", "result": "Skipped"}
      ]},
      {"nodeType": "Test Case", "name": "A free fee", "nodeIdentifier": "freeFee()", "result": "Expected Failure"}
    ]}]}]})json";

TEST(ResultBundle, GivesItsTestCasesWithTheirSurroundings) {
  const auto tests = readBundleTests(smallBundle);
  ASSERT_EQ(tests.size(), 4U);
  EXPECT_EQ(tests[0], (BundleTest{.identifier = "PierTests/testFee()",
                                  .name = "testFee()",
                                  .suite = "PierTests",
                                  .target = "HarborTests",
                                  .result = BundleResult::passed,
                                  .duration = 0.25}));
  EXPECT_EQ(tests[1].result, BundleResult::failed);
  EXPECT_DOUBLE_EQ(tests[1].duration, 62);
  EXPECT_THAT(tests[1].errors, ElementsAre("PierTests.swift:7: XCTAssertEqual failed", "again"));
  EXPECT_EQ(tests[2].result, BundleResult::skipped);
  EXPECT_EQ(tests[3].suite, "HarborTests");
  EXPECT_EQ(tests[3].result, BundleResult::passed);
}

TEST(ResultBundle, FillsTheRecord) {
  TestRunData data;
  addBundleTests(readBundleTests(smallBundle), data);
  EXPECT_THAT(data.passed,
              ElementsAre(PassedTest{"PierTests", "testFee()", 0.25}, PassedTest{"HarborTests", "A free fee", 0}));
  ASSERT_EQ(data.failed.size(), 1U);
  EXPECT_EQ(data.failed[0].name, "testToll()");
  EXPECT_THAT(data.suiteResults, ElementsAre(SuiteResult{"PierTests", 1, 1}, SuiteResult{"HarborTests", 1, 0}));
  EXPECT_THAT(data.testTargetMap, ElementsAre(Pair("HarborTests", "HarborTests"), Pair("PierTests", "HarborTests")));
}

TEST(ResultBundle, ToleratesUnknownKindsAndMissingFields) {
  TestRunData data;
  addBundleTests(readBundleTests(R"(noise {"testNodes": [
    7, null, [], {"nodeType": 3, "children": 4}, {"children": [{"nodeType": "Hologram", "name": "H", "children": [
      {"nodeType": "Test Case"},
      {"nodeType": "Test Case", "name": "a", "result": "Passed", "durationInSeconds": "soon"},
      {"nodeType": "Test Case", "name": "b", "result": "Odd", "children": [{"nodeType": "Failure Message", "name": "m"}]},
      {"nodeType": "Test Case", "name": "c", "result": "unknown"}]}]}]})"),
                 data);
  EXPECT_THAT(data.passed, ElementsAre(PassedTest{"H", "a", 0}));
  EXPECT_THAT(data.failed, ElementsAre(FailedTest{"H", "b", 0, {"m"}}));
}

TEST(ResultBundle, OnlyTheLeavesAmongCasesCount) {
  const auto tests = readBundleTests(R"({"testNodes": [{"nodeType": "Test Suite", "name": "S", "children": [
    {"nodeType": "Test Case", "name": "outer", "result": "Failed", "children": [
      {"nodeType": "Test Case", "name": "one", "result": "Passed"},
      {"nodeType": "Test Case", "name": "two", "result": "Failed"}]},
    {"nodeType": "Test Case", "name": "three", "result": "Passed"}]}]})");
  ASSERT_EQ(tests.size(), 3U);
  EXPECT_EQ(tests[0].name, "one");
  EXPECT_EQ(tests[1].name, "two");
  EXPECT_EQ(tests[2].name, "three");
}

TEST(ResultBundle, CutOffOrForeignTextGivesNothing) {
  EXPECT_THAT(readBundleTests(""), IsEmpty());
  EXPECT_THAT(readBundleTests("Error: no such bundle"), IsEmpty());
  EXPECT_THAT(readBundleTests("{}"), IsEmpty());
  EXPECT_THAT(readBundleTests("[1]"), IsEmpty());
  EXPECT_THAT(readBundleTests(R"({"testNodes": {}})"), IsEmpty());
  EXPECT_THAT(readBundleTests(smallBundle.substr(0, smallBundle.size() / 2)), IsEmpty());
}

TEST(ResultBundle, DepthIsNoDanger) {
  for (const int depth : {1000, 20'000}) {
    std::string json = R"({"testNodes": [)";
    for (int i = 0; i < depth; ++i) json += R"({"nodeType": "Test Suite", "name": "s", "children": [)";
    json += R"({"nodeType": "Test Case", "name": "deep", "result": "Passed"})";
    for (int i = 0; i < depth; ++i) json += "]}";
    json += "]}";
    EXPECT_EQ(readBundleTests(json).size(), 1U) << depth;
  }
  std::string endless = R"({"testNodes": )";
  endless.append(1'000'000, '[');
  EXPECT_THAT(readBundleTests(endless), IsEmpty());
}

TEST(ResultBundle, IsSoughtInTheProjectsOwnFolder) {
  ContextReset reset;
  reset.runner.expect(
      "find '" + privateDerivedDataPath() + "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1",
      "/b/it's.xcresult\n");
  EXPECT_EQ(newestResultBundle(), "/b/it's.xcresult");
  reset.runner.expect(R"(xcrun xcresulttool get test-results tests --path '/b/it'\''s.xcresult' 2>/dev/null)",
                      std::string(smallBundle));
  EXPECT_EQ(testsOfResultBundle("/b/it's.xcresult").size(), 4U);
}

// The counts were read in the files by `grep -c`.
TEST(ResultBundle, ReadsRealOnes) {
  const auto folder = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/xcresult";
  if (!std::filesystem::exists(folder)) return;
  struct Expected {
    std::string_view file;
    std::size_t passed;
    std::size_t failed;
  };
  for (const Expected& expected : {Expected{"codemagic-tests.json", 4, 3}, Expected{"kickstarter-tests.json", 567, 0},
                                   Expected{"mixed-tests.json", 4, 2}, Expected{"perf-tests.json", 5, 0},
                                   Expected{"xcode16-mixed-tests.json", 28, 12}}) {
    std::ifstream file(folder / expected.file, std::ios::binary);
    TestRunData data;
    addBundleTests(readBundleTests(std::string(std::istreambuf_iterator<char>(file), {})), data);
    EXPECT_EQ(data.passed.size(), expected.passed) << expected.file;
    EXPECT_EQ(data.failed.size(), expected.failed) << expected.file;
    EXPECT_FALSE(data.testTargetMap.empty()) << expected.file;
  }
}

}  // namespace
}  // namespace halyard
