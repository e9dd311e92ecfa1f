#include "halyard/packages/package_sync.hpp"

#include <cstdint>
#include <filesystem>
#include <random>
#include <system_error>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/packages/package_commands.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/terminal/activity_spinner.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct Sync {
  const char* file;
  std::string_view tool;
  std::string_view command;
  std::string_view logPrefix;
  double limit;  ///< seconds
  std::string_view detectedKey;
  std::string_view runningKey;
  std::string_view okKey;
  std::string_view failedKey;
  std::string_view missingKey;
};

constexpr Sync podSync = {.file = "Podfile",
                          .tool = "pod",
                          .command = PackageCommand::installPods,
                          .logPrefix = "/tmp/xcc_pod_install_",
                          .limit = 600,
                          .detectedKey = "pm_sync_pod_detected",
                          .runningKey = "pm_sync_pod_install",
                          .okKey = "pm_sync_pod_ok",
                          .failedKey = "pm_sync_pod_failed",
                          .missingKey = "pm_sync_pod_missing"};

constexpr Sync carthageSync = {.file = "Cartfile",
                               .tool = "carthage",
                               .command = PackageCommand::bootstrapFrameworks,
                               .logPrefix = "/tmp/xcc_carthage_bootstrap_",
                               .limit = 1800,
                               .detectedKey = "pm_sync_carthage_detected",
                               .runningKey = "pm_sync_carthage_bootstrap",
                               .okKey = "pm_sync_carthage_ok",
                               .failedKey = "pm_sync_carthage_failed",
                               .missingKey = "pm_sync_carthage_missing"};

std::uint64_t uniqueNumber() {
  std::random_device device;
  return (static_cast<std::uint64_t>(device()) << 32U) | device();
}

std::string syncCommand(const Sync& sync, const std::string& folder, const std::string& log) {
  // Of a pipeline the shell gives the last command's status, and that is only tee's.
  return PackageCommand::inFolder(folder, sync.command) + " 2>&1 | tee " + shellQuote(log) + "; exit ${PIPESTATUS[0]}";
}

PipeRunResult runSync(const Sync& sync, const std::string& folder, const std::string& log) {
  printStep(localized(sync.runningKey));
  ActivitySpinner spinner{std::string(sync.command)};
  spinner.start();
  const auto showLine = [&](std::string_view line) {
    if (const std::string_view text = trimmed(line); !text.empty()) spinner.setLabel(displaySafe(text));
  };
  return runLivePipe(syncCommand(sync, folder, log), {}, showLine, sync.limit);
}

/// The three fields of the result that belong to one manager.
struct SyncFields {
  bool& ran;
  bool& ok;
  std::string& output;
};

void synchronize(const Sync& sync, const std::string& folder, SyncFields fields) {
  if (!packageFileExists(folder.empty() ? sync.file : folder + "/" + sync.file)) return;
  if (!packageToolExists(sync.tool)) {
    printWarning(localized(sync.missingKey));
    return;
  }
  printInfo(localized(sync.detectedKey));
  std::error_code ignored;
  const std::string place = folder.empty() ? std::filesystem::current_path(ignored).string() : folder;
  const std::string log = fmt::format("{}{}.log", sync.logPrefix, uniqueNumber());
  PipeRunResult result = runSync(sync, place, log);
  fields.ran = true;
  fields.ok = result.status == 0 && !operationAborted();
  fields.output = std::move(result.output);
  if (operationAborted()) return;
  if (fields.ok) {
    printSuccess(localized(sync.okKey));
  } else {
    printError(localized(sync.failedKey));
    printBullet(log);
  }
}

}  // namespace

std::string podSyncCommand(const std::string& folder, const std::string& log) {
  return syncCommand(podSync, folder, log);
}

std::string carthageSyncCommand(const std::string& folder, const std::string& log) {
  return syncCommand(carthageSync, folder, log);
}

PackageManagerSyncResult syncBeforeBuild(const std::string& folder) {
  PackageManagerSyncResult result;
  synchronize(podSync, folder, {result.ranPodInstall, result.podInstallOk, result.podInstallOutput});
  // The next run would clear the flag, and the caller must see it.
  if (result.ranPodInstall && operationAborted()) return result;
  synchronize(carthageSync, folder,
              {result.ranCarthageBootstrap, result.carthageBootstrapOk, result.carthageBootstrapOutput});
  if (!result.ok() && !operationAborted()) printWarning(localized("pm_sync_continue_despite_failure"));
  return result;
}

std::vector<DependencyFailure> dependencyFailures(bool packagesFailed, const DetectedPackageManagers& detected,
                                                  const PackageManagerSyncResult& sync) {
  std::vector<DependencyFailure> failures;
  const auto add = [&](PackageTool tool, std::string_view key) {
    failures.push_back({std::string(packageToolTitle(tool)), std::string(localized(key))});
  };
  if (packagesFailed) add(PackageTool::spm, "spm_packages_could_not_be_resolved");
  if (sync.ranPodInstall ? !sync.podInstallOk : detected.hasPods) {
    add(PackageTool::cocoaPods, sync.ranPodInstall ? podSync.failedKey : podSync.missingKey);
  }
  if (sync.ranCarthageBootstrap ? !sync.carthageBootstrapOk : detected.hasCarthage) {
    add(PackageTool::carthage, sync.ranCarthageBootstrap ? carthageSync.failedKey : carthageSync.missingKey);
  }
  return failures;
}

}  // namespace halyard
