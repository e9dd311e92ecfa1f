#include "halyard/device/device_list.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/device/devicectl_json.hpp"

namespace halyard {

namespace {

using State = PhysicalDeviceInfo::State;

constexpr const char* listCommand = "xcrun devicectl list devices --json-output - 2>/dev/null";

struct PlatformName {
  std::string_view platform;  ///< in lower case
  std::string_view shown;
};

constexpr auto platformNames = std::to_array<PlatformName>({
    {"ios", "iOS"},
    {"ipados", "iPadOS"},
    {"watchos", "watchOS"},
    {"tvos", "tvOS"},
    {"visionos", "visionOS"},
});

std::string shownPlatform(const std::string& platform) {
  const auto* const found = std::ranges::find(platformNames, lowercased(platform), &PlatformName::platform);
  return found == platformNames.end() ? platform : std::string(found->shown);
}

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// A known device that isn't attached has a disconnected tunnel and is paired: it counts as paired.
State stateOf(const JsonRecord& connection) {
  const std::string tunnel = lowercased(firstText(connection, {"tunnelState"}));
  if (contains(tunnel, "connected") && !contains(tunnel, "disconnected")) return State::connected;
  if (lowercased(firstText(connection, {"pairingState"})) == "paired") return State::paired;
  return tunnel == "disconnected" ? State::disconnected : State::unknown;
}

std::optional<PhysicalDeviceInfo> deviceOf(const simdjson::dom::object& record) {
  const JsonRecord device = childRecord(record, "deviceProperties");
  const JsonRecord hardware = childRecord(record, "hardwareProperties");
  PhysicalDeviceInfo info;
  info.udid = firstText(hardware, {"udid"});
  if (info.udid.empty()) info.udid = firstText(record, {"identifier"});
  if (info.udid.empty()) return std::nullopt;
  info.name = firstText(device, {"name"});
  if (info.name.empty()) info.name = firstText(hardware, {"deviceType"});
  if (info.name.empty()) info.name = "Unknown";
  info.productType = firstText(hardware, {"productType"});
  info.osVersion = firstText(device, {"osVersionNumber", "osVersion"});
  info.osName = shownPlatform(firstText(hardware, {"platform"}));
  info.state = stateOf(childRecord(record, "connectionProperties"));
  return info;
}

void sortForDisplay(std::vector<PhysicalDeviceInfo>& devices) {
  std::ranges::stable_sort(devices, {}, [](const PhysicalDeviceInfo& device) {
    return std::pair(device.state != State::connected, caseFolded(device.name));
  });
}

}  // namespace

std::vector<PhysicalDeviceInfo> readDeviceList(std::string_view output) {
  std::vector<PhysicalDeviceInfo> devices;
  const DevicectlAnswer answer(output);
  for (const simdjson::dom::object& record : answer.records({"devices"})) {
    if (auto device = deviceOf(record)) devices.push_back(std::move(*device));
  }
  sortForDisplay(devices);
  return devices;
}

std::vector<PhysicalDeviceInfo> listPhysicalDevices() { return readDeviceList(run(listCommand)); }

std::vector<PhysicalDeviceInfo> connectedDevices() {
  std::vector<PhysicalDeviceInfo> devices = listPhysicalDevices();
  std::erase_if(devices, [](const PhysicalDeviceInfo& device) { return device.state == State::disconnected; });
  return devices;
}

bool hasPhysicalDevices() { return !connectedDevices().empty(); }

}  // namespace halyard
