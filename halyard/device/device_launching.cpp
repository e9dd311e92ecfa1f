#include "halyard/device/device_launching.hpp"

#include <string_view>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/device_commands.hpp"
#include "halyard/device/device_names.hpp"
#include "halyard/device/device_selection.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

/// An abort is the user's wish and no failure; nothing follows it, also where the tool took it for a good end.
bool wentWell(const DeviceCommandResult& result, std::string_view titleKey, std::string_view reasonKey,
              std::string_view fallbackHintKey, const std::string& detail) {
  if (operationAborted()) return false;
  if (result.succeeded()) return true;
  printErrorDetail(localized(titleKey), detail, localized(reasonKey), result.hint(localized(fallbackHintKey)));
  return false;
}

bool install(const PhysicalDeviceInfo& device, const std::string& appPath) {
  const std::string name = displaySafe(deviceDisplayName(device));
  printInfo(localizedFormat("installing_on_physical_device_var", name));
  return wentWell(installOnDevice(device.udid, appPath), "app_could_not_be_installed_on_device",
                  "devicectl_install_failed_reason", "phy_build_signing_hint",
                  name + " | App: " + displaySafe(appPath));
}

bool launch(const PhysicalDeviceInfo& device, const std::string& bundleID) {
  const std::string name = displaySafe(deviceDisplayName(device));
  printInfo(localizedFormat("launching_on_physical_device_var", name));
  return wentWell(launchOnDevice(device.udid, bundleID), "app_could_not_be_launched_on_device",
                  "devicectl_launch_failed_reason", "check_if_the_bundle_id_is_correct_and_the_app_is_installed",
                  displaySafe(bundleID) + " | " + name);
}

}  // namespace

bool installAndLaunchOnDevice(const std::string& appPath, const std::string& bundleID) {
  if (!ensureDeviceReachable()) return false;
  const PhysicalDeviceInfo device = *selectedPhysicalDevice();
  return install(device, appPath) && launch(device, bundleID);
}

bool launchInstalledAppOnDevice(const std::string& bundleID) {
  return ensureDeviceReachable() && launch(*selectedPhysicalDevice(), bundleID);
}

}  // namespace halyard
