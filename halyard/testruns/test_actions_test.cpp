#include "halyard/testruns/test_actions.hpp"

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/testruns/test_flow_testing.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;
using testing::Not;

class TestActions : public TestFlow {
 protected:
  /// What the action shows while this is typed; "y" to start, then "x" at the menu behind the run.
  static std::string shownFor(void (*action)(), std::string_view keys = "yx") { return shown(action, keys); }
};

TEST_F(TestActions, UnitTestsRunTheUnitTargets) {
  known();
  targets("HarborTests\nIt'sTests\nHarborUITests");
  runner.expect(command({.selection = R"(-only-testing:'HarborTests' -only-testing:'It'\''sTests')"}),
                std::string(passingRun));
  const std::string text = shownFor(runUnitTests);
  EXPECT_THAT(text, HasSubstr("▶  Run Unit Tests"));
  EXPECT_THAT(text, HasSubstr("Start Run Unit Tests?"));
  EXPECT_THAT(text, HasSubstr("Running unit tests only (UI tests skipped)"));
  EXPECT_THAT(text, HasSubstr("├— ✓ testFee  0.125 s"));
  EXPECT_THAT(text, HasSubstr("TESTS PASSED"));
}

TEST_F(TestActions, UnitTestsLeaveTheUiTargetsOutWhereOnlyThoseAreKnown) {
  known();
  targets("HarborUITests\nOther");
  runner.expect(command({.selection = "-skip-testing:'HarborUITests'"}), std::string(passingRun));
  EXPECT_THAT(shownFor(runUnitTests), HasSubstr("Running unit tests only"));
}

TEST_F(TestActions, UnitTestsFallBackToTheTestPlan) {
  setSelectedTestPlan("Night");
  setSelectedTestPlanIsFromScheme(true);
  known();
  targets("");
  runner.expect(command({.plan = "-testPlan 'Night'"}), std::string(passingRun));
  const std::string text = shownFor(runUnitTests);
  EXPECT_THAT(text, HasSubstr("No unit test target found by naming convention — using test plan."));
  EXPECT_THAT(text, Not(HasSubstr("Running unit tests only")));
}

TEST_F(TestActions, UnitTestsWithoutTargetAndPlanSayWhatIsMissing) {
  known();
  targets("Other");
  const std::string text = shownFor(runUnitTests, "x");
  EXPECT_THAT(text, HasSubstr("No unit test targets found. Targets must end with 'Tests'"));
  EXPECT_THAT(text, Not(HasSubstr("Start Run")));
  EXPECT_THAT(text, HasSubstr(std::string(backPrompt)));
}

TEST_F(TestActions, ARefusalRunsNothing) {
  known();
  targets("HarborTests");
  EXPECT_THAT(shownFor(runUnitTests, "n"), Not(HasSubstr("Running unit")));
}

TEST_F(TestActions, WithoutADeviceNothingBegins) {
  setSelectedDevice({});
  EXPECT_THAT(shownFor(runUnitTests, "x"), HasSubstr("No device selected."));
  EXPECT_THAT(shownFor(buildForTesting, "x"), HasSubstr("No device selected."));
  setSelectedScheme({});
  EXPECT_THAT(shownFor(runAllTests, "x"), HasSubstr("No scheme selected."));
}

TEST_F(TestActions, UiTestsRunTheUiTargets) {
  known();
  targets("HarborTests\nHarborUITests");
  runner.expect(command({.selection = "-only-testing:'HarborUITests'"}), std::string(passingRun));
  const std::string text = shownFor(runUiTests);
  EXPECT_THAT(text, HasSubstr("Running UI tests only"));
  EXPECT_THAT(text, Not(HasSubstr("take over mouse")));
}

TEST_F(TestActions, UiTestsWithoutTargetsSaySo) {
  known();
  targets("HarborTests");
  EXPECT_THAT(shownFor(runUiTests, "x"), HasSubstr("No UI test targets found in current scheme"));
}

TEST_F(TestActions, UiTestsOnTheMacWarnFirst) {
  onMac();
  targets("HarborUITests");
  runner.expect(command({.selection = "-only-testing:'HarborUITests'", .destination = "platform=macOS"}),
                std::string(passingRun));
  const std::string text = shownFor(runUiTests, "yyx");
  const std::size_t warning = text.find("take over mouse and keyboard");
  const std::size_t first = text.find("Run UI tests on this Mac anyway?");
  const std::size_t second = text.find("Start Run UI Tests?");
  EXPECT_LT(warning, first);
  EXPECT_LT(first, second);
  EXPECT_NE(second, std::string::npos);
}

TEST_F(TestActions, UiTestsOnTheMacMayBeRefused) {
  onMac();
  targets("HarborUITests");
  EXPECT_THAT(shownFor(runUiTests, "n"), Not(HasSubstr("Start Run UI Tests?")));
}

TEST_F(TestActions, AllTestsTakeNoSelection) {
  known();
  runner.expect(command({}), std::string(failingRun));
  const std::string text = shownFor(runAllTests);
  EXPECT_THAT(text, HasSubstr("▶  Run All Tests"));
  EXPECT_THAT(text, HasSubstr("└— ✗ 1 Failed  0 Passed"));
  EXPECT_THAT(text, HasSubstr("TESTS FAILED"));
}

TEST_F(TestActions, AHotkeyAsksNothing) {
  setLaunchedByHotkey(true);
  known();
  targets("HarborTests");
  runner.expect(command({.selection = "-only-testing:'HarborTests'"}), std::string(passingRun));
  EXPECT_THAT(shownFor(runUnitTests, "x"), HasSubstr("TESTS PASSED"));
}

TEST_F(TestActions, TestsWithoutBuildingSayWhatTheyNeed) {
  known();
  runner.expect(command({.action = "test-without-building"}), std::string(passingRun));
  const std::string text = shownFor(testWithoutBuilding);
  EXPECT_THAT(text, HasSubstr("Requires a prior 'Build for Testing'."));
  EXPECT_THAT(text, Not(HasSubstr("The selected test plan decides")));
}

TEST_F(TestActions, TestsWithoutBuildingNameThePlansPart) {
  setSelectedTestPlan("Night");
  setSelectedTestPlanIsFromScheme(true);
  known();
  runner.expect(command({.plan = "-testPlan 'Night'", .action = "test-without-building"}), std::string(passingRun));
  EXPECT_THAT(shownFor(testWithoutBuilding), HasSubstr("The selected test plan decides which targets run."));
}

TEST_F(TestActions, BuildForTestingEndsWithTheBuildsSummary) {
  known();
  runner.expect(command({.action = "build-for-testing"}), "** TEST BUILD SUCCEEDED **\n");
  const std::string text = shownFor(buildForTesting);
  EXPECT_THAT(text, HasSubstr("▶  Build for Testing"));
  EXPECT_THAT(text, HasSubstr("BUILD SUCCEEDED"));
  EXPECT_THAT(text, HasSubstr(std::string(backPrompt)));
  EXPECT_THAT(text, Not(HasSubstr("TESTS PASSED")));
}

TEST_F(TestActions, ABuildThatFailsBeforeTheTestsIsTold) {
  known();
  runner.expect(command({}),
                "/w/Pier.swift:3:5: error: no such harbour\nTesting failed:\n\tTesting cancelled because the build "
                "failed.\n\n** TEST FAILED **\n",
                65);
  bundle("");
  const std::string text = shownFor(runAllTests);
  EXPECT_THAT(text, HasSubstr("no such harbour"));
  EXPECT_THAT(text, HasSubstr("BUILD FAILED — TESTS NOT RUN"));
}

TEST_F(TestActions, SpeakGerman) {
  setCurrentLanguage("de");
  known();
  targets("HarborTests");
  runner.expect(command({.selection = "-only-testing:'HarborTests'"}), std::string(passingRun));
  const std::string text = shownFor(runUnitTests, "jx");
  EXPECT_THAT(text, HasSubstr("Nur Unit-Tests werden ausgeführt (UI-Tests übersprungen)"));
  EXPECT_THAT(text, HasSubstr("── Testlauf ─"));
  EXPECT_THAT(text, HasSubstr("1/1 Bestanden"));
}

// All plans

class TestPlanRuns : public TestActions {
 protected:
  TestFlow& built(bool succeeds = true) {
    known();
    runner.expect(command({.action = "build-for-testing"}),
                  succeeds ? "** TEST BUILD SUCCEEDED **\n" : "** TEST BUILD FAILED **\n", succeeds ? 0 : 65);
    return *this;
  }
  void planRun(const std::string& plan, std::string_view output) {
    runner.expect(command({.plan = "-testPlan '" + plan + "'", .action = "test-without-building"}),
                  std::string(output));
  }
};

TEST_F(TestPlanRuns, BuildOnceAndRunEachPlan) {
  setSelectedTestPlan("Night");
  setSelectedTestPlanIsFromScheme(true);
  built().plans("DEFAULT:Day|Day.xctestplan\nplan:Night|Night.xctestplan\n");
  planRun("Day", passingRun);
  planRun("Night", passingRun);
  const std::string text = shownFor(runAllTestPlans);
  std::size_t at = 0;
  for (const std::string_view part :
       {"Step 1: Build once", "BUILD SUCCEEDED", "Step 2: Run test plans", "Test Plan 1/2: Day", "Test Plan 2/2: Night",
        "Overall Result (2 Test Plans)", "✓ 2/2 Passed"}) {
    at = text.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << "\nin\n" << text;
  }
}

TEST_F(TestPlanRuns, TheSummaryNamesWhatFailed) {
  built().plans("plan:Day|Day.xctestplan\nplan:Night|Night.xctestplan\nplan:Dusk|Dusk.xctestplan\n");
  planRun("Day", failingRun);
  planRun("Night", "** TEST EXECUTE FAILED **\n");
  bundle("");
  planRun("Dusk", passingRun);
  const std::string text = shownFor(runAllTestPlans);
  const std::string summary = text.substr(text.find("Overall Result (3 Test Plans)"));
  EXPECT_THAT(summary, HasSubstr("✗ 1/3 Passed"));
  EXPECT_THAT(summary, HasSubstr("✗ Day"));
  EXPECT_THAT(summary, HasSubstr("✗ PierTests › testFee"));
  EXPECT_THAT(summary, HasSubstr("✗ Night"));
  EXPECT_THAT(summary, HasSubstr("Technical Error — no actual test failures"));
  EXPECT_THAT(summary, Not(HasSubstr("✗ Dusk")));
}

TEST_F(TestPlanRuns, AFailedBuildEndsThem) {
  built(false);
  const std::string text = shownFor(runAllTestPlans, "yx");
  EXPECT_THAT(text, HasSubstr("Build failed – tests will be aborted"));
  EXPECT_THAT(text, Not(HasSubstr("Step 2")));
}

TEST_F(TestPlanRuns, AnAbortedBuildEndsThemQuietly) {
  built();
  aborted();
  const std::string text = shownFor(runAllTestPlans, "yx");
  EXPECT_THAT(text, Not(HasSubstr("Build failed")));
  EXPECT_THAT(text, Not(HasSubstr("Step 2")));
}

TEST_F(TestPlanRuns, WithoutPlansAllTestsRunOnce) {
  built().plans("");
  runner.expect(command({}), std::string(passingRun));
  const std::string text = shownFor(runAllTestPlans);
  EXPECT_THAT(text, HasSubstr("No test plans in scheme – running all tests"));
  EXPECT_THAT(text, HasSubstr("TESTS PASSED"));
}

TEST_F(TestPlanRuns, AnAbortLeavesTheOtherPlansOut) {
  built().plans("plan:Day|Day.xctestplan\nplan:Night|Night.xctestplan\n");
  planRun("Day", passingRun.substr(0, passingRun.find("** TEST")));
  aborted();
  const std::string text = shownFor(runAllTestPlans);
  EXPECT_THAT(text, HasSubstr("Overall Result (1 Test Plans)"));
  EXPECT_THAT(text, Not(HasSubstr("Test Plan 2/2")));
}

TEST_F(TestPlanRuns, HostilePlanNamesStayOneWord) {
  built().plans("plan:It's $(touch x) \x1b[2J`y`|a\n");
  planRun("It'\\''s $(touch x) \x1b[2J`y`", passingRun);
  const CapturedOutput output;
  const TypedInput typed("yx");
  runAllTestPlans();
  EXPECT_EQ(output.text().find("touch x) \x1b[2J"), std::string::npos);
  EXPECT_NE(output.text().find("touch x) ␛[2J"), std::string::npos);
}

}  // namespace
}  // namespace halyard
