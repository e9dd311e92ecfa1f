// The physical devices that this Mac knows, as `xcrun devicectl` tells them.
#pragma once

#include <string_view>
#include <vector>

#include "core/physical_device_info.hpp"

namespace halyard {

/// Asks the tool. Never fails: an answer that can't be read is an empty list. Connected ones first, then by name.
std::vector<PhysicalDeviceInfo> listPhysicalDevices();
/// The same without the disconnected ones: what can be offered as a target.
std::vector<PhysicalDeviceInfo> connectedDevices();
bool hasPhysicalDevices();

/// Reads `list devices --json-output -`. Text may stand before the document. Total: what doesn't fit is left out.
std::vector<PhysicalDeviceInfo> readDeviceList(std::string_view output);

}  // namespace halyard
