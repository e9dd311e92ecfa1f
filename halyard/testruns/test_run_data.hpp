// What a test run told, and what to make of it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace halyard {

// Names, messages and lines are as the tool wrote them: they go through displaySafe() before they are drawn, and
// through shellQuote() before they are part of a command.

struct PassedTest {
  std::string suite;
  std::string name;
  double duration = 0;  ///< seconds

  bool operator==(const PassedTest&) const = default;
};

struct FailedTest {
  std::string suite;
  std::string name;
  double duration = 0;  ///< seconds
  std::vector<std::string> errors = {};

  bool operator==(const FailedTest&) const = default;
};

struct SuiteResult {
  std::string name;
  int passed = 0;
  int failed = 0;

  bool operator==(const SuiteResult&) const = default;
};

struct TestRunData {
  std::vector<PassedTest> passed = {};  ///< in the order of their reports
  std::vector<FailedTest> failed = {};
  int warnCount = 0;   ///< lines, duplicates included
  int errorCount = 0;  ///< errors of the build, not of tests
  bool buildFailed = false;
  bool testFailed = false;
  bool testSucceeded = false;
  std::vector<SuiteResult> suiteResults = {};  ///< one per finished suite
  /// From a suite to the test target that it belongs to; a suite whose target never showed has no entry.
  std::map<std::string, std::string, std::less<>> testTargetMap = {};
  std::vector<std::string> errorLines = {};  ///< what errorCount counts

  bool operator==(const TestRunData&) const = default;
};

/// A technical failure is a run that failed without a failed test: of the build, of signing, of the tools.
enum class TestRunOutcome : std::uint8_t { success, technicalFailure, realFailures };

TestRunOutcome classify(const TestRunData& data);

/// One run that wasn't a success, among several.
struct ComboFailure {
  std::string label;
  bool buildFailed = false;
  std::vector<FailedTest> failed = {};
  std::string duration = {};  ///< as of formatDuration()

  bool operator==(const ComboFailure&) const = default;
};

}  // namespace halyard
