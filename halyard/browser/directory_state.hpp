// What the directory browser knows between two keys: the list, the modes, the favorites, a running search or filter.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "halyard/terminal/typed_text.hpp"

namespace halyard {

enum class DirectoryAppMode {
  normal,
  help,
  confirmDeleteHotkeys,
  hotkeyAction,
  searchOverlay,
  searching,
  searchResults,
  filterOverlay,
  filterRunning,
  filterResults
};

enum class DirectoryContentViewMode { browser, favorites };

struct DirectoryEntry {
  enum class Kind { parent, directory, file, xcodeProject };

  std::string name;  ///< as the file system gives it: any bytes but NUL and slash
  std::string url;   ///< absolute path
  Kind kind = Kind::file;

  bool operator==(const DirectoryEntry&) const = default;
};

struct DirectoryViewListState {
  std::string rootPath;     ///< where the root key leads
  std::string currentPath;  ///< absolute, without a slash at its end
  std::vector<DirectoryEntry> entries;
  int selectedIndex = 0;
  int scrollOffset = 0;  ///< first visible entry
};

/// A favorite under a digit.
struct HotkeySlot {
  int slot = 0;
  std::string path;

  bool operator==(const HotkeySlot&) const = default;
};

struct DirectorySearchState {
  std::string inputText;  ///< lower-cased as typed
  TypedBytes typedBytes = {};
  std::string expandedPattern;  ///< the file pattern actually used
  int spinnerFrame = 0;         ///< 0 to 9
  DirectoryViewListState savedListState;
  bool isFinished = false;  ///< its hits are, or were, the list
};

struct DirectoryFilterGroup {
  std::string labelKey;
  std::vector<std::string> extensions;  ///< lower case
  bool isSelected = false;
  bool isRemainingGroup = false;
};

struct DirectoryFilterState {
  std::vector<DirectoryFilterGroup> groups;
  int cursorIndex = 0;
  int spinnerFrame = 0;
  DirectoryViewListState savedListState;
  bool isFinished = false;
};

/// What the common header shows of this view: a toast in place of its links, the clipboard in place of its credit.
struct DirectoryHeaderContent {
  std::string toast;
  std::string toastDetail;
  std::string clipboard;
};

/// What the view needs of the loop that drives it.
struct DirectoryViewHost {
  /// Where the browser opens as long as no working directory is selected; empty: the process's own.
  std::string launchDirectory;
  /// The whole frame as the state is now.
  std::function<void()> drawFrame;
  /// The header alone, over what is on the screen.
  std::function<void(const DirectoryHeaderContent&)> drawHeader;
  /// How a toast waits; empty: it sleeps.
  std::function<void(std::chrono::milliseconds)> pause;
};

/// All of it lives as long as the program.
struct DirectoryViewState {
  bool isPrepared = false;
  DirectoryAppMode appMode = DirectoryAppMode::normal;
  DirectoryAppMode modeBeforeHelp = DirectoryAppMode::normal;
  DirectoryContentViewMode contentViewMode = DirectoryContentViewMode::browser;
  /// True while the list holds the favorites themselves, false after entering a folder from there.
  bool isFavoritesListShown = false;
  DirectoryViewListState list;
  std::optional<DirectoryViewListState> savedBrowserState;  ///< kept while in the favorites
  std::map<int, HotkeySlot> hotkeys;
  std::optional<int> pendingHotkeySlot;
  std::optional<DirectorySearchState> searchState;
  std::optional<DirectoryFilterState> filterState;
  std::string lastCopiedPath;
  DirectoryViewHost host;
};

DirectoryViewState& directoryViewState();

/// The mode to return to from a question: the results that the list shows, else `normal`.
DirectoryAppMode restoredDirectoryMode();

}  // namespace halyard
