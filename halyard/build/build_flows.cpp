#include "halyard/build/build_flows.hpp"

#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/clean_steps.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/flows_labels.hpp"
#include "halyard/build/launch_app.hpp"
#include "halyard/build/live_build.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/packages/detection.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/packages/package_sync.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

std::string bold(std::string_view text) { return fmt::format("{}{}{}", Color::bold, text, Color::reset); }

/// The folder of the project's builds, as messages show it.
std::string shownFolder() { return displaySafe(privateDerivedDataDisplay()); }

std::string schemeAndPath(std::string_view schemeLabel, std::string_view pathLabel) {
  return fmt::format("{}: {} | {}: {}", schemeLabel, displaySafe(selectedScheme()), pathLabel, shownFolder());
}

BuiltAppTexts buildAndRunTexts() {
  return {.noAppReasonKey = "the_build_was_probably_not_successful_or_the_build",
          .noAppHintKey = "check_the_build_output_above_for_errors_try_01_delete",
          .noAppDetail = schemeAndPath("Scheme", "Path")};
}

BuiltAppTexts quickResetTexts() {
  return {.noAppReasonKey = "the_build_was_probably_not_successful",
          .noAppHintKey = "check_the_build_output_above_for_errors_for_spm_issues_run",
          .noAppDetail = schemeAndPath("Scheme", "Search path")};
}

BuiltAppTexts fullResetTexts() {
  return {.noAppReasonKey = "the_build_was_probably_not_successful",
          .noAppHintKey = "check_the_build_output_above_for_errors",
          .noAppDetail = schemeAndPath(localized("scheme"), localized("search_path")),
          .noBundleIDReasonKey = "info_plist_is_missing_or_corrupted_ios_app_info_plist_macos"};
}

/// Launches in the open phase, and ends the flow.
void launchAndEndFlow(const ActiveTarget& target, const BuiltApp& app, std::string_view successKey) {
  const bool launched = launchApp(target, app);
  BuildTimeline::endPhase(launched);
  if (launched) {
    printLine();
    printSuccess(localizedFormat(successKey, bold(displaySafe(app.bundleID))));
  }
  BuildTimeline::end();
  finishLaunch(target, app, launched);
}

/// The last phase of the flows that clean first. It begins with bringing the target up.
void runLaunchPhase(const ActiveTarget& target, std::string_view stepKey, const BuiltAppTexts& texts,
                    std::string_view successKey) {
  BuildTimeline::beginPhase("Launch", "▶", displaySafe(target.name));
  printStep(localized(stepKey));
  if (!prepareTarget(target)) {
    BuildTimeline::endPhase(false);
    return endFlow();
  }
  const std::optional<BuiltApp> app = requireBuiltApp(texts);
  if (!app) return endFlow();
  launchAndEndFlow(target, *app, successKey);
}

bool runNumberedBuildPhase(std::string_view stepKey) {
  return runBuildPhase([&] {
    printStep(localizedFormat(stepKey, displaySafe(selectedConfig())));
    printCtrlCHint();
  });
}

bool runProjectCleanPhase() {
  BuildTimeline::beginPhase("Clean", "🧹");
  printStep(localized("step_1_3_delete_deriveddata"));
  CleanStep deletion = projectBuildFolderStep();
  deletion.info = fmt::format("{} {}", localized("deleting_deriveddata_detail"), shownFolder());
  const bool cleaned = performCleanSteps({deletion});
  if (cleaned) printSuccess(fmt::format("{} {}", localized("deriveddata_deleted"), shownFolder()));
  BuildTimeline::endPhase(cleaned);
  return cleaned;
}

bool runFullCleanPhase(const DetectedPackageManagers& managers) {
  BuildTimeline::beginPhase("Clean", "🧹");
  printStep(localized("step_1_4_delete_caches"));
  const bool cleaned = performCleanSteps(fullCleanSteps(managers));
  if (cleaned) printSuccess(localized("all_caches_deleted"));
  BuildTimeline::endPhase(cleaned);
  return cleaned;
}

/// Of the Swift packages alone: without them there is no build.
bool runResolvePhase() {
  BuildTimeline::beginPhase("Resolve", "📦");
  printStep(localized("step_2_4_resolve_spm_packages"));
  printCtrlCHint();
  const PipeRunResult result = runFormatted(resolveCommandForRun(), buildTimeLimit);
  const bool aborted = operationAborted();
  const bool succeeded = result.status == 0 && !aborted;
  BuildTimeline::endPhase(succeeded);
  if (succeeded) {
    printSuccess(localized("packages_resolved"));
  } else if (!aborted) {
    printError(localized("spm_packages_could_not_be_resolved"));
    // The condensed view has only the first line of a cause.
    for (const std::string& line : packageErrorLines(PackageTool::spm, result.output)) {
      printLine("    " + displaySafe(line));
    }
  }
  return succeeded;
}

/// A failure here doesn't stop the build, an abort does.
bool runSyncPhase() {
  BuildTimeline::beginPhase("PM-Sync", "📦");
  const PackageManagerSyncResult result = syncBeforeBuild();
  if (operationAborted()) {
    BuildTimeline::endPhase(false);
    return false;
  }
  if (result.ran()) {
    BuildTimeline::endPhase(result.ok());
  } else {
    BuildTimeline::skipPhase();
  }
  return true;
}

}  // namespace

void buildAndRunApp() {
  const std::optional<ActiveTarget> target = requireFlowTarget();
  if (!target) return;
  const std::string_view title = localized(flowLabels(target->kind).buildAndRunKey);
  printActionHeader(title, localized("builds_the_app_with_the_selected_scheme_and_launches_it"));
  if (!confirm(localized("build_and_launch_confirm"))) return;
  printRunHeader(*target);
  BuildTimeline::begin(std::string(title));
  if (!prepareTarget(*target)) return endFlow();
  printInfo(
      localizedFormat("building_var_var_detail", bold(displaySafe(selectedScheme())), displaySafe(selectedConfig())));
  printLine();
  if (!runBuildPhase([] {})) return endFlow();
  const std::optional<BuiltApp> app = requireBuiltApp(buildAndRunTexts());
  if (!app) return endFlow();
  BuildTimeline::beginPhase("Launch", "▶", displaySafe(target->name));
  launchAndEndFlow(*target, *app, "app_running_bundle_id_var");
}

void buildApp() {
  if (!requireFlowTarget()) return;
  const std::string_view title = localized("build");
  printActionHeader(title, localized("compiles_the_app_with_the_selected_scheme_and_configuration"));
  if (!confirm(localizedFormat("start_build_run_confirm", title))) return;
  BuildTimeline::begin(std::string(title));
  runBuildPhase([] {});
  endFlow();
}

void quickResetBuildAndLaunch() {
  const std::optional<ActiveTarget> target = requireFlowTarget();
  if (!target) return;
  const std::string_view title = localized(flowLabels(target->kind).quickResetKey);
  printActionHeader(title, localizedFormat("deletes_only_deriveddata_and_rebuilds_the_app_completely", shownFolder()));
  const std::string_view question = localized("start_quick_reset_build_deriveddata_will_be_deleted");
  if (!confirmDialog({}, question, DialogSeverity::destructive)) return;
  printRunHeader(*target);
  BuildTimeline::begin(std::string(title));
  if (!runProjectCleanPhase()) return endFlow();
  if (!runNumberedBuildPhase("step_2_3_build_var")) return endFlow();
  runLaunchPhase(*target, "step_3_3_start_app", quickResetTexts(), "app_running_bundle_id_var_3");
}

void fullResetBuildAndLaunch() {
  const std::optional<ActiveTarget> target = requireFlowTarget();
  if (!target) return;
  const DetectedPackageManagers managers = DetectedPackageManagers::detect();
  const std::string_view title = localized(flowLabels(target->kind).fullResetKey);
  printActionHeader(title, localized("deletes_all_xcode_caches_re_resolves_spm_packages_performs"));
  if (!confirm(localizedFormat("start_build_run_confirm", title))) return;
  printRunHeader(*target);
  BuildTimeline::begin(std::string(title));
  if (!runFullCleanPhase(managers)) return endFlow();
  if (managers.hasSPM && !runResolvePhase()) return endFlow();
  if (!runSyncPhase()) return endFlow();
  if (!runNumberedBuildPhase("step_3_4_build_var")) return endFlow();
  runLaunchPhase(*target, "step_4_4_launch_app", fullResetTexts(), "app_running_bundle_id_var_2");
}

}  // namespace halyard
