// The list that the hotkeys form.
#pragma once

#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

/// One entry per slot, in ascending order.
std::vector<DirectoryEntry> favoriteEntries();
/// The favorites become the list, the first selected.
void showFavoritesList();

}  // namespace halyard
