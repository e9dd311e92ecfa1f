// Feeds any bytes, line by line, to the reader of test runs, and holds its record and its lines against them.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/text.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/test_line_parser.hpp"
#include "halyard/testruns/test_run_display.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

/// Our own colours apart, a shown line holds nothing that a terminal could obey.
void requireHarmless(const std::string& line) {
  require(halyard::isValidUtf8(line));
  require(std::ranges::none_of(halyard::stripAnsi(line), isControl));
}

class CheckedEvents final : public halyard::TestRunEvents {
 public:
  void buildStepBegan(halyard::TestBuildStep /*step*/) override { require(!inTests); }
  void buildErrorFound(std::string_view /*line*/) override { ++errors; }
  void testPhaseBegan() override {
    require(!inTests);
    inTests = true;
  }
  void suiteBegan(std::string_view name) override {
    require(inTests);
    requireHarmless(halyard::suiteStartLine(name));
  }
  void testEnded(std::string_view name, bool passed, double duration) override {
    require(inTests && duration >= 0);
    requireHarmless(halyard::testResultLine(name, passed, duration));
    ++tests;
  }
  void suiteEnded(const halyard::SuiteResult& result) override {
    require(inTests && result.passed >= 0 && result.failed >= 0);
    requireHarmless(halyard::suiteEndLine(result));
  }
  void shutdownBegan() override {
    require(!inShutdown);
    inShutdown = true;
  }

  bool inTests = false;
  bool inShutdown = false;
  std::size_t tests = 0;
  std::size_t errors = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string log = halyard::decodedText({reinterpret_cast<const char*>(data), size});
  CheckedEvents events;
  halyard::TestLineParser parser(events);
  std::size_t lines = 0;
  for (const std::string_view line : halyard::splitLines(log)) {
    parser.processLine(line);
    ++lines;
  }
  const halyard::TestRunData& record = parser.data();
  require(record.passed.size() + record.failed.size() == events.tests && events.tests <= lines);
  require(record.errorLines.size() == events.errors && static_cast<std::size_t>(record.errorCount) == events.errors);
  require(static_cast<std::size_t>(record.warnCount) <= lines);
  require(parser.hasVerdict() || !record.testSucceeded);
  for (const halyard::PassedTest& test : record.passed) require(log.find(test.name) != std::string::npos);
  for (const halyard::SuiteResult& suite : record.suiteResults) {
    const auto ended = static_cast<std::size_t>(suite.passed) + static_cast<std::size_t>(suite.failed);
    require(suite.name != "All tests" && ended <= events.tests);
  }
  for (const auto& [suite, target] : record.testTargetMap) require(!suite.empty() && !target.empty());
  return 0;
}
