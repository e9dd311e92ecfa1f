#include "halyard/terminal/markdown.hpp"

#include <algorithm>
#include <vector>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr int ruleLength = 60;
constexpr int columnsPerLevel = 2;
constexpr int columnsPerTab = 4;

std::string styled(std::string_view style, std::string_view text) {
  return std::string(style) + std::string(text) + std::string(Color::reset);
}

std::string ruleLine() { return styled(Color::blue, repeated("─", ruleLength)) + "\n"; }

std::string inlineMarkup(std::string_view text, const std::string& base);

struct Span {
  std::string_view marker;
  std::string_view style;
  bool nests;  // markup inside counts too
};
constexpr Span spans[] = {{"**", Color::bold, true}, {"`", Color::orange, false}};

/// The span that begins with the text, rendered, and its length in the source; length 0 where none does. `base` is the
/// style of the line around it, which the reset at its end would lose.
std::string renderedSpan(std::string_view text, const std::string& base, std::size_t& length) {
  length = 0;
  for (const Span& span : spans) {
    if (!text.starts_with(span.marker)) continue;
    const std::size_t start = span.marker.size();
    const std::size_t end = text.find(span.marker, start);
    if (end == std::string_view::npos || end == start) continue;
    const std::string_view content = text.substr(start, end - start);
    length = end + start;
    const std::string inner = span.nests ? inlineMarkup(content, base + std::string(span.style)) : displaySafe(content);
    return styled(span.style, inner).append(base);
  }
  return {};
}

std::string inlineMarkup(std::string_view text, const std::string& base = {}) {
  std::string rendered;
  std::size_t plainStart = 0;
  std::size_t position = text.find_first_of("*`");
  while (position != std::string_view::npos) {
    std::size_t length = 0;
    const std::string span = renderedSpan(text.substr(position), base, length);
    if (length > 0) {
      rendered += displaySafe(text.substr(plainStart, position - plainStart)) + span;
      plainStart = position + length;
    }
    position = text.find_first_of("*`", position + std::max<std::size_t>(length, 1));
  }
  return rendered + displaySafe(text.substr(plainStart));
}

/// A text in one style, with markup inside.
std::string styledMarkup(std::string_view style, std::string_view text) {
  return styled(style, inlineMarkup(text, std::string(style)));
}

using TableRow = std::vector<std::string_view>;

TableRow tableCells(std::string_view line) {
  line = trimmedBlanks(line);
  line.remove_prefix(1);
  if (line.ends_with('|')) line.remove_suffix(1);
  TableRow cells;
  for (;;) {
    const std::size_t end = line.find('|');
    cells.push_back(trimmedBlanks(line.substr(0, end)));
    if (end == std::string_view::npos) return cells;
    line.remove_prefix(end + 1);
  }
}

bool isDashRow(const TableRow& cells) {
  return std::ranges::all_of(cells, [](std::string_view cell) {
    return cell.find('-') != std::string_view::npos && cell.find_first_not_of("-: ") == std::string_view::npos;
  });
}

std::string tableBorder(const std::vector<int>& widths, std::string_view left, std::string_view joint,
                        std::string_view right) {
  std::string line(left);
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (column > 0) line += joint;
    line += repeated("─", widths[column] + 2);
  }
  return styled(Color::blue, line + std::string(right)) + "\n";
}

std::string tableLine(const std::vector<std::string>& cells, const std::vector<int>& widths) {
  const std::string bar = styled(Color::blue, "│");
  std::string line = bar;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    line += " " + padVisible(column < cells.size() ? cells[column] : "", widths[column]) + " " + bar;
  }
  return line + "\n";
}

std::string renderedTable(const std::vector<std::string_view>& lines) {
  std::vector<std::vector<std::string>> rows;
  std::vector<int> widths;
  bool hasHeading = false;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    const TableRow cells = tableCells(lines[index]);
    // Further down, dashes are what a table says for "none".
    if (index < 2 && isDashRow(cells)) {
      hasHeading = hasHeading || index == 1;
      continue;
    }
    if (widths.size() < cells.size()) widths.resize(cells.size(), 0);
    std::vector<std::string>& row = rows.emplace_back();
    for (std::size_t column = 0; column < cells.size(); ++column) {
      row.push_back(inlineMarkup(cells[column]));
      widths[column] = std::max(widths[column], visibleWidth(row.back()));
    }
  }
  if (rows.empty()) return {};

  std::string table = tableBorder(widths, "┌", "┬", "┐");
  for (std::size_t index = 0; index < rows.size(); ++index) {
    table += tableLine(rows[index], widths);
    if (index == 0 && hasHeading) table += tableBorder(widths, "├", "┼", "┤");
  }
  return table + tableBorder(widths, "└", "┴", "┘");
}

struct Indented {
  int columns = 0;
  std::string_view text;
};

Indented withoutIndent(std::string_view line) {
  Indented result{.text = line};
  while (!result.text.empty() && (result.text.front() == ' ' || result.text.front() == '\t')) {
    result.columns += result.text.front() == '\t' ? columnsPerTab : 1;
    result.text.remove_prefix(1);
  }
  return result;
}

/// Length of a list number with its point and blank, as in "12. "; 0 where the text begins with none.
std::size_t listNumberLength(std::string_view text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  return digits > 0 && text.substr(digits).starts_with(". ") ? digits + 2 : 0;
}

std::string listItem(std::string_view line) {
  const Indented item = withoutIndent(line);
  const std::string indent = repeated(" ", item.columns);
  if (item.text.starts_with("- ") || item.text.starts_with("* ")) {
    return indent + styled(Color::blue, item.columns > columnsPerLevel ? "◦" : "•") + " " +
           inlineMarkup(item.text.substr(2)) + "\n";
  }
  if (const std::size_t number = listNumberLength(item.text); number > 0) {
    return indent + std::string(item.text.substr(0, number)) + inlineMarkup(item.text.substr(number)) + "\n";
  }
  return {};
}

/// A line outside code blocks and tables.
std::string renderedLine(std::string_view line) {
  if (trimmedBlanks(line).empty()) return "\n";
  if (trimmedBlanks(line) == "---") return ruleLine();
  for (const std::string_view marker : {"### ", "## "}) {
    if (line.starts_with(marker)) return styledMarkup(Color::boldBlue, line.substr(marker.size())) + "\n";
  }
  if (line.starts_with("# ")) return "  " + styledMarkup(Color::boldBlue, line.substr(2)) + "\n" + ruleLine();
  if (line.starts_with("> ") || line == ">") {
    return "  │  " + styledMarkup(Color::dim, line.size() > 1 ? line.substr(2) : "") + "\n";
  }
  const std::string item = listItem(line);
  return item.empty() ? inlineMarkup(line) + "\n" : item;
}

}  // namespace

std::string MarkdownTerminalRenderer::render(std::string_view text) {
  if (text.empty()) return {};
  std::string rendered;
  std::vector<std::string_view> table;
  bool inCodeBlock = false;
  if (text.ends_with('\n')) text.remove_suffix(1);
  for (std::string_view line : splitLines(text)) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!inCodeBlock && line.starts_with('|')) {
      table.push_back(line);
      continue;
    }
    rendered += renderedTable(table);
    table.clear();
    if (line.starts_with("```")) {
      inCodeBlock = !inCodeBlock;
      rendered += ruleLine();
    } else {
      rendered += inCodeBlock ? "  " + styled(Color::orange, displaySafe(line)) + "\n" : renderedLine(line);
    }
  }
  return rendered + renderedTable(table);
}

void renderMarkdown(std::string_view text) { print(MarkdownTerminalRenderer::render(text)); }

}  // namespace halyard
