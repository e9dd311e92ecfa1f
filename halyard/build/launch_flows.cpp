#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/flows_labels.hpp"
#include "halyard/build/launch_app.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

void offerBuildAndRun() {
  printError(localized("no_built_app_found_in_deriveddata"));
  printLine(fmt::format("  {}", localized("rebuild_the_app_with_build_run")));
  printLine();
  if (confirm(localized("build_and_run_now_confirm"))) buildAndRunApp();
}

/// The app at the path with its bundle identifier; without one a block says why.
std::optional<BuiltApp> launchableApp(std::string path) {
  printInfo(localizedFormat("app_path_var", displaySafe(path)));
  BuiltApp app{.path = std::move(path), .bundleID = {}};
  app.bundleID = readBundleID(app.path);
  if (!app.bundleID.empty()) return app;
  printFailurePanel({.titleKey = "could_not_read_bundle_id_from_the_app",
                     .reason = std::string(localized("info_plist_is_missing_or_corrupted")),
                     .hintKey = "rebuild_the_app_with_build_run",
                     .detail = localizedFormat("app_path_var_2", displaySafe(app.path))});
  return std::nullopt;
}

void launchOn(const ActiveTarget& target, std::string path) {
  const std::optional<BuiltApp> app = launchableApp(std::move(path));
  if (!app) return waitForBack();
  const bool launched = prepareTarget(target) && launchApp(target, *app);
  if (launched) {
    printSuccess(
        localizedFormat("app_started_var", fmt::format("{}{}{}", Color::bold, displaySafe(target.name), Color::reset)));
  }
  finishLaunch(target, *app, launched);
}

bool requireScheme() {
  if (!selectedScheme().empty()) return true;
  printFailurePanel({.titleKey = "no_scheme_selected",
                     .reason = std::string(localized("scheme_device_and_configuration_must_be_set_before_build")),
                     .hintKey = "please_select_a_scheme_first_using_s"});
  waitForBack();
  return false;
}

/// The selected simulator, or the Mac in its place. Without one the user picks; the selection stays as it is.
std::optional<ActiveTarget> simulatorToLaunchOn() {
  if (const auto& device = selectedDevice()) {
    const auto kind = device->udid == "local" ? ActiveTarget::Kind::mac : ActiveTarget::Kind::simulator;
    return ActiveTarget{device->udid, device->name, device->osLabel, kind};
  }
  const std::optional<SimInfo> picked = pickSimulator({});
  if (!picked) return std::nullopt;
  return ActiveTarget{picked->udid, picked->name, picked->osLabel, ActiveTarget::Kind::simulator};
}

}  // namespace

void launchLastBuiltApp() {
  const std::optional<ActiveTarget> target = requireFlowTarget();
  if (!target) return;
  printActionHeader(localized(flowLabels(target->kind).launchKey),
                    localizedFormat("launches_the_last_built_app_from_deriveddata_directly_on",
                                    displaySafe(privateDerivedDataDisplay())));
  if (!confirm(localized("launch_app_confirm"))) return;
  std::string path = findBuiltApp();
  if (!isAppPath(path)) return offerBuildAndRun();
  launchOn(*target, std::move(path));
}

void launchLastBuiltAppOnSimulator() {
  // A flag that something before left behind isn't this flow's.
  setOperationAborted(false);
  if (!requireScheme()) return;
  printActionHeader(localized("launch_app_again_simulator"),
                    localized("launches_last_built_app_on_selected_simulator"));
  if (!confirm(localized("launch_app_confirm"))) return;
  const std::optional<ActiveTarget> target = simulatorToLaunchOn();
  if (!target) return;
  // The active target may be a device: an app that was built for that doesn't run here.
  std::string path = run(findBuiltAppCommand(target->kind, selectedConfig()));
  if (!isAppPath(path)) return offerBuildAndRun();
  launchOn(*target, std::move(path));
}

}  // namespace halyard
