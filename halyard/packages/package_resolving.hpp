// Resolves the dependencies of all managers that a project uses, one after the other.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "halyard/packages/detection.hpp"

namespace halyard {

struct PackageResolving {
  DetectedPackageManagers managers;
  std::string packagesCommand;  ///< the xcodebuild line that resolves the Swift packages
  std::string projectFolder;    ///< where its Package.resolved is looked for; empty: below the current directory
  /// Told of each manager, "SPM", "CocoaPods", "Carthage", before and after its run; may be empty.
  std::function<void(std::string_view name)> beginPhase = {};
  std::function<void(bool succeeded)> endPhase = {};
};

/// Swift packages, pods, Carthage's frameworks, each with its live table; then the closing line. A missing tool is
/// named and skipped; an abort ends the sequence and leaves the flag set. It neither asks nor waits. True where all
/// that was run succeeded.
bool resolvePackages(const PackageResolving& resolving);

}  // namespace halyard
