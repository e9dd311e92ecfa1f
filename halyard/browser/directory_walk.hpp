// Goes through a folder tree, item by item.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "halyard/browser/directory_state.hpp"

namespace halyard {

/// What becomes of an item: whether it is a hit, and of a directory whether its contents are looked at.
struct WalkVerdict {
  std::optional<DirectoryEntry::Kind> hit = {};
  bool descends = true;
};

/// Judges a directory or a regular file by its name; nothing else is asked about.
using WalkJudge = std::function<WalkVerdict(const char* name, bool isDirectory)>;

/// The hits below the folder, in no order. Hidden items and symbolic links are passed over, and what can't be read is
/// too. Depth and the length of paths have no limit, and few descriptors are open at a time. Once `isCancelled` is set
/// it returns at the next item, with what it has.
std::vector<DirectoryEntry> walkDirectory(const std::string& root, const WalkJudge& judge,
                                          const std::atomic<bool>& isCancelled);

}  // namespace halyard
