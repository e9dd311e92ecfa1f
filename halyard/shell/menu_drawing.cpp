#include "halyard/shell/menu_drawing.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/platform/user_defaults.hpp"
#include "halyard/shell/hotkey_mark.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct StripCell {
  std::string_view text;
  int width;
};

constexpr auto stripCells = std::to_array<StripCell>({
    {"1:Clear", 7},
    {"2:Reset", 7},
    {"3:Build&Run", 11},
    {"4:Clear&Run", 11},
    {"5:Xcode▼", 8},
    {"6:Xcode▲", 8},
    {"7:Unit", 6},
    {"8:CITests", 9},
    {"9:Update", 8},
});

constexpr int stripWidth = [] {
  int width = static_cast<int>(stripCells.size()) - 1;
  for (const StripCell& cell : stripCells) width += cell.width;
  return width;
}();
static_assert(stripWidth == Layout::frameWidth);
static_assert(menuLeftWidth + 1 + menuRightWidth == Layout::frameWidth);

struct Theme {
  std::string active;
  std::string inactive;
  std::string_view activeForeground;
};

Theme theme(bool isDark) {
  const std::string_view background = isDark ? Color::bgWhite : Color::bgBlack;
  const std::string_view foreground = isDark ? Color::fgBlack : Color::fgWhite;
  return {.active = fmt::format("{}{}{}", background, foreground, Color::bold),
          .inactive = fmt::format("{}{}", Color::bgYellow, Color::fgBlack),
          .activeForeground = foreground};
}

std::string framed(std::string_view character) {
  return fmt::format("{}{}{}", Color::boldBlue, character, Color::reset);
}

std::string separatorCell(int width) {
  return fmt::format("{} {} {}", Color::gray, repeated("─", width - 2), Color::reset);
}

/// How many rows lie below the pane, when its last line is free to say so.
int hiddenBelow(int line, int scroll, int count, int selected) {
  if (line != menuRows - 1 || scroll + menuRows >= count || selected == scroll + line) return 0;
  return count - scroll - menuRows;
}

std::string markedGroupName(const LightMenuCategory& group, bool isSelected, bool focusOnItems, const Theme& look) {
  if (!group.groupHotkey) return group.name;
  std::string_view letter = Color::boldBlue;
  std::string_view resume = Color::defaultForeground;
  if (isSelected) {
    letter = focusOnItems ? Color::boldBlue : Color::lightGray;
    resume = focusOnItems ? Color::fgBlack : look.activeForeground;
  }
  return markedHotkey(group.name, *group.groupHotkey, letter, resume);
}

std::string leftCell(const Menu& menu, const MenuCursor& cursor, int line, const Theme& look) {
  const int count = static_cast<int>(menu.size());
  if (const int hidden = hiddenBelow(line, cursor.categoryScrollOffset, count, cursor.selectedCategoryIndex);
      hidden > 0) {
    return fmt::format("{} {}{}", Color::dim, padVisible(fmt::format("▾ {}", hidden), menuLeftWidth - 1), Color::reset);
  }
  const int index = cursor.categoryScrollOffset + line;
  if (index >= count) return std::string(menuLeftWidth, ' ');
  const LightMenuCategory& group = menu[static_cast<std::size_t>(index)];
  if (group.isSeparator) return separatorCell(menuLeftWidth);
  const bool isSelected = index == cursor.selectedCategoryIndex;
  std::string highlight;
  if (isSelected) highlight = cursor.focusOnItems ? look.inactive : look.active;
  const std::string name = markedGroupName(group, isSelected, cursor.focusOnItems, look);
  return fmt::format("{} {}{}", highlight, padVisible(name, menuLeftWidth - 1), Color::reset);
}

/// A label that would touch the frame is cut; its colours go with what is cut off them.
std::string fittedLabel(const std::string& label) {
  if (visibleWidth(label) < menuRightWidth - 1) return label;
  const std::string plain = stripAnsi(label);
  return plain.substr(0, graphemePrefix(plain, menuRightWidth - 3)) + "…";
}

std::string itemCell(const LightMenuItem& item, bool isSelected, bool hasFocus, const Theme& look) {
  if (item.isSeparator) return separatorCell(menuRightWidth);
  std::string label = fittedLabel(item.label);
  std::string style;
  if (isSelected && hasFocus) {
    style = look.active;
    replaceAll(label, Color::boldBlue, Color::lightGray);
  } else if (isSelected) {
    style = look.inactive;
  } else if (!item.enabled) {
    style = Color::dim;
  }
  return fmt::format("{}{}{}", style, padVisible(" " + label, menuRightWidth), Color::reset);
}

std::string rightCell(const LightMenuCategory* group, const MenuCursor& cursor, int line, const Theme& look) {
  const int count = group == nullptr ? 0 : static_cast<int>(group->items.size());
  if (const int hidden = hiddenBelow(line, cursor.itemScrollOffset, count, cursor.selectedItemIndex); hidden > 0) {
    const std::string mark = padVisible(fmt::format(" ▾ {} weitere", hidden), menuRightWidth);
    return fmt::format("{}{}{}", Color::dim, mark, Color::reset);
  }
  const int index = cursor.itemScrollOffset + line;
  const bool isSelected = index == cursor.selectedItemIndex;
  if (index >= count) {
    std::string style;
    if (isSelected) style = cursor.focusOnItems ? look.active : look.inactive;
    return fmt::format("{}{}{}", style, std::string(menuRightWidth, ' '), style.empty() ? "" : Color::reset);
  }
  return itemCell(group->items[static_cast<std::size_t>(index)], isSelected, cursor.focusOnItems, look);
}

/// The line between panes and strip: the panes' divider ends in it and the strip's dividers begin in it.
std::string stripTop() {
  std::array<bool, Layout::frameWidth> beginsCell{};
  std::size_t column = 0;
  for (const StripCell& cell : stripCells) {
    column += static_cast<std::size_t>(cell.width);
    if (column < beginsCell.size()) beginsCell[column] = true;
    ++column;
  }
  std::string line = "├";
  for (std::size_t i = 0; i < beginsCell.size(); ++i) {
    const bool endsPanes = i == static_cast<std::size_t>(menuLeftWidth);
    line += endsPanes ? (beginsCell[i] ? "┼" : "┴") : (beginsCell[i] ? "┬" : "─");
  }
  return framed(line + "┤");
}

std::string stripLine(const Menu& menu) {
  std::string line = framed("│");
  int digit = 1;
  for (const StripCell& cell : stripCells) {
    const std::string padded = padVisible(std::string(cell.text), cell.width);
    if (digit > 1) line += framed("│");
    if (findHotkey(digit, menu)) {
      line +=
          fmt::format("{}{}{}{}{}", Color::bold, Color::boldBlue, padded.substr(0, 1), Color::reset, padded.substr(1));
    } else {
      line += fmt::format("{}{}{}", Color::dim, padded, Color::reset);
    }
    ++digit;
  }
  return line + framed("│");
}

std::string stripBottom() {
  std::string line = "└";
  for (const StripCell& cell : stripCells) {
    if (&cell != stripCells.data()) line += "┴";
    line += repeated("─", cell.width);
  }
  return framed(line + "┘");
}

}  // namespace

std::string menuFrame(const Menu& menu, const MenuCursor& cursor, bool isDark) {
  const Theme look = theme(isDark);
  const bool hasGroup =
      cursor.selectedCategoryIndex >= 0 && cursor.selectedCategoryIndex < static_cast<int>(menu.size());
  const LightMenuCategory* group = hasGroup ? &menu[static_cast<std::size_t>(cursor.selectedCategoryIndex)] : nullptr;
  const std::string divider = framed("│");
  std::string frame;
  frame.reserve(8192);
  for (int line = 0; line < menuRows; ++line) {
    frame +=
        divider + leftCell(menu, cursor, line, look) + divider + rightCell(group, cursor, line, look) + divider + "\n";
  }
  return frame + stripTop() + "\n" + stripLine(menu) + "\n" + stripBottom() + "\n";
}

void drawMenu(const Menu& categories, const MenuCursor& cursor) {
  const bool isDark = lowercased(globalUserDefault("AppleInterfaceStyle").value_or("")) == "dark";
  print(menuFrame(categories, cursor, isDark));
}

}  // namespace halyard
