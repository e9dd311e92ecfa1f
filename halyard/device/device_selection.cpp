#include "halyard/device/device_selection.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/device_list.hpp"
#include "halyard/device/device_names.hpp"
#include "halyard/device/device_prompts.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

using State = PhysicalDeviceInfo::State;
using Devices = std::vector<PhysicalDeviceInfo>;

constexpr int nameWidth = 26;
constexpr int modelWidth = 12;
constexpr int osWidth = 14;

// By state. A connected device needs none.
constexpr std::array<std::string_view, 4> stateHints = {"", "phy_state_hint_disconnected", "phy_state_hint_paired",
                                                        "phy_state_hint_unknown"};
static_assert(static_cast<std::size_t>(State::unknown) + 1 == stateHints.size());

/// The tool takes its time over a list.
Devices listBehindSpinner() {
  return withSpinner(std::string(localized("phy_looking_for_devices")), listPhysicalDevices);
}

std::string deviceRow(const PhysicalDeviceInfo& device) {
  const std::string_view color = device.state == State::connected ? Color::boldGreen : Color::dim;
  return fmt::format("{} {}{} {} {}{}{}", padVisible(displaySafe(device.name), nameWidth), Color::dim,
                     padVisible(displaySafe(device.productType), modelWidth),
                     padVisible(displaySafe(osLabel(device)), osWidth), Color::reset, color,
                     deviceStateLabel(device.state)) +
         std::string(Color::reset);
}

void printPicker(const Devices& devices) {
  const auto& selected = selectedPhysicalDevice();
  printLine();
  printSection(localized("available_physical_devices"));
  for (std::size_t i = 0; i < devices.size(); ++i) {
    printMenuRow(rowMark(i), deviceRow(devices[i]), selected && selected->udid == devices[i].udid);
  }
  printLine();
  printMenuRow("-", localized("phy_action_clear"));
  printMenuRow("x", localized("menu_back"));
  printLine();
}

DevicePick storePick(const PhysicalDeviceInfo& device) {
  setSelectedPhysicalDevice(device);
  setLastSelectedDeviceKind("physical");
  keepPreferences();
  printSuccess(fmt::format("{} {}", localized("phy_device_set"), displaySafe(deviceDisplayName(device))));
  return DevicePick::picked;
}

DevicePick clearSelection() {
  setSelectedPhysicalDevice({});
  setLastSelectedDeviceKind("simulator");
  keepPreferences();
  printSuccess(localized("phy_device_cleared"));
  return DevicePick::cleared;
}

/// The device as the list has it now, else as it is stored. What was refreshed is stored.
PhysicalDeviceInfo refreshed(PhysicalDeviceInfo device) {
  const Devices devices = listBehindSpinner();
  const auto found = std::ranges::find(devices, device.udid, &PhysicalDeviceInfo::udid);
  if (found == devices.end()) return device;
  setSelectedPhysicalDevice(*found);
  return *found;
}

void printUnreachable(const PhysicalDeviceInfo& device) {
  printWarning(localizedFormat("phy_device_not_reachable_var", displaySafe(deviceDisplayName(device))));
  printInfo(localized(stateHints.at(static_cast<std::size_t>(device.state))));
  printLine();
  printMenuRow("R", localized("phy_retry_connection_check"));
  printMenuRow("C", localized("phy_continue_anyway"));
  printMenuRow("x", localized("menu_back"));
  printLine();
}

/// Retries until the device is connected or the user decides.
bool askWhetherToGoOn(PhysicalDeviceInfo device) {
  for (;;) {
    printUnreachable(device);
    const std::string answer = readLetter();
    if (isLeaving(answer)) return false;
    if (answer == "c") {
      printInfo(localized("phy_continuing_despite_unreachable"));
      return true;
    }
    if (answer != "r") continue;
    device = refreshed(device);
    if (device.state == State::connected) {
      printSuccess(localized("phy_device_connected_now"));
      return true;
    }
    printWarning(localized("phy_device_still_not_reachable"));
  }
}

}  // namespace

DevicePick pickPhysicalDevice(bool clearFirst) {
  printActionHeader(localized("select_physical_device"), localized("select_physical_device_description"), clearFirst);
  const Devices devices = listBehindSpinner();
  if (devices.empty()) {
    printWarning(localized("no_physical_devices_detected"));
    printInfo(localized("phy_hint_connect_device"));
    return DevicePick::none;
  }
  for (;;) {
    printPicker(devices);
    const std::string answer = readChoice();
    if (isLeaving(answer)) return DevicePick::left;
    if (answer == "-") return clearSelection();
    if (const auto index = chosenIndex(answer, devices.size())) return storePick(devices[*index]);
    printInvalidChoice(answer);
  }
}

std::optional<PhysicalDeviceInfo> ensurePhysicalDevice() {
  if (const auto& selected = selectedPhysicalDevice()) return refreshed(*selected);
  printInfo(localized("phy_no_device_selected_opening_picker"));
  if (pickPhysicalDevice(false) == DevicePick::left) setSuppressBackPrompt(true);
  return selectedPhysicalDevice();
}

bool ensureDeviceReachable() {
  const auto& selected = selectedPhysicalDevice();
  if (!selected) {
    printResult(localized("no_physical_device_selected"), ResultStyle::failure);
    printInfo(localized("phy_hint_connect_device"));
    return false;
  }
  const PhysicalDeviceInfo device = refreshed(*selected);
  return device.state == State::connected || askWhetherToGoOn(device);
}

}  // namespace halyard
