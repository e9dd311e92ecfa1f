#include "halyard/testruns/coverage_drawing.hpp"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr double goodCoverage = 0.8;
constexpr double fairCoverage = 0.5;
constexpr int percentageWidth = 6;
// What stands left of the name: of a target, and one step further in of a file.
constexpr int targetIndent = 2;
constexpr int fileIndent = 4;
constexpr int gap = 2;
constexpr int widestName = Layout::ruleWidth - fileIndent - gap - percentageWidth;

struct Row {
  int indent = targetIndent;
  std::string name;  // fit to be shown
  double coverage = 0;
  std::string_view nameStyle = {};
};

std::string shownName(std::string_view name) { return shortened(displaySafe(name), widestName); }

std::vector<Row> rowsOf(const std::vector<CoverageTarget>& targets, bool withFiles) {
  std::vector<Row> rows;
  for (const CoverageTarget& target : targets) {
    rows.push_back({targetIndent, shownName(target.name), target.coverage, Color::bold});
    if (!withFiles) continue;
    for (const CoverageFile& file : target.files) rows.push_back({fileIndent, shownName(file.name), file.coverage});
  }
  rows.push_back({targetIndent, "Total", linesOf(targets).coverage(), Color::bold});
  return rows;
}

}  // namespace

std::string coveragePercentage(double coverage) { return fmt::format("{:5.1f}%", coverage * 100); }

std::string_view coverageColor(double coverage) {
  if (coverage >= goodCoverage) return Color::green;
  return coverage >= fairCoverage ? Color::yellow : Color::red;
}

std::string drawCoverageTable(const std::vector<CoverageTarget>& targets, bool withFiles) {
  const std::vector<Row> rows = rowsOf(targets, withFiles);
  int width = Layout::narrowWidth;
  for (const Row& row : rows) width = std::max(width, row.indent + visibleWidth(row.name));
  std::string drawn;
  for (const Row& row : rows) {
    if (&row == &rows.back()) {
      fmt::format_to(std::back_inserter(drawn), "  {}{}{}\n", Color::dim,
                     repeated("─", width - targetIndent + gap + percentageWidth), Color::reset);
    }
    const std::string_view styleEnd = row.nameStyle.empty() ? std::string_view() : Color::reset;
    fmt::format_to(std::back_inserter(drawn), "{}{}{}{}{}{}{}{}\n",
                   std::string(static_cast<std::size_t>(row.indent), ' '), row.nameStyle,
                   padVisible(row.name, width - row.indent), styleEnd, std::string(gap, ' '),
                   coverageColor(row.coverage), coveragePercentage(row.coverage), Color::reset);
  }
  return drawn;
}

}  // namespace halyard
