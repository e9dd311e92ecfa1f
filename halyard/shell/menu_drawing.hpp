#pragma once

#include <string>

#include "halyard/shell/menu_model.hpp"

namespace halyard {

inline constexpr int menuRows = 16;
inline constexpr int menuLeftWidth = 18;
inline constexpr int menuRightWidth = 64;

/// The cursors of the menu.
struct MenuCursor {
  int selectedCategoryIndex = 0;
  int selectedItemIndex = 0;
  bool focusOnItems = false;     ///< which pane has the focus: false left, true right
  int categoryScrollOffset = 0;  ///< first visible row of the left pane
  int itemScrollOffset = 0;
};

/// Both panes and the strip of digits, 19 lines, to stand below a header whose lower border splits at column 18.
std::string menuFrame(const Menu& categories, const MenuCursor& cursor, bool isDark);
/// The same printed, in the look that the user's global defaults ask for.
void drawMenu(const Menu& categories, const MenuCursor& cursor);

}  // namespace halyard
