#include "halyard/shell/menu_tree.hpp"

#include <fmt/format.h>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/build/active_target.hpp"
#include "halyard/build/build_flows.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/cache_browser.hpp"
#include "halyard/cache/cleanup_actions.hpp"
#include "halyard/cache/deletion_actions.hpp"
#include "halyard/cache/folder_browser.hpp"
#include "halyard/device/device_actions.hpp"
#include "halyard/packages/dependencies_menu.hpp"
#include "halyard/shell/menu_model.hpp"
#include "halyard/shell/open_file.hpp"
#include "halyard/shell/unavailable_action.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/dialogs.hpp"
#include "halyard/testruns/test_actions.hpp"
#include "halyard/tools/applications_menu.hpp"

namespace halyard {

namespace {

bool never(const MenuConditions&) { return false; }
bool hasTarget(const MenuConditions& now) { return now.hasTarget; }
bool isSimulator(const MenuConditions& now) { return now.isSimulator; }
bool isPhysical(const MenuConditions& now) { return now.isPhysical; }
bool isNotPhysical(const MenuConditions& now) { return !now.isPhysical; }
bool isMac(const MenuConditions& now) { return now.isMac; }
bool hasProjectConfiguration(const MenuConditions& now) { return now.hasProjectConfiguration; }
bool platformIsKnown(const MenuConditions& now) { return now.platform != AppStoreDistributionPlatform::unknown; }
bool platformIsIOS(const MenuConditions& now) { return now.platform == AppStoreDistributionPlatform::iOSFamily; }
bool platformIsMac(const MenuConditions& now) { return now.platform == AppStoreDistributionPlatform::macOS; }

std::string betaLabel(const std::string& label) {
  return fmt::format("{}{} {}<BETA>{}", Color::dim, label, Color::boldGreen, Color::reset);
}

/// Choosing a project is a question in itself, so a digit's consent doesn't reach it.
void selectProjectConfiguration() {
  setLaunchedByHotkey(false);
  showUnavailable(std::string(localized("project_select")));
}

constexpr MenuRow deleteRows[] = {
    {.key = "show_all_caches", .action = showAllCaches},
    {.key = {}},
    {.key = "xcodebuild_clean", .action = cleanBuild},
    {.key = "delete_capstan_build", .action = deleteProjectBuildFolder, .argument = privateDerivedDataName},
    {.key = "delete_derived_data_selective", .action = deleteDerivedDataSelective},
    {.key = "delete_derived_data", .hotkey = 1, .action = deleteDerivedData},
    {.key = {}},
    {.key = "delete_caches_without_spm", .action = deleteCachesWithoutPackageManagers},
    {.key = "delete_all_caches_incl_pm", .hotkey = 2, .action = deleteAllCachesInclPackageManagers},
    {.key = {}},
    {.key = "safe_cleanup", .action = runSafeCleanup},
    {.key = "deep_cleanup", .action = runDeepCleanup},
    {.key = "complete_cleanup", .action = runCompleteCleanup},
    {.key = {}},
    {.key = "neustart_cleanup", .action = runFullReset},
};

constexpr MenuRow buildRows[] = {
    {.key = "verify", .action = runPreBuildChecks},
    {.key = {}},
    {.key = "dependencies", .action = showDependenciesMenu},
    {.key = {}},
    {.key = "projekt_konfiguration"},
    {.key = {}},
    {.key = "build", .isEnabled = hasTarget, .action = buildApp},
    {.key = "build_run_simulator",
     .physicalKey = "build_run_physical",
     .macKey = "build_run_native",
     .hotkey = 3,
     .isEnabled = hasTarget,
     .action = buildAndRunApp},
    {.key = {}},
    {.key = "quick_reset_build_simulator",
     .physicalKey = "quick_reset_build_physical",
     .macKey = "quick_reset_build_native",
     .hotkey = 4,
     .isEnabled = hasTarget,
     .action = quickResetBuildAndLaunch},
    {.key = "full_reset_build_and_launch",
     .physicalKey = "full_reset_build_and_launch_physical",
     .macKey = "full_reset_build_and_launch_native",
     .isEnabled = hasTarget,
     .action = fullResetBuildAndLaunch},
};

constexpr MenuRow simulatorRows[] = {
    {.key = "create_simulator"},
    {.key = {}, .isShown = isSimulator},
    {.key = "launch_app_simulator", .isShown = isSimulator, .action = launchLastBuiltApp},
    {.key = "launch_app_again_simulator", .isShown = isSimulator, .action = launchLastBuiltAppOnSimulator},
    {.key = "uninstall_app_fresh_test", .isShown = isSimulator},
    {.key = {}, .isShown = isSimulator},
    {.key = "restart_simulator", .isShown = isSimulator},
    {.key = "stop_simulator", .isShown = isSimulator},
    {.key = "reset_simulator_erase", .isShown = isSimulator},
    {.key = {}, .isShown = isSimulator},
    {.key = "simulator_status_menu", .isShown = isSimulator},
    {.key = "erase_all_simulators", .isShown = isSimulator},
    {.key = "clean_up_unavailable_simulators", .isShown = isSimulator},
    {.key = "stop_all_simulators", .isShown = isSimulator},
    {.key = "delete_all_simulator_devices", .isShown = isSimulator},
    {.key = "delete_simulator_caches_menu", .isShown = isSimulator},
};

constexpr MenuRow controlRows[] = {
    {.key = "take_screenshot"},
    {.key = "video_recording"},
    {.key = {}},
    {.key = "menu_gruppe_interaktion"},
    {.key = {}},
    {.key = "appearance"},
    {.key = "menu_gruppe_berechtigungen"},
    {.key = "menu_gruppe_sprache_region"},
    {.key = "menu_gruppe_laufzeit"},
    {.key = "menu_gruppe_geraet_system"},
    {.key = "menu_gruppe_daten"},
    {.key = "menu_gruppe_logs_diagnose"},
    {.key = "menu_gruppe_live_activities"},
    {.key = "menu_gruppe_widgetkit"},
    {.key = "menu_gruppe_app_clips"},
    {.key = {}},
    {.key = "terminate_and_restart_app"},
};

constexpr MenuRow macRows[] = {
    {.key = "launch_app_native", .action = launchLastBuiltApp},
};

constexpr MenuRow physicalRows[] = {
    {.key = "show_all_devices", .action = showAllDevices},
    {.key = {}},
    {.key = "install_app", .action = installAppOnDevice},
    {.key = "launch_app", .action = launchAppOnDevice},
    {.key = "terminate_app", .action = terminateAppOnDevice},
    {.key = "uninstall_app", .action = uninstallAppFromDevice},
    {.key = {}},
    {.key = "list_installed_apps", .action = listInstalledApps},
    {.key = "live_log_from_device", .action = showLiveLogOfDevice},
};

constexpr MenuRow testRows[] = {
    {.key = "run_unit_tests", .hotkey = 7, .action = runUnitTests},
    {.key = "run_ui_tests", .action = runUiTests},
    {.key = "run_all_tests", .action = runAllTests},
    {.key = {}},
    {.key = "build_for_testing", .action = buildForTesting},
    {.key = "test_without_building", .action = testWithoutBuilding},
    {.key = {}},
    {.key = "auto_build", .hotkey = 8},
};

constexpr MenuRow xcodeRows[] = {
    {.key = "tools_versions"},
    {.key = {}},
    {.key = "close_xcode", .hotkey = 5},
    {.key = "restart_xcode"},
    {.key = "open_xcode", .hotkey = 6},
    {.key = {}},
    {.key = "switch_active_version"},
    {.key = "xcodes_install_action"},
    {.key = "xcodes_uninstall_action"},
    {.key = {}},
    {.key = "open_xcode_logs"},
    {.key = "install_cli_tools"},
    {.key = {}},
    {.key = "reset_xcode_preferences"},
    {.key = "reset_xcode_user_data"},
};

constexpr MenuRow directoryRows[] = {
    {.key = "finder_folder_desktop"},
    {.key = "finder_folder_downloads"},
    {.key = "finder_folder_documents"},
    {.key = {}},
    {.key = "finder_folder_project"},
    {.key = {}},
    {.key = "finder_folder_derived_data"},
    {.key = "finder_folder_derived_data_product", .argument = privateDerivedDataName},
    {.key = "finder_folder_build_logs"},
    {.key = "finder_folder_source_packages"},
    {.key = "finder_folder_module_cache"},
    {.key = "finder_folder_simulators"},
    {.key = "finder_folder_simulator_cache"},
    {.key = "finder_folder_xcode_caches"},
    {.key = {}},
    {.key = "finder_folder_archives"},
    {.key = "finder_folder_diagnostic_reports"},
    {.key = "finder_folder_device_logs"},
    {.key = "finder_folder_provisioning_profiles"},
};

constexpr MenuRow localizationRows[] = {
    {.key = "show_available_languages"},
    {.key = {}},
    {.key = "missing_localizations"},
    {.key = "unused_localizable_keys"},
    {.key = "duplicate_translation_keys"},
    {.key = "inconsistent_placeholders"},
    {.key = "empty_translations"},
    {.key = {}},
    {.key = "localization_stats"},
    {.key = "search_localization_key"},
    {.key = {}},
    {.key = "export_xliff"},
};

constexpr MenuRow appStoreRows[] = {
    {.key = "appstore_cmd_release_overview"},
    {.key = "appstore_cmd_manage_parameters"},
    {.key = {}},
    {.key = "appstore_cmd_delivery", .isShown = platformIsKnown},
    {.key = {}, .isShown = platformIsKnown},
    {.key = "appstore_cmd_release_checks"},
    {.key = "appstore_cmd_release_notes"},
    {.key = "appstore_cmd_show_files"},
    {.key = {}},
    {.key = "appstore_cmd_create_archive", .isShown = platformIsKnown},
    {.key = "appstore_cmd_export_ipa", .isShown = platformIsIOS},
    {.key = "appstore_cmd_macos_export", .isShown = platformIsMac},
    {.key = "appstore_cmd_upload", .isShown = platformIsKnown},
    {.key = "appstore_cmd_create_dmg", .isShown = platformIsMac},
    {.key = "appstore_cmd_notarize", .isShown = platformIsMac},
    {.key = "appstore_cmd_staple_check", .isShown = platformIsMac},
    {.key = "appstore_cmd_manage_archives"},
};

constexpr MenuRow miscRows[] = {
    {.key = "file_metrics"},
    {.key = "project_metrics"},
    {.key = {}},
    {.key = "open_file_with_app", .action = openFileWithApp},
    {.key = {}},
    {.key = "crash_symbols"},
    {.key = {}},
    {.key = "instruments_launcher", .isEnabled = never, .decorated = betaLabel},
    {.key = {}},
    {.key = "provisioning_profiles"},
};

constexpr MenuRow projectRows[] = {
    {.key = "project_select", .action = selectProjectConfiguration},
    {.key = "project_init", .isShown = hasProjectConfiguration},
    {.key = {}, .isShown = hasProjectConfiguration},
    {.key = "project_update", .hotkey = 9, .isShown = hasProjectConfiguration},
    {.key = {}, .isShown = hasProjectConfiguration},
    {.key = "project_delete", .isShown = hasProjectConfiguration},
};

constexpr MenuRow developerRows[] = {
    {.key = "dev_info_show_overview"},       {.key = {}},
    {.key = "dev_info_show_apple_releases"}, {.key = "dev_info_show_xcode_releases"},
    {.key = "dev_info_show_ios_releases"},   {.key = "dev_info_show_macos_releases"},
    {.key = "dev_info_show_swift_releases"}, {.key = "dev_info_show_swift_evolution"},
    {.key = "dev_info_show_apple_news"},     {.key = "dev_info_show_security_updates"},
    {.key = "dev_info_show_swiftui"},
};

constexpr MenuGroup groups[] = {
    {.key = "clean_cache", .letterEN = 'D', .letterDE = 'L', .rows = deleteRows},
    {.key = "build_run", .letterEN = 'B', .letterDE = 'B', .rows = buildRows},
    {.key = "simulator", .letterEN = 'S', .letterDE = 'S', .isShown = isNotPhysical, .rows = simulatorRows},
    {.key = "steuerung", .letterEN = 'C', .letterDE = 'E', .isShown = isSimulator, .rows = controlRows},
    {.key = "macOS", .isLiteral = true, .isShown = isMac, .rows = macRows},
    {.key = "physical_devices", .letterEN = 'Y', .letterDE = 'Y', .isShown = isPhysical, .rows = physicalRows},
    {.key = "test", .letterEN = 'T', .letterDE = 'T', .isShown = hasTarget, .rows = testRows},
    {.key = "Xcode", .isLiteral = true, .letterEN = 'X', .letterDE = 'X', .rows = xcodeRows},
    {.key = {}},
    {.key = "menu_directories", .letterEN = 'I', .letterDE = 'V', .rows = directoryRows},
    {.key = "localization", .letterEN = 'L', .letterDE = 'K', .rows = localizationRows},
    {.key = "appstore_menu_group", .letterEN = 'O', .letterDE = 'O', .rows = appStoreRows},
    {.key = "menu_group_programmes", .letterEN = 'N', .letterDE = 'M', .holdsApplications = true},
    {.key = "misc", .letterEN = 'M', .letterDE = 'N', .rows = miscRows},
    {.key = {}},
    {.key = "project_short", .letterEN = 'P', .letterDE = 'P', .rows = projectRows},
    {.key = {}},
    {.key = "developer_infos", .letterEN = 'R', .letterDE = 'R', .rows = developerRows},
};

LightMenuItem separatorItem() {
  return {.label = {}, .action = [] {}, .hotkey = {}, .enabled = true, .isSeparator = true};
}

LightMenuItem builtItem(const MenuRow& row, const MenuConditions& now) {
  if (row.key.empty()) return separatorItem();
  std::string label = menuRowLabel(row, menuRowKey(row, now));
  LightMenuItem item;
  if (row.action != nullptr) {
    item.action = row.action;
  } else {
    item.action = [label] { showUnavailable(label); };
  }
  item.enabled = row.isEnabled == nullptr || row.isEnabled(now);
  if (row.hotkey != 0) {
    item.hotkey = row.hotkey;
    label += fmt::format(" {}[{}]{}", Color::boldBlue, row.hotkey, Color::reset);
  }
  item.label = std::move(label);
  return item;
}

std::vector<LightMenuItem> applicationItems() {
  std::vector<LightMenuItem> items;
  for (ApplicationsMenuEntry& entry : applicationsMenuEntries()) {
    if (entry.isSeparator) {
      items.push_back(separatorItem());
    } else {
      items.push_back({.label = std::move(entry.label), .action = std::move(entry.action), .hotkey = {}});
    }
  }
  return items;
}

LightMenuCategory builtCategory(const MenuGroup& group, const MenuConditions& now) {
  LightMenuCategory category;
  category.isSeparator = group.key.empty();
  if (category.isSeparator) return category;
  category.name = menuGroupName(group);
  const char letter = currentLanguage() == "de" ? group.letterDE : group.letterEN;
  if (letter != 0) category.groupHotkey = letter;
  if (group.holdsApplications) category.items = applicationItems();
  for (const MenuRow& row : group.rows) {
    if (row.isShown == nullptr || row.isShown(now)) category.items.push_back(builtItem(row, now));
  }
  return category;
}

}  // namespace

MenuConditions currentMenuConditions() {
  const auto target = activeTarget();
  return {.hasTarget = target.has_value(),
          .isSimulator = target && target->kind == ActiveTarget::Kind::simulator,
          .isPhysical = target && target->kind == ActiveTarget::Kind::physical,
          .isMac = target && target->kind == ActiveTarget::Kind::mac,
          .hasProjectConfiguration = !selectedProjectJsonPath().empty(),
          .platform = distributionPlatform()};
}

std::span<const MenuGroup> menuGroups() { return groups; }

std::string menuGroupName(const MenuGroup& group) {
  return std::string(group.isLiteral ? group.key : localized(group.key));
}

std::string_view menuRowKey(const MenuRow& row, const MenuConditions& conditions) {
  if (conditions.isPhysical && !row.physicalKey.empty()) return row.physicalKey;
  if (conditions.isMac && !row.macKey.empty()) return row.macKey;
  return row.key;
}

std::string menuRowLabel(const MenuRow& row, std::string_view key) {
  std::string label =
      row.argument == nullptr ? std::string(localized(key)) : localizedFormat(key, displaySafe(row.argument()));
  return row.decorated == nullptr ? label : row.decorated(label);
}

Menu buildMenu() {
  const MenuConditions now = currentMenuConditions();
  Menu menu;
  for (const MenuGroup& group : groups) {
    if (group.isShown != nullptr && !group.isShown(now)) continue;
    LightMenuCategory category = builtCategory(group, now);
    if (group.holdsApplications && category.items.empty()) continue;
    menu.push_back(std::move(category));
  }
  return menu;
}

}  // namespace halyard
