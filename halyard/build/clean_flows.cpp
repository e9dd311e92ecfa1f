#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/build_timeline.hpp"
#include "halyard/build/clean_steps.hpp"
#include "halyard/build/flows_building.hpp"
#include "halyard/build/live_build.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/build/xcodebuild_service.hpp"
#include "halyard/cache/cache_list.hpp"
#include "halyard/packages/detection.hpp"
#include "halyard/packages/package_caches.hpp"
#include "halyard/packages/package_commands.hpp"
#include "halyard/packages/package_resolving.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

bool runCleanPhase(std::string_view name, const std::vector<CleanStep>& steps, std::string_view successKey) {
  BuildTimeline::beginPhase(std::string(name), "🧹");
  const bool cleaned = performCleanSteps(steps);
  if (cleaned) printSuccess(localized(successKey));
  BuildTimeline::endPhase(cleaned);
  return cleaned;
}

/// True where something was deleted.
bool offerBuildFolders() {
  const std::string folder = displaySafe(privateDerivedDataDisplay());
  if (confirm(localizedFormat("guided_clean_delete_capstan_build_question", folder))) {
    return runCleanPhase("Clean", {projectBuildFolderStep()}, "capstan_build_deleted");
  }
  if (!confirm(localized("guided_clean_delete_workdir_question"))) return false;
  return runCleanPhase("Clean", {derivedDataStep()}, "derived_data_deleted");
}

bool offerSharedCaches() {
  if (!confirm(localized("guided_clean_delete_caches_question"))) return false;
  return runCleanPhase("Caches", sharedCacheSteps(), "caches_deleted_spm_preserved");
}

bool offerPackageCaches(const DetectedPackageManagers& managers) {
  if (!managers.any() || !confirm(packageCacheQuestion(managers))) return false;
  BuildTimeline::beginPhase("PM Caches", "🧹");
  deletePackageCaches(managers);
  BuildTimeline::endPhase(!operationAborted());
  return true;
}

bool wantsToResolve(const DetectedPackageManagers& managers, bool cachesDeleted) {
  if (!managers.any()) {
    printInfo(localized("dir_resolve_deps_no_pm"));
    return false;
  }
  if (!cachesDeleted || !managers.hasSPM) {
    return confirm(localizedFormat("dir_resolve_deps_question_var", managers.displayNames()));
  }
  printInfo(localizedFormat("dir_resolve_deps_auto_resolving_var", managers.displayNames()));
  return true;
}

/// A package without a project is resolved by Swift itself; what else the managers hold by theirs.
void resolvePlainPackage() {
  const auto status = runLive(std::string(PackageCommand::resolvePackages));
  if (status != 0 && !operationAborted()) printError(localized("spm_packages_could_not_be_resolved"));
}

void runGuidedResolvePhase(const DetectedPackageManagers& managers) {
  BuildTimeline::beginPhase("Resolve", "📦");
  if (projectPath().empty()) {
    resolvePlainPackage();
  } else {
    const std::string folder = std::filesystem::path(projectPath()).parent_path().string();
    resolvePackages(
        {.managers = managers,
         .packagesCommand = XcodebuildService::resolvePackagesCommand(selectedScheme(), privateDerivedDataPath()),
         .projectFolder = folder.empty() ? "." : folder});
  }
  BuildTimeline::endPhase(!operationAborted());
}

}  // namespace

void guidedClean() {
  setOperationAborted(false);
  printActionHeader(localized("guided_clean"), localized("guided_clean_description"));
  BuildTimeline::begin(std::string(localized("guided_clean")));
  bool deleted = offerBuildFolders();
  deleted |= offerSharedCaches();
  detectProject();
  const DetectedPackageManagers managers = DetectedPackageManagers::detect();
  const bool cachesDeleted = offerPackageCaches(managers);
  deleted |= cachesDeleted;
  if (wantsToResolve(managers, cachesDeleted)) runGuidedResolvePhase(managers);
  if (!operationAborted()) {
    if (deleted) printAfterNote(localized("guided_clean_after_note"));
    printSuccess(localized("guided_clean_done"));
  }
  // The last "no" was the answer to one question, not to all of this.
  setSuppressBackPrompt(false);
  endFlow();
}

void cleanBuild() {
  setOperationAborted(false);
  if (!requireTarget()) return;
  printActionHeader(localized("xcodebuild_clean"),
                    localized("runs_xcodebuild_clean_for_the_selected_scheme_removes_build"));
  printLine();
  const std::string folder = displaySafe(privateDerivedDataName());
  printCacheList(localized("cache_list_desc_xcodebuild_clean"),
                 {{.label = folder, .path = "~/Library/Developer/Xcode/DerivedData/" + folder}});
  printAfterNote(localized("cache_list_after_xcodebuild_clean"));
  if (!confirm(localized("xcodebuild_clean_confirm"))) return;
  printInfo(localized("xcodebuild_clean_detail"));
  const PipeRunResult result = runFormatted(cleanCommandForRun(), buildTimeLimit);
  if (!operationAborted()) {
    if (result.status == 0) {
      printSuccess(localized("xcodebuild_clean_success"));
    } else {
      printError(localized("xcodebuild_clean_failed"));
    }
  }
  waitForBack();
}

}  // namespace halyard
