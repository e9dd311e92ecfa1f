#include "halyard/testruns/test_line_parser.hpp"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/testruns/test_events_testing.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class TestLines : public testing::Test {
 protected:
  TestLines& feed(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) parser.processLine(line);
    return *this;
  }
  [[nodiscard]] const TestRunData& data() const { return parser.data(); }
  [[nodiscard]] std::vector<std::string> passedNames() const {
    std::vector<std::string> names;
    for (const PassedTest& test : data().passed) names.push_back(test.suite + "/" + test.name);
    return names;
  }

  RecordedTestEvents events;
  TestLineParser parser{events};
};

// Verdicts and the session's end

TEST_F(TestLines, VerdictsSetTheirFlags) {
  feed({"** TEST SUCCEEDED ** [3.2 sec]"});
  EXPECT_TRUE(data().testSucceeded && !data().testFailed && !data().buildFailed);
  feed({"x ** TEST FAILED **"});
  EXPECT_TRUE(data().testFailed && !data().buildFailed);
  feed({"** BUILD FAILED **"});
  EXPECT_TRUE(data().buildFailed && parser.hasVerdict());
}

TEST_F(TestLines, VerdictsOfARunWithoutBuildingCountToo) {
  feed({"** TEST EXECUTE SUCCEEDED **"});
  EXPECT_TRUE(data().testSucceeded && parser.hasVerdict());
  feed({"** TEST EXECUTE FAILED **"});
  EXPECT_TRUE(data().buildFailed);
}

TEST_F(TestLines, OtherStarsAreNoVerdict) {
  feed({"** CLEAN SUCCEEDED **", "** TEST BUILD SUCCEEDED **", "** test failed **"});
  EXPECT_FALSE(parser.hasVerdict());
  EXPECT_EQ(data(), TestRunData());
}

TEST_F(TestLines, TheSessionsEndIsTakenWithAndWithoutAt) {
  feed({"Test session results, code coverage, and logs:"});
  EXPECT_TRUE(parser.sessionEnded());
  EXPECT_FALSE(parser.hasVerdict());
  RecordedTestEvents others;
  TestLineParser other(others);
  other.processLine("Test session results, code coverage, and logs at: /tmp");
  EXPECT_TRUE(other.sessionEnded());
}

TEST_F(TestLines, ACancelledRunHasAFailedBuildButNoVerdictYet) {
  feed({"\tTesting cancelled because the build failed."});
  EXPECT_TRUE(data().buildFailed);
  EXPECT_FALSE(parser.hasVerdict());
  feed({"** anything"});
  EXPECT_FALSE(parser.hasVerdict());
}

// Shutdown

TEST_F(TestLines, TheTallyAnnouncesTheShutdownOnce) {
  feed({"✔ Test run with 1 test in 1 suite passed after 0.1 seconds.",
        "✘ Test run with 1 test in 1 suite failed after 0.1 seconds with 1 issue."});
  EXPECT_THAT(events.told, ElementsAre("shutdown"));
  EXPECT_THAT(data().passed, IsEmpty());
}

TEST_F(TestLines, AfterTheSessionNoShutdownIsAnnounced) {
  feed({"Test session results, code coverage, and logs:",
        "✔ Test run with 1 test in 1 suite passed after 0.1 seconds."});
  EXPECT_THAT(events.told, IsEmpty());
}

// Build steps

TEST_F(TestLines, EachBuildStepShowsOnceAndBeforeTheTestsOnly) {
  feed({"note: Using codesigning identity", "=== BUILD TARGET A", "Resolve Package Graph", "Fetching x",
        "CompileSwift a", "GenerateDSYMFile a", "Ld /a normal", "CodeSign /a"});
  EXPECT_THAT(events.told, ElementsAre("step 0", "step 1", "step 2", "step 3"));
  feed({"Test Suite 'PierTests' started at noon."});
  events.told.clear();
  RecordedTestEvents late;
  TestLineParser other(late);
  other.processLine("Test Suite 'PierTests' started at noon.");
  other.processLine("Ld /a normal");
  EXPECT_THAT(late.told, ElementsAre("tests", "suite PierTests"));
}

TEST_F(TestLines, EveryPrefixOfABuildStepIsKnown) {
  const std::vector<std::pair<std::string, std::string>> forms = {
      {"note: a", "step 0"},        {"=== BUILD a", "step 0"},      {"Resolve Package a", "step 1"},
      {"Fetch a", "step 1"},        {"Planning build", "step 1"},   {"CompileC a", "step 2"},
      {"GenerateDSYM a", "step 2"}, {"ProcessInfoPlist", "step 2"}, {"CopySwiftLibs", "step 2"},
      {"Ld a", "step 3"},           {"Link a", "step 3"},           {"CodeSign a", "step 3"},
      {"Signing a", "step 3"},      {"Merge a", "step 3"}};
  for (const auto& [line, told] : forms) {
    RecordedTestEvents own;
    TestLineParser other(own);
    other.processLine(line);
    EXPECT_THAT(own.told, ElementsAre(told)) << line;
  }
}

// XCTest

TEST_F(TestLines, ASuiteGoesFromStartToEnd) {
  feed({"Test Suite 'All tests' started at 2024-11-10 01:41:30.711.",
        "Test Suite 'HarborTests.xctest' started at 2024-11-10 01:41:30.711.",
        "Test Suite 'PierTests' started at 2024-11-10 01:41:30.712.",
        "Test Case '-[HarborTests.PierTests testA]' started.",
        "Test Case '-[HarborTests.PierTests testA]' passed (0.001 seconds).",
        "Test Case '-[HarborTests.PierTests testB]' started.",
        "Test Case '-[HarborTests.PierTests testB]' failed (0.5 seconds).",
        "Test Suite 'PierTests' failed at 2024-11-10 01:41:30.731.",
        "\t Executed 2 tests, with 1 failure (0 unexpected) in 0.007 (0.020) seconds",
        "Test Suite 'HarborTests.xctest' failed at 2024-11-10 01:41:30.732.",
        "Test Suite 'All tests' failed at 2024-11-10 01:41:30.732."});
  EXPECT_THAT(events.told, ElementsAre("tests", "suite HarborTests", "suite PierTests", "pass testA 0.001",
                                       "fail testB 0.500", "end PierTests 1 1"));
  EXPECT_THAT(data().passed, ElementsAre(PassedTest{"PierTests", "testA", 0.001}));
  EXPECT_THAT(data().failed, ElementsAre(FailedTest{"PierTests", "testB", 0.5, {}}));
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"PierTests", 1, 1}));
}

TEST_F(TestLines, ContainersGiveNoSuite) {
  feed({"Test Suite 'Selected tests' started at noon.", "Test Suite 'All tests' started at noon.",
        "Test Suite 'All tests' passed at noon.", "Test Suite 'Selected tests' failed at noon."});
  EXPECT_THAT(data().suiteResults, IsEmpty());
  EXPECT_THAT(events.told, IsEmpty());
}

TEST_F(TestLines, ParallelClonesAreReadInTheirLowerCase) {
  feed({"Test suite 'PierTests' started on 'Clone 1 of iPhone 16 - Harbor (77)'",
        "Test suite 'DockTests' started on 'Clone 2 of iPhone 16 - Harbor (78)'",
        "Test case 'PierTests.testA()' passed on 'Clone 1 of iPhone 16 - Harbor (77)' (0.125 seconds)",
        "Test case 'DockTests.testA()' failed on 'Clone 2 of iPhone 16 - Harbor (78)' (2.000 seconds)",
        "Test case 'DockTests.testB()' skipped on 'Clone 2 of iPhone 16 - Harbor (78)' (0.000 seconds)",
        "Test case 'Swift/fee()' passed on 'My Mac - Harbor (79)' (0.0 seconds)",
        "Test case 'optional()' passed on 'My Mac - Harbor (79)' (0.0 seconds)"});
  EXPECT_THAT(passedNames(), ElementsAre("PierTests/testA", "Swift/fee()", "/optional()"));
  EXPECT_THAT(data().failed, ElementsAre(FailedTest{"DockTests", "testA", 2, {}}));
  EXPECT_THAT(data().suiteResults, IsEmpty());
}

TEST_F(TestLines, AFirstTestWithoutASuiteBeginsTheTests) {
  feed({"Test case 'Pier.testA()' passed on 'My Mac - Harbor (79)' (0.0 seconds)"});
  EXPECT_THAT(events.told, ElementsAre("tests", "pass testA 0.000"));
}

TEST_F(TestLines, ARetriedTestHasEachOfItsResults) {
  feed({"Test Case '-[H.Pier testA]' started (Iteration 1 of 2).", "Test Case '-[H.Pier testA]' failed (0.1 seconds).",
        "Test Case '-[H.Pier testA]' started (Iteration 2 of 2).",
        "Test Case '-[H.Pier testA]' passed (0.2 seconds)."});
  EXPECT_EQ(data().failed.size(), 1U);
  EXPECT_THAT(data().passed, ElementsAre(PassedTest{"Pier", "testA", 0.2}));
}

TEST_F(TestLines, ASuiteThatACrashCutsShortKeepsItsEarlierTests) {
  feed({"Test Suite 'Pier' started at noon.", "Test Case '-[H.Pier testA]' passed (0.1 seconds).",
        "Test Case '-[H.Pier testB]' started.", "Restarting after unexpected exit, crash, or test timeout",
        "Test Suite 'Pier' started at noon.", "Test Case '-[H.Pier testC]' passed (0.1 seconds).",
        "Test Suite 'Pier' failed at noon."});
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"Pier", 2, 0}));
}

TEST_F(TestLines, ASuiteWhoseBeginningIsLostCountsFromTheEventBefore) {
  feed({"Test Suite 'A' started at noon.", "Test Case '-[H.A a]' passed (0.1 seconds).",
        "Test Suite 'A' passed at noon.", "Test Case '-[H.B a]' passed (0.1 seconds).",
        "Test Suite 'B' passed at noon."});
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"A", 1, 0}, SuiteResult{"B", 1, 0}));
}

// Messages

TEST_F(TestLines, AnErrorInATestIsTheTestsOwn) {
  feed({"Test Case '-[H.Pier testA]' started.",
        "/w/Signing team.xcodeproj/PierTests.swift:34: error: -[H.Pier testA] : XCTAssertTrue failed - no",
        "<unknown>:0: error: -[H.Pier testA] : failed: caught \"NSRangeException\"", "2024 App[1] XCTAssert said so",
        "Test Case '-[H.Pier testA]' failed (0.1 seconds)."});
  ASSERT_EQ(data().failed.size(), 1U);
  EXPECT_THAT(data().failed[0].errors,
              ElementsAre("-[H.Pier testA] : XCTAssertTrue failed - no",
                          "-[H.Pier testA] : failed: caught \"NSRangeException\"", "2024 App[1] XCTAssert said so"));
  EXPECT_EQ(data().errorCount, 0);
  EXPECT_THAT(data().errorLines, IsEmpty());
}

TEST_F(TestLines, ANewTestBeginsWithoutTheErrorsOfAnother) {
  feed({"Test Case '-[H.Pier testA]' started.", "/w/P.swift:3: error: no", "Test Case '-[H.Pier testB]' started.",
        "Test Case '-[H.Pier testB]' failed (0.1 seconds).", "XCTAssert between the tests",
        "Test Case '-[H.Pier testC]' failed (0.1 seconds)."});
  ASSERT_EQ(data().failed.size(), 2U);
  EXPECT_THAT(data().failed[0].errors, IsEmpty());
  EXPECT_THAT(data().failed[1].errors, IsEmpty());
}

TEST_F(TestLines, AMessageThatNamesItsTestFindsIt) {
  feed({"Test suite 'Pier' started on 'Clone 1 of iPhone - Harbor (7)'",
        "/w/P.swift:3: error: -[H.Pier testA] : XCTAssertTrue failed",
        "Test case 'Pier.testB()' failed on 'Clone 1 of iPhone - Harbor (7)' (0.1 seconds)",
        "Test case 'Pier.testA()' failed on 'Clone 1 of iPhone - Harbor (7)' (0.1 seconds)"});
  ASSERT_EQ(data().failed.size(), 2U);
  EXPECT_THAT(data().failed[0].errors, IsEmpty());
  EXPECT_THAT(data().failed[1].errors, ElementsAre("-[H.Pier testA] : XCTAssertTrue failed"));
}

TEST_F(TestLines, ErrorsOfTheBuildAreCountedBeforeTheTests) {
  feed({"/w/Pier.swift:3:5: error: no such harbour", "xcodebuild: error: Unable to find a destination"});
  EXPECT_EQ(data().errorCount, 2);
  EXPECT_THAT(data().errorLines, ElementsAre("/w/Pier.swift:3:5: error: no such harbour",
                                             "xcodebuild: error: Unable to find a destination"));
  EXPECT_THAT(events.told, ElementsAre("error /w/Pier.swift:3:5: error: no such harbour",
                                       "error xcodebuild: error: Unable to find a destination"));
}

TEST_F(TestLines, BetweenTestsOnlyErrorsOfTheSetupCount) {
  feed({"Test Suite 'Pier' started at noon.", "/w/Pier.swift:3:5: error: nothing", "Application x: error: gone",
        "/w/H.xcodeproj: error: a", "/w/H.xcworkspace: error: a", "a: error: Signing b", "a: error: no provisioning",
        "a: error: no team", "a: error: no certificate", "b: error: other"});
  EXPECT_EQ(data().errorCount, 7);
}

TEST_F(TestLines, WarningsAreCountedWithTheirRepeats) {
  feed({"/a.swift:1:2: warning: a", "/a.swift:1:2: warning: a", "warning: without a place"});
  EXPECT_EQ(data().warnCount, 2);
}

// Swift Testing

TEST_F(TestLines, SwiftTestsAreRecordedOnceWithEitherName) {
  feed({"◇ Test run started.", "◇ Suite \"Pier tests\" started.", "◇ Test fee() started.", "◇ Test \"A fee\" started.",
        "✔ Test fee() passed after 0.001 seconds.", "✔ Test \"A fee\" passed after 0.002 seconds.",
        "✘ Test \"No fee\" failed after 0.003 seconds with 1 issue.",
        "✘ Suite \"Pier tests\" failed after 0.1 seconds with 1 issue.",
        "✘ Test run with 3 tests in 1 suite failed after 0.1 seconds with 1 issue."});
  EXPECT_THAT(passedNames(), ElementsAre("Pier tests/fee()", "Pier tests/A fee"));
  EXPECT_THAT(data().failed, ElementsAre(FailedTest{"Pier tests", "No fee", 0.003, {}}));
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"Pier tests", 2, 1}));
  EXPECT_THAT(events.told, ElementsAre("tests", "suite Pier tests", "pass fee() 0.001", "pass A fee 0.002",
                                       "fail No fee 0.003", "end Pier tests 2 1", "shutdown"));
}

TEST_F(TestLines, AllSymbolsServe) {
  feed({"✓ Test a() passed after 0.1 seconds.", "✗ Test b() failed after 0.1 seconds.",
        "\xF4\x81\x81\x9B  Test c() passed after 0.1 seconds.",
        "\xF4\x80\xA2\x84  Test d() failed after 0.1 seconds with 1 issue.",
        "\xE2\x80\x8B✔ Test e() passed after 0.1 seconds.", "[06:47:37]: ▸ ✔ Test f() passed after 0.1 seconds."});
  EXPECT_THAT(passedNames(), ElementsAre("/a()", "/c()", "/e()", "/f()"));
  EXPECT_EQ(data().failed.size(), 2U);
}

TEST_F(TestLines, ANameThatHoldsTheWordTestSurvives) {
  feed({"✔ Test My Test of a Test passed after 0.1 seconds.", "✔ Test \"A Test b\" passed after 0.1 seconds."});
  EXPECT_THAT(passedNames(), ElementsAre("/My Test of a Test", "/A Test b"));
}

TEST_F(TestLines, NamesMayHoldTheWordsOfOtherLines) {
  feed({"◇ Suite \"Test of a Suite\" started.", "✔ Test \"A Suite passed after it\" passed after 0.1 seconds.",
        "✔ Suite \"Test of a Suite\" passed after 0.2 seconds."});
  EXPECT_THAT(passedNames(), ElementsAre("Test of a Suite/A Suite passed after it"));
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"Test of a Suite", 1, 0}));
}

TEST_F(TestLines, ATestWithArgumentsIsOneTest) {
  feed({"◇ Test \"A fee\" started.", "◇ Test case passing 2 arguments a → 1, b → \"x\" to \"A fee\" started.",
        "◇ Passing 1 argument a → 2 to fee(a:)",
        "✔ Test case passing 1 argument a → 2 to fee(a:) passed after 1 seconds.",
        "✔ Test \"A fee\" with 2 test cases passed after 0.006 seconds."});
  EXPECT_THAT(data().passed, ElementsAre(PassedTest{"", "A fee", 0.006}));
}

TEST_F(TestLines, IssuesAreTheMessagesOfTheirTest) {
  feed({"✘ Test fee() recorded an issue at F.swift:3:4: Expectation failed: a == b",
        "✘ Test toll() recorded an issue at F.swift:9:4: no", "✘ Test fee() recorded an issue at F.swift:5:4: again",
        "✘ Test fee() failed after 0.1 seconds with 2 issues.", "✔ Test toll() passed after 0.1 seconds.",
        "✘ Test toll() failed after 0.1 seconds."});
  ASSERT_EQ(data().failed.size(), 2U);
  EXPECT_THAT(data().failed[0].errors, ElementsAre("F.swift:3:4: Expectation failed: a == b", "F.swift:5:4: again"));
  EXPECT_THAT(data().failed[1].errors, IsEmpty());
}

TEST_F(TestLines, KnownIssuesAndSkippedTestsFailNothing) {
  feed({"✘ Test fee() recorded a known issue at F.swift:3:4: Expectation failed",
        "✔ Test fee() passed after 0.1 seconds with 1 known issue.", "➜ Test toll() skipped: \"no harbour\"",
        "Test Case '-[H.Pier testA]' skipped (0.1 seconds)."});
  EXPECT_THAT(passedNames(), ElementsAre("/fee()"));
  EXPECT_THAT(data().failed, IsEmpty());
}

TEST_F(TestLines, AFailureWithoutItsTimeIsCompletedNotRepeated) {
  feed({"✘ Test \"A fee\" failed: too high", "✘ Test \"A fee\" failed after 0.5 seconds with 1 issue."});
  EXPECT_THAT(data().failed, ElementsAre(FailedTest{"", "A fee", 0.5, {}}));
}

TEST_F(TestLines, BothFrameworksMixInOneRun) {
  feed({"Test Suite 'All tests' started at noon.", "Test Suite 'HarborTests.xctest' started at noon.",
        "Test Suite 'Pier' started at noon.", "Test Case '-[HarborTests.Pier testA]' passed (0.1 seconds).",
        "Test Suite 'Pier' passed at noon.", "Test Suite 'HarborTests.xctest' passed at noon.",
        "Test Suite 'All tests' passed at noon.", "◇ Suite Dock started.", "✔ Test fee() passed after 0.1 seconds.",
        "✔ Suite Dock passed after 0.1 seconds.", "✔ Test toll() passed after 0.1 seconds."});
  EXPECT_THAT(passedNames(), ElementsAre("Pier/testA", "Dock/fee()", "/toll()"));
  EXPECT_THAT(data().suiteResults, ElementsAre(SuiteResult{"Pier", 1, 0}, SuiteResult{"Dock", 1, 0}));
  EXPECT_THAT(data().testTargetMap, ElementsAre(Pair("Pier", "HarborTests")));
}

// Targets

TEST_F(TestLines, ASuitesTargetIsTheBundleThatEnclosesIt) {
  feed({"Test Suite 'My-Harbor Tests.xctest' started at noon.", "Test Suite 'Pier' started at noon.",
        "Test Case '-[My_Harbor_Tests.Pier testA]' passed (0.1 seconds).",
        "Test Case '-[SharedTests.Base testA]' passed (0.1 seconds)."});
  EXPECT_THAT(data().testTargetMap, ElementsAre(Pair("Base", "My-Harbor Tests"), Pair("Pier", "My-Harbor Tests")));
}

TEST_F(TestLines, WithoutABundleItIsTheModule) {
  feed({"Test Case '-[HarborTests.Pier testA]' passed (0.1 seconds).",
        "Test Case '-[Dock testA]' passed (0.1 seconds).", "Test Suite 'HarborPackageTests.xctest' started at noon.",
        "Test Case '-[KeelTests.Keel testA]' passed (0.1 seconds)."});
  EXPECT_THAT(data().testTargetMap, ElementsAre(Pair("Keel", "KeelTests"), Pair("Pier", "HarborTests")));
}

// Anything

TEST_F(TestLines, AnyBytesAreTaken) {
  const std::string_view hostile[] = {"",
                                      " ",
                                      "\xFF\xFE",
                                      "Test Case '",
                                      "Test Case ''",
                                      "Test Case '' passed",
                                      "Test Case '-[' failed",
                                      "Test Suite '' started",
                                      " Test ",
                                      "x Test ",
                                      "x Suite ",
                                      "x Suite  started.",
                                      "x Test \" passed after",
                                      "x Test \"\" failed:",
                                      "'",
                                      "''''",
                                      "** ",
                                      ": error:",
                                      "Test Case '' passed (999999999999999999999999999999999 seconds)",
                                      std::string_view("a\0 Test b passed after 1 seconds.", 33)};
  for (const std::string_view line : hostile) parser.processLine(line);
  EXPECT_LE(data().passed.size() + data().failed.size(), std::size(hostile));
}

TEST_F(TestLines, AVerdictWithinATornLineCounts) {
  feed({"Test Case '-[ProcHarb** TEST SUCCEEDED **", "orTests.Pier testA]' passed (0.000 seconds)."});
  EXPECT_TRUE(data().testSucceeded);
  EXPECT_THAT(data().passed, IsEmpty());
}

}  // namespace
}  // namespace halyard
