#include "halyard/testruns/coverage_data.hpp"

#include <filesystem>
#include <fstream>

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/testruns/result_bundle.hpp"
#include "test_places.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> targetNames(std::string_view json) {
  std::vector<std::string> names;
  const auto targets = readCoverageReport(json);
  for (const CoverageTarget& target : targets.value()) names.push_back(target.name);
  return names;
}

TEST(CoverageReport, ATargetHasItsFilesWithTheirLines) {
  const auto targets = readCoverageReport(R"json({"coveredLines": 6, "executableLines": 17, "lineCoverage": 0.35,
      "targets": [{"name": "Harbor.app", "lineCoverage": 0.352, "buildProductPath": "/x", "files": [
        {"name": "Berth.swift", "path": "/w/Harbor/Berth.swift", "lineCoverage": 0.25, "coveredLines": 1,
         "executableLines": 4, "functions": [{"name": "fee(perNight:)", "coveredLines": 1}]},
        {"coveredLines": 5, "executableLines": 13, "lineCoverage": 1, "path": "/w/Harbor/App.swift",
         "name": "App.swift"}]}]})json");
  const CoverageTarget harbor{
      "Harbor.app",
      0.352,
      {{"Berth.swift", "/w/Harbor/Berth.swift", 0.25, 1, 4}, {"App.swift", "/w/Harbor/App.swift", 1, 5, 13}}};
  EXPECT_EQ(targets, std::vector{harbor});
  EXPECT_EQ(linesOf(*targets), (LineCount{6, 17}));
}

TEST(CoverageReport, BundlesOfTestsDontCountButTheirSupportDoes) {
  EXPECT_THAT(targetNames(R"({"targets": [{"name": "AppTests"}, {"name": "AppTestsSupport"}, {"name": "APPUITESTS"},
                          {"name": "App.xctest"}, {"name": "Unit.XCTest"}, {"name": "Tests.framework"}]})"),
              ElementsAre("AppTestsSupport", "Tests.framework"));
}

TEST(CoverageReport, WhatIsNoReportGivesNothing) {
  for (const char* const text :
       {"", "{", "[]", "null", "{}", R"({"targets": 7})", R"({"targets": [})", "Error: no coverage", "\xff\xfe{"}) {
    EXPECT_FALSE(readCoverageReport(text)) << text;
  }
  EXPECT_THAT(readCoverageReport(R"({"targets": [], "coveredLines": 0})").value(), IsEmpty());
}

TEST(CoverageReport, WordsBeforeTheReportAreLeftOut) {
  EXPECT_THAT(targetNames("note: using xccov 1.0\n{\"targets\": [{\"name\": \"App\"}]}"), ElementsAre("App"));
}

TEST(CoverageReport, OddEntriesAreLeftOutAndOddNumbersAreBounded) {
  const auto targets = readCoverageReport(R"({"targets": [7, null, {"name": 5}, {"lineCoverage": 1},
      {"name": "App", "lineCoverage": 7.5, "files": [3, [], {}, {"name": "A.swift", "lineCoverage": -1,
       "coveredLines": -4, "executableLines": 1e300}, {"path": "/w/B.swift", "coveredLines": 9, "executableLines": 3},
       {"name": null, "path": ""}]}, {"name": "Empty", "files": "none"}]})");
  ASSERT_TRUE(targets);
  ASSERT_EQ(targets->size(), 2U);
  const CoverageTarget& app = targets->front();
  EXPECT_EQ(app.coverage, 1);
  EXPECT_THAT(app.files, ElementsAre(CoverageFile{"A.swift", "", 0, 0, 1'000'000'000'000},
                                     CoverageFile{"B.swift", "/w/B.swift", 0, 3, 3}));
  EXPECT_THAT((*targets)[1].files, IsEmpty());
}

TEST(CoverageReport, ADocumentDeeperThanAnyReportGivesNothing) {
  const std::string deep = std::string(1000, '[') + std::string(1000, ']');
  EXPECT_THAT(targetNames(R"({"functions": )" + deep + R"(, "targets": [{"name": "App"}]})"), ElementsAre("App"));
  EXPECT_FALSE(readCoverageReport(R"({"targets": )" + std::string(200'000, '[')));
}

TEST(CoverageReport, NamesComeAsTheyAre) {
  EXPECT_THAT(targetNames(R"({"targets": [{"name": "A \"b\" [c] passed after \u001b[31m 🌊\n"}]})"),
              ElementsAre("A \"b\" [c] passed after \x1b[31m 🌊\n"));
}

TEST(CoverageReport, ARecordedReportHasSumsThatAgree) {
  const std::filesystem::path path = HALYARD_SOURCE_DIR "/../shared/recordings/xcresult/xccov-report-turnip.json";
  if (!std::filesystem::exists(path)) return;
  std::ifstream file(path);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto targets = readCoverageReport(text);
  ASSERT_TRUE(targets && !targets->empty());
  for (const CoverageTarget& target : *targets) {
    EXPECT_NEAR(linesOf({target}).coverage(), target.coverage, 1e-9) << target.name;
  }
}

TEST(LineCount, WithoutExecutableLinesTheCoverageIsZero) { EXPECT_EQ(LineCount{}.coverage(), 0); }

class LoadedCoverage : public FlowTest {
 public:
  [[nodiscard]] std::string findBundle() const {
    return "find '" + folder + "/Logs/Test' -name '*.xcresult' 2>/dev/null | sort | tail -1";
  }
};

TEST_F(LoadedCoverage, IsThatOfTheNewestBundle) {
  runner.expect(findBundle(), "/b/It's.xcresult\n");
  runner.expect(R"(xcrun xccov view --report --json '/b/It'\''s.xcresult' 2>/dev/null)",
                R"({"targets": [{"name": "App"}]})");
  EXPECT_EQ(loadCoverage()->front().name, "App");
}

TEST_F(LoadedCoverage, IsMissingWithoutABundle) {
  runner.expect(findBundle(), "");
  EXPECT_FALSE(loadCoverage());
}

TEST_F(LoadedCoverage, IsMissingWithoutAReport) {
  runner.expect(findBundle(), "/b/a.xcresult\n").expectContaining("xccov view", "");
  EXPECT_FALSE(loadCoverage());
}

TEST_F(LoadedCoverage, OfTwoBundlesTheLastInSortOrderIsRead) {
  const TemporaryFolder home;
  for (const char* const name :
       {"Test-A-2026.03.02_10-00-00-+0100.xcresult", "Test-A-2026.03.01_23-59-59-+0100.xcresult",
        "Test-A-2026.02.28_23-59-59-+0100.xcresult"}) {
    std::filesystem::create_directories(home.at(std::string("Logs/Test/") + name));
  }
  std::string command = findBundle();
  command.replace(command.find(folder), folder.size(), home.at(""));
  const std::string newest = DefaultCommandRunner().run(command);
  EXPECT_TRUE(newest.ends_with("2026.03.02_10-00-00-+0100.xcresult")) << newest;
}

}  // namespace
}  // namespace halyard
