#include "halyard/browser/directory_results.hpp"

#include <algorithm>
#include <utility>

#include "halyard/browser/directory_favorites.hpp"
#include "halyard/browser/directory_list.hpp"

namespace halyard {

void showWalkResults(std::vector<DirectoryEntry> hits, DirectoryAppMode mode) {
  DirectoryViewState& view = directoryViewState();
  view.list.entries = std::move(hits);
  view.list.selectedIndex = 0;
  view.list.scrollOffset = 0;
  view.appMode = mode;
}

void restoreListBeforeWalk(DirectoryViewListState saved) {
  DirectoryViewState& view = directoryViewState();
  view.list = std::move(saved);
  // A search among the hits of a filter leads back to these.
  view.appMode = restoredDirectoryMode();
  if (view.contentViewMode != DirectoryContentViewMode::favorites || !view.isFavoritesListShown) return;
  view.list.entries = favoriteEntries();
  const int last = std::max(static_cast<int>(view.list.entries.size()) - 1, 0);
  view.list.selectedIndex = std::min(view.list.selectedIndex, last);
  keepSelectionVisible();
}

}  // namespace halyard
