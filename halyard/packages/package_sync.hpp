// Brings pods and Carthage's frameworks up to date before a build.
#pragma once

#include <string>
#include <vector>

#include "halyard/packages/detection.hpp"

namespace halyard {

struct PackageManagerSyncResult {
  bool ranPodInstall = false;
  bool podInstallOk = false;
  std::string podInstallOutput;
  bool ranCarthageBootstrap = false;
  bool carthageBootstrapOk = false;
  std::string carthageBootstrapOutput;

  /// Something was run: false where there is nothing to synchronize, or the tools are missing.
  [[nodiscard]] bool ran() const { return ranPodInstall || ranCarthageBootstrap; }
  /// Nothing that was run failed.
  [[nodiscard]] bool ok() const {
    return (!ranPodInstall || podInstallOk) && (!ranCarthageBootstrap || carthageBootstrapOk);
  }

  bool operator==(const PackageManagerSyncResult&) const = default;
};

/// Runs `pod install` for a Podfile in the folder, then `carthage bootstrap` for a Cartfile, and prints how each went;
/// a missing tool is named and skipped. After a failure it also prints that the build goes on, so the caller needn't.
/// An abort ends it and leaves the flag set. An empty folder means the current directory.
PackageManagerSyncResult syncBeforeBuild(const std::string& folder = {});

/// The commands, with the log that `tee` writes. The status is that of the manager.
std::string podSyncCommand(const std::string& folder, const std::string& log);
std::string carthageSyncCommand(const std::string& folder, const std::string& log);

/// A manager that didn't bring its packages, as the report of a failed build lists them. Texts are in the current
/// language.
struct DependencyFailure {
  std::string title;
  std::string text;

  bool operator==(const DependencyFailure&) const = default;
};
std::vector<DependencyFailure> dependencyFailures(bool packagesFailed, const DetectedPackageManagers& detected,
                                                  const PackageManagerSyncResult& sync);

}  // namespace halyard
