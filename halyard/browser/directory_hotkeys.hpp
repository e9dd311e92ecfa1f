// Ten favorites under the digits, kept in a file of the home folder, and the list that they form.
#pragma once

#include "halyard/terminal/keys.hpp"

namespace halyard {

/// From the file into the view's state. A missing or damaged file gives none.
void loadHotkeys();
void saveHotkeys();

/// The selected entry into the slot, 0 to 9.
void saveSelectionToHotkey(int slot);
/// Asks what to do with the slot's path.
void callUpHotkey(int slot);
void handleHotkeyActionKey(const RawKey& key);
void drawHotkeyActionOverlay();
/// All of them, in the file too; from the favorites the view returns to the browser.
void deleteAllHotkeys();

/// Browser to favorites, where there are any, and back.
void toggleFavorites();

}  // namespace halyard
