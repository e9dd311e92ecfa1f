// What is shown after a test run, and each key below it.
#include "tests/e2e/post_test_session.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view otherSimulator = "3D6E9F27-840A-4B1C-8C35-B2D6E4081704";
constexpr std::string_view unitTests = "-only-testing:HarborTests test";

TEST(TestResults, FailedTestsStandWithTheirSuitesAndMessages) {
  TerminalSession session(testOptions(R"("fail")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("── Build/test result ─");
  session.expectShows("    BerthTests  1 Failed  2 Passed");
  session.expectShows("      ✗ testSeventhNightIsFree  (0.023 s)");
  session.expectShows("        XCTAssertEqual failed: (\"8000\") is not equal to (\"7000\")");
  session.expectShows("    Fees  1 Failed  2 Passed");
  session.expectShows("❌  TESTS FAILED");
  EXPECT_EQ(session.cellOf("✗ 0 build errors found").foreground, CellColor::indexed(1));
  session.expectShows(
      "  [x] to menu   [c] Coverage Tree   [w] other simulator   [+] repeat all   [i] retry failed only");
  leaveAndQuit(session);
}

TEST(TestResults, ARetryThatPassesShowsSoAndOffersNoOther) {
  TerminalSession session(testOptions(R"("flaky")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("TESTS FAILED");
  const std::size_t calls = session.journal().size();
  ASSERT_TRUE(leadsToOptions(session, "i"));
  session.expectShows("▸ Retrying 2 failed test(s)");
  session.expectShows("ℹ Incremental build before retry ...");
  session.expectShows("✅  TESTS PASSED");
  const std::size_t options = session.screenText().rfind(optionsShown);
  EXPECT_THAT(session.screenText().substr(options), Not(HasSubstr("[i]")));
  const std::vector<std::string> made = callsAfter(session, calls);
  ASSERT_EQ(made.size(), 3U);
  EXPECT_THAT(made[0], HasSubstr("xcrun xcresulttool get test-results tests --path "));
  EXPECT_EQ(made[1], onSimulator(demoSimulator, "build-for-testing"));
  EXPECT_EQ(made[2], onSimulator(demoSimulator,
                                 "-only-testing:HarborTests/BerthTests/testSeventhNightIsFree "
                                 "-only-testing:HarborTests/FeeTests/weekCostsSixNights() test-without-building"));
  leaveAndQuit(session);
}

TEST(TestResults, WithoutFailedTestsTheRetrysKeyDoesNothing) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("✅  TESTS PASSED");
  session.expectShowsNot("[i]");
  const std::size_t calls = session.journal().size();
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(session.sendSlowly({"i", "q", Key::enter, Key::up}));
  ASSERT_TRUE(session.waitUntilIdle());
  EXPECT_EQ(session.rawOutput(mark), "");
  EXPECT_EQ(session.journal().size(), calls);
  leaveAndQuit(session);
}

TEST(TestResults, ARetryWhoseBuildFailsLeavesTheResultInPlace) {
  TerminalSession session(testOptions(R"("flaky")"));
  ASSERT_TRUE(runsUnitTests(session));
  changeTests(session, R"("flaky")", R"({"fails": true})");
  ASSERT_TRUE(leadsToOptions(session, "i"));
  session.expectShows("cannot find 'quay' in scope");
  session.expectShows("✗ Incremental build failed");
  EXPECT_THAT(session.screenText().substr(session.screenText().rfind(optionsShown)),
              HasSubstr("[i] retry failed only"));
  EXPECT_THAT(session.callsOf("xcodebuild").back(), HasSubstr("build-for-testing"));
  changeTests(session, R"("flaky")");
  ASSERT_TRUE(leadsToOptions(session, "i"));
  session.expectShows("TESTS PASSED");
  leaveAndQuit(session);
}

TEST(TestResults, RepeatingRunsTheSameCommandWithATimelineOfItsOwn) {
  TerminalSession session(testOptions(R"("flaky")"));
  ASSERT_TRUE(runsUnitTests(session));
  const std::size_t calls = session.journal().size();
  const std::size_t mark = session.outputMark();
  ASSERT_TRUE(leadsToOptions(session, "+"));
  EXPECT_THAT(callsAfter(session, calls), ElementsAre(onSimulator(demoSimulator, unitTests)));
  EXPECT_THAT(session.rawOutput(mark), AllOf(HasSubstr("Build Timeline"), HasSubstr("TESTS PASSED")));
  leaveAndQuit(session);
}

TEST(TestResults, AnotherSimulatorRunsTheSameAndSoDoesTheRepetition) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsUnitTests(session));
  const std::size_t calls = session.journal().size();
  session.send("w");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  ASSERT_TRUE(leadsToOptions(session, row.substr(row.find_first_of("0123456789"), 2) + "\r"));
  session.expectShows("TESTS PASSED");
  const std::string other(otherSimulator);
  EXPECT_THAT(callsAfter(session, calls), ElementsAre("xcrun simctl list devices -j", "xcrun simctl boot " + other,
                                                      "xcrun simctl bootstatus " + other + " -b", "open -a Simulator",
                                                      "xcrun simctl list devices", onSimulator(other, unitTests)));
  ASSERT_TRUE(leadsToOptions(session, "+"));
  EXPECT_EQ(shortened(session.callsOf("xcodebuild").back(), session), onSimulator(other, unitTests));
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_EQ(session.preferences().at("simUDID"), demoSimulator);
  quit(session);
}

TEST(TestResults, ASimulatorThatDoesNotBootIsToldAndTheMenuComesBack) {
  SessionOptions options = testOptions(R"("pass")");
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  session.writeHomeFile(".halyard-demo/settings.json", R"({"answers": [
      {"call": "xcrun simctl boot", "status": 1}, {"call": "xcrun simctl bootstatus", "status": 1}]})");
  session.send("w");
  ASSERT_TRUE(session.waitFor("iPhone 16 Pro") && session.waitUntilIdle());
  const std::string row = session.row(session.find("iPhone 16 Pro").row);
  ASSERT_TRUE(leadsToOptions(session, row.substr(row.find_first_of("0123456789"), 2) + "\r"));
  session.expectShows("The simulator is not running. Please boot it first.");
  EXPECT_THAT(session.callsOf("xcodebuild").back(), HasSubstr(demoSimulator));
  leaveAndQuit(session);
}

TEST(TestResults, AnAbortOfARepeatedRunComesBackWithWhatItHas) {
  TerminalSession session(testOptions(R"("pass")"));
  ASSERT_TRUE(runsUnitTests(session));
  changeTests(session, R"({"pace": 0.3})");
  std::size_t mark = session.outputMark();
  session.send("+");
  ASSERT_TRUE(session.waitForOutput("testSeventhNightIsFree", mark));
  mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput(optionsShown, mark) && session.waitUntilIdle());
  const std::string shown = session.rawOutput(mark);
  EXPECT_THAT(shown, AllOf(HasSubstr("Operation aborted."), HasSubstr("Technical Error"), HasSubstr("BerthTests")));
  EXPECT_TRUE(session.waitFor("no child left", [&] { return session.childrenLeft().empty(); }));
  changeTests(session, R"("pass")");
  ASSERT_TRUE(leadsToOptions(session, "+"));
  session.expectShows("TESTS PASSED");
  leaveAndQuit(session);
}

TEST(TestResults, AnAbortOfTheFirstRunShowsWhatItHasAndLeadsBack) {
  TerminalSession session(testOptions(R"({"pace": 0.3})"));
  ASSERT_TRUE(isAtMenu(session));
  std::size_t mark = session.outputMark();
  session.send("7");
  ASSERT_TRUE(session.waitForOutput("testSeventhNightIsFree", mark));
  mark = session.outputMark();
  session.send(Key::ctrlC);
  ASSERT_TRUE(session.waitForOutput("TESTS FAILED", mark) && session.waitUntilIdle());
  session.expectShows("BerthTests");
  session.send("x");
  ASSERT_TRUE(isAtMenu(session));
  EXPECT_THAT(session.rawOutput(mark), Not(HasSubstr(optionsShown)));
  quit(session);
}

TEST(TestResults, ATechnicalFailureIsToldApart) {
  TerminalSession session(testOptions(R"("technical")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("⚠ Technical Error — no actual test failures");
  session.expectShows("xcodebuild reported TEST FAILED, but no test actually failed. Possible");
  session.expectShowsNot("[i]");
  session.expectShowsNot("TESTS PASSED");
  leaveAndQuit(session);
}

TEST(TestResults, AFailedBuildIsNoFailedTest) {
  TerminalSession session(testOptions(R"("buildFails")"));
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("BUILD FAILED — TESTS NOT RUN");
  session.expectShowsNot("[i]");
  leaveAndQuit(session);
}

TEST(TestResults, HostileNamesAreShownAndRetriedAsTheyAre) {
  SessionOptions options = testOptions(
      R"json({"unit": "flaky", "failing": ["HarborTests/OddTests/isDry()", "HarborTests/OddTests/Inner/deep(of:)"]})json");
  options.homeFiles["Harbor/HarborTests/OddTests.swift"] =
      "@Suite(\"Odd [suite] $(touch hit) \\u{1F30A}\") struct OddTests {\n"
      "    @Test(\"it's \\\"dry\\\" passed after 3 seconds. `touch hit` \\u{1B}[31m\") func isDry() {}\n"
      "    @Suite struct Inner {\n"
      "        @Test(arguments: [1, 2]) func deep(of value: Int) {}\n"
      "    }\n"
      "}\n";
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  session.expectShows("Odd [suite] $(touch hit) 🌊");
  session.expectShows("[i] retry failed only");
  ASSERT_TRUE(leadsToOptions(session, "i"));
  EXPECT_EQ(shortened(session.callsOf("xcodebuild").back(), session),
            onSimulator(demoSimulator,
                        "-only-testing:HarborTests/OddTests/isDry() "
                        "-only-testing:HarborTests/OddTests/Inner/deep(of:) test-without-building"));
  session.expectShows("TESTS PASSED");
  EXPECT_FALSE(std::filesystem::exists(session.inHome("Harbor/hit")));
  leaveAndQuit(session);
}

TEST(TestResults, SpeakGerman) {
  SessionOptions options = testOptions(R"("flaky")");
  options.preferences["language"] = "de";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(leadsToOptions(session, "7", " zum Menü"));
  session.expectShows("Fehlgeschlagene Testklassen");
  session.expectShows("TESTS FEHLGESCHLAGEN");
  session.expectShows("  [x] zum Menü   [c] Abdeckungsbaum   [w] anderer Simulator   [+] alle wiederholen");
  session.expectShows("  [i] nur fehlgeschlagene wiederholen");
  ASSERT_TRUE(leadsToOptions(session, "i", " zum Menü"));
  session.expectShows("TESTS BESTANDEN");
  leaveAndQuit(session);
}

}  // namespace
}  // namespace halyard
