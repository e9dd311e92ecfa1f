// The subfolders of a place with their sizes, to be deleted one by one.
#pragma once

#include <string>

#include "halyard/cache/cache_entries.hpp"

namespace halyard {

/// The second level of the cache browser: the entry's subfolders, and the entry as a whole. True where something was
/// deleted.
bool browseSubdirectories(const CacheBrowserEntry& entry);

/// Menu action: the subfolders of DerivedData.
void deleteDerivedDataSelective();

/// Tells how the deletion of an entry went.
void printEntryDeletion(const CacheBrowserEntry& entry, EntryDeletion outcome);

}  // namespace halyard
