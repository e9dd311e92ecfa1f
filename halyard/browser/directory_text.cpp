#include "halyard/browser/directory_text.hpp"

#include <algorithm>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/terminal/control_sequences.hpp"

namespace halyard {

std::string shownPath(std::string_view path) {
  const std::string home = AppDependencies::current().fileSystemClient->homeDirectoryPath();
  const bool isBelowHome =
      home.size() > 1 && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/');
  return isBelowHome ? "~" + displaySafe(path.substr(home.size())) : displaySafe(path);
}

std::string cutOnLeft(std::string_view text, int columns) {
  if (columns < 1) return {};
  int width = cellWidth(text);
  if (width <= columns) return std::string(text);
  while (width > columns - 1 && !text.empty()) {
    const ScalarPiece piece = scalarAt(text);
    width -= piece.cells;
    text.remove_prefix(piece.length);
  }
  // What combines with a character that went goes too.
  while (!text.empty() && scalarAt(text).cells == 0) text.remove_prefix(scalarAt(text).length);
  return "…" + std::string(text);
}

std::string cutOnRight(std::string_view text, int columns) {
  if (columns < 1) return {};
  return cellWidth(text) <= columns ? std::string(text) : std::string(cellPrefix(text, columns - 1)) + "…";
}

std::string paddedColumns(std::string_view text, int columns) {
  std::string padded(text);
  padded.append(static_cast<std::size_t>(std::max(columns - cellWidth(text), 0)), ' ');
  return padded;
}

}  // namespace halyard
