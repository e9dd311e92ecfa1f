#include "halyard/device/device_commands.hpp"

#include <algorithm>
#include <array>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"

namespace halyard {

namespace {

struct CauseHint {
  std::string_view words;  ///< in lower case
  std::string_view hintKey;
};

// The first row that fits decides.
constexpr auto causeHints = std::to_array<CauseHint>({
    {"developer mode", "hint_enable_developer_mode"},
    {"not connected", "hint_reconnect_device"},
    {"could not find device", "hint_reconnect_device"},
    {"no device is currently connected", "hint_reconnect_device"},
    {"no profiles", "phy_build_signing_hint"},
    {"provisioning profile", "phy_build_signing_hint"},
    {"code signing", "phy_build_signing_hint"},
    {"untrusted", "phy_build_signing_hint"},
    {"bundle identifier", "hint_bundle_not_installed"},
    {"not installed", "hint_bundle_not_installed"},
    {"could not locate installed application", "hint_bundle_not_installed"},
    {"disk space", "hint_not_enough_space"},
    {"insufficient", "hint_not_enough_space"},
});

std::string deviceOption(const std::string& udid) { return " --device " + shellQuote(udid); }

void printToolLine(std::string_view line) {
  printLine(std::string(Color::gray).append(displaySafe(line)).append(Color::reset));
}

std::vector<std::string> filledLines(std::string_view output) {
  std::vector<std::string> lines;
  for (const std::string_view line : splitLines(output)) {
    if (!trimmed(line).empty()) lines.emplace_back(trimmed(line));
  }
  return lines;
}

/// Shows the tool's lines while it works, the last one also without its line end.
DeviceCommandResult performed(const std::string& command) {
  std::size_t shown = 0;
  const PipeRunResult outcome = runLivePipe(command, {}, [&](std::string_view line) {
    if (trimmed(line).empty()) return;
    printToolLine(trimmed(line));
    ++shown;
  });
  DeviceCommandResult result{.status = outcome.status, .lines = filledLines(outcome.output)};
  for (std::size_t i = shown; i < result.lines.size(); ++i) printToolLine(result.lines[i]);
  return result;
}

}  // namespace

std::string DeviceCommandResult::hint(std::string_view fallback) const { return deviceHintFor(lines, fallback); }

std::string DeviceCommandResult::lastLines(std::size_t count) const {
  std::string text;
  for (std::size_t i = lines.size() - std::min(count, lines.size()); i < lines.size(); ++i) {
    if (!text.empty()) text += "\n      ";
    text += displaySafe(lines[i]);
  }
  return text;
}

DeviceCommandResult installOnDevice(const std::string& udid, const std::string& path) {
  return performed("xcrun devicectl device install app" + deviceOption(udid) + " " + shellQuote(path) + " 2>&1");
}

std::int32_t installOnDeviceQuietly(const std::string& udid, const std::string& path) {
  const std::string command =
      "xcrun devicectl device install app " + shellQuote(path) + deviceOption(udid) + " 2>/dev/null || true";
  return runLivePipe(command, {}, {}).status;
}

DeviceCommandResult launchOnDevice(const std::string& udid, const std::string& bundleID) {
  return performed("xcrun devicectl device process launch" + deviceOption(udid) + " " + shellQuote(bundleID) + " 2>&1");
}

DeviceCommandResult openUrlOnDevice(const std::string& udid, const std::string& url) {
  return performed("xcrun devicectl device process launch" + deviceOption(udid) + " --url " + shellQuote(url) +
                   " 2>&1");
}

DeviceCommandResult terminateOnDevice(const std::string& udid, std::int64_t processID) {
  return performed("xcrun devicectl device process terminate" + deviceOption(udid) + " --pid " +
                   std::to_string(processID));
}

DeviceCommandResult uninstallFromDevice(const std::string& udid, const std::string& bundleID) {
  return performed("xcrun devicectl device uninstall app" + deviceOption(udid) + " " + shellQuote(bundleID));
}

DeviceCommandResult takeDeviceScreenshot(const std::string& tool, const std::string& udid, const std::string& path) {
  return performed(shellQuote(tool) + " -u " + shellQuote(udid) + " " + shellQuote(path) + " 2>&1");
}

std::int32_t followDeviceLog(const std::string& tool, const std::string& udid) {
  return runLive(shellQuote(tool) + " -u " + shellQuote(udid));
}

std::string toolPath(const std::string& name) {
  const std::string found = run("which " + name + " 2>/dev/null");
  return std::string(trimmed(splitLines(found).front()));
}

std::string deviceHintFor(const std::vector<std::string>& lines, std::string_view fallback) {
  std::string said;
  for (const std::string& line : lines) said.append(lowercased(line)).append("\n");
  const auto* const cause =
      std::ranges::find_if(causeHints, [&](const CauseHint& row) { return said.find(row.words) != std::string::npos; });
  return std::string(cause == causeHints.end() ? fallback : localized(cause->hintKey));
}

}  // namespace halyard
