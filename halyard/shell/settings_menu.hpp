#pragma once

namespace halyard {

/// Menu action: order of the simulator list, and the reset of the selection.
void showSettingsMenu();

/// Clears scheme, test scheme, test plan, bundle ID, simulator and platform caches, sets configuration and language
/// back to their defaults and saves.
void resetSettings();

}  // namespace halyard
