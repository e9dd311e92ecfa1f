#include "halyard/cache/cache_list.hpp"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

void printWrapped(std::string_view text) {
  for (const std::string& line : wrappedText(text, Layout::contentWidth)) {
    printLine(fmt::format("  {}{}{}", Color::dim, line, Color::reset));
  }
}

void appendWord(std::vector<std::string>& lines, std::string_view word, std::size_t width) {
  const bool fits = !lines.empty() && graphemeCount(lines.back()) + 1 + graphemeCount(word) <= width;
  if (fits) {
    lines.back().append(" ").append(word);
  } else {
    lines.emplace_back(word);
  }
}

}  // namespace

CacheListRow cacheListRow(CachePlace place) {
  const CacheLocation& location = cacheLocation(place);
  return {.label = std::string(localized(location.labelKey)),
          .path = std::string(location.path.empty() ? localized("cache_path_runtimes_note") : location.path)};
}

std::vector<std::string> wrappedText(std::string_view text, std::size_t width) {
  std::vector<std::string> all;
  for (std::string_view line : splitLines(text)) {
    std::vector<std::string> lines;
    while (!line.empty()) {
      const std::size_t end = std::min(line.find(' '), line.size());
      if (end > 0) appendWord(lines, line.substr(0, end), width);
      line.remove_prefix(std::min(end + 1, line.size()));
    }
    if (lines.empty()) lines.emplace_back();
    all.insert(all.end(), lines.begin(), lines.end());
  }
  return all;
}

void printCacheList(std::string_view description, const std::vector<CacheListRow>& rows) {
  printWrapped(description);
  printLine();
  std::size_t widest = 0;
  for (const CacheListRow& row : rows) widest = std::max(widest, graphemeCount(row.label));
  for (const CacheListRow& row : rows) {
    const std::string padding(widest + 2 - graphemeCount(row.label), ' ');
    printLine(fmt::format("  {}{}{}{}{}: {}{}", Color::bold, row.label, Color::reset, padding, Color::dim, row.path,
                          Color::reset));
  }
}

void printAfterNote(std::string_view text) {
  printLine();
  printWrapped(text);
}

}  // namespace halyard
