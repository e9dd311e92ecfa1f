// What search and filter share: their hits take the place of the list, and give it back at the end.
#pragma once

#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

/// The hits become the list, from its first row.
void showWalkResults(std::vector<DirectoryEntry> hits, DirectoryAppMode mode);
/// The list as it was before, and its mode. Favorites may have changed meanwhile and are read anew.
void restoreListBeforeWalk(DirectoryViewListState saved);

}  // namespace halyard
