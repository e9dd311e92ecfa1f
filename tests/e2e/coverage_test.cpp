// The coverage tree behind a test run.
#include "tests/e2e/post_test_session.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view bundleFolder = "/Logs/Test/";

TEST(Coverage, TheTreeHasThePercentagesOfTheProjectsFiles) {
  SessionOptions options = testOptions(R"("pass")");
  options.homeFiles["Harbor/build/Generated.swift"] = "let x = 1\n";
  options.homeFiles["Harbor/.build/Other.swift"] = "let y = 1\n";
  options.homeFiles["Harbor/Harbor/it's $(touch hit) \"q\" 🌊.swift"] = "let z = 1\n";
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  const std::size_t calls = session.journal().size();
  session.send("c");
  ASSERT_TRUE(session.waitFor("[X] 🔙 Back") && session.waitUntilIdle());
  session.expectShows("▶  Coverage Tree");
  session.expectShows("── Structure ─");
  const int first = session.find("  Harbor/  6/17").row;
  session.expectRow(first + 1, "  ├── Harbor/  6/17");
  EXPECT_THAT(session.row(first + 2), HasSubstr("  │   ├── Berth.swift"));
  EXPECT_THAT(session.row(first + 2), testing::EndsWith("  25.0%"));
  EXPECT_TRUE(session.cellOf(" 25.0%").dim);
  EXPECT_THAT(session.row(first + 3), testing::EndsWith("   0.0%"));
  EXPECT_THAT(session.row(first + 4), testing::EndsWith(" 100.0%"));
  session.expectShows("  │   └── it's $(touch hit) \"q\" 🌊.swift");
  session.expectShowsNot("Generated.swift");
  session.expectShowsNot("Other.swift");
  const std::vector<std::string> made = callsAfter(session, calls);
  ASSERT_EQ(made.size(), 1U);
  EXPECT_THAT(made[0], HasSubstr("xcrun xccov view --report --json " + session.inHome(demoBuildFolder)));
  ASSERT_TRUE(leadsToOptions(session, "x"));
  EXPECT_THAT(session.row(1), HasSubstr("▶  Run Unit Tests"));
  session.expectShows("Successful test classes");
  EXPECT_FALSE(std::filesystem::exists(session.inHome("Harbor/hit")));
  leaveAndQuit(session);
}

TEST(Coverage, OfTwoBundlesTheLastInSortOrderIsRead) {
  SessionOptions options = testOptions(R"("pass")");
  const std::string later = std::string(demoBuildFolder) + std::string(bundleFolder) + "Test-Harbor-2999.xcresult";
  options.homeFiles[later + "/demo.json"] = R"({"tests": {"testNodes": []}, "coverage": {"targets": [
      {"name": "HarborTests", "files": [{"name": "FeeTests.swift", "lineCoverage": 1, "executableLines": 1}]},
      {"name": "HarborTestsSupport", "files": [{"name": "BerthTests.swift", "path": "", "lineCoverage": 0.125,
       "coveredLines": 1, "executableLines": 8}]}]}})";
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  session.send("c");
  ASSERT_TRUE(session.waitFor("[X] 🔙 Back") && session.waitUntilIdle());
  session.expectShows("  Harbor/  1/8");
  session.expectShows("BerthTests.swift     12.5%");
  EXPECT_THAT(session.row(session.find("FeeTests.swift").row), testing::Not(HasSubstr("%")));
  session.send("x");
  ASSERT_TRUE(session.waitFor(optionsShown) && session.waitUntilIdle());
  leaveAndQuit(session);
}

TEST(Coverage, ARunWithoutItHasNoDataAndTheMenuComesBack) {
  TerminalSession session(testOptions(R"({"coverage": false})"));
  ASSERT_TRUE(runsUnitTests(session));
  session.send("c");
  ASSERT_TRUE(session.waitFor("No coverage data found. Run tests first.") && session.waitUntilIdle());
  ASSERT_TRUE(leadsToOptions(session, "x"));
  session.expectShows("[c] Coverage Tree");
  leaveAndQuit(session);
}

TEST(Coverage, AReportThatCantBeReadIsNoData) {
  SessionOptions options = testOptions(R"("pass")");
  TerminalSession session(options);
  ASSERT_TRUE(runsUnitTests(session));
  session.writeHomeFile(".halyard-demo/settings.json",
                        R"({"answers": [{"call": "xcrun xccov", "stdout": "{\"targets\": [", "stderr": "cut"}]})");
  session.send("c");
  ASSERT_TRUE(session.waitFor("No coverage data found. Run tests first.") && session.waitUntilIdle());
  session.expectShowsNot("cut");
  ASSERT_TRUE(leadsToOptions(session, "x"));
  leaveAndQuit(session);
}

TEST(Coverage, SpeaksGerman) {
  SessionOptions options = testOptions(R"({"coverage": false})");
  options.preferences["language"] = "de";
  TerminalSession session(options);
  ASSERT_TRUE(isAtMenu(session));
  ASSERT_TRUE(leadsToOptions(session, "7", " zum Menü"));
  session.send("c");
  ASSERT_TRUE(session.waitFor("Keine Abdeckungsdaten gefunden. Zuerst Tests ausführen.") && session.waitUntilIdle());
  session.expectShows("Abdeckungsbaum");
  ASSERT_TRUE(leadsToOptions(session, "x", " zum Menü"));
  leaveAndQuit(session);
}

}  // namespace
}  // namespace halyard
