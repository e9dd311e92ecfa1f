// What a physical device is called on the screen. The texts are as the device gave them: displaySafe() is the caller's.
#pragma once

#include <string>
#include <string_view>

#include "core/physical_device_info.hpp"

namespace halyard {

/// Name and version of the device's system, as far as they are known: "iOS 18.1".
std::string osLabel(const PhysicalDeviceInfo& device);
/// For headers and messages: "Ada's iPhone (iOS 18.1)".
std::string deviceDisplayName(const PhysicalDeviceInfo& device);
/// "Connected", "Paired", … in the current language.
std::string_view deviceStateLabel(PhysicalDeviceInfo::State state);

}  // namespace halyard
