// Apps and processes on a physical device.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// One app on a device.
struct InstalledAppInfo {
  std::string bundleID;  ///< never empty
  std::string name;      ///< the bundle identifier where the device gives none
  std::string version;   ///< may be empty

  bool operator==(const InstalledAppInfo&) const = default;
};

/// By name, regardless of case. Empty also where the device can't be reached.
std::vector<InstalledAppInfo> installedApps(const std::string& udid);
/// The process of the app, or nothing when it isn't running.
std::optional<std::int64_t> runningProcessID(const std::string& udid, const std::string& bundleID);

/// Readers of `device info apps` and `device info processes` with `--json-output -`. Total.
std::vector<InstalledAppInfo> readInstalledApps(std::string_view output);
std::optional<std::int64_t> readProcessID(std::string_view output, std::string_view bundleID);

}  // namespace halyard
