// The keys of the search: what is typed into its box, and what works on its hits.
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "core/text.hpp"
#include "halyard/browser/directory_keys.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_search.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

DirectoryViewState& view() { return directoryViewState(); }

/// The only scalar of a key's text; U_SENTINEL for anything else.
UChar32 scalarOf(std::string_view text) {
  const icu::UnicodeString decoded = icu::UnicodeString::fromUTF8(text);
  return decoded.countChar32() == 1 && isValidUtf8(text) ? decoded.char32At(0) : U_SENTINEL;
}

/// Letters, digits and the characters of file names and patterns.
bool isTyped(UChar32 scalar) {
  constexpr std::string_view others = " .-_*?";
  if (scalar < 0) return false;
  return u_isalpha(scalar) || u_isdigit(scalar) ||
         (scalar < 0x80 && others.find(static_cast<char>(scalar)) != std::string_view::npos);
}

void append(std::string& input, std::string_view character) {
  if (isTyped(scalarOf(character))) input += lowercased(character);
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 1;
}

/// A scalar from 128 to 255 may be a byte of a character: once all of its bytes are there, it replaces what they would
/// have been by themselves.
void typeBeyondAscii(DirectorySearchState& search, std::string_view character, UChar32 scalar) {
  std::string& bytes = search.typedBytes;
  const bool isContinuation = (scalar & 0xC0) == 0x80;
  if (!isContinuation || bytes.empty()) {
    bytes.clear();
    search.lengthBeforeBytes = search.inputText.size();
  }
  bytes += static_cast<char>(scalar);
  append(search.inputText, character);
  const std::size_t length = sequenceLength(static_cast<unsigned char>(bytes.front()));
  if (bytes.size() < length) return;
  if (length > 1 && isValidUtf8(bytes)) {
    search.inputText.resize(search.lengthBeforeBytes);
    append(search.inputText, bytes);
  }
  bytes.clear();
}

void type(DirectorySearchState& search, std::string_view character) {
  const UChar32 scalar = scalarOf(character);
  if (scalar >= 0x80 && scalar <= 0xFF) return typeBeyondAscii(search, character, scalar);
  search.typedBytes.clear();
  if (scalar == 0x7F || scalar == 0x08) return search.inputText.resize(lastGraphemeStart(search.inputText));
  append(search.inputText, character);
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
  if (key.kind == Kind::character) return type(*view().searchState, key.text);
  view().searchState->typedBytes.clear();
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
