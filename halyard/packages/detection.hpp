// Which package managers the project in the current directory uses.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

struct DetectedPackageManagers {
  bool hasSPM = false;
  bool hasPods = false;
  bool hasCarthage = false;

  /// Looks below the current directory for a package or its resolved versions, and in it for a Podfile and a Cartfile.
  static DetectedPackageManagers detect();

  [[nodiscard]] bool any() const { return hasSPM || hasPods || hasCarthage; }
  /// As questions name them: "SPM, CocoaPods".
  [[nodiscard]] std::string displayNames() const;

  bool operator==(const DetectedPackageManagers&) const = default;
};

/// Whether the path names a file or a link, not a folder.
bool packageFileExists(const std::string& path);

/// Where each manager keeps its downloads, with a leading tilde.
namespace PackageManagerCachePath {
inline constexpr std::string_view spm = "~/Library/Caches/org.swift.swiftpm";
inline constexpr std::string_view cocoaPods = "~/Library/Caches/CocoaPods";
inline constexpr std::string_view carthage = "~/Library/Caches/org.carthage.Carthage";
}  // namespace PackageManagerCachePath

}  // namespace halyard
