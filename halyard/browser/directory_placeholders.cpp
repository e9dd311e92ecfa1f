// Stand in until search, filter and hotkeys are there.
#include "halyard/browser/directory_filter.hpp"
#include "halyard/browser/directory_hotkeys.hpp"
#include "halyard/browser/directory_search.hpp"

namespace halyard {

void openSearchOverlay() {}
void handleSearchOverlayKey(const RawKey&) {}
void drawSearchOverlay() {}
void startSearch() {}
void pollSearch() { directoryViewState().appMode = DirectoryAppMode::normal; }
void drawSearchRunning() {}
void handleSearchResultsKey(const RawKey&) {}
void endSearch() {}
std::vector<DirectoryEntry> matchEntries(const std::vector<DirectoryEntry>& entries, std::string_view) {
  return entries;
}

void openFilterOverlay() {}
void handleFilterOverlayKey(const RawKey&) {}
void drawFilterOverlay() {}
void startFilter() {}
void pollFilter() { directoryViewState().appMode = DirectoryAppMode::normal; }
void drawFilterRunning() {}
void handleFilterResultsKey(const RawKey&) {}
void endFilter() {}

void loadHotkeys() {}
void saveHotkeys() {}
void saveSelectionToHotkey(int) {}
void callUpHotkey(int) {}
void handleHotkeyActionKey(const RawKey&) {}
void drawHotkeyActionOverlay() {}
void deleteAllHotkeys() {}
std::vector<DirectoryEntry> favoriteEntries() { return {}; }
void showFavoritesList() {}
void toggleFavorites() {}

}  // namespace halyard
