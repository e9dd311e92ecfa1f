// What a slot's path can be used for, and the box that asks.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_desktop.hpp"
#include "halyard/browser/directory_hotkeys.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_overlay_rows.hpp"
#include "halyard/terminal/overlay_box.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

bool hasType(const std::string& path, FileType type) {
  try {
    return AppDependencies::current().fileSystemClient->attributesOfItem(path).type == type;
  } catch (const std::system_error&) {
    return false;
  }
}

/// Also a link to one.
bool isFolder(const std::string& path) {
  return hasType(path, FileType::directory) ||
         (hasType(path, FileType::symbolicLink) && hasType(path + "/.", FileType::directory));
}

void openTerminalAt(const std::string& path) { isFolder(path) ? openInTerminal(path) : openWithApplication(path); }

void openFinderAt(const std::string& path) { isFolder(path) ? openInFinder(path) : openWithApplication(path); }

void navigateTo(const std::string& path) {
  view().contentViewMode = DirectoryContentViewMode::browser;
  view().isFavoritesListShown = false;
  view().savedBrowserState.reset();
  if (isFolder(path)) {
    enterDirectory(path);
  } else {
    enterDirectory(parentLocation(path));
    selectLocation(path);
  }
  showToast(localized("dirview_toast_navigated"), path);
}

struct SlotAction {
  std::string_view letters;
  std::string_view labelKey;
  void (*action)(const std::string& path);
};

constexpr auto slotActions = std::to_array<SlotAction>({
    {"tT", "dirview_hotkey_action_terminal", openTerminalAt},
    {"fF", "dirview_hotkey_action_finder", openFinderAt},
    {"dD", "dirview_hotkey_action_navigate", navigateTo},
    {"cC", "dirview_hotkey_action_copy", copyToClipboard},
});

void showEmptySlot(int slot) { showToast(localized("dirview_toast_hotkey_empty"), "[" + std::to_string(slot) + "]"); }

/// Without slashes at its end. A path of the file that isn't absolute is one below the working folder: never an option
/// or an address of a tool.
std::string actionPath(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path.starts_with('/') ? path : "./" + path;
}

}  // namespace

void callUpHotkey(int slot) {
  if (!view().hotkeys.contains(slot)) return showEmptySlot(slot);
  view().pendingHotkeySlot = slot;
  view().appMode = DirectoryAppMode::hotkeyAction;
}

void handleHotkeyActionKey(const RawKey& key) {
  const std::optional<int> slot = std::exchange(view().pendingHotkeySlot, std::nullopt);
  view().appMode = restoredDirectoryMode();
  if (!slot || key.kind != RawKey::Kind::character || key.text.size() != 1) return;
  for (const SlotAction& row : slotActions) {
    if (row.letters.find(key.text) == std::string_view::npos) continue;
    const auto found = view().hotkeys.find(*slot);
    return found == view().hotkeys.end() ? showEmptySlot(*slot) : row.action(actionPath(found->second.path));
  }
}

void drawHotkeyActionOverlay() {
  if (!view().pendingHotkeySlot) return;
  const int slot = *view().pendingHotkeySlot;
  const auto found = view().hotkeys.find(slot);
  std::vector<std::string> rows = {
      "", overlayPathRow(found == view().hotkeys.end() ? std::string_view() : found->second.path), ""};
  for (const SlotAction& row : slotActions) rows.emplace_back(localized(row.labelKey));
  rows.emplace_back();
  drawOverlayBox(localizedFormat("dirview_hotkey_action_title", slot), rows, localized("dirview_overlay_cancel"));
}

}  // namespace halyard
