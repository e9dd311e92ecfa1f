#include "halyard/testruns/test_actions.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/destination.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/scheme_platforms.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/post_test_menu.hpp"
#include "halyard/testruns/test_run.hpp"
#include "halyard/testruns/test_targets.hpp"

namespace halyard {

namespace {

struct TestActionTexts {
  std::string_view titleKey;
  std::string_view descriptionKey;
};

/// The head of each action. False: it ends here.
bool openTestAction(const TestActionTexts& texts) {
  if (!requireFlowTarget()) return false;
  printActionHeader(localized(texts.titleKey), localized(texts.descriptionKey));
  return true;
}

bool confirmTestAction(const TestActionTexts& texts) {
  return confirm(localizedFormat("start_build_run_confirm", localized(texts.titleKey)));
}

void refuse(std::string_view key) {
  printError(localized(key));
  waitForBack();
}

void runAndShow(const TestActionTexts& texts, TestRequest request) {
  const std::string_view title = localized(texts.titleKey);
  const std::string detail = displaySafe(request.selection);
  BuildTimeline::begin(std::string(title));
  TestRunData data = runTestPhase(request, {.detail = detail});
  BuildTimeline::end();
  postTestMenu({.data = std::move(data),
                .request = std::move(request),
                .title = std::string(title),
                .description = std::string(localized(texts.descriptionKey)),
                .detail = detail});
}

TestTargetKinds selectableTargets() { return partedTestTargets(schemeTestTargets(effectiveTestScheme())); }

bool runsOnMac() { return destinationArgument({}, testSchemePlatforms()).find("platform=macOS") != std::string::npos; }

bool confirmTakingOverMac() {
  printWarning(localized("ui_tests_macos_warning"));
  return confirm(localized("ui_tests_macos_confirm"));
}

}  // namespace

void runUnitTests() {
  constexpr TestActionTexts texts{"run_unit_tests", "run_unit_tests_description"};
  if (!openTestAction(texts)) return;
  const TestTargetKinds targets = selectableTargets();
  const bool isByName = !targets.unit.empty() || !targets.ui.empty();
  const auto selection = unitTestSelection(targets, !isByName && !testPlanArgument().empty());
  if (!selection) return refuse("no_unit_test_targets_found");
  if (!confirmTestAction(texts)) return;
  printInfo(localized(isByName ? "only_unit_tests_running" : "unit_tests_fallback_to_test_plan"));
  runAndShow(texts, {.selection = *selection});
}

void runUiTests() {
  constexpr TestActionTexts texts{"run_ui_tests", "run_ui_tests_description"};
  if (!openTestAction(texts)) return;
  const TestTargetKinds targets = selectableTargets();
  if (targets.ui.empty()) return refuse("no_ui_test_targets_found");
  if (runsOnMac() && !confirmTakingOverMac()) return;
  if (!confirmTestAction(texts)) return;
  printInfo(localized("only_ui_tests_running"));
  runAndShow(texts, {.selection = onlyTesting(targets.ui)});
}

void runAllTests() {
  constexpr TestActionTexts texts{"run_all_tests", "run_all_tests_description"};
  if (openTestAction(texts) && confirmTestAction(texts)) runAndShow(texts, {});
}

void testWithoutBuilding() {
  constexpr TestActionTexts texts{"test_without_building", "test_without_building_description"};
  if (!openTestAction(texts)) return;
  printInfo(localized("test_without_building_requires_prior_build"));
  if (!testPlanArgument().empty()) printInfo(localized("testplan_overrides_targets_info"));
  if (confirmTestAction(texts)) runAndShow(texts, {.action = std::string(testWithoutBuildingAction)});
}

void buildForTesting() {
  constexpr TestActionTexts texts{"build_for_testing", "build_for_testing_description"};
  if (!openTestAction(texts) || !confirmTestAction(texts)) return;
  BuildTimeline::begin(std::string(localized(texts.titleKey)));
  runTestBuildPhase({});
  endFlow();
}

}  // namespace halyard
