// The actions that need more than the vendor's tool: a screenshot, the live log; and links.
#include <chrono>
#include <optional>
#include <string>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/device_actions.hpp"
#include "halyard/device/device_commands.hpp"
#include "halyard/device/device_screen.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

/// The tool's path; where it is missing, says so and how to get it.
std::string requiredTool(const std::string& name, std::string_view missingKey, std::string_view installKey) {
  std::string tool = toolPath(name);
  if (tool.empty()) {
    printResult(localized(missingKey), ResultStyle::failure);
    printInfo(localized(installKey));
  }
  return tool;
}

std::string desktopFolder() { return AppDependencies::current().fileSystemClient->homeDirectoryPath() + "/Desktop"; }

std::string screenshotPath() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return fmt::format("{}/phy_{}.png", desktopFolder(), std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

void takeScreenshot(const PhysicalDeviceInfo& device) {
  const std::string tool =
      requiredTool("idevicescreenshot", "phy_screenshot_tool_missing", "phy_screenshot_install_hint");
  if (tool.empty()) return;
  const std::string path = screenshotPath();
  printInfo(localizedFormat("phy_screenshot_saving_to", displaySafe(path)));
  printInfo(localizedFormat("phy_screenshot_device_hint", shownName(device)));
  const DeviceCommandResult result = takeDeviceScreenshot(tool, device.udid, path);
  if (!result.succeeded()) {
    if (operationAborted()) return;
    printErrorDetail(localized("phy_screenshot_failed"), std::nullopt, localized("phy_screenshot_failed_reason"),
                     localized("phy_screenshot_failed_hint"));
    return;
  }
  printResult(localizedFormat("phy_screenshot_saved", displaySafe(path)), ResultStyle::success);
  if (confirm(localized("open_finder_desktop_confirm"))) run("open " + shellQuote(desktopFolder()));
}

std::optional<std::string> askForUrl() {
  print(fmt::format("  {}▶{} {} ", Color::boldBlue, Color::reset, localized("phy_deep_link_enter_url")));
  flushOutput();
  const std::optional<std::string> line = readLine();
  const std::string url(trimmed(line.value_or("")));
  if (url.empty()) leaveDeviceAction();
  return url.empty() ? std::nullopt : std::optional(url);
}

void openDeepLink(const PhysicalDeviceInfo& device) {
  printInfo(localized("phy_open_deep_link_detail"));
  printLine();
  const std::optional<std::string> url = askForUrl();
  if (!url) return;
  if (url->find(':') == std::string::npos) {
    printResult(localized("phy_deep_link_invalid_url"), ResultStyle::failure);
    return;
  }
  printInfo(localizedFormat("phy_deep_link_opening_on_device", displaySafe(*url), shownName(device)));
  const DeviceCommandResult result = openUrlOnDevice(device.udid, *url);
  if (result.succeeded()) return printResult(localized("phy_deep_link_opened"), ResultStyle::success);
  if (operationAborted()) return;
  printErrorDetail(localized("phy_deep_link_failed"), std::nullopt, localized("phy_deep_link_failed_reason"),
                   result.hint(localized("phy_deep_link_failed_hint")));
}

void showLog(const PhysicalDeviceInfo& device) {
  printInfo(localizedFormat("phy_live_log_for_device", shownName(device)));
  if (!confirm(localized("live_log_confirm"))) return;
  printInfo(localized("log_stream_hint_ctrl_c"));
  const std::string tool = requiredTool("idevicesyslog", "phy_live_log_tool_missing", "phy_live_log_install_hint");
  if (tool.empty()) return;
  const std::int32_t status = followDeviceLog(tool, device.udid);
  if (status != 0 && !operationAborted()) printResult(localized("phy_live_log_failed"), ResultStyle::failure);
}

}  // namespace

void saveScreenshotOfDevice() {
  runDeviceAction("phy_take_screenshot", "phy_take_screenshot_description", takeScreenshot);
}

void openDeepLinkOnDevice() { runDeviceAction("phy_open_deep_link", "phy_open_deep_link_description", openDeepLink); }

void showLiveLogOfDevice() { runDeviceAction("live_log_from_device", "live_log_from_device_description", showLog); }

}  // namespace halyard
