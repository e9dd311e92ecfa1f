#include "halyard/build/flows_labels.hpp"

#include <array>
#include <cstddef>
#include <optional>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

// In the order of ActiveTarget::Kind.
constexpr auto labels = std::to_array<FlowLabels>({
    {.icon = "🖥",
     .buildAndRunKey = "build_run_simulator",
     .quickResetKey = "quick_reset_build_simulator",
     .fullResetKey = "full_reset_build_and_launch",
     .launchKey = "launch_app_simulator"},
    {.icon = "📱",
     .buildAndRunKey = "build_run_physical",
     .quickResetKey = "quick_reset_build_physical",
     .fullResetKey = "full_reset_build_and_launch_physical",
     .launchKey = "launch_app_physical"},
    {.icon = "💻",
     .buildAndRunKey = "build_run_native",
     .quickResetKey = "quick_reset_build_native",
     .fullResetKey = "full_reset_build_and_launch_native",
     .launchKey = "launch_app_native"},
});
static_assert(static_cast<std::size_t>(ActiveTarget::Kind::simulator) == 0);
static_assert(static_cast<std::size_t>(ActiveTarget::Kind::physical) == 1);
static_assert(static_cast<std::size_t>(ActiveTarget::Kind::mac) + 1 == labels.size());

std::string bold(std::string_view text) { return fmt::format("{}{}{}", Color::bold, text, Color::reset); }
std::string dim(std::string_view text) { return fmt::format("{}{}{}", Color::dim, text, Color::reset); }

}  // namespace

const FlowLabels& flowLabels(ActiveTarget::Kind kind) { return labels.at(static_cast<std::size_t>(kind)); }

std::string targetText(const ActiveTarget& target) {
  std::string text = displaySafe(target.name);
  if (!target.osLabel.empty()) text += fmt::format(" ({})", displaySafe(target.osLabel));
  return text;
}

void printRunHeader(const ActiveTarget& target) {
  printLine();
  printRule();
  printLine(fmt::format("  {}  {}", flowLabels(target.kind).icon, bold(targetText(target))));
  printLine(fmt::format("  🔧  {}: {}  ·  {}: {}", localized("scheme"), bold(displaySafe(selectedScheme())),
                        localized("configuration"), bold(displaySafe(selectedConfig()))));
  if (selectedConfig() == "Debug") printLine(fmt::format("  ⚡  {}", dim(localized("build_run_incremental_hint"))));
  printRule();
  printLine(fmt::format("  ⏹  {}", dim(localized("ctrl_c_to_stop"))));
  printLine();
}

void printFailurePanel(const FailurePanel& panel) {
  const auto given = [](const std::string& text) {
    return text.empty() ? std::optional<std::string_view>() : std::string_view(text);
  };
  printErrorDetail(localized(panel.titleKey), given(panel.detail), given(panel.reason), localized(panel.hintKey));
}

std::string shownToolOutput(std::string_view output) {
  constexpr std::string_view nextLine = "\n      ";
  std::string shown;
  for (const std::string_view line : splitLines(output)) {
    const std::string_view text = trimmed(line);
    if (text.empty()) continue;
    if (!shown.empty()) shown += nextLine;
    shown += displaySafe(text);
  }
  return shown;
}

}  // namespace halyard
