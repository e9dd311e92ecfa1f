// The rows that build and run tests, from the menu to what stands when they have ended, and every call in between.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "tests/e2e/build_flow_calls.hpp"
#include "tests/e2e/post_test_session.hpp"
#include "tests/e2e/probe_session.hpp"

namespace halyard {
namespace {

using flow::runRow;
using flow::startRow;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// From the menu to the options behind a run.
bool runsRow(TerminalSession& session, std::string_view row, std::string_view answers = "y") {
  if (!isAtMenu(session) || !runRow(session, "T", row)) return false;
  const std::size_t mark = session.outputMark();
  session.send(answers);
  return session.waitForOutput(optionsShown, mark) && session.waitUntilIdle();
}

/// The calls that build, run or read tests, without what all have in common.
std::vector<std::string> testCalls(const TerminalSession& session) {
  std::vector<std::string> calls = callsAfter(session, 0);
  std::erase_if(calls, [](const std::string& call) {
    const bool isTest = call.find("test") != std::string::npos && call.find("-destination") != std::string::npos;
    return !isTest && call.find("xcresulttool") == std::string::npos;
  });
  return calls;
}

void expectInOrder(const std::string& text, std::initializer_list<std::string_view> parts) {
  std::size_t at = 0;
  for (const std::string_view part : parts) {
    const std::size_t found = text.find(part, at);
    ASSERT_NE(found, std::string::npos) << "\"" << part << "\" is missing or too early in\n" << text;
    at = found + part.size();
  }
}

SessionOptions macOptions(std::string_view tests) {
  SessionOptions options = buildOptions(DemoTarget::mac);
  options.rows = 120;
  options.demoSettings = R"({"platforms": "macosx", "tests": )" + std::string(tests) + "}";
  return options;
}

TEST(TestRuns, ADigitRunsTheUnitTestsWithoutAsking) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShowsNot("[j/N]");
  expectInOrder(session.screenText(),
                {"▶  Run Unit Tests", "Running unit tests only (UI tests skipped)", "Starting build", "Ctrl+C to stop",
                 "▸ Build Phase", "› Compiling", "── Test Run ─", "—— 🧪 HarborTests", "—— 🧪 BerthTests",
                 "  ├— ✓ testFeeCountsEachNight  0.019 s", "  └— ✓ 3/3 Passed", "—— 🧪 Fees",
                 "xcodebuild is shutting down", "Build Timeline — Run Unit Tests", "🧪 Test", "TESTS PASSED"});
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "-only-testing:HarborTests test")));
  leaveAndQuit(session);
}

TEST(TestRuns, UiTestsRunTheirTargetAlone) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsRow(session, "Run UI Tests"));
  session.expectShows("Running UI tests only");
  session.expectShowsNot("take over mouse");
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "-only-testing:HarborUITests test")));
  leaveAndQuit(session);
}

TEST(TestRuns, AllTestsTakeNoSelection) {
  TerminalSession session(testOptions(R"("fail")"));
  ASSERT_TRUE(runsRow(session, "Run All Tests"));
  expectInOrder(session.screenText(), {"▶  Run All Tests", "  └— ✗ 1 Failed  2 Passed", "TESTS FAILED"});
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "test")));
  leaveAndQuit(session);
}

TEST(TestRuns, ADeclinedQuestionRunsNothing) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "T", "Run All Tests"));
  session.expectShows("Start Run All Tests? [j/N]");
  session.send("n");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_THAT(testCalls(session), IsEmpty());
  quit(session);
}

TEST(TestRuns, TheSelectedPlanGoesAlong) {
  SessionOptions options = testOptions(R"("pass")");
  options.preferences.insert({{"testPlan", "Quick"}, {"testPlanFromScheme", "1"}});
  TerminalSession session(options);
  ASSERT_TRUE(runsRow(session, "Run All Tests"));
  EXPECT_THAT(session.callsOf("xcodebuild").back(), HasSubstr(" -scheme Harbor -testPlan Quick -derivedDataPath "));
  leaveAndQuit(session);
}

TEST(TestRuns, ABuildForTestingServesARunWithoutBuilding) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "T", "Build for Testing"));
  session.send("y");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("BUILD SUCCEEDED");
  session.expectShowsNot("TESTS PASSED");
  session.send("x");
  ASSERT_TRUE(runsRow(session, "Run Tests (without building)"));
  session.expectShows("Requires a prior 'Build for Testing'.");
  session.expectShows("TESTS PASSED");
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "build-for-testing"),
                                              onSimulator(demoSimulator, "test-without-building")));
  leaveAndQuit(session);
}

TEST(TestRuns, WithoutABuildBeforeTheRunFailsTechnically) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsRow(session, "Run Tests (without building)"));
  session.expectShows("Technical Error — no actual test failures");
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "test-without-building")));
  leaveAndQuit(session);
}

TEST(TestRuns, ABuildThatFailsBeforeTheTestsShowsItsErrors) {
  TerminalSession session(testOptions(R"("buildFails")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("✗ cannot find 'quay' in scope  BerthTests.swift:12");
  session.expectShows("BUILD FAILED — TESTS NOT RUN");
  session.expectShowsNot("── Test Run ─");
  const std::vector<std::string> calls = testCalls(session);
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_THAT(calls[1], HasSubstr("xcrun xcresulttool get test-results tests --path "));
  leaveAndQuit(session);
}

TEST(TestRuns, ARunWithoutAVerdictIsATechnicalFailureThatKeepsItsTests) {
  TerminalSession session(testOptions(R"("noVerdict")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("Technical Error — no actual test failures");
  session.expectShows("  ├— ✓ testFeeCountsEachNight  0.019 s");
  leaveAndQuit(session);
}

TEST(TestRuns, ACrashLosesNoTest) {
  TerminalSession session(testOptions(R"("crash")"));
  ASSERT_TRUE(runsUnitTests(session));
  expectInOrder(session.screenText(),
                {"  ├— ✓ testFeeCountsEachNight", "—— 🧪 BerthTests", "  ├— ✓ testTitleNamesTheBerth", "TESTS FAILED"});
  leaveAndQuit(session);
}

TEST(TestRuns, AnAbortEndsTheRunAndLeavesNoChild) {
  TerminalSession session(testOptions(R"({"pace": 0.3})"));
  ASSERT_TRUE(isAtMenu(session));
  const std::size_t mark = session.outputMark();
  session.send("7");
  ASSERT_TRUE(session.waitForOutput("testFeeCountsEachNight", mark));
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("Operation aborted.", mark) && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  // Nothing is read of a bundle that this run can't have finished.
  EXPECT_THAT(testCalls(session), ElementsAre(onSimulator(demoSimulator, "-only-testing:HarborTests test")));
  quit(session);
}

/// An xcodebuild that writes this when it is to run tests, and then lingers.
std::string lingeringTool(const TemporaryFolder& folder, std::string_view output) {
  const std::string demoBin = std::string(HALYARD_SOURCE_DIR) + "/demo/bin";
  const std::string tool =
      folder.write("xcodebuild", "#!/bin/bash\n[[ $1 == -parallelizeTargets ]] || exec " + demoBin +
                                     "/xcodebuild \"$@\"\nprintf '" + std::string(output) + "'\nsleep 60\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  return folder.at() + ":" + demoBin + ":/usr/local/bin:/usr/bin:/bin";
}

TEST(TestRuns, TheToolIsNotWaitedForBehindItsVerdict) {
  const TemporaryFolder folder;
  SessionOptions options = testOptions(R"("pass")");
  options.path = lingeringTool(folder,
                               "Test Suite \\x27A\\x27 started at noon.\\n"
                               "Test Case \\x27-[M.A \\e[2Jb]\\x27 passed (0.1 seconds).\\n"
                               "** TEST SUCCEEDED **\\n");
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("  ├— ✓ b  0.100 s");
  session.expectShows("TESTS PASSED");
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  leaveAndQuit(session);
}

TEST(TestRuns, UiTestsOnTheMacWarnAndAskTwice) {
  TerminalSession session(macOptions(R"("pass")"));
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(runRow(session, "T", "Run UI Tests"));
  session.expectShows("UI tests on macOS take over mouse and keyboard of this Mac until they end");
  session.expectShows("Run UI tests on this Mac anyway? [j/N]");
  session.expectShowsNot("Start Run UI Tests?");
  session.send("y");
  ASSERT_TRUE(session.waitFor("Start Run UI Tests? [j/N]") && session.waitUntilIdle());
  ASSERT_TRUE(leadsToOptions(session, "y"));
  EXPECT_THAT(testCalls(session),
              ElementsAre("-destination platform=macOS -only-testing:HarborUITests CODE_SIGN_IDENTITY=- "
                          "CODE_SIGN_ENTITLEMENTS= ENABLE_HARDENED_RUNTIME=NO test"));
  leaveAndQuit(session);
}

TEST(TestRuns, WithoutTestTargetsThePanelsSayHowTheyMustBeNamed) {
  SessionOptions options = testOptions(R"("pass")");
  TerminalSession session(options);
  session.writeHomeFile("Harbor/Harbor.xcodeproj/xcshareddata/xcschemes/Harbor.xcscheme",
                        "<Scheme><TestAction></TestAction></Scheme>");
  ASSERT_TRUE(isAtMenu(session));
  session.send("7");
  ASSERT_TRUE(session.waitFor("[X]") && session.waitUntilIdle());
  session.expectShows("No unit test targets found. Targets must end with 'Tests'");
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(startRow(session, "T", "Run UI Tests"));
  ASSERT_TRUE(session.waitFor("No UI test targets found in current scheme") && session.waitUntilIdle());
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_THAT(testCalls(session), IsEmpty());
  quit(session);
}

TEST(TestRuns, APlanStandsInForTargetsThatNobodyKnows) {
  SessionOptions options = testOptions(R"("pass")");
  options.preferences.insert({{"testPlan", "Quick"}, {"testPlanFromScheme", "1"}});
  TerminalSession session(options);
  session.writeHomeFile("Harbor/Harbor.xcodeproj/xcshareddata/xcschemes/Harbor.xcscheme",
                        R"(<Scheme><TestAction><TestPlans><TestPlanReference reference = "container:Quick.xctestplan"/>
                           </TestPlans></TestAction></Scheme>)");
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("No unit test target found by naming convention — using test plan.");
  EXPECT_THAT(session.callsOf("xcodebuild").back(), Not(HasSubstr("-only-testing")));
  EXPECT_THAT(session.callsOf("xcodebuild").back(), HasSubstr("-testPlan Quick"));
  leaveAndQuit(session);
}

TEST(TestRuns, SpeakGerman) {
  SessionOptions options = testOptions(R"("fail")");
  options.preferences.insert({"language", "de"});
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("9:") && session.waitUntilIdle() && session.isRaw());
  ASSERT_TRUE(leadsToOptions(session, "7", " zum Menü"));
  expectInOrder(session.screenText(),
                {"▶  Unit-Tests ausführen", "Nur Unit-Tests werden ausgeführt (UI-Tests übersprungen)", "▸ Build-Phase",
                 "── Testlauf ─", "  └— ✗ 1 Fehlgeschlagen  2 Bestanden", "xcodebuild wird beendet, bitte warten …"});
  session.send("x");
  ASSERT_TRUE(session.waitUntilIdle());
  session.send("Q");
  session.expectCleanEnd();
}

// All plans of a scheme, which no row of the menu runs

SessionOptions planOptions(std::string_view tests) {
  SessionOptions options = testOptions(tests);
  options.program = HALYARD_PROBE;
  return options;
}

/// From the probe's menu to the options behind the last plan.
bool runsAllPlans(TerminalSession& session, std::string_view until = optionsShown) {
  if (!isAtMenu(session) || !runRow(session, "", "Test plans")) return false;
  const std::size_t mark = session.outputMark();
  session.send("y");
  return session.waitForOutput(until, mark) && session.waitUntilIdle();
}

TEST(TestPlans, AreBuiltOnceAndRunOneAfterTheOther) {
  TerminalSession session(planOptions(R"({"unit": "fail"})"));
  ASSERT_TRUE(runsAllPlans(session));
  expectInOrder(session.rawOutput(), {"Step 1: Build once", "BUILD SUCCEEDED", "Step 2: Run test plans",
                                      "Test Plan 1/2: Harbor", "Test Plan 2/2: Quick", "Overall Result (2 Test Plans)",
                                      "✗ 0/2 Passed", "✗ Harbor", "✗ Quick", "TESTS FAILED"});
  EXPECT_THAT(session.screenText(), Not(HasSubstr("[+]")));
  std::vector<std::string> calls = testCalls(session);
  std::erase_if(calls, [](const std::string& call) { return call.find("xcresulttool") != std::string::npos; });
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0], onSimulator(demoSimulator, "build-for-testing"));
  EXPECT_THAT(calls[1], HasSubstr("-testPlan Harbor -derivedDataPath"));
  EXPECT_THAT(calls[2], HasSubstr("-testPlan Quick -derivedDataPath"));
  EXPECT_THAT(calls[2], HasSubstr(" test-without-building"));
  leaveAndQuit(session);
}

TEST(TestPlans, AFailedBuildEndsThem) {
  TerminalSession session(planOptions(R"("buildFails")"));
  ASSERT_TRUE(runsAllPlans(session, "[X]"));
  session.expectShows("Build failed – tests will be aborted");
  EXPECT_EQ(testCalls(session).size(), 1U);
  leaveAndQuit(session);
}

TEST(TestPlans, ASchemeWithoutPlansRunsAllTests) {
  TerminalSession session(planOptions(R"("pass")"));
  session.writeHomeFile("Harbor/Harbor.xcodeproj/xcshareddata/xcschemes/Harbor.xcscheme",
                        "<Scheme><TestAction></TestAction></Scheme>");
  ASSERT_TRUE(runsAllPlans(session));
  session.expectShows("No test plans in scheme – running all tests");
  EXPECT_THAT(testCalls(session),
              ElementsAre(onSimulator(demoSimulator, "build-for-testing"), onSimulator(demoSimulator, "test")));
  leaveAndQuit(session);
}

}  // namespace
}  // namespace halyard
