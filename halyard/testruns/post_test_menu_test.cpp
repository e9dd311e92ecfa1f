#include "halyard/testruns/post_test_menu.hpp"

#include <optional>

#include "core/text.hpp"
#include "halyard/build/build_flow_testing.hpp"
#include "halyard/testruns/coverage_tree.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view passing =
    "Test Suite 'HarborTests.xctest' started at 2026-01-01 10:00:00.000.\n"
    "Test Suite 'BerthTests' started at 2026-01-01 10:00:00.000.\n"
    "Test Case '-[HarborTests.BerthTests testFee]' started.\n"
    "Test Case '-[HarborTests.BerthTests testFee]' passed (0.001 seconds).\n"
    "Test Suite 'BerthTests' passed at 2026-01-01 10:00:00.000.\n"
    "** TEST EXECUTE SUCCEEDED **\n";
constexpr std::string_view failing =
    "Test Suite 'HarborTests.xctest' started at 2026-01-01 10:00:00.000.\n"
    "Test Suite 'BerthTests' started at 2026-01-01 10:00:00.000.\n"
    "Test Case '-[HarborTests.BerthTests testTitle]' started.\n"
    "Test Case '-[HarborTests.BerthTests testTitle]' failed (0.001 seconds).\n"
    "Test Suite 'BerthTests' failed at 2026-01-01 10:00:00.000.\n"
    "** TEST FAILED **\n";
constexpr std::string_view partial =
    "Test Suite 'BerthTests' started at 2026-01-01 10:00:00.000.\n"
    "Test Case '-[HarborTests.BerthTests testFee]' started.\n"
    "Test Case '-[HarborTests.BerthTests testFee]' passed (0.001 seconds).\n";

constexpr std::string_view retryItem = " -only-testing:'HarborTests/BerthTests/testFee'";
constexpr std::string_view allOptions =
    "\n  [x] to menu   [c] Coverage Tree   [w] other simulator   [+] repeat all   [i] retry failed only\n";
constexpr std::string_view withoutRetry =
    "\n  [x] to menu   [c] Coverage Tree   [w] other simulator   [+] repeat all\n";

TestRunData failedRun() {
  return {.passed = {{"BerthTests", "testTitle", 0.1}},
          .failed = {{"BerthTests", "testFee", 0.2, {"XCTAssertEqual failed"}}},
          .testFailed = true,
          .testTargetMap = {{"BerthTests", "HarborTests"}}};
}

TestRunData passedRun() { return {.passed = {{"BerthTests", "testFee", 0.2}}, .testSucceeded = true}; }

std::size_t count(std::string_view text, std::string_view part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

class PostTestMenu : public FlowTest {
 public:
  PostTestMenu() {
    setCachedTestPlatforms(SchemePlatforms{.iOS = true, .macCatalyst = false});
    setCachedTestPlatformsScheme("Harbor");
  }

  [[nodiscard]] std::string command(std::string_view action, std::string_view selection,
                                    std::string_view udid = "UDID-1") const {
    std::string text =
        "xcodebuild -parallelizeTargets -project '/w/Harbor.xcodeproj' -scheme 'Harbor' -derivedDataPath '";
    text += folder + "' -destination 'platform=iOS Simulator,id=" + std::string(udid) + "'" + std::string(selection);
    return text + " " + std::string(action) +
           " -parallel-testing-enabled NO COMPILER_INDEX_STORE_ENABLE=NO ONLY_ACTIVE_ARCH=YES ENABLE_TESTABILITY=YES "
           "SWIFT_COMPILATION_MODE=incremental DEBUG_INFORMATION_FORMAT=dwarf "
           "IDE_TESTING_DEVICE_SUPPORT_DIAGNOSTICS=NO -enableCodeCoverage YES 2>&1";
  }
  PostTestMenu& ran(std::string_view output, std::string_view udid = "UDID-1") {
    runner.expect(command("test", " -only-testing:'HarborTests'", udid), std::string(output));
    return *this;
  }
  PostTestMenu& builtForTesting(std::string_view verdict = "** TEST BUILD SUCCEEDED **\n", int status = 0) {
    runner.expect(command("build-for-testing", ""), std::string(verdict), status);
    return *this;
  }
  PostTestMenu& retried(std::string_view output, std::string_view items = retryItem) {
    runner.expect(command("test-without-building", items), std::string(output));
    return *this;
  }
  PostTestMenu& listed() {
    runner.expect("xcrun simctl list devices -j 2>/dev/null",
                  R"({"devices": {"com.apple.CoreSimulator.SimRuntime.iOS-18-2": [
                     {"udid": "UDID-1", "name": "iPhone 16", "isAvailable": true, "state": "Booted"},
                     {"udid": "UDID-2", "name": "iPhone 16 Pro", "isAvailable": true, "state": "Shutdown"}]}})");
    return *this;
  }
  PostTestMenu& bootedIs(std::string_view state) {
    prepared("UDID-2");
    runner.expect("xcrun simctl list devices 2>/dev/null", "    iPhone 16 Pro (UDID-2) (" + std::string(state) + ")\n");
    return *this;
  }

  std::string after(TestRunData data, std::string_view keys) {
    FinishedTestRun run;
    run.data = std::move(data);
    run.request.selection = "-only-testing:'HarborTests'";
    run.title = "Run Unit Tests";
    run.description = "Unit tests only.";
    run.detail = "-only-testing:'HarborTests'";
    run.isPlanRun = isPlanRun;
    const CapturedOutput output;
    const TypedInput typed(keys);
    postTestMenu(std::move(run));
    return stripAnsi(output.text());
  }

  bool isPlanRun = false;
};

TEST_F(PostTestMenu, ShowsResultBannerAndOptionsUntilX) {
  const std::string text = after(failedRun(), "X");
  const std::size_t block = text.find("Build/test result");
  const std::size_t banner = text.find("TESTS FAILED");
  EXPECT_LT(block, banner);
  EXPECT_LT(banner, text.find(allOptions));
}

TEST_F(PostTestMenu, TheOptionsAreOneLineUnlessTheTerminalIsNarrow) {
  FinishedTestRun run;
  run.data = failedRun();
  const int width = visibleWidth(allOptions) - 2;  // line feeds
  EXPECT_EQ("\n" + stripAnsi(drawPostTestOptions(run, width)), allOptions);
  EXPECT_EQ(stripAnsi(drawPostTestOptions(run, width - 1)),
            "  [x] to menu   [c] Coverage Tree   [w] other simulator   [+] repeat all\n  [i] retry failed only\n");
  EXPECT_EQ(stripAnsi(drawPostTestOptions(run, 1)),
            "  [x] to menu\n  [c] Coverage Tree\n  [w] other simulator\n  [+] repeat all\n  [i] retry failed only\n");
}

TEST_F(PostTestMenu, AnUnknownKeyDoesNothing) { EXPECT_EQ(after(failedRun(), "zq\r 1\tx"), after(failedRun(), "x")); }

TEST_F(PostTestMenu, TheEndOfInputLeaves) { EXPECT_THAT(after(failedRun(), ""), HasSubstr(allOptions)); }

TEST_F(PostTestMenu, WithoutAFailedTestThereIsNoRetryAndItsKeyDoesNothing) {
  const std::string text = after(passedRun(), "iIx");
  EXPECT_THAT(text, AllOf(HasSubstr(withoutRetry), HasSubstr("TESTS PASSED")));
  EXPECT_EQ(count(text, "[x] to menu"), 1U);
}

TEST_F(PostTestMenu, OnlyASimulatorHasOthers) {
  selectMac();
  EXPECT_THAT(after(passedRun(), "wx"), HasSubstr("\n  [x] to menu   [c] Coverage Tree   [+] repeat all\n"));
  selectDevice();
  EXPECT_THAT(after(passedRun(), "wx"), HasSubstr("\n  [x] to menu   [c] Coverage Tree   [+] repeat all\n"));
}

TEST_F(PostTestMenu, ARunOfPlansIsNotRepeated) {
  isPlanRun = true;
  EXPECT_THAT(after(failedRun(), "+x"),
              HasSubstr("\n  [x] to menu   [c] Coverage Tree   [w] other simulator   [i] retry failed only\n"));
}

TEST_F(PostTestMenu, AnAbortedRunShowsItsResultAndWaitsToGoBack) {
  setOperationAborted(true);
  const std::string text = after(failedRun(), "x");
  EXPECT_THAT(text, AllOf(HasSubstr("TESTS FAILED"), HasSubstr("Back"), Not(HasSubstr("[x] to menu"))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(PostTestMenu, RepeatingRunsTheSameCommandInATimelineOfItsOwn) {
  ran(passing).ran(failing);
  const std::string text = after(failedRun(), "++x");
  EXPECT_EQ(count(text, "Build Timeline — Run Unit Tests"), 2U);
  EXPECT_EQ(count(text, "🧪 Test"), 4U) << "in the phases' boxes and as the longest one";
  EXPECT_LT(text.find("TESTS PASSED"), text.find(withoutRetry));
  EXPECT_LT(text.find(withoutRetry), text.rfind("TESTS FAILED"));
  EXPECT_THAT(text.substr(text.rfind("Build/test result")), AllOf(HasSubstr("testTitle"), HasSubstr(allOptions)));
}

TEST_F(PostTestMenu, ARepeatedRunThatIsAbortedComesBackWithWhatItHas) {
  ran(partial).aborted();
  const std::string text = after(failedRun(), "+x");
  const std::string last = text.substr(text.rfind("Build/test result"));
  EXPECT_THAT(last, AllOf(HasSubstr("BerthTests  1 Passed"), Not(HasSubstr("Failed test classes")),
                          HasSubstr("Technical Error"), HasSubstr(withoutRetry)));
  EXPECT_FALSE(operationAborted());
}

TEST_F(PostTestMenu, ARetryBuildsAndThenRunsTheFailedTests) {
  builtForTesting().retried(passing);
  const std::string text = after(failedRun(), "ix");
  EXPECT_THAT(text, AllOf(HasSubstr("▸ Retrying 1 failed test(s)\n"), HasSubstr("Incremental build before retry ..."),
                          HasSubstr("🔨"), HasSubstr("🔁")));
  EXPECT_EQ(count(text, "Build Timeline — Run Unit Tests"), 1U);
  EXPECT_THAT(text.substr(text.rfind("Build/test result")),
              AllOf(HasSubstr("TESTS PASSED"), HasSubstr(withoutRetry), Not(HasSubstr("[i]"))));
}

TEST_F(PostTestMenu, ARetryAfterARetryRunsWhatStillFails) {
  builtForTesting().retried(failing);
  builtForTesting().retried(passing, " -only-testing:'HarborTests/BerthTests/testTitle'");
  EXPECT_THAT(after(failedRun(), "iix"), HasSubstr("TESTS PASSED"));
}

TEST_F(PostTestMenu, ATargetThatShowedOnceIsKnownInTheNextRetry) {
  builtForTesting().retried(
      "Test case 'BerthTests.testFee()' failed on 'iPhone 16 - Harbor (1)' (0.001 seconds)\n** TEST FAILED **\n");
  builtForTesting().retried(passing);
  EXPECT_THAT(after(failedRun(), "iix"), HasSubstr("TESTS PASSED"));
}

TEST_F(PostTestMenu, RepeatingAfterARetryRunsAllAgain) {
  builtForTesting().retried(passing);
  ran(failing);
  EXPECT_THAT(after(failedRun(), "i+x"), HasSubstr(allOptions));
}

TEST_F(PostTestMenu, NamesOfSwiftTestingComeFromTheBundle) {
  TestRunData data = failedRun();
  data.failed = {{"Fees", "It's a $(touch x) week"}};
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "/b/a.xcresult\n");
  runner.expect("xcrun xcresulttool get test-results tests --path '/b/a.xcresult' 2>/dev/null",
                R"json({"testNodes": [{"nodeType": "Unit test bundle", "name": "HarborTests", "children": [
                {"nodeType": "Test Suite", "name": "Fees", "children": [{"nodeType": "Test Case", "result": "Failed",
                "name": "It's a $(touch x) week", "nodeIdentifier": "FeeTests/week()"}]}]}]})json");
  builtForTesting().retried(passing, " -only-testing:'HarborTests/FeeTests/week()'");
  EXPECT_THAT(after(data, "ix"), HasSubstr("TESTS PASSED"));
}

TEST_F(PostTestMenu, TestsThatNobodyCanNameRunWithTheOthersOfTheirRun) {
  TestRunData data = failedRun();
  data.testTargetMap.clear();
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "");
  builtForTesting().retried(passing, " -only-testing:'HarborTests'");
  EXPECT_THAT(after(data, "ix"), HasSubstr("TESTS PASSED"));
}

TEST_F(PostTestMenu, ARetryWhoseBuildFailsLeavesTheResultInPlace) {
  builtForTesting("/w/Pier.swift:3:5: error: no such harbour\n** TEST BUILD FAILED **\n", 65);
  builtForTesting().retried(passing);
  const std::string text = after(failedRun(), "iix");
  const std::size_t failure = text.find("✗ Incremental build failed\n");
  ASSERT_NE(failure, std::string::npos);
  EXPECT_THAT(text.substr(failure), AllOf(HasSubstr(allOptions), HasSubstr("Retrying 1 failed test(s)")));
}

TEST_F(PostTestMenu, AnAbortOfTheRetrysBuildComesBackWithoutAMessage) {
  builtForTesting("", 130).aborted();
  const std::string text = after(failedRun(), "ix");
  EXPECT_EQ(count(text, allOptions), 2U);
  EXPECT_THAT(text, AllOf(Not(HasSubstr("Incremental build failed")), Not(HasSubstr("BUILD FAILED"))));
}

TEST_F(PostTestMenu, AnotherSimulatorIsBootedAndRunsTheSame) {
  listed().bootedIs("Booted").ran(passing, "UDID-2");
  ran(passing, "UDID-2");
  const std::string text = after(failedRun(), "w2\n+x");
  EXPECT_EQ(count(text, "TESTS PASSED"), 2U);
  EXPECT_EQ(selectedDevice()->udid, "UDID-1");
}

TEST_F(PostTestMenu, NoSimulatorPickedShowsTheResultAgain) {
  listed();
  const std::string text = after(failedRun(), "wx\nx");
  const std::string screen = text.substr(text.rfind("┌"));
  EXPECT_THAT(screen, AllOf(HasSubstr("▶  Run Unit Tests"), HasSubstr("Unit tests only."), HasSubstr("testFee"),
                            HasSubstr(allOptions)));
}

TEST_F(PostTestMenu, ASimulatorThatDoesNotBootIsToldAndTheRunsDeviceStays) {
  listed().bootedIs("Shutdown").ran(passing);
  const std::string text = after(failedRun(), "w2\n+x");
  const std::size_t message = text.find("✗ The simulator is not running. Please boot it first.\n");
  ASSERT_NE(message, std::string::npos);
  EXPECT_LT(message, text.find(allOptions, message));
}

TEST_F(PostTestMenu, AnAbortOfTheBootShowsTheResultAgain) {
  listed();
  runner.expect("xcrun simctl boot 'UDID-2' 2>/dev/null; true");
  aborted();
  const std::string text = after(failedRun(), "w2\nx");
  EXPECT_THAT(text.substr(text.rfind("┌")), AllOf(HasSubstr("▶  Run Unit Tests"), HasSubstr(allOptions)));
  EXPECT_THAT(text, Not(HasSubstr("not running")));
}

TEST_F(PostTestMenu, WithoutCoverageDataTheTreeSaysSoAndTheMenuComesBack) {
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "");
  const std::string text = after(failedRun(), "cxx");
  const std::size_t message = text.find("No coverage data found. Run tests first.");
  ASSERT_NE(message, std::string::npos);
  const std::string rest = text.substr(message);
  EXPECT_THAT(rest, AllOf(HasSubstr("▶  Run Unit Tests"), HasSubstr("Build/test result"), HasSubstr(allOptions),
                          Not(HasSubstr("TESTS FAILED"))));
}

TEST_F(PostTestMenu, TheTreeIsShownAndLeft) {
  runner.expectContaining("Logs/Test' -name '*.xcresult'", "/b/a.xcresult\n");
  runner.expectContaining("xccov view", R"({"targets": [{"name": "Harbor.app"}]})");
  runner.expect(swiftFilesCommand(), "./Berth.swift");
  const std::string text = after(passedRun(), "cxx");
  EXPECT_LT(text.find("└── Berth.swift"), text.rfind(withoutRetry));
}

TEST_F(PostTestMenu, HostileTitlesAndNamesStayText) {
  TestRunData data = failedRun();
  data.failed[0].name = "a\x1b[2J\n passed after \"1\" 🌊";
  EXPECT_THAT(after(data, "x"), AllOf(HasSubstr("✗ a␊ passed after \"1\" 🌊  (0.200 s)"), HasSubstr(allOptions)));
}

TEST_F(PostTestMenu, SpeaksGerman) {
  setCurrentLanguage("de");
  builtForTesting("** TEST BUILD FAILED **\n", 65);
  EXPECT_THAT(after(failedRun(), "ix"),
              AllOf(HasSubstr("\n  [x] zum Menü   [c] Abdeckungsbaum   [w] anderer Simulator   [+] alle wiederholen   "
                              "[i] nur fehlgeschlagene wiederholen\n"),
                    HasSubstr("Fehlgeschlagene Tests werden wiederholt (1)"),
                    HasSubstr("Inkrementeller Build vor der Wiederholung …"),
                    HasSubstr("Inkrementeller Build fehlgeschlagen")));
}

}  // namespace
}  // namespace halyard
