// The menu actions of the physical devices. Each checks the selected device first, shows its outcome and waits.
#pragma once

namespace halyard {

void showAllDevices();
void installAppOnDevice();
void launchAppOnDevice();
void terminateAppOnDevice();
void uninstallAppFromDevice();
void listInstalledApps();
void showLiveLogOfDevice();

/// No rows of the menu: for those who have a place for them.
void saveScreenshotOfDevice();
void openDeepLinkOnDevice();

}  // namespace halyard
