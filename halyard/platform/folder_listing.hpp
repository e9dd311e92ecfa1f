// Lists a folder by what its own listing says: no item is asked where the listing knows its type.
#pragma once

#include <string>
#include <vector>

#include "core/file_system_providing.hpp"

namespace halyard {

/// The items that the system's file windows show, in no order. The path may be longer than the system takes in one
/// piece. Throws std::system_error.
std::vector<ListedItem> visibleFolderItems(const std::string& path);

/// Whether file windows leave the item out: by a leading dot, or by a mark that some systems keep. `folder` is an open
/// descriptor.
bool isHiddenItem(int folder, const char* name);

/// Opens a folder for reading, also by a path longer than PATH_MAX. -1 and errno where that fails.
int openFolder(const std::string& path);

}  // namespace halyard
