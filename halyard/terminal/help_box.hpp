// The help box of the menu: a scrollable text over the frame.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct HelpText {
  std::string title;
  std::string text;
};

/// Draws the box by cursor addressing from `topRow` (from 1) with `textRows` lines of text. `scroll` is the first
/// visible line; it is limited to the last full page and written back limited.
void drawHelpBox(const HelpText& help, int topRow, int textRows, int& scroll);

/// What drawHelpBox() prints.
std::string helpBox(const HelpText& help, int topRow, int textRows, int& scroll);

/// The text in lines of at most `width` columns, broken at blanks; its own line ends are kept.
std::vector<std::string> wrappedLines(std::string_view text, int width);

/// Rows of a scroll bar on which the thumb stands. No length where everything is visible.
struct ScrollThumb {
  int start = 0;
  int length = 0;

  bool operator==(const ScrollThumb&) const = default;
};
ScrollThumb scrollThumb(int total, int visible, int scroll);

}  // namespace halyard
