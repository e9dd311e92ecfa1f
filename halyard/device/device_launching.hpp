// What follows a build for a physical device.
#pragma once

#include <string>

namespace halyard {

/// Installs the built app on the selected device and launches it. Shows each failure as a block and says whether both
/// went well; doesn't wait.
bool installAndLaunchOnDevice(const std::string& appPath, const std::string& bundleID);
/// The second half: launches an app that is on the device already.
bool launchInstalledAppOnDevice(const std::string& bundleID);

}  // namespace halyard
