// The menu as a plain value, rebuilt whole whenever the screen is drawn afresh.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace halyard {

struct LightMenuItem {
  std::string label;             ///< as shown; may hold colour sequences
  std::function<void()> action;  ///< does nothing on a separator
  std::optional<int> hotkey;     ///< 1 to 9: starts the row from anywhere in the menu
  bool enabled = true;           ///< false: dimmed and skipped by the arrows
  bool isSeparator = false;

  [[nodiscard]] bool isSelectable() const { return enabled && !isSeparator; }
};

struct LightMenuCategory {
  std::string name;
  std::vector<LightMenuItem> items;
  bool isSeparator = false;
  std::optional<char> groupHotkey;  ///< capital letter that jumps to the group
};

using Menu = std::vector<LightMenuCategory>;

struct MenuPosition {
  int category = 0;
  int item = 0;

  bool operator==(const MenuPosition&) const = default;
};

/// The tree for the active target, the language and the project configuration as they are now.
Menu buildMenu();

/// The first row with the hotkey, whether it is enabled or not.
std::optional<MenuPosition> findHotkey(int digit, const Menu& menu);

/// The first group with the letter.
std::optional<int> findGroup(char letter, const Menu& menu);

/// Index of the group's first selectable row; 0 if it has none.
int firstSelectableItem(const LightMenuCategory& category);

/// Moves `offset` as little as is needed to show `selected` among `visible` of `total` rows.
void syncScroll(int& offset, int selected, int visible, int total);

}  // namespace halyard
