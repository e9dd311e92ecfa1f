// The parts of a line that tells of a test: names, seconds, verdicts, for both test frameworks. Any bytes in; the texts
// that come back are views into the line, as the tool wrote them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace halyard {

/// What stands in the quotes behind "test case '", whichever framework named it.
struct TestCaseName {
  std::string_view suite;  ///< without its module; empty for a test without a suite
  std::string_view name;
  std::string_view module;  ///< empty where the line doesn't tell it
};
/// "-[Module.Suite test]", "Module.Suite.test()", and the forms of Swift Testing "Suite/test()" and "test()", which
/// keep their brackets: they are part of what the tool calls the test.
TestCaseName readTestCaseName(std::string_view quoted);

enum class TestLineVerdict : std::uint8_t { started, passed, failed };
/// A line of XCTest that holds `words` ("test case '" or "test suite '"), with a verdict behind the quotes. Nothing for
/// other verdicts: "skipped", "measured".
struct QuotedTestLine {
  std::string_view quoted;
  TestLineVerdict verdict = TestLineVerdict::started;
};
std::optional<QuotedTestLine> readQuotedTestLine(std::string_view line, std::string_view words);

/// Of the line of a finished test case.
std::string_view parseTestCaseSuite(std::string_view line);
std::string_view parseTestCaseName(std::string_view line);
/// Seconds in the last "(… seconds"; 0 where there are none.
double parseDuration(std::string_view line);

/// What Swift Testing says behind the word "Test" or "Suite" of a line. Its closing tally ("Test run with …") and the
/// single cases of a test with arguments ("Test case passing …") are no tests.
struct SwiftTestLine {
  std::string_view name;  ///< without quotes and without the number of its cases
  bool failed = false;
  /// None where a quoted name is followed by "failed:": the line with the seconds is still to come.
  std::optional<double> duration;
};
std::optional<SwiftTestLine> readSwiftTestResult(std::string_view rest);
std::optional<SwiftTestLine> readSwiftSuiteResult(std::string_view rest);
/// The name of a suite whose line ends in " started.".
std::optional<std::string_view> readSwiftSuiteStart(std::string_view rest);

/// An issue that a test has recorded, other than a known one.
struct SwiftTestIssue {
  std::string_view name;
  std::string_view message;  ///< with the place that it names
};
std::optional<SwiftTestIssue> readSwiftTestIssue(std::string_view rest);

/// The closing line of Swift Testing's run: a mark of success or failure, then "Test run with …".
bool isSwiftTestingTally(std::string_view line);

}  // namespace halyard
