#include "halyard/testruns/test_addresses.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/build/build_flow_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view bundle =
    R"json({"devices": [], "testNodes": [{"name": "Harbor", "nodeType": "Test Plan", "children": [
  {"name": "HarborTests", "nodeType": "Unit test bundle", "children": [
    {"name": "Fees", "nodeType": "Test Suite", "children": [
      {"name": "A week costs six nights", "nodeType": "Test Case", "result": "Failed",
       "nodeIdentifier": "FeeTests/weekCostsSixNights()", "children": [
         {"name": "FeeTests.swift:12: Expectation failed", "nodeType": "Failure Message"}]},
      {"name": "free()", "nodeType": "Test Case", "result": "Passed", "nodeIdentifier": "FeeTests/free()"},
      {"name": "Inner", "nodeType": "Test Suite", "children": [
        {"name": "deep()", "nodeType": "Test Case", "result": "Failed", "nodeIdentifier": "FeeTests/Inner/deep()"}]}]},
    {"name": "alone()", "nodeType": "Test Case", "result": "Failed", "nodeIdentifier": "alone()"}]},
  {"name": "HarborUITests", "nodeType": "UI test bundle", "children": [
    {"name": "Launch", "nodeType": "Test Suite", "children": [
      {"name": "testLaunch()", "nodeType": "Test Case", "result": "Failed", "nodeIdentifier": "Launch/testLaunch"}]}]}]}]})json";

TEST(TestAddresses, AreThoseOfTheFailedTestsWithTargetAndSuite) {
  EXPECT_THAT(
      readFailedTestAddresses(bundle),
      ElementsAre(TestAddress{"HarborTests", "Fees", "A week costs six nights", "FeeTests/weekCostsSixNights()"},
                  TestAddress{"HarborTests", "Inner", "deep()", "FeeTests/Inner/deep()"},
                  TestAddress{"HarborTests", "", "alone()", "alone()"},
                  TestAddress{"HarborUITests", "Launch", "testLaunch()", "Launch/testLaunch"}));
}

TEST(TestAddresses, OfWhatIsNoBundleAreNone) {
  for (const char* const text : {"", "{", "[]", "{}", R"({"testNodes": 4})", R"({"testNodes": [4, {"nodeType": []}]})",
                                 R"({"testNodes": [{"nodeType": "Test Case", "result": "Failed", "name": "x"}]})"}) {
    EXPECT_THAT(readFailedTestAddresses(text), IsEmpty()) << text;
  }
}

TEST(TestAddresses, UnknownKindsOfNodesAreLookedThrough) {
  EXPECT_THAT(readFailedTestAddresses(R"json({"testNodes": [{"nodeType": "Unit test bundle", "name": "T", "children": [
      {"nodeType": "Constellation", "name": "?", "children": [{"nodeType": "Test Case", "name": "a()",
       "nodeIdentifier": "S/a()", "result": "Failed"}]}]}]})json"),
              ElementsAre(TestAddress{"T", "", "a()", "S/a()"}));
}

TEST(TestAddresses, AThousandLevelsAreRead) {
  std::string json = R"({"testNodes": [{"nodeType": "Unit test bundle", "name": "T", "children": [)";
  for (int level = 0; level < 500; ++level) json += R"({"nodeType": "Test Suite", "name": "S", "children": [)";
  json += R"json({"nodeType": "Test Case", "name": "a()", "nodeIdentifier": "S/a()", "result": "Failed"})json";
  for (int level = 0; level < 500; ++level) json += "]}";
  EXPECT_EQ(readFailedTestAddresses(json + "]}]}").size(), 1U);
}

class LoadedTestAddresses : public FlowTest {};

TEST_F(LoadedTestAddresses, AreThoseOfTheNewestBundle) {
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "/b/a b.xcresult\n");
  runner.expect("xcrun xcresulttool get test-results tests --path '/b/a b.xcresult' 2>/dev/null", std::string(bundle));
  EXPECT_EQ(loadFailedTestAddresses().size(), 4U);
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "");
  EXPECT_THAT(loadFailedTestAddresses(), IsEmpty());
}

}  // namespace
}  // namespace halyard
