#include "halyard/device/device_actions.hpp"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/app_picking_screen.hpp"
#include "halyard/device/device_apps.hpp"
#include "halyard/device/device_commands.hpp"
#include "halyard/device/device_list.hpp"
#include "halyard/device/device_names.hpp"
#include "halyard/device/device_screen.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int nameWidth = 28;
constexpr int versionWidth = 10;
constexpr int fieldWidth = 8;

void printField(std::string_view labelKey, std::string_view value) {
  const std::string label = padVisible(fmt::format("{}:", localized(labelKey)), fieldWidth);
  printLine(fmt::format("    {}{}{} {}", Color::dim, label, Color::reset, value.empty() ? "—" : displaySafe(value)));
}

void printDevice(const PhysicalDeviceInfo& device) {
  printLine(fmt::format("  {}{}{}", Color::bold, displaySafe(device.name), Color::reset));
  printField("phy_field_product", device.productType);
  printField("phy_field_os", osLabel(device));
  printField("phy_field_udid", device.udid);
  printField("phy_field_state", deviceStateLabel(device.state));
}

void listDevices() {
  const std::vector<PhysicalDeviceInfo> devices =
      withSpinner(std::string(localized("phy_looking_for_devices")), listPhysicalDevices);
  if (devices.empty()) {
    printWarning(localized("no_physical_devices_detected"));
    printInfo(localized("phy_hint_connect_device"));
  }
  for (const PhysicalDeviceInfo& device : devices) {
    if (&device != &devices.front()) printLine();
    printDevice(device);
  }
}

void install(const PhysicalDeviceInfo& device) {
  const std::optional<std::string> path = pickAppFile();
  if (!path || !confirm(localized("install_on_device_confirm"))) return;
  const std::string app = displaySafe(std::filesystem::path(*path).filename().string());
  printInfo(localizedFormat("phy_installing_app_on_device", app, shownName(device)));
  const DeviceCommandResult result = installOnDevice(device.udid, *path);
  if (!result.succeeded()) return printDeviceFailure("phy_install_failed", result, "phy_install_failed_hint");
  printResult(localizedFormat("phy_install_success", app), ResultStyle::success);
}

void launch(const PhysicalDeviceInfo& device) {
  const std::optional<std::string> bundleID = pickInstalledApp(device);
  if (!bundleID || !confirm(localized("launch_on_device_confirm"))) return;
  const std::string app = displaySafe(*bundleID);
  printInfo(localizedFormat("phy_launching_app_on_device", app, shownName(device)));
  const DeviceCommandResult result = launchOnDevice(device.udid, *bundleID);
  if (!result.succeeded()) return printDeviceFailure("phy_launch_failed", result, "phy_launch_failed_hint");
  printResult(localizedFormat("phy_launch_success", app), ResultStyle::success);
}

void terminate(const PhysicalDeviceInfo& device) {
  const std::optional<std::string> bundleID = pickInstalledApp(device);
  if (!bundleID || !confirm(localized("terminate_on_device_confirm"))) return;
  const std::string app = displaySafe(*bundleID);
  printInfo(localizedFormat("phy_terminating_app_on_device", app, shownName(device)));
  printInfo(localized("phy_looking_up_process"));
  const std::optional<std::int64_t> process = runningProcessID(device.udid, *bundleID);
  if (!process) return printWarning(localizedFormat("phy_process_not_running", app));
  printInfo(localizedFormat("phy_process_found_pid", *process));
  const DeviceCommandResult result = terminateOnDevice(device.udid, *process);
  if (!result.succeeded()) printDeviceFailure("phy_terminate_failed", result, "phy_terminate_failed_hint");
}

void uninstall(const PhysicalDeviceInfo& device) {
  const std::optional<std::string> bundleID = pickInstalledApp(device);
  if (!bundleID) return;
  const std::string app = displaySafe(*bundleID);
  if (!confirmDialog({}, localizedFormat("uninstall_app_var_confirm", app), DialogSeverity::destructive)) return;
  printInfo(localizedFormat("phy_uninstalling_app_on_device", app, shownName(device)));
  const DeviceCommandResult result = uninstallFromDevice(device.udid, *bundleID);
  if (!result.succeeded()) return printDeviceFailure("phy_uninstall_failed", result, "phy_uninstall_failed_hint");
  printResult(localizedFormat("phy_uninstall_success", app), ResultStyle::success);
}

void listApps(const PhysicalDeviceInfo& device) {
  const std::vector<InstalledAppInfo> apps =
      withSpinner(std::string(localized("phy_loading_installed_apps")), [&] { return installedApps(device.udid); });
  if (apps.empty()) return printWarning(localized("phy_no_apps_or_unreachable"));
  printSection(localizedFormat("phy_apps_on_device", shownName(device)));
  std::size_t number = 0;
  for (const InstalledAppInfo& app : apps) {
    printLine(fmt::format("  {:02}  {} {} {}{}{}", ++number, padVisible(displaySafe(app.name), nameWidth),
                          padVisible(displaySafe(app.version), versionWidth), Color::dim, displaySafe(app.bundleID),
                          Color::reset));
  }
  printLine();
  printInfo(localizedFormat("phy_installed_apps_count", apps.size()));
}

}  // namespace

void showAllDevices() {
  runDeviceAction("show_all_devices", "show_all_devices_description", [](const PhysicalDeviceInfo&) { listDevices(); });
}

void installAppOnDevice() { runDeviceAction("install_app_on_device", "install_app_on_device_description", install); }

void launchAppOnDevice() { runDeviceAction("launch_app_on_device", "launch_app_on_device_description", launch); }

void terminateAppOnDevice() {
  runDeviceAction("terminate_app_on_device", "terminate_app_on_device_description", terminate);
}

void uninstallAppFromDevice() { runDeviceAction("uninstall_app", "uninstall_app_description", uninstall); }

void listInstalledApps() { runDeviceAction("list_installed_apps", "list_installed_apps_description", listApps); }

}  // namespace halyard
