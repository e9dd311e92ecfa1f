// The help box of the menu: a scrollable text over the frame.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

struct HelpText {
  std::string title;
  std::string text;
};

/// Draws the box by cursor addressing from `topRow` (from 1) with `textRows` lines of text. `scroll` is the first visible
/// line; it is limited to the last full page and written back limited.
void drawHelpBox(const HelpText& help, int topRow, int textRows, int& scroll);

}  // namespace halyard
