#include "halyard/shell/goodbye.hpp"

#include <array>
#include <cstdlib>
#include <string_view>

#include <fmt/format.h>

#include "core/string_catalog.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/keys.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/terminal/terminal_restore.hpp"

namespace halyard {

namespace {

struct GoodbyeEntry {
  std::string_view titleKey;
  std::string_view link;
};

constexpr auto entries = std::to_array<GoodbyeEntry>({
    {"goodbye_entry_documentation", "README.md"},
    {"goodbye_entry_changes", "docs/architecture.md"},
    {"goodbye_entry_contribute", "CONTRIBUTING.md"},
    {"goodbye_entry_report", "CONTRIBUTING.md#reporting-a-problem"},
});

std::string centredLine(std::string_view text) {
  const int left = (Layout::frameWidth - visibleWidth(text)) / 2;
  const std::string content = fmt::format("{}{}{}{}", repeated(" ", left), Color::bold, text, Color::reset);
  return boxLine(content, Color::blue) + "\n";
}

std::string border(std::string_view left, std::string_view right) {
  return fmt::format("{}{}{}{}{}\n", Color::blue, left, repeated("─", Layout::frameWidth), right, Color::reset);
}

}  // namespace

std::string goodbyeFrame() {
  std::string frame = "\n" + border("┌", "┐") + centredLine(localized("goodbye")) + border("└", "┘");
  frame += fmt::format("\n  {}\n", localized("goodbye_thanks"));
  frame += fmt::format("  {}{}{}\n", Color::dim, localized("goodbye_feedback"), Color::reset);
  frame += fmt::format("\n  {}{}{}\n", Color::bold, localized("goodbye_more_from_me"), Color::reset);
  for (const GoodbyeEntry& entry : entries) {
    frame += fmt::format("  {}•{} {}\n", Color::blue, Color::reset, localized(entry.titleKey));
    frame += fmt::format("    {}{}{}\n", Color::dim, entry.link, Color::reset);
  }
  return frame + "\n";
}

void quitWithGoodbye() {
  leaveRawMode();
  showCursor();
  flushOutput();
  clearScreen();
  print(goodbyeFrame());
  flushOutput();
  std::exit(0);
}

}  // namespace halyard
