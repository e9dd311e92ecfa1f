#include "core/file_system_providing.hpp"

namespace halyard {

std::vector<ListedItem> FileSystemProviding::visibleItems(const std::string& path) const {
  std::vector<ListedItem> items;
  for (std::string& name : contentsOfDirectory(path)) {
    if (name.starts_with('.')) continue;
    FileType type = FileType::other;
    try {
      type = attributesOfItem((path.ends_with('/') ? path : path + "/") + name).type;
    } catch (const std::system_error&) {
      // Listed all the same: it is there, or was a moment ago.
    }
    items.push_back({std::move(name), type});
  }
  return items;
}

}  // namespace halyard
