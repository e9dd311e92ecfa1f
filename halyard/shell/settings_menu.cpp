#include "halyard/shell/settings_menu.hpp"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/shell/goodbye.hpp"
#include "halyard/shell/preferences.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

struct SimSort {
  std::string_view value;
  std::string_view labelKey;
};

constexpr auto simSorts = std::to_array<SimSort>({
    {"name", "sim_sort_by_name"},
    {"os", "sim_sort_by_os"},
    {"type", "sim_sort_by_type"},
});
constexpr int resetRow = static_cast<int>(simSorts.size()) + 1;

void printRow(std::string_view mark, std::string_view label, bool current = false) {
  printLine(fmt::format("  {}[{}]{} {}{}{}{}", Color::boldBlue, mark, Color::reset, label, current ? "  " : "",
                        current ? Color::boldBlue : "", current ? "◀" : "") +
            std::string(Color::reset));
}

void printMenu() {
  printActionHeader(localized("settings_menu"), localized("settings_menu_desc"));
  printLine();
  printSection(localized("sim_sort_title"));
  int number = 0;
  for (const SimSort& sort : simSorts) {
    printRow(fmt::format("{:02}", ++number), localized(sort.labelKey), selectedSimSort() == sort.value);
  }
  printLine();
  printRow(fmt::format("{:02}", resetRow), localized("reset_only_label"));
  printRow("x", localized("menu_back"));
  printLine();
  printLine(
      fmt::format("  {}{}: ~/.capstanlight_prefs.json{}", Color::dim, localized("settings_prefs_path"), Color::reset));
  printLine();
}

/// The row that the answer names, "1" and "01" alike; 0 for none.
int chosenRow(std::string_view answer) {
  int number = 0;
  const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
  const bool isRow = error == std::errc() && end == answer.data() + answer.size() && number >= 1 && number <= resetRow;
  return isRow ? number : 0;
}

void chooseSort(const SimSort& sort) {
  setSelectedSimSort(std::string(sort.value));
  savePreferences();
  printSuccess(localized(sort.labelKey));
}

void askForReset() {
  if (!confirmDialog({}, localized("light_settings_reset_confirm"), DialogSeverity::destructive, {}, true)) return;
  resetSettings();
  printSuccess(localized("settings_reset"));
}

}  // namespace

void resetSettings() {
  setSelectedScheme({});
  setSelectedTestScheme({});
  setSelectedTestPlan({});
  setSelectedTestPlanIsFromScheme(false);
  setSelectedBundleID({});
  setSelectedConfig("Debug");
  setSelectedDevice({});
  setCachedPlatforms({});
  setCachedPlatformsScheme({});
  setCachedTestPlatforms({});
  setCachedTestPlatformsScheme({});
  setCurrentLanguage("en");
  savePreferences();
}

void showSettingsMenu() {
  int row = 0;
  while (row == 0) {
    printMenu();
    const std::string answer = readChoice();
    if (answer == "q") quitWithGoodbye();
    if (answer == "x" || answer == "0") return;
    row = chosenRow(answer);
  }
  row == resetRow ? askForReset() : chooseSort(simSorts.at(static_cast<std::size_t>(row - 1)));
  waitForBack();
}

}  // namespace halyard
