#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/duration.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/test_plan_list.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/post_test_menu.hpp"
#include "halyard/testruns/test_actions.hpp"
#include "halyard/testruns/test_run.hpp"

namespace halyard {

namespace {

struct PlanRuns {
  TestRunData all;  ///< of the plans together
  std::vector<ComboFailure> failures;
  std::size_t count = 0;
};

template <typename Entry>
void append(std::vector<Entry>& all, std::vector<Entry>&& more) {
  all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

/// The whole has succeeded only if each part has.
void add(PlanRuns& runs, TestRunData&& data) {
  TestRunData& all = runs.all;
  all.testSucceeded = data.testSucceeded && (runs.count == 0 || all.testSucceeded);
  all.testFailed = all.testFailed || data.testFailed;
  all.buildFailed = all.buildFailed || data.buildFailed;
  all.warnCount += data.warnCount;
  all.errorCount += data.errorCount;
  append(all.passed, std::move(data.passed));
  append(all.failed, std::move(data.failed));
  append(all.suiteResults, std::move(data.suiteResults));
  append(all.errorLines, std::move(data.errorLines));
  all.testTargetMap.merge(data.testTargetMap);
  ++runs.count;
}

void runPlan(PlanRuns& runs, const std::string& plan) {
  const BuildTime start = buildTimeNow();
  TestRunData data =
      runTestPhase({.action = std::string(testWithoutBuildingAction), .testPlanOverride = testPlanArgument(plan)},
                   {.detail = displaySafe(plan)});
  if (classify(data) != TestRunOutcome::success) {
    runs.failures.push_back({.label = plan,
                             .buildFailed = data.buildFailed,
                             .failed = data.failed,
                             .duration = formatDuration(secondsBetween(start, buildTimeNow()))});
  }
  add(runs, std::move(data));
}

PlanRuns runPlans(const std::vector<TestPlan>& plans) {
  PlanRuns runs;
  for (std::size_t i = 0; i < plans.size() && !operationAborted(); ++i) {
    printLine();
    printLine(fmt::format(
        "  {}{}{}", Color::bold,
        localizedFormat("run_all_test_plans_plan_var", i + 1, plans.size(), displaySafe(plans[i].name)), Color::reset));
    runPlan(runs, plans[i].name);
  }
  return runs;
}

void printFailure(const ComboFailure& failure) {
  printLine(fmt::format("  {}✗ {}{}  {}{}{}", Color::red, displaySafe(failure.label), Color::reset, Color::dim,
                        failure.duration, Color::reset));
  for (const FailedTest& test : failure.failed) {
    const std::string suite = test.suite.empty() ? std::string() : displaySafe(test.suite) + " › ";
    printLine(fmt::format("      {}✗{} {}{}", Color::red, Color::reset, suite, displaySafe(test.name)));
  }
  if (failure.failed.empty()) printLine(fmt::format("      {}", localized("test_technical_failure")));
}

void printPlanSummary(const PlanRuns& runs) {
  printLine();
  printSection(localizedFormat("run_all_test_plans_summary_var", runs.count));
  const std::size_t passed = runs.count - runs.failures.size();
  const bool allPassed = runs.failures.empty();
  printLine(fmt::format("  {}{} {}/{} {}{}", allPassed ? Color::green : Color::red, allPassed ? "✓" : "✗", passed,
                        runs.count, localized("passed"), Color::reset));
  for (const ComboFailure& failure : runs.failures) printFailure(failure);
}

/// The plan of a repeated part: the one that failed; of several none can stand for all.
std::string retriedPlan(const PlanRuns& runs) {
  return runs.failures.size() == 1 ? testPlanArgument(runs.failures.front().label) : std::string();
}

void runPlansAndShow(const std::vector<TestPlan>& plans, FinishedTestRun finished) {
  PlanRuns runs = runPlans(plans);
  BuildTimeline::end();
  printPlanSummary(runs);
  finished.request = {.action = std::string(testWithoutBuildingAction), .testPlanOverride = retriedPlan(runs)};
  finished.data = std::move(runs.all);
  finished.isPlanRun = true;
  postTestMenu(std::move(finished));
}

void runPlainTests(FinishedTestRun finished) {
  printInfo(localized("run_all_test_plans_no_plans_fallback"));
  finished.request = {.testPlanOverride = std::string()};
  finished.data = runTestPhase(finished.request, {});
  BuildTimeline::end();
  postTestMenu(std::move(finished));
}

}  // namespace

void runAllTestPlans() {
  if (!requireFlowTarget()) return;
  const std::string title(localized("run_all_test_plans"));
  const std::string description(localized("run_all_test_plans_description"));
  printActionHeader(title, description);
  if (!confirm(localizedFormat("start_build_run_confirm", title))) return;
  BuildTimeline::begin(title);
  printStep(localized("run_all_test_plans_build_step"));
  if (!runTestBuildPhase({.testPlanOverride = std::string()})) {
    if (!operationAborted()) printError(localized("run_all_test_plans_build_failed"));
    return endFlow();
  }
  FinishedTestRun finished{.data = {}, .request = {}, .title = title, .description = description};
  const std::vector<TestPlan> plans = schemeTestPlans(effectiveTestScheme());
  printStep(localized("run_all_test_plans_test_step"));
  if (plans.empty()) return runPlainTests(std::move(finished));
  runPlansAndShow(plans, std::move(finished));
}

}  // namespace halyard
