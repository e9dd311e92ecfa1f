#include "halyard/testruns/test_run.hpp"

#include <chrono>
#include <optional>
#include <string_view>
#include <system_error>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_result.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/duration.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/live_build.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/result_bundle.hpp"
#include "halyard/testruns/test_line_parser.hpp"
#include "halyard/testruns/test_run_display.hpp"

namespace halyard {

namespace {

using SystemTime = std::chrono::system_clock::time_point;

/// When the tool is to be ended: it may linger long after it has said all.
class StopRule {
 public:
  explicit StopRule(const TestLineParser& parser) : parser_(parser) {}

  /// Asked once per chunk of output.
  bool operator()() {
    if (parser_.hasVerdict()) return true;
    if (!parser_.sessionEnded()) return false;
    // The verdict follows the end of the session within moments, but not always in the same chunk.
    constexpr double longestDelay = 2;  // seconds
    const BuildTime now = buildTimeNow();
    if (!sessionEnd_) sessionEnd_ = now;
    return secondsBetween(*sessionEnd_, now) >= longestDelay;
  }

 private:
  const TestLineParser& parser_;
  std::optional<BuildTime> sessionEnd_;
};

void announce() {
  printInfo(
      fmt::format("{}  {}({}){}", localized("starting_build"), Color::dim, localized("live_output"), Color::reset));
  printCtrlCHint();
  printLine();
  flushOutput();
}

/// The runner keeps a last line without its end from the handler.
void processTornLine(TestLineParser& parser, std::string_view output, std::string_view lastLine) {
  const std::string_view last = trimmed(output.substr(output.rfind('\n') + 1));
  if (last != trimmed(lastLine)) parser.processLine(last);
}

TestRunData runThroughParser(const std::string& command) {
  TestRunDisplay display;
  TestLineParser parser(display);
  StopRule stop(parser);
  std::string lastLine;
  display.begin();
  const PipeRunResult result = runLivePipe(command + " 2>&1", std::ref(stop), [&](std::string_view line) {
    parser.processLine(line);
    if (!trimmed(line).empty()) lastLine = line;
  });
  processTornLine(parser, result.output, lastLine);
  display.finish();
  return parser.takeData();
}

/// A bundle that a run before has left would tell that one's results.
bool isOlder(const std::string& bundle, SystemTime start) {
  constexpr auto coarseness = std::chrono::seconds(2);  // of file systems' clocks
  try {
    return AppDependencies::current().fileSystemClient->attributesOfItem(bundle).modificationDate + coarseness < start;
  } catch (const std::system_error&) {
    return false;
  }
}

void readNewestBundle(TestRunData& data, SystemTime start) {
  const std::string bundle = newestResultBundle();
  if (bundle.empty() || isOlder(bundle, start)) return;
  addBundleTests(testsOfResultBundle(bundle), data);
}

}  // namespace

TestRunData runTests(const std::string& command) {
  const SystemTime start = std::chrono::system_clock::now();
  announce();
  TestRunData data = runThroughParser(command);
  if (data.passed.empty() && data.failed.empty() && !operationAborted()) readNewestBundle(data, start);
  return data;
}

TestRunData runTestPhase(const TestRequest& request, const TestPhase& phase) {
  const std::string command = testCommand(request);
  BuildTimeline::beginPhase(phase.name, phase.icon, phase.detail);
  TestRunData data = runTests(command);
  const TestRunOutcome outcome = classify(data);
  const bool aborted = operationAborted();
  BuildTimeline::endPhase(outcome == TestRunOutcome::success && !aborted,
                          outcome == TestRunOutcome::technicalFailure && !aborted);
  return data;
}

bool runTestBuildPhase(TestRequest request) {
  request.action = buildForTestingAction;
  const std::string command = testCommand(request);
  BuildTimeline::beginPhase("Build", "🔨", request.selection.empty() ? std::string() : displaySafe(request.selection));
  printCtrlCHint();
  const BuildResult result = runBuildLive(command, buildTimeLimit);
  const bool aborted = operationAborted();
  BuildTimeline::endPhase(result.success && !aborted);
  if (aborted) return false;
  printBuildResult(result);
  return result.success;
}

}  // namespace halyard
