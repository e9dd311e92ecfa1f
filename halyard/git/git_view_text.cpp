#include "halyard/git/git_view_text.hpp"

#include <algorithm>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard::GitView {

namespace {

constexpr std::string_view ellipsis = "…";

std::size_t sequenceLength(std::string_view text) {
  if (!text.starts_with(Cursor::escape)) return 0;
  const std::size_t end = text.find('m');
  return end == std::string_view::npos ? text.size() : end + 1;
}

/// Calls `sequence` and `run` for the pieces of a text, in order.
template <typename TakeSequence, typename TakeRun>
void eachPiece(std::string_view text, TakeSequence sequence, TakeRun run) {
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    const std::size_t size = length != 0 ? length : std::min(text.find(Cursor::escape), text.size());
    if (length != 0) {
      sequence(text.substr(0, size));
    } else {
      run(text.substr(0, size));
    }
    text.remove_prefix(size);
  }
}

std::size_t clusterCount(std::string_view text) {
  std::size_t count = 0;
  eachPiece(
      text, [](std::string_view) {}, [&](std::string_view run) { count += graphemeCount(run); });
  return count;
}

/// Byte offset at which a row of at most `width` characters ends.
std::size_t rowEnd(std::string_view line, std::size_t width) {
  const std::size_t limit = graphemePrefix(line, width);
  if (limit == line.size()) return limit;
  const std::size_t blank = line.rfind(' ', limit);
  return blank == std::string_view::npos || blank == 0 ? limit : blank;
}

std::string blanks(int count) { return std::string(static_cast<std::size_t>(std::max(count, 0)), ' '); }

}  // namespace

std::string shownText(std::string_view text, std::size_t characters) {
  return displaySafe(text.substr(0, graphemePrefix(text, characters)));
}

std::string cutRight(std::string_view text, int width) {
  if (width < 1) return {};
  if (clusterCount(text) <= static_cast<std::size_t>(width)) return std::string(text);
  std::string cut;
  auto left = static_cast<std::size_t>(width) - 1;
  eachPiece(
      text, [&](std::string_view sequence) { cut += sequence; },
      [&](std::string_view run) {
        const std::size_t end = graphemePrefix(run, left);
        cut += run.substr(0, end);
        left -= std::min(left, graphemeCount(run));
      });
  return cut.append(ellipsis);
}

std::string cutLeft(std::string_view text, int width) {
  if (width < 1) return {};
  const std::size_t count = clusterCount(text);
  if (count <= static_cast<std::size_t>(width)) return std::string(text);
  std::string cut(ellipsis);
  std::size_t dropped = count - static_cast<std::size_t>(width) + 1;
  eachPiece(
      text, [&](std::string_view sequence) { cut += sequence; },
      [&](std::string_view run) {
        cut += run.substr(graphemePrefix(run, dropped));
        dropped -= std::min(dropped, graphemeCount(run));
      });
  return cut;
}

std::string cell(std::string_view text, int width) {
  const int visible = visibleWidth(text);
  return visible > width ? cutRight(text, width) : std::string(text).append(blanks(width - visible));
}

std::string centred(std::string_view text, int width) { return blanks((width - visibleWidth(text)) / 2).append(text); }

std::string styled(std::string_view style, std::string_view text) {
  std::string result;
  result.reserve(style.size() + text.size() + Color::reset.size());
  return result.append(style).append(text).append(Color::reset);
}

std::vector<std::string> wrappedRows(std::string_view text, int width, std::size_t limit) {
  std::vector<std::string> rows;
  const std::size_t end = text.find_last_not_of("\r\n");
  for (const std::string_view line : splitLines(text.substr(0, end == std::string_view::npos ? 0 : end + 1))) {
    std::string safe = shownText(line, static_cast<std::size_t>(width) * limit + 1);
    std::string_view rest = safe;
    do {
      if (rows.size() == limit) {
        rows.back() = ellipsis;
        return rows;
      }
      const std::size_t size = rowEnd(rest, static_cast<std::size_t>(width));
      rows.emplace_back(rest.substr(0, size));
      rest.remove_prefix(size);
      if (rest.starts_with(' ')) rest.remove_prefix(1);
    } while (!rest.empty());
  }
  return rows;
}

}  // namespace halyard::GitView
