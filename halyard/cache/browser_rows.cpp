#include "halyard/cache/browser_rows.hpp"

#include <algorithm>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::size_t widestLabel = 56;
constexpr int sizeWidth = 6;

std::string padded(std::string_view size) {
  const int blanks = std::max(sizeWidth - visibleWidth(size), 0);
  return std::string(static_cast<std::size_t>(blanks), ' ') + std::string(size);
}

}  // namespace

std::string sizedRows(const std::vector<SizedRow>& rows) {
  std::size_t width = 0;
  for (const SizedRow& row : rows) width = std::max(width, std::min(graphemeCount(row.label), widestLabel));
  std::string text;
  std::size_t number = 0;
  for (const SizedRow& row : rows) {
    if (!row.section.empty()) text += fmt::format("\n  {}{}{}\n", Color::bold, row.section, Color::reset);
    text += fmt::format("  {}[{:02}]{} {}  {}{}{}\n", Color::boldBlue, ++number, Color::reset,
                        padVisible(shortened(row.label, widestLabel), static_cast<int>(width)), Color::dim,
                        padded(row.size), Color::reset);
  }
  return text;
}

std::string totalRow(std::string_view label, std::string_view size) {
  return fmt::format("\n  {}{}{}  {}\n", Color::bold, label, Color::reset, size);
}

}  // namespace halyard
