#include "halyard/browser/directory_keys.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "halyard/browser/directory_desktop.hpp"
#include "halyard/browser/directory_filter.hpp"
#include "halyard/browser/directory_hotkeys.hpp"
#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_search.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

DirectoryViewState& view() { return directoryViewState(); }

void copySelection() {
  if (const DirectoryEntry* entry = selectedDirectoryEntry()) copyToClipboard(std::string(entry->url));
}

void copyCurrentPath() { copyToClipboard(std::string(view().list.currentPath)); }

void askToDeleteHotkeys() { view().appMode = DirectoryAppMode::confirmDeleteHotkeys; }

void openHelp() {
  view().modeBeforeHelp = view().appMode;
  view().appMode = DirectoryAppMode::help;
}

/// A letter, in either case.
struct LetterAction {
  std::string_view letters;
  void (*action)();
};

constexpr auto letterActions = std::to_array<LetterAction>({
    {"aA", selectFirstDirectoryEntry},
    {"eE", selectLastDirectoryEntry},
    {"rR", goToDirectoryRoot},
    {"yY", refreshDirectoryView},
    {"zZ", copySelection},
    {"fF", [] { openInFinder(desktopTarget()); }},
    {"tT", [] { openInTerminal(desktopTarget()); }},
    {"dD", openFilterOverlay},
    {"sS", openSearchOverlay},
    {"wW", toggleFavorites},
    {"cC", askToDeleteHotkeys},
    {"hH", openHelp},
    {" ", copyCurrentPath},  // only a held Space comes here
});

/// The shifted digits of a German keyboard, from 0 on. The paragraph sign comes as the one scalar that it is.
constexpr auto shiftedDigits = std::to_array<std::string_view>({"=", "!", "\"", "§", "$", "%", "&", "/", "(", ")"});

bool isOneOf(std::string_view text, std::string_view letters) {
  return text.size() == 1 && letters.find(text) != std::string_view::npos;
}

void handleCharacter(std::string_view text) {
  if (isOneOf(text, "0123456789")) return saveSelectionToHotkey(text.front() - '0');
  const auto shifted = std::ranges::find(shiftedDigits, text);
  if (shifted != shiftedDigits.end()) return callUpHotkey(static_cast<int>(shifted - shiftedDigits.begin()));
  const auto row =
      std::ranges::find_if(letterActions, [&](const LetterAction& each) { return isOneOf(text, each.letters); });
  if (row != letterActions.end()) row->action();
}

}  // namespace

void handleNormalDirectoryKey(const RawKey& key) {
  switch (key.kind) {
    case Kind::up: moveDirectorySelection(-1); break;
    case Kind::down: moveDirectorySelection(1); break;
    case Kind::left: goUpInDirectories(); break;
    case Kind::right:
    case Kind::enter: openSelectedDirectoryEntry(); break;
    case Kind::character: handleCharacter(key.text); break;
    case Kind::ctrlC:
    case Kind::escape:
    case Kind::unknown: break;
  }
}

void handleDirectoryHelpKey(const RawKey&) {
  view().appMode = view().modeBeforeHelp;
  view().modeBeforeHelp = DirectoryAppMode::normal;
}

void handleDeleteHotkeysKey(const RawKey& key) {
  const bool isYes = key.kind == Kind::character && isOneOf(key.text, "jJyY");
  const bool isNo = key.kind == Kind::escape || (key.kind == Kind::character && isOneOf(key.text, "nN"));
  if (!isYes && !isNo) return;
  if (isYes) deleteAllHotkeys();
  view().appMode = restoredDirectoryMode();
}

}  // namespace halyard
