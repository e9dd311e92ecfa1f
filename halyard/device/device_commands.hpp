// What is done to a physical device: each command with its words, run while its lines are shown as they come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// What a command to a device left behind.
struct DeviceCommandResult {
  std::int32_t status = 0;         ///< the tool's exit status
  std::vector<std::string> lines;  ///< what the tool said, without empty lines

  [[nodiscard]] bool succeeded() const { return status == 0; }
  /// The hint that fits what the tool said, else the fallback (see deviceHintFor).
  [[nodiscard]] std::string hint(std::string_view fallback) const;
  /// The last lines of what the tool said, fit to be shown as the detail of a failure.
  [[nodiscard]] std::string lastLines(std::size_t count = 4) const;

  bool operator==(const DeviceCommandResult&) const = default;
};

/// `path` is an .app folder or an .ipa file.
DeviceCommandResult installOnDevice(const std::string& udid, const std::string& path);
/// The same without a word and whatever comes of it: for a launch that tells its own failures. The shell's status.
std::int32_t installOnDeviceQuietly(const std::string& udid, const std::string& path);
DeviceCommandResult launchOnDevice(const std::string& udid, const std::string& bundleID);
DeviceCommandResult openUrlOnDevice(const std::string& udid, const std::string& url);
DeviceCommandResult terminateOnDevice(const std::string& udid, std::int64_t processID);
DeviceCommandResult uninstallFromDevice(const std::string& udid, const std::string& bundleID);
/// `tool` is the path of the helper tool, as toolPath() gives it.
DeviceCommandResult takeDeviceScreenshot(const std::string& tool, const std::string& udid, const std::string& path);
/// Shows the device's log until Ctrl-C or the tool's end; the tool's status.
std::int32_t followDeviceLog(const std::string& tool, const std::string& udid);

/// Where a helper tool is; empty when it is missing. `name` is a plain word.
std::string toolPath(const std::string& name);

/// The hint in the current language that the tool's lines call for, by the first cause that they name; else the
/// fallback.
std::string deviceHintFor(const std::vector<std::string>& lines, std::string_view fallback);

}  // namespace halyard
