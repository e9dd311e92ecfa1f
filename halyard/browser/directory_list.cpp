#include "halyard/browser/directory_list.hpp"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/browser/directory_desktop.hpp"
#include "halyard/browser/directory_favorites.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

DirectoryViewListState& list() { return view().list; }

std::vector<ListedItem> visibleItems(const std::string& folder) {
  try {
    return AppDependencies::current().fileSystemClient->visibleItems(folder);
  } catch (const std::system_error&) {
    return {};
  }
}

DirectoryEntry::Kind kindOf(const ListedItem& item) {
  if (isXcodeProjectName(item.name)) return DirectoryEntry::Kind::xcodeProject;
  return item.type == FileType::directory ? DirectoryEntry::Kind::directory : DirectoryEntry::Kind::file;
}

/// Among the favorites the folder of every action is the favorite under the selection.
void followFavorite() {
  if (view().contentViewMode != DirectoryContentViewMode::favorites || !view().isFavoritesListShown) return;
  if (const DirectoryEntry* entry = selectedDirectoryEntry()) list().currentPath = entry->url;
}

void selectIndex(int index) {
  list().selectedIndex = std::clamp(index, 0, std::max(static_cast<int>(list().entries.size()) - 1, 0));
  keepSelectionVisible();
  followFavorite();
}

}  // namespace

bool isXcodeProjectName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return false;
  const std::string extension = lowercased(name.substr(dot + 1));
  return extension == "xcodeproj" || extension == "xcworkspace";
}

std::string parentLocation(std::string_view location) {
  const std::size_t slash = location.rfind('/');
  return slash == std::string_view::npos || slash == 0 ? "/" : std::string(location.substr(0, slash));
}

std::string locationInside(std::string_view folder, std::string_view name) {
  std::string location(folder);
  if (!location.ends_with('/')) location += '/';
  return location += name;
}

std::vector<DirectoryEntry> directoryEntries(const std::string& location) {
  std::vector<DirectoryEntry> entries;
  std::vector<DirectoryEntry> rest;
  for (ListedItem& item : visibleItems(location)) {
    const DirectoryEntry::Kind kind = kindOf(item);
    std::string url = locationInside(location, item.name);
    auto& target = kind == DirectoryEntry::Kind::directory ? entries : rest;
    target.push_back({.name = std::move(item.name), .url = std::move(url), .kind = kind});
  }
  sortByName(entries);
  sortByName(rest);
  entries.reserve(entries.size() + rest.size() + 1);
  if (location != "/") {
    entries.insert(entries.begin(), {"..", parentLocation(location), DirectoryEntry::Kind::parent});
  }
  std::move(rest.begin(), rest.end(), std::back_inserter(entries));
  return entries;
}

void loadDirectory(const std::string& location) { list().entries = directoryEntries(location); }

void enterDirectory(std::string location) {
  loadDirectory(location);
  list().currentPath = std::move(location);
  list().selectedIndex = 0;
  list().scrollOffset = 0;
}

const DirectoryEntry* selectedDirectoryEntry() {
  const auto index = static_cast<std::size_t>(list().selectedIndex);
  return index < list().entries.size() ? &list().entries[index] : nullptr;
}

std::string desktopTarget() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  const bool isDirectory = selected != nullptr && selected->kind == DirectoryEntry::Kind::directory;
  return isDirectory ? selected->url : list().currentPath;
}

void keepSelectionVisible() {
  int& scroll = list().scrollOffset;
  scroll = std::max(std::min(scroll, list().selectedIndex), list().selectedIndex - directoryListRows + 1);
  // A list that shrank leaves no empty rows below its end.
  scroll = std::clamp(scroll, 0, std::max(static_cast<int>(list().entries.size()) - directoryListRows, 0));
}

void moveDirectorySelection(int step) { selectIndex(list().selectedIndex + step); }

void selectFirstDirectoryEntry() { selectIndex(0); }

void selectLastDirectoryEntry() { selectIndex(static_cast<int>(list().entries.size()) - 1); }

bool selectLocation(std::string_view location) {
  const auto found = std::ranges::find(list().entries, location, &DirectoryEntry::url);
  const bool isThere = found != list().entries.end();
  if (!isThere) list().scrollOffset = 0;
  selectIndex(isThere ? static_cast<int>(found - list().entries.begin()) : 0);
  return isThere;
}

void openEntry(const DirectoryEntry& entry) {
  switch (entry.kind) {
    case DirectoryEntry::Kind::file:
    case DirectoryEntry::Kind::xcodeProject: openWithApplication(entry.url); break;
    case DirectoryEntry::Kind::directory:
      view().isFavoritesListShown = false;
      enterDirectory(entry.url);
      break;
    case DirectoryEntry::Kind::parent: goUpInDirectories(); break;
  }
}

void openSelectedDirectoryEntry() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  if (selected == nullptr) return;
  const DirectoryEntry entry = *selected;
  openEntry(entry);
}

void goUpInDirectories() {
  if (view().contentViewMode == DirectoryContentViewMode::favorites) {
    if (!view().isFavoritesListShown) showFavoritesList();
    return;
  }
  if (list().currentPath == "/") return;
  const std::string left = list().currentPath;
  list().currentPath = parentLocation(left);
  loadDirectory(list().currentPath);
  selectLocation(left);
}

void goToDirectoryRoot() {
  view().contentViewMode = DirectoryContentViewMode::browser;
  view().isFavoritesListShown = false;
  view().savedBrowserState.reset();
  enterDirectory(list().rootPath);
}

void refreshDirectoryView() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  const std::string location = selected == nullptr ? std::string() : selected->url;
  const bool isFavorites = view().isFavoritesListShown;
  if (isFavorites) {
    list().entries = favoriteEntries();
  } else {
    loadDirectory(list().currentPath);
  }
  selectLocation(location);
  showToast(localized("dirview_toast_refreshed"), isFavorites ? std::string() : list().currentPath);
}

}  // namespace halyard
