#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/clean_steps.hpp"
#include "halyard/build/selection.hpp"
#include "halyard/exec/usable_home.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/line_input.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct Configuration {
  std::string_view name;
  std::string_view labelKey;
};

constexpr auto configurations = std::to_array<Configuration>({
    {"Debug", "configuration_debug"},
    {"Release", "configuration_release"},
});

void printRows() {
  printLine();
  int number = 0;
  for (const Configuration& configuration : configurations) {
    const bool isSelected = selectedConfig() == configuration.name;
    printLine(fmt::format("  {}[{:02}]{} {}{}", Color::boldBlue, ++number, Color::reset,
                          localized(configuration.labelKey),
                          isSelected ? fmt::format("  {}◀{}", Color::boldBlue, Color::reset) : ""));
  }
  printLine();
}

/// "1" and "01" alike; anything else is no choice.
const Configuration* askedConfiguration() {
  print(fmt::format("  {}▶{} {}{}{} [1–{}] {}[RETURN]{} ", Color::boldBlue, Color::reset, Color::bold,
                    localized("choice"), Color::reset, configurations.size(), Color::purple, Color::reset));
  flushOutput();
  const std::optional<std::string> line = readLine();
  const std::string_view answer = line ? trimmed(*line) : std::string_view();
  for (std::size_t i = 0; i < configurations.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    if (answer == number || answer == "0" + number) return &configurations.at(i);
  }
  return nullptr;
}

void deleteForSwitch(const CleanStep& step, std::string_view info) {
  printInfo(info);
  run(step.command);
  printSuccess(localized("auto_build_step_ok"));
}

/// All configurations share the project's folder: what one left there isn't to get into the other's build.
void clearCachesForSwitch(std::string_view configuration) {
  if (!requireUsableHome()) return;
  printStep(localizedFormat("auto_build_config_switch_var", configuration));
  const CleanStep folder = projectBuildFolderStep();
  deleteForSwitch(folder, folder.info);
  deleteForSwitch(moduleCacheStep(), localized("auto_build_step_modules"));
}

}  // namespace

void selectBuildConfiguration() {
  printActionHeader(localized("configuration"), localized("select_build_configuration_description"));
  printRows();
  const Configuration* chosen = askedConfiguration();
  if (chosen == nullptr) {
    setOperationAborted(false);
    return;
  }
  const bool isSwitch = !selectedConfig().empty() && selectedConfig() != chosen->name;
  setSelectedConfig(std::string(chosen->name));
  keepPreferences();
  printSuccess(localized(chosen->labelKey));
  if (isSwitch) clearCachesForSwitch(chosen->name);
  waitForBack();
}

}  // namespace halyard
