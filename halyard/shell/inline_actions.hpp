// The choices that the menu's lower-case letters open.
#pragma once

namespace halyard {

void selectSchemeFromMenu();
void selectTestSchemeFromMenu();
void selectDeviceFromMenu();
void selectConfigurationFromMenu();
void askBundleIDFromMenu();

}  // namespace halyard
