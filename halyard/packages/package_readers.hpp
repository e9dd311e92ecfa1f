// What the three managers wrote down about the versions in use.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct SPMPackageInfo {
  std::string identity;
  std::string version;  ///< else the branch, else the start of the revision; may be empty
  std::string url;

  bool operator==(const SPMPackageInfo&) const = default;
};

struct PodInfo {
  std::string name;
  std::string version;

  bool operator==(const PodInfo&) const = default;
};

struct CarthageFWInfo {
  std::string name;
  std::string version;

  bool operator==(const CarthageFWInfo&) const = default;
};

/// The pins of a Package.resolved of any version. Empty where it isn't JSON; a pin without an identity is dropped.
std::vector<SPMPackageInfo> readPackageResolved(std::string_view json);
/// The pods that a Podfile.lock lists under PODS, without what they need themselves.
std::vector<PodInfo> readPodfileLock(std::string_view text);
/// The frameworks of a Cartfile.resolved; lines that don't name one are dropped.
std::vector<CarthageFWInfo> readCartfileResolved(std::string_view text);

/// The search below the current directory for the Package.resolved to read.
inline constexpr std::string_view packageResolvedSearch =
    R"(find . \( -path '*/xcshareddata/swiftpm/Package.resolved' -o \( -name 'Package.resolved' )"
    R"(-not -path '*/Carthage/*' -not -path '*/Pods/*' -not -path '*/.build/*' \) \) 2>/dev/null | head -1)";
/// The search for the one to show.
inline constexpr std::string_view packageResolvedToShowSearch =
    "find . -name 'Package.resolved' -not -path '*/Carthage/*' -not -path '*/Pods/*' 2>/dev/null | head -1";
/// The search below a project's own folder.
std::string packageResolvedSearchIn(std::string_view folder);

/// What the lock files in reach of the current directory list; empty where there is none.
std::vector<SPMPackageInfo> pinnedPackages();
/// The same for the project in this folder.
std::vector<SPMPackageInfo> pinnedPackagesIn(std::string_view folder);
std::vector<PodInfo> lockedPods();
std::vector<CarthageFWInfo> lockedFrameworks();

}  // namespace halyard
