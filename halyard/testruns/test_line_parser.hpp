// Reads the output of a test run, line by line, into its record, and tells what is worth showing as it comes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/test_line_parts.hpp"
#include "halyard/testruns/test_line_scan.hpp"
#include "halyard/testruns/test_run_data.hpp"

namespace halyard {

/// In the order in which a build comes to them.
enum class TestBuildStep : std::uint8_t { prepare, resolve, compile, link };

/// What the parser tells, in the order of the lines. Texts are the tool's own, and hold only for the call.
class TestRunEvents {
 public:
  TestRunEvents() = default;
  TestRunEvents(const TestRunEvents&) = delete;
  TestRunEvents& operator=(const TestRunEvents&) = delete;
  virtual ~TestRunEvents() = default;

  /// Each step once.
  virtual void buildStepBegan(TestBuildStep step) = 0;
  virtual void buildErrorFound(std::string_view line) = 0;
  /// Once, before the first suite or test.
  virtual void testPhaseBegan() = 0;
  virtual void suiteBegan(std::string_view name) = 0;
  virtual void testEnded(std::string_view name, bool passed, double duration) = 0;
  virtual void suiteEnded(const SuiteResult& result) = 0;
  /// Once: all tests have run, but the tool goes on.
  virtual void shutdownBegan() = 0;
};

/// One instance for one run: lines come on the reader's thread, the record is the caller's after the run.
class TestLineParser {
 public:
  explicit TestLineParser(TestRunEvents& events) : events_(events) {}

  /// One line of the tool, without its line feed; any bytes.
  void processLine(std::string_view line);

  [[nodiscard]] const TestRunData& data() const { return data_; }
  TestRunData takeData() { return std::move(data_); }
  /// The run has said how it ended; nothing that counts comes any more.
  [[nodiscard]] bool hasVerdict() const { return hasVerdict_; }
  /// The run has named its result bundle; the verdict follows.
  [[nodiscard]] bool sessionEnded() const { return sessionEnded_; }

 private:
  struct Counts {
    std::size_t passed = 0;
    std::size_t failed = 0;
  };

  void readVerdicts(std::string_view line);
  void readShutdown(std::string_view line);
  void readBuildStep(std::string_view line);
  void readXctestSuite(std::string_view line);
  void readXctestCase(std::string_view line);
  void readMessage(std::string_view line, const LineMarks& marks);
  void readSwiftSuite(std::string_view rest);
  void readSwiftTest(std::string_view rest);

  void beginTestPhase();
  void beginSuite(std::string_view name);
  void endSuite(std::string_view name);
  void endXctestCase(const TestCaseName& test, bool passed, double duration);
  void recordPassed(std::string_view suite, std::string_view name, double duration);
  void recordFailed(std::string_view suite, std::string_view name, double duration, std::vector<std::string> errors);
  void recordSwiftTest(const SwiftTestLine& test);
  void addBuildError(std::string_view line);
  void noteTarget(std::string_view suite, std::string_view module);
  std::vector<std::string> takeErrors(std::string_view name);
  [[nodiscard]] Counts counts() const { return {data_.passed.size(), data_.failed.size()}; }

  TestRunEvents& events_;
  TestRunData data_;
  bool testPhaseStarted_ = false;
  bool sessionEnded_ = false;
  bool hasVerdict_ = false;
  bool shutdownBegan_ = false;
  unsigned seenBuildSteps_ = 0;  // a bit per step

  std::map<std::string, Counts, std::less<>> openSuites_;  // what there was when a suite began
  Counts lastSuiteEvent_;
  std::vector<std::string> openSwiftSuites_;
  std::string bundle_;  // the .xctest that encloses what runs, without its suffix
  std::string currentTest_;
  std::vector<std::string> errors_;  // of the current test
  /// Of tests that the tool names in the message, as they may run side by side.
  std::map<std::string, std::vector<std::string>, std::less<>> namedErrors_;
  /// Failed Swift tests whose seconds are still to come: the place in the record.
  std::map<std::string, std::size_t, std::less<>> untimed_;
};

}  // namespace halyard
