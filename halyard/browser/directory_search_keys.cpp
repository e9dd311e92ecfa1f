// The keys of the search: what is typed into its box, and what works on its hits.
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "core/text.hpp"
#include "halyard/browser/directory_keys.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_search.hpp"
#include "halyard/terminal/typed_text.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

DirectoryViewState& view() { return directoryViewState(); }

/// Letters, digits and the characters of file names and patterns.
std::string typedInSearch(std::string_view character) {
  return isLetterDigitOr(character, " .-_*?") ? lowercased(character) : std::string();
}

/// Shows what the search text lets through of a folder, with the entry of this location selected.
void showMatchesOf(const std::string& folder, std::string_view location) {
  DirectoryViewListState& list = view().list;
  list.entries = matchEntries(directoryEntries(folder), view().searchState->inputText);
  list.currentPath = folder;
  selectLocation(location);
}

void goUpInResults() {
  const std::string left = view().list.currentPath;
  if (left != "/") showMatchesOf(parentLocation(left), left);
}

void openResult() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  if (selected == nullptr) return;
  const DirectoryEntry entry = *selected;
  switch (entry.kind) {
    case DirectoryEntry::Kind::parent: return goUpInResults();
    case DirectoryEntry::Kind::directory: return showMatchesOf(entry.url, {});
    case DirectoryEntry::Kind::file:
    case DirectoryEntry::Kind::xcodeProject: return openEntry(entry);
  }
}

void goToFolderOfResult() {
  const DirectoryEntry* selected = selectedDirectoryEntry();
  if (selected == nullptr) return;
  const std::string location = selected->url;
  endSearch();
  view().filterState.reset();
  view().appMode = DirectoryAppMode::normal;
  view().contentViewMode = DirectoryContentViewMode::browser;
  view().isFavoritesListShown = false;
  enterDirectory(parentLocation(location));
  selectLocation(location);
}

bool isOneOf(const RawKey& key, std::string_view letters) {
  return key.kind == Kind::character && key.text.size() == 1 && letters.find(key.text) != std::string_view::npos;
}

}  // namespace

void handleSearchOverlayKey(const RawKey& key) {
  if (!view().searchState) return;
  if (key.kind == Kind::character) {
    DirectorySearchState& search = *view().searchState;
    return typeCharacter(search.inputText, search.typedBytes, key.text, typedInSearch);
  }
  view().searchState->typedBytes = {};
  if (key.kind == Kind::enter) {
    if (!trimmedBlanks(view().searchState->inputText).empty()) startSearch();
  } else if (key.kind == Kind::escape) {
    view().searchState.reset();
    view().appMode = restoredDirectoryMode();
  }
}

void handleSearchResultsKey(const RawKey& key) {
  if (!view().searchState || key.kind == Kind::escape || isOneOf(key, "xX")) return endSearch();
  if (key.kind == Kind::left) return goUpInResults();
  if (key.kind == Kind::right || key.kind == Kind::enter) return openResult();
  if (isOneOf(key, "dD")) return goToFolderOfResult();
  if (!isOneOf(key, "rRyYzZsSwW")) handleNormalDirectoryKey(key);
}

}  // namespace halyard
