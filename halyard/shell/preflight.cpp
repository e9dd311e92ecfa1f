#include "halyard/shell/preflight.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include <fmt/format.h>

#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct ToolCheck {
  std::string_view command;
  std::string_view displayName;
  std::string_view descKey;
};

constexpr auto requiredTools = std::to_array<ToolCheck>({
    {"xcodebuild", "xcodebuild", "preflight_tool_xcodebuild"},
    {"git", "git", "preflight_tool_git"},
});

struct Remedy {
  std::string_view textKey;
  std::string_view hint;
};

constexpr auto remedies = std::to_array<Remedy>({
    {"preflight_install_xcode", "https://developer.apple.com/xcode/"},
    {"preflight_install_clt", "xcode-select --install"},
    {"preflight_set_xcodepath", "sudo xcode-select -s /Applications/Xcode.app"},
});

constexpr int nameWidth = 16;
constexpr int descriptionWidth = 44;

using ToolStates = std::array<bool, requiredTools.size()>;

ToolStates lookUpTools(bool mock) {
  ToolStates exists{};
  if (mock) return exists;
  std::ranges::transform(requiredTools, exists.begin(),
                         [](const ToolCheck& tool) { return toolExists(std::string(tool.command)); });
  return exists;
}

void printTool(const ToolCheck& tool, bool exists) {
  const std::string missing = fmt::format("✗ {}", localized("preflight_not_found"));
  const std::string state = padVisible(exists ? "✓" : missing, visibleWidth(missing));
  printLine(fmt::format("  {}{}{}  {}{}{} {}{}{}", exists ? Color::green : Color::red, state, Color::reset, Color::bold,
                        padVisible(tool.displayName, nameWidth), Color::reset, Color::dim,
                        padVisible(localized(tool.descKey), descriptionWidth), Color::reset));
}

void printRemedy(const Remedy& remedy) {
  printLine(fmt::format("  {}→{} {}", Color::boldBlue, Color::reset, localized(remedy.textKey)));
  printLine(fmt::format("     {}{}{}", Color::dim, remedy.hint, Color::reset));
}

void printScreen(const ToolStates& exists, bool mock) {
  clearScreen();
  printActionHeader(localized("preflight_title"), localized("preflight_subtitle"));
  if (mock) {
    printLine(fmt::format("  {}⚠  {}{}", Color::boldYellow, localized("preflight_mock_banner"), Color::reset));
  }
  printLine();
  printSection(localized("preflight_section_tools"));
  for (std::size_t index = 0; index < requiredTools.size(); ++index) printTool(requiredTools[index], exists[index]);
  printLine();
  printSection(localized("preflight_section_fix"));
  for (const Remedy& remedy : remedies) printRemedy(remedy);
  printLine();
  printRule();
  print(fmt::format("  {} ", localized("preflight_exit_hint")));
  flushOutput();
}

}  // namespace

void runPreflight(bool mock) {
  const ToolStates exists = lookUpTools(mock);
  if (std::ranges::find(exists, false) == exists.end()) return;
  printScreen(exists, mock);
  static_cast<void>(readLine());
  std::exit(1);
}

bool toolExists(const std::string& name) { return !run("which " + name + " 2>/dev/null").empty(); }

}  // namespace halyard
