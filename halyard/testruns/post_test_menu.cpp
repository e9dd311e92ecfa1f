#include "halyard/testruns/post_test_menu.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/active_target.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/launch_app.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/coverage_actions.hpp"
#include "halyard/testruns/result_bundle.hpp"
#include "halyard/testruns/retry_items.hpp"
#include "halyard/testruns/test_result.hpp"
#include "halyard/testruns/test_run.hpp"

namespace halyard {

namespace {

/// What an order leaves to be shown above the options.
enum class Aftermath { nothing, result, screen };

void printOutcome(const TestRunData& data) {
  printBuildTestResult(data);
  printTestBanner(data, data.errorCount, data.warnCount);
}

void printScreen(const FinishedTestRun& run) {
  printActionHeader(run.title, run.description);
  printBuildTestResult(run.data);
}

/// True once: the abort of a run ends that run, not the menu.
bool takeAbort() {
  const bool aborted = operationAborted();
  setOperationAborted(false);
  return aborted;
}

/// A target that a further run doesn't name may have shown in an earlier one.
void replaceData(FinishedTestRun& run, TestRunData data) {
  data.testTargetMap.merge(run.data.testTargetMap);
  run.data = std::move(data);
}

void runAgain(FinishedTestRun& run, const TestRequest& request, const TestPhase& phase) {
  replaceData(run, runTestPhase(request, phase));
  BuildTimeline::end();
  setOperationAborted(false);
}

std::string runUdid(const FinishedTestRun& run) {
  if (run.request.udid) return *run.request.udid;
  const auto target = activeTarget();
  return target ? target->udid : std::string();
}

// Conditions

bool always(const FinishedTestRun& /*run*/) { return true; }

bool isOnSimulator(const FinishedTestRun& /*run*/) {
  const auto target = activeTarget();
  return target && target->kind == ActiveTarget::Kind::simulator;
}

bool isRepeatable(const FinishedTestRun& run) { return !run.isPlanRun; }

bool hasFailedTests(const FinishedTestRun& run) { return !run.data.failed.empty(); }

// Orders

Aftermath showCoverage(FinishedTestRun& /*run*/) {
  clearScreen();
  showCoverageTree();
  setOperationAborted(false);
  return Aftermath::screen;
}

/// Tells where it doesn't come up.
bool bringUp(const SimInfo& simulator) {
  if (!prepareTarget({simulator.udid, simulator.name, simulator.osLabel, ActiveTarget::Kind::simulator})) return false;
  const bool booted = isSimulatorBooted(simulator.udid);
  if (operationAborted()) return false;
  if (!booted) printError(localized("simulator_not_running_error"));
  return booted;
}

Aftermath runOnOtherSimulator(FinishedTestRun& run) {
  const std::optional<SimInfo> picked = pickSimulator(runUdid(run));
  if (!picked) {
    setOperationAborted(false);
    return Aftermath::screen;
  }
  if (!bringUp(*picked)) {
    // A message that nothing may push away is above the options; an abort has left none.
    return takeAbort() ? Aftermath::screen : Aftermath::nothing;
  }
  run.request.udid = picked->udid;
  run.detail = displaySafe(picked->name);
  BuildTimeline::begin(run.title);
  runAgain(run, run.request, {.detail = run.detail});
  return Aftermath::result;
}

Aftermath repeatAll(FinishedTestRun& run) {
  BuildTimeline::begin(run.title);
  runAgain(run, run.request, {.detail = run.detail});
  return Aftermath::result;
}

std::vector<BundleTest> testsOfNewestBundle() {
  const std::string bundle = newestResultBundle();
  return bundle.empty() ? std::vector<BundleTest>() : testsOfResultBundle(bundle);
}

/// Failed tests that can't be named run with the others of their run.
TestRequest retryRequest(const FinishedTestRun& run) {
  TestRequest request = run.request;
  request.action = testWithoutBuildingAction;
  if (std::string items = retrySelection(run.data, testsOfNewestBundle); !items.empty()) {
    request.selection = std::move(items);
  }
  return request;
}

bool buildForRetry(const FinishedTestRun& run) {
  printInfo(localized("post_test_building_for_retry"));
  TestRequest request = run.request;
  request.selection.clear();
  if (runTestBuildPhase(request)) return true;
  BuildTimeline::end();
  if (!takeAbort()) printError(localized("post_test_build_failed"));
  return false;
}

Aftermath retryFailed(FinishedTestRun& run) {
  printLine();
  printStep(localizedFormat("post_test_retrying_n_failed", run.data.failed.size()));
  const TestRequest request = retryRequest(run);
  if (takeAbort()) return Aftermath::nothing;
  BuildTimeline::begin(run.title);
  if (!buildForRetry(run)) return Aftermath::nothing;
  runAgain(run, request, {.name = std::string(localized("post_test_retry_label")), .icon = "🔁"});
  return Aftermath::result;
}

struct Option {
  std::string_view key;
  std::string_view labelKey;
  bool (*isShown)(const FinishedTestRun& run);
  Aftermath (*perform)(FinishedTestRun& run);  ///< null: leaves
};

constexpr Option options[] = {
    {"x", "post_test_to_menu", always, nullptr},
    {"c", "coverage_tree_action", always, showCoverage},
    {"w", "post_test_other_simulator", isOnSimulator, runOnOtherSimulator},
    {"+", "post_test_repeat_all", isRepeatable, repeatAll},
    {"i", "post_test_retry_failed", hasFailedTests, retryFailed},
};

/// Columns to draw in; output that isn't a terminal has any number.
int drawingColumns() { return isatty(STDOUT_FILENO) != 0 ? terminalColumns() : std::numeric_limits<int>::max(); }

void printOptions(const FinishedTestRun& run) {
  printLine();
  print(drawPostTestOptions(run, drawingColumns()));
  flushOutput();
}

/// Null: the user leaves, or nobody is there any more.
const Option* readOption(const FinishedTestRun& run) {
  for (;;) {
    const std::string key = lowercased(readKeyChar());
    const auto* const option = std::ranges::find(options, key, &Option::key);
    if (option != std::end(options) && option->isShown(run)) return option->perform == nullptr ? nullptr : option;
    if (inputEnded()) return nullptr;
  }
}

}  // namespace

std::string drawPostTestOptions(const FinishedTestRun& run, int columns) {
  constexpr std::string_view indent = "  ";
  constexpr std::string_view gap = "   ";
  std::string drawn;
  std::string line;
  for (const Option& option : options) {
    if (!option.isShown(run)) continue;
    const std::string text =
        fmt::format("{}[{}]{} {}", Color::boldBlue, option.key, Color::reset, localized(option.labelKey));
    const int width = visibleWidth(line) + static_cast<int>(gap.size()) + visibleWidth(text);
    if (!line.empty() && width > columns) drawn += std::exchange(line, {}) + "\n";
    line.append(line.empty() ? indent : gap).append(text);
  }
  return drawn + line + "\n";
}

void postTestMenu(FinishedTestRun run) {
  printOutcome(run.data);
  // The menu would draw over what there is to read.
  if (takeAbort()) return waitForBack();
  while (!takeAbort()) {
    flushPendingInput();
    printOptions(run);
    const Option* const option = readOption(run);
    if (option == nullptr) return;
    switch (option->perform(run)) {
      case Aftermath::result: printOutcome(run.data); break;
      case Aftermath::screen: printScreen(run); break;
      case Aftermath::nothing: break;
    }
  }
}

}  // namespace halyard
