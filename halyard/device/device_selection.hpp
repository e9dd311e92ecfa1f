// The selected physical device: choosing it, bringing its record up to date, making sure that it answers.
#pragma once

#include <optional>

#include "core/physical_device_info.hpp"

namespace halyard {

/// How the picker was left. `none`: there was nothing to pick, which it has said.
enum class DevicePick { picked, cleared, left, none };

/// Shows the devices and stores the one that is picked, or removes the stored one. Doesn't wait at its end.
DevicePick pickPhysicalDevice(bool clearFirst = true);
/// The selected device with fresh values, which are stored; without one the picker is opened first. Nothing when none
/// is selected after that; where the picker was left by "x" the next back prompt doesn't wait.
std::optional<PhysicalDeviceInfo> ensurePhysicalDevice();
/// Whether to go on with the selected device. One that isn't connected is a question to the user, never a refusal: the
/// tool may reach a device that it doesn't list as connected.
bool ensureDeviceReachable();

}  // namespace halyard
