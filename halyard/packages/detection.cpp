#include "halyard/packages/detection.hpp"

#include <system_error>

#include "core/app_dependencies.hpp"

namespace halyard {

namespace {

constexpr const char* packageSearch =
    "find . \\( -name 'Package.swift' -not -path '*/Pods/*' -not -path '*/Carthage/*' -not -path '*/.build/*' \\) "
    "-maxdepth 3 -o \\( -name 'Package.resolved' -not -path '*/Carthage/*' -not -path '*/Pods/*' \\) -maxdepth 6 "
    "2>/dev/null | head -1";

}  // namespace

bool packageFileExists(const std::string& path) {
  try {
    const FileType type = AppDependencies::current().fileSystemClient->attributesOfItem(path).type;
    return type == FileType::regular || type == FileType::symbolicLink;
  } catch (const std::system_error&) {
    return false;
  }
}

DetectedPackageManagers DetectedPackageManagers::detect() {
  return {.hasSPM = !run(packageSearch).empty(),
          .hasPods = packageFileExists("Podfile"),
          .hasCarthage = packageFileExists("Cartfile")};
}

std::string DetectedPackageManagers::displayNames() const {
  struct Manager {
    bool isUsed;
    std::string_view name;
  };
  std::string names;
  for (const Manager& manager : {Manager{hasSPM, "SPM"}, {hasPods, "CocoaPods"}, {hasCarthage, "Carthage"}}) {
    if (!manager.isUsed) continue;
    if (!names.empty()) names += ", ";
    names += manager.name;
  }
  return names;
}

}  // namespace halyard
