#include "halyard/browser/directory_favorites.hpp"

#include <fmt/format.h>

namespace halyard {

std::vector<DirectoryEntry> favoriteEntries() {
  std::vector<DirectoryEntry> entries;
  for (const auto& [number, slot] : directoryViewState().hotkeys) {
    entries.push_back({fmt::format("[{}] {}", number, slot.path), slot.path, DirectoryEntry::Kind::directory});
  }
  return entries;
}

void showFavoritesList() {
  DirectoryViewState& view = directoryViewState();
  view.contentViewMode = DirectoryContentViewMode::favorites;
  view.isFavoritesListShown = true;
  DirectoryViewListState& list = view.list;
  list.entries = favoriteEntries();
  list.selectedIndex = 0;
  list.scrollOffset = 0;
  if (!list.entries.empty()) list.currentPath = list.entries.front().url;
}

}  // namespace halyard
