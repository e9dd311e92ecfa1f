#include "halyard/shell/menu_model.hpp"

#include <algorithm>

namespace halyard {

std::optional<MenuPosition> findHotkey(int digit, const Menu& menu) {
  for (std::size_t category = 0; category < menu.size(); ++category) {
    const auto& items = menu[category].items;
    const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.hotkey == digit; });
    if (found != items.end()) return MenuPosition{static_cast<int>(category), static_cast<int>(found - items.begin())};
  }
  return std::nullopt;
}

std::optional<int> findGroup(char letter, const Menu& menu) {
  const auto found = std::find_if(menu.begin(), menu.end(), [&](const LightMenuCategory& category) {
    return !category.isSeparator && category.groupHotkey == letter;
  });
  if (found == menu.end()) return std::nullopt;
  return static_cast<int>(found - menu.begin());
}

int firstSelectableItem(const LightMenuCategory& category) {
  const auto found = std::find_if(category.items.begin(), category.items.end(),
                                  [](const LightMenuItem& item) { return item.isSelectable(); });
  return found == category.items.end() ? 0 : static_cast<int>(found - category.items.begin());
}

void syncScroll(int& offset, int selected, int visible, int total) {
  offset = std::min(selected, offset);
  if (selected >= offset + visible) offset = selected - visible + 1;
  offset = std::clamp(offset, 0, std::max(total - visible, 0));
}

}  // namespace halyard
