#include "halyard/device/device_names.hpp"

#include <array>
#include <cstddef>

#include "core/string_catalog.hpp"

namespace halyard {

namespace {

constexpr std::array<std::string_view, 4> stateLabels = {
    "phy_state_connected",
    "phy_state_disconnected",
    "phy_state_paired",
    "phy_state_unknown",
};
static_assert(static_cast<std::size_t>(PhysicalDeviceInfo::State::unknown) + 1 == stateLabels.size());

}  // namespace

std::string osLabel(const PhysicalDeviceInfo& device) {
  if (device.osName.empty() || device.osVersion.empty()) return device.osName + device.osVersion;
  return device.osName + " " + device.osVersion;
}

std::string deviceDisplayName(const PhysicalDeviceInfo& device) {
  const std::string label = osLabel(device);
  return label.empty() ? device.name : device.name + " (" + label + ")";
}

std::string_view deviceStateLabel(PhysicalDeviceInfo::State state) {
  return localized(stateLabels.at(static_cast<std::size_t>(state)));
}

}  // namespace halyard
