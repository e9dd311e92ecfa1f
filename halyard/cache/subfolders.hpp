#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct Subfolder {
  std::string name;
  std::string size;

  bool operator==(const Subfolder&) const = default;
};

/// Names of the folders in a folder; none where it can't be read. Symbolic links are left out, and a folder that is
/// one has none: what they lead to belongs to somebody else.
std::vector<std::string> subfolderNames(const std::string& folder);

/// The subfolders with their sizes, the largest first and by name among equals. `measuring` is told each name.
std::vector<Subfolder> measuredSubfolders(const std::string& folder,
                                          const std::function<void(std::string_view)>& measuring);

}  // namespace halyard
