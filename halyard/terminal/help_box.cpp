#include "halyard/terminal/help_box.hpp"

#include <algorithm>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/overlay_box.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int textWidth = Layout::contentWidth;
constexpr int innerWidth = textWidth + 3;  // a blank at both sides of the text, and the scroll bar
constexpr int boxColumn = (Layout::frameWidth + 2 - (innerWidth + 2)) / 2 + 1;

std::string colored(std::string_view color, std::string_view text) {
  return std::string(color) + std::string(text) + std::string(Color::reset);
}

std::string upperBorder(std::string_view title) {
  const std::string name = shortened(displaySafe(title), innerWidth - 4);
  const int dashes = innerWidth - 3 - visibleWidth(name);
  return colored(Color::blue, "┌─") + " " + colored(Color::bold, name) + " " +
         colored(Color::blue, repeated("─", dashes) + "┐");
}

std::string lowerBorder() {
  const std::string hint = clippedVisible(localized("help_scroll_hint"), innerWidth - 4);
  const int dashes = innerWidth - 3 - visibleWidth(hint);
  return colored(Color::blue, "└" + repeated("─", dashes)) + " " + colored(Color::dim, hint) + " " +
         colored(Color::blue, "─┘");
}

std::string textRow(std::string_view text, bool thumb) {
  return colored(Color::blue, "│") + " " + padVisible(text, textWidth) + " " + colored(Color::blue, thumb ? "█" : "░") +
         colored(Color::blue, "│");
}

/// Bytes of the first line, at most `width` columns; `next` is where the line after it begins.
std::size_t lineLength(std::string_view text, int width, std::size_t& next) {
  const auto columns = static_cast<std::size_t>(std::max(width, 1));
  const std::size_t fitting = graphemePrefix(text, columns);
  next = fitting;
  if (fitting == text.size()) return fitting;
  if (text[fitting] == ' ') {
    next = fitting + 1;
    return fitting;
  }
  const std::size_t blank = text.substr(0, fitting).rfind(' ');
  // A blank of the line's indent is no place to break: it would leave a line of nothing.
  if (blank == std::string_view::npos || blank < text.find_first_not_of(' ')) return fitting;
  next = blank + 1;
  return blank;
}

}  // namespace

std::vector<std::string> wrappedLines(std::string_view text, int width) {
  std::vector<std::string> lines;
  for (const std::string_view raw : splitLines(text)) {
    const std::string line = displaySafe(raw.ends_with('\r') ? raw.substr(0, raw.size() - 1) : raw);
    std::string_view rest = line;
    do {
      std::size_t next = 0;
      const std::size_t length = lineLength(rest, width, next);
      lines.emplace_back(rest.substr(0, length));
      rest.remove_prefix(next);
    } while (!rest.empty());
  }
  return lines;
}

ScrollThumb scrollThumb(int total, int visible, int scroll) {
  if (visible <= 0 || total <= visible) return {};
  const int length = std::max(visible * visible / total, 1);
  const int lastPage = total - visible;
  return {.start = (std::clamp(scroll, 0, lastPage) * (visible - length) + lastPage / 2) / lastPage, .length = length};
}

std::string helpBox(const HelpText& help, int topRow, int textRows, int& scroll) {
  const std::vector<std::string> lines = wrappedLines(help.text, textWidth);
  const int total = static_cast<int>(lines.size());
  scroll = std::clamp(scroll, 0, std::max(total - textRows, 0));
  const ScrollThumb thumb = scrollThumb(total, textRows, scroll);

  std::string drawn = cursorTo(topRow, boxColumn) + upperBorder(help.title);
  for (int row = 0; row < textRows; ++row) {
    const int index = scroll + row;
    const std::string_view text = index < total ? std::string_view(lines[static_cast<std::size_t>(index)]) : "";
    const bool onThumb = row >= thumb.start && row < thumb.start + thumb.length;
    drawn += cursorTo(topRow + 1 + row, boxColumn) + textRow(text, onThumb);
  }
  return drawn + cursorTo(topRow + 1 + textRows, boxColumn) + lowerBorder() + cursorTo(rowBelowFrame, 1);
}

void drawHelpBox(const HelpText& help, int topRow, int textRows, int& scroll) {
  print(helpBox(help, topRow, textRows, scroll));
}

}  // namespace halyard
