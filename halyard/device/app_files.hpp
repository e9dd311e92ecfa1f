// Apps on this Mac's disk that a device could be given.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// One installable file that was found.
struct AppFileEntry {
  std::string path;
  std::string name;                               ///< last component of the path
  std::string sdk;                                ///< "iphoneos", "iphonesimulator", "macosx" or "unknown"
  std::chrono::system_clock::time_point modDate;  ///< the earliest date there is where it can't be read
  std::string projectHint;                        ///< the project that it was built from, or the folder that holds it

  bool operator==(const AppFileEntry&) const = default;
};

/// Searches the places where builds and downloads lie; those that the filter accepts, newest first.
std::vector<AppFileEntry> findInstallableApps(const std::function<bool(const AppFileEntry&)>& accepts = {});

/// What the path tells: the SDK that the app was built with, and the project that it belongs to.
std::string_view sdkOfAppFile(std::string_view path);
std::string projectHintOfAppFile(std::string_view path);

}  // namespace halyard
