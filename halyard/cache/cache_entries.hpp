// What the cache browser lists, and how one entry is deleted.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "halyard/cache/cache_locations.hpp"

namespace halyard {

struct CacheBrowserEntry {
  std::string label;
  std::string path;                                     ///< whole, without a tilde
  bool deleteContentsOnly = false;                      ///< the folder stays
  std::vector<std::string> extraSizePaths = {};         ///< further folders that count towards the size
  std::optional<std::string> customDeleteCommand = {};  ///< in place of a plain deletion
  std::string description = {};
  std::optional<std::string> sectionTitle = {};  ///< of the first entry of a section
  std::vector<CachePlace> keptLinks = {};        ///< symbolic links that the custom command leaves alone
};

/// All entries in the current language; the project's own build folder is the first.
std::vector<CacheBrowserEntry> cacheBrowserEntries(const std::string& projectFolderName,
                                                   const std::string& projectFolderPath);

/// "0B" where none of the entry's folders is there.
std::string entrySize(const CacheBrowserEntry& entry);
/// Of all entries together; a folder inside another counts once.
std::string entriesSize(const std::vector<CacheBrowserEntry>& entries);

enum class EntryDeletion { deleted, failed, linkKept };
/// Doesn't ask. A plain deletion has failed where something is left; a custom command never fails.
EntryDeletion deleteEntry(const CacheBrowserEntry& entry);
/// Removes one folder with all that it holds; false where it is still there.
bool deleteSubfolder(const std::string& path);

}  // namespace halyard
