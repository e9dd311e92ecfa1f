// Real logs, where they lie beside the sources, against counts that were read in them by hand and by `grep`.
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <test_places.hpp>

#include "core/text.hpp"
#include "halyard/testruns/test_events_testing.hpp"
#include "halyard/testruns/test_line_parser.hpp"

namespace halyard {
namespace {

enum Flags : unsigned { none = 0, succeeded = 1, failed = 2, build = 4, session = 8 };

struct Expected {
  std::string_view file;
  std::size_t passed;
  std::size_t failed;
  std::size_t suites;  ///< that have ended
  int warnings;
  int errors;
  unsigned flags;
};

// A person would count otherwise in three: launcher-… lists all of its tests a second time; in procedurekit-… the
// verdict tears the line of a test; xcpretty-…'s suites say "finished".
constexpr auto expectations = std::to_array<Expected>({
    {"bitrise-compile-error.txt", 0, 0, 0, 0, 8, failed},
    {"bitrise-early-unexpected-exit-1.txt", 1, 0, 1, 0, 0, failed},
    {"bitrise-failed-to-background-runner.txt", 2, 0, 1, 0, 0, failed},
    {"bitrise-failure-attempting-to-launch.txt", 2, 1, 2, 0, 0, failed},
    {"bitrise-registering-timeout.txt", 2, 0, 1, 0, 0, failed},
    {"bitrise-uitest-timeout.txt", 2, 0, 1, 0, 0, failed},
    {"fastlane-scan-parallel-failure.txt", 17, 1, 0, 0, 0, failed},
    {"fastlane-scan-xcode26-execute-failed.txt", 0, 2, 0, 0, 0, build | session},
    {"fastlane-scan-xcode26-prettified.txt", 0, 0, 0, 0, 0, failed},
    {"gemini-swift-xctest-succeeded.txt", 37, 0, 3, 1, 0, succeeded | session},
    {"jenkins-xctest-complex-failing.txt", 20, 5, 12, 0, 0, failed},
    {"jenkins-xctest-crashing.txt", 3, 0, 1, 0, 0, none},
    {"jenkins-xctest-passing.txt", 12, 0, 4, 0, 0, succeeded},
    {"launcher-macos-uitests-on-my-mac.txt", 46, 20, 2, 0, 0, session},
    {"macos-test-crash-restarts-verdict-before-cases.txt", 2, 6, 0, 1, 0, failed | session},
    {"maptiler-swiftcompile-failed-ci-1.9mb.txt", 0, 0, 0, 28, 8, failed | build | session},
    {"package-resolve-git-auth-failed.txt", 0, 0, 0, 0, 1, none},
    {"poem-test-failed-raw.txt", 10, 1, 1, 0, 0, failed | session},
    {"procedurekit-all-1326-cases-succeeded-2.2mb.txt", 662, 0, 115, 0, 0, succeeded},
    {"speechflow-swift-testing-chinese-names.txt", 50, 1, 6, 0, 0, none},
    {"spi-server-swift-test-full.txt", 1, 3, 1, 12, 0, none},
    {"xcbeautify-mixed-macos.txt", 4, 2, 2, 0, 0, none},
    {"xcbeautify-parallel-tests.txt", 19, 1, 0, 0, 0, none},
    {"xcbeautify-swift-testing-sfsymbols.txt", 1, 1, 0, 0, 0, none},
    {"xcode15-build-for-testing-then-test-success.txt", 8, 0, 0, 0, 0, succeeded | session},
    {"xcode15-test-build-failed-no-tests.txt", 0, 0, 0, 3, 1, failed | build | session},
    {"xcode15-test-xctest-754-cases-succeeded.txt", 377, 0, 73, 0, 0, succeeded | session},
    {"xcode16-mixed-xctest-swift-testing-failed.txt", 17, 1, 2, 0, 0, build | session},
    {"xcode16-parallel-clones-swift-testing.txt", 17, 1, 0, 0, 0, build | session},
    {"xcode16-swift-testing-parameterised-zero-width.txt", 8, 1, 1, 0, 0, build | session},
    {"xcpretty-specta-fail.txt", 921, 1, 0, 0, 0, none},
    {"xcsift-swift-testing-named-sfsymbols.txt", 23, 0, 5, 0, 0, none},
});

std::filesystem::path recordings() {
  return std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/xcodebuild-test";
}

void feedFile(TestLineParser& parser, const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text = decodedText(std::string(std::istreambuf_iterator<char>(file), {}));
  for (const std::string_view line : splitLines(text)) parser.processLine(line);
}

unsigned flagsOf(const TestLineParser& parser) {
  const TestRunData& data = parser.data();
  return (data.testSucceeded ? succeeded : none) | (data.testFailed ? failed : none) |
         (data.buildFailed ? build : none) | (parser.sessionEnded() ? session : none);
}

TEST(TestRecordings, GiveTheCountsThatAPersonReads) {
  std::size_t checked = 0;
  for (const Expected& expected : expectations) {
    const auto path = recordings() / expected.file;
    if (!std::filesystem::exists(path)) continue;
    SCOPED_TRACE(expected.file);
    RecordedTestEvents events;
    TestLineParser parser(events);
    feedFile(parser, path);
    const TestRunData& data = parser.data();
    EXPECT_EQ(data.passed.size(), expected.passed);
    EXPECT_EQ(data.failed.size(), expected.failed);
    EXPECT_EQ(data.suiteResults.size(), expected.suites);
    EXPECT_EQ(data.warnCount, expected.warnings);
    EXPECT_EQ(data.errorCount, expected.errors);
    EXPECT_EQ(flagsOf(parser), expected.flags);
    ++checked;
  }
  // All of them, or none where the recordings aren't there.
  EXPECT_EQ(checked, std::filesystem::exists(recordings()) ? expectations.size() : 0U);
}

TEST(TestRecordings, NoneIsWithoutExpectation) {
  if (!std::filesystem::exists(recordings())) return;
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(recordings())) {
    files += entry.path().extension() == ".txt" ? 1U : 0U;
  }
  EXPECT_EQ(files, expectations.size());
}

}  // namespace
}  // namespace halyard
