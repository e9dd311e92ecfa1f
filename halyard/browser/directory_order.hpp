// The order of names in a list.
#pragma once

#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

/// By name, ascending, as the user's locale orders it, whatever the case; equal names by their bytes. May be called on
/// any thread.
void sortByName(std::vector<DirectoryEntry>& entries);

}  // namespace halyard
