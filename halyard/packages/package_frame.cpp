#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/packages/package_live.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/control_sequences.hpp"
#include "halyard/terminal/cursor.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

// Beside the rows: the title with an empty line above it, a rule, an empty line, the spinner's line, and room for the
// result's first lines.
constexpr int otherLines = 8;

struct StatusLook {
  std::string_view color;
  std::string_view symbol;
};

constexpr std::array<StatusLook, 4> looks = {{
    {Color::dim, "·"},
    {Color::boldBlue, "◌"},
    {Color::green, "✓"},
    {Color::red, "✗"},
}};
static_assert(static_cast<std::size_t>(SPMResolveStatus::failed) + 1 == looks.size());

std::string fitted(std::string_view text, int columns) {
  std::string safe = displaySafe(text);
  if (cellWidth(safe) <= columns) return safe;
  return columns < 1 ? std::string() : std::string(cellPrefix(safe, columns - 1)) + "…";
}

std::string rowLine(const PackageRow& row, int columns) {
  const StatusLook& look = looks[static_cast<std::size_t>(row.status)];
  return fmt::format("  {}{}{} {}", look.color, look.symbol, Color::reset, fitted(row.name, columns - 5));
}

/// First of `visible` rows, chosen so that the one that changed last stands in their middle.
std::size_t firstVisible(const PackageTable& table, std::size_t visible) {
  if (table.rows.size() <= visible) return 0;
  const std::size_t half = visible / 2;
  const std::size_t wanted = table.lastChanged > half ? table.lastChanged - half : 0;
  return std::min(wanted, table.rows.size() - visible);
}

}  // namespace

std::string packageFrame(const PackageTable& table, int rows, int columns) {
  const auto room = static_cast<std::size_t>(std::max(rows - otherLines, 1));
  const std::size_t visible = std::min(room, table.rows.size());
  const std::size_t first = firstVisible(table, visible);
  std::string frame(Cursor::home);
  const auto addLine = [&](std::string_view line) {
    frame.append(clippedVisible(line, columns - 1)).append(Cursor::eraseLineEnd).append("\n");
  };
  addLine({});
  std::string title = fmt::format("  {}▶{}  {}{}{}", Color::boldBlue, Color::reset, Color::bold,
                                  packageToolTitle(table.tool), Color::reset);
  if (!table.rows.empty()) {
    title +=
        fmt::format("   {}{}/{}{}", Color::dim, table.count(SPMResolveStatus::done), table.rows.size(), Color::reset);
  }
  addLine(title);
  addLine(fmt::format("  {}{}{}", Color::blue, repeated("─", Layout::contentWidth), Color::reset));
  for (std::size_t i = first; i < first + visible; ++i) addLine(rowLine(table.rows[i], columns));
  addLine({});
  return frame;
}

}  // namespace halyard
