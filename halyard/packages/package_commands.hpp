// The exact words by which the managers' tools are called.
#pragma once

#include <string>
#include <string_view>

namespace halyard::PackageCommand {

inline constexpr std::string_view showPackageGraph = "swift package show-dependencies 2>/dev/null";
inline constexpr std::string_view resolvePackages = "swift package resolve";
inline constexpr std::string_view updatePackages = "swift package update";
inline constexpr std::string_view showPodfileLock = "cat 'Podfile.lock'";
inline constexpr std::string_view installPods = "pod install";
inline constexpr std::string_view updatePods = "pod update";
inline constexpr std::string_view cleanPodCache = "pod cache clean --all";
inline constexpr std::string_view showCartfileResolved = "cat 'Cartfile.resolved'";
inline constexpr std::string_view bootstrapFrameworks = "carthage bootstrap --use-xcframeworks";
inline constexpr std::string_view updateFrameworks = "carthage update --use-xcframeworks";
inline constexpr std::string_view outdatedFrameworks = "carthage outdated";
inline constexpr std::string_view buildFrameworks = "carthage build --use-xcframeworks";
inline constexpr std::string_view cleanFrameworkBuilds = "rm -rf Carthage/Build";

/// Pretty JSON where Python is there, else the file as it is.
std::string showPackageResolved(std::string_view file);
/// "(cd <folder> && <command>)".
std::string inFolder(std::string_view folder, std::string_view command);

}  // namespace halyard::PackageCommand

namespace halyard {

/// Whether `which` finds the tool.
bool packageToolExists(std::string_view tool);

}  // namespace halyard
