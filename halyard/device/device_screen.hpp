// What the actions of the physical devices have in common.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/physical_device_info.hpp"
#include "halyard/device/device_commands.hpp"

namespace halyard {

/// Header with title and description, a selected device that answers or that the user wants to try
/// nevertheless, the work, a wait for a key.
void runDeviceAction(std::string_view titleKey, std::string_view descriptionKey,
                     const std::function<void(const PhysicalDeviceInfo&)>& work);

/// The user left a list of the action's own: its back prompt doesn't wait.
void leaveDeviceAction();

/// The failure block with what the tool said as its detail. Nothing after an abort.
void printDeviceFailure(std::string_view titleKey, const DeviceCommandResult& result, std::string_view fallbackHintKey);

/// Device name and system, safe to be shown.
std::string shownName(const PhysicalDeviceInfo& device);

}  // namespace halyard
