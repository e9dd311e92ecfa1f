#include "halyard/build/flows_building.hpp"

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_product_info.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/destination.hpp"
#include "halyard/build/flows_labels.hpp"
#include "halyard/build/live_build.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {

namespace {

constexpr std::string_view withErrors = " 2>&1";

}  // namespace

std::string buildSettingsForRun(std::string_view configuration) {
  std::string settings(baseBuildSettings);
  if (configuration == "Debug") settings += debugBuildSettings;
  return settings;
}

std::string buildCommandForRun() {
  return XcodebuildService::buildCommand({.scheme = selectedScheme(),
                                          .configuration = selectedConfig(),
                                          .destination = destinationArgument(),
                                          .provisioning = provisioningArgument(),
                                          .derivedDataPath = privateDerivedDataPath(),
                                          .parallelizeTargets = true,
                                          .extraSettings = buildSettingsForRun(selectedConfig())});
}

std::string cleanCommandForRun() {
  return XcodebuildService::cleanCommand(selectedScheme(), privateDerivedDataPath()).append(withErrors);
}

std::string resolveCommandForRun() {
  return XcodebuildService::resolvePackagesCommand(selectedScheme(), privateDerivedDataPath()).append(withErrors);
}

std::optional<ActiveTarget> requireFlowTarget() {
  // A flag that something before left behind isn't this flow's.
  setOperationAborted(false);
  if (!requireTarget()) return std::nullopt;
  auto target = activeTarget();
  if (!target) {
    printFailurePanel({.titleKey = "no_device_selected", .hintKey = "hint_press_d_to_select_device"});
    waitForBack();
  }
  return target;
}

bool runBuildPhase(const std::function<void()>& announce) {
  BuildTimeline::beginPhase("Build", "🔨", selectedConfig());
  announce();
  const BuildResult result = runBuildLive(buildCommandForRun(), buildTimeLimit);
  const bool aborted = operationAborted();
  BuildTimeline::endPhase(result.success && !aborted);
  if (aborted) return false;
  printBuildResult(result);
  if (result.success) printBuildProductInfo();
  return result.success;
}

std::optional<BuiltApp> requireBuiltApp(const BuiltAppTexts& texts) {
  BuiltApp app{.path = findBuiltApp(), .bundleID = {}};
  if (!isAppPath(app.path)) {
    BuildTimeline::endPhase(false);
    printFailurePanel({.titleKey = "no_app_found_in_build_folder",
                       .reason = std::string(localized(texts.noAppReasonKey)),
                       .hintKey = texts.noAppHintKey,
                       .detail = texts.noAppDetail});
    return std::nullopt;
  }
  app.bundleID = readBundleID(app.path);
  if (app.bundleID.empty()) {
    BuildTimeline::endPhase(false);
    printFailurePanel({.titleKey = "could_not_read_bundle_id_from_the_app",
                       .reason = std::string(localized(texts.noBundleIDReasonKey)),
                       .hintKey = "check_if_the_app_was_built_correctly",
                       .detail = localizedFormat("app_path_var", displaySafe(app.path))});
    return std::nullopt;
  }
  return app;
}

bool isAppPath(std::string_view path) { return path.ends_with(".app"); }

void endFlow() {
  BuildTimeline::end();
  waitForBack();
}

}  // namespace halyard
