#pragma once

#include <string>

#include "halyard/shell/menu_model.hpp"

namespace halyard {

inline constexpr int menuRows = 16;
inline constexpr int menuLeftWidth = 18;
inline constexpr int menuRightWidth = 64;

/// The cursors of the menu.
struct MenuCursor {
  int category = 0;
  int item = 0;
  bool focusOnItems = false;
  int categoryScroll = 0;
  int itemScroll = 0;
};

/// Both panes and the strip of digits, 19 lines, to stand below a header whose lower border splits at column 18.
std::string menuFrame(const Menu& menu, const MenuCursor& cursor, bool isDark);

}  // namespace halyard
