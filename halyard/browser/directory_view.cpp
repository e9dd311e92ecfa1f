#include "halyard/browser/directory_view.hpp"

#include <filesystem>
#include <utility>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_filter.hpp"
#include "halyard/browser/directory_frame.hpp"
#include "halyard/browser/directory_hotkeys.hpp"
#include "halyard/browser/directory_keys.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_search.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/overlay_box.hpp"

namespace halyard {

namespace {

DirectoryViewState& view() { return directoryViewState(); }

std::string processDirectory() {
  std::error_code failure;
  const std::string path = std::filesystem::current_path(failure).string();
  return failure ? view().host.launchDirectory : path;
}

/// Absolute, without "." and "..", and without a slash at its end.
std::string normalized(const std::string& path) {
  std::filesystem::path normal(path);
  if (normal.is_relative()) normal = std::filesystem::path(processDirectory()) / normal;
  std::string text = normal.lexically_normal().string();
  while (text.size() > 1 && text.ends_with('/')) text.pop_back();
  return text.starts_with('/') ? text : "/";
}

void openAt(const std::string& folder) {
  view().list = {};
  view().list.rootPath = normalized(folder);
  enterDirectory(view().list.rootPath);
}

void drawHelpOverlay() { drawOverlayBox(localized("dirview_help_title"), directoryHelpLines(), {}, {}, true); }

void drawDeleteHotkeysOverlay() {
  drawOverlayBox({}, {"", std::string(localized("dirview_confirm_delete_hotkeys")), "",
                      std::string(localized("dirview_confirm_yes_no")), ""});
}

void noKey(const RawKey&) {}

void noOverlay() {}

struct ModeOperations {
  void (*handleKey)(const RawKey&) = noKey;
  void (*drawOverlay)() = noOverlay;
};

ModeOperations operationsOf(DirectoryAppMode mode) {
  switch (mode) {
    case DirectoryAppMode::normal: return {handleNormalDirectoryKey, noOverlay};
    case DirectoryAppMode::help: return {handleDirectoryHelpKey, drawHelpOverlay};
    case DirectoryAppMode::confirmDeleteHotkeys: return {handleDeleteHotkeysKey, drawDeleteHotkeysOverlay};
    case DirectoryAppMode::hotkeyAction: return {handleHotkeyActionKey, drawHotkeyActionOverlay};
    case DirectoryAppMode::searchOverlay: return {handleSearchOverlayKey, drawSearchOverlay};
    case DirectoryAppMode::searching: return {noKey, drawSearchRunning};
    case DirectoryAppMode::searchResults: return {handleSearchResultsKey, noOverlay};
    case DirectoryAppMode::filterOverlay: return {handleFilterOverlayKey, drawFilterOverlay};
    case DirectoryAppMode::filterRunning: return {noKey, drawFilterRunning};
    case DirectoryAppMode::filterResults: return {handleFilterResultsKey, noOverlay};
  }
  return {};
}

}  // namespace

DirectoryAppMode directoryAppMode() { return view().appMode; }

void installDirectoryViewHost(DirectoryViewHost host) { view().host = std::move(host); }

void prepareDirectoryView() {
  if (view().isPrepared) return;
  view().isPrepared = true;
  loadHotkeys();
  const std::string& launch = view().host.launchDirectory;
  const std::string fallback = launch.empty() ? processDirectory() : launch;
  openAt(selectedWorkingDirectory().empty() ? fallback : selectedWorkingDirectory());
}

void resetDirectoryView() {
  view().searchState.reset();
  view().filterState.reset();
  view().pendingHotkeySlot.reset();
  view().savedBrowserState.reset();
  view().appMode = DirectoryAppMode::normal;
  view().modeBeforeHelp = DirectoryAppMode::normal;
  view().contentViewMode = DirectoryContentViewMode::browser;
  view().isFavoritesListShown = false;
  openAt(processDirectory());
}

DirectoryHeaderContent directoryHeaderContent() {
  return {.toast = {}, .toastDetail = {}, .clipboard = view().lastCopiedPath};
}

void drawDirectoryView() { print(directoryFrame(view())); }

void drawDirectoryOverlay() { operationsOf(view().appMode).drawOverlay(); }

void handleDirectoryKey(const RawKey& key) { operationsOf(view().appMode).handleKey(key); }

void runDirectorySearchStep() { pollSearch(); }

void runDirectoryFilterStep() { pollFilter(); }

}  // namespace halyard
