#include "halyard/testruns/test_run_display.hpp"

#include <array>
#include <cstddef>
#include <string>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/build/diagnostics.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

// In the order of TestBuildStep.
constexpr auto stepKeys =
    std::to_array<std::string_view>({"build_step_init", "build_step_resolve", "build_step_compile", "build_step_link"});
static_assert(static_cast<std::size_t>(TestBuildStep::link) + 1 == stepKeys.size());

void show(std::string line) {
  line += '\n';
  print(line);
  flushOutput();
}

}  // namespace

TestRunDisplay::TestRunDisplay() = default;
TestRunDisplay::~TestRunDisplay() = default;

void TestRunDisplay::begin() { startSpinner("starting_build"); }

void TestRunDisplay::finish() { stopSpinner(); }

void TestRunDisplay::buildStepBegan(TestBuildStep step) {
  stopSpinner();
  const std::string_view key = stepKeys.at(static_cast<std::size_t>(step));
  if (!hasSteps_) printStep(localized("build_phase"));
  hasSteps_ = true;
  show(fmt::format("     {}›{} {}", Color::dim, Color::reset, localized(key)));
  startSpinner(key);
}

void TestRunDisplay::buildErrorFound(std::string_view line) {
  const bool wasTurning = spinner_ != nullptr;
  stopSpinner();
  const XBDiagnostic error = parseDiagnostic(line, true);
  printError(shownToolText(error.message) + locationSuffix(error));
  flushOutput();
  if (wasTurning) startSpinner(spinnerKey_);
}

void TestRunDisplay::testPhaseBegan() {
  stopSpinner();
  printLine();
  printSection(localized("test_run_phase"));
  flushOutput();
}

void TestRunDisplay::suiteBegan(std::string_view name) { show(suiteStartLine(name)); }

void TestRunDisplay::testEnded(std::string_view name, bool passed, double duration) {
  show(testResultLine(name, passed, duration));
}

void TestRunDisplay::suiteEnded(const SuiteResult& result) { show(suiteEndLine(result)); }

void TestRunDisplay::shutdownBegan() {
  const bool wasTurning = spinner_ != nullptr;
  stopSpinner();
  show(fmt::format("\n  ⏳ {}", localized("xcodebuild_shutting_down")));
  if (wasTurning) startSpinner(spinnerKey_);
}

void TestRunDisplay::startSpinner(std::string_view key) {
  spinnerKey_ = key;
  spinner_ = std::make_unique<ActivitySpinner>(std::string(localized(key)));
  spinner_->start();
}

void TestRunDisplay::stopSpinner() {
  if (!spinner_) return;
  spinner_->stop();
  spinner_.reset();
}

std::string suiteStartLine(std::string_view name) {
  return fmt::format("{}—— 🧪 {}{}", Color::boldBlue, shownToolText(name), Color::reset);
}

std::string testResultLine(std::string_view name, bool passed, double duration) {
  return fmt::format("  {}├—{} {}{}{} {}  {}{:.3f} s{}", Color::dim, Color::reset, passed ? Color::green : Color::red,
                     passed ? "✓" : "✗", passed ? Color::reset : Color::red, shownToolText(name),
                     passed ? Color::dim : Color::red, duration, Color::reset);
}

std::string suiteEndLine(const SuiteResult& result) {
  if (result.failed > 0) {
    return fmt::format("  {}└—{} {}✗ {} {}{}  {} {}", Color::dim, Color::reset, Color::boldRed, result.failed,
                       localized("failed"), Color::reset, result.passed, localized("passed"));
  }
  return fmt::format("  {}└—{} {}✓ {}/{} {}{}", Color::dim, Color::reset, Color::boldGreen, result.passed,
                     result.passed + result.failed, localized("passed"), Color::reset);
}

}  // namespace halyard
