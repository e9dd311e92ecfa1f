#include "halyard/cache/cache_locations.hpp"

#include <system_error>

#include "core/app_dependencies.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

std::string expandedTilde(std::string_view path) {
  if (path != "~" && !path.starts_with("~/")) return std::string(path);
  return AppDependencies::current().fileSystemClient->homeDirectoryPath() + std::string(path.substr(1));
}

std::string tildePath(const std::string& path) {
  const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
  return path.starts_with(home + "/") ? "~" + path.substr(home.size()) : path;
}

std::string cachePath(CachePlace place) { return expandedTilde(cacheLocation(place).path); }

std::string deletionCommand(CachePlace place) {
  const CacheLocation& location = cacheLocation(place);
  switch (location.deletion) {
    case CacheDeletion::folder: return "rm -rf " + std::string(location.path);
    case CacheDeletion::quotedFolder: return "rm -rf " + shellQuote(cachePath(place));
    case CacheDeletion::command: return std::string(location.command);
    case CacheDeletion::contents: break;
  }
  return contentsCommand(std::span(&location.place, 1));
}

std::string contentsCommand(std::span<const CachePlace> places) {
  std::string command;
  for (const CachePlace place : places) {
    if (isSymbolicLink(cachePath(place))) continue;
    command.append("rm -rf ").append(cacheLocation(place).path).append("/* 2>/dev/null; ");
  }
  return command + "true";
}

std::vector<CachePlace> linkedPlaces(std::span<const CachePlace> places) {
  std::vector<CachePlace> linked;
  for (const CachePlace place : places) {
    if (isSymbolicLink(cachePath(place))) linked.push_back(place);
  }
  return linked;
}

bool isSymbolicLink(const std::string& path) {
  try {
    return AppDependencies::current().fileSystemClient->attributesOfItem(path).type == FileType::symbolicLink;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace halyard
