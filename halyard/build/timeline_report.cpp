#include "halyard/build/timeline_report.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/duration.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

using Phase = TimelinePhase;
using Lines = std::vector<std::string>;

constexpr std::size_t firstBarReport = 7;  // phases
constexpr std::size_t boxesInRow = 4;
constexpr int boxWidth = 14;
constexpr int boxNameWidth = 11;  // beside an icon
constexpr int axisColumns = 60;
constexpr int axisSections = 6;
constexpr int detailWidth = 18;
constexpr std::array<std::string_view, 5> setupPhases = {"Clean", "Caches", "Resolve", "PM-Sync", "Dependencies"};

struct PhaseLook {
  std::string_view color;
  std::string_view mark;
};

PhaseLook lookOf(const Phase& phase) {
  if (phase.skipped) return {Color::dim, "⊘"};
  if (phase.technicalError) return {Color::boldYellow, "⚠"};
  if (phase.success) return {Color::boldGreen, "✓"};
  return {Color::boldRed, "✗"};
}

std::string shownName(const Phase& phase) { return displaySafe(phase.name); }

/// The icon and a blank, or nothing.
std::string iconLead(const Phase& phase) { return phase.icon.empty() ? std::string() : displaySafe(phase.icon) + " "; }

/// In percent of the total, rounded.
int share(double seconds, double total) {
  return total > 0 ? static_cast<int>(std::lround(std::clamp(seconds / total, 0.0, 1e6) * 100)) : 0;
}

std::string dimmed(std::string_view text) { return fmt::format("{}{}{}", Color::dim, text, Color::reset); }

std::string strong(std::string_view text) { return fmt::format("{}{}{}", Color::bold, text, Color::reset); }

std::string doubleRule() { return dimmed(repeated("═", Layout::ruleWidth)); }

std::string overallMark(const TimelineRecord& timeline) {
  const bool ok = std::ranges::all_of(
      timeline.phases, [](const auto& phase) { return phase->success || phase->skipped || phase->technicalError; });
  const bool technical = std::ranges::any_of(timeline.phases, [](const auto& phase) { return phase->technicalError; });
  if (!ok) return fmt::format("{}✗{}", Color::boldRed, Color::reset);
  return technical ? fmt::format("{}⚠{}", Color::boldYellow, Color::reset)
                   : fmt::format("{}✓{}", Color::boldGreen, Color::reset);
}

void addHeader(Lines& lines, const TimelineRecord& timeline, double total) {
  lines.push_back(doubleRule());
  lines.push_back(fmt::format("  {}▸{}  {}   {}: {}   {}", Color::boldBlue, Color::reset,
                              strong(localizedFormat("build_timeline_header_var", displaySafe(timeline.title))),
                              localized("build_timeline_total"), strong(formatSeconds(total)), overallMark(timeline)));
  lines.push_back(doubleRule());
  lines.emplace_back();
}

// --- boxes

constexpr std::size_t boxLines = 6;
using BoxText = std::array<std::string, boxLines>;

std::string boxName(const Phase& phase) {
  if (phase.icon.empty()) return truncateDisplay(shownName(phase), boxWidth);
  // The outer cut is for an icon that is wider than icons are.
  return truncateDisplay(iconLead(phase) + truncateDisplay(shownName(phase), boxNameWidth), boxWidth);
}

std::string boxed(std::string_view color, std::string_view content) {
  return fmt::format("{0}│{1}{2}{0}│{1}", color, Color::reset, centerDisplay(content, boxWidth));
}

BoxText boxOf(const Phase& phase, double total) {
  const PhaseLook look = lookOf(phase);
  const std::string edge = repeated("─", boxWidth);
  return {
      fmt::format("{}┌{}┐{}", look.color, edge, Color::reset),
      boxed(look.color, boxName(phase)),
      boxed(look.color, formatSeconds(phase.duration())),
      boxed(look.color, look.mark),
      fmt::format("{}└{}┘{}", look.color, edge, Color::reset),
      dimmed(centerDisplay(fmt::format("{}%", share(phase.duration(), total)), boxWidth + 2)),
  };
}

void addBoxRow(Lines& lines, const std::vector<BoxText>& row) {
  constexpr std::size_t arrowLine = 2;
  const std::string arrow = fmt::format(" {} ", dimmed("→"));
  for (std::size_t line = 0; line < boxLines; ++line) {
    std::string text = "  ";
    for (std::size_t box = 0; box < row.size(); ++box) {
      if (box > 0) text += line == arrowLine ? arrow : "   ";
      text += row[box][line];
    }
    lines.push_back(std::move(text));
  }
  lines.emplace_back();
}

void addBoxes(Lines& lines, const TimelineRecord& timeline, double total) {
  std::vector<BoxText> row;
  for (const auto& phase : timeline.phases) {
    row.push_back(boxOf(*phase, total));
    if (row.size() < boxesInRow) continue;
    addBoxRow(lines, row);
    row.clear();
  }
  if (!row.empty()) addBoxRow(lines, row);
}

void addStepsOf(Lines& lines, const Phase& phase) {
  lines.push_back(fmt::format("    {}  {}", strong(iconLead(phase) + shownName(phase)),
                              dimmed(fmt::format("({})", formatSeconds(phase.duration())))));
  for (const TimelineStep& step : phase.steps) {
    lines.push_back(fmt::format("      {}{}{} {}  {}", step.success ? Color::dim : Color::boldRed,
                                step.success ? "•" : "✗", Color::reset, displaySafe(step.name),
                                dimmed(formatStepSeconds(step.duration))));
  }
}

void addSubSteps(Lines& lines, const TimelineRecord& timeline) {
  const auto hasSteps = [](const auto& phase) { return !phase->steps.empty(); };
  if (std::ranges::none_of(timeline.phases, hasSteps)) return;
  lines.push_back(fmt::format("  {}{}:{}", Color::boldBlue, localized("build_timeline_substeps"), Color::reset));
  for (const auto& phase : timeline.phases) {
    if (hasSteps(phase)) addStepsOf(lines, *phase);
  }
  lines.emplace_back();
}

// --- bars

std::string padded(std::string text, int width) {
  text.append(static_cast<std::size_t>(std::max(width - displayWidth(text), 0)), ' ');
  return text;
}

void addAxis(Lines& lines, double total) {
  std::string ticks = "     ";
  std::string axis = "     ├";
  for (int i = 0; i <= axisSections; ++i) {
    const auto seconds = std::llround(total * i / axisSections);
    if (i > 0) {
      ticks += "     ";
      axis += repeated("─", axisColumns / axisSections - 1) + (i < axisSections ? "┼" : "┤");
    }
    ticks += padded(fmt::format("{}:{:02}", seconds / 60, seconds % 60), 5);
  }
  lines.push_back(dimmed(ticks));
  lines.push_back(dimmed(axis));
}

/// Columns of the axis that this many seconds take, within limits.
int columnsOf(double seconds, double span, int least, int most) {
  return static_cast<int>(
      std::lround(std::clamp(seconds / span * axisColumns, static_cast<double>(least), static_cast<double>(most))));
}

std::string barOf(const Phase& phase, const TimelineRecord& timeline, double span) {
  const int offset = columnsOf(secondsBetween(timeline.start, phase.start), span, 0, axisColumns - 1);
  const int width = columnsOf(phase.duration(), span, 1, axisColumns - offset);
  const auto blanks = [](int count) { return std::string(static_cast<std::size_t>(count), ' '); };
  return fmt::format("{}{}{}{}{}", blanks(offset), lookOf(phase).color, repeated(phase.skipped ? "░" : "█", width),
                     Color::reset, blanks(axisColumns - offset - width));
}

void addBars(Lines& lines, const TimelineRecord& timeline, double total) {
  const double span = total <= 1 ? 1.0 : total;
  for (const auto& phase : timeline.phases) {
    const PhaseLook look = lookOf(*phase);
    std::string line =
        fmt::format("{} {}  {} {}{}{}", padded(displaySafe(phase->icon), 3), barOf(*phase, timeline, span),
                    strong(padded(formatSeconds(phase->duration()), 7)), look.color, look.mark, Color::reset);
    if (!phase->detail.empty()) line += "  " + dimmed(truncateDisplay(displaySafe(phase->detail), detailWidth));
    lines.push_back(std::move(line));
  }
  lines.emplace_back();
}

// --- insights

std::string insight(std::string_view key, std::string_view what, std::string_view remark) {
  return fmt::format("  {} {}: {} {}", dimmed("↓"), localized(key), strong(what), dimmed(remark));
}

void addLongestPhase(Lines& lines, const TimelineRecord& timeline, double total) {
  const Phase* longest = nullptr;
  for (const auto& phase : timeline.phases) {
    if (longest == nullptr || phase->duration() > longest->duration()) longest = phase.get();
  }
  if (longest == nullptr) return;
  lines.push_back(
      insight("build_timeline_longest_phase", iconLead(*longest) + shownName(*longest),
              fmt::format("({} · {}%)", formatSeconds(longest->duration()), share(longest->duration(), total))));
}

/// The time of all phases that `counts` takes, if there is one.
template <typename Counts>
void addSum(Lines& lines, const TimelineRecord& timeline, double total, std::string_view key, Counts counts) {
  double sum = 0;
  bool isAny = false;
  for (const auto& phase : timeline.phases) {
    if (!counts(*phase)) continue;
    sum += phase->duration();
    isAny = true;
  }
  if (isAny) lines.push_back(insight(key, formatSeconds(sum), fmt::format("({}%)", share(sum, total))));
}

void addInsights(Lines& lines, const TimelineRecord& timeline, double total) {
  if (total <= 0) return;
  addLongestPhase(lines, timeline, total);
  addSum(lines, timeline, total, "build_timeline_setup_overhead",
         [](const Phase& phase) { return std::ranges::find(setupPhases, phase.name) != setupPhases.end(); });
  addSum(lines, timeline, total, "build_timeline_test_share",
         [](const Phase& phase) { return caseFolded(phase.name).find("test") != std::string::npos; });
}

// --- widths

/// The text with each scalar handed to `take`, colour sequences left out.
template <typename Take>
void eachScalar(std::string_view text, Take take) {
  while (!text.empty()) {
    if (const std::size_t length = colorSequenceLength(text); length != 0) {
      text.remove_prefix(length);
      continue;
    }
    const std::size_t length = std::min(scalarAt(text).length, text.size());
    take(text.substr(0, length));
    text.remove_prefix(length);
  }
}

/// Of one scalar's bytes. In UTF-8 the order of scalars is that of their bytes.
int scalarWidth(std::string_view scalar) {
  if (scalar == "\uFE0E" || scalar == "\uFE0F" || scalar == "\u200D") return 0;
  if (scalar >= "\U0001F000" && scalar.size() == 4) return 2;
  return scalar >= "\u23F0" && scalar <= "\u23F3" && scalar.size() == 3 ? 2 : 1;
}

}  // namespace

std::vector<std::string> timelineReport(const TimelineRecord& timeline) {
  const double total = timeline.totalDuration();
  Lines lines(1);
  addHeader(lines, timeline, total);
  if (timeline.phases.size() < firstBarReport) {
    addBoxes(lines, timeline, total);
    addSubSteps(lines, timeline);
  } else {
    addAxis(lines, total);
    addBars(lines, timeline, total);
  }
  addInsights(lines, timeline, total);
  lines.push_back(doubleRule());
  lines.emplace_back();
  return lines;
}

int displayWidth(std::string_view text) {
  int width = 0;
  eachScalar(text, [&width](std::string_view scalar) { width += scalarWidth(scalar); });
  return width;
}

std::string truncateDisplay(std::string_view text, int width) {
  if (displayWidth(text) <= width) return std::string(text);
  std::string cut;
  int used = 0;
  // Colours go with the cut, so that none is left open.
  const std::string plain = stripAnsi(text);
  for (const std::string_view character : graphemes(plain)) {
    const int columns = displayWidth(character);
    if (used + columns >= width) break;
    cut += character;
    used += columns;
  }
  return cut + "…";
}

std::string centerDisplay(std::string_view text, int width) {
  const auto pad = static_cast<std::size_t>(std::max(width - displayWidth(text), 0));
  std::string centered(pad / 2, ' ');
  centered += text;
  centered.append(pad - pad / 2, ' ');
  return centered;
}

}  // namespace halyard
