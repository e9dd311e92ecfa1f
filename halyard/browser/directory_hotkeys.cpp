#include "halyard/browser/directory_hotkeys.hpp"

#include <filesystem>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text_file.hpp"
#include "halyard/browser/directory_desktop.hpp"
#include "halyard/browser/directory_favorites.hpp"
#include "halyard/browser/directory_hotkey_file.hpp"
#include "halyard/browser/directory_list.hpp"

namespace halyard {

namespace {

constexpr int mostDamagedFiles = 9;

DirectoryViewState& view() { return directoryViewState(); }

/// What a damaged file held can't be written back: it is kept under another name. False where that isn't possible.
bool setDamagedFileAside(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return true;
  if ((status.permissions() & std::filesystem::perms::owner_write) == std::filesystem::perms::none) return false;
  const std::optional<std::string> json = readTextFile(path);
  if (json && readHotkeyFile(*json).isWhole) return true;
  for (int number = 1; number <= mostDamagedFiles; ++number) {
    const std::string aside = fmt::format("{}.damaged-{}", path, number);
    if (std::filesystem::exists(aside, error)) continue;
    std::filesystem::copy_file(path, aside, error);
    return !error;
  }
  return false;
}

}  // namespace

void loadHotkeys() {
  const std::optional<std::string> json = readTextFile(hotkeyFilePath());
  view().hotkeys = json ? readHotkeyFile(*json).slots : std::map<int, HotkeySlot>{};
}

void saveHotkeys() {
  const std::string path = hotkeyFilePath();
  if (setDamagedFileAside(path)) replaceTextFile(path, hotkeyFileText(view().hotkeys));
}

void saveSelectionToHotkey(int slot) {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  if (selected == nullptr) return;
  const std::string path = selected->url;
  view().hotkeys.insert_or_assign(slot, HotkeySlot{slot, path});
  saveHotkeys();
  showToast(localizedFormat("dirview_toast_hotkey_saved", slot), path);
}

void deleteAllHotkeys() {
  view().hotkeys.clear();
  saveHotkeys();
  if (view().contentViewMode != DirectoryContentViewMode::favorites) return;
  // The browser's list takes the place of hits that were found among the favorites.
  view().searchState.reset();
  view().filterState.reset();
  toggleFavorites();
}

void toggleFavorites() {
  if (view().contentViewMode == DirectoryContentViewMode::browser) {
    if (view().hotkeys.empty()) return;
    view().savedBrowserState = view().list;
    return showFavoritesList();
  }
  view().contentViewMode = DirectoryContentViewMode::browser;
  view().isFavoritesListShown = false;
  if (view().savedBrowserState) {
    view().list = std::move(*view().savedBrowserState);
    view().savedBrowserState.reset();
  } else {
    loadDirectory(view().list.currentPath);
  }
}

}  // namespace halyard
