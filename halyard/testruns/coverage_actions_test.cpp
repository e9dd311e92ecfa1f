#include "halyard/testruns/coverage_actions.hpp"

#include <filesystem>

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/testruns/coverage_tree.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view report = R"({"targets": [{"name": "Harbor.app", "lineCoverage": 0.5, "files": [
    {"name": "Berth.swift", "path": "/ci/Harbor/Berth.swift", "lineCoverage": 0.5, "coveredLines": 2,
     "executableLines": 4}]}, {"name": "HarborTests.xctest"}]})";

class CoverageActions : public FlowTest {
 public:
  CoverageActions& withReport(std::string_view json = report) {
    runner.expectContaining("Logs/Test' -name '*.xcresult'", "/b/a.xcresult\n");
    runner.expect("xcrun xccov view --report --json '/b/a.xcresult' 2>/dev/null", std::string(json));
    return *this;
  }
  CoverageActions& withoutBundle() {
    runner.expectContaining("Logs/Test' -name '*.xcresult'", "");
    return *this;
  }
};

TEST_F(CoverageActions, TheReportIsATableWithAKeyForTheFiles) {
  withReport();
  const std::string text = shown(showCoverageReport, "x");
  EXPECT_THAT(text, AllOf(HasSubstr("▶  Coverage Report"), HasSubstr("Shows code coverage from the last test run"),
                          HasSubstr("Harbor.app"), HasSubstr("Total  "), HasSubstr("[d] Show file details   [x] Back"),
                          Not(HasSubstr("HarborTests")), Not(HasSubstr("Berth.swift"))));
}

TEST_F(CoverageActions, TheFilesComeOnD) {
  withReport();
  const std::string text = shown(showCoverageReport, "q\rDzX");
  EXPECT_THAT(text, HasSubstr("    Berth.swift"));
  EXPECT_THAT(text.substr(text.find("Berth.swift")), AllOf(HasSubstr("[x] Back"), Not(HasSubstr("[d]"))));
}

TEST_F(CoverageActions, WithoutABundleTheReportSaysSoAndWaits) {
  withoutBundle();
  EXPECT_THAT(shown(showCoverageReport, "x"),
              AllOf(HasSubstr("No coverage data found. Run tests first."), HasSubstr(backPrompt)));
}

TEST_F(CoverageActions, AnEmptyReportIsNoData) {
  withReport(R"({"coveredLines":0,"executableLines":0,"lineCoverage":0,"targets":[]})");
  EXPECT_THAT(shown(showCoverageReport, "x"), HasSubstr("No coverage data found."));
  withReport(R"({"targets": [{"name": "HarborTests"}]})");
  EXPECT_THAT(shown(showCoverageTree, "x"), HasSubstr("No coverage data found."));
}

TEST_F(CoverageActions, AReportThatCantBeReadIsNoData) {
  withReport("Error: not a bundle");
  EXPECT_THAT(shown(showCoverageReport, "x"), HasSubstr("No coverage data found."));
}

TEST_F(CoverageActions, TheTreeShowsTheFilesOfTheWorkingDirectory) {
  const TemporaryFolder workingFolder;
  std::filesystem::create_directory(workingFolder.at("Harbor"));
  std::filesystem::current_path(workingFolder.at("Harbor"));
  withReport();
  using namespace std::string_literals;
  runner.expect(swiftFilesCommand(), "./Harbor/Berth.swift\0./HarborTests/BerthTests.swift\0"s);
  EXPECT_THAT(shown(showCoverageTree, "x"),
              AllOf(HasSubstr("▶  Coverage Tree"), HasSubstr("── Structure ─"),
                    HasSubstr("  Harbor/  2/4\n  ├── Harbor/  2/4\n  │   └── Berth.swift       50.0%\n"
                              "  └── HarborTests/\n      └── BerthTests.swift\n"),
                    HasSubstr(backPrompt)));
}

TEST_F(CoverageActions, AnAbortOfTheLoadingGoesStraightBack) {
  withoutBundle().aborted();
  EXPECT_THAT(shown(showCoverageTree, ""), AllOf(Not(HasSubstr("No coverage data")), Not(HasSubstr(backPrompt))));
  EXPECT_FALSE(operationAborted());
}

TEST_F(CoverageActions, SpeakGerman) {
  setCurrentLanguage("de");
  withReport();
  EXPECT_THAT(shown(showCoverageReport, "x"),
              AllOf(HasSubstr("Abdeckungsbericht"), HasSubstr("[d] Dateidetails anzeigen   [x] Zurück")));
  withoutBundle();
  EXPECT_THAT(shown(showCoverageTree, "x"), HasSubstr("Keine Abdeckungsdaten gefunden. Zuerst Tests ausführen."));
}

}  // namespace
}  // namespace halyard
