#include "halyard/packages/package_resolving.hpp"

#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/packages/package_commands.hpp"
#include "halyard/packages/package_live_run.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct Manager {
  std::string_view phase;
  bool DetectedPackageManagers::*isUsed;
  PackageTool tool;
  std::string_view program;  ///< that must be there; empty: no question
  std::string_view command;  ///< in the project's folder; empty: the command that was passed in
  double limit;              ///< seconds
  std::string_view okKey;
  std::string_view failedKey;
  std::string_view missingKey;
};

constexpr auto managers = std::to_array<Manager>({
    {.phase = "SPM",
     .isUsed = &DetectedPackageManagers::hasSPM,
     .tool = PackageTool::spm,
     .program = {},
     .command = {},
     .limit = 1800,
     .okKey = "packages_resolved",
     .failedKey = "spm_packages_could_not_be_resolved",
     .missingKey = {}},
    {.phase = "CocoaPods",
     .isUsed = &DetectedPackageManagers::hasPods,
     .tool = PackageTool::cocoaPods,
     .program = "pod",
     .command = PackageCommand::installPods,
     .limit = 600,
     .okKey = "pm_sync_pod_ok",
     .failedKey = "pm_sync_pod_failed",
     .missingKey = "pm_sync_pod_missing"},
    {.phase = "Carthage",
     .isUsed = &DetectedPackageManagers::hasCarthage,
     .tool = PackageTool::carthage,
     .program = "carthage",
     .command = PackageCommand::bootstrapFrameworks,
     .limit = 1800,
     .okKey = "pm_sync_carthage_ok",
     .failedKey = "pm_sync_carthage_failed",
     .missingKey = "pm_sync_carthage_missing"},
});

PackageTable seedOf(PackageTool tool, const std::string& projectFolder) {
  switch (tool) {
    case PackageTool::cocoaPods: return packageTable(lockedPods());
    case PackageTool::carthage: return packageTable(lockedFrameworks());
    case PackageTool::spm: break;
  }
  return packageTable(projectFolder.empty() ? pinnedPackages() : pinnedPackagesIn(projectFolder));
}

bool runManager(const Manager& manager, const PackageResolving& resolving) {
  std::error_code ignored;
  const std::string here = std::filesystem::current_path(ignored).string();
  return runPackagesLive(
      {.tool = manager.tool,
       .title = std::string(packageToolTitle(manager.tool)),
       .command = manager.command.empty() ? resolving.packagesCommand : PackageCommand::inFolder(here, manager.command),
       .timeout = manager.limit,
       .successText = std::string(localized(manager.okKey)),
       .failureText = std::string(localized(manager.failedKey)),
       .seed = [&] { return seedOf(manager.tool, resolving.projectFolder); }});
}

/// What became of the managers. Each live table takes the whole screen, so it is told when the last one has ended.
struct Tally {
  std::vector<const Manager*> resolved;
  std::vector<const Manager*> missing;
  std::vector<const Manager*> failed;
};

/// False where it was aborted.
bool resolveWith(const Manager& manager, const PackageResolving& resolving, Tally& tally) {
  if (!manager.program.empty() && !packageToolExists(manager.program)) {
    tally.missing.push_back(&manager);
    return true;
  }
  if (resolving.beginPhase) resolving.beginPhase(manager.phase);
  const bool succeeded = runManager(manager, resolving);
  if (resolving.endPhase) resolving.endPhase(succeeded);
  (succeeded ? tally.resolved : tally.failed).push_back(&manager);
  return !operationAborted();
}

void printTally(const Tally& tally) {
  printSection(localized("resolve_dependencies"));
  for (const Manager* manager : tally.resolved) printSuccess(packageToolTitle(manager->tool));
  for (const Manager* manager : tally.missing) printWarning(localized(manager->missingKey));
  if (tally.failed.empty()) {
    printSuccess(localized("packages_resolved"));
    return;
  }
  printError(localized("spm_packages_could_not_be_resolved"));
  for (const Manager* manager : tally.failed) printBullet(packageToolTitle(manager->tool));
}

}  // namespace

bool resolvePackages(const PackageResolving& resolving) {
  Tally tally;
  for (const Manager& manager : managers) {
    if (!(resolving.managers.*manager.isUsed)) continue;
    if (!resolveWith(manager, resolving, tally)) break;
  }
  if (!operationAborted()) printTally(tally);
  return tally.failed.empty();
}

}  // namespace halyard
