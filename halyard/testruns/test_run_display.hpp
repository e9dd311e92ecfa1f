// A test run as a person sees it while it goes on: build steps behind a spinner, then suites and tests line by line.
#pragma once

#include <memory>
#include <string_view>

#include "halyard/testruns/test_line_parser.hpp"

namespace halyard {

class ActivitySpinner;

/// Called on the reader's thread between begin() and finish(), which are the caller's.
class TestRunDisplay final : public TestRunEvents {
 public:
  TestRunDisplay();
  ~TestRunDisplay() override;

  void begin();
  void finish();

  void buildStepBegan(TestBuildStep step) override;
  void buildErrorFound(std::string_view line) override;
  void testPhaseBegan() override;
  void suiteBegan(std::string_view name) override;
  void testEnded(std::string_view name, bool passed, double duration) override;
  void suiteEnded(const SuiteResult& result) override;
  void shutdownBegan() override;

 private:
  void startSpinner(std::string_view label);
  void stopSpinner();

  std::unique_ptr<ActivitySpinner> spinner_;
  std::string_view spinnerKey_;
  bool hasSteps_ = false;
};

/// The lines, without their ends.
std::string suiteStartLine(std::string_view name);
std::string testResultLine(std::string_view name, bool passed, double duration);
std::string suiteEndLine(const SuiteResult& result);

}  // namespace halyard
