// Choosing what an action works on: a file to install, or an app on the device.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "core/physical_device_info.hpp"

namespace halyard {

/// Offers the installable files of this Mac, and the file browser. Nothing when left.
std::optional<std::string> pickAppFile();

/// Offers the stored bundle identifier, then the apps of the device. The identifier, or nothing when left or when there
/// is none.
std::optional<std::string> pickInstalledApp(const PhysicalDeviceInfo& device);

/// "just now", "3 hours ago", "2 days ago"; empty for a date that isn't known.
std::string fileAgeText(std::chrono::system_clock::time_point date, std::chrono::system_clock::time_point now);

}  // namespace halyard
