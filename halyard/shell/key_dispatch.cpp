#include "halyard/shell/key_dispatch.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/string_catalog.hpp"
#include "halyard/browser/directory_view.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/git/git_view.hpp"
#include "halyard/shell/directory_setup.hpp"
#include "halyard/shell/help_table.hpp"
#include "halyard/shell/inline_actions.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {

namespace {

using Kind = RawKey::Kind;

const LightMenuCategory* selectedCategory(const MainLoopState& state) {
  const int index = state.cursor.selectedCategoryIndex;
  return index >= 0 && index < static_cast<int>(state.menu.size()) ? &state.menu[static_cast<std::size_t>(index)]
                                                                   : nullptr;
}

const LightMenuItem* selectedItem(const MainLoopState& state) {
  const LightMenuCategory* category = selectedCategory(state);
  const int index = state.cursor.selectedItemIndex;
  if (category == nullptr || index < 0 || index >= static_cast<int>(category->items.size())) return nullptr;
  return &category->items[static_cast<std::size_t>(index)];
}

/// The next index in this direction, round the end, whose row passes the test; `from` where there is none other.
template <typename Rows, typename Test>
int stepped(const Rows& rows, int from, int direction, Test isSelectable) {
  const int count = static_cast<int>(rows.size());
  for (int step = 1; step <= count; ++step) {
    const int index = ((from + direction * step) % count + count) % count;
    if (isSelectable(rows[static_cast<std::size_t>(index)])) return index;
  }
  return from;
}

void stepCursor(MainLoopState& state, int direction) {
  const LightMenuCategory* category = selectedCategory(state);
  if (category == nullptr) return;
  MenuCursor& cursor = state.cursor;
  if (cursor.focusOnItems) {
    cursor.selectedItemIndex = stepped(category->items, cursor.selectedItemIndex, direction,
                                       [](const LightMenuItem& item) { return item.isSelectable(); });
    return;
  }
  const int next = stepped(state.menu, cursor.selectedCategoryIndex, direction,
                           [](const LightMenuCategory& group) { return !group.isSeparator; });
  if (next == cursor.selectedCategoryIndex) return;
  cursor.selectedCategoryIndex = next;
  cursor.selectedItemIndex = firstSelectableItem(state.menu[static_cast<std::size_t>(next)]);
}

void runRow(MainLoopState& state, const LightMenuItem& item) {
  // The action may rebuild what the row lives in.
  const std::function<void()> action = item.action;
  state.runAction(action);
  state.needsFullRedraw = true;
}

void runSelectedRow(MainLoopState& state) {
  const LightMenuItem* item = selectedItem(state);
  if (item != nullptr && !item->isSeparator) runRow(state, *item);
}

void runDigit(MainLoopState& state, int digit) {
  const auto position = findHotkey(digit, state.menu);
  if (!position) return;
  state.cursor.selectedCategoryIndex = position->category;
  state.cursor.selectedItemIndex = position->item;
  state.cursor.focusOnItems = true;
  setLaunchedByHotkey(true);
  runSelectedRow(state);
  setLaunchedByHotkey(false);
}

void jumpToGroup(MainLoopState& state, char letter) {
  const auto group = findGroup(letter, state.menu);
  if (!group) return;
  state.cursor.selectedCategoryIndex = *group;
  state.cursor.selectedItemIndex = firstSelectableItem(state.menu[static_cast<std::size_t>(*group)]);
  state.cursor.focusOnItems = true;
}

void openHelp(MainLoopState& state) {
  const LightMenuCategory* category = selectedCategory(state);
  if (category == nullptr) return;
  const LightMenuItem* item = state.cursor.focusOnItems ? selectedItem(state) : nullptr;
  const bool hasItem = item != nullptr && !item->isSeparator;
  state.menuHelpEntry =
      helpEntry(category->name, hasItem ? std::optional<std::string_view>(item->label) : std::nullopt);
  state.menuHelpOpen = true;
  state.menuHelpScroll = 0;
}

void showDirectoryView(MainLoopState& state) {
  prepareDirectoryView();
  state.activeView = AppViewMode::directory;
  state.needsFullRedraw = true;
}

void showFreshDirectoryView(MainLoopState& state) {
  prepareDirectoryView();
  resetDirectoryView();
  state.activeView = AppViewMode::directory;
  state.needsFullRedraw = true;
}

/// A letter of the menu that runs an action; the same letters work at the prompts of sub-menus.
struct InlineAction {
  std::string_view letter;
  std::string_view onlyLanguage;
  void (*action)();
};

constexpr auto inlineActions = std::to_array<InlineAction>({
    {"a", "", runDirectorySetup},
    {"w", "en", runDirectorySetup},
    {"s", "", selectSchemeFromMenu},
    {"t", "", selectTestSchemeFromMenu},
    {"d", "", selectDevice},
    {"g", "de", selectDevice},
    {"k", "", selectBuildConfiguration},
    {"c", "en", selectBuildConfiguration},
    {"b", "", askForBundleIdentifier},
    {"l", "", toggleLanguage},
});

constexpr std::string_view groupLetters = "BCDEIKLMNOPRSTVY";

bool runInlineAction(MainLoopState& state, const RawKey& key) {
  for (const InlineAction& row : inlineActions) {
    if (!key.is(row.letter) || (!row.onlyLanguage.empty() && row.onlyLanguage != currentLanguage())) continue;
    state.runAction(row.action);
    state.needsFullRedraw = true;
    return true;
  }
  return false;
}

void handleMenuCharacter(MainLoopState& state, const RawKey& key) {
  if (key.text.size() != 1) return;
  const char letter = key.text.front();
  if (letter == 'Q') {
    state.quit();
  } else if (letter == 'h' || letter == 'H') {
    openHelp(state);
  } else if (letter == 'A') {
    showFreshDirectoryView(state);
  } else if (letter >= '1' && letter <= '9') {
    runDigit(state, letter - '0');
  } else if (groupLetters.find(letter) != std::string_view::npos) {
    jumpToGroup(state, letter);
  } else {
    runInlineAction(state, key);
  }
}

void handleMenuKey(MainLoopState& state, const RawKey& key) {
  switch (key.kind) {
    case Kind::up: stepCursor(state, -1); break;
    case Kind::down: stepCursor(state, 1); break;
    case Kind::left: state.cursor.focusOnItems = false; break;
    case Kind::right: state.cursor.focusOnItems = true; break;
    case Kind::enter: runSelectedRow(state); break;
    case Kind::ctrlC: state.quit(); break;
    case Kind::character: handleMenuCharacter(state, key); break;
    case Kind::escape:
    case Kind::unknown: break;
  }
}

void handleMenuHelpKey(MainLoopState& state, const RawKey& key) {
  if (key.kind == Kind::up) {
    state.menuHelpScroll = std::max(state.menuHelpScroll - 1, 0);
  } else if (key.kind == Kind::down) {
    ++state.menuHelpScroll;
  } else if (key.kind == Kind::enter || key.is("x") || key.is("X")) {
    state.menuHelpOpen = false;
    state.menuHelpScroll = 0;
  }
}

void handleViewSwitchKey(MainLoopState& state, const RawKey& key) {
  if (key.is("1")) {
    state.activeView = AppViewMode::halyard;
  } else if (key.is("2")) {
    showDirectoryView(state);
  } else if (!key.is("x") && !key.is("X") && key.kind != Kind::escape) {
    return;
  }
  state.viewSwitchOverlayOpen = false;
  state.needsFullRedraw = true;
}

bool keepsGlobalKeys(const MainLoopState& state) {
  switch (state.activeView) {
    case AppViewMode::halyard: return state.menuHelpOpen;
    case AppViewMode::git: return !gitViewIsInNormalMode();
    case AppViewMode::directory: break;
  }
  constexpr auto ownModes =
      std::to_array({DirectoryAppMode::help, DirectoryAppMode::confirmDeleteHotkeys, DirectoryAppMode::hotkeyAction,
                     DirectoryAppMode::searchOverlay, DirectoryAppMode::filterOverlay});
  return std::find(ownModes.begin(), ownModes.end(), directoryAppMode()) != ownModes.end();
}

/// The hits of a search or filter are ended by the letter that elsewhere leaves the view.
bool endsDirectoryResults(const MainLoopState& state) {
  const DirectoryAppMode mode = directoryAppMode();
  return state.activeView == AppViewMode::directory &&
         (mode == DirectoryAppMode::searchResults || mode == DirectoryAppMode::filterResults);
}

/// In the directory view a held Space is a key of its own. Its first repeats, which could still be presses, have opened
/// the box.
bool takesHeldSpace(MainLoopState& state, const RawKey& key) {
  if (!key.is(" ") || state.activeView != AppViewMode::directory || keepsGlobalKeys(state)) {
    state.spaceHold.release();
    return false;
  }
  const SpaceHold::Press press = state.spaceHold.press(state.now());
  if (press == SpaceHold::Press::single) return false;
  if (press == SpaceHold::Press::held) {
    state.viewSwitchOverlayOpen = false;
    state.needsFullRedraw = true;
    handleDirectoryKey(key);
    state.spaceHold.resume(state.now());
  }
  return true;
}

bool handleGlobalKey(MainLoopState& state, const RawKey& key) {
  if (keepsGlobalKeys(state)) return false;
  if (key.is(" ")) {
    state.viewSwitchOverlayOpen = true;
    state.needsFullRedraw = true;
  } else if (key.is("X") && !endsDirectoryResults(state)) {
    if (state.activeView == AppViewMode::halyard) {
      jumpToGroup(state, 'X');
    } else {
      state.activeView = AppViewMode::halyard;
      state.needsFullRedraw = true;
    }
  } else if (key.is("W") && state.activeView != AppViewMode::directory) {
    showDirectoryView(state);
  } else {
    return false;
  }
  return true;
}

void handleGitViewKey(MainLoopState& state, const RawKey& key) {
  if (gitViewIsInNormalMode() && (key.is("Q") || key.kind == Kind::ctrlC)) {
    state.quit();
  } else {
    handleGitKey(key);
  }
}

void handleDirectoryViewKey(MainLoopState& state, const RawKey& key) {
  const bool isNormal = directoryAppMode() == DirectoryAppMode::normal;
  if (key.kind == Kind::ctrlC || (isNormal && key.is("Q"))) {
    state.quit();
  } else if (isNormal && key.is("l")) {
    toggleLanguage();
    state.needsFullRedraw = true;
  } else {
    handleDirectoryKey(key);
  }
}

}  // namespace

void dispatchKey(MainLoopState& state, const RawKey& key) {
  state.needsFullRedraw = false;
  if (takesHeldSpace(state, key)) return;
  if (state.viewSwitchOverlayOpen) return handleViewSwitchKey(state, key);
  if (handleGlobalKey(state, key)) return;
  switch (state.activeView) {
    case AppViewMode::git: return handleGitViewKey(state, key);
    case AppViewMode::directory: return handleDirectoryViewKey(state, key);
    case AppViewMode::halyard: break;
  }
  if (state.menuHelpOpen) return handleMenuHelpKey(state, key);
  handleMenuKey(state, key);
}

void clampCursors(const Menu& menu, MenuCursor& cursor) {
  const int groups = static_cast<int>(menu.size());
  cursor.selectedCategoryIndex = std::clamp(cursor.selectedCategoryIndex, 0, std::max(groups - 1, 0));
  if (groups > 0 && menu[static_cast<std::size_t>(cursor.selectedCategoryIndex)].isSeparator) {
    const auto first = std::find_if(menu.begin(), menu.end(), [](const auto& group) { return !group.isSeparator; });
    cursor.selectedCategoryIndex = first == menu.end() ? 0 : static_cast<int>(first - menu.begin());
  }
  int items = 0;
  if (groups > 0) {
    const LightMenuCategory& category = menu[static_cast<std::size_t>(cursor.selectedCategoryIndex)];
    items = static_cast<int>(category.items.size());
    cursor.selectedItemIndex = std::clamp(cursor.selectedItemIndex, 0, std::max(items - 1, 0));
    const bool onSeparator =
        items > 0 && category.items[static_cast<std::size_t>(cursor.selectedItemIndex)].isSeparator;
    if (onSeparator) cursor.selectedItemIndex = firstSelectableItem(category);
  }
  syncScroll(cursor.categoryScrollOffset, cursor.selectedCategoryIndex, std::min(groups, menuRows), groups);
  syncScroll(cursor.itemScrollOffset, cursor.selectedItemIndex, std::min(items, menuRows), items);
}

void installMenuLettersAtPrompts() {
  // Without W and G of the menu: a typed line keeps these for the rows of the sub-menu.
  static constexpr auto shortcuts = std::to_array<ChoiceShortcut>({
      {"a", "", runDirectorySetup},
      {"s", "", selectSchemeFromMenu},
      {"t", "", selectTestSchemeFromMenu},
      {"d", "", selectDevice},
      {"k", "", selectBuildConfiguration},
      {"c", "en", selectBuildConfiguration},
      {"b", "", askForBundleIdentifier},
      {"l", "", toggleLanguage},
  });
  installChoiceShortcuts(shortcuts);
}

}  // namespace halyard
