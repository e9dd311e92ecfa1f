#include "halyard/device/app_picking_screen.hpp"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/device/app_files.hpp"
#include "halyard/device/device_apps.hpp"
#include "halyard/device/device_prompts.hpp"
#include "halyard/device/device_screen.hpp"
#include "halyard/device/device_selection.hpp"
#include "halyard/exec/with_spinner.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/terminal/file_browser.hpp"
#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

constexpr std::size_t shownFiles = 20;
constexpr int nameWidth = 28;
constexpr int hintWidth = 22;
constexpr int versionWidth = 10;

using AppFiles = std::vector<AppFileEntry>;
using Apps = std::vector<InstalledAppInfo>;

void printFiles(const AppFiles& files) {
  printLine();
  if (files.empty()) {
    printWarning(localized("phy_no_app_files_found"));
  } else {
    printSection(localized("phy_found_app_files"));
    printLine(fmt::format("  {}{}{}", Color::dim, localized("phy_install_filter_notice"), Color::reset));
  }
  const auto now = std::chrono::system_clock::now();
  for (std::size_t i = 0; i < files.size(); ++i) {
    const AppFileEntry& file = files[i];
    printMenuRow(rowMark(i), fmt::format("{} {}{} {}{}", padVisible(displaySafe(file.name), nameWidth), Color::dim,
                                         padVisible(displaySafe(file.projectHint), hintWidth),
                                         fileAgeText(file.modDate, now), Color::reset));
  }
  printLine();
  printMenuRow("w", localized("phy_open_file_browser"));
  printMenuRow("x", localized("menu_back"));
  printLine();
}

AppFiles filesForDevice() {
  // A simulator's build can't run on a device.
  AppFiles files = withSpinner(std::string(localized("phy_searching_app_files")), [] {
    return findInstallableApps([](const AppFileEntry& file) { return file.sdk == "iphoneos"; });
  });
  files.resize(std::min(files.size(), shownFiles));
  return files;
}

void printApps(const Apps& apps) {
  printLine();
  printSection(localized("phy_installed_apps_pick_one"));
  for (std::size_t i = 0; i < apps.size(); ++i) {
    const InstalledAppInfo& app = apps[i];
    printMenuRow(rowMark(i), fmt::format("{} {}{} {}{}", padVisible(displaySafe(app.name), nameWidth), Color::dim,
                                         padVisible(displaySafe(app.version), versionWidth), displaySafe(app.bundleID),
                                         Color::reset));
  }
  printLine();
  printMenuRow("x", localized("menu_back"));
  printLine();
}

std::string confirmedPick(const std::string& bundleID) {
  printInfo(fmt::format("{} {}", localized("phy_selected_app"), displaySafe(bundleID)));
  return bundleID;
}

std::optional<std::string> pickFromDevice(const PhysicalDeviceInfo& device) {
  const Apps apps =
      withSpinner(std::string(localized("phy_loading_installed_apps")), [&] { return installedApps(device.udid); });
  if (apps.empty()) {
    printWarning(localized("phy_no_apps_or_unreachable"));
    return std::nullopt;
  }
  for (;;) {
    printApps(apps);
    const std::string answer = readChoice();
    if (isLeaving(answer)) {
      leaveDeviceAction();
      return std::nullopt;
    }
    if (const auto index = chosenIndex(answer, apps.size())) return confirmedPick(apps[*index].bundleID);
    printInvalidChoice(answer);
  }
}

}  // namespace

std::string fileAgeText(std::chrono::system_clock::time_point date, std::chrono::system_clock::time_point now) {
  using std::chrono::hours;
  if (date == std::chrono::system_clock::time_point::min()) return {};
  const auto age = date >= now ? hours(0) : std::chrono::duration_cast<hours>(now - date);
  if (age < hours(1)) return std::string(localized("dev_info_just_now"));
  if (age < hours(24)) return localizedFormat("dev_info_hours_ago", age.count());
  return localizedFormat("dev_info_days_ago", age.count() / 24);
}

std::optional<std::string> pickAppFile() {
  const AppFiles files = filesForDevice();
  for (;;) {
    printFiles(files);
    const std::string answer = readChoice();
    if (isLeaving(answer)) {
      leaveDeviceAction();
      return std::nullopt;
    }
    if (answer == "w") {
      auto chosen = browseFiles(localized("select_app_or_ipa_file"), {".app", ".ipa"});
      // The browser took the whole screen.
      printActionHeader(localized("install_app_on_device"), localized("install_app_on_device_description"));
      if (chosen) return chosen;
    } else if (const auto index = chosenIndex(answer, files.size())) {
      return files[*index].path;
    } else {
      printInvalidChoice(answer);
    }
  }
}

std::optional<std::string> pickInstalledApp(const PhysicalDeviceInfo& device) {
  for (;;) {
    // Asked each time: the prompt serves the main menu's letters, and one of them changes it.
    const std::string& stored = selectedBundleID();
    if (stored.empty()) return pickFromDevice(device);
    if (launchedByHotkey()) return confirmedPick(stored);
    printMenuRow(rowMark(0), displaySafe(stored));
    printMenuRow(rowMark(1), localized("phy_installed_apps_pick_one"));
    printMenuRow("x", localized("menu_back"));
    printLine();
    const std::string answer = readChoice();
    if (isLeaving(answer)) {
      leaveDeviceAction();
      return std::nullopt;
    }
    const auto index = chosenIndex(answer, 2);
    if (index == 0U) return confirmedPick(selectedBundleID());
    if (index == 1U) return pickFromDevice(device);
    printInvalidChoice(answer);
  }
}

}  // namespace halyard
