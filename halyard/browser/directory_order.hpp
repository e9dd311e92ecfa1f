// The order of names in a list.
#pragma once

#include <functional>
#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

/// By name, ascending, as the user's locale orders it, whatever the case; equal names by their bytes. May be called on
/// any thread. Once `isCancelled` says so it returns soon, with the entries as they were.
void sortByName(std::vector<DirectoryEntry>& entries, const std::function<bool()>& isCancelled = {});

}  // namespace halyard
