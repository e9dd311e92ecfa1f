// The browser's frame: 29 lines below the compact header.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

std::string directoryFrame(const DirectoryViewState& view);

/// A name as the list shows it: folders in brackets, the parent as "[...]".
std::string displayName(const DirectoryEntry& entry);

/// Whether the scroll bar's thumb stands on a row of a list of `count` entries, of which `offset` is the first shown.
bool isOnScrollThumb(int row, int offset, int count);

/// The lines of the help box: one per key, and how to close it.
std::vector<std::string> directoryHelpLines();

}  // namespace halyard
