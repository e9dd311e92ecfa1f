#include "halyard/cache/subfolders.hpp"

#include <algorithm>
#include <system_error>
#include <tuple>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "halyard/cache/cache_sizes.hpp"

namespace halyard {

namespace {

/// Of the item itself: false for a symbolic link, and for what has gone meanwhile.
bool isFolder(const std::string& path) {
  try {
    return AppDependencies::current().fileSystemClient->attributesOfItem(path).type == FileType::directory;
  } catch (const std::system_error&) {
    return false;
  }
}

bool comesFirst(const Subfolder& one, const Subfolder& other) {
  return std::tuple(-bytesOfSize(one.size), std::string_view(one.name)) <
         std::tuple(-bytesOfSize(other.size), std::string_view(other.name));
}

}  // namespace

std::vector<std::string> subfolderNames(const std::string& folder) {
  if (!isFolder(folder)) return {};
  std::vector<std::string> names;
  try {
    names = AppDependencies::current().fileSystemClient->contentsOfDirectory(folder);
  } catch (const std::system_error&) {
    return {};
  }
  std::erase_if(names, [&](const std::string& name) { return !isFolder(folder + "/" + name); });
  return names;
}

std::vector<Subfolder> measuredSubfolders(const std::string& folder,
                                          const std::function<void(std::string_view)>& measuring) {
  std::vector<Subfolder> subfolders;
  for (const std::string& name : subfolderNames(folder)) {
    if (operationAborted()) break;
    measuring(name);
    subfolders.push_back({.name = name, .size = pathSize(folder + "/" + name)});
  }
  std::ranges::sort(subfolders, comesFirst);
  return subfolders;
}

}  // namespace halyard
