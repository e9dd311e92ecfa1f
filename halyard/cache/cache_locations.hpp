// The places that Xcode and its tools fill, and how each is emptied: the one table of cache paths.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// In the order of the table, which is that of the lists shown before a cleanup.
enum class CachePlace {
  derivedData,
  moduleCache,
  swiftPMCache,
  swiftPMData,
  xcodeCaches,
  simulatorCache,
  xcodeLogs,
  diagnosticReports,
  archives,
  deviceSupport,
  simulatorDevices,
  sourcePackages,
  cocoaPods,
  carthage,
  simulatorRuntimes,
  previews,
  simulatorLogs,
};

/// How a place is deleted by itself.
enum class CacheDeletion {
  folder,        ///< rm -rf of the path with its tilde
  quotedFolder,  ///< rm -rf of the whole path as one word
  contents,      ///< never the folder: contentsCommand() empties it
  command,       ///< the row's own
};

struct CacheLocation {
  CachePlace place;
  std::string_view labelKey;  ///< empty where the place is shown as a part of another
  std::string_view path;      ///< with its tilde; of the runtimes, which have no folder of the user's, none
  CacheDeletion deletion = CacheDeletion::folder;
  std::string_view command = {};
};

inline constexpr auto cacheLocations = std::to_array<CacheLocation>({
    {.place = CachePlace::derivedData,
     .labelKey = "cache_label_derived_data",
     .path = "~/Library/Developer/Xcode/DerivedData"},
    {.place = CachePlace::moduleCache,
     .labelKey = "cache_label_module_cache",
     .path = "~/Library/Developer/Xcode/ModuleCache"},
    {.place = CachePlace::swiftPMCache,
     .labelKey = "cache_label_swiftpm_cache",
     .path = "~/Library/Caches/org.swift.swiftpm"},
    {.place = CachePlace::swiftPMData,
     .labelKey = "cache_label_swiftpm_data",
     .path = "~/Library/org.swift.swiftpm",
     .deletion = CacheDeletion::contents},
    {.place = CachePlace::xcodeCaches,
     .labelKey = "cache_label_xcode_caches",
     .path = "~/Library/Caches/com.apple.dt.Xcode"},
    {.place = CachePlace::simulatorCache,
     .labelKey = "cache_label_simulator_cache",
     .path = "~/Library/Developer/CoreSimulator/Caches"},
    {.place = CachePlace::xcodeLogs,
     .labelKey = "cache_label_xcode_logs_dir",
     .path = "~/Library/Developer/Xcode/Logs",
     .deletion = CacheDeletion::contents},
    {.place = CachePlace::diagnosticReports,
     .labelKey = "cache_label_diagnostic_reports",
     .path = "~/Library/Logs/DiagnosticReports",
     .deletion = CacheDeletion::contents},
    {.place = CachePlace::archives,
     .labelKey = "cache_label_archives",
     .path = "~/Library/Developer/Xcode/Archives",
     .deletion = CacheDeletion::quotedFolder},
    {.place = CachePlace::deviceSupport,
     .labelKey = "cache_label_ios_devicesupport",
     .path = "~/Library/Developer/Xcode/iOS DeviceSupport",
     .deletion = CacheDeletion::quotedFolder},
    {.place = CachePlace::simulatorDevices,
     .labelKey = "cache_label_simulator_devices",
     .path = "~/Library/Developer/CoreSimulator/Devices",
     .deletion = CacheDeletion::command,
     .command = "xcrun simctl delete all 2>/dev/null; true"},
    {.place = CachePlace::sourcePackages,
     .labelKey = "cache_label_source_packages",
     .path = "~/Library/Developer/Xcode/SourcePackages",
     .deletion = CacheDeletion::quotedFolder},
    {.place = CachePlace::cocoaPods, .labelKey = "cache_label_cocoapods", .path = "~/Library/Caches/CocoaPods"},
    {.place = CachePlace::carthage,
     .labelKey = "cache_label_carthage",
     .path = "~/Library/Caches/org.carthage.CarthageKit"},
    {.place = CachePlace::simulatorRuntimes,
     .labelKey = "cache_label_simulator_runtimes",
     .path = {},
     .deletion = CacheDeletion::command,
     .command = "xcrun simctl runtime delete all 2>/dev/null; true"},
    {.place = CachePlace::previews,
     .labelKey = "cache_label_xcode_previews",
     .path = "~/Library/Developer/Xcode/Previews",
     .deletion = CacheDeletion::quotedFolder},
    {.place = CachePlace::simulatorLogs,
     .labelKey = {},
     .path = "~/Library/Logs/CoreSimulator",
     .deletion = CacheDeletion::contents},
});

namespace detail {

constexpr bool standsInOrder() {
  for (std::size_t i = 0; i < cacheLocations.size(); ++i) {
    if (static_cast<std::size_t>(cacheLocations[i].place) != i) return false;
  }
  return true;
}

/// Below the home folder's Library, a folder of its own there, and without a step back.
constexpr bool isOwnFolder(std::string_view path) {
  constexpr std::string_view root = "~/Library/";
  return path.starts_with(root) &&
         path.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz /.~") == std::string_view::npos &&
         path.find("..") == std::string_view::npos && path.find("//") == std::string_view::npos &&
         path.find('.') != root.size() && !path.ends_with('/') && path.rfind('~') == 0;
}

constexpr bool isSafe(const CacheLocation& location) {
  const bool hasCommand = location.deletion == CacheDeletion::command;
  if (hasCommand == location.command.empty()) return false;
  if (location.path.empty()) return hasCommand;
  // The shell would take a blank as the end of the word.
  const bool isOneWord = location.path.find(' ') == std::string_view::npos;
  return isOwnFolder(location.path) && (isOneWord || location.deletion == CacheDeletion::quotedFolder);
}

}  // namespace detail

static_assert(detail::standsInOrder());
static_assert(std::ranges::all_of(cacheLocations, detail::isSafe));

constexpr const CacheLocation& cacheLocation(CachePlace place) {
  return cacheLocations[static_cast<std::size_t>(place)];
}

/// The path with the home folder in a leading tilde's place.
std::string expandedTilde(std::string_view path);
/// The other way round, for showing a path.
std::string tildePath(const std::string& path);
/// The whole path of a place.
std::string cachePath(CachePlace place);
/// What deletes the place: folder and all, but for those of which only the contents may go.
std::string deletionCommand(CachePlace place);
/// What empties the places and leaves their folders. A place that is a symbolic link is left out: the shell would reach
/// through it into a folder that is none of these.
std::string contentsCommand(std::span<const CachePlace> places);
/// Those of the places that contentsCommand() leaves out.
std::vector<CachePlace> linkedPlaces(std::span<const CachePlace> places);

/// Of the item itself, whatever it leads to.
bool isSymbolicLink(const std::string& path);

}  // namespace halyard
